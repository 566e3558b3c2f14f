#ifndef SDP_CODEC_VALUES_H
#define SDP_CODEC_VALUES_H

#include <cstdint>

// The codecs that the library knows by name, as values of `audioCodecTable` and `videoCodecTable`.

namespace sdpneg {

inline constexpr std::uint8_t codecPcma = 1;
inline constexpr std::uint8_t codecPcmu = 3;
inline constexpr std::uint8_t codecG729 = 10;
inline constexpr std::uint8_t codecG729AnnexA = 11;
inline constexpr std::uint8_t codecG729AnnexAWithAnnexB = 15;
inline constexpr std::uint8_t codecT38Image = 28;
inline constexpr std::uint8_t codecTelephoneEvent = 29;
inline constexpr std::uint8_t codecComfortNoise = 37;

inline constexpr std::uint8_t codecH264 = 2;

}  // namespace sdpneg

#endif
