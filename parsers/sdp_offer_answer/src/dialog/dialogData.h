#ifndef SDP_OFFER_ANSWER_DIALOG_DATA_H
#define SDP_OFFER_ANSWER_DIALOG_DATA_H

// What a dialog holds, and which call its states allow.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sdpDialog.h"

namespace sdp::exchange {

/// What the engine wants of its sections, whatever the peer made of it.
struct Intent {
  bool isHeld = false;
  std::vector<Direction> directions;  ///< of the sections of a body, as they are without hold

  bool operator==(const Intent&) const = default;
};

/// All of a dialog. Documents are read from the texts when they are asked.
struct DialogData {
  DialogState state = DialogState::stable;
  std::optional<Party> offerer;  ///< of what was agreed last
  std::string local;
  std::string remote;
  std::string pending;
  /// The last local body that went out, also when it was refused: then until one goes out that is not the current one.
  std::string sent;
  std::string
      payloads;   ///< what payload numbers of local bodies stand and stood for, as remembered() writes it
  Intent intent;  ///< behind the current local body
  Intent pendingIntent;  ///< behind the local offer that is pending

  bool operator==(const DialogData&) const = default;
};

/// What changes the state of a dialog.
enum class Call : std::uint8_t { offer, receiveOffer, answer, receiveAnswer, rollback };

/// What a call comes to.
struct Transition {
  DialogFailure failure;
  DialogState next;  ///< the same for one that is refused
};
Transition transitionOf(DialogState state, Call call);

}  // namespace sdp::exchange

#endif
