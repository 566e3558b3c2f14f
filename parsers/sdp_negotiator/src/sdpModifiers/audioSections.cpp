#include "sdpModifiers/audioSections.h"

#include "aLine.h"
#include "sdpModifiers/codecLists.h"
#include "sdpNegotiatorParser.h"
#include "text/sections.h"
#include "vocabulary.h"

// The codecs of an audio section, and the section without some or in another order.

namespace sdpneg {

namespace {

/// The value of an attribute line of that name, empty where it has none; nothing for another line.
std::optional<std::string_view> attributeValue(std::string_view line, std::string_view start) {
  if (!startsWith(line, start)) return std::nullopt;
  const std::string_view behind = line.substr(start.size());
  if (behind.empty()) return behind;
  return behind[0] == ':' ? std::optional(behind.substr(1)) : std::nullopt;
}

/// The value of an rtpmap or fmtp line.
std::optional<std::string_view> formatValue(std::string_view line) {
  const auto rtpmap = attributeValue(line, "a=rtpmap");
  return rtpmap ? rtpmap : attributeValue(line, "a=fmtp");
}

/// An rtpmap or fmtp attribute as the analysis reads it.
struct FormatAttribute {
  std::string_view name;
  std::string_view value;
};

/// @param line begins with the name of one
std::optional<FormatAttribute> formatAttribute(std::string_view line) {
  const std::size_t colon = line.find(':');
  if (colon == npos) return std::nullopt;
  return FormatAttribute{line.substr(kAttribute.size(), colon - kAttribute.size()), line.substr(colon + 1)};
}

void addTo(a_line& block, const FormatAttribute& attribute) {
  a_line::entry& entry = block.entries[block.count++];
  entry.name[attribute.name.copy(entry.name, sizeof entry.name - 1)] = '\0';
  entry.value[attribute.value.copy(entry.value, sizeof entry.value - 1)] = '\0';
  entry.hasColon = 1;
}

bool isDynamic(int payloadType) {
  return payloadType >= kFirstDynamicPayload && payloadType <= kLastDynamicPayload;
}

}  // namespace

void AudioSection::readDynamicLines() {
  haveLines_ = true;
  std::fill_n(first_, kDynamicTypes, std::uint16_t{0});
  std::uint16_t count = 0;
  FormatLines lines(text_);
  for (auto line = lines.next(); line && count < kMostLines; line = lines.next()) {
    const auto attribute = formatAttribute(line->content);
    const int payloadType = attribute ? numberOrZero<int>(attribute->value) : 0;
    if (!isDynamic(payloadType)) continue;
    const int type = payloadType - kFirstDynamicPayload;
    lines_[++count] = {static_cast<std::uint16_t>(line->whole.data() - text_.data()), 0};
    (first_[type] == 0 ? first_[type] : lines_[last_[type]].next) = count;
    last_[type] = count;
  }
}

/// The codec of a payload type by its first lines, as many as the analysis reads.
std::uint8_t AudioSection::dynamicCodec(int payloadType) {
  if (!haveLines_) readDynamicLines();
  a_line block;
  block.count = 0;
  std::uint16_t number = first_[payloadType - kFirstDynamicPayload];
  while (number != 0 && block.count < SDP_ATTRIBUTE_CAPACITY) {
    const auto attribute = formatAttribute(AnyLines(text_.substr(lines_[number].begin)).next().content);
    if (attribute) addTo(block, *attribute);
    number = lines_[number].next;
  }
  return sdpParserMessage::convertDynamicCodec(payloadType, &block);
}

int AudioSection::slotOf(std::string_view formatOrValue) {
  const int payloadType = numberOrZero<int>(formatOrValue);
  if (payloadType < 0 || payloadType > kLastDynamicPayload) return kNoPayloadType;
  return payloadType != 0 || startsWith(formatOrValue, "0") ? payloadType : kNoNumber;
}

std::uint8_t AudioSection::codecOf(std::string_view formatOrValue) {
  const int slot = slotOf(formatOrValue);
  if (known_[slot] == kUnasked) {
    known_[slot] = isDynamic(slot)
                       ? dynamicCodec(slot)
                       : sdpParserMessage::convertCodec(
                             FixedText<SDP_ATTRIBUTE_VALUE_SIZE>().add(formatOrValue).text(), nullptr);
  }
  return known_[slot];
}

namespace {

/// An m-line taken apart: what stands in front of its formats, and the formats.
struct MediaLine {
  explicit MediaLine(std::string_view line) : formats(line.substr(kMLine.size()), " \t") {
    formats.next();
    formats.next();
    formats.next();
    start = line.substr(0, line.size() - formats.rest().size());
  }
  std::string_view start;
  Words formats;
};

}  // namespace

void keepCodecs(AudioSection& section, std::span<const unsigned char> keep, Composed& out) {
  const auto isKept = [&](std::string_view text) {
    const std::uint8_t codec = section.codecOf(text);
    return isAlwaysKept(codec) || (codec != SDP_NO_CODEC && holds(keep, codec));
  };
  std::string_view rest = section.text();
  const AnyLine first = AnyLines(rest).next();
  MediaLine mLine(first.content);
  out.add(mLine.start);
  for (std::string_view format = mLine.formats.next(); !format.empty(); format = mLine.formats.next()) {
    if (isKept(format)) out.add(" ").add(format);
  }
  rest.remove_prefix(first.content.size());
  FormatLines lines(section.text());
  for (auto line = lines.next(); line; line = lines.next()) {
    const auto value = formatValue(line->content);
    if (!value || isKept(*value)) continue;
    const auto inFront = static_cast<std::size_t>(line->whole.data() - rest.data());
    out.add(rest.substr(0, inFront));
    rest.remove_prefix(inFront + line->whole.size());
  }
  out.add(rest);
}

namespace {

constexpr std::size_t kPlaces = MAX_SDP_NEGOTIATOR_AUDIO_CODECS + 1;

/// The first format of each codec of a list; empty for one without.
class FirstFormats {
 public:
  FirstFormats(AudioSection& section, Words formats, const CodecOrder& order) : order_(order) {
    for (std::string_view format = formats.next(); !format.empty(); format = formats.next()) {
      std::string_view& first = formats_[order.placeOf(section.codecOf(format))];
      if (first.empty()) first = format;
    }
  }
  std::string_view of(std::uint8_t codec) const { return formats_[order_.placeOf(codec)]; }

