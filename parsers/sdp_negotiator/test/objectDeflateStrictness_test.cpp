#include <algorithm>
#include <random>

#include "deflateTestSupport.h"
#include "objectTestSupport.h"

// Streams that are written by hand, with right checksums (RFC 1950, RFC 1951). zlib refuses codes that are not complete,
// symbols that do not exist, and lengths that run over their number; libdeflate reads some of them. They stay refused.

namespace {

using sdpneg::Inflated;
using sdpneg::TextStreams;
using sdpneg::ZlibStreams;

/// Bits into bytes, the lowest of a byte first.
class BitWriter {
 public:
  void number(unsigned int value, unsigned int count) {
    for (unsigned int i = 0; i < count; ++i) bit((value >> i) & 1U);
  }
  /// A word of a code, which goes from its highest bit on.
  void word(unsigned int value, unsigned int count) {
    while (count-- > 0) bit((value >> count) & 1U);
  }
  const std::string& bytes() const { return bytes_; }

 private:
  void bit(unsigned int value) {
    if (used_ % 8 == 0) bytes_ += '\0';
    bytes_.back() = static_cast<char>(static_cast<unsigned char>(bytes_.back()) | (value << (used_++ % 8)));
  }
  std::string bytes_;
  unsigned int used_ = 0;
};

std::string asStream(const BitWriter& block, const std::string& text) {
  const uLong sum = adler32(1, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size()));
  std::string stream = "\x78\x01" + block.bytes();
  for (const unsigned int shift : {24U, 16U, 8U, 0U}) stream += static_cast<char>((sum >> shift) & 255U);
  return stream;
}

/// The code in which the lengths below are written: 4 bits for each from 0 to 14, then 5 for 15 and for a repetition.
/// In the order of RFC 1951 the lengths of these words are those of 16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13,
/// 2, 14, 1, 15.
constexpr unsigned int kCodeLengths[] = {5, 0, 0, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 5};

void writeLength(BitWriter& bits, unsigned int length) {
  if (length < 15) {
    bits.word(length, 4);
  } else {
    bits.word(30, 5);
  }
}
/// @param times 3 to 6
void writeRepetition(BitWriter& bits, unsigned int times) {
  bits.word(31, 5);
  bits.number(times - 3, 2);
}

struct DynamicCodes {
  unsigned int literals = 258;
  unsigned int distances = 2;
  std::vector<std::pair<unsigned int, unsigned int>>
      lengths;  ///< symbol and length; those of distances behind `literals`
};

/// The header of a last block of dynamic codes, but for the lengths of literals and distances.
BitWriter numbersOfHeader(unsigned int literals, unsigned int distances) {
  BitWriter bits;
  bits.number(5, 3);
  bits.number(literals - 257, 5);
  bits.number(distances - 1, 5);
  bits.number(19 - 4, 4);
  for (const unsigned int length : kCodeLengths) bits.number(length, 3);
  return bits;
}

BitWriter dynamicHeader(const DynamicCodes& codes) {
  BitWriter bits = numbersOfHeader(codes.literals, codes.distances);
  for (unsigned int symbol = 0; symbol < codes.literals + codes.distances; ++symbol) {
    const auto found = std::find_if(codes.lengths.begin(), codes.lengths.end(),
                                    [symbol](const auto& each) { return each.first == symbol; });
    writeLength(bits, found != codes.lengths.end() ? found->second : 0);
  }
  return bits;
}

struct Stream {
  std::string name;
  std::string bytes;
  std::string text;  ///< empty for one that is refused
};

std::string streamName(const testing::TestParamInfo<Stream>& info) { return info.param.name; }

inline void PrintTo(const Stream& stream, std::ostream* out) { *out << stream.name; }

/// 'a' is 0, the end 10, and a repetition of three 11; a distance of one is 0, of two 1.
DynamicCodes soundCodes() { return {258, 2, {{'a', 1}, {256, 2}, {257, 2}, {258, 1}, {259, 1}}}; }

