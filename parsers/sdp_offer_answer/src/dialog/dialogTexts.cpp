// The words of what a dialog tells.

#include "sdpDialog.h"

namespace sdp {

std::string_view textOf(DialogState state) noexcept {
  switch (state) {
    case DialogState::stable:
      return "stable";
    case DialogState::localOffer:
      return "local offer";
    case DialogState::remoteOffer:
      return "remote offer";
  }
  return {};
}

std::string_view textOf(Party party) noexcept { return party == Party::local ? "local" : "remote"; }

std::string_view textOf(DialogFailure failure) noexcept {
  switch (failure) {
    case DialogFailure::none:
      return {};
    case DialogFailure::noMemory:
      return "memory ran out";
    case DialogFailure::textTooLong:
      return "a body would be too long";
    case DialogFailure::noOffer:
      return "no offer is pending";
    case DialogFailure::offerPending:
      return "an offer of the same side is pending";
    case DialogFailure::glare:
      return "an offer of the other side is pending";
    case DialogFailure::wrongParty:
      return "the pending offer is for the other side to answer";
    case DialogFailure::repeatedAnswer:
      return "the answer was taken before";
    case DialogFailure::noBody:
      return "nothing was agreed yet";
    case DialogFailure::brokenBody:
      return "the body is no session description";
    case DialogFailure::unreadableSection:
      return "a section cannot be read";
    case DialogFailure::noOrigin:
      return "there is no o-line with a number as its version";
    case DialogFailure::sectionCount:
      return "the number of sections does not fit";
    case DialogFailure::sectionMedia:
      return "a section has another media than that of the offer";
    case DialogFailure::noLocalSection:
      return "the local description has no section";
    case DialogFailure::nothingAccepted:
      return "no section would be accepted";
    case DialogFailure::noSection:
      return "there is no such section";
    case DialogFailure::tooManySections:
      return "the offer has too many sections";
    case DialogFailure::damaged:
      return "the bytes are no whole dialog";
    case DialogFailure::unknownFormat:
      return "the bytes are of a later version";
  }
  return {};
}

std::string_view textOf(OriginChange change) noexcept {
  switch (change) {
    case OriginChange::first:
      return "first";
    case OriginChange::refresh:
      return "refresh";
    case OriginChange::sameVersion:
      return "same version, other text";
    case OriginChange::raised:
      return "version raised";
    case OriginChange::notRaised:
      return "version not raised";
    case OriginChange::otherSession:
      return "other session";
    case OriginChange::unreadable:
      return "unreadable";
  }
  return {};
}

std::string_view textOf(SectionChange change) noexcept {
  switch (change) {
    case SectionChange::same:
      return "same";
    case SectionChange::changed:
      return "changed";
    case SectionChange::added:
      return "added";
    case SectionChange::disabled:
      return "disabled";
  }
  return {};
}

std::string_view textOf(DtlsRole role) noexcept {
  switch (role) {
    case DtlsRole::none:
      return "none";
    case DtlsRole::client:
      return "client";
    case DtlsRole::server:
      return "server";
  }
  return {};
}

}  // namespace sdp
