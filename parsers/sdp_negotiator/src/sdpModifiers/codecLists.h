#ifndef SDP_MODIFIERS_CODEC_LISTS_H
#define SDP_MODIFIERS_CODEC_LISTS_H

#include <algorithm>
#include <cstdint>
#include <span>

#include "refusal.h"
#include "sdpDataDefinitions.h"
#include "sessionDescription.h"
#include "text/sdpText.h"
#include "vocabulary.h"

// Codec lists, and their edits.

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
