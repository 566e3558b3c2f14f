#include "modifiersTestSupport.h"
#include "traceCapture.h"

// The return of removed m-lines as secure dummy m-lines.

namespace {

const std::string start = "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\n";
const std::string first = "m=audio 1 RTP/AVP 0\r\na=a\r\n";
const std::string second = "m=video 2 RTP/AVP 31\r\na=b\r\n";
const std::string third = "m=text 3 RTP/AVP 98\r\n";

const std::string audioDummy = "m=audio 0 RTP/SAVP 0\r\n";
const std::string videoDummy = "m=video 0 RTP/SAVP 31\r\n";
const std::string applicationDummy = "m=application 0 RTP/SAVP 0\r\n";
const std::string imageDummy = "m=image 0 RTP/SAVP 0\r\n";

const TraceLine entering{8, 4, "Entering sdpReplaceTransProtocol() method."};
const TraceLine exiting{8, 4, "Exiting sdpReplaceTransProtocol() method."};
const TraceLine nothing{2, 2, "The m-line indices is empty. Nothing to change."};
const TraceLine noRoom{4, 3,
                       "sdpReplaceTransProtocol(): The SDP buffer has no room for another m-line. Exiting."};

/// A record in a block that ends behind its last code, or behind the 0 that ends it.
std::unique_ptr<char[]> recordOf(const std::vector<int>& codes, bool ended = true) {
  auto record = std::make_unique<char[]>(codes.size() + (ended ? 1 : 0));
  std::transform(codes.begin(), codes.end(), record.get(), [](int code) { return static_cast<char>(code); });
  return record;
}

struct Case {
  const char* what;
  std::vector<int> codes;
  std::string before;
  std::string after;
};

void expectReturned(const Case& each) {
  SCOPED_TRACE(each.what);
  SdpBuffer buffer(each.before);
  unsigned short oLineEnd = 77;
  TraceCapture trace;
  EXPECT_EQ(
      sdpModifications::sdpReplaceTransProtocol(buffer.data(), recordOf(each.codes).get(), oLineEnd, false),
      0);
  buffer.expectText(each.after);
  EXPECT_EQ(oLineEnd, 77);
  EXPECT_EQ(trace.lines(), (Traces{entering, exiting}));
}

TEST(MediaReturn, PutsDummiesInThePlacesOfTheCodes) {
  const Case cases[] = {
      {"audio first, video third",
       {1, 28},
       start + first + second,
       start + audioDummy + first + videoDummy + second},
      {"too few m-lines for the third", {1, 28}, start + first, start + audioDummy + first + videoDummy},
      {"audio", {2}, start + first + second, start + first + audioDummy + second},
      {"application", {51}, start + first, start + applicationDummy + first},
      {"image", {76}, start + first, start + imageDummy + first},
      {"the last position of each medium",
       {25, 50, 75, 100},
       start + first,
       start + first + audioDummy + videoDummy + applicationDummy + imageDummy},
      {"dummies count as m-lines",
       {1, 27, 53},
       start + first,
       start + audioDummy + videoDummy + applicationDummy + first},
      {"any order",
       {28, 1},
       start + first + second + third,
       start + audioDummy + first + second + videoDummy + third},
      {"no media", {1}, start, start + audioDummy},
      {"no media and position 2", {27}, start, start + videoDummy},
      {"an empty text", {1}, "", audioDummy},
      // From the first code whose place there is not, all are appended.
      {"a place that there is, behind one that there is not",
       {5, 1},
       start + first,
       start + first + audioDummy + audioDummy},
      // "m=" counts wherever it stands.
      {"a value", {1}, "a=prm=1\r\n" + first, "a=pr" + audioDummy + "m=1\r\n" + first},
  };
  for (const Case& each : cases) expectReturned(each);
}

// A code above all ranges stands for the position that image would have; from 128 on its dummy is audio.
TEST(MediaReturn, TakesCodesAboveAllRanges) {
  std::string before = start;
  for (int i = 1; i <= 25; ++i) before += third;
  expectReturned({"101 is position 26", {101}, before + second, before + imageDummy + second});
  expectReturned({"101 without position 26", {101, 1}, before, before + imageDummy + audioDummy});
  std::string many = start;
  for (int i = 1; i <= 52; ++i) many += third;
  expectReturned({"128 is position 53", {128}, many + second, many + audioDummy + second});
  expectReturned({"255 is position 180", {255}, many, many + audioDummy});
}

TEST(MediaReturn, EndsTheTextsLastLineBeforeItAppends) {
  expectReturned(
      {"no line end", {9}, start + "m=audio 1 RTP/AVP 0", start + "m=audio 1 RTP/AVP 0\r\n" + audioDummy});
  expectReturned({"a bare line feed", {9, 9}, "v=0\n", "v=0\n" + audioDummy + audioDummy});
}

TEST(MediaReturn, PutsBackWhatARemovalRecorded) {
  const std::string secure = "m=audio 4 RTP/SAVP 0\r\na=c\r\nm=video 5 RTP/SAVP 31\r\n";
  SdpBuffer buffer(start + first + secure + second);
  char removed[25] = {};
  unsigned short oLineEnd = 0;
  sdpModifications::sdpRemoveSecurity(buffer.data(), removed, oLineEnd, false);
  buffer.expectText(start + first + second);
  EXPECT_EQ(sdpModifications::sdpReplaceTransProtocol(buffer.data(), removed, oLineEnd, false), 0);
  buffer.expectText(start + first + audioDummy + videoDummy + second);
}

TEST(MediaReturn, ReadsTwentyFiveCodesOfARecordWithoutEnd) {
  const auto record = recordOf(std::vector<int>(25, 1), false);
  SdpBuffer buffer(start + first);
  unsigned short oLineEnd = 0;
  EXPECT_EQ(sdpModifications::sdpReplaceTransProtocol(buffer.data(), record.get(), oLineEnd, false), 0);
  std::string wanted = start;
  for (int i = 0; i < 25; ++i) wanted += audioDummy;
  buffer.expectText(wanted + first);
}

TEST(MediaReturn, DoesNothingWithoutCodes) {
  char empty[1] = {};
  for (char* const removed : {static_cast<char*>(nullptr), empty}) {
    unsigned short oLineEnd = 77;
    TraceCapture trace;
    expectUntouched(
        start + first,
        [&](char* sdp) {
          trace.takeLines();
          return sdpModifications::sdpReplaceTransProtocol(sdp, removed, oLineEnd, true);
        },
        0);
    EXPECT_EQ(trace.lines(), (Traces{entering, nothing}));
    EXPECT_EQ(oLineEnd, 77);
  }
}

TEST(MediaReturn, RebuildsTheOriginLineWhenAskedTo) {
  SdpBuffer buffer(start + first);
  unsigned short oLineEnd = 0;
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpReplaceTransProtocol(buffer.data(), recordOf({1}).get(), oLineEnd, true), 0);
  const std::string text = buffer.data();
  const std::size_t end = text.find("s=-");
  EXPECT_EQ(text.substr(0, 11), "v=0\r\no=ZEV ");
  EXPECT_EQ(oLineEnd, end);
  EXPECT_EQ(text.substr(end), "s=-\r\nt=0 0\r\n" + audioDummy + first);
  EXPECT_TRUE(trace.has(2, 2, "The o-line has been changed. Exiting..."));
  EXPECT_EQ(trace.lines().front(), entering);
  EXPECT_EQ(trace.lines().back(), exiting);
}

