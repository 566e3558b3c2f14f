#include "originLineTestSupport.h"

// Whether an offer is the next version of an earlier one, and making it so.

namespace {

const TraceLine entered{1, 1, "Entered isSdpVersionIncrease()"};
constexpr const char* kLargest = "9223372036854775807";
constexpr const char* kSecondLargest = "9223372036854775806";

TraceLine versions(const std::string& before, const std::string& now) {
  return {8, 4, "NEW BINARY sdp session version old " + before + ", version of new " + now};
}

std::string lineWith(const std::string& version) { return "o=alice 10 " + version + " IN IP4 192.0.2.9"; }

unsigned short isIncreased(const std::string& before, const std::string& now) {
  const cSdpNegotiator earlier = objectWithLine(before);
  const cSdpNegotiator later = objectWithLine(now);
  return later.isSdpVersionIncreased(&earlier);
}

TEST(SdpVersionIncrease, IsAStepOfExactlyOne) {
  const struct {
    const char* before;
    const char* now;
    bool increased;
  } cases[] = {
      {"5", "6", true},
      {"9", "10", true},
      {"5", "7", false},
      {"6", "6", false},
      {"6", "06", false},
      {"6", "5", false},
      {"5", "06", true},
      {"0", "1", true},
      {"-1", "0", true},
      {"x", "1", true},  // what is no number reads as 0
      {"5", "6x", true},
      {"5", "x", false},
      {"4294967295", "4294967296", true},
      {kSecondLargest, kLargest, true},
      {kLargest, kLargest, false},
      {kLargest, "-9223372036854775808", false},
      {"-9223372036854775808", kLargest, false},
      {"-9223372036854775808", "-9223372036854775807", true},
      {kLargest, "9223372036854775808", false},
      {"99999999999999999999999999999999", kLargest, false},
      // The largest number is also what larger ones read as.
      {kSecondLargest, "99999999999999999999999999999999", true},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(std::string(each.before) + " " + each.now);
    EXPECT_EQ(isIncreased(lineWith(each.before), lineWith(each.now)), each.increased ? 1 : 0);
    TraceCapture trace;
    EXPECT_EQ(isIncreased(lineWith(each.before), lineWith(each.now)), each.increased ? 1 : 0);
  }
}

TEST(SdpVersionIncrease, NeedsTheSameSession) {
  const std::string before = "o=alice 10 5 IN IP4 192.0.2.9";
  EXPECT_EQ(isIncreased(before, "o=alice 10 6 IN IP4 192.0.2.9"), 1);
  for (const char* const other :
       {"o=Alice 10 6 IN IP4 192.0.2.9", "o=alice 11 6 IN IP4 192.0.2.9", "o=alice 010 6 IN IP4 192.0.2.9",
        "o=alice 10 6 in IP4 192.0.2.9", "o=alice 10 6 IN IP6 192.0.2.9", "o=alice 10 6 IN IP4 192.0.2.90",
        "o=alice 10 6 IN IP4 192.0.2.9 "}) {
    EXPECT_EQ(isIncreased(before, other), 0) << other;
  }
}

TEST(SdpVersionIncrease, ComparesSessionIdsOf64CharactersToTheirEnd) {
  const std::string id(63, '7');
  const auto line = [](const std::string& of, const std::string& version) {
    return "o=alice " + of + " " + version + " IN IP4 192.0.2.9";
  };
  EXPECT_EQ(isIncreased(line(id + "1", "5"), line(id + "1", "6")), 1);
  EXPECT_EQ(isIncreased(line(id + "1", "5"), line(id + "2", "6")), 0);
  // Versions with 62 zeros in front.
  const std::string zeros(62, '0');
  EXPECT_EQ(isIncreased(line("1", zeros + "10"), line("1", zeros + "11")), 1);
  EXPECT_EQ(isIncreased(line("1", zeros + "10"), line("1", zeros + "12")), 0);
}

TEST(SdpVersionIncrease, NeedsAllFields) {
  const std::string whole = lineWith("1");
  const std::string missing[] = {"o= 10 1 IN IP4 192.0.2.9",
                                 "o=alice  1 IN IP4 192.0.2.9",
                                 "o=alice 10  IN IP4 192.0.2.9",
                                 "o=alice 10 1  IP4 192.0.2.9",
                                 "o=alice 10 1 IN  192.0.2.9",
                                 "o=alice 10 1 IN IP4 ",
                                 "o=alice 10 1 IN IP4",
                                 "o=alice 10 1",
                                 "o=x",
                                 "o="};
  TraceCapture trace;
  for (const std::string& line : missing) {
    SCOPED_TRACE(line);
    trace.takeLines();
    EXPECT_EQ(isIncreased(line, lineWith("2")), 0);
    EXPECT_EQ(isIncreased(lineWith("0"), line), 0);
    for (const TraceLine& each : trace.lines()) EXPECT_NE(each.text.substr(0, 10), "NEW BINARY");
  }
  // With both versions missing 0 and 0 would not differ by one either; with one missing they would.
  EXPECT_EQ(isIncreased("o=alice 10  IN IP4 192.0.2.9", whole), 0);
}

TEST(SdpVersionIncrease, TracesBothVersions) {
  const cSdpNegotiator earlier = objectWithLine(lineWith("5"));
  const cSdpNegotiator later = objectWithLine(lineWith("7"));
  TraceCapture trace;
  EXPECT_EQ(later.isSdpVersionIncreased(&earlier), 0);
  EXPECT_EQ(trace.takeLines(), (Traces{entered, {1, 1, "Different o-line"}, versions("5", "7")}));
  EXPECT_EQ(later.isSdpVersionIncreased(&later), 0);
  EXPECT_EQ(trace.takeLines(), (Traces{entered, {8, 4, "The o-line is the same as the given one."}}));
}

// Deliberate: without an earlier offer any is a new one.
TEST(SdpVersionIncrease, IsSoWithoutAnEarlierOffer) {
  TraceCapture trace;
  EXPECT_EQ(emptyObject().isSdpVersionIncreased(nullptr), 1);
  EXPECT_EQ(
      trace.lines(),
      (Traces{entered,
              {4, 3, "Invalid input object. Cannot check the required elements of the SDP. Exiting."}}));
}

TEST(SdpVersionIncrease, IsNotForEmptyObjects) {
  const cSdpNegotiator object = objectWithLine(lineWith("1"));
  const cSdpNegotiator empty = emptyObject();
  EXPECT_EQ(object.isSdpVersionIncreased(&empty), 0);
  EXPECT_EQ(empty.isSdpVersionIncreased(&object), 0);
  EXPECT_EQ(empty.isSdpVersionIncreased(&empty), 0);
}

const std::string text = "m=text 5010 RTP/AVP 98\r\n";
const TraceLine notRaised{4, 3,
                          "sdpModifyVersionAndMlines(): The session version cannot be raised. Exiting."};

std::string body(const std::string& line, const std::string& media = "") { return bodyWith(line) + media; }

TEST(VersionAndMLines, TakesTheRaisedOriginLineOver) {
  for (const bool keepOnly : {false, true}) {
    cSdpNegotiator earlier = parsedObject(body("o=alice 10 9 IN IP4 192.0.2.9"));
    cSdpNegotiator object = parsedObject(body("o=bob 77 1 IN IP4 192.0.2.77"));
    object.setBandwidth(64);
    EXPECT_EQ(object.sdpModifyVersionAndMlines(&earlier, keepOnly), 0);
    const std::string line = "o=alice 10 10 IN IP4 192.0.2.9";
    EXPECT_EQ(textOf(earlier), body(line));
    EXPECT_EQ(textOf(object), body(line));
    EXPECT_EQ(lineOf(object), line);
    EXPECT_EQ(lineOf(earlier), line);
    EXPECT_EQ(object.getParsedData().bandwidth, 64U) << "the text was parsed though its m-lines stay";
  }
}

TEST(VersionAndMLines, GivesTheStatusOfTheComparison) {
  cSdpNegotiator earlier = parsedObject(body("o=a 1 1 IN IP4 192.0.2.1"));
  cSdpNegotiator more = parsedObject(body("o=b 2 2 IN IP4 192.0.2.2", text));
  EXPECT_EQ(more.sdpModifyVersionAndMlines(&earlier, false), 1);
  EXPECT_EQ(textOf(earlier), body("o=a 1 2 IN IP4 192.0.2.1"));
  EXPECT_EQ(textOf(more), body("o=a 1 2 IN IP4 192.0.2.1", text));
  cSdpNegotiator none = objectWithOffsets("o=b 2 2 IN IP4 192.0.2.2\r\nno body\r\n", 0, 26);
  EXPECT_EQ(none.sdpModifyVersionAndMlines(&earlier, false), 65534);
  EXPECT_EQ(textOf(none), "o=a 1 3 IN IP4 192.0.2.1\r\nno body\r\n");
  EXPECT_EQ(textOf(earlier), body("o=a 1 3 IN IP4 192.0.2.1"));
}

TEST(VersionAndMLines, AddsTheMLinesThatAreMissingAndParsesTheText) {
  for (const bool keepOnly : {false, true}) {
    cSdpNegotiator earlier = parsedObject(body("o=a 1 1 IN IP4 192.0.2.1", text + "a=x\r\n"));
    cSdpNegotiator object = parsedObject(body("o=b 2 2 IN IP4 192.0.2.2"));
    object.setBandwidth(64);
    EXPECT_EQ(object.sdpModifyVersionAndMlines(&earlier, keepOnly), 0);
    EXPECT_EQ(textOf(object), body("o=a 1 2 IN IP4 192.0.2.1", text));
    EXPECT_EQ(object.getParsedData().bandwidth, 0U);
    EXPECT_NE(object.getParsedData().mediaType & 32U, 0U) << "the text m-line was not analysed";
    EXPECT_EQ(textOf(earlier), body("o=a 1 2 IN IP4 192.0.2.1", text + "a=x\r\n"));
  }
}

TEST(VersionAndMLines, AddsNoMLineOfATypeThatIsThere) {
  // Deliberate: the earlier body still has more m-lines then.
  for (const bool keepOnly : {false, true}) {
    cSdpNegotiator earlier =
        parsedObject(body("o=a 1 1 IN IP4 192.0.2.1", "m=audio 5006 RTP/AVP 0\r\n" + text));
    cSdpNegotiator object = parsedObject(body("o=b 2 2 IN IP4 192.0.2.2"));
    EXPECT_EQ(object.sdpModifyVersionAndMlines(&earlier, keepOnly), 0);
    EXPECT_EQ(textOf(object), body("o=a 1 2 IN IP4 192.0.2.1", text));
    earlier = parsedObject(body("o=a 1 1 IN IP4 192.0.2.1", "m=audio 5006 RTP/AVP 0\r\n"));
    object = parsedObject(body("o=b 2 2 IN IP4 192.0.2.2"));
    object.setBandwidth(64);
    EXPECT_EQ(object.sdpModifyVersionAndMlines(&earlier, keepOnly), 0);
    EXPECT_EQ(textOf(object), body("o=a 1 2 IN IP4 192.0.2.1"));
    EXPECT_EQ(object.getParsedData().bandwidth, 0U) << "the text was not parsed again";
  }
}

TEST(VersionAndMLines, RaisesTheVersionThenTakesTheLineThenCompares) {
  cSdpNegotiator earlier = parsedObject(body("o=alice 10 9 IN IP4 192.0.2.9"));
  cSdpNegotiator object = parsedObject(body("o=bob 77 1 IN IP4 192.0.2.77"));
  const TraceLine building{8, 4, "Building raw SDP buffer."};
  TraceCapture trace;
  EXPECT_EQ(object.sdpModifyVersionAndMlines(&earlier, false), 0);
  EXPECT_EQ(
      trace.lines(),
      (Traces{
          {8, 4, "Request to set the version of o-line to:10."},
          building,
          {8, 4, "Entering sdpReplaceVersionNumberLong() method."},
          {8, 4, "The version of o-line has been replaced. Exiting..."},
          building,
          {8, 4,
           "copyOLine(): request to replace existing o-line with [o=alice 10 10 IN IP4 192.0.2.9] len=[30]"},
          {8, 4, "copyOLine(): SDP length change is 2 characters"},
          {8, 4, "copyOLine(): returning SUCCESS"},
          building,
          building,
          {8, 4, "Entering compareNumberOfMLines() method."},
          {8, 4, "Old SDP has the same number of m-lines with the new SDP."}}));
}

TEST(VersionAndMLines, RefusesNull) {
  cSdpNegotiator object = parsedObject(body(originLine));
  const cSdpNegotiator before = object;
  TraceCapture trace;
  EXPECT_EQ(object.sdpModifyVersionAndMlines(nullptr, true), 1);
  EXPECT_EQ(trace.lines(), (Traces{{4, 3, "Invalid input object. Cannot continue. Exiting."}}));
  EXPECT_TRUE(sameBytes(object, before));
}

/// The request is refused with this status, and both objects stay as they were.
void expectUnchanged(const cSdpNegotiator& object, const cSdpNegotiator& earlier, unsigned short status) {
  cSdpNegotiator own = object;
  cSdpNegotiator other = earlier;
  EXPECT_EQ(own.sdpModifyVersionAndMlines(&other, true), status);
  EXPECT_TRUE(sameBytes(own, object));
  EXPECT_TRUE(sameBytes(other, earlier));
}

TEST(VersionAndMLines, RefusesAVersionThatCannotBeRaised) {
  const cSdpNegotiator object = parsedObject(body(originLine));
  for (const char* const version : {kLargest, "9223372036854775808", "99999999999999999999999999999999"}) {
    TraceCapture trace;
    expectUnchanged(object, objectWithLine(lineWith(version)), 1);
    EXPECT_EQ(trace.lines(), Traces{notRaised});
  }
  cSdpNegotiator earlier = objectWithLine(lineWith(kSecondLargest));
  cSdpNegotiator own = object;
  EXPECT_EQ(own.sdpModifyVersionAndMlines(&earlier, true), 0);
  EXPECT_EQ(lineOf(own), lineWith(kLargest));
}

TEST(VersionAndMLines, NeedsTwoTexts) {
  const cSdpNegotiator object = parsedObject(body(originLine));
  expectUnchanged(object, emptyObject(), 1);
  expectUnchanged(emptyObject(), emptyObject(), 1);
  // An empty object receives the line, which alone is no body.
  cSdpNegotiator empty = emptyObject();
  cSdpNegotiator earlier = object;
  EXPECT_EQ(empty.sdpModifyVersionAndMlines(&earlier, true), 65534);
  EXPECT_EQ(textOf(empty), "o=alice 10 21 IN IP4 192.0.2.9\r\n");
  Record damaged(parsedObject(paddedTo(3000)));
  damaged.raw[20] = static_cast<char>(damaged.raw[20] ^ 0x55);
  expectUnchanged(damaged.object(), object, 1);
  expectUnchanged(object, damaged.object(), 1);
}

TEST(VersionAndMLines, ComparesABodyWithoutOriginLineAsItIs) {
  const std::string without =
      "v=0\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\nm=audio 5004 RTP/AVP 0 8\r\na=foo=1\r\n";
  expectUnchanged(parsedObject(body(originLine)), parsedObject(without), 0);
  expectUnchanged(parsedObject(body(originLine, text)), parsedObject(without), 1);
}

TEST(VersionAndMLines, TakesAnObjectAsItsOwnEarlierOne) {
  cSdpNegotiator object = parsedObject(body(lineWith("9")));
  EXPECT_EQ(object.sdpModifyVersionAndMlines(&object, true), 0);
  EXPECT_EQ(textOf(object), body(lineWith("10")));
  EXPECT_EQ(lineOf(object), lineWith("10"));
}

/// A text of attributes that hardly deflate, in front of which `start` still can be stored while `longer` cannot.
std::string storable(const std::string& start, const std::string& longer) {
  const std::string padding = incompressibleBody(6000).substr(audioBody().size());
  for (std::size_t length = 2000; length < padding.size(); ++length) {
    const std::string tail = padding.substr(0, length) + "\r\n";
    if (emptyObject().setRawSDP((start + tail).c_str()) != 0) break;
    if (emptyObject().setRawSDP((longer + tail).c_str()) == 2) return tail;
  }
  ADD_FAILURE() << "no such text";
  return {};
}

TEST(VersionAndMLines, LeavesBothObjectsWhenARaisedVersionCannotBeStored) {
  const std::string before = body("o=alice 6712908345671290999 6712908345671290999 IN IP4 192.0.2.9");
  const std::string raised = body("o=alice 6712908345671290999 6712908345671291000 IN IP4 192.0.2.9");
  const std::string tail = storable(before, raised);
  expectUnchanged(parsedObject(body(originLine)), parsedObject(before + tail), 2);
}

TEST(VersionAndMLines, LeavesBothObjectsWhenTheOriginLineCannotBeStored) {
  const std::string start = "o=qL7xWv0ZkR3uTfB9sYhJ2nMcP5dGaE8oI6iKmX4zQyVwCrUe 10 ";
  const std::string end = " IN IP4 203.0.113.254";
  const std::string own = body("o=a 1 1 IN IP4 192.0.2.1");
  const std::string tail = storable(own, body(start + "21" + end));
  expectUnchanged(parsedObject(own + tail), parsedObject(body(start + "20" + end)), 2);
}

TEST(VersionAndMLines, LeavesBothObjectsWhenTheOriginLineDoesNotFit) {
  const std::string longer = std::string("o=").append(200, 'u') + " 10 20 IN IP4 192.0.2.9";
  const cSdpNegotiator full = parsedObject(paddedTo(MAX_SDP_PROTOCOL_DATA_SIZE - 1));
  TraceCapture trace;
  expectUnchanged(full, parsedObject(body(longer)), 1);
  EXPECT_TRUE(trace.has(4, 3, "copyOLine(): The o-line does not fit the SDP buffer."));
}

// The codec cannot hold these bodies whole, so they are not written anew.
TEST(VersionAndMLines, LeavesBothObjectsWhenTheMLinesCannotBeAdded) {
  const cSdpNegotiator object = parsedObject(body("o=b 2 2 IN IP4 192.0.2.2"));
  const cSdpNegotiator odd = parsedObject(body("o=b 2 2 IN IP4 192.0.2.2", "x=odd\r\n"));
  const cSdpNegotiator earlier = parsedObject(body("o=a 1 1 IN IP4 192.0.2.1", text));
  TraceCapture trace;
  expectUnchanged(odd, earlier, 3);
  EXPECT_EQ(trace.takeLines().back(),
            (TraceLine{4, 3, "correctMLines(): A description does not hold all lines of its SDP. Exiting."}));
  // An m-line of the earlier one has more formats than the codec holds.
  std::string formats;
  for (int i = 0; i < 200; ++i) formats += " 98";
  expectUnchanged(object,
                  parsedObject(body("o=a 1 1 IN IP4 192.0.2.1", "m=text 1 RTP/AVP" + formats + "\r\n")), 3);
  // The o-line that is taken over is too long for the codec.
  const std::string longName = "o=" + std::string(300, 'u') + " 1 1 IN IP4 192.0.2.1";
  expectUnchanged(object, parsedObject(body(longName, text)), 3);
  // A full body has no room.
  expectUnchanged(parsedObject(paddedTo(MAX_SDP_PROTOCOL_DATA_SIZE - 1)), earlier, 3);
}

// With an o-line of its own that the codec cannot hold, the body is whole once it has the other.
TEST(VersionAndMLines, AddsMLinesWhereTheOriginLineThatGoesIsTooLong) {
  const std::string longName = "o=" + std::string(300, 'u') + " 2 2 IN IP4 192.0.2.2";
  cSdpNegotiator object = parsedObject(body(longName));
  cSdpNegotiator earlier = parsedObject(body("o=a 1 1 IN IP4 192.0.2.1", text));
  EXPECT_EQ(object.sdpModifyVersionAndMlines(&earlier, true), 0);
  EXPECT_EQ(textOf(object), body("o=a 1 2 IN IP4 192.0.2.1", text));
}

// Where no m-line is to be added nothing is written anew.
TEST(VersionAndMLines, TakesTheOriginLineOverIntoABodyThatTheCodecCannotHold) {
  const std::string end = "x=odd\r\n";
  cSdpNegotiator earlier = parsedObject(body("o=a 1 1 IN IP4 192.0.2.1"));
  cSdpNegotiator same = parsedObject(body("o=b 2 2 IN IP4 192.0.2.2", end));
  EXPECT_EQ(same.sdpModifyVersionAndMlines(&earlier, true), 0);
  EXPECT_EQ(textOf(same), body("o=a 1 2 IN IP4 192.0.2.1", end));
  cSdpNegotiator more = parsedObject(body("o=b 2 2 IN IP4 192.0.2.2", text + end));
  EXPECT_EQ(more.sdpModifyVersionAndMlines(&earlier, true), 1);
  EXPECT_EQ(textOf(more), body("o=a 1 3 IN IP4 192.0.2.1", text + end));
}

// What was added is kept only by way of a parse, which empties an object whose text it refuses or cannot store.
TEST(VersionAndMLines, EmptiesTheObjectWhenTheNewTextCannotBeParsedOrStored) {
  const std::string line = "o=a 1 2 IN IP4 192.0.2.1";
  cSdpNegotiator earlier = parsedObject(body("o=a 1 1 IN IP4 192.0.2.1", text));
  const std::string host =
      "v=0\r\no=b 2 2 IN IP4 192.0.2.2\r\ns=-\r\nc=IN IP4 host\r\nt=0 0\r\nm=audio 5004 RTP/AVP 0\r\n";
  cSdpNegotiator object = objectWithOffsets(host, lineStart, lineStart + 26);
  EXPECT_EQ(object.sdpModifyVersionAndMlines(&earlier, true), 1);
  EXPECT_TRUE(sameBytes(object, emptyObject()));
  // The text m-line, which is long, does not deflate any more.
  std::string formats;
  for (int i = 0; i < 60; ++i) formats.append(" ").append(std::to_string((i * 7919) % 100003));
  const std::string longText = "m=text 5010 RTP/AVP" + formats + "\r\n";
  earlier = parsedObject(body("o=a 1 1 IN IP4 192.0.2.1", longText));
  const std::string tail = storable(body(line), body(line) + longText);
  object = parsedObject(body("o=b 2 2 IN IP4 192.0.2.2") + tail);
  EXPECT_EQ(object.sdpModifyVersionAndMlines(&earlier, true), 2);
  EXPECT_TRUE(sameBytes(object, emptyObject()));
}

}  // namespace
