#ifndef SDPNEG_CALL_ANALYSIS_H
#define SDPNEG_CALL_ANALYSIS_H

#include <span>

#include "calls/call.h"
#include "calls/messageFacts.h"

// What the messages of a complete call are to each other. They are in the order of time; `facts` has those of the message
// with the same index.

namespace tool {

/// Finds the messages that repeat others.
void markRetransmissions(Call& call, std::span<const TransactionFacts> facts);

/// Finds offers and answers. Retransmissions are known.
void findExchanges(Call& call, std::span<const TransactionFacts> facts);

/// Finds what participants sent on with a body, or without the one that they got. Roles of bodies are known.
void findHops(Call& call);

/// Tells times, result and state, who calls, and whom.
void tellResult(Call& call, std::span<const TransactionFacts> facts);

}  // namespace tool

#endif
