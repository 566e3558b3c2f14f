#include "options.h"

#include <algorithm>
#include <cctype>
#include <fstream>

#include <CLI/CLI.hpp>

#include "optionTopics.h"

namespace b2bua {

namespace {

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t\r") + 1 - first);
}

bool hasWord(const std::string& text, const std::string& word) {
  const auto ends = [&](std::size_t at) {
    return at >= text.size() || (std::isalnum(text[at]) == 0 && text[at] != '-');
  };
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
    const bool begins = at == 0 || std::isalnum(text[at - 1]) == 0;
    if (begins && ends(at + word.size())) return true;
  }
  return false;
}

}  // namespace

void addOptions(CLI::App& app, Options& options) {
  addCallOptions(app, options);
  addLimitOptions(app, options);
  addServiceOptions(app, options);
  app.set_config("--policy", "",
                 "file with rules: lines NAME = VALUE with the options below, without hyphens");
  app.allow_config_extras(false);
  addPolicyOptions(app, options.policy);
}

// The error names the rule, but not where it stands.
std::string placeOf(const CLI::ParseError& error, const CLI::App& app,
                    const std::vector<std::string>& words) {
  const CLI::Option* const policy = app.get_config_ptr();
  if (error.get_exit_code() == 0 || policy == nullptr || policy->count() == 0) return "";
  const std::string name = policy->as<std::string>();
  std::ifstream file(name);
  int number = 0;
  std::string place;
  for (std::string line; std::getline(file, line);) {
    ++number;
    const std::string key = trimmed(line.substr(0, line.find_first_of("=#;")));
    const auto isKey = [&](const std::string& word) { return word.substr(0, word.find('=')) == "--" + key; };
    // There are no sections of rules.
    if (key.starts_with('[') && place.empty()) place = name + ":" + std::to_string(number) + ": ";
    if (!key.empty() && hasWord(error.what(), key) && std::ranges::none_of(words, isKey))
      place = name + ":" + std::to_string(number) + ": ";
  }
  return place;
}

}  // namespace b2bua
