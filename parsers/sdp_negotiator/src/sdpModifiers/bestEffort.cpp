#include "sdpModifiers/bestEffort.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/codecText.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorParser/descriptionView.h"
#include "sdpNegotiatorParser/withDescription.h"
#include "trace.h"
#include "vocabulary.h"

// Best-effort SRTP: an offer that leaves the choice between plain and secure media to the other side, by one
// m-line per medium that has crypto attributes (RFC 4568) on a plain transport, or by a plain and a secure one.

namespace sdpneg {
namespace {

constexpr const char* kDifferentMedia =
    "The Best Effort SRTP type is SRTP_UKNOWN due to different media types";

bool isPlain(const mDescription& media) {
  const std::string_view transport = transportOf(media);
  return transport == kPlainTransport || transport == "RTP/AVPF";
}

bool isSecure(const mDescription& media) {
  const std::string_view transport = transportOf(media);
  return transport == kSecureTransport || transport == "RTP/SAVPF";
}

bool isCrypto(const a_line::entry& line) { return equalNoCase(line.name, "crypto"); }

bool hasCrypto(const mDescription& media) {
  const auto attributes = entriesOf(&media.aLine);
  return std::any_of(attributes.begin(), attributes.end(), isCrypto);
}

bool sameKind(const mDescription& a, const mDescription& b) { return a.mLine.mediaType == b.mLine.mediaType; }

/// Whether two m-lines have the same format at an index; so they have when neither has one there.
bool sameFormat(const mDescription& a, const mDescription& b, std::size_t index) {
  const char* const first = sdp_MgetFormat(&a.mLine, static_cast<int>(index));
  const char* const second = sdp_MgetFormat(&b.mLine, static_cast<int>(index));
  return (first == nullptr) == (second == nullptr) && viewOf(first) == viewOf(second);
}

void traceType(const char* text) { trace::info("%s", text); }

eSecurityType unknown(const char* reason) {
  traceType(reason);
  return SRTP_UKNOWN;
}

/// The secure one of a plain and a secure m-line, in any order.
/// @return null, with a trace, for m-lines of other transports
const mDescription* secureOf(const mDescription& first, const mDescription& second) {
  if (!isPlain(first) && !isSecure(first)) {
    traceType("TestTrace SRTP type is SRTP_UKNOWN, No chance to be here");
    return nullptr;
  }
  if (isPlain(first) && isSecure(second)) return &second;
  if (isSecure(first) && isPlain(second)) return &first;
  traceType("TestTrace SRTP type is SRTP_UKNOWN, no RTP/AVP for the RTP/SAVP");
  return nullptr;
}

/// Whether the last of an m-line's attributes is a crypto attribute; what was known before when it has none.
bool endsWithCrypto(const mDescription& media, bool before) {
  bool crypto = before;
  for (const a_line::entry& line : entriesOf(&media.aLine)) {
    traceType("TestTrace 3");
    crypto = isCrypto(line);
    if (crypto) traceType("TestTrace SRTP type is BE_SRTP_1m_LINE");
  }
  return crypto;
}

/// Decodes a text by `decodeInto` and takes its media descriptions.
/// @return the status of either
template <typename Decode>
unsigned short takeMLines(std::vector<mDescription>& mLines, Decode decodeInto) {
  mLines.clear();
  return withDescription([&](sDescription& description) {
    const unsigned short status = decodeInto(description);
    return status != 0 ? status : sdpParserMessage::getMLines(description, mLines);
  });
}

}  // namespace

unsigned short readMLines(const SdpText& text, std::vector<mDescription>& mLines) {
  return takeMLines(mLines,
                    [&](sDescription& description) { return statusOf(decode(description, text.view())); });
}

}  // namespace sdpneg

using namespace sdpneg;

bool sdpModifications::isSAVPMline(char* from, char* to) {
  if (from == nullptr || to == nullptr) return false;
  const auto text = adoptedView(from, "isSAVPMline");
  const auto begin = reinterpret_cast<std::uintptr_t>(from);
  const auto end = reinterpret_cast<std::uintptr_t>(to);
  if (!text || end <= begin) return false;
  constexpr std::string_view kSecure = kSecureTransport;
  const std::size_t range = std::min<std::size_t>(end - begin, text->size());
  return contains(text->substr(0, range + kSecure.size() - 1), kSecure);
}

unsigned short sdpModifications::getSdpsDescription(char* sdp, sDescription& desc) {
  const auto text = adoptedView(sdp, "getSdpsDescription");
  return text ? statusOf(decode(desc, *text)) : decodeText(desc, nullptr);
}

unsigned short sdpModifications::getMLines(char* sdp, std::vector<mDescription>& mLines) {
  return takeMLines(mLines, [&](sDescription& description) { return getSdpsDescription(sdp, description); });
}

// The vectors are given by value: that is the signature that callers are built with.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
eSecurityType sdpModifications::is2mLineBeSrtp(std::vector<mDescription> mLines) {
  if (mLines.size() % 2 != 0) {
    return unknown("The Best Effort SRTP type is SRTP_UKNOWN due to non odd number of m-lines");
  }
  for (std::size_t i = 0; i < mLines.size(); i += 2) {
    const mDescription& first = mLines[i];
    const mDescription& second = mLines[i + 1];
    if (!sameKind(first, second)) return unknown(kDifferentMedia);
    // The formats at the pair's own index are compared, not the first ones.
    if (!sameFormat(first, second, i)) {
      return unknown("The Best Effort SRTP type is SRTP_UKNOWN due to different codecs between the m-lines");
    }
    const mDescription* const secure = secureOf(first, second);
    if (secure == nullptr) return SRTP_UKNOWN;
    if (i != 0) continue;
    if (!hasCrypto(*secure)) return unknown("TestTrace SRTP type is SRTP_UKNOWN, no crypto line");
    traceType("TestTrace SRTP type is BE_SRTP_2m_LINE");
  }
  const eSecurityType type = mLines.empty() ? SRTP_UKNOWN : BE_SRTP_2m_LINE;
  trace::info("Return Best Effort SRTP type = %d", static_cast<int>(type));
  return type;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param)
eSecurityType sdpModifications::is1mLineBeSrtp(std::vector<mDescription> mLines) {
  traceType("Entering is1mLineBeSrtp()");
  bool crypto = false;
  for (std::size_t i = 0; i < mLines.size(); ++i) {
    if (i + 1 < mLines.size()) {
      if (sameKind(mLines[i], mLines[i + 1])) return unknown("The Best Effort SRTP type is SRTP_UKNOWN");
      traceType("TestTrace 1");
    }
    if (!isPlain(mLines[i])) return unknown("TestTrace SRTP type is SRTP_UKNOWN");
    traceType("TestTrace 2");
    crypto = endsWithCrypto(mLines[i], crypto);
    if (!crypto) return unknown("TestTrace SRTP type is SRTP_UKNOWN");
  }
  return crypto ? BE_SRTP_1m_LINE : SRTP_UKNOWN;
}
