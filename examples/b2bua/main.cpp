// A back-to-back user agent that does its SDP work with the library (README.md).

#include <sofia-sip/su_log.h>

#include <CLI/CLI.hpp>
#include <cstdio>

#include "checkPolicy.h"
#include "service.h"
#include "sip.h"

int main(int count, char** arguments) {
  try {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    b2bua::Options options;
    CLI::App app("A back-to-back user agent for SIP", "b2bua");
    try {
      b2bua::parseOptions(app, options, words);
    } catch (const CLI::ParseError& error) {
      return app.exit(error) == 0 ? 0 : 2;
    }
    const bool isRelayed = options.media.kind != b2bua::MediaKind::none;
    if (!options.checked.empty()) return b2bua::checkPolicy(options.policy, isRelayed, options.checked);
    su_init();
    su_log_redirect(
        nullptr, [](void*, const char*, va_list) {}, nullptr);
    b2bua::serve(options, words);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "b2bua: %s\n", error.what());
    return 1;
  }
}
