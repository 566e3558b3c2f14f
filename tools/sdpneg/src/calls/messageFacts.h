#ifndef SDPNEG_MESSAGE_FACTS_H
#define SDPNEG_MESSAGE_FACTS_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "captures/sipView.h"

// What tells to which dialog and to which transaction a SIP message belongs.

namespace tool {

/// What is asked of a message beside what its call keeps of it.
struct TransactionFacts {
  std::string branch;         ///< of the top Via; empty without one
  std::uint64_t rseq = 0;     ///< of a reliable provisional response; 0 for others
  std::uint64_t ackRseq = 0;  ///< the response that a PRACK acknowledges
  std::uint64_t ackCseq = 0;  ///< and the request that it answered
};

struct MessageFacts {
  std::string callId;
  std::string method;  ///< of a request, and of a response that of its CSeq
  int status = 0;      ///< 0 for a request
  std::uint64_t cseq = 0;
  std::string fromTag;
  std::string toTag;
  TransactionFacts transaction;
};

/// Nothing for a message without Call-ID or CSeq.
std::optional<MessageFacts> factsOf(const SipView& view);

/// Whether a final response tells the caller what to change, so that calls go on with another INVITE: credentials, another
/// place, headers, media or timers.
bool asksForAnother(int status);

/// The URI of a From, To or Contact, without display name, angle brackets and parameters.
std::string uriOf(std::string_view value);

/// The user part of a URI, without its password and parameters; the number of a tel URI.
std::string_view userOf(std::string_view uri);

/// A user part for comparisons: a number without '+' or "00" in front and without visual separators, any other one as
/// it is.
std::string comparableUser(std::string_view user);

}  // namespace tool

#endif
