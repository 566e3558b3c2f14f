#ifndef SDP_DOCUMENT_LINE_LIST_H
#define SDP_DOCUMENT_LINE_LIST_H

// The index of lines: a growing array whose new elements are not written before they are filled.

#include <algorithm>
#include <memory>

#include "lines.h"

namespace sdp::core {

class LineList {
 public:
  void clear() { size_ = 0; }
  std::size_t size() const { return size_; }
  Line& operator[](std::size_t index) { return lines_[index]; }
  const Line& operator[](std::size_t index) const { return lines_[index]; }
  Line* begin() { return lines_.get(); }
  Line* end() { return lines_.get() + size_; }
  const Line* begin() const { return lines_.get(); }
  const Line* end() const { return lines_.get() + size_; }

  /// A line more, which the caller fills.
  Line& add() {
    if (size_ == capacity_) reserve(std::max<std::size_t>(kFirst, 2 * capacity_));
    return lines_[size_++];
  }
  /// Lines more, which the caller fills; there is room for them.
  void grow(std::size_t lines) { size_ += lines; }
  void shrink(std::size_t lines) { size_ = lines; }
  void reserve(std::size_t lines) {
    if (lines <= capacity_) return;
    const std::size_t capacity = std::max(lines, capacity_ + capacity_ / 2);
    auto larger = std::make_unique_for_overwrite<Line[]>(capacity);
    std::copy(begin(), end(), larger.get());
    lines_ = std::move(larger);
    capacity_ = capacity;
  }

 private:
  static constexpr std::size_t kFirst = 64;

  std::unique_ptr<Line[]> lines_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace sdp::core

#endif
