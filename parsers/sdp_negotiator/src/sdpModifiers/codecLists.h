#ifndef SDP_MODIFIERS_CODEC_LISTS_H
#define SDP_MODIFIERS_CODEC_LISTS_H

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "refusal.h"
#include "sdpDataDefinitions.h"
#include "sdpNegotiatorParser/audioCodecRules.h"
#include "sessionDescription.h"
#include "text/sdpText.h"
#include "vocabulary.h"

// Codec lists, and audio sections as edits of them see these.

namespace sdpneg {

/// The values of a codec list up to its first 0.
inline std::span<const unsigned char> valuesOf(const unsigned char* codecs, int count) {
  const unsigned char* const end = codecs + std::max(count, 0);
  return {codecs, std::find(codecs, end, SDP_NO_CODEC)};
}

inline bool holds(std::span<const unsigned char> list, std::uint8_t codec) {
  return std::find(list.begin(), list.end(), codec) != list.end();
}

/// Telephone events and comfort noise, which no restriction removes.
inline bool isAlwaysKept(std::uint8_t codec) {
  return codec == kCodecTelephoneEvent || codec == kCodecComfortNoise;
}

/// The lines of one audio section, as text.
class AudioSection {
 public:
  /// @param text begins with the section's m-line and ends where the next section begins
  explicit AudioSection(std::string_view text) : text_(text) {
    std::fill_n(dynamic_, kDynamicTypes, kUnasked);
  }

  std::string_view text() const { return text_; }

  /// The codec of a format, or of an rtpmap or fmtp value, by the section's own lines; 0 when unknown.
  std::uint8_t codecOf(std::string_view formatOrValue);

 private:
  static constexpr int kDynamicTypes = kLastDynamicPayload - kFirstDynamicPayload + 1;
  static constexpr std::uint8_t kUnasked = 255;
  static constexpr std::size_t kRemembered = 64;

  /// An rtpmap or fmtp attribute.
  struct FormatLine {
    std::string_view name;
    std::string_view value;
    int payloadType;
  };

  void readFormatLines();
  std::uint8_t dynamicCodec(int payloadType);
  static std::optional<FormatLine> formatLine(std::string_view line);
  static void addLine(a_line& block, const FormatLine& line, int payloadType);

  std::string_view text_;
  std::uint8_t dynamic_[kDynamicTypes];  ///< codecs of the dynamic payload types asked for so far
  FormatLine lines_[kRemembered];        ///< the section's first ones
  std::size_t noOfLines_ = 0;
  std::string_view unread_ = text_;  ///< behind them
};

/// `sdpModifications::sdpRemoveCodecs`.
/// @param keep null is refused
Refusal removeCodecs(SdpText& text, const unsigned char* keep);

/// `sdpModifications::sdpCodecsReordering`.
/// @param order null is refused
Refusal reorderCodecs(SdpText& text, const unsigned char* order);

// The same for those that go on with the body.

/// @param description receives what the text is decoded into
/// @param describes   receives whether the description is that of the edited text; where it is not, the text tells more
Refusal removeCodecs(SdpText& text, const unsigned char* keep, sDescription& description, bool& describes);

/// @param description,describes as for `removeCodecs`
Refusal reorderCodecs(SdpText& text, const unsigned char* order, sDescription& description, bool& describes);

}  // namespace sdpneg

#endif
