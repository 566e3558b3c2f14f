#include "objectTestSupport.h"
#include "traceCapture.h"

// Comparison of two texts behind their origin lines, and the display of an object.

namespace {

const TraceLine building{8, 4, "Building raw SDP buffer."};
const TraceLine empty{4, 3, "The raw SDP buffer is empty."};
const TraceLine same{8, 4, "The SDP messages are same."};
const TraceLine different{2, 2, "Different SDP messages."};
const TraceLine noText{4, 3, "Empty Buffer! Exiting..."};

using Lines = std::vector<TraceLine>;

struct CompareCase {
  const char* name;
  std::string own;
  std::string given;
  unsigned short status;
  Lines traces;
};

const CompareCase compareCases[] = {
    {"the same text", audioBody(), audioBody(), 0, {building, same}},
    {"another origin line",
     "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\n",
     "v=0\r\no=a 1 2 IN IP4 192.0.2.77\r\ns=-\r\nt=0 0\r\n",
     0,
     {building, same}},
    {"nothing before the session name", "s=-\r\n", "v=0\r\no=x\r\ns=-\r\n", 0, {building, same}},
    {"one character differs", "s=-\r\nt=0 0\r\n", "s=-\r\nt=0 1\r\n", 1, {building, different}},
    {"another case", "s=a\r\n", "s=A\r\n", 1, {building, different}},
    {"the given text goes on", "s=-\r\n", "s=-\r\nt=0 0\r\n", 1, {building, different}},
    {"the own text goes on", "s=-\r\nt=0 0\r\n", "s=-\r\n", 1, {building, different}},
    {"no session name of its own", "v=0\r\n", "s=-\r\n", 1, {building}},
    {"no session name given", "s=-\r\n", "v=0\r\n", 1, {building}},
    {"no session name at all", "v=0\r\n", "v=0\r\n", 1, {building}},
    {"an empty text given", "s=-\r\n", "", 1, {building}},
    {"a deflated text with itself", paddedTo(5000), paddedTo(5000), 0, {building, same}},
    {"a deflated text and a longer one", paddedTo(5000), paddedTo(5100), 1, {building, different}},
    {"the longest text with itself", paddedTo(20480), paddedTo(20480), 0, {building, same}},
    // Deliberate: the first "s=" counts, wherever it stands. Here it is the one of the origin line.
    {"s= within the origin lines", "o=s=1\r\ns=-\r\n", "o=s=2\r\ns=-\r\n", 1, {building, different}},
};

TEST(CompareBodies, TextsAreComparedFromTheirSessionNameOn) {
  TraceCapture trace;
  for (const CompareCase& each : compareCases) {
    const cSdpNegotiator own = objectWithText(each.own);
    EXPECT_EQ(own.compareSdpByBody(each.given.c_str()), each.status) << each.name;
    EXPECT_EQ(trace.takeLines(), each.traces) << each.name;
  }
}

TEST(CompareBodies, ObjectsAreComparedLikeTheirTexts) {
  TraceCapture trace;
  for (const CompareCase& each : compareCases) {
    const cSdpNegotiator own = objectWithText(each.own);
    const cSdpNegotiator other = objectWithText(each.given);
    EXPECT_EQ(own.compareSdpByBody(&other), each.status) << each.name;
    Lines expected{building};
    if (each.given.empty()) expected.push_back(empty);
    expected.insert(expected.end(), each.traces.begin(), each.traces.end());
    EXPECT_EQ(trace.takeLines(), expected) << each.name;
  }
}

TEST(CompareBodies, WithoutATextThereIsNothingToCompare) {
  TraceCapture trace;
  const cSdpNegotiator full = objectWithText(audioBody());
  EXPECT_EQ(emptyObject().compareSdpByBody(audioBody().c_str()), 1);
  EXPECT_EQ(trace.takeLines(), Lines{noText});
  EXPECT_EQ(full.compareSdpByBody(static_cast<const char*>(nullptr)), 1);
  EXPECT_EQ(trace.takeLines(), Lines{noText});
  EXPECT_EQ(full.compareSdpByBody(static_cast<const cSdpNegotiator*>(nullptr)), 1);
  EXPECT_EQ(trace.takeLines(), (Lines{{4, 3, "The SDP buffer is NULL."}}));
  const cSdpNegotiator none = emptyObject();
  EXPECT_EQ(none.compareSdpByBody(&full), 1);
  EXPECT_EQ(trace.takeLines(), (Lines{building, noText}));
  EXPECT_EQ(none.compareSdpByBody(&none), 1);
  EXPECT_EQ(trace.takeLines(), (Lines{building, empty, noText}));
}

TEST(CompareBodies, AnObjectMayBeComparedWithItself) {
  const cSdpNegotiator object = objectWithText(paddedTo(4000));
  EXPECT_EQ(object.compareSdpByBody(&object), 0);
}

TEST(CompareBodies, ADamagedTextIsComparedAsFarAsItGoes) {
  Record record(objectWithText(paddedTo(4000)));
  record.data.storedSdpLength = static_cast<std::uint16_t>(record.data.storedSdpLength - 1);
  // Only the checksum suffers: all characters are there.
  EXPECT_EQ(record.object().compareSdpByBody(paddedTo(4000).c_str()), 0);
  record.data.storedSdpLength = 65535;
  EXPECT_EQ(record.object().compareSdpByBody(paddedTo(4000).c_str()), 1);
}

TEST(Display, TheTextIsTracedWhole) {
  TraceCapture trace;
  for (const std::string& text : {audioBody(), std::string("%s%n%d s=-"), paddedTo(20000)}) {
    objectWithText(text).displaySDPRawData();
    EXPECT_EQ(trace.takeLines(), (Lines{building, {8, 4, "The raw SDP buffer is\n" + text}}));
  }
}

TEST(Display, TheLongestTextIsCutToALine) {
  TraceCapture trace;
  objectWithText(paddedTo(20480)).displaySDPRawData();
  ASSERT_EQ(trace.lines().size(), 2U);
  const std::string shown = "SDP_NEGOTIATOR_DETAIL:The raw SDP buffer is\n" + paddedTo(20480);
  EXPECT_EQ("SDP_NEGOTIATOR_DETAIL:" + trace.lines()[1].text, shown.substr(0, 20479));
}

// Deliberate: as a detail, not as the error that fetching an empty text is.
TEST(Display, AnEmptyObjectIsTracedAsEmpty) {
  TraceCapture trace;
  emptyObject().displaySDPRawData();
  EXPECT_EQ(trace.takeLines(), (Lines{{8, 4, "The raw SDP buffer is empty."}}));
}

TEST(Display, ADamagedTextIsTracedAsFarAsItGoes) {
  TraceCapture trace;
  Record record(objectWithText(paddedTo(4000)));
  record.data.storedSdpLength = 65535;
  record.object().displaySDPRawData();
  EXPECT_EQ(trace.takeLines(), (Lines{building, {8, 4, "The raw SDP buffer is\n"}}));
}

TEST(Display, TheSummaryIsTheObjectsOwnOrTheOneGiven) {
  const cSdpNegotiator object = parsedObject(audioBody());
  TraceCapture trace;
  object.displaySDPData();
  const Lines own = trace.takeLines();
  ASSERT_FALSE(own.empty());
  EXPECT_EQ(own.front(), (TraceLine{8, 4, "address:192.0.2.1,   addressType:2,   port:5004"}));
  cSdpNegotiator::displaySDPData(object.getParsedData());
  EXPECT_EQ(trace.takeLines(), own);
  sSdpParsedData other = object.getParsedData();
  other.port = 5006;
  cSdpNegotiator::displaySDPData(other);
  EXPECT_EQ(trace.lines().front(), (TraceLine{8, 4, "address:192.0.2.1,   addressType:2,   port:5006"}));
}

}  // namespace
