#ifndef SDP_DOCUMENT_CODECS_H
#define SDP_DOCUMENT_CODECS_H

// Which codecs a body offers, and in which order.

#include "model.h"
#include "requests/selection.h"
#include "sdpDocumentRefusal.h"

namespace sdp::core {

/// @param list the list as it was given, whose entries are in model.list
Refusal keepCodecs(Model& model, std::string_view list, const Selection& selection);
Refusal dropCodecs(Model& model, std::string_view list, const Selection& selection);
Refusal orderCodecs(Model& model, const Selection& selection);

}  // namespace sdp::core

#endif
