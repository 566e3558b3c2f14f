// How much is taken, and how the program runs.

#include <CLI/CLI.hpp>

#include "optionTopics.h"

namespace b2bua {

namespace {

const std::vector<std::pair<std::string, LogFormat>> kLogFormats = {{"text", LogFormat::text},
                                                                    {"json", LogFormat::json}};

}  // namespace

void addLimitOptions(CLI::App& app, Options& options) {
  app.add_option("--max-calls", options.maxCalls, "at a time")->capture_default_str();
  app.add_option("--max-invites", options.maxInvites, "per second")->capture_default_str();
  app.add_option("--max-transactions", options.maxTransactions,
                 "at a time, with those of the last 32 seconds")
      ->capture_default_str();
  app.add_option("--max-calls-per-source", options.maxCallsPerSource,
                 "new ones in a second; 0 for any number")
      ->capture_default_str();
  app.add_option("--max-messages-per-source", options.maxMessagesPerSource, "in a second; 0 for any number")
      ->capture_default_str();
  app.add_option("--max-memory", options.maxMemory, "MB with which further calls are taken; 0 for any")
      ->capture_default_str();
  app.add_option("--trusted", options.trusted, "addresses without limits of their own, with commas")
      ->delimiter(',')
      ->check(checkAddress);
}

void addServiceOptions(CLI::App& app, Options& options) {
  app.add_option("--state", options.state,
                 "redis://HOST:PORT or redis+sentinel://HOST:PORT,.../NAME keeps calls, for other processes");
  app.add_option("--log", options.logFile, "file instead of standard error");
  app.add_option("--log-format", options.logFormat, "text, or json: an object a line")
      ->transform(CLI::CheckedTransformer(kLogFormats).description(""));
  app.add_option("--http", options.http,
                 "HOST:PORT of /metrics, /healthz and /readyz; port 0 takes a free one")
      ->check(checkEndpoint);
  app.add_option("--drain-seconds", options.drainSeconds, "that running calls have after SIGTERM")
      ->capture_default_str();
  app.add_flag("--show", options.show, "each body before and after on standard output");
  app.add_flag("--trace", options.trace, "the library's own lines in the log too");
}

}  // namespace b2bua
