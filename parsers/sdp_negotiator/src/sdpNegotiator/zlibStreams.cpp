#include "sdpNegotiator/zlibStreams.h"

#include <limits>

// Deflating and inflating a text (RFC 1950) by zlib.

namespace sdpneg {
namespace {

constexpr std::size_t kLargestLength = std::numeric_limits<uInt>::max();

void giveBuffers(z_stream& stream, std::string_view in, char* out, std::size_t room) {
  // zlib does not write its input; only its older declarations lack the const.
  stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(in.data()));
  stream.avail_in = static_cast<uInt>(in.size());
  stream.next_out = reinterpret_cast<Bytef*>(out);
  stream.avail_out = static_cast<uInt>(room);
}

}  // namespace

bool ZlibStreams::prepareDeflater() {
  if (deflater_.state != nullptr) return deflateReset(&deflater_) == Z_OK;
  return deflateInit(&deflater_, Z_DEFAULT_COMPRESSION) == Z_OK;
}

bool ZlibStreams::prepareInflater() {
  if (inflater_.state != nullptr) return inflateReset(&inflater_) == Z_OK;
  return inflateInit(&inflater_) == Z_OK;
}

Deflated ZlibStreams::deflate(std::string_view text, char* out, std::size_t room) {
  if (text.size() > kLargestLength || room > kLargestLength) return {Deflated::Status::noRoom, 0};
  if (!prepareDeflater()) return {Deflated::Status::noStream, 0};
  deflater_.data_type = Z_TEXT;
  giveBuffers(deflater_, text, out, room);
  if (::deflate(&deflater_, Z_FINISH) != Z_STREAM_END) return {Deflated::Status::noRoom, 0};
  return {Deflated::Status::done, deflater_.total_out};
}

Inflated ZlibStreams::inflate(std::string_view bytes, char* out, std::size_t room) {
  if (bytes.size() > kLargestLength || room > kLargestLength || !prepareInflater()) return {false, 0};
  giveBuffers(inflater_, bytes, out, room);
  const bool whole = ::inflate(&inflater_, Z_FINISH) == Z_STREAM_END;
  return {whole, inflater_.total_out};
}

void ZlibStreams::end() {
  if (deflater_.state != nullptr) deflateEnd(&deflater_);
  if (inflater_.state != nullptr) inflateEnd(&inflater_);
}

}  // namespace sdpneg
