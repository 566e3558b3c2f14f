#ifndef SDP_PAYLOAD_CODECS_H
#define SDP_PAYLOAD_CODECS_H

#include <cstdint>

#include "attributeKinds.h"
#include "audioCodecRules.h"
#include "sdpDataDefinitions.h"

// The audio codecs of an m-line's formats.

namespace sdpneg {

/// Tells the codec of each format as `sdpParserMessage::convertCodec` does, and reads the attribute lines once for all.
class PayloadCodecs {
 public:
  /// @param attributes of the m-line
  explicit PayloadCodecs(const AttributeIndex& attributes);

  /// @param format a text ended by NUL, or null
  /// @return its audio codec value, SDP_NO_CODEC when it is unknown
  std::uint8_t of(const char* format) const;

 private:
  /// Those of dynamic payload types.
  std::uint8_t dynamic_[kLastDynamicPayload - kFirstDynamicPayload + 1] = {};
};

}  // namespace sdpneg

#endif
