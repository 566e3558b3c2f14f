#include <gtest/gtest.h>

#include <string>

#include "modifiersTestSupport.h"

// The m-lines of a body as a set, compared with those of an older one.

namespace {

using M = sdpModifications;

const std::string base = "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n";

std::string mLine(const std::string& media, int port, const std::string& transport = "RTP/AVP") {
  return "m=" + media + " " + std::to_string(port) + " " + transport + " 0\r\n";
}

/// A body with this many different m-lines.
std::string bodyOf(int count, const std::string& media = "audio", int firstPort = 5000) {
  std::string body = base;
  for (int i = 0; i < count; ++i) body += mLine(media, firstPort + i);
  return body;
}

std::string with(const std::string& mLines) { return base + mLines; }

const TraceLine entering = {8, 4, "Entering compareNumberOfMLines() method."};
const TraceLine adding = {2, 2, "compareNumberOfMLines() method, adding new m-line."};

TraceLine chosen(const std::string& verb, int type, const std::string& port, const std::string& transport) {
  return {2, 2,
          "Media to " + verb + " [Type=" + std::to_string(type) + ",Port=" + port +
              ",Transport=" + transport + "]"};
}

TraceLine unusable(const std::string& operation) {
  return {4, 3, operation + "(): The SDP buffer is null or holds no end of text. Exiting."};
}

struct Comparison {
  int before;
  int after;
  int result;
  const char* trace;
};

TEST(MLineNumbers, AreCompared) {
  const char* const more = "Old SDP has more m-lines from the new SDP.";
  const char* const less = "Old SDP has less m-lines than the new SDP.";
  const char* const same = "Old SDP has the same number of m-lines with the new SDP.";
  const Comparison cases[] = {{0, 0, 0, same},   {1, 0, -1, more},  {0, 1, 1, less},    {2, 2, 0, same},
                              {25, 25, 0, same}, {24, 25, 1, less}, {26, 25, -1, more}, {26, 26, 0, same},
                              {25, 26, 1, less}, {40, 26, -1, more}};
  for (const Comparison& one : cases) {
    SdpBuffer before(bodyOf(one.before));
    const std::string after = bodyOf(one.after, "video");
    TraceCapture trace;
    EXPECT_EQ(M::compareNumberOfMLines(before.data(), after.c_str()), one.result) << one.trace;
    EXPECT_EQ(trace.lines(), (Traces{entering, {8, 4, one.trace}})) << one.before << ' ' << one.after;
    before.expectText(bodyOf(one.before));
  }
}

TEST(MLineNumbers, OfABodyThatCannotBeReadAreNotCompared) {
  SdpBuffer good(bodyOf(1));
  SdpBuffer bad("x=0\r\n");
  SdpBuffer empty("");
  SdpBuffer unended(withoutNul(bodyOf(1)));
  TraceCapture trace;
  EXPECT_EQ(M::compareNumberOfMLines(bad.data(), good.data()), -2);
  EXPECT_EQ(M::compareNumberOfMLines(good.data(), bad.data()), -2);
  EXPECT_EQ(M::compareNumberOfMLines(empty.data(), good.data()), -2);
  EXPECT_EQ(trace.takeLines(), (Traces{entering, entering, entering}));
  const Traces refused = {entering, unusable("compareNumberOfMLines")};
  EXPECT_EQ(M::compareNumberOfMLines(nullptr, good.data()), -2);
  EXPECT_EQ(trace.takeLines(), refused);
  EXPECT_EQ(M::compareNumberOfMLines(good.data(), nullptr), -2);
  EXPECT_EQ(trace.takeLines(), refused);
  EXPECT_EQ(M::compareNumberOfMLines(unended.data(), good.data()), -2);
  EXPECT_EQ(trace.takeLines(), refused);
  EXPECT_EQ(M::compareNumberOfMLines(good.data(), unended.data()), -2);
  EXPECT_EQ(trace.takeLines(), refused);
}

TEST(SingleMLine, IsToldByTheNumber) {
  for (const int count : {0, 1, 2, 25, 26}) {
    SdpBuffer buffer(bodyOf(count));
    EXPECT_EQ(M::isSingleMLineSdp(buffer.data()), count == 1) << count;
    buffer.expectText(bodyOf(count));
  }
  SdpBuffer closed(with(mLine("video", 0)));
  EXPECT_TRUE(M::isSingleMLineSdp(closed.data()));  // whatever it is
  for (const std::string& text :
       {std::string(), std::string("m=audio 1 RTP/AVP 0\r\n"), withoutNul(bodyOf(1))}) {
    SdpBuffer buffer(text);
    EXPECT_FALSE(M::isSingleMLineSdp(buffer.data()));
  }
  TraceCapture trace;
  EXPECT_FALSE(M::isSingleMLineSdp(nullptr));
  EXPECT_EQ(trace.lines(), Traces{unusable("isSingleMLineSdp")});
}

struct Correction {
  const char* name;
  std::string before;
  std::string now;
  bool keepOnly;
  bool matchTransport;
  std::string after;
  Traces traces;
};

class MLineCorrection : public testing::TestWithParam<Correction> {};

TEST_P(MLineCorrection, RewritesTheNewBody) {
  const Correction& one = GetParam();
  SdpBuffer before(one.before);
  SdpBuffer now(one.now);
  TraceCapture trace;
  EXPECT_EQ(M::correctMLines(before.data(), now.data(), one.keepOnly, one.matchTransport), 0);
  now.expectText(one.after);
  before.expectText(one.before);
  Traces traces = {entering};
  traces.insert(traces.end(), one.traces.begin(), one.traces.end());
  EXPECT_EQ(trace.lines(), traces);
}

const std::string attributes = "c=IN IP4 192.0.2.5\r\nb=AS:64\r\na=sendonly\r\na=ptime:20\r\n";

INSTANTIATE_TEST_SUITE_P(
    Keeping, MLineCorrection,
    testing::Values(Correction{"whatMatchesStaysWithItsLines",
                               with(mLine("audio", 5000) + mLine("video", 5002)),
                               with(mLine("text", 6000) + "a=x\r\n" + mLine("audio", 6002) + attributes +
                                    mLine("image", 6004, "udptl")),
                               true,
                               true,
                               with(mLine("audio", 6002) + attributes),
                               {chosen("Keep", 1, "6002", "RTP/AVP")}},
                    Correction{"anotherTransportGoes",
                               with(mLine("audio", 5000, "RTP/SAVP")),
                               with(mLine("audio", 6000)),
                               true,
                               true,
                               base,
                               {}},
                    Correction{"noneOfNone", base, base, true, true, base, {}},
                    Correction{"noneIsLeftOfSome", base, bodyOf(3), true, true, base, {}},
                    Correction{"noneIsAdded", bodyOf(3), base, true, true, base, {}},
                    // Deliberate: one stays as many times as it matches.
                    Correction{"onceForEachMatch",
                               with(mLine("audio", 5000) + mLine("video", 5002) + mLine("audio", 5004)),
                               with(mLine("image", 6000) + mLine("video", 6002) + "a=v\r\n" +
                                    mLine("audio", 6004) + "a=a\r\n"),
                               true,
                               true,
                               with(mLine("video", 6002) + "a=v\r\n" + mLine("audio", 6004) + "a=a\r\n" +
                                    mLine("audio", 6004) + "a=a\r\n"),
                               {chosen("Keep", 2, "6002", "RTP/AVP"), chosen("Keep", 1, "6004", "RTP/AVP"),
                                chosen("Keep", 1, "6004", "RTP/AVP")}},
                    Correction{"theFirstManyTimesInFrontOfOthers",
                               with(mLine("audio", 5000) + mLine("audio", 5002) + mLine("audio", 5004) +
                                    mLine("video", 1)),
                               with(mLine("audio", 6000) + "a=1\r\n" + mLine("video", 6002) + "a=2\r\n" +
                                    mLine("text", 6004) + mLine("audio", 6006)),
                               true,
                               true,
                               with(mLine("audio", 6000) + "a=1\r\n" + mLine("audio", 6000) + "a=1\r\n" +
                                    mLine("audio", 6000) + "a=1\r\n" + mLine("video", 6002) + "a=2\r\n" +
                                    mLine("audio", 6006) + mLine("audio", 6006) + mLine("audio", 6006)),
                               {chosen("Keep", 1, "6000", "RTP/AVP"), chosen("Keep", 1, "6000", "RTP/AVP"),
                                chosen("Keep", 1, "6000", "RTP/AVP"), chosen("Keep", 2, "6002", "RTP/AVP"),
                                chosen("Keep", 1, "6006", "RTP/AVP"), chosen("Keep", 1, "6006", "RTP/AVP"),
                                chosen("Keep", 1, "6006", "RTP/AVP")}},
                    Correction{"theCodecsForm",
                               with("m=audio 5000 RTP/AVP 0\n"),
                               with("m=audio  6000\tRTP/AVP  0\n\n"),
                               true,
                               true,
                               with(mLine("audio", 6000)),
                               {chosen("Keep", 1, "6000", "RTP/AVP")}},
                    // Media of unknown names are of one type.
                    Correction{"unknownMedia",
                               with(mLine("foo", 5000)),
                               with(mLine("bar", 6000)),
                               true,
                               true,
                               with(mLine("bar", 6000)),
                               {chosen("Keep", 0, "6000", "RTP/AVP")}}),
    [](const auto& tested) { return tested.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Adding, MLineCorrection,
    testing::Values(
        Correction{
            "whatIsMissingComesAtTheEnd",
            with(mLine("video", 5002) + attributes + mLine("audio", 5000) + mLine("text", 5004) + "a=x\r\n"),
            with(mLine("audio", 6000) + "a=y\r\n"),
            false,
            false,
            with(mLine("audio", 6000) + "a=y\r\n" + mLine("video", 5002) + mLine("text", 5004)),
            {chosen("Add", 2, "5002", "RTP/AVP"), chosen("Add", 32, "5004", "RTP/AVP"), adding, adding}},
        Correction{"theTransportDoesNotCount",
                   with(mLine("audio", 5004, "RTP/SAVP")),
                   with(mLine("audio", 6000)),
                   false,
                   false,
                   with(mLine("audio", 6000)),
                   {}},
        Correction{"norWhenOnlyKeepingIsAsked",
                   with(mLine("audio", 5004, "RTP/SAVP") + mLine("video", 5006)),
                   with(mLine("audio", 6000)),
                   true,
                   false,
                   with(mLine("audio", 6000) + mLine("video", 5006)),
                   {chosen("Add", 2, "5006", "RTP/AVP"), adding}},
        // Only the first digit becomes 0; the others stay.
        Correction{"anotherTransportComesWithAZero",
                   with(mLine("audio", 5004, "RTP/SAVP") + attributes),
                   with(mLine("audio", 6000)),
                   false,
                   true,
                   with(mLine("audio", 6000) + "m=audio 0004 RTP/SAVP 0\r\n"),
                   {chosen("Add", 1, "0004", "RTP/SAVP"), adding}},
        Correction{"anotherMediumKeepsItsPort",
                   with(mLine("video", 5004, "RTP/SAVP")),
                   with(mLine("audio", 6000)),
                   false,
                   true,
                   with(mLine("audio", 6000) + mLine("video", 5004, "RTP/SAVP")),
                   {chosen("Add", 2, "5004", "RTP/SAVP"), adding}},
        Correction{"theTransportBehindAnotherOne",
                   with(mLine("audio", 5004, "RTP/SAVP")),
                   with(mLine("audio", 6000) + mLine("audio", 6002, "RTP/SAVP")),
                   false,
                   true,
                   with(mLine("audio", 6000) + mLine("audio", 6002, "RTP/SAVP")),
                   {}},
        Correction{"thePortsSuffixAndAllFormats",
                   with("m=video 5004/2 RTP/AVP 31 96 97\r\na=x\r\n"),
                   base,
                   false,
                   false,
                   with("m=video 5004/2 RTP/AVP 31 96 97\r\n"),
                   {chosen("Add", 2, "5004", "RTP/AVP"), adding}},
        // What is added does not count as present for the next.
        Correction{
            "eachOfSeveral",
            with(mLine("audio", 5000) + mLine("audio", 5002)),
            base,
            false,
            false,
            with(mLine("audio", 5000) + mLine("audio", 5002)),
            {chosen("Add", 1, "5000", "RTP/AVP"), chosen("Add", 1, "5002", "RTP/AVP"), adding, adding}},
        Correction{"noneOfNone", base, base, false, true, base, {}},
        Correction{"nothingIsMissing", bodyOf(2), bodyOf(1), false, true, bodyOf(1), {}},
        Correction{"theNewOneHasMore", bodyOf(1), bodyOf(2), false, false, bodyOf(2), {}}),
    [](const auto& tested) { return tested.param.name; });

/// Corrects bodies of some numbers of m-lines, all of different ports.
void expectNumbers(const std::string& before, const std::string& now, bool keepOnly, bool matchTransport,
                   const std::string& after, unsigned short status = 0) {
  SCOPED_TRACE((keepOnly ? "keep " : "add ") + std::string(matchTransport ? "by transport" : "by medium"));
  SdpBuffer oldBuffer(before);
  SdpBuffer newBuffer(now);
  EXPECT_EQ(M::correctMLines(oldBuffer.data(), newBuffer.data(), keepOnly, matchTransport), status);
  newBuffer.expectText(after);
  oldBuffer.expectText(before);
}

TEST(MLineCorrectionOfMany, KeepsAllFrom25On) {
  const std::string one = bodyOf(1);
  const std::string five = bodyOf(5, "audio", 6000);
  expectNumbers(one, bodyOf(25), true, true, bodyOf(25));
  // 24 are fewer than 25: replaced by the copies.
  std::string copies = base;
  for (int i = 0; i < 24; ++i) copies += mLine("audio", 5000);
  expectNumbers(bodyOf(24), one, true, true, copies);
  expectNumbers(bodyOf(25), one, true, true, one);  // the whole list of 25 is not taken over
  expectNumbers(five, five, true, true, five);      // 25 matches
  expectNumbers(bodyOf(25), bodyOf(25), true, true, bodyOf(25));
}

TEST(MLineCorrectionOfMany, TracesNoMoreThan25Kept) {
  SdpBuffer before(bodyOf(25));
  SdpBuffer now(bodyOf(25));
  TraceCapture trace;
  EXPECT_EQ(M::correctMLines(before.data(), now.data(), true, true), 0);
  EXPECT_EQ(trace.lines(), [] {
    Traces lines(26, chosen("Keep", 1, "5000", "RTP/AVP"));
    lines[0] = entering;
    return lines;
  }());
}

TEST(MLineCorrectionOfMany, AddsUpTo25) {
  for (const bool matchTransport : {false, true}) {
    expectNumbers(bodyOf(25), base, false, matchTransport, bodyOf(25));
    expectNumbers(bodyOf(24, "video"), bodyOf(1), false, matchTransport,
                  bodyOf(1) + bodyOf(24, "video").substr(base.size()));
    expectNumbers(bodyOf(25, "video"), bodyOf(1), false, matchTransport,
                  bodyOf(1) + bodyOf(24, "video").substr(base.size()));
    expectNumbers(bodyOf(25, "video"), bodyOf(25), false, matchTransport, bodyOf(25));
    expectNumbers(bodyOf(1, "video"), bodyOf(24), false, matchTransport, bodyOf(24) + mLine("video", 5000));
    expectNumbers(bodyOf(2, "video"), bodyOf(25), false, matchTransport, bodyOf(25));
  }
  expectNumbers(bodyOf(2, "video"), bodyOf(1), true, false,
                bodyOf(1) + mLine("video", 5000) + mLine("video", 5001));
}

TEST(MLineCorrectionOfMany, TracesWhatIsChosenAndWhatIsAdded) {
  SdpBuffer before(bodyOf(2, "video"));
  SdpBuffer now(bodyOf(24));
  TraceCapture trace;
  EXPECT_EQ(M::correctMLines(before.data(), now.data(), false, true), 0);
  EXPECT_EQ(trace.lines(), (Traces{entering, chosen("Add", 2, "5000", "RTP/AVP"),
                                   chosen("Add", 2, "5001", "RTP/AVP"), adding}));
}

// What the codec cannot hold would be lost.
TEST(MLineCorrectionRefusal, OfABodyThatIsNotHeldWhole) {
  const std::string unknownLine = base + "x=1\r\n" + mLine("audio", 5000);
  const std::string complete = bodyOf(1);
  TraceCapture trace;
  const std::string longTransport = base + mLine("audio", 5000, std::string(64, 'x'));
  const TraceLine refused = {4, 3,
                             "correctMLines(): A description does not hold all lines of its SDP. Exiting."};
  for (const bool keepOnly : {false, true}) {
    for (const bool matchTransport : {false, true}) {
      for (const std::string& incomplete : {bodyOf(26), longTransport, unknownLine}) {
        trace.takeLines();
        expectNumbers(complete, incomplete, keepOnly, matchTransport, incomplete, 1);
        EXPECT_EQ(trace.takeLines(), (Traces{entering, refused}));
      }
      for (const std::string& incomplete : {bodyOf(26), longTransport}) {
        trace.takeLines();
        expectNumbers(incomplete, complete, keepOnly, matchTransport, complete, 1);
        EXPECT_EQ(trace.takeLines(), (Traces{entering, refused}));
      }
    }
  }
}

// Of the older body only the m-lines count, so that its other lines may be more than the codec holds.
TEST(MLineCorrectionOfMany, TakesAnOlderBodyWhoseMLinesAreHeld) {
  std::string attributeLines;
  for (int i = 0; i < 256; ++i) attributeLines += "a=x\r\n";
  const std::string longValue = "a=x:" + std::string(350, 'v') + "\r\n";
  for (const std::string& more : {std::string("x=1\r\n"), attributeLines, longValue}) {
    const std::string before = with(mLine("audio", 5000) + more + mLine("video", 5002) + more);
    expectNumbers(before, bodyOf(1), false, false, bodyOf(1) + mLine("video", 5002));
    expectNumbers(before, bodyOf(3), true, true, bodyOf(3));
  }
}

TEST(MLineCorrectionOfMany, AddsNoneOfTheLinesBehindAnMLine) {
  const std::string lines =
      "i=title\r\nc=IN IP4 192.0.2.5\r\nb=AS:64\r\nk=clear:k\r\na=sendonly\r\na=ptime:20\r\n";
  expectNumbers(with(mLine("video", 5002) + lines), bodyOf(1), false, true, bodyOf(1) + mLine("video", 5002));
  // A port of one digit becomes 0.
  expectNumbers(with(mLine("audio", 9, "RTP/SAVP") + lines), bodyOf(1), false, true,
                bodyOf(1) + mLine("audio", 0, "RTP/SAVP"));
}

TEST(MLineCorrectionRefusal, OfABodyThatCannotBeRead) {
  const std::string good = bodyOf(1);
  const std::string bad = "x=0\r\n";
  TraceCapture trace;
  expectNumbers(bad, good, true, true, good, 1);
  expectNumbers(good, bad, true, true, bad, 1);
  expectNumbers("", good, false, true, good, 1);
  EXPECT_EQ(trace.takeLines(), (Traces{entering, entering, entering}));
  SdpBuffer buffer(good);
  const Traces refused = {entering, unusable("correctMLines")};
  EXPECT_EQ(M::correctMLines(nullptr, buffer.data(), true, true), 1);
  EXPECT_EQ(trace.takeLines(), refused);
  EXPECT_EQ(M::correctMLines(buffer.data(), nullptr, true, true), 1);
  EXPECT_EQ(trace.takeLines(), refused);
  expectUntouched(
      withoutNul(good), [&](char* sdp) { return M::correctMLines(buffer.data(), sdp, true, true); }, 1);
  expectUntouched(
      withoutNul(good), [&](char* sdp) { return M::correctMLines(sdp, buffer.data(), true, true); }, 1);
  buffer.expectText(good);
}

TEST(MLineCorrectionRefusal, OfAResultThatDoesNotFit) {
  const std::string added = mLine("video", 5000);
  const std::string before = with(added);
  for (const std::size_t room : {added.size() + 1, added.size(), added.size() - 1, std::size_t{0}}) {
    // In the codec's form but for one line that ends in LF.
    const std::string now = completeBody(kLongestBody - room);
    SdpBuffer oldBuffer(before);
    SdpBuffer newBuffer(now);
    SCOPED_TRACE(room);
    const std::string form = now.substr(0, now.find("a=n\n")) + "a=n\r\n" + now.substr(now.find("a=n\n") + 4);
    const bool fits = form.size() + added.size() <= kLongestBody;
    TraceCapture trace;
    EXPECT_EQ(M::correctMLines(oldBuffer.data(), newBuffer.data(), false, false), fits ? 0 : 1);
    EXPECT_TRUE(newBuffer.all().c_str() == (fits ? form + added : now)) << "another text";
    newBuffer.expectGuard();
    EXPECT_EQ(trace.has(4, 3, "correctMLines(): The new SDP does not fit the SDP buffer. Exiting."), !fits);
  }
}

TEST(MLineCorrectionOfMany, OfABodyWithItself) {
  for (const bool keepOnly : {false, true}) {
    SdpBuffer buffer(bodyOf(1));
    EXPECT_EQ(M::correctMLines(buffer.data(), buffer.data(), keepOnly, true), 0);
    buffer.expectText(bodyOf(1));
  }
}

}  // namespace
