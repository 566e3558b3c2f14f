#ifndef SDP_DOCUMENT_LINE_PLACES_H
#define SDP_DOCUMENT_LINE_PLACES_H

// Where the lines of parts lie, so that a part takes lines at the cost of its own: one that has no room moves behind all
// others, with room to grow. What it leaves is won back when there is more of that than of what is in use.

#include "model.h"

namespace sdp::core {

/// Allocates what taking all additions in needs. None of the parts may have two of them.
void reserveForAdditions(Model& model);
/// Gives all additions their places. Allocates nothing.
void takeAdditionsIn(Model& model);

/// Allocates what moving all parts together needs.
inline void reserveForPacking(Model& model) { model.places.reserve(model.parts.size()); }
/// Moves all parts together, without lines that are gone. Allocates nothing.
void packLines(Model& model);

}  // namespace sdp::core

#endif
