#include "text/mLineFields.h"

#include <algorithm>
#include <cstdint>

#include "text/fixedText.h"

// The fields of an m-line.

namespace sdpneg {

namespace {

constexpr std::string_view kBlanks = " \t";

/// What stands behind the first word of a line and the white space that follows it.
std::string_view behindFirstWord(std::string_view line) {
  std::size_t at = 1;
  while (at < line.size() && !isSpace(line[at])) ++at;
  while (at < line.size() && isSpace(line[at])) ++at;
  return line.substr(std::min(at, line.size()));
}

/// The second word of a line; empty when the line has none that ends before the line does.
std::string_view secondWord(std::string_view line) {
  const std::string_view rest = behindFirstWord(line);
  const auto end = std::find_if(rest.begin(), rest.end(), isSpace);
  return end == rest.end() ? std::string_view()
                           : rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
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
  const std::size_t lf = text.find('\n', at + 1);
  return lf == npos ? std::nullopt : portOf(text.substr(at, lf + 1 - at));
}

Edit replacePort(SdpText& text, const Line& line, unsigned int port) {
  const FixedText<24> all = FixedText<24>().add(port);
  const std::string_view digits = all.view().substr(0, kLongestPort);
  const std::string_view field = secondWord(text.view().substr(line.begin, line.lf - line.begin));
  // Only as many digits as the new port has are compared: 5000 leaves 50000 as it is.
  if (field.empty() || startsWith(field, digits)) return Edit::done;
  const auto at = static_cast<std::size_t>(field.data() - text.view().data());
  return text.replace({at, at + field.size()}, digits);
}

std::size_t blankFrom(std::string_view text, const Line& mLine, std::size_t from) {
  return text.substr(0, mLine.lf).find_first_of(kBlanks, from);
}

std::size_t transportBehindRuns(std::string_view text, const Line& mLine) {
  const std::string_view all = text.substr(0, mLine.lf);
  std::size_t at = all.find_first_not_of(kBlanks, mLine.begin + kMLine.size());
  for (int passed = 0; passed < 2; ++passed) {
    at = all.find_first_not_of(kBlanks, blankFrom(text, mLine, at));
  }
  return at == npos ? mLine.lf : at;
}

std::optional<Span> transportBehindBlanks(std::string_view text, const Line& mLine) {
  const std::size_t first = blankFrom(text, mLine, mLine.begin + kMLine.size());
  const std::size_t second = first == npos ? npos : blankFrom(text, mLine, first + 1);
  const std::size_t end = second == npos ? npos : blankFrom(text, mLine, second + 1);
  if (end == npos || end == second + 1) return std::nullopt;
  return Span{second + 1, end};
}

}  // namespace sdpneg
