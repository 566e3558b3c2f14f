#ifndef SDPNEG_CALLS_MEDIA_H
#define SDPNEG_CALLS_MEDIA_H

#include <string>
#include <string_view>
#include <vector>

#include "calls/bodyCache.h"
#include "calls/call.h"

// What the bodies of a call say, in short.

namespace tool {

/// A body in a few words, a section after the other: "audio PCMA,PCMU,telephone-event sendrecv 192.0.2.1:4000 plain".
/// At most some hundred characters; printable.
std::string shortForm(std::string_view sdp);

/// Fills in codecs and security of a call by its last exchange that was answered and not refused.
void describeMedia(Call& call);
/// The same for one call of many.
/// @param bodies those of this call
void describeMedia(Call& call, BodyCache& bodies);

}  // namespace tool

#endif
