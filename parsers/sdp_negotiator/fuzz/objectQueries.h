#ifndef OBJECT_QUERIES_H
#define OBJECT_QUERIES_H

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "sdpNegotiator.h"

// Asks an object all that it answers, whatever its bytes are. An answer that contradicts another ends the
// program.

inline void require(bool condition) {
  if (!condition) std::abort();
}

/// Fetches into a block of exactly that size, so that the sanitizer sees a write behind it.
inline std::string fetch(const cSdpNegotiator& object, unsigned int size, unsigned short& status) {
  const auto exact = std::make_unique<char[]>(size);
  status = object.getRawSDP(exact.get(), size);
  require(std::memchr(exact.get(), '\0', size) != nullptr);
  return exact.get();
}

inline void askForMedia(const cSdpNegotiator& object) {
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

inline void askForText(const cSdpNegotiator& object) {
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

inline void askForSummary(const cSdpNegotiator& object) {
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

inline void askAll(const cSdpNegotiator& object, const char* other) {
  askForText(object);
  askForSummary(object);
  askForMedia(object);
  object.compareSdpByBody(other);
  object.compareSdpByBody(&object);
  object.displaySDPRawData();
  object.displaySDPData();
}

inline bool endsWithin(const char* field, std::size_t size) {
  return std::memchr(field, '\0', size) != nullptr;
}

inline void askForOriginRecord(const cSdpNegotiator& object, bool hasLine) {
  o_line record;
  std::memset(&record, 0x5b, sizeof record);
  object.getOLine(record);
  require(record.present == (hasLine ? 1 : 0));
  require(endsWithin(record.userName, sizeof record.userName));
  require(endsWithin(record.sessionId, sizeof record.sessionId));
  require(endsWithin(record.sessionVersion, sizeof record.sessionVersion));
  require(endsWithin(record.networkType, sizeof record.networkType));
  require(endsWithin(record.addressType, sizeof record.addressType));
  require(endsWithin(record.address, sizeof record.address));
  require(object.compareSdpOLineUpdate(&object) == (record.userName[0] != '\0'));
}

inline void askForOriginLine(const cSdpNegotiator& object) {
  char* line = nullptr;
  int length = -1;
  require(object.getOLine(line, length) == 0 && line != nullptr);
  const std::unique_ptr<char[]> owned(line);
  require(static_cast<std::size_t>(length) == std::strlen(line));
  unsigned short status = 0;
  require(fetch(object, MAX_SDP_PROTOCOL_DATA_SIZE, status).find(line) != std::string::npos);
  require(object.compareSdpOLine(line) == 0 && object.compareSdpOLine(&object) == 0);
  askForOriginRecord(object, length != 0);
}

using OriginLineRequest = unsigned short (*)(cSdpNegotiator& object, const cSdpNegotiator& other);

inline constexpr OriginLineRequest originLineRequests[] = {
    [](cSdpNegotiator& object, const cSdpNegotiator& other) { return object.copyOLine(&other); },
    [](cSdpNegotiator& object, const cSdpNegotiator&) { return object.sdpSetVersionNumber(4294967295U); },
    [](cSdpNegotiator& object, const cSdpNegotiator&) { return object.sdpSetVersionNumberLong(-1); },
    [](cSdpNegotiator& object, const cSdpNegotiator&) { return object.sdpModifyOLine("1", "23"); },
    [](cSdpNegotiator& object, const cSdpNegotiator&) {
      return object.sdpModifyOLine("1", "2", "2001:db8::1");
    },
    [](cSdpNegotiator& object, const cSdpNegotiator&) {
      return object.sdpModifyOLine("1", "2", "no address");
    },
    [](cSdpNegotiator& object, const cSdpNegotiator&) { return object.sdpModifyOLine(); },
    [](cSdpNegotiator& object, const cSdpNegotiator&) { return object.sdpIncVersion(); },
};

/// Makes each request that rewrites the o-line of a copy. None touches the summary but for the o-line's end and
/// the form of the text, and one that fails before it stores leaves the text.
inline void requestOriginLines(const cSdpNegotiator& object, const cSdpNegotiator& other) {
  for (const OriginLineRequest request : originLineRequests) {
    cSdpNegotiator copy = object;
    const unsigned short status = request(copy, other);
    require(status <= 2);
    sSdpParsedData expected = object.getParsedData();
    expected.oLineEnd = copy.getParsedData().oLineEnd;
    if (status == 0) expected.storedSdpLength = copy.getParsedData().storedSdpLength;
    require(std::memcmp(&expected, &copy.getParsedData(), sizeof expected) == 0);
    unsigned short before = 0;
    unsigned short after = 0;
    const std::string text = fetch(copy, MAX_SDP_PROTOCOL_DATA_SIZE, after);
    const bool same = text == fetch(object, MAX_SDP_PROTOCOL_DATA_SIZE, before);
    require(status != 1 || (same && before == after));
    require(status != 0 || same || after == 0);
    askForOriginLine(copy);
  }
}

#endif
