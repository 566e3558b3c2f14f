#ifndef SDP_TEXT_NEXT_PLACE_H
#define SDP_TEXT_NEXT_PLACE_H

#include <cstddef>
#include <string_view>

#include "text/find.h"
#include "text/search.h"

// Searches that go on where they stopped.

namespace sdpneg {

/// Where a piece stands that is asked for from one offset after the other: however often, the text is gone over once.
class NextPlace {
 public:
  /// @param text  must not change
  NextPlace(std::string_view text, const Sought& sought) : text_(text), sought_(sought) {}

  /// The first place at or behind an offset, which is not less than those that were asked for before.
  std::size_t from(std::size_t at) {
    if (!asked_ || (found_ != npos && found_ < at)) found_ = findSought(text_, sought_, at);
    asked_ = true;
    return found_;
  }

 private:
  std::string_view text_;
  Sought sought_;
  std::size_t found_ = npos;
  bool asked_ = false;
};

}  // namespace sdpneg

#endif
