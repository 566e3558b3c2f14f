#include "sdpNegotiator/deflate.h"

#include <type_traits>

// The streams that a thread keeps for the texts of its objects.

namespace sdpneg {
namespace {

// The streams need no initialisation and no destructor, so they can be reached at any time of a thread's
// life. Only what they allocated is to be given back, which `StreamsEnd` does.
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

Deflated deflateText(std::string_view text, char* out, std::size_t room) {
  return withStreams([=](TextStreams& streams) { return streams.deflate(text, out, room); });
}

Inflated inflateText(std::string_view bytes, char* out, std::size_t room) {
  return withStreams([=](TextStreams& streams) { return streams.inflate(bytes, out, room); });
}

}  // namespace sdpneg
