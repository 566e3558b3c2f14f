#ifndef SDP_ANSWER_H
#define SDP_ANSWER_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sdpDocument.h"
#include "sdpOfferAnswerExport.h"

// The answer to an offer (RFC 3264, section 6).

namespace sdp {

/// What an engine wants of an answer beside its local description.
struct AnswerOptions {
  bool prefersLocal = false;  ///< formats in the local description's order, not in the offer's
  bool isSingle = false;      ///< one codec, and what serves it, in each section
  bool isPassive = false;     ///< the passive role of DTLS where the offer leaves the choice
  const Document* previous =
      nullptr;  ///< the answer given before in the dialog, whose session and roles go on
};

/// Why there is no answer.
enum class AnswerFailure : std::uint8_t {
  none,             ///< there is one
  noMemory,         ///< memory ran out
  textTooLong,      ///< it would have more than Document::kMaximumLength characters
  brokenOffer,      ///< nothing in the offer is a session description
  noLocalSection,   ///< the local description has no section
  nothingAccepted,  ///< no section would be accepted
};
/// A failure in words; empty for AnswerFailure::none.
SDP_OFFER_ANSWER_API std::string_view textOf(AnswerFailure failure) noexcept;

/// What became of a section of the offer.
enum class SectionOutcome : std::uint8_t {
  accepted,
  disabled,             ///< the offer has it with port 0
  unreadable,           ///< its m-line lacks a field, or has a port or count out of range
  noLocalSection,       ///< no section of this media is left in the local description
  otherTransport,       ///< none of the local ones can serve the transport
  noCommonFormat,       ///< no codec in common
  noCommonKeys,         ///< no key for its profile that both know
  notProtected,         ///< the local section is plain and the offer secure, or secure and the offer plain
  otherMulticast,       ///< it has a multicast address, and the local one another
  otherRateManagement,  ///< T.38: both tell how rates are managed, and differ
  notInGroup,           ///< bundled only, and nothing of its group is accepted that has a port
};
/// An outcome in words, "no codec in common".
SDP_OFFER_ANSWER_API std::string_view textOf(SectionOutcome outcome) noexcept;

/// A section of an answer.
struct AnsweredSection {
  SectionOutcome outcome = SectionOutcome::unreadable;
  std::uint32_t local = 0;  ///< the section of the local description that serves it, from 1; 0 for none
};

/// An answer, or why there is none.
struct SDP_OFFER_ANSWER_API Answer {
  AnswerFailure failure = AnswerFailure::none;
  std::string text;                       ///< empty when there is none
  std::vector<AnsweredSection> sections;  ///< those of the offer, in its order

  /// True when there is an answer.
  explicit operator bool() const noexcept { return failure == AnswerFailure::none; }
};

/// Answers an offer for an engine that ends the media, itself or by way of a relay.
/// @param offer what the peer sent
/// @param local what the engine can do, as an SDP text: for each medium a section with address, port, profile, formats
/// in its order of preference, fmtp, direction, keys, ICE, mid
/// The documents, also options.previous, are used by one thread at a time, for they keep what was asked of them.
/// @return the answer; its lines end with CR LF. An offer without sections, or with disabled ones alone, is answered in
/// kind
[[nodiscard]] SDP_OFFER_ANSWER_API Answer makeAnswer(const Document& offer, const Document& local,
                                                     const AnswerOptions& options = {}) noexcept;

}  // namespace sdp

#endif
