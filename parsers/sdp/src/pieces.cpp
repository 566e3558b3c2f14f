#include "pieces.h"

// Copies of any length. They stand apart from their callers: where a compiler knows the longest one, it may write the
// processor's own string copy in place of the call, which takes longer than the call for short texts.

namespace sdpcodec {

void copyExactly(char* to, const char* from, std::size_t length) { std::memcpy(to, from, length); }

}  // namespace sdpcodec
