#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "modifiersTestSupport.h"

// The video sections of a body as a text of their own.

namespace {

const std::string cLine = "c=IN IP4 192.0.2.1\r\n";
const std::string head = "v=0\r\ns=-\r\n" + cLine + "t=0 0\r\n";

/// What stands in the buffers behind an extraction.
struct Extraction {
  std::string sdp;
  std::string video;
  unsigned short status = 9;
};

std::string withoutLf(const std::string& lines) { return lines.substr(0, lines.size() - 1); }

Extraction extract(const std::string& body, bool remove, unsigned int size = 4096) {
  SdpBuffer buffer(body);
  // Exactly sized, so that the sanitizer sees a write behind the end.
  const auto out = std::make_unique<char[]>(size);
  std::memset(out.get(), '~', size);
  Extraction result;
  result.status = sdpModifications::getVideoDescriptions(buffer.data(), out.get(), size, remove);
  buffer.expectGuard();
  result.sdp = buffer.all().c_str();
  result.video = std::string(out.get(), strnlen(out.get(), size));
  return result;
}

struct Sections {
  const char* name;
  std::string body;
  std::string video;
  std::string rest;  ///< of the body when they are removed
};

class VideoSections : public testing::TestWithParam<Sections> {};

TEST_P(VideoSections, AreCollected) {
  const Sections& one = GetParam();
  const Extraction kept = extract(one.body, false);
  EXPECT_EQ(kept.status, 0);
  EXPECT_EQ(kept.video, one.video);
  EXPECT_EQ(kept.sdp, one.body);
}

TEST_P(VideoSections, LeaveTheBodyWhenAskedTo) {
  const Sections& one = GetParam();
  const Extraction removed = extract(one.body, true);
  EXPECT_EQ(removed.status, 0);
  EXPECT_EQ(removed.video, one.video);
  EXPECT_EQ(removed.sdp, one.rest);
}

const std::string ownLine = "c=IN IP4 192.0.2.7\r\n";
const std::string videoLine = "m=video 5006 RTP/AVP 96\r\n";

INSTANTIATE_TEST_SUITE_P(
    Cases, VideoSections,
    testing::Values(
        Sections{"theLast", head + audio + videoLine + ownLine + "a=x\r\n", videoLine + ownLine + "a=x\r\n",
                 head + audio},
        // A section in front of another one ends with CR, and an empty line stays in its place.
        Sections{"inFrontOfAnother", head + videoLine + ownLine + "a=x\r\n" + audio,
                 withoutLf(videoLine + ownLine + "a=x\r\n"), head + "\n" + audio},
        Sections{"theConnectionInFrontOfTheAttributes", head + videoLine + "b=AS:64\r\na=x\r\na=y\r\n",
                 videoLine + "b=AS:64\r\n" + cLine + "a=x\r\na=y\r\n", head},
        Sections{"theConnectionInFrontOfAll", head + videoLine + "b=AS:64\r\n",
                 cLine + videoLine + "b=AS:64\r\n", head},
        Sections{"onlyAnMLine", head + videoLine + audio, cLine + withoutLf(videoLine), head + "\n" + audio},
        Sections{"withoutLf", head + "m=video 5006 RTP/AVP 96", cLine + "m=video 5006 RTP/AVP 96", head},
        Sections{"aConnectionInAValueIsNone", head + videoLine + "i=c=1\r\na=c=2\r\n",
                 videoLine + "i=c=1\r\n" + cLine + "a=c=2\r\n", head},
        Sections{"bareLf", "v=0\nc=IN IP4 192.0.2.1\nm=video 1 x 0\na=x\nm=audio 1 x 0\n",
                 "m=video 1 x 0\nc=IN IP4 192.0.2.1\na=x", "v=0\nc=IN IP4 192.0.2.1\n\nm=audio 1 x 0\n"},
        // The first c-line counts wherever it stands: in the section itself, or a later one, or in a value.
        Sections{"theConnectionOfTheSectionInFront", "v=0\r\n" + audio + ownLine + videoLine + "a=x\r\n",
                 videoLine + ownLine + "a=x\r\n", "v=0\r\n" + audio + ownLine},
        Sections{"theConnectionOfTheSectionBehind", "v=0\r\n" + videoLine + "a=x\r\n" + audio + ownLine,
                 videoLine + ownLine + withoutLf("a=x\r\n"), "v=0\r\n\n" + audio + ownLine},
        Sections{"theConnectionInAValue", "v=0\r\ni=abc=1\r\n" + head + videoLine, "c=1\r\n" + videoLine,
                 "v=0\r\ni=abc=1\r\n" + head},
        Sections{"apart", head + videoLine + ownLine + audio + videoLine + ownLine,
                 withoutLf(videoLine + ownLine) + videoLine + ownLine, head + "\n" + audio},
        Sections{"byTheStartOfTheName", head + "m=videoconf 1 x 0\r\n" + ownLine,
                 "m=videoconf 1 x 0\r\n" + ownLine, head},
        Sections{"none", head + audio, "", head + audio},
        Sections{"anotherCase", head + "m=Video 1 x 0\r\n", "", head + "m=Video 1 x 0\r\n"},
        Sections{"inAValue", head + "i=m=video 1 x 0\r\n", "", head + "i=m=video 1 x 0\r\n"},
        Sections{"inTheFirstLine", videoLine + ownLine, "", videoLine + ownLine}),
    [](const auto& tested) { return tested.param.name; });

TEST(AdjacentVideoSections, AreCollectedTogether) {
  const std::string one = "m=video 1 x 0\r\n" + ownLine;
  const std::string two = "m=video 2 x 0\r\n" + ownLine;
  const Extraction result = extract(head + one + two + audio, false);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.video, withoutLf(one) + withoutLf(two));
  EXPECT_EQ(result.sdp, head + one + two + audio);
}

