#ifndef SDPNEG_FILE_REPLACEMENT_H
#define SDPNEG_FILE_REPLACEMENT_H

#include <optional>
#include <string>
#include <string_view>

#include "input/place.h"

namespace tool {

/// Writes a file so that it is never seen half written: into a new one in the same folder, which then takes its
/// name. A file that is there already keeps its mode, and its owner where the user may set it; what a symbolic
/// link leads to is written, and the link stays; one that leads to no file is refused. When SIGINT, SIGTERM or
/// SIGHUP ends the program meanwhile, the file is as it was, and the new one is gone.
/// @return what is wrong; the file is as it was then, and nothing else is left behind
std::optional<Problem> replaceFile(const std::string& name, std::string_view bytes);

}  // namespace tool

#endif
