#include "originLineTestSupport.h"

// The origin line of one object in the place of another's.

namespace {

Traces tracesOfCopy(const std::string& line, int change, const char* result) {
  return {buildingTrace,
          {8, 4,
           "copyOLine(): request to replace existing o-line with [" + line + "] len=[" +
               std::to_string(line.size()) + "]"},
          {8, 4, "copyOLine(): SDP length change is " + std::to_string(change) + " characters"},
          {8, 4, std::string("copyOLine(): returning ") + result}};
}

struct CopyCase {
  const char* name;
  const char* line;  ///< the other object's
  const char* otherEnd;
  const char* ownEnd;
  int change;  ///< of the length, against an own line of 30 characters and its end
};

void PrintTo(const CopyCase& copy, std::ostream* out) { *out << copy.name; }

class OriginLineCopy : public testing::TestWithParam<CopyCase> {};

// The own o-line gives way to the other's, which ends in CR LF whatever the old one ended in.
std::string withLineReplaced(const std::string& line, const std::string& end) {
  std::string body = bodyWith(originLine, end);
  return body.replace(body.find(originLine), originLine.size() + end.size(), line + "\r\n");
}

TEST_P(OriginLineCopy, ReplacesTheLineAndMovesItsEnd) {
  const CopyCase& copy = GetParam();
  const cSdpNegotiator other = parsedObject(bodyWith(copy.line, copy.otherEnd));
  const cSdpNegotiator before = parsedObject(bodyWith(originLine, copy.ownEnd));
  cSdpNegotiator object = before;
  TraceCapture trace;
  EXPECT_EQ(object.copyOLine(&other), 0);
  EXPECT_EQ(trace.takeLines(), tracesOfCopy(copy.line, copy.change, "SUCCESS"));
  EXPECT_EQ(textOf(object), withLineReplaced(copy.line, copy.ownEnd));
  EXPECT_EQ(static_cast<int>(endOf(object)), static_cast<int>(endOf(before)) + copy.change);
  EXPECT_EQ(lineOf(object), copy.line);
  EXPECT_EQ(object.compareSdpOLine(&other), 0);
  EXPECT_TRUE(sameSummaryButForTheEnd(object, before));
}

INSTANTIATE_TEST_SUITE_P(
    Lines, OriginLineCopy,
    testing::Values(CopyCase{"Shorter", "o=b 1 2 IN IP4 h", "\r\n", "\r\n", 16 - 30},
                    CopyCase{"Longer", "o=robert 100 200 IN IP6 2001:db8::1", "\r\n", "\r\n", 35 - 30},
                    CopyCase{"AsLong", "o=carol 99 99 IN IP4 192.0.2.8", "\r\n", "\r\n", 0},
                    CopyCase{"OverBareLf", "o=b 1 2 IN IP4 h", "\r\n", "\n", 16 - 30 + 1},
                    CopyCase{"FromBareLf", "o=b 1 2 IN IP4 h", "\n", "\r\n", 16 - 30},
                    CopyCase{"AllBareLf", "o=carol 99 99 IN IP4 192.0.2.8", "\n", "\n", 1},
                    CopyCase{"PerCent", "o=%s%n 1 2 IN IP4 %d", "\r\n", "\r\n", 20 - 30}),
    [](const auto& each) { return each.param.name; });

TEST(OriginLineCopying, LeavesTheSettings) {
  const cSdpNegotiator other = parsedObject(bodyWith("o=b 1 2 IN IP4 h"));
  cSdpNegotiator object = parsedObject(bodyWith(originLine));
  object.setMediaPort(0);
  object.setBandwidth(77);
  ASSERT_EQ(object.copyOLine(&other), 0);
  EXPECT_EQ(object.getParsedData().port, 0U);  // a parse would give 5004
  EXPECT_EQ(object.getParsedData().bandwidth, 77U);
}

TEST(OriginLineCopying, ReplacesTheLineOfALongBody) {
  const cSdpNegotiator other = parsedObject(bodyWith("o=b 1 2 IN IP4 h"));
  cSdpNegotiator object = parsedObject(paddedTo(5000, bodyWith(originLine)));
  ASSERT_EQ(object.copyOLine(&other), 0);
  std::string expected = paddedTo(5000, bodyWith(originLine));
  expected.replace(lineStart, originLine.size(), "o=b 1 2 IN IP4 h");
  EXPECT_EQ(textOf(object), expected);
}

// Around the 2560 characters at which the form of the stored text changes.
TEST(OriginLineCopying, MayChangeTheFormOfTheStoredText) {
  const cSdpNegotiator longer = parsedObject(bodyWith(originLine + "0"));
  cSdpNegotiator object = parsedObject(paddedTo(2559, bodyWith(originLine)));
  ASSERT_EQ(object.copyOLine(&longer), 0);
  EXPECT_NE(object.getParsedData().storedSdpLength, 0);
  EXPECT_EQ(lineOf(object), originLine + "0");
  const cSdpNegotiator former = parsedObject(bodyWith(originLine));
  ASSERT_EQ(object.copyOLine(&former), 0);
  EXPECT_EQ(object.getParsedData().storedSdpLength, 0);
  EXPECT_EQ(textOf(object), paddedTo(2559, bodyWith(originLine)));
}

TEST(OriginLineCopying, FromItselfChangesTheLineEndAlone) {
  cSdpNegotiator object = parsedObject(bodyWith(originLine));
  const cSdpNegotiator before = object;
  EXPECT_EQ(object.copyOLine(&object), 0);
  EXPECT_TRUE(sameBytes(object, before));
  object = parsedObject(bodyWith(originLine, "\n"));
  EXPECT_EQ(object.copyOLine(&object), 0);
  EXPECT_EQ(textOf(object), withLineReplaced(originLine, "\n"));
}

TEST(OriginLineCopying, FromNullFails) {
  cSdpNegotiator object = parsedObject(bodyWith(originLine));
  const cSdpNegotiator before = object;
  TraceCapture trace;
  EXPECT_EQ(object.copyOLine(nullptr), 1);
  EXPECT_EQ(trace.takeLines(), (Traces{{8, 4, "copyOLine(): returning FAILURE"}}));
  EXPECT_TRUE(sameBytes(object, before));
}

// The offsets of a transfer record may name any piece of the text.
TEST(OriginLineCopying, TakesOneLineWhateverTheOffsetsSpan) {
  const std::string text = "v=0\r\no=b 1 2 IN IP4 h\r\ns=-\r\na=injected\r\n";
  const auto size = static_cast<unsigned int>(text.size());
  const std::string bare = "v=0\no=b 1 2 IN IP4 h\ns=-\na=injected\n";
  const std::string loneCr = "v=0\r\no=b 1 2 IN IP4 h\ra=injected\r\ns=-\r\n";
  const cSdpNegotiator others[] = {objectWithOffsets(text, lineStart, size),
                                   objectWithOffsets(text, lineStart, size - 12),
                                   objectWithOffsets(bare, 4, static_cast<unsigned int>(bare.size())),
                                   objectWithOffsets(loneCr, lineStart, lineStart + 30)};
  for (const cSdpNegotiator& other : others) {
    cSdpNegotiator object = parsedObject(bodyWith(originLine));
    TraceCapture trace;
    EXPECT_EQ(object.copyOLine(&other), 0);
    EXPECT_EQ(trace.takeLines(), tracesOfCopy("o=b 1 2 IN IP4 h", -14, "SUCCESS"));
    EXPECT_EQ(textOf(object), bodyWith("o=b 1 2 IN IP4 h"));
    EXPECT_EQ(lineOf(object), "o=b 1 2 IN IP4 h");
  }
  // A span that begins with a line end has no line to take.
  const cSdpNegotiator atAnEnd = objectWithOffsets(text, 3, size);
  cSdpNegotiator object = parsedObject(bodyWith(originLine));
  EXPECT_EQ(object.copyOLine(&atAnEnd), 0);
  EXPECT_TRUE(sameBytes(object, parsedObject(bodyWith(originLine))));
}

TEST(OriginLineCopying, WithoutALineToCopyChangesNothing) {
  const TraceLine success{8, 4, "copyOLine(): returning SUCCESS"};
  const cSdpNegotiator empty = emptyObject();
  const cSdpNegotiator noLine = parsedObject("v=0\r\ns=-\r\n");
  const cSdpNegotiator oneCharacter = objectWithOffsets("v=0\r\no=\r\n", 5, 7);
  cSdpNegotiator object = parsedObject(bodyWith(originLine));
  const cSdpNegotiator before = object;
  TraceCapture trace;
  EXPECT_EQ(object.copyOLine(&empty), 0);
  EXPECT_EQ(trace.takeLines(), (Traces{emptyLineTrace, success}));
  EXPECT_EQ(object.copyOLine(&noLine), 0);
  EXPECT_EQ(trace.takeLines(), Traces{success});
  ASSERT_EQ(lineOf(oneCharacter), "o");
  EXPECT_EQ(object.copyOLine(&oneCharacter), 0);
  EXPECT_EQ(trace.takeLines(), Traces{success});
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(OriginLineCopying, IntoAnEmptyObjectGivesTheLineAlone) {
  const cSdpNegotiator other = parsedObject(bodyWith(originLine));
  cSdpNegotiator object = emptyObject();
  TraceCapture trace;
  EXPECT_EQ(object.copyOLine(&other), 0);
  Traces expected = tracesOfCopy(originLine, 32, "SUCCESS");
  expected.insert(expected.begin() + 1, noTextTrace);
  EXPECT_EQ(trace.takeLines(), expected);
  EXPECT_EQ(textOf(object), originLine + "\r\n");
  EXPECT_EQ(endOf(object), 32U);
  EXPECT_EQ(lineOf(object), originLine);
}

// Deliberate: without an own o-line its place is the text's start.
TEST(OriginLineCopying, IntoABodyWithoutOnePutsItInFront) {
  const cSdpNegotiator other = parsedObject(bodyWith(originLine));
  cSdpNegotiator object = parsedObject("v=0\r\ns=-\r\n");
  ASSERT_EQ(object.copyOLine(&other), 0);
  EXPECT_EQ(textOf(object), originLine + "\r\nv=0\r\ns=-\r\n");
  EXPECT_EQ(lineOf(object), originLine);
}

TEST(OriginLineCopying, NeedsRoomForTheLongerLine) {
  const std::string longLine = originLine + std::string(100, '9');
  const cSdpNegotiator other = parsedObject(bodyWith(longLine));
  for (const std::size_t size : {20378U, 20379U}) {  // one character to spare, and none
    cSdpNegotiator object = parsedObject(paddedTo(size, bodyWith(originLine)));
    ASSERT_EQ(object.copyOLine(&other), 0);
    std::string expected = paddedTo(size, bodyWith(originLine));
    expected.replace(lineStart, originLine.size(), longLine);
    EXPECT_EQ(expected.size(), size + 100);
    EXPECT_EQ(textOf(object), expected);
    EXPECT_EQ(lineOf(object), longLine);
  }
  cSdpNegotiator full = parsedObject(paddedTo(20380, bodyWith(originLine)));
  const cSdpNegotiator before = full;
  TraceCapture trace;
  EXPECT_EQ(full.copyOLine(&other), 1);
  Traces expected = tracesOfCopy(longLine, 100, "FAILURE");
  expected.insert(expected.end() - 1, {4, 3, "copyOLine(): The o-line does not fit the SDP buffer."});
  EXPECT_EQ(trace.takeLines(), expected);
  EXPECT_TRUE(sameBytes(full, before));
}

TEST(OriginLineCopying, IsRefusedWhereTheOwnOffsetsDoNotLieInTheText) {
  const cSdpNegotiator other = parsedObject(bodyWith(originLine));
  const std::string text = bodyWith(originLine);
  const auto size = static_cast<unsigned int>(text.size());
  const unsigned int offsets[][2] = {
      {0, size + 1}, {5, 65535}, {65535, 65535}, {37, 5}, {size + 1, size + 1}};
  for (const auto& [start, end] : offsets) {
    cSdpNegotiator object = objectWithOffsets(text, start, end);
    const cSdpNegotiator before = object;
    EXPECT_EQ(object.copyOLine(&other), 1) << start << ' ' << end;
    EXPECT_TRUE(sameBytes(object, before));
  }
  cSdpNegotiator empty = objectWithOffsets("", 5, 37);
  EXPECT_EQ(empty.copyOLine(&other), 1);
  EXPECT_FALSE(empty.isSdpPresent());
}

TEST(OriginLineCopying, LeavesATextThatCannotBeExpanded) {
  const cSdpNegotiator other = parsedObject(bodyWith(originLine));
  Record damaged(parsedObject(paddedTo(3000)));
  damaged.raw[20] = static_cast<char>(damaged.raw[20] ^ 0x55);
  Record falseLength(parsedObject(paddedTo(3000)));
  falseLength.data.storedSdpLength = 2561;
  for (const cSdpNegotiator& before :
       {damaged.object(), falseLength.object(), parsedObject(paddedTo(20480))}) {
    cSdpNegotiator object = before;
    TraceCapture trace;
    EXPECT_EQ(object.copyOLine(&other), 1);
    EXPECT_EQ(trace.takeLines(), (Traces{buildingTrace, {8, 4, "copyOLine(): returning FAILURE"}}));
    EXPECT_TRUE(sameBytes(object, before));
  }
}

// The stored text is destroyed then, as after any storing that fails so; the recorded end is the new one.
TEST(OriginLineCopying, GivesTheStatusOfStoring) {
  std::string noise = incompressibleBody(2500).substr(audioBody().size());
  std::erase_if(noise, [](char c) { return c == '\r' || c == '\n'; });
  const std::string line = "o=a 1 2 IN IP4 " + std::string(noise.rbegin(), noise.rend());
  const cSdpNegotiator other =
      objectWithOffsets("v=0\r\n" + line + "\r\ns=-\r\n", 5, static_cast<unsigned int>(line.size()) + 7);
  ASSERT_EQ(lineOf(other), line);
  cSdpNegotiator object = parsedObject(incompressibleBody(2200));
  ASSERT_EQ(object.getParsedData().storedSdpLength, 0);
  TraceCapture trace;
  EXPECT_EQ(object.copyOLine(&other), 2);
  EXPECT_TRUE(trace.has(8, 4, "copyOLine(): returning FAILURE"));
  EXPECT_EQ(object.getParsedData().storedSdpLength, 0);
  EXPECT_EQ(endOf(object), line.size() + 7);
}

}  // namespace
