#ifndef B2BUA_SERVICE_H
#define B2BUA_SERVICE_H

#include "options.h"

namespace b2bua {

/// Runs the engine until a signal ends it. Throws std::runtime_error when it cannot start.
/// @param words  that the options came from; with the files that they name they are read again when a signal asks for it
void serve(const Options& options, const std::vector<std::string>& words);

}  // namespace b2bua

#endif
