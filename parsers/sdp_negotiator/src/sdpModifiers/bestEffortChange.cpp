#include "sdpModifiers/bestEffortChange.h"

#include <cstddef>
#include <iterator>
#include <span>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/codecText.h"
#include "sdpModifiers/mediaRemoval.h"
#include "sdpModifiers/mediaTransport.h"
#include "sdpModifiers/removedMLines.h"
#include "sdpNegotiatorParser/descriptionView.h"
#include "sdpNegotiatorParser/withDescription.h"
#include "trace.h"
#include "vocabulary.h"

// From a best-effort offer with two m-lines per medium to one with one m-line, or to a secure-only one.

namespace sdpneg {

namespace {

constexpr std::string_view kMedia[] = {"audio", "video", "application"};

/// The media whose plain and secure m-line have the same port.
struct SamePorts {
  bool of[std::size(kMedia)] = {};

  void mark(std::string_view media) {
    for (std::size_t i = 0; i < std::size(kMedia); ++i) of[i] = of[i] || media == kMedia[i];
  }
  bool any() const { return of[0] || of[1] || of[2]; }
};

SamePorts comparePorts(const sDescription& description) {
  SamePorts same;
  const auto media = mediaOf(description);
  for (std::size_t i = 0; i + 1 < media.size(); i += 2) {
    const m_line& line = media[i].mLine;
    const char* const first = sdp_MgetPort(&line);
    const char* const second = sdp_MgetPort(&media[i + 1].mLine);
    if (viewOf(first) != viewOf(second) || viewOf(first) == "0") continue;
    trace::info("sdpChangeSrtpType() compare ports for media = %s port_1=%s,  port_2=%s", line.media, first,
                second);
    same.mark(line.media);
  }
  return same;
}

void traceText(const SdpText& text) {
  trace::info("sdpChangeSrtpType() sdp_buffer = [%s] ", text.view().data());
}

/// Makes the m-lines of the marked media plain; their crypto attributes stay.
void makePlain(SdpText& text, const SamePorts& same) {
  std::string_view media[std::size(kMedia)];
  std::size_t count = 0;
  for (std::size_t i = 0; i < std::size(kMedia); ++i) {
    if (same.of[i]) media[count++] = kMedia[i];
  }
  setMediaTransport(text, kSecureTransport, kPlainTransport, std::span(media).first(count));
}

void toOneMLine(SdpText& text, char* removed, unsigned short oLineEnd, const SamePorts& same) {
  removeMLines(text, removed, oLineEnd, kPlainTransport, false);
  trace::info("sdpChangeSrtpType() sameAudioPorts =%d, sameVideoPorts=%d, sameApplicationPorts=%d ",
              same.of[0] ? 1 : 0, same.of[1] ? 1 : 0, same.of[2] ? 1 : 0);
  if (!same.any()) return;
  traceText(text);
  makePlain(text, same);
}

void toSecureOnly(SdpText& text, char* removed, unsigned short oLineEnd) {
  removeMLines(text, removed, oLineEnd, kPlainTransport, false);
  traceText(text);
  const std::string_view codes = codesOf(removed);
  trace::info("sdpChangeSrtpType() mline = [%.*s] ", static_cast<int>(codes.size()),
              codes.empty() ? "" : codes.data());
}

}  // namespace

Refusal changeSrtpType(SdpText& text, eSecurityType oldType, eSecurityType newType, char* removed,
                       unsigned short oLineEnd) {
  trace::info("Entering sdpChangeSrtpType() method. oldSdpType=[%d] newSdpType=[%d]",
              static_cast<int>(oldType), static_cast<int>(newType));
  if (const Refusal refusal = refusalOfBuffer(text, "sdpChangeSdpType")) return refusal;
  return withDescription([&](sDescription& description) {
    const Refusal refusal = decode(description, text.view());
    if (oldType != BE_SRTP_2m_LINE) return refusal;
    if (newType == BE_SRTP_1m_LINE) toOneMLine(text, removed, oLineEnd, comparePorts(description));
    if (newType == SECURITY_SRTP_ONLY) toSecureOnly(text, removed, oLineEnd);
    return refusal;
  });
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpChangeSdpType(char* sdp, eSecurityType oldSdpType,
                                                  eSecurityType newSdpType, char* removed,
                                                  unsigned short oLineEnd) {
  SdpText text(sdp);
  return statusOf(changeSrtpType(text, oldSdpType, newSdpType, removed, oLineEnd));
}
