#ifndef SDP_DOCUMENT_PROFILE_H
#define SDP_DOCUMENT_PROFILE_H

// The profile of RTP sections, and the keys that go with it.

#include "model.h"
#include "requests/selection.h"
#include "sdpDocumentRefusal.h"

namespace sdp::core {

/// @param profile one of kProfiles
Refusal setProfile(Model& model, std::string_view profile, const Selection& selection);
Refusal makeOpportunistic(Model& model, const Selection& selection);
Refusal makeSecureOnly(Model& model, const Selection& selection);

}  // namespace sdp::core

#endif
