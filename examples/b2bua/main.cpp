// A back-to-back user agent that does its SDP work with the library (README.md).

#include <sofia-sip/su_log.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <optional>
#include <sstream>

#include "checkPolicy.h"
#include "service.h"
#include "sip.h"

namespace b2bua {

namespace {

/// Reads the command line and the files that it names.
/// @param errors  gets what is wrong, with its place
/// @return the exit status; none when the program is to run
std::optional<int> readOptions(const std::vector<std::string>& words, Options& options,
                               std::ostream& errors) {
  CLI::App app("A back-to-back user agent for SIP", "b2bua");
  try {
    parseOptions(app, options, words);
  } catch (const CLI::ParseError& error) {
    return app.exit(error, std::cout, errors) == 0 ? 0 : 2;
  }
  return std::nullopt;
}

/// @return what is wrong, in one line
std::string readAgain(const std::vector<std::string>& words, Options& options) {
  std::ostringstream errors;
  if (!readOptions(words, options, errors)) return "";
  return errors.str().substr(0, errors.str().find('\n'));
}

}  // namespace

}  // namespace b2bua

int main(int count, char** arguments) {
  try {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    b2bua::Options options;
    if (const auto status = b2bua::readOptions(words, options, std::cerr)) return *status;
    const bool isRelayed = options.media.kind != b2bua::MediaKind::none;
    if (!options.checked.empty()) return b2bua::checkPolicy(options.policy, isRelayed, options.checked);
    su_init();
    su_log_redirect(
        nullptr, [](void*, const char*, va_list) {}, nullptr);
    b2bua::serve(options, [&](b2bua::Options& again) { return b2bua::readAgain(words, again); });
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "b2bua: %s\n", error.what());
    return 1;
  }
}
