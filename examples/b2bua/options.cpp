#include "options.h"

#include <CLI/CLI.hpp>

#include "optionFiles.h"
#include "optionTopics.h"

namespace b2bua {

namespace {

constexpr const char* kRules = "Policy";

void addFileOptions(CLI::App& app, Options& options) {
  app.add_option("--config", options.configFile, "TOML with these options, without hyphens")
      ->configurable(false);
  CLI::Option* const policy =
      app.add_option("--policy", options.policyFile, "rules as lines KEY = VALUE, see below");
  app.add_option("--check-policy", options.checked,
                 "a policy, and files with bodies: shows what it does to them, without a call")
      ->excludes(policy)
      ->configurable(false);
  app.set_version_flag("--version", "b2bua " B2BUA_VERSION);
  CLI::App& rules = *app.add_option_group(kRules);
  addMediaOptions(rules, options.media);
  addPolicyOptions(rules, options.policy);
}

}  // namespace

void parseOptions(CLI::App& app, Options& options, const std::vector<std::string>& words) {
  addCallOptions(app, options);
  addTransportOptions(app, options);
  addLimitOptions(app, options);
  addServiceOptions(app, options);
  addFileOptions(app, options);
  app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
  if (!options.configFile.empty()) readConfigFile(app, options.configFile);
  const std::string& policy = options.checked.empty() ? options.policyFile : options.checked.front();
  if (!policy.empty()) readPolicyFile(*app.get_option_group(kRules), policy);
  if (const std::string conflict = conflictOf(options); !conflict.empty())
    throw CLI::ValidationError("--media", conflict);
  for (const Target& target : options.targets) {
    const std::string name = target.transport.empty() ? "udp" : target.transport;
    if (!options.transports.has(name))
      throw CLI::ValidationError("--target", name + " is none of --transports: " + target.place());
  }
  if (options.targets.empty() && options.checked.empty()) throw CLI::RequiredError("--target");
}

}  // namespace b2bua
