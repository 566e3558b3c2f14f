// Leads the media of an offer by way of a relay.

#include "bodies.h"

int main() {
  sdp::Document offer;
  if (offer.read(kPhoneOffer)) return 1;
  if (sdp::anchor(offer, "2001:db8::9", 20000)) return 1;
  for (const sdp::Section& section : offer.sections()) {
    const std::optional<sdp::Connection> connection = section.connection();
    if (!connection) continue;
    std::cout << section.media() << " to " << connection->addressType << ' ' << connection->address
              << ", port " << section.port() << '\n';
  }
  return 0;
}