TEST(MediaReturn, PutsDummiesBackAlsoWhenTheOriginLineCannotBeRebuilt) {
  SdpBuffer buffer("v=0\r\n" + first);
  unsigned short oLineEnd = 77;
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpReplaceTransProtocol(buffer.data(), recordOf({1}).get(), oLineEnd, true), 0);
  buffer.expectText("v=0\r\n" + audioDummy + first);
  EXPECT_EQ(oLineEnd, 77);
  EXPECT_TRUE(trace.has(2, 2, "The o-line is not present within the SDP. Exiting..."));
}

TEST(MediaReturn, RefusesADummyThatDoesNotFit) {
  const auto record = recordOf({1, 2});
  unsigned short oLineEnd = 0;
  // Exactly room for two.
  const std::string fits = filledTo(kLongestBody - 2 * audioDummy.size(), start + first);
  SdpBuffer full(fits);
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpReplaceTransProtocol(full.data(), record.get(), oLineEnd, false), 0);
  full.expectText(start + audioDummy + audioDummy + fits.substr(start.size()));
  EXPECT_EQ(trace.takeLines(), (Traces{entering, exiting}));
  // One character less: the second is left out.
  const std::string tight = filledTo(kLongestBody - 2 * audioDummy.size() + 1, start + first);
  SdpBuffer buffer(tight);
  EXPECT_EQ(sdpModifications::sdpReplaceTransProtocol(buffer.data(), record.get(), oLineEnd, false), 0);
  buffer.expectText(start + audioDummy + tight.substr(start.size()));
  EXPECT_EQ(trace.takeLines(), (Traces{entering, noRoom, exiting}));
}

TEST(MediaReturn, RefusesATextThatIsNullOrHasNoEnd) {
  const TraceLine unusable{
      4, 3, "sdpReplaceTransProtocol(): The SDP buffer is null or holds no end of text. Exiting."};
  const auto record = recordOf({1});
  unsigned short oLineEnd = 77;
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpReplaceTransProtocol(nullptr, record.get(), oLineEnd, false), 0);
  EXPECT_EQ(trace.takeLines(), (Traces{entering, unusable, exiting}));
  expectUntouched(
      withoutNul(start + first),
      [&](char* sdp) { return sdpModifications::sdpReplaceTransProtocol(sdp, record.get(), oLineEnd, true); },
      0);
  EXPECT_TRUE(trace.has(4, 3, unusable.text));
  EXPECT_EQ(oLineEnd, 77);
}

}  // namespace
