#ifndef PLAIN_OBSTACLES_H
#define PLAIN_OBSTACLES_H

#include <set>

#include "../../sdp_document/test/plainBody.h"
#include "sdpAnswer.h"

// Why a section of an offer cannot be served by one of a local description, in the plainest way: it shares nothing with
// the library's own choice.

namespace plain {

using Obstacles = std::set<sdp::SectionOutcome>;

/// @param offered section of the offer, which is readable and not disabled
/// @param served  one of the local description, of the same media
/// @return all reasons; empty where the two must come together
Obstacles obstaclesBetween(const PlainBody& offer, std::size_t offered, const PlainBody& local,
                           std::size_t served);

}  // namespace plain

#endif
