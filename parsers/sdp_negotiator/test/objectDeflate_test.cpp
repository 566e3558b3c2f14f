#include <zlib.h>

#include <cstdio>
#include <cstdlib>

#include "objectTestSupport.h"
#include "sdpNegotiator/deflate.h"

// The streams behind the stored text: they give what fresh ones give, and their memory is bounded.

namespace {

using sdpneg::Deflated;
using sdpneg::Inflated;
using sdpneg::TextStreams;

constexpr std::size_t room = SDP_STORED_TEXT_SIZE;

std::string_view withNul(const std::string& text) { return {text.c_str(), text.size() + 1}; }

/// What a stream that was never used before makes of a text; empty when it does not fit.
std::string freshlyDeflated(const std::string& text) {
  z_stream stream{};
  EXPECT_EQ(deflateInit(&stream, Z_DEFAULT_COMPRESSION), Z_OK);
  stream.data_type = Z_TEXT;
  std::string in(withNul(text));
  std::string out(room, '\0');
  stream.next_in = reinterpret_cast<Bytef*>(in.data());
  stream.avail_in = static_cast<uInt>(in.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  const bool done = deflate(&stream, Z_FINISH) == Z_STREAM_END;
  out.resize(done ? stream.total_out : 0);
  deflateEnd(&stream);
  return out;
}

std::string deflatedBy(TextStreams& streams, const std::string& text) {
  char out[room];
  const Deflated result = streams.deflate(withNul(text), out, room);
  return result.status == Deflated::Status::done ? std::string(out, result.length) : std::string();
}

/// Ends its streams.
struct OwnStreams : TextStreams {
  using TextStreams::TextStreams;
  ~OwnStreams() { end(); }
};

TEST(TextStreams, AResetStreamGivesTheBytesOfAFreshOne) {
  OwnStreams streams;
  // Long and short, repeating and not, and one that does not fit: nothing of a text shows in the next one.
  const std::string texts[] = {
      paddedTo(2560), incompressibleBody(2600), paddedTo(20480),         incompressibleBody(9000),
      paddedTo(3000), incompressibleBody(3000), std::string(60000, 'p'), incompressibleBody(30000),
      "v=0"};
  for (int round = 0; round < 3; ++round) {
    for (const std::string& text : texts) EXPECT_EQ(deflatedBy(streams, text), freshlyDeflated(text));
  }
}

TEST(TextStreams, AnObjectStoresTheBytesOfAFreshStream) {
  for (const std::string& text : {paddedTo(2560), paddedTo(20480), incompressibleBody(2700)}) {
    const cSdpNegotiator object = objectWithText(text);
    const std::string expected = freshlyDeflated(text);
    ASSERT_EQ(object.getParsedData().storedSdpLength, expected.size());
    EXPECT_EQ(std::string(Record(object).raw, expected.size()), expected);
  }
}

TEST(TextStreams, TheRoomIsUsedToItsLastByteAndNotBeyond) {
  OwnStreams streams;
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

TEST(TextStreams, AFailedExpansionDoesNotShowInTheNextOne) {
  OwnStreams streams;
  const std::string text = paddedTo(4000);
  const std::string bytes = freshlyDeflated(text);
  std::string out(5000, '\0');
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_FALSE(streams.inflate({bytes.data(), length}, out.data(), out.size()).whole);
    const Inflated whole = streams.inflate(bytes, out.data(), out.size());
    ASSERT_TRUE(whole.whole);
    ASSERT_EQ(std::string_view(out.data(), whole.length), withNul(text));
  }
}

TEST(TextStreams, TheyMayBeUsedAgainAfterTheirEnd) {
  OwnStreams streams;
  const std::string text = paddedTo(4000);
  const std::string first = deflatedBy(streams, text);
  streams.end();
  streams.end();
  EXPECT_EQ(deflatedBy(streams, text), first);
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

TEST(TextStreams, WithoutMemoryNothingIsWrittenAndALaterUseTriesAgain) {
  const std::string text = paddedTo(4000);
  const std::string bytes = freshlyDeflated(text);
  for (int granted = 0; granted < 5; ++granted) {  // a deflate stream takes five pieces
    Memory memory{granted};
    TextStreams streams(&Memory::allocate, &Memory::release, &memory);
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
