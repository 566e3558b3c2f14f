#include <cstddef>
#include <iterator>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/removedMLines.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorParser/descriptionView.h"
#include "sdpNegotiatorParser/withDescription.h"
#include "trace.h"

// From a best-effort offer with two m-lines per medium to one with one m-line, or to a secure-only one.

namespace {

using namespace sdpneg;

constexpr const char* kMedia[] = {"audio", "video", "application"};

/// The media whose plain and secure m-line have the same port.
struct SamePorts {
  bool of[std::size(kMedia)] = {};

  void mark(std::string_view media) {
    for (std::size_t i = 0; i < std::size(kMedia); ++i) of[i] = of[i] || media == kMedia[i];
  }
  bool any() const { return of[0] || of[1] || of[2]; }
};

SamePorts comparePorts(const std::vector<mDescription>& mLines) {
  SamePorts same;
  for (std::size_t i = 0; i + 1 < mLines.size(); i += 2) {
    const m_line& line = mLines[i].mLine;
    const char* const first = sdp_MgetPort(&line);
    const char* const second = sdp_MgetPort(&mLines[i + 1].mLine);
    if (viewOf(first) != viewOf(second) || viewOf(first) == "0") continue;
    trace::info("sdpChangeSrtpType() compare ports for media = %s port_1=%s,  port_2=%s", line.media, first,
                second);
    same.mark(line.media);
  }
  return same;
}

void traceText(const char* sdp) { trace::info("sdpChangeSrtpType() sdp_buffer = [%s] ", sdp); }

/// Makes the m-lines of the marked media plain; their crypto attributes stay.
unsigned short makePlain(char* sdp, const SamePorts& same) {
  std::vector<std::string> media;
  try {
    for (std::size_t i = 0; i < std::size(kMedia); ++i) {
      if (same.of[i]) media.emplace_back(kMedia[i]);
    }
  } catch (const std::bad_alloc&) {
    trace::error("sdpChangeSdpType(): There is no memory for a list of media.");
    return 1;
  }
  return sdpModifications::sdpSetMediaTransportType(sdp, "RTP/SAVP", "RTP/AVP", media);
}

unsigned short toOneMLine(char* sdp, char* removed, unsigned short oLineEnd,
                          const std::vector<mDescription>& mLines, unsigned short decoded) {
  const SamePorts same = comparePorts(mLines);
  sdpModifications::sdpRemoveMline(sdp, removed, oLineEnd, "RTP/AVP", false);
  trace::info("sdpChangeSrtpType() sameAudioPorts =%d, sameVideoPorts=%d, sameApplicationPorts=%d ",
              same.of[0] ? 1 : 0, same.of[1] ? 1 : 0, same.of[2] ? 1 : 0);
  if (!same.any()) return decoded;
  traceText(sdp);
  return makePlain(sdp, same);
}

void toSecureOnly(char* sdp, char* removed, unsigned short oLineEnd) {
  sdpModifications::sdpRemoveMline(sdp, removed, oLineEnd, "RTP/AVP", false);
  traceText(sdp);
  const std::string_view codes = codesOf(removed);
  trace::info("sdpChangeSrtpType() mline = [%.*s] ", static_cast<int>(codes.size()),
              codes.empty() ? "" : codes.data());
}

}  // namespace

unsigned short sdpModifications::sdpChangeSdpType(char* sdp, eSecurityType oldSdpType,
                                                  eSecurityType newSdpType, char* removed,
                                                  unsigned short oLineEnd) {
  trace::info("Entering sdpChangeSrtpType() method. oldSdpType=[%d] newSdpType=[%d]",
              static_cast<int>(oldSdpType), static_cast<int>(newSdpType));
  const SdpText text(sdp);
  if (!adopted(text, "sdpChangeSdpType")) return 1;
  return withDescription([&](sDescription& description) -> unsigned short {
    const unsigned short decoded = getSdpsDescription(sdp, description);
    std::vector<mDescription> mLines;
    if (sdpParserMessage::getMLines(description, mLines) == 1) {
      trace::error("Cannot retrieve the m-lines.");
      return 1;
    }
    if (oldSdpType != BE_SRTP_2m_LINE) return decoded;
    if (newSdpType == BE_SRTP_1m_LINE) return toOneMLine(sdp, removed, oLineEnd, mLines, decoded);
    if (newSdpType == SECURITY_SRTP_ONLY) toSecureOnly(sdp, removed, oLineEnd);
    return decoded;
  });
}
