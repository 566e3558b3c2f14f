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

  Place behind(std::size_t characters) const { return {file, line, column + characters}; }
  [[noreturn]] void fail(const std::string& text) const {
    throw CLI::FileError(file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + text);
  }
};

struct Word {
  std::string text;
  Place place;
};

/// Without the blanks around it.
Word trimmed(std::string_view text, const Place& place) {
  const std::size_t first = std::min(text.find_first_not_of(kBlanks), text.size());
  const std::size_t end = text.find_last_not_of(kBlanks) + 1;
  return {std::string(text.substr(first, end - first)), place.behind(first)};
}

bool takesSeveral(const CLI::Option& option) { return option.get_items_expected_max() > 1; }

/// @return the option of a key that a file may have
CLI::Option& optionOf(CLI::App& app, const Word& key) {
  CLI::Option* const option = app.get_option_no_throw("--" + key.text);
  if (option == nullptr || !option->get_configurable()) key.place.fail("unknown key: " + key.text);
  return *option;
}

/// The words of a value, of which some options have one, and others have several, with blanks and commas between them
/// or with what may stand for these on the command line.
std::vector<Word> wordsOf(const CLI::Option& option, const Word& value) {
  const std::string_view ends = !takesSeveral(option) ? "" : option.get_delimiter() == ';' ? ";" : " \t,";
  const std::string_view text = value.text;
  std::vector<Word> words;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find_first_of(ends, begin), text.size());
    const Word word = trimmed(text.substr(begin, end - begin), value.place.behind(begin));
    if (!word.text.empty()) words.push_back(word);
    begin = end + 1;
  }
  return words;
}

/// @return the first of the words that an error names, or else the first
const Word& namedIn(const std::string& error, const std::vector<Word>& words) {
  const auto isNamed = [text = " " + error + " "](const Word& word) {
    return text.find(" " + word.text + " ") != std::string::npos;
  };
  const auto named = std::ranges::find_if(words, isNamed);
  return named != words.end() ? *named : words.front();
}

/// Gives an option its words as the command line would, and keeps those that this has given.
/// @param place  of all values
void give(CLI::Option& option, const Word& key, const std::vector<Word>& values, const Place& place) {
  std::vector<Word> words;
  for (const Word& value : values) std::ranges::copy(wordsOf(option, value), std::back_inserter(words));
  if (words.empty()) place.fail("no value for " + key.text);
  if (option.count() != 0) return;
  try {
    for (const Word& word : words) option.add_result(word.text);
    option.run_callback();
  } catch (const WordError& error) {
    words[std::min(error.word, words.size() - 1)].place.behind(error.offset).fail(error.what());
  } catch (const CLI::ParseError& error) {
    namedIn(error.what(), words).place.fail(error.what());
  }
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
  const Word key = trimmed(text.substr(0, equals), start);
  if (equals == text.size()) {
    if (!key.text.empty()) key.place.fail("no KEY = VALUE: " + key.text);
    return;
  }
  CLI::Option& option = optionOf(rules, key);
  if (!seen.insert(key.text).second) key.place.fail("given twice: " + key.text);
  const Place behind = start.behind(equals + 1);
  give(option, key, {{std::string(text.substr(equals + 1)), behind}}, behind);
}

// -- TOML

Place placeOf(const std::string& file, const toml::source_region& region) {
  return {file, region.begin.line, region.begin.column};
}

/// What an option takes.
struct Type {
  toml::node_type node;
  const char* name;
};

Type typeOf(const CLI::Option& option) {
  if (option.get_items_expected_max() == 0) return {toml::node_type::boolean, "true or false"};
  if (option.get_type_name().starts_with(kNumber)) return {toml::node_type::integer, "a whole number"};
  return {toml::node_type::string, takesSeveral(option) ? "a text, or an array of texts" : "a text"};
}

/// @param type  that it is to have
Word wordOf(const toml::node& node, const Type& type, const Word& key) {
  const Place place = placeOf(key.place.file, node.source());
  if (node.type() != type.node || node.value_or(0) < 0) place.fail(key.text + " is " + type.name);
  if (node.is_string()) return {*node.value<std::string>(), place};
  if (node.is_boolean()) return {*node.value<bool>() ? "true" : "false", place};
  return {std::to_string(*node.value<std::int64_t>()), place};
}

void readEntry(CLI::App& app, const Word& key, const toml::node& node) {
  CLI::Option& option = optionOf(app, key);
  const Type type = typeOf(option);
  std::vector<Word> values;
  if (const toml::array* const array = node.as_array(); array != nullptr && takesSeveral(option)) {
    for (const toml::node& each : *array) values.push_back(wordOf(each, type, key));
  } else {
    values.push_back(wordOf(node, type, key));
    if (node.is_string()) ++values[0].place.column;  // behind its quote
  }
  give(option, key, values, placeOf(key.place.file, node.source()));
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
  for (const auto& [key, value] : table)
    readEntry(app, {std::string(key.str()), placeOf(file, key.source())}, value);
}

}  // namespace b2bua
