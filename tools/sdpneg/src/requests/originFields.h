#ifndef SDPNEG_ORIGIN_FIELDS_H
#define SDPNEG_ORIGIN_FIELDS_H

#include <optional>
#include <string>

#include "sdpNegotiator.h"

// Where the library looks for the version of an o-line. A user name with a blank has another field in its place.

namespace tool {

/// Why the version must not be raised: the library takes the line's third word for it, and that is another field.
std::optional<std::string> raiseObstacle(const cSdpNegotiator& object);

/// Why the version must not be set: the library takes what stands between the second and the third blank of the text
/// for it, and that is something else.
std::optional<std::string> setObstacle(const cSdpNegotiator& object);

}  // namespace tool

#endif
