#include <zlib.h>

#include <algorithm>
#include <type_traits>

#include "objectTestSupport.h"
#include "traceCapture.h"

// The stored text: its two forms, where one ends and the other begins, and what damage does.

namespace {

static_assert(std::is_trivial_v<cSdpNegotiator> && std::is_standard_layout_v<cSdpNegotiator>);
static_assert(sizeof(cSdpNegotiator) == 2692);

unsigned int storedLength(const cSdpNegotiator& object) { return object.getParsedData().storedSdpLength; }

/// A destination with guard bytes on both sides.
class Destination {
 public:
  explicit Destination(unsigned int size) : bytes_(size + 16, guard) {}
  char* text() { return bytes_.data() + 8; }
  unsigned int size() const { return static_cast<unsigned int>(bytes_.size()) - 16; }
  bool guardsAreWhole() const {
    const auto isGuard = [](char c) { return c == guard; };
    return std::all_of(bytes_.begin(), bytes_.begin() + 8, isGuard) &&
           std::all_of(bytes_.end() - 8, bytes_.end(), isGuard);
  }
  bool endsInNul() { return std::memchr(text(), '\0', size()) != nullptr; }

 private:
  static constexpr char guard = '\x5b';
  std::vector<char> bytes_;
};

class StoredText : public testing::TestWithParam<std::size_t> {};

TEST_P(StoredText, ComesBackAsItWentIn) {
  const std::string text = paddedTo(GetParam());
  const cSdpNegotiator object = objectWithText(text);
  EXPECT_EQ(storedLength(object) != 0, text.size() >= 2560);
  EXPECT_TRUE(object.isSdpPresent());
  Destination exact(static_cast<unsigned int>(text.size()) + 1);
  EXPECT_EQ(object.getRawSDP(exact.text(), exact.size()), 0);
  EXPECT_EQ(exact.text(), text);
  EXPECT_TRUE(exact.guardsAreWhole());
  EXPECT_EQ(object.getRawSdpSize(), text.size() < 20480 ? text.size() : 0);
}

INSTANTIATE_TEST_SUITE_P(AroundTheLimits, StoredText,
                         testing::Values(200, 2558, 2559, 2560, 2561, 3400, 20479, 20480, 20481));

TEST(Storage, TextsOfFewerThan2560CharactersArePlainAndPaddedWithNul) {
  cSdpNegotiator object = objectWithText(paddedTo(2559));
  EXPECT_EQ(storedLength(object), 0U);
  EXPECT_EQ(std::string(Record(object).raw), paddedTo(2559));
  ASSERT_EQ(object.setRawSDP("v=0\r\n"), 0);
  EXPECT_TRUE(sameBytes(object, Record().text("v=0\r\n").object()));
}

TEST(Storage, AnEmptyTextIsStoredAndCountsAsNone) {
  cSdpNegotiator object = objectWithText(paddedTo(3000));
  ASSERT_EQ(object.setRawSDP(""), 0);
  EXPECT_FALSE(object.isSdpPresent());
  EXPECT_EQ(object.getRawSdpSize(), 0U);
  EXPECT_EQ(textOf(object), "");
}

TEST(Storage, ANullTextChangesNothing) {
  cSdpNegotiator object = objectWithText(paddedTo(3000));
  const cSdpNegotiator before = object;
  EXPECT_EQ(object.setRawSDP(nullptr), 1);
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(Storage, ATextThatDoesNotDeflateEnoughIsRefusedAndKeepsTheRecordedLength) {
  for (const std::string& former : {std::string("v=0\r\n"), paddedTo(3000)}) {
    cSdpNegotiator object = objectWithText(former);
    const unsigned int length = storedLength(object);
    EXPECT_EQ(object.setRawSDP(incompressibleBody(6000).c_str()), 2);
    EXPECT_EQ(storedLength(object), length);
  }
}

TEST(Storage, StoringLeavesTheSummaryAloneAndTracesNothing) {
  cSdpNegotiator object = parsedObject(audioBody());
  const sSdpParsedData before = object.getParsedData();
  const TraceCapture trace;
  ASSERT_EQ(object.setRawSDP("o=IRM other"), 0);
  EXPECT_EQ(std::memcmp(&before, &object.getParsedData(), sizeof before), 0);
  Destination out(100);
  EXPECT_EQ(object.getRawSDP(out.text(), out.size()), 0);
  EXPECT_EQ(object.getRawSdpSize(), 11U);
  EXPECT_TRUE(trace.lines().empty());
}

TEST(Storage, APlainTextIsCutToTheLengthGiven) {
  const cSdpNegotiator object = objectWithText("0123456789");
  for (const unsigned int room : {1U, 2U, 10U, 11U, 12U}) {
    Destination out(room);
    EXPECT_EQ(object.getRawSDP(out.text(), room), 0) << room;
    EXPECT_EQ(out.text(), std::string("0123456789").substr(0, room - 1));
    EXPECT_TRUE(out.guardsAreWhole());
  }
}

TEST(Storage, BehindAPlainTextTheLastCharacterIsNulToo) {
  Destination out(20);
  std::memset(out.text(), 'x', 20);
  EXPECT_EQ(objectWithText("v=0").getRawSDP(out.text(), 20), 0);
  EXPECT_STREQ(out.text(), "v=0");
  EXPECT_EQ(out.text()[19], '\0');
  EXPECT_TRUE(out.guardsAreWhole());
}

TEST(Storage, ADeflatedTextThatDoesNotFitIsNotExpandedBehindTheLengthGiven) {
  const std::string text = paddedTo(3000);
  const cSdpNegotiator object = objectWithText(text);
  for (const unsigned int room : {1U, 2U, 300U, 2999U, 3000U}) {  // 3000 lack room for the NUL
    Destination out(room);
    EXPECT_EQ(object.getRawSDP(out.text(), room), 1) << room;
    EXPECT_EQ(out.text(), text.substr(0, room - 1));
    EXPECT_TRUE(out.guardsAreWhole());
  }
}

TEST(Storage, NothingIsWrittenWithoutRoomOrDestination) {
  for (const std::string& text : {std::string("v=0\r\n"), paddedTo(3000)}) {
    const cSdpNegotiator object = objectWithText(text);
    Destination out(0);
    EXPECT_EQ(object.getRawSDP(out.text(), 0), 1);
    EXPECT_TRUE(out.guardsAreWhole());
    EXPECT_EQ(object.getRawSDP(nullptr, 20480), 1);
    EXPECT_EQ(object.getSDP(out.text(), 0), 1);
    EXPECT_TRUE(out.guardsAreWhole());
  }
}

// Deliberate: 20480 characters are stored, but their NUL has no room in a buffer of 20480.
TEST(Storage, TheLongestBodyIsStoredButNotExpandedInto20480Characters) {
  const std::string text = paddedTo(20480);
  const cSdpNegotiator object = parsedObject(text);
  Destination out(20480);
  EXPECT_EQ(object.getRawSDP(out.text(), out.size()), 1);
  EXPECT_TRUE(out.endsInNul());
  EXPECT_TRUE(out.guardsAreWhole());
  EXPECT_EQ(object.getRawSdpSize(), 0U);
  EXPECT_EQ(textOf(object), text);
}

TEST(Storage, FetchingTracesAndTestsForAText) {
  const TraceLine building{8, 4, "Building raw SDP buffer."};
  TraceCapture trace;
  Destination out(20480);
  EXPECT_EQ(objectWithText(paddedTo(2600)).getSDP(out.text(), out.size()), 0);
  EXPECT_EQ(out.text(), paddedTo(2600));
  EXPECT_EQ(trace.takeLines(), std::vector{building});
  Destination untouched(0);
  EXPECT_EQ(emptyObject().getSDP(untouched.text(), 20480), 1);
  EXPECT_TRUE(untouched.guardsAreWhole());
  EXPECT_EQ(trace.takeLines(), (std::vector<TraceLine>{building, {4, 3, "The raw SDP buffer is empty."}}));
}

TEST(Storage, ACopyOfTheBytesIsTheSameObject) {
  for (const std::string& body : {audioBody(), paddedTo(5000)}) {
    const cSdpNegotiator object = parsedObject(body);
    unsigned char bytes[sizeof object];
    std::memcpy(bytes, &object, sizeof bytes);
    cSdpNegotiator copy;
    std::memcpy(&copy, bytes, sizeof bytes);
    EXPECT_EQ(textOf(copy), body);
    EXPECT_TRUE(sameBytes(copy, object));
    ASSERT_EQ(copy.setRawSDP("v=1"), 0);
    EXPECT_EQ(textOf(object), body);  // nothing is shared
  }
}

/// What the operations make of an object whose text cannot be expanded.
void expectUnreadable(const cSdpNegotiator& object) {
  Destination out(20480);
  EXPECT_EQ(object.getRawSDP(out.text(), out.size()), 1);
  EXPECT_TRUE(out.endsInNul());
  EXPECT_TRUE(out.guardsAreWhole());
  EXPECT_EQ(object.getSDP(out.text(), out.size()), 1);
  EXPECT_EQ(object.getRawSdpSize(), 0U);
  EXPECT_TRUE(object.isSdpPresent());
}

TEST(DamagedText, ALengthBeyondTheStoreIsAFailedExpansion) {
  Record record(objectWithText(paddedTo(3000)));
  for (const unsigned int claim : {2561U, 20480U, 65535U}) {
    record.data.storedSdpLength = static_cast<std::uint16_t>(claim);
    expectUnreadable(record.object());
    char out[4] = {'x', 'x', 'x', 'x'};
    EXPECT_EQ(record.object().getRawSDP(out, sizeof out), 1);
    EXPECT_EQ(out[0], '\0');
  }
}

TEST(DamagedText, EveryShorterFormIsRefused) {
  const cSdpNegotiator whole = objectWithText(paddedTo(3000));
  Record record(whole);
  for (unsigned int length = 1; length < storedLength(whole); ++length) {
    record.data.storedSdpLength = static_cast<std::uint16_t>(length);
    expectUnreadable(record.object());
  }
}

TEST(DamagedText, WhatFollowsTheFormIsNotLookedAt) {
  Record record(objectWithText(paddedTo(3000)));
  record.data.storedSdpLength = 2560;
  EXPECT_EQ(textOf(record.object()), paddedTo(3000));
}

TEST(DamagedText, EveryChangedByteIsRefused) {
  const cSdpNegotiator whole = objectWithText(paddedTo(3000));
  for (unsigned int at = 0; at < storedLength(whole); ++at) {
    for (const char change : {'\x01', '\x80', '\xff'}) {
      Record record(whole);
      record.raw[at] = static_cast<char>(record.raw[at] ^ change);
      const cSdpNegotiator object = record.object();
      Destination out(20480);
      // Damage may hide in a bit that inflating never reads; then the text is the whole one.
      if (object.getRawSDP(out.text(), out.size()) == 0) {
        EXPECT_EQ(out.text(), paddedTo(3000)) << at;
      } else {
        EXPECT_TRUE(out.endsInNul());
      }
      EXPECT_TRUE(out.guardsAreWhole());
    }
  }
}

TEST(DamagedText, AFormFilledWithOneByteIsRefused) {
  for (const int byte : {0x00, 0x20, 0x78, 0xff}) {
    Record record;
    std::memset(record.raw, byte, sizeof record.raw);
    record.data.storedSdpLength = 2560;
    expectUnreadable(record.object());
  }
}

// An object deflates its NUL too; a form from elsewhere may lack it.
TEST(DamagedText, ADeflatedTextWithoutNulIsEndedWhereThereIsRoom) {
  const std::string text = "v=0\r\ns=-\r\n";
  Record record;
  uLongf length = sizeof record.raw;
  ASSERT_EQ(compress(reinterpret_cast<Bytef*>(record.raw), &length,
                     reinterpret_cast<const Bytef*>(text.data()), static_cast<uLong>(text.size())),
            Z_OK);
  record.data.storedSdpLength = static_cast<std::uint16_t>(length);
  const cSdpNegotiator object = record.object();
  for (const std::size_t room : {text.size(), text.size() + 1, text.size() + 100}) {
    Destination out(static_cast<unsigned int>(room));
    EXPECT_EQ(object.getRawSDP(out.text(), out.size()), room > text.size() ? 0 : 1) << room;
    EXPECT_EQ(out.text(), text.substr(0, room - 1));
    EXPECT_TRUE(out.guardsAreWhole());
  }
  EXPECT_EQ(object.getRawSdpSize(), text.size());
}

TEST(DamagedText, APlainTextWithoutNulIsReadToTheEndOfTheStore) {
  Record record;
  std::memset(record.raw, 'p', sizeof record.raw);
  const cSdpNegotiator object = record.object();
  EXPECT_EQ(object.getRawSdpSize(), 2560U);
  EXPECT_EQ(textOf(object), std::string(2560, 'p'));
  EXPECT_TRUE(object.contains("ppp"));
  EXPECT_FALSE(object.contains("x"));
}

}  // namespace
