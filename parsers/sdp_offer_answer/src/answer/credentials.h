#ifndef SDP_OFFER_ANSWER_CREDENTIALS_H
#define SDP_OFFER_ANSWER_CREDENTIALS_H

// Which keys and ICE credentials an answer has, and which of them stand in its session.

#include <array>
#include <string_view>

#include "answer/sides.h"

namespace sdp::exchange {

/// Whether a section has TLS or DTLS in the answer.
inline bool hasAnsweredTls(const Accepted& section) { return section.keys.protection >= Protection::dtls; }
/// Whether a section has an identity of TLS in the answer, where there is one of ours.
bool hasAnsweredTlsId(const Sides& sides, const Accepted& section);
/// Whether a section has ICE in the answer; the first of its group decides.
bool hasAnsweredIce(const Sides& sides, const Accepted& section);

/// What of the local session's fingerprints, identities of TLS and ICE credentials stays in the session: each that all
/// accepted sections have from there.
class SessionCredentials {
 public:
  SessionCredentials(const Sides& sides, const Matches& matches);

  bool have(Credential credential) const { return areThere_[static_cast<std::size_t>(credential)]; }
  bool have(std::string_view attribute) const;

 private:
  std::array<bool, kCredentials> areThere_{};
};

}  // namespace sdp::exchange

#endif
