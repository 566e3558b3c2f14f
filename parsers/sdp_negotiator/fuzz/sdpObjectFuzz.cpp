// Gives an object a body, and an object arbitrary bytes of its own, and asks each all that it answers.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "objectQueries.h"

namespace {

void parseAndAsk(const std::string& body) {
  cSdpNegotiator object;
  std::memset(static_cast<void*>(&object), 0xa5, sizeof object);
  const unsigned short status = object.sdpParse(body.c_str(), SDP_TYPE_OFFER);
  const std::string text(body.c_str());
  unsigned short fetched = 0;
  require(fetch(object, static_cast<unsigned int>(text.size()) + 1, fetched) == (status == 0 ? text : ""));
  require(fetched == 0 && object.isSdpPresent() == (status == 0));
  require(status == 0 || object.isParsedDataInitialized());
  askAll(object, body.c_str());
}

void storeAndFetch(const std::string& body) {
  cSdpNegotiator object;
  object.sdpParse("", SDP_TYPE_OFFER);
  const std::string text(body.c_str());
  const unsigned short status = object.setRawSDP(body.c_str());
  require(status == 0 || (status == 2 && text.size() >= SDP_STORED_TEXT_SIZE));
  if (status != 0) return;
  unsigned short fetched = 1;
  require(fetch(object, static_cast<unsigned int>(text.size()) + 1, fetched) == text && fetched == 0);
}

/// An object whose bytes begin with the input. With `asDeflated` the input is its deflated text instead,
/// which random bytes before it would hardly let be one.
cSdpNegotiator objectOf(const std::uint8_t* data, std::size_t size, bool asDeflated) {
  constexpr std::size_t textAt = sizeof(sSdpParsedData);
  unsigned char bytes[sizeof(cSdpNegotiator)] = {};
  const std::size_t at = asDeflated ? textAt : 0;
  const std::size_t length = std::min(size, sizeof bytes - at);
  if (length != 0) std::memcpy(bytes + at, data, length);
  if (asDeflated) {
    const auto claim = static_cast<std::uint16_t>(length);
    std::memcpy(bytes, &claim, sizeof claim);
  }
  cSdpNegotiator object;
  std::memcpy(&object, bytes, sizeof object);
  return object;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string body(reinterpret_cast<const char*>(data), size);
  parseAndAsk(body);
  storeAndFetch(body);
  askAll(objectOf(data, size, false), body.c_str());
  askAll(objectOf(data, size, true), body.c_str());
  return 0;
}
