#ifndef SDP_DIALOG_FAILURE_H
#define SDP_DIALOG_FAILURE_H

#include <cstdint>
#include <string_view>

#include "sdpOfferAnswerExport.h"

// Why a dialog refused something.

namespace sdp {

/// One of the two sides of a dialog.
enum class Party : std::uint8_t { local, remote };
/// "local", "remote".
SDP_OFFER_ANSWER_API std::string_view textOf(Party party) noexcept;

/// Why something was refused; nothing has changed then.
enum class DialogFailure : std::uint8_t {
  none,         ///< nothing was refused
  noMemory,     ///< memory ran out
  textTooLong,  ///< a body has, or would have, more than Document::kMaximumLength characters

  // What the state forbids.
  noOffer = 16,  ///< no offer is pending
  offerPending,  ///< an offer of the same side is pending; to a peer's request SIP answers 500 with Retry-After
  glare,         ///< an offer of the other side is pending; to a peer's request SIP answers 491
  wrongParty,    ///< the pending offer is for the other side to answer
  repeatedAnswer,  ///< no offer is pending, and this answer was taken before: there is nothing to do
  noBody,          ///< nothing was agreed yet

  // What bodies lack.
  brokenBody = 32,    ///< nothing in the body is a session description
  unreadableSection,  ///< an m-line of one's own lacks a field, or has a port or count out of range
  noOrigin,           ///< an offer of one's own has no o-line whose version is a number
  sectionCount,       ///< the answer has another number of sections than the offer, or a new offer fewer
  sectionMedia,       ///< a section of the answer has another media than that of the offer
  noLocalSection,     ///< the local description has no section
  nothingAccepted,    ///< no section would be accepted
  noSection,          ///< there is no section of this number
  tooManySections,    ///< a peer's offer has more sections than Dialog::kMaximumSections

  // Of a serialised dialog.
  damaged = 64,   ///< it is none, or not whole, or changed
  unknownFormat,  ///< it is of a later version of the library
};
/// A failure in words; empty for DialogFailure::none.
SDP_OFFER_ANSWER_API std::string_view textOf(DialogFailure failure) noexcept;

}  // namespace sdp

#endif
