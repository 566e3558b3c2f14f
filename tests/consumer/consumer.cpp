// An engine of a few lines: what a user of the installed libraries writes. It uses all four behind `sdp_negotiator`.

#include <sdpDataDefinitions.h>
#include <sdpNegotiatorTrace.h>
#include <sessionDescription.h>

#include <cstdio>
#include <cstring>
#include <memory>

int main() {
  const auto body = std::make_unique_for_overwrite<sDescription>();
  char error[SDP_ERROR_TEXT_SIZE] = "";
  unsigned short start = 0;
  unsigned short end = 0;
  const char* text =
      "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\nm=audio 5004 RTP/AVP 8\r\n";
  if (sdp_decodeOpt_r(body.get(), text, SDP_TYPE_OFFER, error, false, start, end) != 0) {
    std::fprintf(stderr, "not decoded: %s\n", error);
    return 1;
  }

  sSdpParsedData data;
  data.init();
  data.address.setIPAddress(sdp_CgetAddress(&body->cLine, 0));
  char address[50] = "";
  data.address.getIPAddressText(address, sizeof address);

  cNegotTraceManager::writeTraceMsg(2, 2, "consumer: %s", address);
  const bool right =
      std::strcmp(address, "192.0.2.1") == 0 && std::strcmp(sdp_MgetPort(&body->media[0].mLine), "5004") == 0;
  std::printf("%s\n", right ? "consumer: decoded" : "consumer: wrong values");
  return right ? 0 : 1;
}
