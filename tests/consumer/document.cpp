// Bodies of any kind in a few lines: what a user of the document library alone writes.

#include <sdpDocumentRequests.h>

#include <cstdio>
#include <string_view>

int main() {
  sdp::Document offer;
  if (offer.read("v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\nm=audio 9 RTP/AVP 111 8\r\n"
                 "c=IN IP4 relay.example\r\na=rtpmap:111 opus/48000/2\r\n")) {
    std::fprintf(stderr, "not read\n");
    return 1;
  }
  if (sdp::keepCodecs(offer, "PCMA") || sdp::anchor(offer, "192.0.2.9", 20000)) {
    const std::string_view why = offer.explanation();
    std::fprintf(stderr, "refused: %.*s\n", static_cast<int>(why.size()), why.data());
    return 1;
  }
  const bool right = offer.text() ==
                     "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\nm=audio 20000 RTP/AVP 8\r\n"
                     "c=IN IP4 192.0.2.9\r\n";
  std::printf("%s\n", right ? "document: edited" : "document: wrong text");
  return right ? 0 : 1;
}
