#include "sdpNegotiator/deflate.h"

#include <limits>
#include <type_traits>

// Deflating and inflating the text of an object (RFC 1950).

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

// The streams need no initialisation and no destructor, so they can be reached at any time of a thread's
// life. Only their zlib state is allocated, and `StreamsEnd` gives that back.
static_assert(std::is_trivially_destructible_v<TextStreams>);
constinit thread_local TextStreams streamsOfThread;
constinit thread_local bool threadIsEnding = false;

struct StreamsEnd {
  ~StreamsEnd() {
    streamsOfThread.end();
    threadIsEnding = true;
  }
};

template <typename Use>
auto withStreams(Use use) {
  if (threadIsEnding) {  // called from the destructor of another thread_local: nobody would end them again
    TextStreams streams;
    const auto result = use(streams);
    streams.end();
    return result;
  }
  thread_local StreamsEnd endWithThread;
  return use(streamsOfThread);
}

}  // namespace

bool TextStreams::prepareDeflater() {
  if (deflater_.state != nullptr) return deflateReset(&deflater_) == Z_OK;
  return deflateInit(&deflater_, Z_DEFAULT_COMPRESSION) == Z_OK;
}

bool TextStreams::prepareInflater() {
  if (inflater_.state != nullptr) return inflateReset(&inflater_) == Z_OK;
  return inflateInit(&inflater_) == Z_OK;
}

Deflated TextStreams::deflate(std::string_view text, char* out, std::size_t room) {
  if (text.size() > kLargestLength || room > kLargestLength) return {Deflated::Status::noRoom, 0};
  if (!prepareDeflater()) return {Deflated::Status::noStream, 0};
  deflater_.data_type = Z_TEXT;
  giveBuffers(deflater_, text, out, room);
  if (::deflate(&deflater_, Z_FINISH) != Z_STREAM_END) return {Deflated::Status::noRoom, 0};
  return {Deflated::Status::done, deflater_.total_out};
}

Inflated TextStreams::inflate(std::string_view bytes, char* out, std::size_t room) {
  if (bytes.size() > kLargestLength || room > kLargestLength || !prepareInflater()) return {false, 0};
  giveBuffers(inflater_, bytes, out, room);
  const bool whole = ::inflate(&inflater_, Z_FINISH) == Z_STREAM_END;
  return {whole, inflater_.total_out};
}

void TextStreams::end() {
  if (deflater_.state != nullptr) deflateEnd(&deflater_);
  if (inflater_.state != nullptr) inflateEnd(&inflater_);
}

Deflated deflateText(std::string_view text, char* out, std::size_t room) {
  return withStreams([=](TextStreams& streams) { return streams.deflate(text, out, room); });
}

Inflated inflateText(std::string_view bytes, char* out, std::size_t room) {
  return withStreams([=](TextStreams& streams) { return streams.inflate(bytes, out, room); });
}

}  // namespace sdpneg
