#ifndef SDP_ATTRIBUTE_LINES_H
#define SDP_ATTRIBUTE_LINES_H

#include <cstddef>
#include <span>

#include "aLine.h"

// The attribute lines of a block as a range.

namespace sdpneg {

/// The attribute lines of a block in their order; none for a null block.
inline std::span<const a_line::entry> entriesOf(const a_line* block) {
  if (block == nullptr) return {};
  return {block->entries, static_cast<std::size_t>(sdp_AgetNoOfAs(block))};
}

}  // namespace sdpneg

#endif
