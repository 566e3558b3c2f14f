#ifndef SDP_PAYLOAD_CODECS_H
#define SDP_PAYLOAD_CODECS_H

#include <cstddef>
#include <cstdint>

#include "attributeKinds.h"
#include "audioCodecRules.h"
#include "fieldNumbers.h"
#include "sdpDataDefinitions.h"
#include "text/blocks.h"

// The audio codecs of an m-line's formats.

namespace sdpneg {

/// The first codec of two, without a jump, which could not be foreseen.
inline std::uint8_t firstCodec(std::uint8_t codec, std::uint8_t otherwise) {
  static_assert(SDP_NO_CODEC == 0);
  return static_cast<std::uint8_t>(codec |
                                   (otherwise & (0U - static_cast<unsigned int>(codec == SDP_NO_CODEC))));
}

/// The places of a codec in the list of a summary, the lowest bit for the first one.
inline unsigned int placesOf(std::uint8_t codec, const sSdpParsedData& data) {
  constexpr std::size_t rest = sizeof data.audioCodec - blocks::kSize;
  static_assert(rest <= blocks::kSize);
  const auto* const list = reinterpret_cast<const char*>(data.audioCodec);
  const auto placesIn = [codec](const char* block) {
    return blocks::bitsOf(blocks::where(blocks::at(block), static_cast<char>(codec)));
  };
  return placesIn(list) | placesIn(list + rest) << rest;
}

/// Tells the codec of each format as `sdpParserMessage::convertCodec` does, and reads the attribute lines once for all.
class PayloadCodecs {
 public:
  /// @param attributes of the m-line
  explicit PayloadCodecs(const AttributeIndex& attributes);

  /// @param format a field that begins with one
  /// @return its audio codec value, SDP_NO_CODEC when it is unknown
  template <std::size_t Size>
  std::uint8_t of(const char (&format)[Size]) const {
    const Leading<int> number = shortNumberOf<kPayloadDigits>(format);
    if (number.length == 0) return ofLonger(format);
    return number.value <= kLastDynamicPayload ? codecs_[number.value] : SDP_NO_CODEC;
  }

 private:
  /// Of a format that is no number of few digits.
  std::uint8_t ofLonger(const char* format) const;

  /// By payload type; behind them a place for what is not to be kept.
  std::uint8_t codecs_[kLastDynamicPayload + 2];
};

}  // namespace sdpneg

#endif
