#ifndef SDP_DIALOG_H
#define SDP_DIALOG_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sdpAgreed.h"
#include "sdpAnswer.h"
#include "sdpDialogFailure.h"
#include "sdpDocumentViews.h"
#include "sdpOfferAnswerExport.h"

// The offer/answer state of one side of a dialog (RFC 3264, RFC 6337).

namespace sdp {

namespace exchange {
struct DialogData;
}

/// Whose turn it is.
enum class DialogState : std::uint8_t {
  stable,      ///< no offer waits for an answer
  localOffer,  ///< an offer of one's own waits for the peer's answer
  remoteOffer  ///< the peer's offer waits to be answered here
};
/// "stable", "local offer", "remote offer".
SDP_OFFER_ANSWER_API std::string_view textOf(DialogState state) noexcept;

/// What a call that says no more came to.
struct [[nodiscard]] DialogStatus {
  DialogFailure failure = DialogFailure::none;
  std::uint32_t section = 0;  ///< that it concerns, from 1; 0 for none

  /// True when it was done.
  explicit operator bool() const noexcept { return failure == DialogFailure::none; }
};

/// A body to be sent, or why there is none.
struct [[nodiscard]] LocalBody {
  DialogFailure failure = DialogFailure::none;
  std::uint32_t section = 0;  ///< that a failure concerns, from 1; 0 for none
  std::string text;           ///< what is to be sent; empty when there is nothing
  bool isRefresh = false;     ///< it is the current body again, to the last byte
  std::vector<AnsweredSection>
      sections;  ///< of an answer that was made here: what became of those offered, also when none is accepted

  /// True when there is a body.
  explicit operator bool() const noexcept { return failure == DialogFailure::none; }
};

/// What the o-line of a peer's offer says, next to that of its current body.
enum class OriginChange : std::uint8_t {
  first,         ///< the peer has had no body yet
  refresh,       ///< the same o-line and the same text
  sameVersion,   ///< the same version, and yet another text
  raised,        ///< a higher version
  notRaised,     ///< a lower version
  otherSession,  ///< another user name, session id or address: the peer, or who stands before it, was replaced
  unreadable,    ///< one of both o-lines is missing, or its version is no number
};
/// "first", "refresh", "same version, other text", ...
SDP_OFFER_ANSWER_API std::string_view textOf(OriginChange change) noexcept;

/// What became of a section in a peer's offer, next to the same section of its current body.
enum class SectionChange : std::uint8_t {
  same,      ///< nothing that concerns it differs
  changed,   ///< something does
  added,     ///< it is new, or in the place of one that was disabled
  disabled,  ///< it had a port, and has none any more
};
/// "same", "changed", "added", "disabled".
SDP_OFFER_ANSWER_API std::string_view textOf(SectionChange change) noexcept;

/// A section of a peer's offer.
struct OfferedSection {
  SectionChange change = SectionChange::same;
  /// As the peer means it: sendrecv with the address 0.0.0.0 or ::, without ICE and with another port than 9, is hold
  /// of old, and is told as sendonly.
  Direction direction = Direction::sendrecv;
  bool isOldHold = false;  ///< it was told so by its address
};

/// A peer's offer that was taken, or why it was not.
struct [[nodiscard]] ReceivedOffer {
  DialogFailure failure = DialogFailure::none;
  OriginChange origin = OriginChange::first;
  bool isSessionChanged = false;         ///< lines in front of the first section differ, the o-line apart
  bool hasFewerSections = false;         ///< than the peer's current body, which RFC 3264 (section 8) forbids
  std::vector<OfferedSection> sections;  ///< all of the offer, in its order

  /// True when it was taken.
  explicit operator bool() const noexcept { return failure == DialogFailure::none; }
};

/// A dialog as bytes, or why there are none.
struct [[nodiscard]] DialogBytes {
  DialogFailure failure = DialogFailure::none;
  std::string bytes;

  /// True when there are bytes.
  explicit operator bool() const noexcept { return failure == DialogFailure::none; }
};

/// The bodies of one side of a dialog: those that were agreed, and the offer that waits for its answer.
///
/// | call | stable | local offer | remote offer |
/// |---|---|---|---|
/// | offer, offerAsIs, hold, resume | local offer | offerPending | glare |
/// | receiveOffer | remote offer | glare | offerPending |
/// | answer, answerAsIs | noOffer | wrongParty | stable |
/// | receiveAnswer | noOffer | stable | wrongParty |
/// | rollback | noOffer | stable | stable |
///
/// What is refused changes nothing. Forked calls copy the dialog that has the offer, one for each answer. Copying and
/// moving cannot fail and take no memory: copies share what both have. What was moved from is a new dialog. A dialog is
/// used by one thread at a time; copies are independent.
class SDP_OFFER_ANSWER_API Dialog {
 public:
  /// The most sections that a peer's offer may have: what is agreed of one takes far more memory than its m-line.
  static constexpr std::uint32_t kMaximumSections = 4096;

  /// Nothing was said yet. Allocates nothing.
  Dialog() noexcept = default;

