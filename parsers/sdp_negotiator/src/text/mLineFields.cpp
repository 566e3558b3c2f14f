#include "text/mLineFields.h"

#include <algorithm>
#include <cstdint>

// The fields of an m-line.

namespace sdpneg {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }

/// What stands behind the first word of a line and the white space that follows it.
/// @param end ends the line as well
std::string_view behindFirstWord(std::string_view line, char end = '\0') {
  std::size_t at = 1;
  while (at < line.size() && !isSpace(line[at])) ++at;
  while (at < line.size() && isSpace(line[at]) && line[at] != end) ++at;
  return line.substr(std::min(at, line.size()));
}

/// The second word of a line; nothing when the line has none that ends before the line does.
std::optional<Span> secondWord(std::string_view line, char end = '\0') {
  const std::string_view rest = behindFirstWord(line, end);
  const auto* const wordEnd = std::find_if(rest.begin(), rest.end(), isSpace);
  if (wordEnd == rest.begin() || wordEnd == rest.end() || *wordEnd == end) return std::nullopt;
  const std::size_t begin = line.size() - rest.size();
  return Span{begin, begin + static_cast<std::size_t>(wordEnd - rest.begin())};
}

/// The change of a port's field, which lies behind an offset.
std::optional<Change> changeOf(std::string_view text, std::size_t offset, const std::optional<Span>& field,
                               std::string_view digits) {
  // Only as many digits as the new port has are compared: 5000 leaves 50000 as it is.
  if (!field || startsWith(text.substr(offset + field->begin, field->end - field->begin), digits)) {
    return std::nullopt;
  }
  return Change{{offset + field->begin, offset + field->end}, digits};
}

}  // namespace

std::optional<unsigned short> portOf(std::string_view line) {
  const std::string_view rest = behindFirstWord(line);
  const auto number = leadingNumber<int>(rest);
  if (!number || number->value < 0 || number->value > UINT16_MAX) return std::nullopt;
  if (number->length == rest.size() || !isSpace(rest[number->length])) return std::nullopt;
  return static_cast<unsigned short>(number->value);
}

std::optional<unsigned short> portAt(std::string_view text, std::size_t at) {
  const std::size_t lf = findLf(text, at + 1);
  return lf == npos ? std::nullopt : portOf(text.substr(at, lf + 1 - at));
}

std::optional<Change> portChange(std::string_view text, std::size_t mLine, const PortDigits& port) {
  return changeOf(text, mLine, secondWord(text.substr(mLine), '\n'), port.view());
}

Edit replacePort(SdpText& text, const Line& line, unsigned int port) {
  const PortDigits digits = PortDigits().add(port);
  const auto field = secondWord(text.view().substr(line.begin, line.lf - line.begin));
  const auto change = changeOf(text.view(), line.begin, field, digits.view());
  return change ? text.replace(change->span, change->inserted) : Edit::done;
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
