#include "captures/sipStart.h"

#include <algorithm>
#include <array>

#include "text/lines.h"

namespace tool {
namespace {

constexpr std::string_view kVersion = "SIP/2.0";
constexpr std::size_t kMaxMethod = 32;

/// The characters of a token (RFC 3261 25.1).
constexpr std::array<bool, 256> kTokenTable = [] {
  std::array<bool, 256> table{};
  for (int c = 0; c < 256; ++c) {
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    const bool isOther = std::string_view("-.!%*_+`'~").find(static_cast<char>(c)) != std::string_view::npos;
    table[static_cast<std::size_t>(c)] = isLetter || (c >= '0' && c <= '9') || (c < 128 && isOther);
  }
  return table;
}();

bool isTokenCharacter(char c) { return kTokenTable[static_cast<unsigned char>(c)]; }

/// How many characters of a method a text begins with; 0 when it is too many.
std::size_t methodLength(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size() && isTokenCharacter(text[length])) {
    if (++length > kMaxMethod) return 0;
  }
  return length;
}

/// A URI has a scheme and no blanks or control characters.
bool isUri(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos || colon == 0) return false;
  return std::none_of(text.begin(), text.end(), [](char c) { return c == ' ' || sdpneg::isControl(c); });
}

bool isRequestLine(std::string_view line) {
  const std::size_t method = methodLength(line);
  if (method == 0 || line.size() < method + kVersion.size() + 2 || line[method] != ' ') return false;
  if (!line.ends_with(kVersion) || line[line.size() - kVersion.size() - 1] != ' ') return false;
  return isUri(line.substr(method + 1, line.size() - method - kVersion.size() - 2));
}

bool isStatusLine(std::string_view line) {
  if (!sdpneg::startsWith(line, kVersion)) return false;
  line.remove_prefix(kVersion.size());
  if (line.size() < 4 || line[0] != ' ' || line[1] < '1' || line[1] > '6') return false;
  return sdpneg::isDigit(line[2]) && sdpneg::isDigit(line[3]) && (line.size() == 4 || line[4] == ' ');
}

/// Whether more bytes could make a start line of these, among which there is no LF.
bool couldBecomeStartLine(std::string_view bytes) {
  if (bytes.size() > kMaxStartLine) return false;
  const std::size_t shared = std::min(bytes.size(), kVersion.size());
  if (bytes.substr(0, shared) == kVersion.substr(0, shared)) {
    return bytes.size() < kVersion.size() + 4 || isStatusLine(bytes);
  }
  const std::size_t method = methodLength(bytes);
  if (method == 0) return false;
  if (method == bytes.size()) return true;
  if (bytes[method] != ' ') return false;
  const std::string_view behind = bytes.substr(method + 1);
  const std::size_t blank = behind.find(' ');
  if (blank == std::string_view::npos) {
    return std::none_of(behind.begin(), behind.end(), sdpneg::isControl);
  }
  std::string_view version = behind.substr(blank + 1);
  if (version.ends_with('\r')) version.remove_suffix(1);
  return isUri(behind.substr(0, blank)) && kVersion.substr(0, version.size()) == version;
}

/// Looks at each place where a line begins.
template <typename Predicate>
std::size_t findLineWith(std::string_view bytes, std::size_t from, Predicate predicate) {
  while (from < bytes.size() && !predicate(bytes.substr(from))) {
    const std::size_t lf = bytes.find('\n', from);
    if (lf == std::string_view::npos) return bytes.size();
    from = lf + 1;
  }
  return from;
}

}  // namespace

StartLine startLineOf(std::string_view line) {
  if (isStatusLine(line)) return StartLine::response;
  return isRequestLine(line) ? StartLine::request : StartLine::none;
}

Beginning beginningOf(std::string_view bytes) {
  // Most of what is no SIP is told by its first byte.
  if (bytes.empty() || !isTokenCharacter(bytes.front())) return Beginning::none;
  const sdpneg::Line line = sdpneg::lineAt(bytes.substr(0, kMaxStartLine + 2), 0);
  if (!line.terminated) return couldBecomeStartLine(bytes) ? Beginning::partial : Beginning::none;
  return startLineOf(sdpneg::content(bytes, line)) == StartLine::none ? Beginning::none : Beginning::whole;
}

std::size_t findBeginning(std::string_view bytes, std::size_t from) {
  return findLineWith(bytes, from,
                      [](std::string_view line) { return beginningOf(line) != Beginning::none; });
}

std::size_t findWholeBeginning(std::string_view bytes, std::size_t from) {
  return findLineWith(bytes, from,
                      [](std::string_view line) { return beginningOf(line) == Beginning::whole; });
}

std::size_t findHeaderEnd(std::string_view bytes, std::size_t from) {
  for (std::size_t lf = bytes.find('\n', from); lf != std::string_view::npos; lf = bytes.find('\n', lf + 1)) {
    const std::string_view behind = bytes.substr(lf + 1, 2);
    if (sdpneg::startsWith(behind, "\n")) return lf + 2;
    if (behind == "\r\n") return lf + 3;
  }
  return std::string_view::npos;
}

}  // namespace tool
