#ifndef SDPNEG_MANUAL_H
#define SDPNEG_MANUAL_H

#include <string>

namespace tool {

/// The manual page's section about the commands, as man(7) source.
std::string manualCommands();

}  // namespace tool

#endif
