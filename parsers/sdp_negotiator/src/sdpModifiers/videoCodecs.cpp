#include "sdpModifiers/videoCodecs.h"

#include <algorithm>
#include <bitset>
#include <cstdint>
#include <optional>
#include <string_view>

#include "mLine.h"
#include "sdpModifiers/codecLists.h"
#include "sdpNegotiatorParser.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// The formats of video sections: those of allowed codecs stay.

namespace sdpneg {

namespace {

using Codecs = std::span<const unsigned char>;

constexpr std::string_view kVideo = "video";

/// Whether a text begins with a format as a whole word.
bool beginsWithFormat(std::string_view text, std::string_view format) {
  return startsWith(text, format) && text.size() > format.size() && isSpace(text[format.size()]);
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

/// The first place of a format on an m-line, whichever field it is, with the blanks in front of it.
/// @param mLine with its line end
std::optional<Span> formatField(std::string_view mLine, std::string_view format) {
  for (std::size_t at = mLine.find(format); at != npos; at = mLine.find(format, at + 1)) {
    if (at == 0 || !isBlank(mLine[at - 1]) || !beginsWithFormat(mLine.substr(at), format)) continue;
    return Span{mLine.find_last_not_of(" \t", at - 1) + 1, at + format.size()};
  }
  return std::nullopt;
}

bool describesFormat(std::string_view line, std::string_view format) {
  for (const std::string_view prefix : {"a=rtpmap:", "a=fmtp:"}) {
    if (startsWith(line, prefix)) return beginsWithFormat(line.substr(prefix.size()), format);
  }
  return false;
}

/// The next whole line that describes a format, behind the LF at or behind `from`.
std::optional<Span> nextDescription(std::string_view section, std::size_t from, std::string_view format) {
  for (std::size_t at = findLine(section, kAttribute, from); at != npos;
       at = findLine(section, kAttribute, at)) {
    if (!describesFormat(section.substr(at), format)) continue;
    // From LF to LF, so that the one in front of the next line is still there to be found.
    const Line line = lineAt(section, at);
    return line.terminated ? Span{at - 1, line.lf} : Span{at, line.lf};
  }
  return std::nullopt;
}

/// A video section of a text. Offsets hold while only this section is edited.
class VideoSection {
 public:
  VideoSection(SdpText& text, std::size_t mLine)
      : text_(text), begin_(mLine), end_(sectionEnd(text.view(), mLine)) {
    mLine_.mediaType = 0;
    mLine_.formatCount = 0;
    mLine_.incomplete = 0;
  }

  /// @return whether the m-line could be decoded
  bool decode() {
    const char* position = text_.view().data() + begin_;
    int line = 0;
    int column = 0;
    return sdp_Mdecode_r(&mLine_, position, nullptr, line, column) == 0;
  }

  /// Tells allowed formats from those to remove. @return whether there is an allowed one
  bool judge(Codecs allowed);
  void removeOthers();
  bool hasOthers() const { return others_.any(); }

 private:
  void remove(std::string_view format);
  std::string_view view() const { return text_.view().substr(begin_, end_ - begin_); }
  void erased(std::size_t sizeBefore) { end_ -= sizeBefore - text_.size(); }

  SdpText& text_;
  std::size_t begin_;
  std::size_t end_;
  m_line mLine_;
  std::bitset<SDP_FORMAT_CAPACITY> others_;
};

bool VideoSection::judge(Codecs allowed) {
  const std::string_view section = view();
  const int total = std::min(sdp_MgetNoOfFormats(&mLine_), SDP_FORMAT_CAPACITY);
  int allowedCount = 0;
  for (int i = 0; i < total; ++i) {
    const std::uint8_t codec = sdpParserMessage::getMediaCodec(
        section.data(), section.data() + section.size(), sdp_MgetFormat(&mLine_, i));
    const bool isAllowed = codec != SDP_NO_CODEC && holds(allowed, codec);
    if (isAllowed) ++allowedCount;
    others_.set(static_cast<std::size_t>(i), codec != SDP_NO_CODEC && !isAllowed);
  }
  const int removed = static_cast<int>(others_.count());
  const std::string_view shown = content(section, lineAt(section, 0));
  trace::debug(
      "Processing media [%.*s]: contains total of %i codecs, %i are allowed, %i codecs must be removed and %i are unknown/invalid",
      static_cast<int>(shown.size()), shown.data(), total, allowedCount, removed,
      total - allowedCount - removed);
  return allowedCount != 0;
}

void VideoSection::remove(std::string_view format) {
  const std::size_t before = text_.size();
  const Line mLine = lineAt(text_.view(), begin_);
  const auto field = formatField(view().substr(0, mLine.next() - begin_), format);
  if (field) text_.erase({begin_ + field->begin, begin_ + field->end});
  erased(before);
  const std::size_t behind = text_.size();
  text_.eraseEach([&](std::string_view text, std::size_t from) {
    return nextDescription(text.substr(0, end_), std::max(from, begin_), format);
  });
  erased(behind);
}

void VideoSection::removeOthers() {
  for (int i = 0; i < sdp_MgetNoOfFormats(&mLine_); ++i) {
    if (!others_.test(static_cast<std::size_t>(i))) continue;
    const char* const format = sdp_MgetFormat(&mLine_, i);
    trace::debug("Removing format [%s] from video media", format);
    remove(format);
  }
}

}  // namespace

Refusal restrictVideo(SdpText& text, Codecs allowed, bool& changed) {
  Refusal refusal{.reason = SDP_REFUSED_NO_VIDEO};
  changed = false;
  forEachMLineOf(text, kVideo, [&](std::size_t at) {
    VideoSection section(text, at);
    if (!section.decode()) return true;
    const bool hasAllowed = section.judge(allowed);
    refusal.reason = hasAllowed ? SDP_REFUSED_NOTHING : SDP_REFUSED_NO_ALLOWED_VIDEO_CODEC;
    if (!hasAllowed) return false;
    changed = changed || section.hasOthers();
    section.removeOthers();
    return true;
  });
  return refusal;
}

}  // namespace sdpneg
