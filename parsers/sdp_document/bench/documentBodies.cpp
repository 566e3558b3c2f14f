// The bodies that the benchmark of the document layer makes by itself.

#include "documentBodies.h"

#include <initializer_list>
#include <string_view>

namespace {

constexpr const char* kSession = "v=0\r\no=- 4611731400430051336 2 IN IP4 127.0.0.1\r\ns=-\r\nt=0 0\r\n";

std::string number(std::size_t value) { return std::to_string(value); }

std::string joined(std::initializer_list<std::string_view> pieces) {
  std::string text;
  for (const std::string_view piece : pieces) text.append(piece);
  return text;
}

/// Repeats what `make` makes of 0, 1, 2 until the text has the size.
template <typename Make>
std::string filled(std::string text, std::size_t size, Make make) {
  text.reserve(size + 64);
  for (std::size_t n = 0; text.size() < size; ++n) text += make(n);
  return text;
}

std::string emptyLines(std::size_t size) { return std::string(size, '\n'); }

std::string oneLine(std::size_t size) { return kSession + std::string("a=") + std::string(size, 'x'); }

std::string manyGroups(std::size_t size) {
  std::string text = filled(kSession, size / 2, [](std::size_t n) {
    return joined({"a=group:BUNDLE 0 ", number(n), "\r\n"});
  });
  return filled(text, size, [](std::size_t n) {
    return joined({"m=audio 9 RTP/AVP 0\r\na=mid:", number(n), "\r\na=bundle-only\r\n"});
  });
}

std::string oneMid(std::size_t size) {
  std::string text = filled(kSession, size / 2, [](std::size_t) { return "a=group:BUNDLE x\r\n"; });
  return filled(text, size, [](std::size_t n) {
    return joined({"m=audio ", number(n == 0 ? 9 : 0), " RTP/AVP 0\r\na=mid:x\r\na=bundle-only\r\n"});
  });
}

std::string rtxInARow(std::size_t size) {
  const std::size_t formats = size / 64;
  std::string line = "m=video 9 RTP/AVPF";
  std::string attributes;
  for (std::size_t n = 0; n < formats; ++n) {
    line.append(" ").append(number(n));
    attributes += joined({"a=rtpmap:", number(n), n == 0 ? " VP8/90000\r\n" : " rtx/90000\r\n"});
    if (n != 0) attributes += joined({"a=fmtp:", number(n), " apt=", number(n - 1), "\r\n"});
  }
  return kSession + line + "\r\n" + attributes;
}

std::string formatsWithoutEnd(std::size_t size) {
  return filled(std::string(kSession) + "m=audio 9 RTP/AVP", size, [](std::size_t n) {
    return joined({" ", number(n)});
  });
}

std::string feedbackForAll(std::size_t size) {
  std::string text = std::string(kSession) + "m=video 9 RTP/AVPF 96 97 98\r\n";
  return filled(text, size, [](std::size_t n) {
    return joined({"a=rtcp-fb:", number(n % 200), " nack\r\n"});
  });
}

std::string keysOfTheSession(std::size_t size) {
  std::string text =
      filled(kSession, size / 2, [](std::size_t) { return std::string("a=ice-options:x y z\r\n"); });
  return filled(text, size, [](std::size_t) { return std::string("m=audio 9 RTP/SAVP 0\r\n"); });
}

}  // namespace

