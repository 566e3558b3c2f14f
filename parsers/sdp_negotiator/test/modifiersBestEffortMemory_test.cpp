#include <cstdlib>
#include <new>

#include "modifiersTestSupport.h"
#include "sessionDescription.h"

// What becomes of a best-effort offer when there is no memory for copies of its m-lines.

namespace {

/// The size of the allocations that fail; 0 for none.
thread_local std::size_t failingSize = 0;

}  // namespace

void* operator new(std::size_t size) {
  void* const memory = size == failingSize && size != 0 ? nullptr : std::malloc(size != 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return size == failingSize && size != 0 ? nullptr : std::malloc(size != 0 ? size : 1);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace {

const std::string start = "v=0\r\n";
const std::string plain = "m=audio 4 RTP/AVP 0\r\n";
const std::string secure = "m=audio 4 RTP/SAVP 0\r\n";

/// Lets allocations of a size fail for as long as it lives.
class WithoutMemory {
 public:
  explicit WithoutMemory(std::size_t size) { failingSize = size; }
  ~WithoutMemory() { failingSize = 0; }
  WithoutMemory(const WithoutMemory&) = delete;
  WithoutMemory& operator=(const WithoutMemory&) = delete;
};

TEST(BestEffortMemory, TheChangeCopiesNeitherMLinesNorMedia) {
  for (const std::size_t size : {2 * sizeof(mDescription), sizeof(std::string)}) {
    SdpBuffer buffer(start + plain + secure);
    unsigned short status = 1;
    {
      const WithoutMemory none(size);
      status =
          sdpModifications::sdpChangeSdpType(buffer.data(), BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, nullptr, 7);
    }
    EXPECT_EQ(status, 0) << size;
    buffer.expectText(start + plain);
  }
}

TEST(BestEffortMemory, WithoutAnyThereAreNoMLines) {
  SdpBuffer buffer(start + plain + secure);
  std::vector<mDescription> lines(1);
  unsigned short status = 0;
  {
    const WithoutMemory none(2 * sizeof(mDescription));
    status = sdpModifications::getMLines(buffer.data(), lines);
  }
  EXPECT_EQ(status, 1);
  EXPECT_TRUE(lines.empty());
}

}  // namespace
