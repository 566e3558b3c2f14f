#ifndef SDP_OFFER_ANSWER_ARRANGEMENT_H
#define SDP_OFFER_ANSWER_ARRANGEMENT_H

// Which section of a description goes to which place of a new offer (RFC 3264, section 8).

#include <cstdint>
#include <vector>

#include "sdpDocument.h"

namespace sdp::exchange {

/// The sections of a description by places of the body, from 0: the number of the section that goes there, 0 where
/// none does and the place is disabled. There are at least as many places as the local body has sections.
using Arrangement = std::vector<std::uint32_t>;

/// @param wanted what the engine wants now, all of it readable
/// @param local the current local body; empty when there is none, and all sections stay where they are
/// @param remote the peer's current body: a place is disabled when either has it so
Arrangement arrange(const Document& wanted, const Document& local, const Document& remote);

}  // namespace sdp::exchange

#endif
