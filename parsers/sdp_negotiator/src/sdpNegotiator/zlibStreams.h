#ifndef SDP_NEGOTIATOR_ZLIB_STREAMS_H
#define SDP_NEGOTIATOR_ZLIB_STREAMS_H

#include <zlib.h>

#include <cstddef>
#include <string_view>

// Deflating and inflating a text (RFC 1950) by zlib alone. A fresh stream spends most of its time on getting memory from
// the system and giving it back, so a stream of each kind is kept and reset before every use; the bytes are those
// that a fresh stream gives.

namespace sdpneg {

struct Deflated {
  enum class Status { done, noStream, noRoom } status;
  std::size_t length;  ///< bytes written, when done
};

struct Inflated {
  bool whole;          ///< whether the deflated text was expanded to its end and found undamaged
  std::size_t length;  ///< characters written
};

/// One stream of each kind, initialised at its first use and reset at every later one. It is trivial on
/// purpose: its owner calls `end`, and it may be used again afterwards.
class ZlibStreams {
 public:
  constexpr ZlibStreams() = default;
  /// @param allocate,release,opaque where the streams get their memory, as for `z_stream`
  constexpr ZlibStreams(alloc_func allocate, free_func release, void* opaque) {
    deflater_.zalloc = inflater_.zalloc = allocate;
    deflater_.zfree = inflater_.zfree = release;
    deflater_.opaque = inflater_.opaque = opaque;
  }

  /// Deflates a text at zlib's default level and history size.
  /// @param text what to deflate, a NUL of its own included when that is to be kept
  /// @param out  receives the bytes; not written when there is no stream
  /// @param room bytes that `out` holds
  Deflated deflate(std::string_view text, char* out, std::size_t room);

  /// Inflates bytes until they or the room end. After a failure the stream stays as it is, which costs
  /// nothing: the next use resets it.
  /// @param out  receives the text, without a NUL of its own
  /// @param room characters that `out` holds
  Inflated inflate(std::string_view bytes, char* out, std::size_t room);

  /// Gives all memory back.
  void end();

 private:
  bool prepareDeflater();
  bool prepareInflater();

  z_stream deflater_{};
  z_stream inflater_{};
};

}  // namespace sdpneg

#endif
