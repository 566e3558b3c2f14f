// Keeps some codecs, and prefers one of them.

#include "bodies.h"

int main() {
  sdp::Document offer;
  if (offer.read(kBrowserOffer)) return 1;
  if (sdp::keepCodecs(offer, "opus,PCMA,telephone-event", "audio")) return 1;
  if (sdp::orderCodecs(offer, "PCMA/8000", "audio")) return 1;
  for (const sdp::Line& line : offer.section(1).lines()) {
    const bool isOfCodecs = line.content.starts_with("m=") || line.content.starts_with("a=rtpmap") ||
                            line.content.starts_with("a=fmtp") || line.content.starts_with("a=rtcp-fb");
    if (isOfCodecs) std::cout << line.content << '\n';
  }
  return 0;
}
