#include <cstring>
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

TEST(NewObject, IsEmptyWhereItIsMadeSo) {
  DirtyMemory memory;
  expectEmpty(*::new (memory.bytes) cSdpNegotiator(cSdpNegotiator::empty()));
  EXPECT_TRUE(sameBytes(cSdpNegotiator::empty(), emptyObject()));
}

TEST(NewObject, HasNoTextWithBracesAlone) {
  DirtyMemory memory;
  cSdpNegotiator& object = *::new (memory.bytes) cSdpNegotiator{};
  EXPECT_FALSE(object.isSdpPresent());
  EXPECT_EQ(object.getRawSdpSize(), 0U);
  EXPECT_EQ(object.getSdpSecurityType(), SECURITY_NONE);
  char text[8] = "#######";
  TraceCapture trace;
  EXPECT_EQ(object.getSDP(text, sizeof text), 1);
  EXPECT_TRUE(trace.has(4, 3, "The raw SDP buffer is empty."));
  EXPECT_EQ(object.sdpIncVersion(), 1);
  EXPECT_FALSE(object.isSdpPresent());
}

TEST(NewObject, IsCopiedByteForByte) {
  const cSdpNegotiator object = cSdpNegotiator::empty();
  DirtyMemory other;
  std::memcpy(other.bytes, &object, sizeof object);
  expectEmpty(*std::launder(reinterpret_cast<const cSdpNegotiator*>(other.bytes)));
}

TEST(NewObject, TakesABodyWhateverItsMemoryHeld) {
  DirtyMemory memory;
  cSdpNegotiator& object = *std::launder(reinterpret_cast<cSdpNegotiator*>(memory.bytes));
  ASSERT_EQ(object.sdpParse(audioBody().c_str(), SDP_TYPE_OFFER), 0);
  cSdpNegotiator emptied = cSdpNegotiator::empty();
  ASSERT_EQ(emptied.sdpParse(audioBody().c_str(), SDP_TYPE_OFFER), 0);
  EXPECT_TRUE(sameBytes(object, emptied));
}

}  // namespace
