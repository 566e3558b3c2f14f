#include <algorithm>
#include <cstring>
#include <optional>

#include "refusal.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorParser/connectionVersion.h"
#include "text/mLineFields.h"
#include "text/sections.h"
#include "vocabulary.h"

// M-lines and c-lines in a text: finding them, their ports and address versions.

namespace sdpneg {
namespace {

/// The LF of the line that begins at `line`; a text that begins at the LF in front of it is taken as well.
const char* lineFeedOf(const char* line) {
  return line == nullptr || line[0] == '\0' ? nullptr : std::strchr(line + 1, '\n');
}

std::string_view between(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace

eIPAddressVersion connectionVersion(std::string_view text) {
  const std::string_view first = sessionPart(text);
  const std::size_t line = findLine(first, kCLine);
  return line != npos ? versionOfConnection(text, line) : kIpVersionUnknown;
}

eIPAddressVersion versionOfConnection(std::string_view text, std::size_t cLine) {
  const std::string_view connection = content(text, lineAt(text, cLine));
  if (contains(connection, kIp4)) return kIpVersion4;
  return contains(connection, kIp6) ? kIpVersion6 : kIpVersionUnknown;
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpParserMessage::getMediaLinePort(const char* mLine, unsigned short& port) {
  const char* const lineFeed = lineFeedOf(mLine);
  if (lineFeed == nullptr) return 1;
  const std::optional<unsigned short> read = portOf(between(mLine, lineFeed + 1));
  if (!read) return 1;
  port = *read;
  return 0;
}

unsigned short sdpParserMessage::setMediaLinePort(char* mLine, char*& lineEnd, unsigned int port) {
  using namespace sdpneg;
  if (isReservedPort(port)) return refuse({.reason = SDP_REFUSED_ILLEGAL_PORT, .number = port});
  if (lineEnd == nullptr) {
    const char* const lineFeed = lineFeedOf(mLine);
    if (lineFeed == nullptr) return refuse({.reason = SDP_REFUSED_UNENDED_M_LINE});
    lineEnd = mLine + (lineFeed - mLine);
  }
  if (mLine == nullptr || lineEnd <= mLine) return 0;
  // Whether a longer port fits is the caller's business: the text may grow by what a port can.
  const std::size_t length = std::strlen(mLine);
  SdpText text(mLine, length + kLongestPort);
  // A caller's line end counts as far as the text goes.
  const std::size_t end = std::min(static_cast<std::size_t>(lineEnd - mLine), length);
  replacePort(text, {0, end, true}, port);
  if (text.size() == length) return 0;
  const std::size_t moved = end + text.size() - length;
  const std::size_t lineFeed = text.view().find('\n', moved);
  lineEnd = mLine + (lineFeed != npos ? lineFeed : moved);
  return 0;
}

eIPAddressVersion sdpParserMessage::getcLineIPVersion(const char* sdp) {
  return connectionVersion(viewOf(sdp));
}

const char* sdpParserMessage::foundMyMline(const char* sdp, const char* prefix) {
  if (sdp == nullptr || prefix == nullptr) return nullptr;
  const std::size_t at = nextMLineOf(sdp, prefix);
  return at != npos ? sdp + at : nullptr;
}

char* sdpParserMessage::foundMyMline(char* sdp, const char* prefix) {
  const char* const found = foundMyMline(static_cast<const char*>(sdp), prefix);
  return found != nullptr ? sdp + (found - sdp) : nullptr;
}

bool sdpParserMessage::isAline4Mode(const char* attribute) {
  if (attribute == nullptr) return false;
  return startsWithDirection({attribute, strnlen(attribute, kDirectionLength)});
}