// Deliberate: the search goes on eight characters behind the start of the section that has gone, which is behind
// the start of the one that took its place.
TEST(AdjacentVideoSections, OfTwoOnlyTheFirstIsRemoved) {
  const std::string one = "m=video 1 x 0\r\n" + ownLine;
  const std::string two = "m=video 2 x 0\r\n" + ownLine;
  const std::string three = "m=video 3 x 0\r\n" + ownLine;
  const Extraction result = extract(head + one + two + three, true);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.video, withoutLf(one) + three);
  EXPECT_EQ(result.sdp, head + "\n" + two);
}

// An m-line that has nothing behind its name, directly behind a section that is taken.
TEST(AdjacentVideoSections, AnMLineWithinEightCharactersIsNotFound) {
  const Extraction result = extract(head + "m=video\nm=video\n" + ownLine + "m=video\n", false);
  EXPECT_EQ(result.video, cLine + "m=video" + cLine + "m=video\n");
  EXPECT_EQ(extract("v=0\r\n" + ownLine + "m=video", true).video, ownLine + "m=video");
}

TEST(VideoSectionsResult, LosesItsLastCharacterInABufferOfItsSize) {
  const std::string body = head + videoLine + ownLine;
  const std::string all = videoLine + ownLine;
  const auto size = static_cast<unsigned int>(all.size());
  EXPECT_EQ(extract(body, false, size + 1).video, all);
  EXPECT_EQ(extract(body, false, size).video, withoutLf(all));
  const TraceLine tooSmall = {
      2, 2, "The size of Video part of SDP is bigger than the videoDescription buffer size"};
  for (const unsigned int small : {size - 1, 2U, 1U}) {
    TraceCapture trace;
    const Extraction result = extract(body, true, small);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.video, "");
    EXPECT_EQ(result.sdp, head);  // it is removed nevertheless
    EXPECT_TRUE(trace.has(2, 2, tooSmall.text));
  }
}

TEST(VideoSectionsResult, EndsTheBufferWithNul) {
  SdpBuffer buffer(head + videoLine + ownLine);
  char out[100];
  std::memset(out, '~', sizeof out);
  EXPECT_EQ(sdpModifications::getVideoDescriptions(buffer.data(), out, sizeof out, false), 0);
  EXPECT_EQ(std::string(out), videoLine + ownLine);
  EXPECT_EQ(out[sizeof out - 1], '\0');
}