  /// Whose turn it is.
  DialogState state() const noexcept;
  /// Who made the offer that is pending, else the one that was last answered; nothing before the first.
  std::optional<Party> offerer() const noexcept;
  /// The current local body, an offer or an answer; empty before the first answer. As all texts of a dialog valid until
  /// the next call that is not const.
  std::string_view local() const noexcept;
  /// The peer's current body.
  std::string_view remote() const noexcept;
  /// The offer that waits for its answer; empty when the state is stable.
  std::string_view pending() const noexcept;
  /// Whether the peer is held, or is being offered so.
  bool isHeld() const noexcept;

  /// Offers what the engine wants. The first offer has the lines of the description as they are. Later ones have the
  /// sections of the current body in their places: those of the description go there by mid, else by media and order;
  /// what is missing in the description, or disabled there, gets port 0. A disabled section keeps its place: of two of
  /// one media without mids, leaving out the first would remove the second. What is new takes the place of a section
  /// that either side has disabled, else the end. Payload numbers that stand or stood for a codec in a place stay for
  /// it, and what is new takes numbers that had no other meaning there, as long as there are such (RFC 3264, section
  /// 8.3.2). mids are those of the places, also where the description has none. While the peer is held the directions
  /// are those of hold(). The o-line is that of the last body sent, its version raised by one when anything else
  /// differs; the current body comes again as it is, also after another offer that was refused.
  /// @param description as makeAnswer() takes it; it may be without a section
  /// @return the offer, its lines with CR LF; brokenBody, unreadableSection, noOrigin, offerPending, glare, noMemory,
  /// textTooLong
  LocalBody offer(std::string_view description) noexcept;
  /// Offers a body as it is, for engines that make their own.
  /// @return besides those of offer() sectionCount, when the current body has more sections
  LocalBody offerAsIs(std::string_view body) noexcept;
  /// Offers the current body with sendonly in place of sendrecv and inactive in place of recvonly, in each RTP section
  /// that is not disabled. The hold lasts until resume(), also in answers and offers from descriptions that want to
  /// receive; a finished body that receives ends it. While the peer is held, offers the same again. What the peer
  /// disabled is so here as well, and the roles of DTLS are offered anew as actpass (RFC 5763, section 5).
  /// @return besides those of offer() noBody, when nothing was agreed yet
  LocalBody hold() noexcept;
  /// Offers the current body with the directions that the descriptions behind it had, in each RTP section that is not
  /// disabled, whatever the peer made of them: a peer that holds meanwhile answers so. Other sections keep theirs, as
  /// hold() leaves them alone. Where nobody holds, offers the same again. The rest as hold().
  /// @return as hold()
  LocalBody resume() noexcept;

  /// Takes a peer's offer.
  /// @return what it changes; brokenBody, tooManySections, offerPending, glare, noMemory, textTooLong
  ReceivedOffer receiveOffer(std::string_view body) noexcept;
  /// Answers the peer's offer by makeAnswer(), with DTLS roles that were agreed before. Where no answer comes the offer
  /// stays pending: who refuses it because of nothingAccepted (488 in SIP) drops it by rollback().
  /// @param options its `previous` is the dialog's
  /// @return the answer; noLocalSection, nothingAccepted, brokenBody, noOffer, wrongParty, noMemory, textTooLong
  LocalBody answer(std::string_view description, const AnswerOptions& options = {}) noexcept;
  /// Answers by a body that was made elsewhere. checkAnswer() tells what is wrong with one.
  /// @return besides those of answer() sectionCount, sectionMedia, unreadableSection
  LocalBody answerAsIs(std::string_view body) noexcept;
  /// Takes the peer's answer. checkAnswer() tells what is wrong with one that is taken.
  /// @return brokenBody, also where no section can be read, sectionCount, sectionMedia when a section that is not
  /// disabled has another media, repeatedAnswer when it was taken before, noOffer, wrongParty, noMemory, textTooLong
  DialogStatus receiveAnswer(std::string_view body) noexcept;
  /// Drops the offer that is pending: it was refused, or is withdrawn. Its version and payload numbers stay used.
  /// @return noOffer
  DialogStatus rollback() noexcept;

  /// What was agreed, section by section.
  AgreedMedia agreed() const noexcept;
  /// What was agreed of a section, from 1. Reads both bodies: who wants all asks for all.
  /// @return noSection where there is none
  AgreedSection agreed(std::uint32_t section) const noexcept;

  /// The dialog as bytes, for a later restore(), also by another process. They have keys.
  DialogBytes serialise() const noexcept;
  /// Becomes the dialog that was made to bytes.
  /// @return damaged, also where the bodies cannot be a dialog's, unknownFormat, noMemory
  DialogStatus restore(std::string_view bytes) noexcept;

  /// Whether both are in the same state with the same bodies, and will go on alike.
  bool operator==(const Dialog& other) const noexcept;

 private:
  const exchange::DialogData& data() const noexcept;
  void take(exchange::DialogData&& data);
  template <typename Result, typename Work>
  Result changed(Work work) noexcept;

  std::shared_ptr<const exchange::DialogData> data_;  ///< never changed; nothing for a new dialog
};

}  // namespace sdp

#endif
