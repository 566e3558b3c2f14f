#include "codecTestSupport.h"
#include "testFiles.h"

// What the codec allocates: nothing in decoding, and in encoding a text that survives running out of memory.

namespace {
std::size_t allocations = 0;
constexpr int kNever = -1;
int reallocsLeft = kNever;  // until memory runs out
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
  if (reallocsLeft == 0) return nullptr;
  if (reallocsLeft > 0) --reallocsLeft;
  return __libc_realloc(memory, size);
}

namespace {

TEST(Memory, DecodingAllocatesNothing) {
  const auto description = std::make_unique<sDescription>();
  char error[SDP_ERROR_TEXT_SIZE];
  unsigned short start = 0;
  unsigned short end = 0;
  const auto files = sdpFilesBelow(SDP_TEST_SOURCE_DIR "/parsers/sdp/test/bodies");
  ASSERT_GE(files.size(), 4U);
  EXPECT_GT(allocations, 0U);  // the hook is in place
  for (const auto& path : files) {
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
  reallocsLeft = 0;
  const unsigned short status = sdp_encode_r(d.get(), SDP_TYPE_UNKNOWN, text, length, size);
  reallocsLeft = kNever;
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
  reallocsLeft = 0;
  const unsigned short status = sdp_encode_r(large.get(), SDP_TYPE_UNKNOWN, text, length, size);
  reallocsLeft = kNever;
  EXPECT_EQ(status, 1);
  EXPECT_EQ(text, before);
  EXPECT_EQ(size, sizeBefore);
  EXPECT_STREQ(text, "");
  EXPECT_EQ(length, 0);
  ASSERT_EQ(sdp_encode_r(large.get(), SDP_TYPE_UNKNOWN, text, length, size), 0);
  EXPECT_EQ(std::string(text), body);
  std::free(text);
}

TEST(Memory, RunningOutAtAnyGrowthLeavesATextThatCanBeUsedAgain) {
  std::string body = kHead;
  for (int i = 0; i < 40; ++i) body += "a=x:" + std::string(349, 'v') + "\r\n";
  const Decoded large(body);
  for (int grown = 1; grown < 3; ++grown) {
    char* text = nullptr;
    int length = 9;
    int size = 123456789;  // not read while there is no text
    reallocsLeft = grown;
    const unsigned short status = sdp_encode_r(large.get(), SDP_TYPE_UNKNOWN, text, length, size);
    reallocsLeft = kNever;
    ASSERT_EQ(status, 1);
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(length, 0);
    EXPECT_EQ(size, 4096 * grown);
    ASSERT_EQ(sdp_encode_r(large.get(), SDP_TYPE_UNKNOWN, text, length, size), 0);
    EXPECT_EQ(std::string(text), body);
    std::free(text);
  }
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