Stream soundStream() {
  BitWriter bits = dynamicHeader(soundCodes());
  bits.word(0, 1);
  bits.word(3, 2);
  bits.word(0, 1);
  bits.word(2, 2);
  return {"Sound", asStream(bits, "aaaa"), "aaaa"};
}

Stream withAMissingDistance() {
  DynamicCodes codes = soundCodes();
  codes.lengths.pop_back();  // one word of one bit, which may be; the other one stands for nothing
  BitWriter bits = dynamicHeader(codes);
  bits.word(0, 1);
  bits.word(3, 2);
  bits.word(1, 1);
  bits.word(2, 2);
  return {"DistanceThatStandsForNothing", asStream(bits, "aaaa"), ""};
}

Stream withOneDistance() {
  DynamicCodes codes = soundCodes();
  codes.lengths.pop_back();
  BitWriter bits = dynamicHeader(codes);
  bits.word(0, 1);
  bits.word(3, 2);
  bits.word(0, 1);
  bits.word(2, 2);
  return {"OneDistance", asStream(bits, "aaaa"), "aaaa"};
}

Stream withIncompleteLiterals() {
  BitWriter bits = dynamicHeader({258, 2, {{'a', 2}, {256, 2}, {257, 2}, {258, 1}, {259, 1}}});
  bits.word(0, 2);
  bits.word(1, 2);
  return {"IncompleteLiterals", asStream(bits, "a"), ""};
}

Stream withTooManyLiterals() {
  DynamicCodes codes = soundCodes();
  codes.literals = 287;
  codes.lengths = {{'a', 1}, {256, 2}, {257, 2}, {287, 1}, {288, 1}};
  BitWriter bits = dynamicHeader(codes);
  bits.word(0, 1);
  bits.word(2, 2);
  return {"287Literals", asStream(bits, "a"), ""};
}

Stream withTooManyDistances() {
  DynamicCodes codes = soundCodes();
  codes.distances = 31;
  BitWriter bits = dynamicHeader(codes);
  bits.word(0, 1);
  bits.word(2, 2);
  return {"31Distances", asStream(bits, "a"), ""};
}

Stream withARepetitionOverTheEnd(bool over) {
  BitWriter bits = numbersOfHeader(258, 2);
  for (unsigned int symbol = 0; symbol < 256; ++symbol) writeLength(bits, symbol == 'a' ? 1 : 0);
  // Of the four that are left: the end 2, a repetition 2, both distances 1.
  writeLength(bits, 2);
  writeLength(bits, 2);
  writeLength(bits, 1);
  if (over) {
    writeRepetition(bits, 3);
  } else {
    writeLength(bits, 1);
  }
  bits.word(0, 1);
  bits.word(2, 2);
  return {over ? "RepetitionOverTheEnd" : "NoRepetition", asStream(bits, "a"), over ? "" : "a"};
}

Stream withARepetitionOfNothing() {
  BitWriter bits = numbersOfHeader(258, 2);
  writeRepetition(bits, 3);  // of the length in front of the first
  for (unsigned int symbol = 3; symbol < 256; ++symbol) writeLength(bits, symbol == 'a' ? 1 : 0);
  for (const unsigned int length : {2U, 2U, 1U, 1U}) writeLength(bits, length);
  bits.word(0, 1);
  bits.word(2, 2);
  return {"RepetitionOfNothing", asStream(bits, "a"), ""};
}

/// With fixed codes (RFC 1951, 3.2.6): 'a' is 0x91 of 8 bits, the symbols from 280 on are 0xc0 and more of 8 bits.
Stream withFixedCodes(unsigned int symbol) {
  BitWriter bits;
  bits.number(3, 3);
  bits.word(0x30 + 'a', 8);
  bits.word(0xc0 + symbol - 280, 8);
  bits.word(0, 5);  // a distance of one
  bits.word(0, 7);
  const std::string text(259, 'a');
  return {"FixedCode" + std::to_string(symbol), asStream(bits, text), symbol == 285 ? text : ""};
}

class HandmadeStreams : public testing::TestWithParam<Stream> {};

