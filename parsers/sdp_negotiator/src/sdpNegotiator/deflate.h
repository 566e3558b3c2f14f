#ifndef SDP_NEGOTIATOR_DEFLATE_H
#define SDP_NEGOTIATOR_DEFLATE_H

#include <cstddef>
#include <string_view>

#include "sdpNegotiator/zlibStreams.h"

// Deflating and inflating the text of an object in zlib's format (RFC 1950), by what the build was configured to use
// (SDP_DEFLATE): deflateLibdeflate.cpp or deflateZlib.cpp. Either reads what the other writes. What a thread needs for
// it costs more to get from the system than a text takes, so each thread keeps its own.

namespace sdpneg {

/// What deflates and inflates: made at its first use and reset at every later one. It is trivial on purpose: its owner
/// calls `end`, and it may be used again afterwards.
class TextStreams {
 public:
  constexpr TextStreams() = default;
  /// @param allocate,release,opaque where zlib's streams get their memory, as for `z_stream`
  constexpr TextStreams(alloc_func allocate, free_func release, void* opaque)
      : zlib_(allocate, release, opaque) {}

  /// Deflates a text. One that zlib's default level deflates into the room always finds room.
  /// @param text what to deflate, a NUL of its own included when that is to be kept
  /// @param out  receives the bytes; not written when there is no stream
  /// @param room bytes that `out` holds
  Deflated deflate(std::string_view text, char* out, std::size_t room);

  /// Inflates bytes until they or the room end. What becomes of them is what zlib makes of them, damaged ones and those
  /// that find no room included. After a failure zlib's stream stays as it is, which costs nothing: the next use resets
  /// it.
  /// @param out  receives the text, without a NUL of its own; not written behind it
  /// @param room characters that `out` holds
  Inflated inflate(std::string_view bytes, char* out, std::size_t room);

  /// Gives all memory back.
  void end();

 private:
  struct Faster;

  ZlibStreams zlib_;
  Faster* faster_ = nullptr;  ///< what serves in front of zlib; none in a build with zlib alone
};

/// `TextStreams::deflate` with the streams of this thread.
Deflated deflateText(std::string_view text, char* out, std::size_t room);
/// `TextStreams::inflate` with the streams of this thread.
Inflated inflateText(std::string_view bytes, char* out, std::size_t room);

}  // namespace sdpneg

#endif
