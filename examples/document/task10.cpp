// Reads an attribute that no RFC has, and edits a section by hand.

#include <string>

#include "bodies.h"

int main() {
  sdp::Document offer;
  if (offer.read(kPhoneOffer)) return 1;
  const std::optional<sdp::Attribute> line = offer.section(1).attribute("x-line");
  if (!line) return 1;
  std::cout << "from the " << line->fields()[0] << ", line " << line->fields()[1] << '\n';

  const std::string moved =
      "hall " + std::string(line->fields()[1]);                   // of its own: the next edit ends `line`
  const bool refused = offer.setAttribute(1, "x-line", moved) ||  // replaced where it stands
                       offer.addAttribute(1, "ptime", "20") ||    // at the section's end
                       offer.removeAttributes(1, "crypto") ||     // both of them
                       offer.setTransport(1, "RTP/AVP") ||
                       offer.setConnection(1, "192.0.2.21");  // of this section alone
  if (refused) return 1;
  for (const sdp::Line& now : offer.section(1).lines()) std::cout << now.content << '\n';
  return 0;
}