TEST_P(HandmadeStreams, AreTakenOrRefusedAsZlibDoes) {
  const Stream& stream = GetParam();
  Owned<TextStreams> streams;
  Owned<ZlibStreams> zlib;
  EXPECT_EQ(inflatedBy(streams, stream.bytes), stream.text);
  EXPECT_EQ(inflatedBy(zlib, stream.bytes), stream.text);
  std::string out(600, '\x5b');
  std::string outOfZlib = out;
  const Inflated result = streams.inflate(stream.bytes, out.data(), out.size());
  const Inflated resultOfZlib = zlib.inflate(stream.bytes, outOfZlib.data(), outOfZlib.size());
  EXPECT_EQ(result.whole, !stream.text.empty());
  EXPECT_EQ(result.length, resultOfZlib.length);
  EXPECT_EQ(out, outOfZlib);
}

INSTANTIATE_TEST_SUITE_P(Each, HandmadeStreams,
                         testing::Values(soundStream(), withOneDistance(), withAMissingDistance(),
                                         withIncompleteLiterals(), withTooManyLiterals(),
                                         withTooManyDistances(), withARepetitionOverTheEnd(false),
                                         withARepetitionOverTheEnd(true), withARepetitionOfNothing(),
                                         withFixedCodes(285), withFixedCodes(286), withFixedCodes(287)),
                         streamName);

#ifdef SDP_TEST_LIBDEFLATE

#ifdef SDP_TEST_SANITIZED
constexpr int changedStreams = 30000;
#else
constexpr int changedStreams = 100000;
#endif

/// What libdeflate makes of raw deflated bytes, as a stream with the right checksum; empty when it refuses them.
std::string asStreamForLibdeflate(libdeflate_decompressor* decompressor, std::string_view raw) {
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  std::size_t taken = 0;
  std::size_t length = 0;
  if (libdeflate_deflate_decompress_ex(decompressor, raw.data(), raw.size(), text, sizeof text, &taken,
                                       &length) != LIBDEFLATE_SUCCESS) {
    return "";
  }
  const std::uint32_t sum = libdeflate_adler32(1, text, length);
  std::string stream = "\x78\x01";
  stream += raw.substr(0, taken);
  for (const unsigned int shift : {24U, 16U, 8U, 0U}) stream += static_cast<char>((sum >> shift) & 255U);
  return stream;
}

TEST(ChangedStreams, ThatLibdeflateTakesAreTakenOrRefusedAsZlibDoes) {
  Owned<TextStreams> streams;
  Owned<ZlibStreams> zlib;
  libdeflate_decompressor* const decompressor = libdeflate_alloc_decompressor();
  const std::string sources[] = {bytesToStore(paddedTo(3000)), freshlyDeflated(incompressibleBody(2700))};
  std::mt19937 random(9);
  int taken = 0;
  int refused = 0;
  std::string out(MAX_SDP_PROTOCOL_DATA_SIZE, '\0');
  std::string outOfZlib = out;
  for (int i = 0; i < changedStreams; ++i) {
    std::string raw = sources[random() % 2].substr(2);
    const std::size_t bits =
        random() % 4 != 0 ? 500 : 8 * raw.size();  // mostly in front, where the codes are
    for (auto changes = 1 + random() % 3; changes > 0; --changes) {
      const std::size_t at = random() % bits;
      raw[at / 8] = static_cast<char>(static_cast<unsigned char>(raw[at / 8]) ^ (1U << (at % 8)));
    }
    const std::string stream = asStreamForLibdeflate(decompressor, raw);
    if (stream.empty()) continue;
    const Inflated result = streams.inflate(stream, out.data(), out.size());
    const Inflated resultOfZlib = zlib.inflate(stream, outOfZlib.data(), outOfZlib.size());
    ++(resultOfZlib.whole ? taken : refused);
    ASSERT_EQ(result.whole, resultOfZlib.whole);
    ASSERT_EQ(result.length, resultOfZlib.length);
    ASSERT_TRUE(out == outOfZlib);
  }
  libdeflate_free_decompressor(decompressor);
  EXPECT_GT(taken, 100);
  EXPECT_GT(refused, 10);
}

#endif

}  // namespace
