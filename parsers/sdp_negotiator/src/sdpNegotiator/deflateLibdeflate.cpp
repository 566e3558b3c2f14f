#include <libdeflate.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "sdpDataDefinitions.h"
#include "sdpNegotiator/deflate.h"
#include "sdpNegotiator/strictBlock.h"

// Deflating and inflating by libdeflate, which takes a fraction of zlib's time, and by zlib where it has to decide:
// whether a text finds room, and what is left of bytes that are no whole and sound stream.

namespace sdpneg {

/// What libdeflate works with. It writes behind what it says to have written, so it writes here, and callers get the
/// result alone.
struct TextStreams::Faster {
  libdeflate_compressor* compressor = nullptr;
  libdeflate_decompressor* decompressor = nullptr;
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE + 1];

  /// From where libdeflate and zlib have their memory.
  /// @return null when there is none
  static Faster* make() {
    void* const memory = std::malloc(sizeof(Faster));
    return memory == nullptr ? nullptr : new (memory) Faster;
  }
  bool prepareCompressor() {
    constexpr int kFastest = 1;
    if (compressor == nullptr) compressor = libdeflate_alloc_compressor(kFastest);
    return compressor != nullptr;
  }
  bool prepareDecompressor() {
    if (decompressor == nullptr) decompressor = libdeflate_alloc_decompressor();
    return decompressor != nullptr;
  }
};

Deflated TextStreams::deflate(std::string_view text, char* out, std::size_t room) {
  if (faster_ == nullptr) faster_ = Faster::make();
  if (faster_ != nullptr && faster_->prepareCompressor()) {
    constexpr std::size_t kNeverUsed = 16;  // it gives up some bytes before the room ends
    const std::size_t most = sizeof faster_->buffer;
    const std::size_t length =
        libdeflate_zlib_compress(faster_->compressor, text.data(), text.size(), faster_->buffer,
                                 room < most ? std::min(room + kNeverUsed, most) : most);
    if (length > 0 && length <= room) {
      std::memcpy(out, faster_->buffer, length);
      return {Deflated::Status::done, length};
    }
  }
  return zlib_.deflate(text, out, room);
}

Inflated TextStreams::inflate(std::string_view bytes, char* out, std::size_t room) {
  if (faster_ == nullptr) faster_ = Faster::make();
  if (faster_ != nullptr && faster_->prepareDecompressor() && isOneStrictBlock(bytes)) {
    std::size_t length = 0;
    const libdeflate_result result =
        libdeflate_zlib_decompress(faster_->decompressor, bytes.data(), bytes.size(), faster_->buffer,
                                   std::min(room, sizeof faster_->buffer), &length);
    if (result == LIBDEFLATE_SUCCESS) {
      std::memcpy(out, faster_->buffer, length);
      return {true, length};
    }
  }
  return zlib_.inflate(bytes, out, room);
}

void TextStreams::end() {
  zlib_.end();
  if (faster_ == nullptr) return;
  libdeflate_free_compressor(faster_->compressor);
  libdeflate_free_decompressor(faster_->decompressor);
  std::free(faster_);
  faster_ = nullptr;
}

}  // namespace sdpneg
