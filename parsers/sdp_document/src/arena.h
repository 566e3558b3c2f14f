#ifndef SDP_DOCUMENT_ARENA_H
#define SDP_DOCUMENT_ARENA_H

// Texts that edits make. They stay where they are until all are forgotten at once, which gives nothing back.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace sdp::core {

class Arena {
 public:
  /// Room for a text of that many characters.
  char* room(std::size_t size) {
    while (chunk_ < chunks_.size() && chunks_[chunk_].size - used_ < size) {
      ++chunk_;
      used_ = 0;
    }
    if (chunk_ == chunks_.size()) {
      const std::size_t fresh = std::max(size, kSmallest << std::min<std::size_t>(chunk_, kDoublings));
      // One more, so that no text ends where another memory's first begins.
      chunks_.push_back({std::make_unique_for_overwrite<char[]>(fresh + 1), fresh});
      used_ = 0;
    }
    char* const place = chunks_[chunk_].memory.get() + used_;
    used_ += size;
    taken_ += size;
    return place;
  }
  /// What the last text does not need of its room.
  void giveBack(std::size_t size) {
    used_ -= size;
    taken_ -= size;
  }
  /// How much all texts take.
  std::size_t taken() const { return taken_; }
  void forgetAll() { rewind({}); }

  /// How far the texts reach.
  struct Mark {
    std::size_t chunk = 0;
    std::size_t used = 0;
    std::size_t taken = 0;
  };
  Mark mark() const { return {chunk_, used_, taken_}; }
  /// Forgets the texts that were made behind a mark.
  void rewind(const Mark& mark) {
    chunk_ = mark.chunk;
    used_ = mark.used;
    taken_ = mark.taken;
  }

 private:
  static constexpr std::size_t kSmallest = 4096;
  static constexpr std::size_t kDoublings = 10;

  struct Chunk {
    std::unique_ptr<char[]> memory;
    std::size_t size;
  };
  std::vector<Chunk> chunks_;
  std::size_t chunk_ = 0;  ///< the one in use
  std::size_t used_ = 0;   ///< of it
  std::size_t taken_ = 0;
};

}  // namespace sdp::core

#endif
