#ifndef SDP_DOCUMENT_KEYS_H
#define SDP_DOCUMENT_KEYS_H

// Keys, security, direction and connection of a section: its own and what the session gives it.

#include "model.h"
#include "sdpDocumentViews.h"

namespace sdp::core {

/// A section's own, or the session's where that counts for it: for all keys but crypto.
bool hasKey(const Model& model, const Part& section, Kind key);
Security securityOf(const Model& model, const Part& section);

/// The first direction attribute of a part alone.
std::optional<Direction> ownDirectionOf(const Model& model, const Part& part);
Direction directionOf(const Model& model, const Part& section);
Kind kindOf(Direction direction);

/// What a c-line says.
Connection connectionIn(const Line& line);
/// The c-line of a part, or of the session where it has none; kNone without one.
Index connectionLineOf(const Model& model, const Part& part);

/// An ice-options attribute of the part has the word "trickle".
bool hasTrickle(const Model& model, const Part& part);

}  // namespace sdp::core

#endif
