#ifndef SDPNEG_TROUBLES_H
#define SDPNEG_TROUBLES_H

#include <span>
#include <string_view>

#include "calls/bodyCache.h"
#include "calls/call.h"

// What is wrong in a call: findings of the judge for each pair of offer and answer, and what is known to go wrong between
// hops and in the course of calls.

namespace tool {

/// A rule that is not one of the judge.
struct TroubleRule {
  std::string_view name;  ///< "one-way"
  bool isWarning;
  std::string_view meaning;  ///< for the documentation and the page
};
std::span<const TroubleRule> troubleRules();

/// Fills in what is wrong, by message.
void findTroubles(Call& call);
/// The same for one call of many.
/// @param bodies those of this call
void findTroubles(Call& call, BodyCache& bodies);

}  // namespace tool

#endif
