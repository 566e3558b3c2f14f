#include <algorithm>
#include <cstring>
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

}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::setRawSDP(const char* sdp) {
  if (sdp == nullptr) return refuse({.reason = SDP_REFUSED_NULL, .operation = "setRawSDP"});
  return storeText(parsedData, rawSdp, sdp);
}

unsigned short cSdpNegotiator::getRawSDP(char* dst, unsigned int len) const {
  if (dst == nullptr || len == 0) return refuse({.reason = SDP_REFUSED_NULL, .operation = "getRawSDP"});
  dst[0] = '\0';
  if (parsedData.storedSdpLength == 0) {
    const std::size_t length = std::min<std::size_t>(strnlen(rawSdp, sizeof rawSdp), len - 1);
    std::memcpy(dst, rawSdp, length);
    dst[length] = dst[len - 1] = '\0';
    return 0;
  }
  const bool expanded =
      parsedData.storedSdpLength <= sizeof rawSdp && expand({rawSdp, parsedData.storedSdpLength}, dst, len);
  return expanded ? 0 : refuse({.reason = SDP_REFUSED_NOT_EXPANDED});
}

unsigned short cSdpNegotiator::getSDP(char* dst, unsigned int len) const {
  trace::progress("Building raw SDP buffer.");
  if (!isSdpPresent()) return refuse({.reason = SDP_REFUSED_NO_TEXT});
  return getRawSDP(dst, len);
}

unsigned int cSdpNegotiator::getRawSdpSize() const {
  if (parsedData.storedSdpLength == 0) return static_cast<unsigned int>(strnlen(rawSdp, sizeof rawSdp));
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  return getRawSDP(text, sizeof text) == 0 ? static_cast<unsigned int>(std::strlen(text)) : 0;
}

bool cSdpNegotiator::isSdpPresent() const { return rawSdp[0] != '\0' || parsedData.storedSdpLength != 0; }
