#include "input/messageHeader.h"

#include <algorithm>

#include "text/anyLines.h"

namespace tool {
namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view trim(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

/// A parameter's value as it stands there.
struct RawValue {
  std::string_view text;
  bool isQuoted = false;

  std::string unquoted() const;
};

std::string RawValue::unquoted() const {
  if (!isQuoted) return std::string(text);
  std::string value;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\\' && at + 1 < text.size()) ++at;
    value += text[at];
  }
  return value;
}

/// Takes a quoted string (RFC 3261 25.1), whose opening quote was taken.
std::string_view takeQuoted(std::string_view& rest) {
  std::size_t end = 0;
  while (end < rest.size() && rest[end] != '"') {
    const bool isEscape = rest[end] == '\\' && end + 1 < rest.size();
    end += isEscape ? std::size_t{2} : std::size_t{1};
  }
  const std::string_view taken = rest.substr(0, end);
  rest.remove_prefix(end);
  return taken;
}

/// Takes one parameter and the semicolon behind it.
std::string_view takeParameter(std::string_view& rest, RawValue& value) {
  std::size_t nameEnd = 0;
  while (nameEnd < rest.size() && rest[nameEnd] != '=' && rest[nameEnd] != ';') ++nameEnd;
  const std::string_view name = trim(rest.substr(0, nameEnd));
  rest.remove_prefix(nameEnd);
  value = {};
  if (!rest.empty() && rest.front() == '=') {
    rest.remove_prefix(1);
    while (!rest.empty() && isBlank(rest.front())) rest.remove_prefix(1);
    value.isQuoted = !rest.empty() && rest.front() == '"';
    if (value.isQuoted) {
      rest.remove_prefix(1);
      value.text = takeQuoted(rest);
    } else {
      const std::size_t end = std::min(rest.find(';'), rest.size());
      value.text = trim(rest.substr(0, end));
      rest.remove_prefix(end);
    }
  }
  const std::size_t semicolon = rest.find(';');
  rest.remove_prefix(semicolon == std::string_view::npos ? rest.size() : semicolon + 1);
  return name;
}

}  // namespace

HeaderLine headerLineAt(std::string_view text, std::size_t begin, std::size_t end) {
  const sdpneg::AnyLine line = sdpneg::AnyLines(text.substr(begin, end - begin)).next();
  const bool isEnded = line.whole.ends_with('\n');  // a CR alone is no end
  return {isEnded ? line.content : line.whole, begin + line.whole.size()};
}

Header readHeader(std::string_view text, Range range) {
  Header header;
  for (std::size_t at = range.begin; at < range.end;) {
    const auto [line, next] = headerLineAt(text, at, range.end);
    const std::size_t begin = at;
    at = next;
    if (line.empty()) {
      header.bodyBegin = next;
      break;
    }
    const std::size_t colon = line.find(':');
    if (isBlank(line.front())) {
      if (!header.fields.empty()) header.fields.back().value.append(" ").append(trim(line));
    } else if (colon != std::string_view::npos) {
      header.fields.push_back(
          {std::string(trim(line.substr(0, colon))), std::string(trim(line.substr(colon + 1))), begin});
    }
  }
  return header;
}

const HeaderField* findField(const Header& header, std::string_view name, std::string_view compact) {
  for (const HeaderField& field : header.fields) {
    if (sdpneg::equalNoCase(field.name, name)) return &field;
    if (!compact.empty() && sdpneg::equalNoCase(field.name, compact)) return &field;
  }
  return nullptr;
}

std::string_view valueWithoutParameters(std::string_view value) {
  return trim(value.substr(0, value.find(';')));
}

std::optional<std::string> findParameter(std::string_view value, std::string_view name) {
  const std::size_t semicolon = value.find(';');
  std::string_view rest = semicolon == std::string_view::npos ? "" : value.substr(semicolon + 1);
  RawValue found;
  while (!rest.empty()) {
    if (sdpneg::equalNoCase(takeParameter(rest, found), name)) return found.unquoted();
  }
  return std::nullopt;
}

}  // namespace tool
