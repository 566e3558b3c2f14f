// Makes a browser's offer one that a phone understands. The relay at 192.0.2.9 answers the browser's ICE and DTLS.

#include "bodies.h"

int main() {
  sdp::Document offer;
  if (offer.read(kBrowserOffer)) return 1;
  const bool refused =
      sdp::canonicalise(offer) ||                                      // no line that a phone reads otherwise
      sdp::unbundle(offer) ||                                          // a port for each section
      sdp::keepCodecs(offer, "PCMA,PCMU,telephone-event", "audio") ||  // what the phone has
      sdp::disable(offer, "video") ||                                  // it has no screen
      sdp::disable(offer, "application") ||                            // nor does it know data channels
      sdp::setProfile(offer, "RTP/AVP", "audio") ||                    // without keys and feedback
      sdp::stripAttributes(offer, "rtcp-mux,msid*,ssrc*,extmap*") ||   // before anchor, for RTCP's port
      sdp::anchor(offer, "192.0.2.9", 20000);                          // in the end, when the ports are known
  if (refused) {
    std::cout << offer.explanation() << '\n';
    return 1;
  }
  for (const sdp::Line& line : offer.session().lines()) std::cout << line.content << '\n';
  for (const sdp::Line& line : offer.section(1).lines()) std::cout << line.content << '\n';
  for (const std::uint32_t n : {2U, 3U}) std::cout << offer.section(n).lines().begin()->content << '\n';
  return 0;
}
