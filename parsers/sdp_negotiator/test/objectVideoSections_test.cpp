#include <memory>

#include "objectTestSupport.h"
#include "traceCapture.h"

// Video sections put into a body and taken out of it.

namespace {

using Traces = std::vector<TraceLine>;

const TraceLine building{8, 4, "Building raw SDP buffer."};
const TraceLine noText{4, 3, "The raw SDP buffer is empty."};
constexpr std::size_t kLongestBody = MAX_SDP_PROTOCOL_DATA_SIZE - 1;

TraceLine adding(const std::string& sections) {
  return {1, 1, "Request to add videoDescriptions: " + sections};
}
TraceLine updated(const std::string& text) { return {1, 1, "Updated SDP: " + text}; }

const TraceLine addedTooMuch{
    4, 3, "sdpAddVideoDescriptions(): The SDP with the videoDescriptions does not fit its buffer."};
const TraceLine addedUnstorable{
    4, 3, "sdpAddVideoDescriptions(): The SDP with the videoDescriptions cannot be stored."};

const std::string video = "m=video 5006 RTP/AVP 96\r\na=rtpmap:96 VP8/90000\r\n";
const std::string h264 = "m=video 6000 RTP/AVP 97\r\na=rtpmap:97 H264/90000\r\n";
const std::string textSection = "m=text 5 RTP/AVP 98\r\n";
const std::string h261 = "m=video 7000 RTP/AVP 31\r\n";

/// Whether two objects have the same summary but for the form of the stored text.
bool sameSummary(const cSdpNegotiator& a, const cSdpNegotiator& b) {
  sSdpParsedData first = a.getParsedData();
  first.storedSdpLength = b.getParsedData().storedSdpLength;
  return std::memcmp(&first, &b.getParsedData(), sizeof first) == 0;
}

/// Sections given in a block that ends right behind their NUL.
void add(cSdpNegotiator& object, const std::string& sections) {
  const auto block = std::make_unique<char[]>(sections.size() + 1);
  std::memcpy(block.get(), sections.c_str(), sections.size() + 1);
  object.sdpAddVideoDescriptions(block.get());
}

struct Addition {
  const char* name;
  std::string before;
  std::string sections;
  std::string after;
};

TEST(AddVideoDescriptions, PutsSectionsInThePlaceOfTheVideoSection) {
  const std::string start = audioBody();
  const Addition cases[] = {
      {"no video: the end", start, h264, start + h264},
      {"no video: whatever it is", start, "x", start + "x"},
      {"no video: nothing", start, "", start},
      {"no video: behind a text that does not end in a line end", "v=0\r\ns=-", "m=x", "v=0\r\ns=-m=x"},
      {"the last section", start + video, h264, start + h264},
      {"each in turn, so the last one stays", start + video, h264 + h261, start + h261},
      {"another medium takes the place and no more follows", start + video, textSection + h264,
       start + textSection},
      {"another medium, and the next section finds the next video section", h261 + h261 + h261,
       textSection + h264, textSection + h264 + "31\r\n"},
      {"nothing given", start + video, "", start + video},
      {"no m-line given", start + video, "a=x\r\n", start + video},
      {"video is named, but no video section", start + "a=content:video\r\n", h264,
       start + "a=content:video\r\n"},
      // Deliberate: the place of the next "m=" is the length of what goes.
      {"an m-line behind the video section", "v=0\r\n" + h261 + "m=text 5 RTP/AVP 98\r\na=1234\r\n", h264,
       "v=0\r\n" + h264 + "t 5 RTP/AVP 98\r\na=1234\r\n"},
      {"an m-line behind, all of the text", start + h261 + "m=x\r\n", h264, start + h264},
      {"an m-line inside a value", "v=0\r\ns=m=video in m=mono and more\r\n", "m=videos",
       "v=0\r\ns=m=videosand more\r\n"},
      // What is taken of the given text is too long here, and goes with the next section.
      {"something in front of the given sections", start + video, "ab" + h261 + h264, start + h264},
      // Deliberate: what is taken of the given text is as long as the place of its next "m=" says, so the start of the
      // next section comes along; it stays where that section finds no video section any more.
      {"too much of the given text is taken", start + video, "ab" + textSection + h264,
       start + textSection + "m="},
      {"something in front of one given section", start + video, "ab\r\n" + h261, start + h261},
  };
  for (const Addition& each : cases) {
    SCOPED_TRACE(each.name);
    for (const bool tracing : {true, false}) {
      cSdpNegotiator object = objectWithText(each.before);
      const cSdpNegotiator before = object;
      if (tracing) {
        TraceCapture trace;
        add(object, each.sections);
        EXPECT_EQ(trace.lines(), (Traces{adding(each.sections), building, updated(each.after)}));
      } else {
        add(object, each.sections);
      }
      EXPECT_EQ(textOf(object), each.after);
      EXPECT_TRUE(sameSummary(object, before));
    }
  }
}

TEST(AddVideoDescriptions, RefusesNull) {
  cSdpNegotiator object = parsedObject(audioBody());
  const cSdpNegotiator before = object;
  TraceCapture trace;
  object.sdpAddVideoDescriptions(nullptr);
  EXPECT_EQ(trace.lines(), (Traces{{4, 3, "The request to add videoDescriptions  is invalid."}}));
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(AddVideoDescriptions, NeedsAText) {
  cSdpNegotiator object = emptyObject();
  TraceCapture trace;
  add(object, h264);
  EXPECT_EQ(trace.takeLines(), (Traces{adding(h264), building, noText}));
  EXPECT_TRUE(sameBytes(object, emptyObject()));
  object = damagedObject();
  const cSdpNegotiator before = object;
  trace.takeLines();
  add(object, h264);
  EXPECT_EQ(trace.takeLines(), (Traces{adding(h264), building}));
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(AddVideoDescriptions, FillTheBufferAndNoMore) {
  const std::string small = audioBody();
  const std::string section = "m=video 5006 RTP/AVP 96\r\n";
  for (const bool replaced : {false, true}) {
    const std::string before = replaced ? small + section : small;
    for (const std::size_t length : {kLongestBody, kLongestBody + 1, std::size_t{50000}}) {
      SCOPED_TRACE(length);
      const std::string given = section + std::string(length - small.size() - section.size(), 'x');
      cSdpNegotiator object = parsedObject(before);
      const cSdpNegotiator unchanged = object;
      TraceCapture trace;
      add(object, given);
      if (length <= kLongestBody) {
        EXPECT_TRUE(textOf(object) == small + given);
        EXPECT_EQ(trace.count(addedTooMuch.flag, addedTooMuch.level, addedTooMuch.text), 0);
      } else {
        EXPECT_TRUE(sameBytes(object, unchanged));
        ASSERT_EQ(trace.lines().size(), 3U);
        EXPECT_EQ(trace.lines().back(), addedTooMuch);
      }
    }
  }
}

// A given section takes the place of the one in front of it, so a long one need not fit when it does not stay.
TEST(AddVideoDescriptions, FitWhenTheLastOfThemFits) {
  const std::string start = audioBody();
  for (const std::size_t length : {kLongestBody, std::size_t{50000}}) {
    SCOPED_TRACE(length);
    const std::string sections = h261 + std::string(length, 'x') + h264;
    cSdpNegotiator object = parsedObject(start + video);
    TraceCapture trace;
    add(object, sections);
    EXPECT_EQ(textOf(object), start + h264);
    ASSERT_EQ(trace.lines().size(), 3U);
    EXPECT_EQ(trace.lines().back(), updated(start + h264));
  }
}

TEST(AddVideoDescriptions, LeaveTheObjectAsItIsWhenTheTextCannotBeStored) {
  cSdpNegotiator object = parsedObject(audioBody());
  const cSdpNegotiator before = object;
  const std::string sections = incompressibleBody(6000);
  TraceCapture trace;
  add(object, sections);
  EXPECT_TRUE(sameBytes(object, before));
  ASSERT_EQ(trace.lines().size(), 3U);
  EXPECT_EQ(trace.lines().back(), addedUnstorable);
}

TEST(AddVideoDescriptions, EndOnManySections) {
  std::string sections;
  for (int i = 0; i < 20000; ++i) sections += "m=video";
  for (const std::string& start : {std::string(), audioBody(), std::string(10000, 'm')}) {
    std::string body = start;
    while (body.size() < 15000) body += "m=video 5006 RTP/AVP 96\r\n";
    cSdpNegotiator object = objectWithText(body);
    add(object, sections);
    // What is replaced is never shorter than what takes its place, down to the last section given.
    const std::string after = textOf(object);
    EXPECT_LT(after.size(), body.size());
    EXPECT_EQ(after.substr(0, start.size() + 7), start + "m=video");
  }
}

const TraceLine getting{1, 1, "Request to get the video descriptions"};
const TraceLine notGot{4, 3, "The request to get the video descriptions is invalid."};

/// The video sections of a body in a buffer of a size, with what is behind it guarded.
std::string videoOf(cSdpNegotiator& object, unsigned int size, bool remove, unsigned short status) {
  const auto out = std::make_unique<char[]>(size);
  std::fill_n(out.get(), size, '#');
  EXPECT_EQ(object.sdpGetVideoDescriptions(out.get(), size, remove), status);
  return {out.get(), strnlen(out.get(), size)};
}

TEST(GetVideoDescriptions, HandsThemOutAndStoresWhatRemains) {
  const std::string connection = "c=IN IP4 192.0.2.1\r\n";
  const std::string wanted = "m=video 5006 RTP/AVP 96\r\n" + connection + "a=rtpmap:96 VP8/90000\r\n";
  for (const bool remove : {false, true}) {
    cSdpNegotiator object = parsedObject(audioBody() + video);
    const cSdpNegotiator before = object;
    EXPECT_EQ(videoOf(object, 500, remove, 1), wanted);
    EXPECT_EQ(textOf(object), remove ? audioBody() : audioBody() + video);
    EXPECT_TRUE(sameSummary(object, before));
  }
}

TEST(GetVideoDescriptions, TracesTheRequest) {
  TraceCapture trace;
  cSdpNegotiator object = parsedObject(audioBody() + video);
  trace.takeLines();
  videoOf(object, 500, true, 1);
  ASSERT_GE(trace.lines().size(), 2U);
  EXPECT_EQ(trace.lines()[0], getting);
  EXPECT_EQ(trace.lines()[1], building);
  EXPECT_FALSE(trace.has(4, 3, notGot.text));
}

TEST(GetVideoDescriptions, HandsOutNothingWhereThereIsNone) {
  cSdpNegotiator object = parsedObject(audioBody());
  const cSdpNegotiator before = object;
  EXPECT_EQ(videoOf(object, 500, true, 1), "");
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(GetVideoDescriptions, TakesThemOutAlsoWhenTheBufferIsTooSmall) {
  const TraceLine tooSmall{2, 2,
                           "The size of Video part of SDP is bigger than the videoDescription buffer size"};
  for (const unsigned int size : {4U, 1U}) {
    cSdpNegotiator object = parsedObject(audioBody() + video);
    TraceCapture trace;
    EXPECT_EQ(videoOf(object, size, true, 1), "");
    EXPECT_EQ(trace.count(tooSmall.flag, tooSmall.level, tooSmall.text), 1);
    EXPECT_FALSE(trace.has(4, 3, notGot.text));
    EXPECT_EQ(textOf(object), audioBody());
  }
  cSdpNegotiator object = parsedObject(audioBody() + video);
  EXPECT_EQ(object.sdpGetVideoDescriptions(nullptr, 500, true), 1);
  EXPECT_EQ(textOf(object), audioBody());
}

TEST(GetVideoDescriptions, RefuseAnObjectWithoutTextOrConnection) {
  cSdpNegotiator object = emptyObject();
  TraceCapture trace;
  EXPECT_EQ(videoOf(object, 4, true, 0), "####");
  EXPECT_EQ(trace.takeLines(), (Traces{getting, building, noText, notGot}));
  EXPECT_TRUE(sameBytes(object, emptyObject()));
  object = objectWithText("v=0\r\n" + video);
  const cSdpNegotiator before = object;
  EXPECT_EQ(videoOf(object, 4, true, 0), "####");
  ASSERT_FALSE(trace.lines().empty());
  EXPECT_EQ(trace.lines().front(), getting);
  EXPECT_EQ(trace.takeLines().back(), notGot);
  EXPECT_TRUE(sameBytes(object, before));
  object = damagedObject();
  const cSdpNegotiator damaged = object;
  trace.takeLines();
  EXPECT_EQ(videoOf(object, 4, true, 0), "####");
  EXPECT_EQ(trace.takeLines(), (Traces{getting, building, notGot}));
  EXPECT_TRUE(sameBytes(object, damaged));
}

}  // namespace
