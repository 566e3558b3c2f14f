// Refuses an offer with a status that SIP has for the reason, and tells the operator more.

#include "bodies.h"

namespace {

std::string_view statusOf(const sdp::Refusal& refusal) {
  if (refusal.isOfArguments()) return "500 Server Internal Error";  // the policy is wrong, not the offer
  switch (refusal.reason) {
    case sdp::Reason::noMemory:
    case sdp::Reason::noPortLeft:
      return "503 Service Unavailable";
    case sdp::Reason::noCommonCodec:
    case sdp::Reason::noKeys:
    case sdp::Reason::noFingerprint:
    case sdp::Reason::sessionKeysInUse:
    case sdp::Reason::differentTransports:
    case sdp::Reason::pathAttribute:
      return "488 Not Acceptable Here";  // sound, but nothing that can be led on
    default:
      return "400 Bad Request";  // no SDP, or none that all read alike
  }
}

void tell(const sdp::Document& offer, const sdp::Refusal& refusal) {
  std::cout << statusOf(refusal) << '\n' << "  line " << refusal.line << ", " << offer.explanation() << '\n';
}

}  // namespace

int main() {
  sdp::Document offer;
  if (offer.read(kPhoneOffer)) return 1;
  // The video goes for lack of VP8, and the audio has no opus: nothing would be left.
  if (const sdp::Refusal refusal = sdp::keepCodecs(offer, "opus,VP8")) tell(offer, refusal);
  if (const sdp::Refusal refusal = sdp::setProfile(offer, "UDP/TLS/RTP/SAVP")) tell(offer, refusal);
  if (const sdp::Refusal refusal = sdp::anchor(offer, "relay.example", 20000)) tell(offer, refusal);
  std::cout << (offer.text() == kPhoneOffer ? "unchanged" : "changed") << '\n';
  return 0;
}
