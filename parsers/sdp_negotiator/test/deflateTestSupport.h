#ifndef DEFLATE_TEST_SUPPORT_H
#define DEFLATE_TEST_SUPPORT_H

#include <gtest/gtest.h>
#include <zlib.h>

#include <string>
#include <string_view>

#include "sdpDataDefinitions.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/deflate.h"
#ifdef SDP_TEST_LIBDEFLATE
#include <libdeflate.h>
#endif

// What zlib and libdeflate themselves make of texts, for tests of what the library makes of them.

/// Ends its streams.
template <typename Streams>
struct Owned : Streams {
  using Streams::Streams;
  ~Owned() { this->end(); }
};

inline std::string_view withNul(const std::string& text) { return {text.c_str(), text.size() + 1}; }

/// What a stream of zlib that was never used before makes of a text; empty when it does not fit.
inline std::string freshlyDeflated(const std::string& text, int level = Z_DEFAULT_COMPRESSION,
                                   std::size_t room = SDP_STORED_TEXT_SIZE) {
  z_stream stream{};
  EXPECT_EQ(deflateInit(&stream, level), Z_OK);
  stream.data_type = Z_TEXT;
  std::string in(withNul(text));
  std::string out(room, '\0');
  stream.next_in = reinterpret_cast<Bytef*>(in.data());
  stream.avail_in = static_cast<uInt>(in.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  const bool done = deflate(&stream, Z_FINISH) == Z_STREAM_END;
  out.resize(done ? stream.total_out : 0);
  deflateEnd(&stream);
  return out;
}

/// What zlib itself reads; empty when it does not take all of it.
inline std::string inflatedByZlib(const std::string& bytes) {
  std::string out(70000, '\0');
  uLongf length = out.size();
  uLong taken = bytes.size();
  const int result = uncompress2(reinterpret_cast<Bytef*>(out.data()), &length,
                                 reinterpret_cast<const Bytef*>(bytes.data()), &taken);
  return result == Z_OK && taken == bytes.size() ? out.substr(0, length) : std::string();
}

/// What an object is to store of a text; empty when it does not fit: with libdeflate what that makes of it at its fastest
/// if that fits, and what zlib makes of it otherwise.
inline std::string bytesToStore(const std::string& text) {
#ifdef SDP_TEST_LIBDEFLATE
  libdeflate_compressor* const compressor = libdeflate_alloc_compressor(1);
  EXPECT_NE(compressor, nullptr);
  std::string out(70000, '\0');
  out.resize(libdeflate_zlib_compress(compressor, text.c_str(), text.size() + 1, out.data(), out.size()));
  libdeflate_free_compressor(compressor);
  if (!out.empty() && out.size() <= SDP_STORED_TEXT_SIZE) return out;
#endif
  return freshlyDeflated(text);
}

/// Empty when it does not fit.
template <typename Streams>
std::string deflatedBy(Streams& streams, const std::string& text) {
  char out[SDP_STORED_TEXT_SIZE];
  const sdpneg::Deflated result = streams.deflate(withNul(text), out, sizeof out);
  return result.status == sdpneg::Deflated::Status::done ? std::string(out, result.length) : std::string();
}

/// Empty when it is not whole.
template <typename Streams>
std::string inflatedBy(Streams& streams, std::string_view bytes) {
  std::string out(70000, '\0');
  const sdpneg::Inflated result = streams.inflate(bytes, out.data(), out.size());
  return result.whole ? out.substr(0, result.length) : std::string();
}

#endif
