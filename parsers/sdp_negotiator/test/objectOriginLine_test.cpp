#include "originLineTestSupport.h"

// The origin line of an object: taken out, split into its fields, and compared.

namespace {

TEST(OriginLine, IsHandedOutWithoutItsEnd) {
  for (const char* end : {"\r\n", "\n"}) {
    SCOPED_TRACE(end);
    EXPECT_EQ(lineOf(parsedObject(bodyWith(originLine, end))), originLine);
  }
  EXPECT_EQ(lineOf(parsedObject("v=0\r\n" + originLine + "\r")), originLine);
  const cSdpNegotiator deflated = parsedObject(paddedTo(4000));
  ASSERT_NE(deflated.getParsedData().storedSdpLength, 0);
  EXPECT_EQ(lineOf(deflated), "o=alice 1 1 IN IP4 192.0.2.9");
}

// Deliberate: the character in front of the recorded end is taken for a line end without a look at it.
TEST(OriginLine, LosesItsLastCharacterWhereTheBodyEndsInIt) {
  const cSdpNegotiator object = parsedObject("v=0\r\no=alice 1 1 IN IP4 192.0.2.9");
  EXPECT_EQ(lineOf(object), "o=alice 1 1 IN IP4 192.0.2.");
}

TEST(OriginLine, IsReadWhereABodyOf20480CharactersCannotBeExpandedWhole) {
  EXPECT_EQ(lineOf(parsedObject(paddedTo(20480))), "o=alice 1 1 IN IP4 192.0.2.9");
}

TEST(OriginLine, OfAnEmptyObjectIsEmptyAndTraced) {
  TraceCapture trace;
  EXPECT_EQ(lineOf(emptyObject()), "");
  EXPECT_EQ(trace.takeLines(), Traces{emptyLineTrace});
  // The offsets of an empty object do not matter.
  EXPECT_EQ(lineOf(objectWithOffsets("", 5, 37)), "");
  EXPECT_EQ(trace.takeLines(), Traces{emptyLineTrace});
}

TEST(OriginLine, OfABodyWithoutOneIsEmptyAndNotTraced) {
  const cSdpNegotiator object = parsedObject("v=0\r\ns=-\r\n");
  const TraceCapture trace;
  EXPECT_EQ(lineOf(object), "");
  EXPECT_TRUE(trace.lines().empty());
}

struct OffsetsCase {
  const char* name;
  unsigned int start;
  unsigned int end;
  const char* line;
};

void PrintTo(const OffsetsCase& offsets, std::ostream* out) { *out << offsets.name; }

class OriginLineOffsets : public testing::TestWithParam<OffsetsCase> {};

TEST_P(OriginLineOffsets, AreNotTrusted) {
  const std::string text = "v=0\r\no=a b\r\ns=-\r\n";  // 17 characters, the o-line from 5 to 12
  const OffsetsCase& offsets = GetParam();
  EXPECT_EQ(lineOf(objectWithOffsets(text, offsets.start, offsets.end)), offsets.line);
}

INSTANTIATE_TEST_SUITE_P(
    Offsets, OriginLineOffsets,
    testing::Values(OffsetsCase{"TheLine", 5, 12, "o=a b"}, OffsetsCase{"None", 0, 0, ""},
                    OffsetsCase{"Nothing", 5, 5, ""}, OffsetsCase{"OneCharacter", 5, 6, ""},
                    OffsetsCase{"TwoCharacters", 5, 7, "o"}, OffsetsCase{"TheLineEndAlone", 10, 12, ""},
                    OffsetsCase{"EndInFrontOfStart", 12, 5, ""},
                    OffsetsCase{"WholeText", 0, 17, "v=0\r\no=a b\r\ns=-"},
                    OffsetsCase{"EndBehindText", 5, 18, ""}, OffsetsCase{"StartAtTextEnd", 17, 19, ""},
                    OffsetsCase{"LargestEnd", 0, 65535, ""}, OffsetsCase{"LargestBoth", 65535, 65535, ""},
                    OffsetsCase{"LargestStart", 65535, 12, ""}, OffsetsCase{"EndAtBuffer", 5, 20480, ""}),
    [](const auto& each) { return each.param.name; });

TEST(OriginLine, OfATextThatCannotBeExpandedIsTakenFromWhatCan) {
  Record record(parsedObject(paddedTo(3000)));
  const std::uint16_t whole = record.data.storedSdpLength;
  record.data.storedSdpLength = static_cast<std::uint16_t>(whole - 1);
  EXPECT_EQ(lineOf(record.object()), "o=alice 1 1 IN IP4 192.0.2.9");
  record.data.storedSdpLength = 1;
  EXPECT_EQ(lineOf(record.object()), "");
  record.data.storedSdpLength = 65535;
  EXPECT_EQ(lineOf(record.object()), "");
}

using Fields = std::vector<std::string>;

Fields fieldsOf(const o_line& record) {
  return {sdp_OgetUserName(&record),    sdp_OgetSessionId(&record),   sdp_OgetSessionVersion(&record),
          sdp_OgetNetworkType(&record), sdp_OgetAddressType(&record), sdp_OgetAddress(&record)};
}

/// Fills the record of a line that stands in a body, over whatever it holds.
Fields splitLine(const std::string& line) {
  o_line record;
  std::memset(&record, 0x5b, sizeof record);
  objectWithLine(line).getOLine(record);
  EXPECT_EQ(record.present, 1);
  return fieldsOf(record);
}

TEST(OriginLineRecord, HoldsTheSixFields) {
  EXPECT_EQ(splitLine(originLine), (Fields{"alice", "10", "20", "IN", "IP4", "192.0.2.9"}));
  EXPECT_EQ(splitLine("o=- 0 0 IN IP6 2001:db8::1"), (Fields{"-", "0", "0", "IN", "IP6", "2001:db8::1"}));
}

TEST(OriginLineRecord, IsSplitAtSingleBlanks) {
  EXPECT_EQ(splitLine("o=a  1 2 IN IP4 h"), (Fields{"a", "", "1", "2", "IN", "IP4 h"}));
  EXPECT_EQ(splitLine("o=a\t1 2 3 IN IP4 h"), (Fields{"a\t1", "2", "3", "IN", "IP4", "h"}));
  EXPECT_EQ(splitLine("o= 1 2 IN IP4 h"), (Fields{"", "1", "2", "IN", "IP4", "h"}));
  EXPECT_EQ(splitLine("o=\x80 \xff 2 IN IP4 \xc3\xa9"),
            (Fields{"\x80", "\xff", "2", "IN", "IP4", "\xc3\xa9"}));
}

TEST(OriginLineRecord, TakesAllBehindTheFifthBlankAsTheAddress) {
  EXPECT_EQ(splitLine("o=a 1 2 IN IP4 h six seven "), (Fields{"a", "1", "2", "IN", "IP4", "h six seven "}));
}

TEST(OriginLineRecord, LeavesMissingFieldsEmpty) {
  EXPECT_EQ(splitLine("o=a 1"), (Fields{"a", "1", "", "", "", ""}));
  EXPECT_EQ(splitLine("o=a 1 2 IN IP4"), (Fields{"a", "1", "2", "IN", "IP4", ""}));
  EXPECT_EQ(splitLine("o="), (Fields{"", "", "", "", "", ""}));
  EXPECT_EQ(splitLine("o"), (Fields{"", "", "", "", "", ""}));
}

TEST(OriginLineRecord, CutsFieldsToTheirSizes) {
  const std::size_t sizes[] = {sizeof o_line::userName,       sizeof o_line::sessionId,
                               sizeof o_line::sessionVersion, sizeof o_line::networkType,
                               sizeof o_line::addressType,    sizeof o_line::address};
  for (const std::size_t beyond : {0U, 1U, 100U}) {  // as long as the size holds, and longer
    std::string line = "o=";
    Fields expected;
    for (const std::size_t size : sizes) {
      const char letter = static_cast<char>('a' + expected.size());
      if (!expected.empty()) line += ' ';
      line += std::string(size - 1 + beyond, letter);
      expected.emplace_back(size - 1, letter);
    }
    EXPECT_EQ(splitLine(line), expected) << beyond;
  }
}

TEST(OriginLineRecord, OfAnEmptyObjectIsAllZero) {
  const o_line zero{};
  o_line record;
  std::memset(&record, 0x5b, sizeof record);
  TraceCapture trace;
  emptyObject().getOLine(record);
  EXPECT_EQ(std::memcmp(&record, &zero, sizeof record), 0);
  EXPECT_EQ(trace.takeLines(), Traces{emptyLineTrace});
  std::memset(&record, 0x5b, sizeof record);
  parsedObject("v=0\r\ns=-\r\n").getOLine(record);
  EXPECT_EQ(std::memcmp(&record, &zero, sizeof record), 0);
}

const TraceLine sameLine{8, 4, "The o-line is the same as the given one."};
const TraceLine differentLine{1, 1, "Different o-line"};

TEST(OriginLineComparison, WithATextIsExact) {
  const cSdpNegotiator object = parsedObject(bodyWith(originLine));
  TraceCapture trace;
  EXPECT_EQ(object.compareSdpOLine(originLine.c_str()), 0);
  EXPECT_EQ(trace.takeLines(), Traces{sameLine});
  const std::string shorter = originLine.substr(0, originLine.size() - 1);
  for (const std::string& other :
       {originLine + "\r\n", originLine + " ", shorter, std::string("o="), std::string(),
        std::string("O=alice 10 20 IN IP4 192.0.2.9"), originLine.substr(2), std::string(60000, 'o')}) {
    EXPECT_EQ(object.compareSdpOLine(other.c_str()), 1) << other.substr(0, 100);
    EXPECT_EQ(trace.takeLines(), Traces{differentLine});
  }
}

TEST(OriginLineComparison, WithANullTextIsRefused) {
  const cSdpNegotiator object = parsedObject(bodyWith(originLine));
  const char* const none = nullptr;
  TraceCapture trace;
  EXPECT_EQ(object.compareSdpOLine(none), 1);
  EXPECT_EQ(trace.takeLines(), (Traces{{4, 3, "The o-line buffer is empty."}}));
}

TEST(OriginLineComparison, OfAnEmptyObjectIsWithAnEmptyLine) {
  TraceCapture trace;
  EXPECT_EQ(emptyObject().compareSdpOLine(originLine.c_str()), 1);
  EXPECT_EQ(trace.takeLines(), (Traces{emptyLineTrace, differentLine}));
  EXPECT_EQ(emptyObject().compareSdpOLine(""), 0);
  EXPECT_EQ(trace.takeLines(), (Traces{emptyLineTrace, sameLine}));
}

TEST(OriginLineComparison, WithAnObjectIsThatWithItsLine) {
  const cSdpNegotiator object = parsedObject(bodyWith(originLine));
  const cSdpNegotiator same = parsedObject(paddedTo(3000, bodyWith(originLine, "\n")));
  const cSdpNegotiator different = parsedObject(bodyWith("o=alice 10 21 IN IP4 192.0.2.9"));
  const cSdpNegotiator empty = emptyObject();
  const cSdpNegotiator* const none = nullptr;
  TraceCapture trace;
  EXPECT_EQ(object.compareSdpOLine(&same), 0);
  EXPECT_EQ(trace.takeLines(), Traces{sameLine});
  EXPECT_EQ(object.compareSdpOLine(&object), 0);
  EXPECT_EQ(trace.takeLines(), Traces{sameLine});
  EXPECT_EQ(object.compareSdpOLine(&different), 1);
  EXPECT_EQ(trace.takeLines(), Traces{differentLine});
  EXPECT_EQ(object.compareSdpOLine(none), 1);
  EXPECT_EQ(trace.takeLines(), (Traces{{4, 3, "The sdpNegotiator class is NULL."}}));
  EXPECT_EQ(object.compareSdpOLine(&empty), 1);
  EXPECT_EQ(trace.takeLines(), (Traces{emptyLineTrace, differentLine}));
  EXPECT_EQ(empty.compareSdpOLine(&object), 1);
  EXPECT_EQ(trace.takeLines(), (Traces{emptyLineTrace, differentLine}));
  EXPECT_EQ(empty.compareSdpOLine(&empty), 0);
  EXPECT_EQ(trace.takeLines(), (Traces{emptyLineTrace, emptyLineTrace, sameLine}));
}

struct UpdateCase {
  const char* name;
  const char* incoming;
  const char* own;
  bool accepted;
};

void PrintTo(const UpdateCase& update, std::ostream* out) { *out << update.name; }

// 64 characters of session id, the most that is written.
const char* const id64 = "o=a 1234567890123456789012345678901234567890123456789012345678901234 5 IN IP4 h";
const char* const otherId64 =
    "o=a 1234567890123456789012345678901234567890123456789012345678901235 5 IN IP4 h";

class OriginLineUpdate : public testing::TestWithParam<UpdateCase> {};

TEST_P(OriginLineUpdate, IsAcceptedOfTheSameSessionWithNoGreaterVersion) {
  const UpdateCase& update = GetParam();
  const cSdpNegotiator incoming = objectWithLine(update.incoming);
  EXPECT_EQ(objectWithLine(update.own).compareSdpOLineUpdate(&incoming), update.accepted);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, OriginLineUpdate,
    testing::Values(UpdateCase{"EqualVersion", "o=a 1 5 IN IP4 h", "o=a 1 5 IN IP4 h", true},
                    UpdateCase{"GreaterByOne", "o=a 1 6 IN IP4 h", "o=a 1 5 IN IP4 h", false},
                    UpdateCase{"SmallerByOne", "o=a 1 4 IN IP4 h", "o=a 1 5 IN IP4 h", true},
                    UpdateCase{"NumbersNotTexts", "o=a 1 9 IN IP4 h", "o=a 1 10 IN IP4 h", true},
                    UpdateCase{"LeadingZeros", "o=a 1 0005 IN IP4 h", "o=a 1 5 IN IP4 h", true},
                    UpdateCase{"UserName", "o=b 1 5 IN IP4 h", "o=a 1 5 IN IP4 h", false},
                    UpdateCase{"UserNameCase", "o=A 1 5 IN IP4 h", "o=a 1 5 IN IP4 h", false},
                    UpdateCase{"SessionId", "o=a 2 5 IN IP4 h", "o=a 1 5 IN IP4 h", false},
                    UpdateCase{"SessionIdAsText", "o=a 01 5 IN IP4 h", "o=a 1 5 IN IP4 h", false},
                    UpdateCase{"NetworkType", "o=a 1 5 in IP4 h", "o=a 1 5 IN IP4 h", false},
                    UpdateCase{"AddressType", "o=a 1 5 IN IP6 h", "o=a 1 5 IN IP4 h", false},
                    UpdateCase{"Address", "o=a 1 5 IN IP4 i", "o=a 1 5 IN IP4 h", false},
                    UpdateCase{"AddressPrefix", "o=a 1 5 IN IP4 h", "o=a 1 5 IN IP4 hh", false},
                    UpdateCase{"LongerThan32Bits", "o=a 1 4294967296 IN IP4 h", "o=a 1 1 IN IP4 h", false},
                    UpdateCase{"Largest", "o=a 1 9223372036854775807 IN IP4 h",
                               "o=a 1 9223372036854775807 IN IP4 h", true},
                    UpdateCase{"LargestIncoming", "o=a 1 9223372036854775807 IN IP4 h",
                               "o=a 1 9223372036854775806 IN IP4 h", false},
                    UpdateCase{"BeyondTheLargestIsTheLargest",
                               "o=a 1 9999999999999999999999999999999999999999 IN IP4 h",
                               "o=a 1 9223372036854775807 IN IP4 h", true},
                    UpdateCase{"Negative", "o=a 1 -1 IN IP4 h", "o=a 1 0 IN IP4 h", true},
                    UpdateCase{"NoNumberIsZero", "o=a 1 x IN IP4 h", "o=a 1 0 IN IP4 h", true},
                    UpdateCase{"NoUserNameIncoming", "o= 1 5 IN IP4 h", "o=a 1 5 IN IP4 h", false},
                    UpdateCase{"NoUserNameInBoth", "o= 1 5 IN IP4 h", "o= 1 5 IN IP4 h", false},
                    UpdateCase{"FewFields", "o=a 1", "o=a 1", true},
                    UpdateCase{"LongestSessionId", id64, id64, true},
                    UpdateCase{"LastCharacterOfTheLongestSessionId", id64, otherId64, false}),
    [](const auto& each) { return each.param.name; });

TEST(OriginLineUpdateTraces, NameBothVersions) {
  const cSdpNegotiator incoming = objectWithLine("o=a 1 -9223372036854775808 IN IP4 h");
  const cSdpNegotiator own = objectWithLine("o=b 2 9223372036854775807 IN IP4 h");
  TraceCapture trace;
  EXPECT_FALSE(own.compareSdpOLineUpdate(&incoming));
  EXPECT_EQ(
      trace.takeLines(),
      (Traces{{8, 4, "sdp session version In -9223372036854775808 version of Vob 9223372036854775807"}}));
}

TEST(OriginLineUpdateTraces, AreOnlyThoseOfEmptyObjectsWhereThereIsNothingToCompare) {
  const cSdpNegotiator object = objectWithLine(originLine);
  const cSdpNegotiator empty = emptyObject();
  TraceCapture trace;
  EXPECT_FALSE(object.compareSdpOLineUpdate(nullptr));
  EXPECT_EQ(trace.takeLines(), Traces{});
  EXPECT_FALSE(object.compareSdpOLineUpdate(&empty));
  EXPECT_EQ(trace.takeLines(), Traces{emptyLineTrace});
  EXPECT_FALSE(empty.compareSdpOLineUpdate(&object));
  EXPECT_EQ(trace.takeLines(), Traces{emptyLineTrace});
  EXPECT_FALSE(empty.compareSdpOLineUpdate(&empty));
  EXPECT_EQ(trace.takeLines(), (Traces{emptyLineTrace, emptyLineTrace}));
}

}  // namespace
