#ifndef B2BUA_POLICY_STEPS_H
#define B2BUA_POLICY_STEPS_H

#include <sdpDocument.h>

#include <string>

#include "mediaPolicy.h"
#include "side.h"

namespace b2bua {

// What happens to a body on its way from one party to the other. Each step says why the body cannot be used, or nothing.

/// Takes a body from outside in, in the form on which all readers agree: what one takes for a line, no other misses.
/// @param isRelayed  that its media will go by way of a relay
std::string takeIn(const std::string& body, sdp::Document& document, bool isRelayed = false);

/// Parses what was taken in.
std::string parse(const sdp::Document& document, Body& body);

/// What the policy does before the media are relayed: an offer is brought into the engine's terms.
std::string applyBefore(const Policy& policy, Side from, bool isAnswer, Body& body, OfferChanges& changes);

/// What it does behind that: an answer is brought into the terms of its offer, and all goes to the other party as that
/// wants it.
std::string applyBehind(const Policy& policy, Side from, bool isAnswer, Body& body,
                        const OfferChanges& changes);

}  // namespace b2bua

#endif