// Three sections with a connection of 9000 characters each are more than any text.
TEST(VideoSectionsResult, OfMoreThanABufferIsEmptyAndLeavesTheBody) {
  const std::string connection = "c=" + std::string(8996, 'x') + "\r\n";
  const std::string one = "m=video 1 x 0\r\n";
  const std::string body = "v=0\r\n" + connection + audio + one + audio + one + audio + one;
  EditBuffer buffer(body);
  EditBuffer out("old");
  EXPECT_EQ(sdpModifications::getVideoDescriptions(buffer.data(), out.data(), EditBuffer::capacity, true), 0);
  buffer.expect("v=0\r\n" + connection + audio + "\n" + audio + "\n" + audio);
  out.expect("");
}

TEST(VideoSectionsResult, WritesNothingWithoutABuffer) {
  const std::string body = head + videoLine + ownLine;
  SdpBuffer buffer(body);
  char out = '~';
  EXPECT_EQ(sdpModifications::getVideoDescriptions(buffer.data(), &out, 0, false), 0);
  EXPECT_EQ(sdpModifications::getVideoDescriptions(buffer.data(), nullptr, 100, false), 0);
  EXPECT_EQ(sdpModifications::getVideoDescriptions(buffer.data(), nullptr, 0, false), 0);
  EXPECT_EQ(out, '~');
  buffer.expectText(body);
  SdpBuffer none(head + audio);
  EXPECT_EQ(sdpModifications::getVideoDescriptions(none.data(), &out, 0, false), 0);
  EXPECT_EQ(out, '~');
  EXPECT_EQ(sdpModifications::getVideoDescriptions(none.data(), &out, 1, false), 0);
  EXPECT_EQ(out, '\0');
}

TEST(VideoSectionsResult, NeedsAConnectionLineThatEndsInLf) {
  for (const std::string& body :
       {std::string("v=0\r\nm=video 1 x 0\r\n"), std::string("v=0\r\nm=video 1 x 0\r\nc=IN"), std::string(),
        withoutNul(head + videoLine)}) {
    char out = '~';
    const TextEdit edit = [&](char* sdp) {
      return sdpModifications::getVideoDescriptions(sdp, &out, 1, true);
    };
    expectUntouched(body, edit, 1);
    EXPECT_EQ(out, '~');
  }
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::getVideoDescriptions(nullptr, nullptr, 0, true), 1);
  EXPECT_EQ(
      trace.lines(),
      (Traces{{8, 4, "Entering getVideoDescriptions() method."},
              {4, 3, "getVideoDescriptions(): The SDP buffer is null or holds no end of text. Exiting."}}));
}

TEST(VideoSectionsResult, OfAFullBuffer) {
  std::string body = head;
  std::string wanted;
  std::string line = "m=video 1 x 0\n";
  while (body.size() + line.size() <= kLongestBody) {
    body += line;
    wanted += cLine + withoutLf(line);
  }
  body += std::string(kLongestBody - body.size(), 'x');
  wanted += body.substr(body.rfind('\n'));
  const Extraction result = extract(body, false, 60000);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.video, wanted);
}

TEST(VideoSectionsResult, TracesEachStep) {
  const auto detail = [](const std::string& text) { return TraceLine{8, 4, text}; };
  const std::string one = "m=video 1 x 0\r\na=x\r\n";
  const std::string two = "m=video 2 x 0\r\n" + ownLine;
  const std::string body = head + one + audio + two;
  const std::string first = "m=video 1 x 0\r\n" + cLine + "a=x\r";
  TraceCapture trace;
  EXPECT_EQ(extract(body, true).sdp, head + "\n" + audio);
  EXPECT_EQ(trace.lines(), (Traces{detail("Entering getVideoDescriptions() method."),
                                   detail("original sdp: " + body + "."),
                                   detail("c_line: " + withoutLf(cLine)),
                                   {2, 2, "mstart: " + one + audio + two},
                                   detail("next_mline: \n" + audio + two),
                                   detail("str1: " + withoutLf(one)),
                                   detail("str1: " + first),
                                   detail("str: " + first),
                                   detail("new sdp: " + head + "\n" + audio + two + "."),
                                   {2, 2, "mstart: " + two},
                                   detail("str1: " + two),
                                   detail("str1: " + two),
                                   detail("str: " + first + two),
                                   detail("new sdp: " + head + "\n" + audio + ".")}));
}

}  // namespace
