#include <new>

#include "objectTestSupport.h"

// The arrays that operations hand out, when there is no memory for them.

namespace {
thread_local bool arraysAreOut = false;
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  if (arraysAreOut) return nullptr;
  try {
    return operator new[](size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

namespace {

/// There is no memory for arrays for as long as it lives.
struct ArraysAreOut {
  ArraysAreOut() { arraysAreOut = true; }
  ~ArraysAreOut() { arraysAreOut = false; }
};

TEST(NewArrays, PackingWithoutMemoryFailsAndGivesNull) {
  const cSdpNegotiator object = parsedObject(audioBody());
  unsigned char some = 0;
  unsigned char* array = &some;
  unsigned int size = 0;
  const ArraysAreOut out;
  EXPECT_EQ(object.compressObject(&array, size), 1);
  EXPECT_EQ(array, nullptr);
}

TEST(NewArrays, AnOriginLineWithoutMemoryIsNull) {
  const cSdpNegotiator object = parsedObject(audioBody());
  char some = 0;
  char* line = &some;
  int length = 9;
  const ArraysAreOut out;
  EXPECT_EQ(object.getOLine(line, length), 0);
  EXPECT_EQ(line, nullptr);
  EXPECT_EQ(length, 0);
}

TEST(NewArrays, ComparingAndCopyingAnOriginLineNeedsNone) {
  const cSdpNegotiator same = parsedObject(audioBody());
  cSdpNegotiator other = same;
  EXPECT_EQ(other.sdpSetVersionNumber(77), 0);
  cSdpNegotiator object = same;
  const ArraysAreOut out;
  EXPECT_EQ(object.compareSdpOLine(&same), 0);
  EXPECT_EQ(object.compareSdpOLine(&other), 1);
  EXPECT_EQ(object.copyOLine(&other), 0);
  EXPECT_EQ(object.compareSdpOLine(&other), 0);
}

}  // namespace
