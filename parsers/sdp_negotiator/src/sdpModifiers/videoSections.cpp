#include "sdpModifiers/videoSections.h"

#include <algorithm>
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

/// The first c-line through its LF; nothing without a c-line that ends in LF.
std::optional<std::string> connectionLine(std::string_view text) {
  const std::size_t found = findAnywhere(text, kCLine);
  if (found == npos) return std::nullopt;
  const Line line = lineAt(text, found);
  if (!line.terminated) return std::nullopt;
  return std::string(text.substr(line.begin, line.next() - line.begin));
}

/// Where a section without a c-line gets the session's: in front of its first attribute line; npos where it has one.
std::size_t placeOfConnection(std::string_view section) {
  if (findLine(section, kCLine) != npos) return npos;
  const std::size_t attribute = findLine(section, kAttribute);
  return attribute != npos ? attribute : 0;
}

/// The video sections of a text, collected as far as a buffer takes them and, if asked to, taken out of the text.
class VideoSections {
 public:
  /// @param connection for sections without a c-line
  /// @param outSize    of the buffer; what is more than that, and than a trace shows, is not collected
  VideoSections(const std::string& connection, unsigned int outSize)
      : connection_(connection), most_(std::max<std::size_t>(outSize, MAX_SDP_PROTOCOL_DATA_SIZE)) {}

  /// Collects the next section.
  /// @return where it lies, up to the LF in front of the next m-line or to the text's end
  std::optional<Span> next(std::string_view text) {
    if (ended_) return std::nullopt;
    const std::size_t at = nextMLineOf(text, kVideo, from_);
    ended_ = at == npos;
    if (ended_) return std::nullopt;
    if (tracing_) trace::info("mstart: %s", text.data() + at);
    const std::size_t mLine = nextMLine(text, at);
    ended_ = mLine == npos;
    if (!ended_ && tracing_) trace::progress("next_mline: %s", text.data() + mLine - 1);
    const Span section{at, ended_ ? text.size() : mLine - 1};
    if (collected_.size() <= most_ || tracing_) collect(text.substr(at, section.end - at));
    return section;
  }

  /// Has the search go on behind a place: also when the section in front of it has gone, so that the m-line that follows
  /// it directly is left out.
  void goOnFrom(std::size_t place) { from_ = place + kMLine.size() + kVideo.size() + 1; }

  const std::string& collected() const { return collected_; }

 private:
  void collect(std::string_view section) {
    const std::size_t begin = collected_.size();
    const std::size_t place = placeOfConnection(section);
    collected_ += section;
    if (tracing_) trace::progress("str1: %s", collected_.c_str() + begin);
    if (place != npos) collected_.insert(begin + place, connection_);
    if (!tracing_) return;
    trace::progress("str1: %s", collected_.c_str() + begin);
    trace::progress("str: %s", collected_.c_str());
  }

  const std::string& connection_;
  std::size_t most_;
  bool tracing_ = isTracing();  ///< asked once, for there are several lines for each section
  std::size_t from_ = 0;
  bool ended_ = false;
  std::string collected_;
};

/// Takes the sections out in one pass. Traces show the text behind each removal, of which all that stands in front of an
/// offset of the pass lies at the text's start already.
void takeOut(SdpText& text, VideoSections& sections) {
  std::size_t removed = 0;
  text.eraseEach([&](std::string_view view, std::size_t from) {
    if (removed != 0) {
      trace::progress("new sdp: %.*s%s.", static_cast<int>(from - removed), view.data(), view.data() + from);
    }
    const std::optional<Span> section = sections.next(view);
    if (section) {
      removed += section->end - section->begin;
      sections.goOnFrom(section->end);
    }
    return section;
  });
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
  trace::progress("c_line: %.*s", static_cast<int>(connection->size() - 1), connection->data());
  VideoSections sections(*connection, outSize);
  if (remove) {
    takeOut(text, sections);
  } else {
    while (const auto section = sections.next(text.view())) sections.goOnFrom(section->begin);
  }
  handOut(sections.collected(), out, outSize);
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
