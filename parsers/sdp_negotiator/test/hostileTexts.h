#ifndef HOSTILE_TEXTS_H
#define HOSTILE_TEXTS_H

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sdpNegotiator.h"

// Texts that are made of few pieces, repeated.

/// A text of at most so many characters: the first piece once, then each other one as often as it fits into an equal
/// share of what is left.
inline std::string repeated(std::span<const std::string> pieces, std::size_t size) {
  if (pieces.empty()) return {};
  std::string text = pieces[0].substr(0, size);
  for (std::size_t i = 1; i < pieces.size(); ++i) {
    if (pieces[i].empty()) continue;
    const std::size_t end = text.size() + (size - text.size()) / (pieces.size() - i);
    while (text.size() + pieces[i].size() <= end) text += pieces[i];
  }
  return text;
}

/// An object with a summary of an ordinary body whose text is another one, whatever that is; the text that no object can
/// store leaves it empty.
inline cSdpNegotiator objectOf(const std::string& text) {
  cSdpNegotiator object;
  object.sdpParse(
      "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n"
      "m=audio 49170 RTP/AVP 0 8 18 9 101\r\na=rtpmap:101 telephone-event/8000\r\n"
      "m=video 49172 RTP/AVP 97\r\nb=AS:900\r\na=rtpmap:97 H264/90000\r\na=fmtp:97 profile-level-id=42e01f\r\n",
      SDP_TYPE_OFFER);
  return object.setRawSDP(text.c_str()) == 0 ? object : cSdpNegotiator();
}

/// An object that parsed a text, empty where it refuses that.
inline cSdpNegotiator parsedFrom(const std::string& text) {
  cSdpNegotiator object;
  object.sdpParse(text.c_str(), SDP_TYPE_UNKNOWN);
  return object;
}

#endif
