#include <zlib.h>

#include <cstdio>
#include <cstdlib>

#include "deflateTestSupport.h"
#include "objectTestSupport.h"

// The streams behind the stored text: they give what fresh ones give, and their memory is bounded.

namespace {

using sdpneg::Deflated;
using sdpneg::Inflated;
using sdpneg::TextStreams;
using sdpneg::ZlibStreams;

constexpr std::size_t room = SDP_STORED_TEXT_SIZE;

// Long and short, repeating and not, and some that do not fit: nothing of a text may show in the next one.
const std::vector<std::string>& differentTexts() {
  static const std::vector<std::string> texts = {
      paddedTo(2560), incompressibleBody(2600), paddedTo(20480),         incompressibleBody(9000),
      paddedTo(3000), incompressibleBody(3000), std::string(60000, 'p'), incompressibleBody(30000),
      "v=0"};
  return texts;
}

TEST(ZlibStreams, AResetStreamGivesTheBytesOfAFreshOne) {
  Owned<ZlibStreams> streams;
  for (int round = 0; round < 3; ++round) {
    for (const std::string& text : differentTexts())
      EXPECT_EQ(deflatedBy(streams, text), freshlyDeflated(text));
  }
}

TEST(ZlibStreams, TheRoomIsUsedToItsLastByteAndNotBeyond) {
  Owned<ZlibStreams> streams;
  const std::string text = paddedTo(4000);
  const std::string bytes = freshlyDeflated(text);
  std::string out(bytes.size() + 4, '\x5b');
  EXPECT_EQ(streams.deflate(withNul(text), out.data(), bytes.size() - 1).status, Deflated::Status::noRoom);
  EXPECT_EQ(out[bytes.size() - 1], '\x5b');
  const Deflated exact = streams.deflate(withNul(text), out.data(), bytes.size());
  EXPECT_EQ(exact.status, Deflated::Status::done);
  EXPECT_EQ(exact.length, bytes.size());
  EXPECT_EQ(out, bytes + "\x5b\x5b\x5b\x5b");
}

TEST(TextStreams, UsedOnesGiveTheBytesThatTheBuildIsToWrite) {
  Owned<TextStreams> streams;
  for (int round = 0; round < 3; ++round) {
    for (const std::string& text : differentTexts()) EXPECT_EQ(deflatedBy(streams, text), bytesToStore(text));
  }
}

TEST(TextStreams, AnObjectStoresTheBytesThatTheBuildIsToWrite) {
  for (const std::string& text : {paddedTo(2560), paddedTo(20480), incompressibleBody(2700)}) {
    const cSdpNegotiator object = objectWithText(text);
    const std::string expected = bytesToStore(text);
    ASSERT_EQ(object.getParsedData().storedSdpLength, expected.size());
    EXPECT_EQ(std::string(Record(object).raw, expected.size()), expected);
  }
}

// What is stored may be as long as what zlib makes of the text, and needs no byte more room than it takes.
TEST(TextStreams, TheRoomIsUsedToItsLastByteAndNotBeyond) {
  Owned<TextStreams> streams;
  for (const std::string& text : {paddedTo(4000), incompressibleBody(2700)}) {
    const std::size_t least = std::min(bytesToStore(text).size(), freshlyDeflated(text).size());
    std::string out(least + 4, '\x5b');
    EXPECT_EQ(streams.deflate(withNul(text), out.data(), least - 1).status, Deflated::Status::noRoom);
    EXPECT_EQ(out.substr(least - 1), std::string(5, '\x5b'));
    for (std::size_t length = least; length < least + 4; ++length) {
      std::fill(out.begin(), out.end(), '\x5b');
      const Deflated exact = streams.deflate(withNul(text), out.data(), length);
      ASSERT_EQ(exact.status, Deflated::Status::done);
      EXPECT_LE(exact.length, length);
      EXPECT_EQ(out.substr(exact.length), std::string(out.size() - exact.length, '\x5b'));
      EXPECT_EQ(inflatedByZlib(out.substr(0, exact.length)), withNul(text));
    }
  }
}

TEST(TextStreams, AFailedExpansionDoesNotShowInTheNextOne) {
  Owned<TextStreams> streams;
  const std::string text = paddedTo(4000);
  for (const std::string& bytes : {freshlyDeflated(text), bytesToStore(text)}) {
    std::string out(5000, '\0');
    for (std::size_t length = 0; length < bytes.size(); ++length) {
      EXPECT_FALSE(streams.inflate({bytes.data(), length}, out.data(), out.size()).whole);
      const Inflated whole = streams.inflate(bytes, out.data(), out.size());
      ASSERT_TRUE(whole.whole);
      ASSERT_EQ(std::string_view(out.data(), whole.length), withNul(text));
    }
  }
}

TEST(TextStreams, TheyMayBeUsedAgainAfterTheirEnd) {
  Owned<TextStreams> streams;
  const std::string text = paddedTo(4000);
  const std::string first = deflatedBy(streams, text);
  EXPECT_EQ(inflatedBy(streams, first), withNul(text));
  streams.end();
  streams.end();
  EXPECT_EQ(deflatedBy(streams, text), first);
  EXPECT_EQ(inflatedBy(streams, first), withNul(text));
}

/// Grants a number of allocations.
struct Memory {
  int granted = 0;
  int held = 0;

