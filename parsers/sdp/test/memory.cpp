#include "codecTestSupport.h"
#include "testFiles.h"

// What the codec allocates: nothing in decoding, and in encoding a text that survives running out of memory.

namespace {
std::size_t allocations = 0;
bool memoryIsOut = false;
}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_realloc(void* memory, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c)

extern "C" void* malloc(std::size_t size) {
  ++allocations;
  return __libc_malloc(size);
}

extern "C" void* realloc(void* memory, std::size_t size) {
  ++allocations;
  return memoryIsOut ? nullptr : __libc_realloc(memory, size);
}

namespace {

TEST(Memory, DecodingAllocatesNothing) {
  const auto description = std::make_unique<sDescription>();
  char error[SDP_ERROR_TEXT_SIZE];
  unsigned short start = 0;
  unsigned short end = 0;
  for (const auto& path : sdpFilesBelow(SDP_TEST_SOURCE_DIR "/parsers/sdp/test/bodies")) {
    const std::string body = readBytes(path);
    const std::size_t before = allocations;
    const unsigned short status =
        sdp_decodeOpt_r(description.get(), body.c_str(), SDP_TYPE_UNKNOWN, error, false, start, end);
    EXPECT_EQ(allocations, before) << path;
    EXPECT_EQ(status, 0) << path;
  }
}

TEST(Memory, EncodingReportsThatMemoryRanOut) {
  const Decoded d(kHead);
  char* text = nullptr;
  int length = 9;
  int size = 0;
  memoryIsOut = true;
  const unsigned short status = sdp_encode_r(d.get(), SDP_TYPE_UNKNOWN, text, length, size);
  memoryIsOut = false;
  EXPECT_EQ(status, 1);
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(length, 0);
}

TEST(Memory, ATextThatCannotGrowStaysTheCallers) {
  std::string body = kHead;
  for (int i = 0; i < 40; ++i) body += "a=x:" + std::string(349, 'v') + "\r\n";
  const Decoded small(kHead);
  const Decoded large(body);
  char* text = nullptr;
  int length = 0;
  int size = 0;
  ASSERT_EQ(sdp_encode_r(small.get(), SDP_TYPE_UNKNOWN, text, length, size), 0);
  char* const before = text;
  const int sizeBefore = size;
  memoryIsOut = true;
  const unsigned short status = sdp_encode_r(large.get(), SDP_TYPE_UNKNOWN, text, length, size);
  memoryIsOut = false;
  EXPECT_EQ(status, 1);
  EXPECT_EQ(text, before);
  EXPECT_EQ(size, sizeBefore);
  ASSERT_EQ(sdp_encode_r(large.get(), SDP_TYPE_UNKNOWN, text, length, size), 0);
  EXPECT_EQ(std::string(text), body);
  std::free(text);
}

TEST(Memory, EncodingIntoATextThatIsLargeEnoughAllocatesNothing) {
  const Decoded d(kHead);
  char* text = nullptr;
  int length = 0;
  int size = 0;
  ASSERT_EQ(sdp_encode_r(d.get(), SDP_TYPE_UNKNOWN, text, length, size), 0);
  const std::size_t before = allocations;
  const unsigned short status = sdp_encode_r(d.get(), SDP_TYPE_UNKNOWN, text, length, size);
  EXPECT_EQ(allocations, before);
  EXPECT_EQ(status, 0);
  std::free(text);
}

}  // namespace
