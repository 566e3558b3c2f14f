// Puts a call on hold: who receives nothing becomes inactive, all others send only (RFC 3264, section 8.4).

#include "bodies.h"

int main() {
  sdp::Document offer;
  if (offer.read(kPhoneOffer)) return 1;
  // By number, since an edit ends all views.
  for (std::uint32_t n = 1; n <= offer.sectionCount(); ++n) {
    const sdp::Section section = offer.section(n);
    if (!section.isReadable() || section.isDisabled()) continue;
    const sdp::Direction now = section.direction();
    const bool sends = now == sdp::Direction::sendrecv || now == sdp::Direction::sendonly;
    if (offer.setDirection(n, sends ? sdp::Direction::sendonly : sdp::Direction::inactive)) return 1;
  }
  for (const sdp::Section& section : offer.sections()) {
    std::cout << section.media() << ' ' << textOf(section.direction()) << '\n';
  }
  return 0;
}
