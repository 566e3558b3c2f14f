#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>

#include "direction.h"
#include "ipVersions.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorTrace.h"
#include "text/lines.h"

namespace sdpneg {
namespace {

constexpr unsigned int largestReservedPort = 1023;
constexpr std::size_t mostPortDigits = 7;

/// The LF of the line that begins at `line`; a text that begins at the LF in front of it is taken as well.
const char* lineFeedOf(const char* line) {
  return line == nullptr || line[0] == '\0' ? nullptr : std::strchr(line + 1, '\n');
}

std::string_view between(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

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

/// Puts digits in the place of a field and moves the text behind it.
/// @return the LF of the line, or where `lineEnd` went when the line has none
char* replaceField(char* field, std::size_t length, std::string_view digits, char* lineEnd) {
  if (length != digits.size()) {
    char* const rest = field + length;
    const std::size_t restLength = std::strlen(rest);
    const std::ptrdiff_t offset = lineEnd - rest;
    char* const moved = field + digits.size();
    std::memmove(moved, rest, restLength + 1);
    char* const lineFeed = std::strchr(moved, '\n');
    lineEnd = lineFeed != nullptr ? lineFeed : moved + offset;
  }
  std::memcpy(field, digits.data(), digits.size());
  return lineEnd;
}

void replacePort(char* mLine, char*& lineEnd, unsigned int port) {
  char buffer[16];
  const char* const end = std::to_chars(buffer, buffer + sizeof buffer, port).ptr;
  const std::string_view digits = between(buffer, end).substr(0, mostPortDigits);
  // A caller's line end counts as far as the text goes.
  if (lineEnd <= mLine) return;
  const std::string_view line(mLine, strnlen(mLine, static_cast<std::size_t>(lineEnd - mLine)));
  const std::string_view field = secondWord(line);
  // Only as many digits as the new port has are compared: 5000 leaves 50000 as it is.
  if (field.empty() || startsWith(field, digits)) return;
  lineEnd = replaceField(mLine + (field.data() - mLine), field.size(), digits, lineEnd);
}

}  // namespace
}  // namespace sdpneg

unsigned short sdpParserMessage::getMediaLinePort(const char* mLine, unsigned short& port) {
  const char* const lineFeed = sdpneg::lineFeedOf(mLine);
  if (lineFeed == nullptr) return 1;
  const std::string_view rest = sdpneg::behindFirstWord(sdpneg::between(mLine, lineFeed + 1));
  const auto number = sdpneg::leadingNumber<int>(rest);
  if (!number || number->value < 0 || number->value > UINT16_MAX) return 1;
  if (number->length == rest.size() || !sdpneg::isSpace(rest[number->length])) return 1;
  port = static_cast<unsigned short>(number->value);
  return 0;
}

unsigned short sdpParserMessage::setMediaLinePort(char* mLine, char*& lineEnd, unsigned int port) {
  if (port != 0 && port <= sdpneg::largestReservedPort) {
    cNegotTraceManager::writeTraceMsg(4, 3, "setMediaLinePort(): illegal connection port %u", port);
    return 1;
  }
  if (lineEnd == nullptr) {
    const char* const lineFeed = sdpneg::lineFeedOf(mLine);
    if (lineFeed == nullptr) {
      cNegotTraceManager::writeTraceMsg(4, 3, "setMediaLinePort(): Bad termination of m-line.");
      return 1;
    }
    lineEnd = mLine + (lineFeed - mLine);
  }
  if (mLine != nullptr) sdpneg::replacePort(mLine, lineEnd, port);
  return 0;
}

eIPAddressVersion sdpParserMessage::getcLineIPVersion(const char* sdp) {
  const std::string_view text = sdpneg::viewOf(sdp);
  const std::size_t line = sdpneg::findLine(text, "c=");
  if (line == sdpneg::npos || line > sdpneg::findLine(text, "m=")) return sdpneg::ipVersionUnknown;
  const std::string_view content = sdpneg::content(text, sdpneg::lineAt(text, line));
  if (sdpneg::contains(content, "IP4")) return sdpneg::ipVersion4;
  return sdpneg::contains(content, "IP6") ? sdpneg::ipVersion6 : sdpneg::ipVersionUnknown;
}

const char* sdpParserMessage::foundMyMline(const char* sdp, const char* prefix) {
  if (sdp == nullptr || prefix == nullptr) return nullptr;
  const std::string_view text(sdp);
  const std::string_view wanted(prefix);
  for (std::size_t at = sdpneg::findLine(text, "m="); at != sdpneg::npos;
       at = sdpneg::findLine(text, "m=", at)) {
    if (sdpneg::startsWith(text.substr(at + 2), wanted)) return sdp + at;
  }
  return nullptr;
}

char* sdpParserMessage::foundMyMline(char* sdp, const char* prefix) {
  const char* const found = foundMyMline(static_cast<const char*>(sdp), prefix);
  return found != nullptr ? sdp + (found - sdp) : nullptr;
}

bool sdpParserMessage::isAline4Mode(const char* attribute) {
  if (attribute == nullptr) return false;
  return sdpneg::startsWithDirection({attribute, strnlen(attribute, sdpneg::directionLength)});
}
