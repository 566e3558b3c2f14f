// What the steps share: an offer, its answer, and a way to show lines of an object's body.

#ifndef GUIDE_H
#define GUIDE_H

#include <sdpModifiers.h>
#include <sdpNegotiator.h>

#include <cstdio>
#include <string_view>

inline constexpr const char* kOffer =
    "v=0\r\n"
    "o=alice 100 1 IN IP4 192.0.2.10\r\n"
    "s=-\r\n"
    "c=IN IP4 192.0.2.10\r\n"
    "t=0 0\r\n"
    "m=audio 49170 RTP/AVP 8 0 101\r\n"
    "a=rtpmap:8 PCMA/8000\r\n"
    "a=rtpmap:0 PCMU/8000\r\n"
    "a=rtpmap:101 telephone-event/8000\r\n"
    "a=ptime:20\r\n"
    "m=video 49180 RTP/AVP 97\r\n"
    "a=rtpmap:97 H264/90000\r\n"
    "a=fmtp:97 profile-level-id=42e01f\r\n";

inline constexpr const char* kAnswer =
    "v=0\r\n"
    "o=bob 200 1 IN IP4 198.51.100.7\r\n"
    "s=-\r\n"
    "c=IN IP4 198.51.100.7\r\n"
    "t=0 0\r\n"
    "m=audio 30000 RTP/AVP 8 0 101\r\n"
    "a=rtpmap:8 PCMA/8000\r\n"
    "a=rtpmap:0 PCMU/8000\r\n"
    "a=rtpmap:101 telephone-event/8000\r\n"
    "m=video 0 RTP/AVP 97\r\n";

/// Prints the lines of a body that begin with a text.
inline void show(std::string_view body, std::string_view beginning) {
  while (!body.empty()) {
    const std::string_view line = body.substr(0, body.find('\n'));
    body.remove_prefix(line.size() < body.size() ? line.size() + 1 : body.size());
    const std::string_view shown = line.substr(0, line.find('\r'));
    if (shown.starts_with(beginning)) std::printf("%.*s\n", static_cast<int>(shown.size()), shown.data());
  }
}

/// Shows those lines of the body of an object that begin so.
inline void show(const cSdpNegotiator& object, std::string_view beginning) {
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (object.getSDP(text, sizeof text) == 0) show(std::string_view(text), beginning);
}

#endif
