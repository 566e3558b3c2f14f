#ifndef SDP_MODIFIERS_AUDIO_SECTIONS_H
#define SDP_MODIFIERS_AUDIO_SECTIONS_H

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "sdpDataDefinitions.h"
#include "sdpNegotiatorParser/audioCodecRules.h"
#include "text/anyLines.h"
#include "text/fixedText.h"
#include "text/occurrences.h"

// Audio sections as edits of codec lists see these, line by line.

namespace sdpneg {

/// The rtpmap and fmtp lines of a section, told by what their names begin with, one after the other.
class FormatLines {
 public:
  /// @param section begins with its m-line
  explicit FormatLines(std::string_view section)
      : section_(section), rtpmap_(section, {"\n", "a=rtpmap"}), fmtp_(section, {"\n", "a=fmtp"}) {}

  /// The next line; nothing behind the last.
  std::optional<AnyLine> next() {
    const std::size_t lf = std::min(rtpmap_.from(at_), fmtp_.from(at_));
    if (lf == npos) return std::nullopt;
    at_ = lf + 1;
    return AnyLines(section_.substr(at_)).next();
  }

 private:
  std::string_view section_;
  NextPlace rtpmap_;
  NextPlace fmtp_;
  std::size_t at_ = 0;
};

/// The lines of one audio section, as text.
class AudioSection {
 public:
  /// @param text begins with the section's m-line and ends where the next section begins
  explicit AudioSection(std::string_view text) : text_(text) { std::fill_n(known_, kSlots, kUnasked); }

  std::string_view text() const { return text_; }

  /// The codec of a format, or of an rtpmap or fmtp value, by the section's own lines; 0 when unknown.
  std::uint8_t codecOf(std::string_view formatOrValue);

 private:
  static constexpr int kDynamicTypes = kLastDynamicPayload - kFirstDynamicPayload + 1;
  static constexpr std::uint8_t kUnasked = 255;
  // What codecs are told by, beside payload types: a text without a number, and a number beyond the types.
  static constexpr int kNoNumber = kLastDynamicPayload + 1;
  static constexpr int kNoPayloadType = kNoNumber + 1;
  static constexpr int kSlots = kNoPayloadType + 1;
  /// More than a text has room for, each with a dynamic payload type and an LF.
  static constexpr std::size_t kMostLines = MAX_SDP_PROTOCOL_DATA_SIZE / sizeof "a=fmtp:96";

  /// A line with a dynamic payload type: where it begins, and the next one with the same.
  struct DynamicLine {
    std::uint16_t begin;
    std::uint16_t next;
  };

  static int slotOf(std::string_view formatOrValue);
  void readDynamicLines();
  std::uint8_t dynamicCodec(int payloadType);

  std::string_view text_;
  std::uint8_t known_[kSlots];          ///< codecs of what was asked for so far
  std::uint16_t first_[kDynamicTypes];  ///< lines of each type, numbered from 1; 0 for none
  std::uint16_t last_[kDynamicTypes];
  DynamicLine lines_[kMostLines + 1];
  bool haveLines_ = false;
};

/// The codecs of a list, each with its first place in it.
class CodecOrder {
 public:
  explicit CodecOrder(std::span<const unsigned char> codecs) : codecs_(codecs) {
    for (std::size_t i = codecs.size(); i != 0; --i) places_[codecs[i - 1]] = static_cast<std::uint8_t>(i);
  }
  std::span<const unsigned char> codecs() const { return codecs_; }
  /// From 1; 0 for a codec that is not in the list.
  std::size_t placeOf(std::uint8_t codec) const { return places_[codec]; }

 private:
  std::span<const unsigned char> codecs_;
  std::uint8_t places_[UINT8_MAX + 1] = {};
};

/// Room for a whole edited text.
using Composed = FixedText<MAX_SDP_PROTOCOL_DATA_SIZE>;

/// Leaves formats, rtpmap and fmtp lines out whose codec is not in the list; telephone events and comfort noise
/// stay, unknown codecs do not.
void keepCodecs(AudioSection& section, std::span<const unsigned char> keep, Composed& out);

/// Puts the formats of a list's codecs in its order, the first of each, and their rtpmap and fmtp lines in front of
/// the other attributes; all other formats go.
/// @param attributeLimit the attribute lines that the section may have
void orderCodecs(AudioSection& section, const CodecOrder& order, int attributeLimit, Composed& out);

}  // namespace sdpneg

#endif
