#include "pieces.h"

// Copies of exactly what there is. They stand apart from their callers: where a compiler knows the longest one, it may
// write the processor's own string copy in place of the call, which for short texts takes longer than the call.

namespace sdpcodec {

namespace {

// Copies Size to twice as many characters as the first and the last ones, which may overlap.
template <std::size_t Size>
void copyBothEnds(char* to, const char* from, std::size_t length) {
  std::memcpy(to, from, Size);
  std::memcpy(to + length - Size, from + length - Size, Size);
}

}  // namespace

void copyExactly(char* to, const char* from, std::size_t length) {
  if (length > 2 * kPiece) {
    std::memcpy(to, from, length);
  } else if (length >= kPiece) {
    copyBothEnds<kPiece>(to, from, length);
  } else if (length >= 8) {
    copyBothEnds<8>(to, from, length);
  } else if (length >= 4) {
    copyBothEnds<4>(to, from, length);
  } else {
    for (std::size_t at = 0; at < length; ++at) to[at] = from[at];
  }
}

void copyBytes(void* to, const void* from, std::size_t size) { std::memcpy(to, from, size); }

}  // namespace sdpcodec
