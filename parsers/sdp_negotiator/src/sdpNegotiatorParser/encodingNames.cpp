#include "encodingNames.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "attributeKinds.h"
#include "attributeLines.h"
#include "sdpNegotiatorParser.h"
#include "text/search.h"

// The encoding names of formats, from the rtpmap lines of a description or of a text.

namespace sdpneg {
namespace {

/// Characters of an rtpmap value that are looked at, and of strcmpwospaces' pattern and runs of spaces.
constexpr std::size_t kRtpmapLimit = 512;
constexpr std::size_t kCompareLimit = 100;

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isLineEnd(char c) { return c == '\r' || c == '\n'; }

/// Hands out what was found: cuts it to the buffer.
/// @param name null, or a buffer of `size` characters
/// @return whether something was found
bool deliver(std::string_view found, char* name, unsigned int size) {
  if (found.empty()) return false;
  if (name != nullptr && size != 0) name[found.copy(name, size - 1)] = '\0';
  return true;
}

}  // namespace

std::string_view encodingNameOf(const char* value, std::string_view format) {
  // Most lines that are tried belong to another format.
  if (!isBlank(*value) && !textStartsWith(value, format)) return {};
  const char* const end = value + strnlen(value, kRtpmapLimit);
  const char* const word = std::find_if_not(value, end, isBlank);
  const char* const wordEnd = std::find_if(word, end, isBlank);
  if (std::string_view(word, static_cast<std::size_t>(wordEnd - word)) != format) return {};
  const char* const name = std::find_if_not(wordEnd, end, isBlank);
  return {name, std::find_if(name, end, isLineEnd)};
}

std::string_view findEncodingName(const char* begin, const char* end, const char* format) {
  constexpr std::string_view lineStart = "\na=rtpmap:";
  if (begin == nullptr || end == nullptr || format == nullptr || end <= begin) return {};
  const std::string_view text(begin, strnlen(begin, static_cast<std::size_t>(end - begin)));
  for (std::size_t at = text.find('\n'); at != npos; at = text.find('\n', at + 1)) {
    // The line may go on behind the end, up to the NUL, where the comparison stops.
    const char* line = begin + at;
    if (!textStartsWith(line, lineStart)) continue;
    const std::string_view name = encodingNameOf(line + lineStart.size(), format);
    if (!name.empty()) return name;
  }
  return {};
}

std::string_view findEncodingName(std::span<const a_line::entry> lines, const char* format) {
  if (format == nullptr) return {};
  const std::string_view wanted = format;
  for (const a_line::entry& line : lines) {
    if (!kRtpmapName.matches(line.name)) continue;
    const std::string_view name = encodingNameOf(line.value, wanted);
    if (!name.empty()) return name;
  }
  return {};
}

std::string_view findEncodingName(const AttributeIndex& lines, const char* format) {
  if (format == nullptr) return {};
  const std::string_view wanted = format;
  std::string_view name;
  lines.forEach(KindSet(AttributeKind::rtpmap), [&](const a_line::entry& line, AttributeKind) {
    name = encodingNameOf(line.value, wanted);
    return name.empty();
  });
  return name;
}

RtpMap rtpMapOf(const char* value) {
  while (isBlank(*value)) ++value;
  const char* end = value;
  while (*end != '\0' && !isBlank(*end)) ++end;
  const char* name = end;
  while (isBlank(*name)) ++name;
  return {{value, end}, name};
}

}  // namespace sdpneg

using namespace sdpneg;

bool sdpParserMessage::getEncodingName(const mDescription* media, const char* format, char* name,
                                       unsigned int size) {
  if (media == nullptr) return false;
  return deliver(findEncodingName(entriesOf(&media->aLine), format), name, size);
}

bool sdpParserMessage::getEncodingName(const char* begin, const char* end, const char* format, char* name,
                                       unsigned int size) {
  return deliver(findEncodingName(begin, end, format), name, size);
}

bool sdpParserMessage::isEncodingDefinedInAline(const char* value, const char* format, char* name,
                                                unsigned int size) {
  if (value == nullptr || format == nullptr) return false;
  return deliver(encodingNameOf(value, format), name, size);
}

int sdpParserMessage::strcmpwospaces(const char* text, const char* pattern) {
  if (text == nullptr || pattern == nullptr) return -1;
  for (std::size_t matched = 0; pattern[matched] != '\0'; ++matched, ++text) {
    if (matched == kCompareLimit) return -1;
    const char* run = text;
    while (*text == ' ') {
      if (static_cast<std::size_t>(++text - run) == kCompareLimit) return -1;
    }
    if (*text != pattern[matched]) return -1;
  }
  return 0;
}
