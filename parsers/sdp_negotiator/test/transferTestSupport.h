#ifndef TRANSFER_TEST_SUPPORT_H
#define TRANSFER_TEST_SUPPORT_H

#include <memory>
#include <vector>

#include "objectTestSupport.h"
#include "traceCapture.h"

using Bytes = std::vector<unsigned char>;

inline constexpr unsigned int summarySize = 132;
inline constexpr unsigned int objectSize = 2692;

/// The transfer form of an object. It stands in a block of its own, so that a read behind the object is seen.
inline Bytes packed(const cSdpNegotiator& object) {
  const auto alone = std::make_unique<cSdpNegotiator>(object);
  unsigned char* array = nullptr;
  unsigned int size = 0;
  EXPECT_EQ(alone->compressObject(&array, size), 0);
  const std::unique_ptr<unsigned char[]> owned(array);
  if (array == nullptr) {
    ADD_FAILURE() << "no array";
    return {};
  }
  EXPECT_EQ(size, object.getObjectSize());
  EXPECT_EQ(array[size], 0);
  return {array, array + size};
}

/// Hands a form over in a block of exactly its size.
inline unsigned short unpack(cSdpNegotiator& object, const Bytes& form) {
  const auto exact = std::make_unique<unsigned char[]>(form.size());
  std::copy(form.begin(), form.end(), exact.get());
  return object.uncompressObject(exact.get(), static_cast<unsigned int>(form.size()));
}

/// An object of 0xa5 bytes, as memory that was in use may hold.
inline cSdpNegotiator usedMemory() {
  cSdpNegotiator object;
  std::memset(static_cast<void*>(&object), 0xa5, sizeof object);
  return object;
}

inline Bytes bytesOf(const cSdpNegotiator& object) {
  Bytes bytes(sizeof object);
  std::memcpy(bytes.data(), &object, sizeof object);
  return bytes;
}

#endif
