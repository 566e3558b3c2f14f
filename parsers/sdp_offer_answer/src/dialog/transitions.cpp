// The states of a dialog as a table (RFC 3264, section 4; RFC 3261, section 14; RFC 3311, section 5).

#include <array>

#include "dialogData.h"

namespace sdp::exchange {
namespace {

constexpr std::size_t kCalls = 5;
using Row = std::array<Transition, kCalls>;

constexpr DialogState kStable = DialogState::stable;
constexpr DialogState kLocal = DialogState::localOffer;
constexpr DialogState kRemote = DialogState::remoteOffer;
constexpr DialogFailure kDone = DialogFailure::none;

/// A row for each state, a column for each call.
constexpr std::array<Row, 3> kTransitions{{
    {{{kDone, kLocal},
      {kDone, kRemote},
      {DialogFailure::noOffer, kStable},
      {DialogFailure::noOffer, kStable},
      {DialogFailure::noOffer, kStable}}},
    {{{DialogFailure::offerPending, kLocal},
      {DialogFailure::glare, kLocal},
      {DialogFailure::wrongParty, kLocal},
      {kDone, kStable},
      {kDone, kStable}}},
    {{{DialogFailure::glare, kRemote},
      {DialogFailure::offerPending, kRemote},
      {kDone, kStable},
      {DialogFailure::wrongParty, kRemote},
      {kDone, kStable}}},
}};

}  // namespace

Transition transitionOf(DialogState state, Call call) {
  return kTransitions[static_cast<std::size_t>(state)][static_cast<std::size_t>(call)];
}

}  // namespace sdp::exchange
