#include "optionFiles.h"

#include <toml++/toml.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <string_view>

namespace b2bua {

namespace {

constexpr const char* kBlanks = " \t\r";

/// Where something stands in a file.
struct Place {
  const std::string& file;
  std::size_t line;
  std::size_t column;

  [[noreturn]] void fail(const std::string& text) const {
    throw CLI::FileError(file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + text);
  }
};

/// What an option is given.
struct Word {
  std::string text;
  Place place;
};

bool takesSeveral(const CLI::Option& option) { return option.get_items_expected_max() > 1; }

/// Without the blanks around it.
std::string_view trimmed(std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(kBlanks), text.size());
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

/// The words of a value, of which some options have one, and others have several, with blanks and commas between them
/// or with what may stand for these on the command line.
std::vector<Word> wordsOf(const CLI::Option& option, std::string_view value, const Place& place) {
  const std::string_view ends = !takesSeveral(option) ? "" : option.get_delimiter() == ';' ? ";" : " \t,";
  std::vector<Word> words;
  for (std::size_t begin = 0; begin < value.size();) {
    const std::size_t end = std::min(value.find_first_of(ends, begin), value.size());
    const std::string_view word = trimmed(value.substr(begin, end - begin));
    const auto offset = static_cast<std::size_t>(word.data() - value.data());
    if (!word.empty()) words.push_back({std::string(word), {place.file, place.line, place.column + offset}});
    begin = end + 1;
  }
  return words;
}

/// Gives an option its words as the command line would.
void give(CLI::Option& option, const std::vector<Word>& words) {
  if (option.count() != 0) return;
  try {
    for (const Word& word : words) option.add_result(word.text);
    option.run_callback();
  } catch (const WordError& error) {
    Place place = words[std::min(error.word(), words.size() - 1)].place;
    place.column += error.offset();
    place.fail(error.what());
  } catch (const CLI::ParseError& error) {
    const std::string_view text = error.what();
    const auto named =
        std::ranges::find_if(words, [&](const Word& word) { return text.ends_with(word.text); });
    (named != words.end() ? *named : words.front()).place.fail(error.what());
  }
}

/// @return the option of a key; null for none that a file may have
CLI::Option* optionOf(CLI::App& app, std::string_view key) {
  CLI::Option* const option = app.get_option_no_throw("--" + std::string(key));
  return option != nullptr && option->get_configurable() ? option : nullptr;
}

std::ifstream opened(const std::string& file) {
  std::ifstream input(file);
  input.peek();  // a folder can be opened, but not read
  if (!input.is_open() || input.bad()) throw CLI::FileError(file + ": cannot be read");
  return input;
}

// -- the lines of a policy

void readRule(CLI::App& rules, std::string_view line, const Place& start, std::set<std::string>& seen) {
  const std::string_view text = line.substr(0, line.find('#'));
  const std::size_t equals = std::min(text.find('='), text.size());
  const std::string key(trimmed(text.substr(0, equals)));
  const Place place{start.file, start.line, std::min(text.find_first_not_of(kBlanks), text.size()) + 1};
  if (trimmed(text).empty()) return;
  if (equals == text.size()) place.fail("no KEY = VALUE: " + key);
  CLI::Option* const option = optionOf(rules, key);
  if (option == nullptr) place.fail("unknown key: " + key);
  if (!seen.insert(key).second) place.fail("given twice: " + key);
  const Place behind{start.file, start.line, equals + 2};
  const std::vector<Word> words = wordsOf(*option, text.substr(equals + 1), behind);
  if (words.empty()) behind.fail("no value for " + key);
  give(*option, words);
}

// -- TOML

Place placeOf(const std::string& file, const toml::source_region& region) {
  return {file, region.begin.line, region.begin.column};
}

/// @return whether an option takes numbers; a check may be named behind its type
bool isNumber(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  return type.starts_with("UINT") || type.starts_with("INT") || type.starts_with("FLOAT");
}

/// @return whether it takes texts, of which some checks make numbers: "512M"
bool isText(const CLI::Option& option) {
  return !isNumber(option) || option.get_type_name().find(':') != std::string::npos;
}

/// @return the text of a value of the type that an option takes; none for others
std::optional<std::string> textOf(const CLI::Option& option, const toml::node& node) {
  const bool isFlag = option.get_items_expected_max() == 0;
  if (const auto* const flag = node.as_boolean()) {
    if (isFlag) return flag->get() ? "true" : "false";
  } else if (const auto* const number = node.as_integer()) {
    if (isNumber(option) && number->get() >= 0) return std::to_string(number->get());
  } else if (const auto* const text = node.as_string()) {
    if (!isFlag && isText(option)) return text->get();
  }
  return std::nullopt;
}

const char* typeOf(const CLI::Option& option) {
  if (option.get_items_expected_max() == 0) return "true or false";
  if (isNumber(option)) return "a whole number";
  return takesSeveral(option) ? "a text, or an array of texts" : "a text";
}

void readValue(CLI::Option& option, const std::string& key, const std::string& file, const toml::node& node) {
  const auto textIn = [&](const toml::node& value) {
    const std::optional<std::string> text = textOf(option, value);
    if (!text) placeOf(file, value.source()).fail(key + " is " + typeOf(option));
    return *text;
  };
  std::vector<Word> words;
  if (const toml::array* const array = node.as_array(); array != nullptr && takesSeveral(option)) {
    for (const toml::node& each : *array) words.push_back({textIn(each), placeOf(file, each.source())});
  } else {
    Place place = placeOf(file, node.source());
    if (node.is_string()) ++place.column;  // behind its quote
    words = wordsOf(option, textIn(node), place);
  }
  if (words.empty()) placeOf(file, node.source()).fail("no value for " + key);
  give(option, words);
}

}  // namespace

void readPolicyFile(CLI::App& rules, const std::string& file) {
  std::ifstream input = opened(file);
  std::set<std::string> seen;
  std::size_t number = 0;
  for (std::string line; std::getline(input, line);) readRule(rules, line, {file, ++number, 1}, seen);
}

void readConfigFile(CLI::App& app, const std::string& file) {
  std::ifstream input = opened(file);
  toml::table table;
  try {
    table = toml::parse(input, file);
  } catch (const toml::parse_error& error) {
    placeOf(file, error.source()).fail(std::string(error.description()));
  }
  for (const auto& [key, value] : table) {
    const std::string name(key.str());
    CLI::Option* const option = optionOf(app, name);
    if (option == nullptr) placeOf(file, key.source()).fail("unknown key: " + name);
    readValue(*option, name, file, value);
  }
}

}  // namespace b2bua
