#ifndef B2BUA_OPTION_TOPICS_H
#define B2BUA_OPTION_TOPICS_H

#include <string>

#include "options.h"

namespace b2bua {

// The options of the command line by their topics; `parseOptions` adds all of them. None is `required` for the command
// line: it may stand in the configuration.

void addCallOptions(CLI::App& app, Options& options);
void addTransportOptions(CLI::App& app, Options& options);
void addLimitOptions(CLI::App& app, Options& options);
void addServiceOptions(CLI::App& app, Options& options);
/// Those that may stand in a policy, too.
void addMediaOptions(CLI::App& app, MediaOptions& media);
void addPolicyOptions(CLI::App& app, Policy& policy);

/// @return where the media contradict other options; empty for nowhere
std::string conflictOf(const Options& options);

// Checks as CLI11 takes them: what is wrong, or nothing.

std::string checkAddress(const std::string& text);
std::string checkEndpoint(const std::string& text);

}  // namespace b2bua

#endif
