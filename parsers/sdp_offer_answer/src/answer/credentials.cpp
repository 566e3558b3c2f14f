// Which keys and ICE credentials an answer has.

#include "answer/credentials.h"

#include <algorithm>

namespace sdp::exchange {
namespace {

/// Those that stay in the session; setup is told by each section.
constexpr std::array<Credential, 4> kOfSession{Credential::fingerprint, Credential::tlsId,
                                               Credential::iceUfrag, Credential::icePwd};

/// Whether a section is answered with a credential that it has from the local session.
bool isFromSession(const Sides& sides, const Accepted& section, Credential credential) {
  const bool isOfIce = credential == Credential::iceUfrag || credential == Credential::icePwd;
  const bool isAnswered = isOfIce                           ? hasAnsweredIce(sides, section)
                          : credential == Credential::tlsId ? hasAnsweredTlsId(sides, section)
                                                            : hasAnsweredTls(section);
  const Accepted& bearer = isOfIce ? *section.leader : section;
  return isAnswered && sides.own.placeOf(bearer.local.index(), credential) == Place::session;
}

/// Whether all accepted sections are answered so, and there are some.
bool areAllFromSession(const Sides& sides, const Matches& matches, Credential credential) {
  bool hasOne = false;
  for (std::uint32_t index = 1; index <= matches.sections().size(); ++index) {
    const Accepted* const section = matches.find(index);
    if (section == nullptr) continue;
    if (!isFromSession(sides, *section, credential)) return false;
    hasOne = true;
  }
  return hasOne;
}

}  // namespace

bool hasAnsweredTlsId(const Sides& sides, const Accepted& section) {
  return hasAnsweredTls(section) && sides.offered.has(section.offered.index(), Credential::tlsId);
}

bool hasAnsweredIce(const Sides& sides, const Accepted& section) {
  const Accepted& leader = *section.leader;
  return sides.offered.hasIce(leader.offered.index()) && sides.own.hasIce(leader.local.index());
}

SessionCredentials::SessionCredentials(const Sides& sides, const Matches& matches) {
  for (const Credential credential : kOfSession)
    areThere_[static_cast<std::size_t>(credential)] = areAllFromSession(sides, matches, credential);
}

bool SessionCredentials::have(std::string_view attribute) const {
  return std::any_of(kOfSession.begin(), kOfSession.end(), [&](Credential credential) {
    return have(credential) && nameOf(credential) == attribute;
  });
}

}  // namespace sdp::exchange
