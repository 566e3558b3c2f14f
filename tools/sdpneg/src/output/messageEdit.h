#ifndef SDPNEG_MESSAGE_EDIT_H
#define SDPNEG_MESSAGE_EDIT_H

#include <string>
#include <string_view>

#include "input/sipMessage.h"

namespace tool {

/// An input with another SDP body in the place of its own. The numbers of the Content-Length fields around it
/// are corrected, and every other byte stays.
/// @param text the input
/// @param body where its SDP body stands
std::string withBody(std::string_view text, const BodyRange& body, std::string_view newBody);

}  // namespace tool

#endif
