#include "captures/linePrefix.h"

#include "captures/sipStart.h"
#include "text/search.h"

namespace tool {
namespace {

constexpr std::string_view kVersion = "SIP/2.0";
constexpr std::size_t kMaxPrefix = 512;

bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }

std::size_t skipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && sdpneg::isDigit(text[at])) ++at;
  return at;
}

/// Where the method of a line that ends in a URI and the version begins, if it is one in capitals.
std::size_t methodBegin(std::string_view line) {
  const std::size_t uriEnd = line.size() - kVersion.size() - 1;
  const std::size_t blank = line.rfind(' ', uriEnd == 0 ? 0 : uriEnd - 1);
  if (blank == std::string_view::npos) return line.size();
  std::size_t begin = blank;
  while (begin > 0 && isUpper(line[begin - 1])) --begin;
  return begin;
}

bool isStartLine(std::string_view line) { return startLineOf(line) != StartLine::none; }

}  // namespace

std::optional<std::size_t> findStartLine(std::string_view line) {
  std::size_t version = line.find(kVersion);
  if (version == std::string_view::npos) return std::nullopt;
  if (isStartLine(line)) return 0;
  std::size_t begin = version;
  if (version > 0 && line[version - 1] == ' ' && version + kVersion.size() == line.size()) {
    begin = methodBegin(line);
  }
  if (begin > kMaxPrefix || !isStartLine(line.substr(begin))) return std::nullopt;
  return begin;
}

std::optional<std::size_t> samePrefix(std::string_view prefix, std::string_view line) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < prefix.size();) {
    if (at == line.size()) {
      const bool isAllBlank = prefix.find_first_not_of(" \t", i) == std::string_view::npos;
      return isAllBlank ? std::optional(at) : std::nullopt;
    }
    if (sdpneg::isDigit(prefix[i]) && sdpneg::isDigit(line[at])) {
      i = skipDigits(prefix, i);
      at = skipDigits(line, at);
    } else if (prefix[i++] != line[at++]) {
      return std::nullopt;
    }
  }
  return at;
}

}  // namespace tool
