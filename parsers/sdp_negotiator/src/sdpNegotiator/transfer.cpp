#include <cstring>
#include <new>

#include "refusal.h"
#include "sdpNegotiator.h"

// The transfer form: the object's own leading bytes, without the part of `rawSdp` that is not in use.

namespace sdpneg {
namespace {

constexpr unsigned int kSummarySize = sizeof(sSdpParsedData);

/// Whether a packed state is one that packing can have given.
bool isConsistent(const unsigned char* in, unsigned int size) {
  if (in == nullptr || size < kSummarySize || size > sizeof(cSdpNegotiator)) return false;
  std::uint16_t stored = 0;
  std::memcpy(&stored, in, sizeof stored);
  const unsigned int textSize = size - kSummarySize;
  if (stored != 0) return stored <= textSize;
  return textSize != 0 && std::memchr(in + kSummarySize, '\0', textSize) != nullptr;
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned int cSdpNegotiator::getObjectSize() const {
  if (parsedData.storedSdpLength == 0) {
    return kSummarySize + static_cast<unsigned int>(strnlen(rawSdp, sizeof rawSdp - 1)) + 1;
  }
  // A length that the storage cannot have is believed no further than the storage goes.
  const unsigned int stored = parsedData.storedSdpLength;
  return kSummarySize + (stored < sizeof rawSdp ? stored : static_cast<unsigned int>(sizeof rawSdp));
}

unsigned short cSdpNegotiator::compressObject(unsigned char** out, unsigned int& size) const {
  if (out == nullptr) return refuse({.reason = SDP_REFUSED_NULL, .operation = "compressObject"});
  size = getObjectSize();
  auto* const bytes = new (std::nothrow) unsigned char[size + 1];
  *out = bytes;
  if (bytes == nullptr) return refuse({.reason = SDP_REFUSED_NO_MEMORY_FOR_ARRAY});
  std::memcpy(bytes, this, size);
  bytes[size] = 0;
  return 0;
}

unsigned short cSdpNegotiator::uncompressObject(const unsigned char* in, unsigned int size) {
  if (!isConsistent(in, size)) {
    return refuse({.reason = SDP_REFUSED_INVALID_PACKED_OBJECT, .number = size});
  }
  std::memmove(static_cast<void*>(this), in, size);
  return 0;
}
