#include "sdpNegotiatorParser/portField.h"

#include <algorithm>
#include <cstdint>

#include "text/fixedText.h"
#include "trace.h"

using namespace sdpneg;

namespace sdpneg {

namespace {

constexpr unsigned int largestReservedPort = 1023;

/// The second word of a line; empty when the line has none that ends before the line does.
std::string_view secondWord(std::string_view line) {
  const std::string_view rest = behindFirstWord(line);
  const auto end = std::find_if(rest.begin(), rest.end(), isSpace);
  return end == rest.end() ? std::string_view()
                           : rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
}

}  // namespace

std::string_view behindFirstWord(std::string_view line) {
  std::size_t at = 1;
  while (at < line.size() && !isSpace(line[at])) ++at;
  while (at < line.size() && isSpace(line[at])) ++at;
  return line.substr(std::min(at, line.size()));
}

std::optional<unsigned short> portOf(std::string_view line) {
  const std::string_view rest = behindFirstWord(line);
  const auto number = leadingNumber<int>(rest);
  if (!number || number->value < 0 || number->value > UINT16_MAX) return std::nullopt;
  if (number->length == rest.size() || !isSpace(rest[number->length])) return std::nullopt;
  return static_cast<unsigned short>(number->value);
}

bool refusesPort(unsigned int port) {
  if (port == 0 || port > largestReservedPort) return false;
  trace::error("setMediaLinePort(): illegal connection port %u", port);
  return true;
}

Edit replacePort(SdpText& text, const Line& line, unsigned int port) {
  const FixedText<24> all = FixedText<24>().add(port);
  const std::string_view digits = all.view().substr(0, longestPort);
  const std::string_view field = secondWord(text.view().substr(line.begin, line.lf - line.begin));
  // Only as many digits as the new port has are compared: 5000 leaves 50000 as it is.
  if (field.empty() || startsWith(field, digits)) return Edit::done;
  const auto at = static_cast<std::size_t>(field.data() - text.view().data());
  return text.replace({at, at + field.size()}, digits);
}

}  // namespace sdpneg