 private:
  const CodecOrder& order_;
  std::string_view formats_[kPlaces];
};

/// Lines that are moved: each has an end of its own.
void addMoved(Composed& out, std::string_view lines) {
  if (lines.empty() || lines.back() == '\n') {
    out.add(lines);
  } else {
    out.add(lines.substr(0, lines.size() - (lines.back() == '\r' ? 1 : 0))).add("\r\n");
  }
}

/// Adds attribute lines that are moved; they stop at a limit.
class MovedAttributes {
 public:
  MovedAttributes(Composed& out, int limit) : out_(out), left_(limit) {}
  void add(std::string_view line) {
    if (left_ == 0) return;
    --left_;
    addMoved(out_, line);
  }

 private:
  Composed& out_;
  int left_;
};

/// The rtpmap and fmtp lines of a section that are of codecs of a list.
class LinesByCodec {
 public:
  LinesByCodec(AudioSection& section, const CodecOrder& order) : section_(section.text()), order_(order) {
    FormatLines lines(section_);
    for (auto line = lines.next(); line && count_ < kMost; line = lines.next()) {
      const auto value = formatValue(line->content);
      const std::size_t place = value ? order.placeOf(section.codecOf(*value)) : 0;
      if (place != 0) append(line->whole, place);
    }
  }

  template <typename Visit>
  void forEachOf(std::uint8_t codec, Visit visit) const {
    for (std::uint16_t number = first_[order_.placeOf(codec)]; number != 0; number = lines_[number].next) {
      visit(AnyLines(section_.substr(lines_[number].begin)).next().whole);
    }
  }

 private:
  /// More than a text has room for, each with an LF.
  static constexpr std::size_t kMost = MAX_SDP_PROTOCOL_DATA_SIZE / sizeof "a=fmtp";

  /// Where a line begins, and the next one of its codec; they are numbered from 1.
  struct Numbered {
    std::uint16_t begin;
    std::uint16_t next;
  };

  void append(std::string_view whole, std::size_t place) {
    const auto number = static_cast<std::uint16_t>(++count_);
    lines_[number] = {static_cast<std::uint16_t>(whole.data() - section_.data()), 0};
    (first_[place] == 0 ? first_[place] : lines_[last_[place]].next) = number;
    last_[place] = number;
  }

  std::string_view section_;
  const CodecOrder& order_;
  Numbered lines_[kMost + 1];
  std::uint16_t first_[kPlaces] = {};
  std::uint16_t last_[kPlaces] = {};
  std::size_t count_ = 0;
};

/// Calls `visit` with all lines that follow one another without an attribute line between them.
template <typename Visit>
void forEachRunOfOthers(std::string_view lines, Visit visit) {
  std::size_t at = 0;
  while (at < lines.size()) {
    if (startsWith(lines.substr(at), kAttribute)) {
      at = lineAt(lines, at).next();
      continue;
    }
    const std::size_t end = orEnd(findLine(lines, kAttribute, at), lines);
    visit(lines.substr(at, end - at));
    at = end;
  }
}

/// Calls `visit` with each attribute line that is none of a format.
template <typename Visit>
void forEachOtherAttribute(std::string_view section, Visit visit) {
  for (std::size_t at = findLine(section, kAttribute); at != npos; at = findLine(section, kAttribute, at)) {
    const AnyLine line = AnyLines(section.substr(at)).next();
    if (!formatValue(line.content)) visit(line.whole);
  }
}

}  // namespace

void orderCodecs(AudioSection& section, const CodecOrder& order, int attributeLimit, Composed& out) {
  AnyLines all(section.text());
  const AnyLine first = all.next();
  const MediaLine mLine(first.content);
  const FirstFormats formats(section, mLine.formats, order);
  out.add(mLine.start);
  for (const unsigned char codec : order.codecs()) {
    if (!formats.of(codec).empty()) out.add(" ").add(formats.of(codec));
  }
  out.add(first.endForMore());
  forEachRunOfOthers(all.rest(), [&](std::string_view lines) { addMoved(out, lines); });
  MovedAttributes attributes(out, attributeLimit);
  const auto add = [&](std::string_view line) { attributes.add(line); };
  const LinesByCodec byCodec(section, order);
  for (const unsigned char codec : order.codecs()) byCodec.forEachOf(codec, add);
  forEachOtherAttribute(section.text(), add);
}

}  // namespace sdpneg
