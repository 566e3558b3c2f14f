#include <algorithm>
#include <cstring>
#include <optional>

#include "refusal.h"
#include "sdpNegotiatorParser.h"
#include "text/lines.h"
#include "text/mLineFields.h"
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
  const std::string_view text = viewOf(sdp);
  const std::string_view session = text.substr(0, findLine(text, "m="));
  const std::size_t line = findLine(session, "c=");
  if (line == npos) return kIpVersionUnknown;
  const std::string_view content = sdpneg::content(text, lineAt(text, line));
  if (contains(content, kIp4)) return kIpVersion4;
  return contains(content, kIp6) ? kIpVersion6 : kIpVersionUnknown;
}

const char* sdpParserMessage::foundMyMline(const char* sdp, const char* prefix) {
  if (sdp == nullptr || prefix == nullptr) return nullptr;
  const std::string_view text(sdp);
  const std::string_view wanted(prefix);
  for (std::size_t at = findLine(text, "m="); at != npos; at = findLine(text, "m=", at)) {
    if (startsWith(text.substr(at + 2), wanted)) return sdp + at;
  }
  return nullptr;
}

char* sdpParserMessage::foundMyMline(char* sdp, const char* prefix) {
  const char* const found = foundMyMline(static_cast<const char*>(sdp), prefix);
  return found != nullptr ? sdp + (found - sdp) : nullptr;
}

bool sdpParserMessage::isAline4Mode(const char* attribute) {
  if (attribute == nullptr) return false;
  return startsWithDirection({attribute, strnlen(attribute, kDirectionLength)});
}
