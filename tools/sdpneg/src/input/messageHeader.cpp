#include "input/messageHeader.h"

#include <algorithm>

#include "text/anyLines.h"

namespace tool {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view trim(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// Takes a quoted string (RFC 3261 25.1), whose opening quote stands in front, or a token.
std::string takeValue(std::string_view& rest, bool quoted) {
  std::string value;
  while (!rest.empty()) {
    const char c = rest.front();
    if (quoted ? c == '"' : c == ';') break;
    rest.remove_prefix(1);
    if (!quoted || c != '\\' || rest.empty()) {
      value += c;
    } else {
      value += rest.front();
      rest.remove_prefix(1);
    }
  }
  return quoted ? value : std::string(trim(value));
}

/// Takes one parameter and the semicolon behind it.
void takeParameter(std::string_view& rest, std::string& name, std::string& value) {
  const std::size_t nameEnd = std::min(rest.find_first_of("=;"), rest.size());
  name = trim(rest.substr(0, nameEnd));
  rest.remove_prefix(nameEnd);
  value.clear();
  if (!rest.empty() && rest.front() == '=') {
    rest.remove_prefix(1);
    rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
    const bool quoted = !rest.empty() && rest.front() == '"';
    if (quoted) rest.remove_prefix(1);
    value = takeValue(rest, quoted);
  }
  const std::size_t semicolon = rest.find(';');
  rest.remove_prefix(semicolon == std::string_view::npos ? rest.size() : semicolon + 1);
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
    if (kBlanks.find(line.front()) != std::string_view::npos) {
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
  std::string found;
  std::string parameter;
  while (!rest.empty()) {
    takeParameter(rest, parameter, found);
    if (sdpneg::equalNoCase(parameter, name)) return found;
  }
  return std::nullopt;
}

}  // namespace tool
