#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

#include "refusal.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/deflate.h"
#include "sdpNegotiator/parse.h"
#include "trace.h"

// The stored text, as it is or deflated.

static_assert(std::is_trivial_v<cSdpNegotiator> && std::is_standard_layout_v<cSdpNegotiator>);
static_assert(sizeof(cSdpNegotiator) == sizeof(sSdpParsedData) + SDP_STORED_TEXT_SIZE);

namespace sdpneg {
namespace {

/// Expands deflated text and ends it with a NUL, whatever came of it.
/// @return whether all of it and a NUL found room
bool expand(std::string_view bytes, char* dst, std::size_t len) {
  const Inflated text = inflateText(bytes, dst, len);
  const bool endsInNul = text.length > 0 && dst[text.length - 1] == '\0';
  if (!endsInNul) dst[std::min(text.length, len - 1)] = '\0';
  return text.whole && (endsInNul || text.length < len);
}

/// Whether an object has a text.
bool isHeld(const sSdpParsedData& data, const char (&store)[SDP_STORED_TEXT_SIZE]) {
  return store[0] != '\0' || data.storedSdpLength != 0;
}

}  // namespace

unsigned short storeText(sSdpParsedData& data, char (&store)[SDP_STORED_TEXT_SIZE], std::string_view text) {
  if (text.size() < sizeof store) {
    std::memcpy(store, text.data(), text.size());
    std::memset(store + text.size(), 0, sizeof store - text.size());
    data.storedSdpLength = 0;
    return 0;
  }
  // The NUL is deflated too, so expanding the text ends it.
  const Deflated result = deflateText({text.data(), text.size() + 1}, store, sizeof store);
  if (result.status == Deflated::Status::noStream) return refuse({.reason = SDP_REFUSED_NO_MEMORY_TO_STORE});
  if (result.status == Deflated::Status::noRoom) {
    constexpr unsigned short kTooLong = 2;
    tell({.reason = SDP_REFUSED_NOT_STORED});
    return kTooLong;
  }
  data.storedSdpLength = static_cast<std::uint16_t>(result.length);
  return 0;
}

unsigned short fetchText(const sSdpParsedData& data, const char (&store)[SDP_STORED_TEXT_SIZE],
                         std::span<char> to, std::size_t& length) {
  length = 0;
  if (to.data() == nullptr || to.empty()) {
    return refuse({.reason = SDP_REFUSED_NULL, .operation = "getRawSDP"});
  }
  to[0] = '\0';
  if (data.storedSdpLength == 0) {
    length = std::min<std::size_t>(strnlen(store, sizeof store), to.size() - 1);
    std::memcpy(to.data(), store, length);
    to[length] = to.back() = '\0';
    return 0;
  }
  const bool expanded =
      data.storedSdpLength <= sizeof store && expand({store, data.storedSdpLength}, to.data(), to.size());
  length = strnlen(to.data(), to.size());
  return expanded ? 0 : refuse({.reason = SDP_REFUSED_NOT_EXPANDED});
}

unsigned short fetchSdp(const sSdpParsedData& data, const char (&store)[SDP_STORED_TEXT_SIZE],
                        std::span<char> to, std::size_t& length) {
  trace::progress("Building raw SDP buffer.");
  if (!isHeld(data, store)) return refuse({.reason = SDP_REFUSED_NO_TEXT});
  return fetchText(data, store, to, length);
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::setRawSDP(const char* sdp) {
  if (sdp == nullptr) return refuse({.reason = SDP_REFUSED_NULL, .operation = "setRawSDP"});
  return storeText(parsedData, rawSdp, sdp);
}

unsigned short cSdpNegotiator::getRawSDP(char* dst, unsigned int len) const {
  std::size_t length = 0;
  return fetchText(parsedData, rawSdp, {dst, len}, length);
}

unsigned short cSdpNegotiator::getSDP(char* dst, unsigned int len) const {
  std::size_t length = 0;
  return fetchSdp(parsedData, rawSdp, {dst, len}, length);
}

unsigned int cSdpNegotiator::getRawSdpSize() const {
  if (parsedData.storedSdpLength == 0) return static_cast<unsigned int>(strnlen(rawSdp, sizeof rawSdp));
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  return getRawSDP(text, sizeof text) == 0 ? static_cast<unsigned int>(std::strlen(text)) : 0;
}

bool cSdpNegotiator::isSdpPresent() const { return isHeld(parsedData, rawSdp); }
