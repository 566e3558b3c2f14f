#ifndef B2BUA_CHECK_POLICY_H
#define B2BUA_CHECK_POLICY_H

#include "options.h"

namespace b2bua {

/// Shows on standard output what a policy makes of bodies, each as an offer and as an answer from either party.
/// @param isRelayed  that media will go by way of a relay, which is not asked
/// @param files  the policy's, and those of the bodies
/// @return the exit status: 1 when one is refused, else 0
int checkPolicy(const Policy& policy, bool isRelayed, const std::vector<std::string>& files);

}  // namespace b2bua

#endif
