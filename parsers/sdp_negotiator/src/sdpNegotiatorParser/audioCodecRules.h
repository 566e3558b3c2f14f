#ifndef SDP_AUDIO_CODEC_RULES_H
#define SDP_AUDIO_CODEC_RULES_H

#include <cstdint>
#include <string_view>

// Which audio codec a payload type stands for. Codecs are values of `audioCodecTable`, given as the comments
// name them.

namespace sdpneg {

inline constexpr int kFirstDynamicPayload = 96;
inline constexpr int kLastDynamicPayload = 127;

struct StaticAudioRule {
  int payloadType;
  std::uint8_t codec;
};

/// Static payload types (RFC 3551 6). PCMU is not among them: it is told by the text.
inline constexpr StaticAudioRule kStaticAudioRules[] = {
    {2, 21},   // G726_32
    {4, 8},    // G7231
    {8, 1},    // G711ALAW64K
    {9, 5},    // G722_64K
    {13, 37},  // COMFORT_NOISE
    {15, 9},   // G728
    {18, 10},  // G729
};

struct DynamicAudioRule {
  std::string_view prefix;  ///< of the encoding name
  std::uint8_t codec;
  bool anyCase = false;  ///< letters match in either case
};

/// Encodings of dynamic payload types; the first rule that matches counts.
inline constexpr DynamicAudioRule kDynamicAudioRules[] = {
    {"G726-16", 23},          // G726_16
    {"G726-24", 22},          // G726_24
    {"G726-32", 21},          // G726_32
    {"G726-40", 20},          // G726_40
    {"AMR-WB", 32},           // AMR_WB
    {"AMR", 31},              // AMR
    {"telephone-event", 29},  // TELEPHONE_EVENT
    {"CN", 37, true},         // COMFORT_NOISE
    {"CLEARMODE", 30},        // CLEARMODE
    {"iLBC", 26},             // ILBC
    {"opus", 38},             // OPUS
};

struct RateAudioRule {
  std::string_view prefix;  ///< of the encoding name
  std::string_view rate;    ///< somewhere in the first parameter word of the fmtp line
  std::uint8_t codec;
};

/// Encodings of dynamic payload types whose codec depends on a rate; the first rule that matches counts.
inline constexpr RateAudioRule kRateAudioRules[] = {
    {"MP4A-LATM", "96000", 33},  // AAC_LC
    {"G7221", "24000", 34},      // G7221_24
    {"G7221", "32000", 35},      // G7221_32
    {"G7221", "48000", 36},      // G7221_48
};

}  // namespace sdpneg

#endif
