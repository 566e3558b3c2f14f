// Reads which keys a phone offers, and logs them without the keys.

#include "bodies.h"

int main() {
  sdp::Document offer;
  if (offer.read(kPhoneOffer)) return 1;
  for (const sdp::Section& section : offer.sections()) {
    std::cout << section.media() << ' ' << textOf(section.security()) << '\n';
    for (const sdp::Crypto& crypto : section.crypto()) {
      std::cout << "  " << crypto.tag.value_or(0) << ' ' << crypto.suite << '\n';
    }
  }
  return 0;
}
