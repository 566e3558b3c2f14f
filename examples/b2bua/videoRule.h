#ifndef B2BUA_VIDEO_RULE_H
#define B2BUA_VIDEO_RULE_H

#include "mediaPolicy.h"

namespace b2bua {

/// Refuses video, or caps what it asks for.
/// @return why the body cannot be used; empty when it can
std::string limitVideo(const Policy& policy, Body& body, OfferChanges& changes);

/// @return a body with the bandwidths and the H.264 levels of its video lowered to the policy's. A bandwidth of the
/// session counts where nothing but video has a port.
std::string withVideoCapped(const Policy& policy, const std::string& body);

}  // namespace b2bua

#endif
