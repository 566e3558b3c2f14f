#include <memory>
#include <new>

#include "objectTestSupport.h"
#include "traceCapture.h"

// What an object is before anything was done with it.

namespace {

/// Memory in which nothing looks like an empty object.
struct DirtyMemory {
  alignas(cSdpNegotiator) unsigned char bytes[sizeof(cSdpNegotiator)];

  DirtyMemory() { std::memset(bytes, 0xA5, sizeof bytes); }
};

void expectEmpty(const cSdpNegotiator& object) {
  EXPECT_FALSE(object.isSdpPresent());
  EXPECT_TRUE(object.isParsedDataInitialized());
  EXPECT_FALSE(object.isParsedDataPresent());
  EXPECT_EQ(object.getRawSdpSize(), 0U);
  EXPECT_FALSE(object.contains("\xA5"));
  const Record reset;
  EXPECT_EQ(std::memcmp(&object.getParsedData(), &reset.data, sizeof reset.data), 0);
  char text[8] = "#######";
  TraceCapture trace;
  EXPECT_EQ(object.getSDP(text, sizeof text), 1);
  EXPECT_TRUE(trace.has(4, 3, "The raw SDP buffer is empty."));
  EXPECT_EQ(object.getRawSDP(text, sizeof text), 0);
  EXPECT_STREQ(text, "");
}

TEST(NewObject, IsEmptyWithAndWithoutBraces) {
  DirtyMemory memory;
  expectEmpty(*::new (memory.bytes) cSdpNegotiator);
  DirtyMemory withBraces;
  expectEmpty(*::new (withBraces.bytes) cSdpNegotiator{});
  const cSdpNegotiator constant;
  expectEmpty(constant);
}

TEST(NewObject, IsEmptyInAnArray) {
  const std::vector<cSdpNegotiator> objects(3);
  for (const cSdpNegotiator& each : objects) expectEmpty(each);
}

TEST(NewObject, IsCopiedByteForByte) {
  DirtyMemory memory;
  const cSdpNegotiator& object = *::new (memory.bytes) cSdpNegotiator;
  DirtyMemory other;
  std::memcpy(other.bytes, &object, sizeof object);
  expectEmpty(*std::launder(reinterpret_cast<const cSdpNegotiator*>(other.bytes)));
}

TEST(NewObject, TravelsWithoutWhatItsMemoryHeld) {
  DirtyMemory memory;
  const cSdpNegotiator& object = *::new (memory.bytes) cSdpNegotiator;
  unsigned char* bytes = nullptr;
  unsigned int size = 0;
  ASSERT_EQ(object.compressObject(&bytes, size), 0);
  const std::unique_ptr<unsigned char[]> owner(bytes);
  ASSERT_LE(size, sizeof object);
  const Record reset;
  EXPECT_EQ(std::memcmp(bytes, &reset, size), 0);
}

TEST(NewObject, TakesABodyAsAnEmptiedOneDoes) {
  DirtyMemory memory;
  cSdpNegotiator& object = *::new (memory.bytes) cSdpNegotiator;
  ASSERT_EQ(object.sdpParse(audioBody().c_str(), SDP_TYPE_OFFER), 0);
  cSdpNegotiator emptied = emptyObject();
  ASSERT_EQ(emptied.sdpParse(audioBody().c_str(), SDP_TYPE_OFFER), 0);
  EXPECT_TRUE(sameBytes(object, emptied));
}

}  // namespace
