#ifndef SDPNEG_SUMMARY_VALUES_H
#define SDPNEG_SUMMARY_VALUES_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sdpNegotiator.h"

// What table and JSON both show of a parsed body, asked from the object.

namespace tool {

/// An entry of the audio codec list.
struct AudioCodec {
  std::uint8_t value;
  std::optional<int> period;  ///< in milliseconds
};

std::vector<AudioCodec> audioCodecsOf(const sSdpParsedData& data);

/// The connection address; nothing while there is none.
std::optional<std::string> addressOf(const sSdpParsedData& data);
std::optional<std::uint32_t> portOf(const sSdpParsedData& data);
std::optional<std::uint32_t> t38MaxBitRateOf(const sSdpParsedData& data);

/// "none", "lite" or "full".
std::string iceKindOf(const cSdpNegotiator& object);

/// The o-line without its line end; empty when there is none.
std::string originLineOf(const cSdpNegotiator& object);

bool hasDtlsFingerprint(const cSdpNegotiator& object);

/// How the object keeps the text.
struct StoredForm {
  bool deflated;
  unsigned int bytes;
  unsigned int characters;
};

StoredForm storedFormOf(const cSdpNegotiator& object);

}  // namespace tool

#endif
