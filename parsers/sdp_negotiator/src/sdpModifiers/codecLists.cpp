#include "sdpModifiers/codecLists.h"

#include <algorithm>
#include <optional>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/codecRecords.h"
#include "sdpModifiers/codecText.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorParser/withDescription.h"
#include "text/anyLines.h"
#include "text/fixedText.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// A description that holds its text whole is edited and written again by the codec, which gives the text the codec's
// form. One that does not would lose what it could not hold: there, and where the lists might outgrow a description, the
// text of the audio sections is edited line by line, so that every line that nobody asked to change survives.

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

}  // namespace

std::optional<AudioSection::FormatLine> AudioSection::formatLine(std::string_view line) {
  if (!startsWith(line, "a=rtpmap") && !startsWith(line, "a=fmtp")) return std::nullopt;
  const std::size_t colon = line.find(':');
  if (colon == npos) return std::nullopt;
  const std::string_view value = line.substr(colon + 1);
  return FormatLine{line.substr(2, colon - 2), value, numberOrZero<int>(value)};
}

void AudioSection::readFormatLines() {
  AnyLines lines(unread_);
  while (!lines.atEnd() && noOfLines_ < kRemembered) {
    if (const auto line = formatLine(lines.next().content)) lines_[noOfLines_++] = *line;
  }
  unread_ = lines.rest();
}

/// Adds an attribute to a block when the analysis reads it for that payload type.
void AudioSection::addLine(a_line& block, const FormatLine& line, int payloadType) {
  if (block.count == SDP_ATTRIBUTE_CAPACITY || line.payloadType != payloadType) return;
  a_line::entry& entry = block.entries[block.count++];
  entry.name[line.name.copy(entry.name, sizeof entry.name - 1)] = '\0';
  entry.value[line.value.copy(entry.value, sizeof entry.value - 1)] = '\0';
  entry.hasColon = 1;
}

std::uint8_t AudioSection::dynamicCodec(int payloadType) {
  a_line block;
  block.count = 0;
  if (noOfLines_ == 0) readFormatLines();
  for (std::size_t i = 0; i < noOfLines_; ++i) addLine(block, lines_[i], payloadType);
  for (AnyLines lines(unread_); !lines.atEnd();) {
    if (const auto line = formatLine(lines.next().content)) addLine(block, *line, payloadType);
  }
  return sdpParserMessage::convertDynamicCodec(payloadType, &block);
}

std::uint8_t AudioSection::codecOf(std::string_view formatOrValue) {
  const int payloadType = numberOrZero<int>(formatOrValue);
  if (payloadType < kFirstDynamicPayload || payloadType > kLastDynamicPayload) {
    return sdpParserMessage::convertCodec(FixedText<SDP_ATTRIBUTE_VALUE_SIZE>().add(formatOrValue).text(),
                                          nullptr);
  }
  const int index = payloadType - kFirstDynamicPayload;
  if (dynamic_[index] == kUnasked) dynamic_[index] = dynamicCodec(payloadType);
  return dynamic_[index];
}

