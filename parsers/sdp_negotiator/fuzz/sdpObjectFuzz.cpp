// Gives an object a body, and an object arbitrary bytes of its own, and asks each all that it answers.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "sdpNegotiator.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

/// Fetches into a block of exactly that size, so that the sanitizer sees a write behind it.
std::string fetch(const cSdpNegotiator& object, unsigned int size, unsigned short& status) {
  const auto exact = std::make_unique<char[]>(size);
  status = object.getRawSDP(exact.get(), size);
  require(std::memchr(exact.get(), '\0', size) != nullptr);
  return exact.get();
}

void askForMedia(const cSdpNegotiator& object) {
  std::vector<mediaStruct> media;
  object.getMedia(media);
  unsigned char codecs[SDP_VIDEO_CODEC_LIST_SIZE + 1];
  codecs[SDP_VIDEO_CODEC_LIST_SIZE] = 0x5b;
  unsigned int attributes = 0;
  int profile = 0;
  const unsigned short status = object.getVideoCodecs(codecs, attributes, profile);
  require(codecs[SDP_VIDEO_CODEC_LIST_SIZE] == 0x5b);
  require(status != 0 || attributes == object.getParsedData().sdpAttributes);
}

void askForText(const cSdpNegotiator& object) {
  unsigned short status = 0;
  const std::string whole = fetch(object, MAX_SDP_PROTOCOL_DATA_SIZE, status);
  for (const unsigned int size : {1U, 2U, 100U}) {
    unsigned short cutStatus = 0;
    const std::string cut = fetch(object, size, cutStatus);
    require(cut == whole.substr(0, cut.size()) && cut.size() < size);
  }
  require(object.getRawSdpSize() == (status == 0 ? whole.size() : 0));
  require(object.contains(whole.c_str()));
  require(!object.isSDESPresent() || object.isSdpPresent());
  require(!object.isAnatPresent() || object.isSdpPresent());
  require(!object.isRmDummySdp() || object.isSdpPresent());
  char text[16];
  require(object.getSDP(text, sizeof text) == 1 || object.isSdpPresent());
}

void askForSummary(const cSdpNegotiator& object) {
  const std::uint32_t bits = object.getParsedData().sdpAttributes;
  require(object.isSecureCall() == ((bits & 0x1U) != 0) && object.isSecureVideo() == ((bits & 0x2U) != 0));
  require(object.isRecvOnlyVideo() == ((bits & 0x4U) != 0));
  require(object.isIceLitePresent() == ((bits & 0x8U) != 0));
  require(object.isFullIcePresent() == ((bits & 0x10U) != 0));
  require(object.isMikeyPresent() == ((bits & 0x40U) != 0));
  require(object.IceCandidatesMatch() == ((bits & 0x800U) != 0));
  require(object.isParsedDataPresent() == (object.isSdpPresent() || !object.isParsedDataInitialized()));
  object.isHoldState();
}

void askAll(const cSdpNegotiator& object, const char* other) {
  askForText(object);
  askForSummary(object);
  askForMedia(object);
  object.compareSdpByBody(other);
  object.compareSdpByBody(&object);
  object.displaySDPRawData();
  object.displaySDPData();
}

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
