#include "text/mLineFields.h"

#include <algorithm>
#include <cstdint>

// The fields of an m-line.

namespace sdpneg {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }

/// What stands behind the first word of a line and the white space that follows it.
std::string_view behindFirstWord(std::string_view line) {
  std::size_t at = 1;
  while (at < line.size() && !isSpace(line[at])) ++at;
  while (at < line.size() && isSpace(line[at])) ++at;
  return line.substr(std::min(at, line.size()));
}

/// The second word of a line; nothing when the line has none that ends before the line does.
std::optional<Span> secondWord(std::string_view line) {
  const std::string_view rest = behindFirstWord(line);
  const auto* const wordEnd = std::find_if(rest.begin(), rest.end(), isSpace);
  if (wordEnd == rest.begin() || wordEnd == rest.end()) return std::nullopt;
  const std::size_t begin = line.size() - rest.size();
  return Span{begin, begin + static_cast<std::size_t>(wordEnd - rest.begin())};
}

}  // namespace

std::optional<unsigned short> portOf(std::string_view line) {
  const std::string_view rest = behindFirstWord(line);
  const auto number = leadingNumber<int>(rest);
  if (!number || number->value < 0 || number->value > UINT16_MAX) return std::nullopt;
  if (number->length == rest.size() || !isSpace(rest[number->length])) return std::nullopt;
  return static_cast<unsigned short>(number->value);
}

namespace {

/// The port behind the first word of a line as most are written: one space in front of its digits and one behind them,
/// and few digits.
std::optional<unsigned short> plainPort(std::string_view text, std::size_t wordEnd) {
  constexpr std::size_t kMostDigits = 5;
  const std::size_t first = wordEnd + 1;
  unsigned int port = 0;
  std::size_t at = first;
  for (; at < text.size() && isDigit(text[at]); ++at) {
    if (at - first == kMostDigits) return std::nullopt;
    port = port * 10 + static_cast<unsigned int>(text[at] - '0');
  }
  const bool ends = at != first && at < text.size() && text[at] == ' ';
  return ends && port <= UINT16_MAX ? std::optional(static_cast<unsigned short>(port)) : std::nullopt;
}

}  // namespace

std::optional<unsigned short> portAt(std::string_view text, std::size_t at) {
  // Where the text ends in LF, every line has one.
  if (at < text.size() && text.ends_with('\n')) {
    std::size_t wordEnd = at + 1;
    while (wordEnd < text.size() && !isSpace(text[wordEnd])) ++wordEnd;
    if (wordEnd >= text.size() || text[wordEnd] == '\n') return std::nullopt;
    if (text[wordEnd] == ' ') {
      if (const std::optional<unsigned short> port = plainPort(text, wordEnd)) return port;
    }
  }
  const std::size_t lf = findLf(text, at + 1);
  return lf == npos ? std::nullopt : portOf(text.substr(at, lf + 1 - at));
}

std::optional<Span> portToReplace(std::string_view text, const Line& line, std::string_view digits) {
  const std::string_view whole = text.substr(line.begin, line.lf - line.begin);
  const std::optional<Span> field = secondWord(whole);
  // Only as many digits as the new port has are compared: 5000 leaves 50000 as it is.
  if (!field || startsWith(whole.substr(field->begin, field->end - field->begin), digits))
    return std::nullopt;
  return Span{line.begin + field->begin, line.begin + field->end};
}

std::optional<Change> portChange(std::string_view text, std::size_t mLine, const PortDigits& digits) {
  const std::optional<Span> field = portToReplace(text, lineAt(text, mLine), digits.view());
  return field ? std::optional(Change{*field, digits.view()}) : std::nullopt;
}

Edit replacePort(SdpText& text, const Line& line, unsigned int port) {
  const PortDigits digits = digitsOf(port);
  const std::optional<Span> field = portToReplace(text.view(), line, digits.view());
  return field ? text.replace(*field, digits.view()) : Edit::done;
}

std::size_t blankFrom(std::string_view text, const Line& mLine, std::size_t from) {
  while (from < mLine.lf && !isBlank(text[from])) ++from;
  return from < mLine.lf ? from : npos;
}

std::size_t transportBehindRuns(std::string_view text, const Line& mLine) {
  const auto behindRun = [&](std::size_t at) {
    while (at < mLine.lf && isBlank(text[at])) ++at;
    return std::min(at, mLine.lf);
  };
  std::size_t at = behindRun(mLine.begin + kMLine.size());
  for (int passed = 0; passed < 2; ++passed) at = behindRun(blankFrom(text, mLine, at));
  return at;
}

std::optional<Span> transportBehindBlanks(std::string_view text, const Line& mLine) {
  const std::size_t first = blankFrom(text, mLine, mLine.begin + kMLine.size());
  const std::size_t second = first == npos ? npos : blankFrom(text, mLine, first + 1);
  const std::size_t end = second == npos ? npos : blankFrom(text, mLine, second + 1);
  if (end == npos || end == second + 1) return std::nullopt;
  return Span{second + 1, end};
}

}  // namespace sdpneg
