#ifndef B2BUA_SERVICE_H
#define B2BUA_SERVICE_H

#include <functional>
#include <string>

#include "options.h"

namespace b2bua {

/// Reads command line and files again, as at the start.
/// @return what is wrong with them and where; empty when nothing is
using ReadOptions = std::function<std::string(Options& options)>;

/// Runs the engine until a signal ends it. Throws std::runtime_error when it cannot start.
void serve(const Options& options, const ReadOptions& readAgain);

}  // namespace b2bua

#endif
