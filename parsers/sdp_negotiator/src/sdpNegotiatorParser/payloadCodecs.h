#ifndef SDP_PAYLOAD_CODECS_H
#define SDP_PAYLOAD_CODECS_H

#include <cstddef>
#include <cstdint>

#include "attributeKinds.h"
#include "audioCodecRules.h"
#include "fieldNumbers.h"
#include "sdpDataDefinitions.h"

// The audio codecs of an m-line's formats.

namespace sdpneg {

/// The first codec of two, without a jump, which could not be foreseen.
inline std::uint8_t firstCodec(std::uint8_t codec, std::uint8_t otherwise) {
  static_assert(SDP_NO_CODEC == 0);
  return static_cast<std::uint8_t>(codec |
                                   (otherwise & (0U - static_cast<unsigned int>(codec == SDP_NO_CODEC))));
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
