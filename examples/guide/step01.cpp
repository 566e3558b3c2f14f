// Links the library and parses a body.

#include <sdpNegotiator.h>

#include <cstdio>

int main() {
  cSdpNegotiator offer = cSdpNegotiator::empty();  // a plain record of 2692 bytes
  const char* const body =
      "v=0\r\no=- 1 1 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\nm=audio 49170 RTP/AVP 0\r\n";
  if (offer.sdpParse(body, SDP_TYPE_OFFER) != 0) return 1;
  std::printf("audio at port %u\n", offer.getParsedData().port);
  return 0;
}
