// Puts a relay between two parties: A sends to the relay at 192.0.2.9, B to the relay at 198.51.100.9.

#include <string>
#include <vector>

#include "bodies.h"

namespace {

/// B takes the audio and declines the video.
constexpr std::string_view kAnswer =
    "v=0\r\n"
    "o=b 3 1 IN IP4 203.0.113.5\r\n"
    "s=-\r\n"
    "t=0 0\r\n"
    "m=audio 50000 RTP/SAVP 8 101\r\n"
    "c=IN IP4 203.0.113.5\r\n"
    "a=rtpmap:101 telephone-event/8000\r\n"
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVz\r\n"
    "m=video 0 RTP/AVP 99\r\n";

/// Where a section wants to receive, as "192.0.2.20:40000".
std::string placeOf(const sdp::Section& section) {
  const std::optional<sdp::Connection> connection = section.connection();
  const std::string_view address = connection ? connection->address : "nowhere";
  return std::string(address) + ":" + std::to_string(section.port());
}

std::vector<std::string> placesOf(const sdp::Document& body) {
  std::vector<std::string> places;
  for (const sdp::Section& section : body.sections()) places.push_back(placeOf(section));
  return places;
}

}  // namespace

int main() {
  sdp::Document offer;
  sdp::Document answer;
  // A's offer goes on to B with the relay in place of A. Where A itself receives is noted before.
  if (offer.read(kPhoneOffer) || sdp::canonicalise(offer)) return 1;
  const std::vector<std::string> a = placesOf(offer);
  if (sdp::anchor(offer, "198.51.100.9", 30000)) return 1;
  // B's answer goes back to A with the relay in place of B.
  if (answer.read(kAnswer) || sdp::canonicalise(answer)) return 1;
  const std::vector<std::string> b = placesOf(answer);
  if (sdp::anchor(answer, "192.0.2.9", 20000)) return 1;

  // An answer has the sections of its offer in their order (RFC 3264, section 6), so they go together by number.
  if (answer.sectionCount() != offer.sectionCount()) return 1;
  for (const sdp::Section& section : answer.sections()) {
    const std::uint32_t n = section.index();
    if (section.isDisabled()) {
      std::cout << section.media() << ": declined\n";
      continue;
    }
    std::cout << section.media() << ": from A at " << placeOf(section) << " to B at " << b[n - 1]
              << "; from B at " << placeOf(offer.section(n)) << " to A at " << a[n - 1] << '\n';
  }
  return 0;
}
