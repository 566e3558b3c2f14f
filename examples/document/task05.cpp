// Finds the DTLS role that answers an offer (RFC 5763, section 5), and writes it.

#include "bodies.h"

namespace {

/// The role of who answers; empty where there is no DTLS.
std::string_view roleOfAnswer(const sdp::Section& offered) {
  if (offered.fingerprintHash().empty()) return {};
  const std::string_view setup = offered.setup();  // its own or the session's
  if (setup == "actpass" || setup == "passive") return "active";
  if (setup == "holdconn") return "holdconn";
  return "passive";  // what was offered is active, also where nothing is said (RFC 4145, section 4)
}

}  // namespace

int main() {
  sdp::Document offer;
  sdp::Document answer;
  if (offer.read(kBrowserOffer) || answer.read(kBrowserOffer)) return 1;
  for (const sdp::Section& section : offer.sections()) {
    const std::string_view role = roleOfAnswer(section);
    if (!role.empty() && answer.setAttribute(section.index(), "setup", role)) return 1;
    std::cout << section.media() << ": " << section.fingerprintHash() << ", offered " << section.setup()
              << ", answered " << answer.section(section.index()).setup() << '\n';
  }
  return 0;
}
