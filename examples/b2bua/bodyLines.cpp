#include "bodyLines.h"

#include <algorithm>

namespace b2bua {

namespace {

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

Attribute splitAttribute(std::string_view text) {
  text = trimmed(text);
  const std::size_t end = std::min(text.find_first_of(": "), text.size());
  std::string_view value = trimmed(text.substr(end));
  if (value.starts_with(':')) value.remove_prefix(1);
  return {std::string(text.substr(0, end)), std::string(trimmed(value))};
}

}  // namespace

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::string tolerantly(std::string_view line) {
  std::string text = lowerCase(line);
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  return text;
}

Attribute attributeOf(std::string_view line) {
  if (!line.starts_with("a=")) return {};
  Attribute attribute = splitAttribute(tolerantly(line.substr(2)));
  if (attribute.name != "acap") return attribute;
  const std::size_t number = std::min(attribute.value.find(' '), attribute.value.size());
  return splitAttribute(std::string_view(attribute.value).substr(number));
}

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(line);
  }
  return lines;
}

}  // namespace b2bua