std::string browserOffer() {
  std::string text =
      std::string(kSession) + "a=group:BUNDLE 0 1 2\r\na=extmap-allow-mixed\r\na=msid-semantic: WMS s\r\n";
  const std::string transport =
      "c=IN IP4 0.0.0.0\r\na=rtcp:9 IN IP4 0.0.0.0\r\n"
      "a=candidate:1 1 udp 2122260223 192.0.2.4 46243 typ host generation 0\r\n"
      "a=candidate:2 1 tcp 1518280447 192.0.2.4 9 typ host tcptype active generation 0\r\n"
      "a=ice-ufrag:l5KU\r\na=ice-pwd:VYlEbFPOX7Yl2JLAtcoAvOMu\r\na=ice-options:trickle\r\n"
      "a=fingerprint:sha-256 19:E2:1C:3B:4B:9F:81:E6:B8:5C:F4:A5:A8:D8:73:04:BB:05:2F:70:9F:04:A9:0E:05:E9:26:33:E8:70:88:A2\r\n"
      "a=setup:actpass\r\n";
  text +=
      "m=audio 9 UDP/TLS/RTP/SAVPF 111 63 9 0 8 13 110 126\r\n" + transport +
      "a=mid:0\r\na=extmap:1 urn:ietf:params:rtp-hdrext:ssrc-audio-level\r\n"
      "a=extmap:2 urn:ietf:params:rtp-hdrext:sdes:mid\r\na=sendrecv\r\na=rtcp-mux\r\na=rtcp-rsize\r\n"
      "a=rtpmap:111 opus/48000/2\r\na=rtcp-fb:111 transport-cc\r\na=fmtp:111 minptime=10;useinbandfec=1\r\n"
      "a=rtpmap:63 red/48000/2\r\na=fmtp:63 111/111\r\na=rtpmap:9 G722/8000\r\na=rtpmap:0 PCMU/8000\r\n"
      "a=rtpmap:8 PCMA/8000\r\na=rtpmap:13 CN/8000\r\na=rtpmap:110 telephone-event/48000\r\n"
      "a=rtpmap:126 telephone-event/8000\r\na=ssrc:1032948124 cname:mUu6bYkZ0fYt0YgQ\r\n";
  text += "m=video 9 UDP/TLS/RTP/SAVPF 96 97 98 99 100 101 102 103\r\n" + transport +
          "a=mid:1\r\na=extmap:3 urn:3gpp:video-orientation\r\na=sendrecv\r\na=rtcp-mux\r\na=rtcp-rsize\r\n";
  for (std::size_t payload = 96; payload < 104; payload += 2) {
    text += joined({"a=rtpmap:", number(payload), payload < 98 ? " VP8/90000\r\n" : " H264/90000\r\n"});
    for (const char* feedback : {"goog-remb", "transport-cc", "ccm fir", "nack", "nack pli"}) {
      text += joined({"a=rtcp-fb:", number(payload), " ", feedback, "\r\n"});
    }
    if (payload >= 98)
      text += joined({"a=fmtp:", number(payload), " packetization-mode=1;profile-level-id=42e01f\r\n"});
    text += joined({"a=rtpmap:", number(payload + 1), " rtx/90000\r\na=fmtp:", number(payload + 1),
                    " apt=", number(payload), "\r\n"});
  }
  text +=
      "a=ssrc-group:FID 2231627014 632943048\r\na=ssrc:2231627014 cname:mUu6bYkZ0fYt0YgQ\r\n"
      "a=ssrc:632943048 cname:mUu6bYkZ0fYt0YgQ\r\n";
  text +=
      "m=application 9 UDP/DTLS/SCTP webrtc-datachannel\r\n" + transport + "a=mid:2\r\na=sctp-port:5000\r\n";
  return text;
}

std::string manySections(std::size_t sections) {
  std::string text = kSession;
  for (std::size_t n = 0; n < sections; ++n) {
    text += joined(
        {"m=audio ", number(2000 + n % 60000), " RTP/AVP 0 8\r\nc=IN IP4 192.0.2.1\r\na=sendrecv\r\n"});
  }
  return text;
}

const std::vector<Hostile>& hostileTexts() {
  static const std::vector<Hostile> texts = {
      {"empty lines", emptyLines},  {"one line", oneLine},
      {"groups", manyGroups},       {"one mid, many groups", oneMid},
      {"rtx in a row", rtxInARow},  {"formats without end", formatsWithoutEnd},
      {"feedback", feedbackForAll}, {"ice-options of the session", keysOfTheSession},
  };
  return texts;
}
