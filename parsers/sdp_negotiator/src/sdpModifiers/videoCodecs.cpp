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
/// Characters of an rtpmap value that are looked at.
constexpr std::size_t kLongestEncoding = 512;

/// Whether a text begins with a format as a whole word.
bool beginsWithFormat(std::string_view text, std::string_view format) {
  return startsWith(text, format) && text.size() > format.size() && isSpace(text[format.size()]);
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

/// The first place of a format on an m-line, whichever field it is, with the blanks in front of it.
/// @param mLine with its line end
std::optional<Span> formatField(std::string_view mLine, std::string_view format) {
  for (std::size_t at = findAnywhere(mLine, format); at != npos; at = findAnywhere(mLine, format, at + 1)) {
    if (at == 0 || !isBlank(mLine[at - 1]) || !beginsWithFormat(mLine.substr(at), format)) continue;
    return Span{mLine.find_last_not_of(" \t", at - 1) + 1, at + format.size()};
  }
  return std::nullopt;
}

/// The formats of an m-line in the order of their texts, so that one is found in few steps.
class SortedFormats {
 public:
  void read(const m_line& mLine) {
    count_ = static_cast<std::size_t>(std::clamp(sdp_MgetNoOfFormats(&mLine), 0, SDP_FORMAT_CAPACITY));
    for (std::size_t i = 0; i < count_; ++i) formats_[i] = {sdp_MgetFormat(&mLine, static_cast<int>(i)), i};
    std::sort(formats_, formats_ + count_, isLess);
  }

  /// Calls `visit` with the number of each format that is a word.
  template <typename Visit>
  void forEachThatIs(std::string_view word, Visit visit) const {
    const auto [begin, end] = std::equal_range(formats_, formats_ + count_, Numbered{word, 0}, isLess);
    for (auto each = begin; each != end; ++each) visit(each->number);
  }

 private:
  struct Numbered {
    std::string_view text;
    std::size_t number;
  };
  static bool isLess(const Numbered& a, const Numbered& b) { return a.text < b.text; }

  Numbered formats_[SDP_FORMAT_CAPACITY];
  std::size_t count_ = 0;
};

/// The first word of a value up to a character for which `ends` holds, as far as it may be a format.
template <typename Ends>
std::string_view wordThatMayBeFormat(std::string_view value, Ends ends) {
  value = value.substr(0, SDP_FORMAT_SIZE);
  return {value.begin(), std::find_if(value.begin(), value.end(), ends)};
}

constexpr std::string_view kRtpmap = "a=rtpmap:";

/// The value of an attribute line that describes a format; nothing for another line.
std::optional<std::string_view> descriptionOf(std::string_view line) {
  for (const std::string_view prefix : {kRtpmap, std::string_view("a=fmtp:")}) {
    if (startsWith(line, prefix)) return line.substr(prefix.size());
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
  void readCodecs();
  void nameCodecs(std::string_view value);
  void removeField(std::string_view format);
  void removeDescriptions();
  std::optional<Span> nextDescription(std::string_view section, std::size_t from) const;
  bool describesOther(std::string_view value) const;
  std::string_view view() const { return text_.view().substr(begin_, end_ - begin_); }
  void erased(std::size_t sizeBefore) { end_ -= sizeBefore - text_.size(); }

  SdpText& text_;
  std::size_t begin_;
  std::size_t end_;
  m_line mLine_;
  SortedFormats formats_;
  std::uint8_t codecs_[SDP_FORMAT_CAPACITY] = {};
  std::bitset<SDP_FORMAT_CAPACITY> named_;  ///< has its codec
  std::bitset<SDP_FORMAT_CAPACITY> others_;
};

/// The codecs of all formats, as `sdpParserMessage::getMediaCodec` has them: by the format where that is a static payload
/// type, else by the first rtpmap line of it.
void VideoSection::readCodecs() {
  formats_.read(mLine_);
  const int total = std::min(sdp_MgetNoOfFormats(&mLine_), SDP_FORMAT_CAPACITY);
  for (int i = 0; i < total; ++i) {
    const char* const format = sdp_MgetFormat(&mLine_, i);
    if (!sdpParserMessage::isStaticPayload(format)) continue;
    codecs_[i] = sdpParserMessage::convertVideoCodec(format, format);
    named_.set(static_cast<std::size_t>(i));
  }
  const std::string_view section = view();
  for (std::size_t at = findLine(section, kRtpmap); at != npos; at = findLine(section, kRtpmap, at)) {
    nameCodecs(section.substr(at + kRtpmap.size()));
  }
}

/// Gives the formats that an rtpmap value is about, and that have none yet, their codec.
void VideoSection::nameCodecs(std::string_view value) {
  const auto word = std::find_if_not(value.begin(), value.end(), isBlank);
  formats_.forEachThatIs(wordThatMayBeFormat({word, value.end()}, isBlank), [&](std::size_t number) {
    if (named_.test(number)) return;
    char name[kLongestEncoding + 1];
    const char* const format = sdp_MgetFormat(&mLine_, static_cast<int>(number));
    if (!sdpParserMessage::isEncodingDefinedInAline(value.data(), format, name, sizeof name)) return;
    codecs_[number] = sdpParserMessage::convertVideoCodec(name, format);
    named_.set(number);
  });
}

bool VideoSection::judge(Codecs allowed) {
  readCodecs();
  const std::string_view section = view();
  const int total = std::min(sdp_MgetNoOfFormats(&mLine_), SDP_FORMAT_CAPACITY);
  int allowedCount = 0;
  for (int i = 0; i < total; ++i) {
    const std::uint8_t codec = codecs_[i];
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

void VideoSection::removeField(std::string_view format) {
  const std::size_t before = text_.size();
  const Line mLine = lineAt(text_.view(), begin_);
  const auto field = formatField(view().substr(0, mLine.next() - begin_), format);
  if (field) text_.erase({begin_ + field->begin, begin_ + field->end});
  erased(before);
}

/// Whether an rtpmap or fmtp value is about a format that goes.
bool VideoSection::describesOther(std::string_view value) const {
  const std::string_view word = wordThatMayBeFormat(value, isSpace);
  bool other = false;
  if (word.size() == value.size()) return false;  // a format ends in front of white space
  formats_.forEachThatIs(word, [&](std::size_t number) { other = other || others_.test(number); });
  return other;
}

/// The next whole line that describes a format that goes, behind the LF at or behind `from`.
std::optional<Span> VideoSection::nextDescription(std::string_view section, std::size_t from) const {
  for (std::size_t at = findLine(section, kAttribute, from); at != npos;
       at = findLine(section, kAttribute, at)) {
    const auto value = descriptionOf(section.substr(at));
    if (!value || !describesOther(*value)) continue;
    // From LF to LF, so that the one in front of the next line is still there to be found.
    const Line line = lineAt(section, at);
    return line.terminated ? Span{at - 1, line.lf} : Span{at, line.lf};
  }
  return std::nullopt;
}

void VideoSection::removeDescriptions() {
  const std::size_t before = text_.size();
  text_.eraseEach([&](std::string_view text, std::size_t from) {
    return nextDescription(text.substr(0, end_), std::max(from, begin_));
  });
  erased(before);
}

void VideoSection::removeOthers() {
  for (int i = 0; i < sdp_MgetNoOfFormats(&mLine_); ++i) {
    if (!others_.test(static_cast<std::size_t>(i))) continue;
    const char* const format = sdp_MgetFormat(&mLine_, i);
    trace::debug("Removing format [%s] from video media", format);
    removeField(format);
  }
  if (others_.any()) removeDescriptions();
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
