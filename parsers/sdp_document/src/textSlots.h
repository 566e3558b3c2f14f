#ifndef SDP_DOCUMENT_TEXT_SLOTS_H
#define SDP_DOCUMENT_TEXT_SLOTS_H

// Where entries of a table stand by a text of theirs.

#include <bit>
#include <string_view>
#include <vector>

#include "lines.h"

namespace sdp::core {

/// Differs from run to run, so that nobody can choose texts that fall onto each other.
/// @param with a number that belongs to the text
std::uint64_t hashOf(std::string_view text, Index with = 0);

/// An open-addressing table of entry numbers. The entries and their texts are the user's.
class TextSlots {
 public:
  /// Allocates what so many entries need.
  void reserve(std::size_t entries) {
    if (slots_.capacity() < sizeFor(entries)) slots_.reserve(sizeFor(entries));
  }
  /// Whether so many entries have room since the table was emptied.
  bool fits(std::size_t entries) const { return sizeFor(entries) <= slots_.size(); }
  /// Empties the table and makes it fit for so many entries.
  void reset(std::size_t entries) { slots_.assign(sizeFor(entries), kNone); }

  /// The slot of a text: it holds kNone, or the entry for which `isIt(Index)` is true.
  template <typename IsIt>
  Index& slotOf(std::string_view text, IsIt isIt, Index with = 0) {
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = hashOf(text, with) & mask;
    while (slots_[at] != kNone && !isIt(slots_[at])) at = (at + 1) & mask;
    return slots_[at];
  }

 private:
  /// At most half of the slots are taken.
  static std::size_t sizeFor(std::size_t entries) { return std::bit_ceil(2 * entries + 2); }

  std::vector<Index> slots_;
};

}  // namespace sdp::core

#endif