namespace {

/// Room for a whole edited text.
using Composed = FixedText<MAX_SDP_PROTOCOL_DATA_SIZE>;

/// Takes the lines up to the next m-line.
std::string_view takeSection(AnyLines& lines) {
  const std::string_view text = lines.rest();
  do {
    lines.next();
  } while (!lines.atEnd() && !startsWith(lines.rest(), kMLine));
  return text.substr(0, text.size() - lines.rest().size());
}

bool isAudio(std::string_view section) {
  return startsWith(section, kMLine) && Words(section.substr(kMLine.size()), " \t").next() == "audio";
}

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

std::span<const unsigned char> listOf(const unsigned char* codecs) {
  return valuesOf(codecs, MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
}

/// Leaves formats, rtpmap and fmtp lines out whose codec is not in the list; telephone events and comfort noise
/// stay, unknown codecs do not.
void keepCodecs(AudioSection section, std::span<const unsigned char> keep, Composed& out) {
  const auto isKept = [&](std::string_view text) {
    const std::uint8_t codec = section.codecOf(text);
    return isAlwaysKept(codec) || (codec != SDP_NO_CODEC && holds(keep, codec));
  };
  AnyLines lines(section.text());
  const AnyLine first = lines.next();
  MediaLine mLine(first.content);
  out.add(mLine.start);
  for (std::string_view format = mLine.formats.next(); !format.empty(); format = mLine.formats.next()) {
    if (isKept(format)) out.add(" ").add(format);
  }
  out.add(first.end());
  while (!lines.atEnd()) {
    const AnyLine line = lines.next();
    const auto value = formatValue(line.content);
    if (!value || isKept(*value)) out.add(line.whole);
  }
}

/// The first format of a codec; empty when there is none.
std::string_view formatOf(AudioSection& section, Words formats, std::uint8_t codec) {
  std::string_view format = formats.next();
  while (!format.empty() && section.codecOf(format) != codec) format = formats.next();
  return format;
}

/// Adds lines that are moved: each has an end of its own, and attributes stop at a limit.
class MovedLines {
 public:
  MovedLines(Composed& out, int attributeLimit) : out_(out), attributesLeft_(attributeLimit) {}
  void add(const AnyLine& line) { out_.add(line.content).add(line.endForMore()); }
  void addAttribute(const AnyLine& line) {
    if (attributesLeft_ == 0) return;
    --attributesLeft_;
    add(line);
  }

 private:
  Composed& out_;
  int attributesLeft_;
};

template <typename Wanted, typename Add>
void forEachLine(std::string_view text, Wanted wanted, Add add) {
  for (AnyLines lines(text); !lines.atEnd();) {
    const AnyLine line = lines.next();
    if (wanted(line.content)) add(line);
  }
}

/// Puts the formats of a list's codecs in its order, the first of each, and their rtpmap and fmtp lines in front of
/// the other attributes; all other formats go.
void orderCodecs(AudioSection section, std::span<const unsigned char> order, int attributeLimit,
                 Composed& out) {
  AnyLines all(section.text());
  const AnyLine first = all.next();
  const std::string_view lines = all.rest();
  const MediaLine mLine(first.content);
  MovedLines moved(out, attributeLimit);
  out.add(mLine.start);
  for (const unsigned char codec : order) {
    const std::string_view format = formatOf(section, mLine.formats, codec);
    if (!format.empty()) out.add(" ").add(format);
  }
  out.add(first.endForMore());
  const auto isAttribute = [](std::string_view line) { return startsWith(line, kAttribute); };
  const auto add = [&](const AnyLine& line) { moved.add(line); };
  const auto addAttribute = [&](const AnyLine& line) { moved.addAttribute(line); };
  forEachLine(
      lines, [&](std::string_view line) { return !isAttribute(line); }, add);
  for (const unsigned char codec : order) {
    const auto isOfCodec = [&](std::string_view line) {
      const auto value = formatValue(line);
      return value && section.codecOf(*value) == codec;
    };
    forEachLine(lines, isOfCodec, addAttribute);
  }
  forEachLine(
      lines, [&](std::string_view line) { return isAttribute(line) && !formatValue(line); }, addAttribute);
}

/// What a refusal names an edited text.
constexpr const char* kEditedText = "edited SDP";

/// Puts an edited text in the place of the old one, in the codec's form when it and the old one are complete.
Refusal keepEdited(SdpText& text, const Composed& edited, sDescription& description, const char* operation) {
  if (edited.cut()) return refusalOfRoom(operation, kEditedText);
  if (!sdp_isComplete(&description)) {
    const bool fits = text.replace({0, text.size()}, edited.view()) == Edit::done;
    return fits ? Refusal() : refusalOfRoom(operation, kEditedText);
  }
  if (decodeText(description, edited.text()) != 0) {
    return {.reason = SDP_REFUSED_EDITED_NOT_DECODED, .operation = operation};
  }
  return replaceByEncoded(text, description, operation, kEditedText);
}

/// Composes a text whose audio sections an edit writes.
template <typename SectionEdit>
void composeSections(std::string_view text, SectionEdit edit, Composed& edited) {
  for (AnyLines lines(text); !lines.atEnd();) {
    const std::string_view section = takeSection(lines);
    if (isAudio(section)) {
      edit(AudioSection(section), edited);
    } else {
      edited.add(section);
    }
  }
}

/// How an edit of codec lists is named.
struct Names {
  const char* operation;
  const char* done;  ///< traced when it is done
};

/// Edits a text line by line.
/// @param description of the text; of no use afterwards
/// @param edit        takes an audio section, where to write it, and the attribute lines that it may have
template <typename SectionEdit>
Refusal editLines(SdpText& text, sDescription& description, const Names& names, SectionEdit edit) {
  const int limit = sdp_isComplete(&description) ? SDP_ATTRIBUTE_CAPACITY : MAX_SDP_PROTOCOL_DATA_SIZE;
  Composed edited;
  composeSections(
      text.view(), [&](const AudioSection& section, Composed& out) { edit(section, out, limit); }, edited);
  return keepEdited(text, edited, description, names.operation);
}

/// Whether the lines of a text cannot become too many or too long for it: none but the last one's end is added.
bool holdsItsLines(const SdpText& text) {
  constexpr std::size_t kLineEnd = 2;
  return text.room() >= kLineEnd;
}

bool hasRepeats(std::span<const unsigned char> codecs) {
  for (std::size_t i = 1; i < codecs.size(); ++i) {
    if (holds(codecs.first(i), codecs[i])) return true;
  }
  return false;
}

/// Edits the audio sections of a text, by its description where that holds all of it, else line by line.
/// @param byRecord  false for what a description may not hold afterwards
/// @param describes receives whether the description is that of the edited text
template <typename RecordEdit, typename SectionEdit>
Refusal editAudioSections(SdpText& text, sDescription& description, bool& describes, const Names& names,
                          bool byRecord, RecordEdit editRecord, SectionEdit editSection) {
  describes = false;
  if (const Refusal refusal = refusalOfBuffer(text, names.operation)) return refusal;
  if (const Refusal refusal = decode(description, text.view())) return refusal;
  Refusal refusal;
  if (byRecord && sdp_isComplete(&description) && holdsItsLines(text)) {
    editRecord(description);
    refusal = replaceByEncoded(text, description, names.operation, kEditedText);
    describes = !refusal;
  } else {
    refusal = editLines(text, description, names, editSection);
  }
  if (!refusal) trace::progress("%s", names.done);
  return refusal;
}

}  // namespace

Refusal removeCodecs(SdpText& text, const unsigned char* keep, sDescription& description, bool& describes) {
  if (keep == nullptr) return {.reason = SDP_REFUSED_NO_CODEC_LIST};
  return editAudioSections(
      text, description, describes,
      {"sdpRemoveCodecs", "The selected audio codecs have been removed from the SDP"}, true,
      [keep](sDescription& record) { keepCodecs(record, listOf(keep)); },
      [keep](const AudioSection& section, Composed& out, int /*attributeLimit*/) {
        keepCodecs(section, listOf(keep), out);
      });
}

Refusal reorderCodecs(SdpText& text, const unsigned char* order, sDescription& description, bool& describes) {
  if (order == nullptr) return {.reason = SDP_REFUSED_NO_CODEC_LIST};
  return editAudioSections(
      text, description, describes, {"sdpCodecsReordering", "The audio codecs reordering has been done"},
      !hasRepeats(listOf(order)), [order](sDescription& record) { orderCodecs(record, listOf(order)); },
      [order](const AudioSection& section, Composed& out, int attributeLimit) {
        orderCodecs(section, listOf(order), attributeLimit, out);
      });
}

Refusal removeCodecs(SdpText& text, const unsigned char* keep) {
  return withDescription([&](sDescription& description) -> Refusal {
    bool describes = false;
    return removeCodecs(text, keep, description, describes);
  });
}

Refusal reorderCodecs(SdpText& text, const unsigned char* order) {
  return withDescription([&](sDescription& description) -> Refusal {
    bool describes = false;
    return reorderCodecs(text, order, description, describes);
  });
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpRemoveCodecs(char* sdp, const unsigned char* keep) {
  SdpText text(sdp);
  return statusOf(removeCodecs(text, keep));
}

unsigned short sdpModifications::sdpCodecsReordering(char* sdp, const unsigned char* order) {
  SdpText text(sdp);
  return statusOf(reorderCodecs(text, order));
}
