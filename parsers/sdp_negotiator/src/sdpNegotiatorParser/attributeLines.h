#ifndef SDP_ATTRIBUTE_LINES_H
#define SDP_ATTRIBUTE_LINES_H

#include <algorithm>
#include <cstddef>
#include <span>

#include "aLine.h"

// The attribute lines of a block as a range.

namespace sdpneg {

/// The attribute lines of a block in their order; none for a null block.
inline std::span<const a_line::entry> entriesOf(const a_line* block) {
  if (block == nullptr) return {};
  return {block->entries, static_cast<std::size_t>(std::clamp(block->count, 0, SDP_ATTRIBUTE_CAPACITY))};
}

}  // namespace sdpneg

#endif
