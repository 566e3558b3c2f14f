#include "sdpNegotiator/deflate.h"

// Deflating and inflating by zlib alone.

namespace sdpneg {

Deflated TextStreams::deflate(std::string_view text, char* out, std::size_t room) {
  return zlib_.deflate(text, out, room);
}

Inflated TextStreams::inflate(std::string_view bytes, char* out, std::size_t room) {
  return zlib_.inflate(bytes, out, room);
}

void TextStreams::end() { zlib_.end(); }

}  // namespace sdpneg
