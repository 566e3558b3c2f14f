#include "objectTestSupport.h"

// What storing and expanding allocate, and what happens when there is no memory. Takes the C library's
// allocator over, which the sanitizers do as well.
#ifndef SDP_TEST_SANITIZED

#include <malloc.h>

#include <cstdint>
#include <thread>

namespace {
thread_local std::size_t allocations = 0;
thread_local std::size_t smallestRefused = SIZE_MAX;
}  // namespace

// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" void* __libc_malloc(std::size_t size);

extern "C" void* malloc(std::size_t size) {
  ++allocations;
  return size >= smallestRefused ? nullptr : __libc_malloc(size);
}

namespace {

/// Memory is out, for allocations of a size or more, for as long as it lives.
struct MemoryIsOut {
  explicit MemoryIsOut(std::size_t size = 0) { smallestRefused = size; }
  ~MemoryIsOut() { smallestRefused = SIZE_MAX; }
};

/// On a thread that has no streams yet.
template <typename Test>
void onFreshThread(Test test) {
  std::thread(test).join();
}

TEST(Memory, StoringWithoutMemoryChangesNothing) {
  onFreshThread([] {
    const std::string text = paddedTo(3000);
    cSdpNegotiator object = objectWithText("v=0");
    const cSdpNegotiator before = object;
    unsigned short status = 0;
    {
      const MemoryIsOut out;
      status = object.setRawSDP(text.c_str());
    }
    EXPECT_EQ(status, 1);
    EXPECT_TRUE(sameBytes(object, before));
    EXPECT_EQ(object.setRawSDP(text.c_str()), 0);  // as soon as there is memory again
    EXPECT_EQ(textOf(object), text);
  });
}

#ifdef SDP_TEST_LIBDEFLATE
// libdeflate has what it needs by then, and writes into no object before all of a text finds room.
TEST(Memory, WithoutMemoryForZlibATextThatItIsToDecideOnChangesNothing) {
  onFreshThread([] {
    const std::string unstorable = incompressibleBody(6000);
    cSdpNegotiator object = objectWithText(paddedTo(3000));
    const cSdpNegotiator before = object;
    unsigned short status = 0;
    {
      const MemoryIsOut out;
      status = object.setRawSDP(unstorable.c_str());
    }
    EXPECT_EQ(status, 1);
    EXPECT_TRUE(sameBytes(object, before));
    EXPECT_EQ(object.setRawSDP(unstorable.c_str()), 2);  // as soon as there is memory again
  });
}
#endif

TEST(Memory, ExpandingWithoutMemoryFails) {
  const std::string text = paddedTo(3000);
  const cSdpNegotiator object = objectWithText(text);
  onFreshThread([&] {
    char buffer[4000] = "x";
    unsigned short status = 0;
    unsigned int size = 99;
    {
      const MemoryIsOut out;
      status = object.getRawSDP(buffer, sizeof buffer);
      size = object.getRawSdpSize();
    }
    EXPECT_EQ(status, 1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(textOf(object), text);
  });
}

/// A request that makes the o-line longer.
using OriginLineRequest = unsigned short (*)(cSdpNegotiator& object, const cSdpNegotiator& other);

constexpr OriginLineRequest originLineRequests[] = {
    [](cSdpNegotiator& object, const cSdpNegotiator& other) { return object.copyOLine(&other); },
    [](cSdpNegotiator& object, const cSdpNegotiator&) { return object.sdpSetVersionNumber(1000000); },
    [](cSdpNegotiator& object, const cSdpNegotiator&) { return object.sdpSetVersionNumberLong(1000000); },
    [](cSdpNegotiator& object, const cSdpNegotiator&) { return object.sdpModifyOLine("1000000", "1000000"); },
    [](cSdpNegotiator& object, const cSdpNegotiator&) {
      return object.sdpModifyOLine("1000000", "1000000", "192.0.2.1");
    },
    [](cSdpNegotiator& object, const cSdpNegotiator&) { return object.sdpModifyOLine(); },
};

// The longest text that is not deflated has to be when its o-line grows.
TEST(Memory, ANewOriginLineWithoutMemoryForTheTextChangesNothing) {
  const cSdpNegotiator before = parsedObject(paddedTo(2559));
  std::string longer = audioBody();
  longer.insert(longer.find(" 1 1 ") + 1, "1000000");
  const cSdpNegotiator other = parsedObject(longer);
  constexpr std::size_t ofAStream = 4096;  // an o-line is handed over in less
  for (const OriginLineRequest request : originLineRequests) {
    onFreshThread([&] {
      cSdpNegotiator object = before;
      unsigned short status = 0;
      {
        const MemoryIsOut out(ofAStream);
        status = request(object, other);
      }
      EXPECT_EQ(status, 1);
      EXPECT_TRUE(sameBytes(object, before));
      EXPECT_EQ(request(object, other), 0);  // as soon as there is memory again
      EXPECT_GT(object.getParsedData().oLineEnd, before.getParsedData().oLineEnd);
    });
  }
}

TEST(Memory, ParsingWithoutMemoryForTheTextLeavesTheObjectEmpty) {
  onFreshThread([] {
    const std::string body = paddedTo(3000);
    cSdpNegotiator object = parsedObject(audioBody());
    unsigned short status = 0;
    {
      const MemoryIsOut out;
      status = object.sdpParse(body.c_str(), SDP_TYPE_OFFER);
    }
    EXPECT_EQ(status, 1);
    EXPECT_TRUE(sameBytes(object, emptyObject()));
  });
}

TEST(Memory, AThreadAllocatesForItsFirstTextsOnly) {
  onFreshThread([] {
    const std::string text = paddedTo(3000);
    const std::string unstorable = incompressibleBody(6000);
    char buffer[4000];
    cSdpNegotiator object = objectWithText(text);
    Record record(object);
    record.data.storedSdpLength = 30;
    const cSdpNegotiator damaged = record.object();
    EXPECT_EQ(object.getRawSDP(buffer, sizeof buffer), 0);
    EXPECT_EQ(damaged.getRawSDP(buffer, sizeof buffer), 1);
    EXPECT_EQ(object.setRawSDP(unstorable.c_str()), 2);  // with libdeflate the first for zlib to decide on
    const std::size_t before = allocations;
    for (int i = 0; i < 100; ++i) {
      object.setRawSDP(unstorable.c_str());
      object.setRawSDP(text.c_str());
      object.getRawSDP(buffer, sizeof buffer);
      damaged.getRawSDP(buffer, sizeof buffer);
      object.getRawSdpSize();
      object.contains("x");
    }
    EXPECT_EQ(allocations, before);
  });
}

TEST(Memory, PlainTextsAllocateNothing) {
  onFreshThread([] {
    cSdpNegotiator object = emptyObject();
    const std::string text = paddedTo(2559);
    char buffer[4000];
    const std::size_t before = allocations;
    object.setRawSDP(text.c_str());
    object.getRawSDP(buffer, sizeof buffer);
    object.contains("x");
    EXPECT_EQ(allocations, before);
  });
}

/// Uses an object at the very end of its thread, when the library has given its memory back already.
struct LateUser {
  bool* stored = nullptr;
  ~LateUser() {
    static const std::string text = paddedTo(3000);
    cSdpNegotiator object = emptyObject();
    if (stored != nullptr) *stored = object.setRawSDP(text.c_str()) == 0;
  }
};

TEST(Memory, AThreadGivesItsStreamsBackWhenItEnds) {
  const auto oneThread = [] {
    bool stored = false;
    onFreshThread([&stored] {
      thread_local LateUser lateUser;
      lateUser.stored = &stored;
      Record record(objectWithText(paddedTo(3000)));
      record.data.storedSdpLength = 30;
      char buffer[4000];
      EXPECT_EQ(record.object().getRawSDP(buffer, sizeof buffer), 1);  // leaves a stream in the middle
    });
    EXPECT_TRUE(stored);
  };
  const auto inUse = [] {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
  };
  for (int i = 0; i < 10; ++i) oneThread();
  const std::size_t before = inUse();
  for (int i = 0; i < 100; ++i) oneThread();
  EXPECT_LT(inUse(), before + (1U << 20U));  // kept, they would be some 30 MB
}

}  // namespace

#endif
