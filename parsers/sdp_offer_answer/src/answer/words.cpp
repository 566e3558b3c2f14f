// Failures and outcomes in words.

#include "sdpAnswer.h"

namespace sdp {

std::string_view textOf(AnswerFailure failure) noexcept {
  switch (failure) {
    case AnswerFailure::none:
      return "";
    case AnswerFailure::noMemory:
      return "memory ran out";
    case AnswerFailure::textTooLong:
      return "the answer would be too long";
    case AnswerFailure::brokenOffer:
      return "the offer is no session description";
    case AnswerFailure::noLocalSection:
      return "the local description has no section";
    case AnswerFailure::nothingAccepted:
      return "no section would be accepted";
  }
  return "";
}

std::string_view textOf(SectionOutcome outcome) noexcept {
  switch (outcome) {
    case SectionOutcome::accepted:
      return "accepted";
    case SectionOutcome::disabled:
      return "disabled";
    case SectionOutcome::unreadable:
      return "an unreadable m-line";
    case SectionOutcome::noLocalSection:
      return "no local section of this media left";
    case SectionOutcome::otherTransport:
      return "no local section can serve the transport";
    case SectionOutcome::noCommonFormat:
      return "no codec in common";
    case SectionOutcome::noCommonKeys:
      return "no keys in common";
    case SectionOutcome::notProtected:
      return "only one side is protected";
    case SectionOutcome::otherMulticast:
      return "another multicast address";
    case SectionOutcome::otherRateManagement:
      return "another rate management of T.38";
    case SectionOutcome::notInGroup:
      return "no section of its group has a port for it";
  }
  return "";
}

}  // namespace sdp
