#include "sdpModifiers/videoSections.h"

#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/connection.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// The video sections of a text as a text of their own.

namespace sdpneg {

namespace {

constexpr std::string_view kVideo = "video";

/// The first c-line up to its LF, so with its CR; nothing without a c-line that ends in LF.
std::optional<std::string> connectionLine(std::string_view text) {
  const std::size_t found = findAnywhere(text, kCLine);
  if (found == npos) return std::nullopt;
  const Line line = lineAt(text, found);
  if (!line.terminated) return std::nullopt;
  return std::string(text.substr(line.begin, line.lf - line.begin));
}

/// Gives a section without a c-line the session's, in front of its first attribute line.
void addConnection(std::string& section, const std::string& connection) {
  if (findLine(section, kCLine) != npos) return;
  const std::size_t attribute = findLine(section, kAttribute);
  section.insert(attribute != npos ? attribute : 0, connection + "\n");
}

/// Where a video section lies: up to the LF in front of the next m-line, or to the text's end.
struct Section {
  Span span;
  bool last;
};

Section sectionAt(std::string_view text, std::size_t at) {
  const std::size_t next = nextMLine(text, at);
  if (next == npos) return {{at, text.size()}, true};
  trace::progress("next_mline: %s", text.data() + next - 1);
  return {{at, next - 1}, false};
}

/// Appends a section to the collection and removes it from the text if asked to.
/// @return whether it was the last one
bool collect(SdpText& text, std::size_t at, const std::string& connection, bool remove,
             std::string& collected) {
  const Section section = sectionAt(text.view(), at);
  std::string lines(text.view().substr(at, section.span.end - at));
  trace::progress("str1: %s", lines.c_str());
  addConnection(lines, connection);
  trace::progress("str1: %s", lines.c_str());
  collected += lines;
  trace::progress("str: %s", collected.c_str());
  if (remove) {
    // The LF in front of the next m-line stays beside that in front of the section.
    text.erase(section.span);
    trace::progress("new sdp: %s.", text.view().data());
  }
  return section.last;
}

std::string collectVideo(SdpText& text, const std::string& connection, bool remove) {
  std::string collected;
  std::size_t at = nextMLineOf(text.view(), kVideo);
  while (at != npos) {
    trace::info("mstart: %s", text.view().data() + at);
    if (collect(text, at, connection, remove, collected)) break;
    // Also when the section has gone: the m-line that follows it directly is then behind the search.
    at = nextMLineOf(text.view(), kVideo, at + kMLine.size() + kVideo.size() + 1);
  }
  return collected;
}

/// Writes the collection into a caller's buffer. One that is too small is told, but no reason to fail.
void handOut(std::string_view collected, char* out, unsigned int outSize) {
  const bool writable = out != nullptr && outSize > 0;
  if (outSize < collected.size()) {
    if (writable) out[0] = '\0';
    tell({.reason = SDP_REFUSED_VIDEO_BUFFER_TOO_SMALL});
    return;
  }
  if (!writable) return;
  // A result that takes all of the buffer loses its last character.
  out[collected.copy(out, outSize - 1)] = '\0';
  out[outSize - 1] = '\0';
}

Refusal take(SdpText& text, char* out, unsigned int outSize, bool remove) {
  const std::optional<std::string> connection = connectionLine(text.view());
  if (!connection) return {.reason = SDP_REFUSED_NO_C_LINE_FOR_VIDEO};
  trace::progress("c_line: %s", connection->c_str());
  handOut(collectVideo(text, *connection, remove), out, outSize);
  return {};
}

}  // namespace

Refusal takeVideoSections(SdpText& text, char* out, unsigned int outSize, bool remove) {
  trace::progress("Entering getVideoDescriptions() method.");
  if (const Refusal refusal = refusalOfBuffer(text, "getVideoDescriptions")) return refusal;
  trace::progress("original sdp: %s.", text.view().data());
  try {
    return take(text, out, outSize, remove);
  } catch (const std::bad_alloc&) {
    return {.reason = SDP_REFUSED_NO_MEMORY_FOR_VIDEO};
  }
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::getVideoDescriptions(char* sdp, char* out, unsigned int outSize,
                                                      bool removeFromSdp) {
  SdpText text(sdp);
  return statusOf(takeVideoSections(text, out, outSize, removeFromSdp));
}