  static void* allocate(void* self, uInt items, uInt size) {
    auto& memory = *static_cast<Memory*>(self);
    if (memory.granted == 0) return nullptr;
    --memory.granted;
    ++memory.held;
    return std::calloc(items, size);
  }
  static void release(void* self, void* block) {
    --static_cast<Memory*>(self)->held;
    std::free(block);
  }
};

TEST(ZlibStreams, WithoutMemoryNothingIsWrittenAndALaterUseTriesAgain) {
  const std::string text = paddedTo(4000);
  const std::string bytes = freshlyDeflated(text);
  for (int granted = 0; granted < 5; ++granted) {  // a deflate stream takes five pieces
    Memory memory{granted};
    ZlibStreams streams(&Memory::allocate, &Memory::release, &memory);
    std::string out(room, '\x5b');
    EXPECT_EQ(streams.deflate(withNul(text), out.data(), room).status, Deflated::Status::noStream);
    EXPECT_EQ(out, std::string(room, '\x5b'));
    EXPECT_EQ(memory.held, 0);
    memory.granted = 5;
    EXPECT_EQ(deflatedBy(streams, text), bytes);
    memory.granted = 0;
    EXPECT_FALSE(streams.inflate(bytes, out.data(), room).whole);
    EXPECT_EQ(out, std::string(room, '\x5b'));
    streams.end();
    EXPECT_EQ(memory.held, 0);
  }
}

#ifdef SDP_TEST_SANITIZED
constexpr int damagedForms = 100000;
#else
constexpr int damagedForms = 1000000;
#endif

long residentBytes() {
  long all = 0;
  long resident = 0;
  std::FILE* const file = std::fopen("/proc/self/statm", "r");
  EXPECT_EQ(std::fscanf(file, "%ld %ld", &all, &resident), 2);
  std::fclose(file);
  return resident * 4096;
}

// Deliberate: a failed expansion does not end its stream. What it leaves is one state per thread; ended by
// nobody and made anew each time, these would be some 40 KB each.
TEST(TextStreams, AMillionDamagedFormsAreExpandedInBoundedMemory) {
  Record record(objectWithText(paddedTo(3000)));
  record.data.storedSdpLength = static_cast<std::uint16_t>(record.data.storedSdpLength / 2);
  const cSdpNegotiator object = record.object();
  char text[4000];
  ASSERT_EQ(object.getRawSDP(text, sizeof text), 1);
  const long before = residentBytes();
  int failures = 0;
  for (int i = 0; i < damagedForms; ++i) failures += object.getRawSDP(text, sizeof text);
  EXPECT_EQ(failures, damagedForms);
  EXPECT_LT(residentBytes() - before, 8L << 20U);
}

}  // namespace
