#ifndef SDP_DOCUMENT_ARENA_H
#define SDP_DOCUMENT_ARENA_H

// Texts that edits make. They stay where they are until all are forgotten at once, which gives nothing back.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace sdp::core {

/// How far behind the end of a text may be read, whatever stands there.
inline constexpr std::size_t kReadAhead = 32;

class Arena {
 public:
  /// Room for a text of that many characters.
  char* room(std::size_t size) {
    while (place_.chunk < chunks_.size() && chunks_[place_.chunk].size - place_.used < size) {
      ++place_.chunk;
      place_.used = 0;
    }
    if (place_.chunk == chunks_.size()) {
      const std::size_t fresh = std::max(size, kSmallest << std::min<std::size_t>(place_.chunk, kDoublings));
      // Room behind the last text, for who reads ahead, and so that none ends where another memory begins.
      chunks_.push_back({std::make_unique<char[]>(fresh + kReadAhead), fresh});
      place_.used = 0;
    }
    char* const place = chunks_[place_.chunk].memory.get() + place_.used;
    place_.used += size;
    place_.taken += size;
    return place;
  }
  /// What the last text does not need of its room.
  void giveBack(std::size_t size) {
    place_.used -= size;
    place_.taken -= size;
  }
  /// How much all texts take.
  std::size_t taken() const { return place_.taken; }
  void forgetAll() { place_ = {}; }

  /// How far the room is taken.
  struct Place {
    std::size_t chunk = 0;  ///< the one in use
    std::size_t used = 0;   ///< of it
    std::size_t taken = 0;  ///< by all texts
  };
  Place place() const { return place_; }
  /// Forgets the texts that were made since.
  void forgetSince(const Place& place) { place_ = place; }

 private:
  static constexpr std::size_t kSmallest = 4096;
  static constexpr std::size_t kDoublings = 10;

  struct Chunk {
    std::unique_ptr<char[]> memory;
    std::size_t size;
  };
  std::vector<Chunk> chunks_;
  Place place_;
};

}  // namespace sdp::core

#endif
