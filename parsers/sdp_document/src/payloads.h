#ifndef SDP_DOCUMENT_PAYLOADS_H
#define SDP_DOCUMENT_PAYLOADS_H

// Payload types as they nearly always are, one to three digits, as small numbers: texts are the same where these are.

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "attributeNames.h"
#include "sdpDocumentFields.h"

namespace sdp::core {

/// One for each text of one to three digits.
inline constexpr std::uint16_t kShortPayloads = 10 + 100 + 1000;
/// What all other texts have.
inline constexpr std::uint16_t kOtherPayload = kShortPayloads;

/// Eight characters, of which digits are their values from 0 to 9.
inline std::uint64_t loadDigits(const char* characters) { return load(characters) ^ 0x3030303030303030U; }
/// How many of the eight are digits before the first that is none.
inline std::size_t leadingDigits(std::uint64_t digits) {
  const std::uint64_t others =
      (((digits & 0x7F7F7F7F7F7F7F7FU) + 0x7676767676767676U) | digits) & 0x8080808080808080U;
  return static_cast<std::size_t>(std::countr_zero(others)) / 8;
}

/// The small number of the field that a text begins with. Payload types have two and three digits in turn, so there is no
/// branch on how many they are.
/// @param text not empty; four characters must be readable there
inline std::uint16_t payloadAt(const char* text, std::size_t length) {
  const auto digit = [text](std::size_t at) {
    return static_cast<unsigned>(static_cast<unsigned char>(text[at])) - '0';
  };
  const unsigned first = digit(0);
  const unsigned second = digit(1);
  const unsigned third = digit(2);
  const unsigned two = second <= 9 && length > 1 ? 1U : 0U;
  const unsigned three = third <= 9 && length > 2 ? two : 0U;
  const std::size_t count = 1 + two + three;
  if (first > 9 || (count != length && !Fields::isBlank(text[count]))) return kOtherPayload;
  unsigned number = first;
  number += two * (number * 9 + 10 + second);
  number += three * (number * 9 + 10 + third);
  return static_cast<std::uint16_t>(number);
}

/// How many digits a payload type has that is not kOtherPayload.
inline std::size_t digitCountOf(std::uint16_t payload) {
  return std::size_t{1} + (payload >= 10 ? 1U : 0U) + (payload >= 110 ? 1U : 0U);
}

}  // namespace sdp::core

#endif
