#ifndef SDP_DOCUMENT_PARTS_H
#define SDP_DOCUMENT_PARTS_H

// What lines belong to: the session and the sections.

#include <string_view>
#include <vector>

#include "lines.h"

namespace sdp::core {

/// The fields of an m-line.
struct MLine {
  std::string_view media;
  std::string_view port;  ///< with its count
  std::string_view transport;
  std::string_view formats;     ///< from the first on, with what separates them and stands behind the last
  std::size_t mostFormats = 0;  ///< that they can be
  std::uint64_t portCount = 1;
  std::uint16_t portNumber = 0;
  bool readable = false;
};

/// The session, or a section: its lines, and of a section its m-line, which is its first line. The lines of a part lie
/// together in the index of lines, but parts may lie there in any order.
struct Part {
  Index first = 0;
  Index end = 0;     ///< behind its last line
  Index room = 0;    ///< for lines that are to come, from `end` on
  Index number = 0;  ///< of a section's m-line, from 1, as the text was read
  Kinds kinds = 0;   ///< of its lines; those of lines that are gone may be among them
  MLine m;
};

/// The session, and section n as number n. The session is always there; alone it needs no memory.
class PartList {
 public:
  PartList() noexcept = default;
  PartList(const PartList&) = delete;
  PartList& operator=(const PartList&) = delete;

  std::size_t size() const { return size_; }
  Part& operator[](std::size_t index) { return begin_[index]; }
  const Part& operator[](std::size_t index) const { return begin_[index]; }
  Part* begin() { return begin_; }
  Part* end() { return begin_ + size_; }
  const Part* begin() const { return begin_; }
  const Part* end() const { return begin_ + size_; }

  /// A section more.
  Part& add() {
    if (parts_.empty()) parts_.push_back(alone_);
    Part& part = parts_.emplace_back();
    begin_ = parts_.data();
    size_ = parts_.size();
    return part;
  }
  /// Leaves a session without a line.
  void clear() {
    if (!parts_.empty()) parts_.resize(1);
    *begin_ = {};
    size_ = 1;
  }

 private:
  Part alone_;  ///< the session while there never was a section
  std::vector<Part> parts_;
  Part* begin_ = &alone_;
  std::size_t size_ = 1;
};

}  // namespace sdp::core

#endif
