#ifndef SDPNEG_NEAREST_NAME_H
#define SDPNEG_NEAREST_NAME_H

#include <span>
#include <string_view>

namespace tool {

/// The name that was most likely meant by a word that is none: the one with the fewest letters to change, or else the
/// only one that begins with it. Empty when none is near.
std::string_view nearestName(std::string_view word, std::span<const std::string_view> names);

}  // namespace tool

#endif
