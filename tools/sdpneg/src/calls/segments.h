#ifndef SDPNEG_SEGMENTS_H
#define SDPNEG_SEGMENTS_H

#include <cstddef>
#include <vector>

#include "calls/call.h"

namespace tool {

/// The segments of a call: two neighbours that exchange messages of a leg. A leg through a proxy has two. Ports tell
/// neighbours apart where both have one address.
class Segments {
 public:
  explicit Segments(const Call& call);

  std::size_t size() const { return size_; }
  /// The segment of a message, from 0 in the order in which they begin.
  std::size_t of(std::size_t message) const { return ofMessage_[message]; }

 private:
  std::vector<std::size_t> ofMessage_;
  std::size_t size_ = 0;
};

}  // namespace tool

#endif
