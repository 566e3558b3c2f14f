#ifndef SDP_NEGOTIATOR_CODEC_LOOKUP_H
#define SDP_NEGOTIATOR_CODEC_LOOKUP_H

// Lookups in the codec tables, between names and values. Names are compared without regard to ASCII case,
// whatever the locale; of several rows that match, the first counts.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "sdpDataDefinitions.h"
#include "text/search.h"

namespace sdpneg {

/// @return the value of the first row whose `column` is `name`; 0 when there is none or `name` is null or
///         empty
template <class Row, std::size_t Rows>
std::uint8_t codecValue(const Row (&table)[Rows], const char* Row::*column, const char* name) {
  if (name == nullptr) return SDP_NO_CODEC;
  const auto row = std::find_if(std::begin(table), std::end(table),
                                [&](const Row& each) { return equalNoCase(each.*column, name); });
  return row == std::end(table) ? SDP_NO_CODEC : row->value;
}

/// @return the `column` of the first row with that value, the table's own text; "" when there is none
template <class Row, std::size_t Rows>
const char* codecName(const Row (&table)[Rows], const char* Row::*column, std::uint8_t value) {
  const auto row = std::find_if(std::begin(table), std::end(table),
                                [value](const Row& each) { return each.value == value; });
  return row == std::end(table) ? "" : (*row).*column;
}

}  // namespace sdpneg

#endif
