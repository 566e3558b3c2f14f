#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "parserParseSupport.h"

// ICE attributes in the text, candidates that match the session, and the IP version that media indicate.

namespace {

using P = sdpParserMessage;

constexpr unsigned int lite = SDP_ATTR_ICE_LITE;
constexpr unsigned int full = SDP_ATTR_FULL_ICE;
constexpr unsigned int match = SDP_ATTR_ICE_CANDIDATES_MATCH;

const TraceLine liteLine = {8, 4, "There is an ice-lite attribute in the SDP."};
const TraceLine fullLine = {8, 4, "There is ice attributes in the SDP."};

struct IceCase {
  std::string text;
  unsigned int before;
  unsigned int after;
  TraceLines traces;
};

TEST(ParserIce, IsToldByTheText) {
  const std::vector<IceCase> cases = {
      {"", 0, 0, {}},
      {"", lite | full, 0, {}},
      {"a=ice-lite", 0, lite, {liteLine}},
      {"a=ice-lite", full, lite | full, {liteLine}},  // kept: the bit of full ICE is left as it was
      {"v=0\r\nA=ICE-LITE\r\n", 0, lite, {liteLine}},
      {"s=xa=ice-litex", 0, lite, {liteLine}},  // kept: anywhere in the text
      {"a=ice-pwd:x\r\na=ice-lite", 0, lite, {liteLine}},
      {"a=candidate:1", lite, full, {fullLine}},
      {"a=Candidate:", 0, full, {fullLine}},
      {"a=remote-candidates:1", 0, full, {fullLine}},
      {"a=ice-mismatch", 0, full, {fullLine}},
      {"a=ice-pwd:", 0, full, {fullLine}},
      {"a=ICE-ufrag:x", 0, full, {fullLine}},
      {"a=ice-options:x", 0, full, {fullLine}},
      {"a=ice-options:x\na=ice-pwd:y\n", 0, full, {fullLine}},
      {"a=a=ice-pwd:x", 0, full, {fullLine}},
      {"a==ice-pwd:x", full, 0, {}},
      {"=ice-lite", lite, 0, {}},
      {"b=ice-lite", 0, 0, {}},
      {"a = ice-lite", 0, 0, {}},
      {"a=candidate", full, 0, {}},
      {"a=remote-candidates", 0, 0, {}},
      {"a=ice-pwd", 0, 0, {}},
      {"a=ice-lit", 0, 0, {}},
      {"a=ice-", 0, 0, {}},
      {"a=i", 0, 0, {}},
      {"a=", 0, 0, {}},
      {"a", 0, 0, {}},
      {"=", 0, 0, {}},
      {"\xE1=ice-lite a=\xE9"
       "ce-lite",
       0,
       0,
       {}},
  };
  for (const IceCase& each : cases) {
    const TraceCapture capture;
    sSdpParsedData data = emptySummary();
    data.sdpAttributes = each.before | match;
    EXPECT_EQ(P::checkIce(ExactText(each.text), data), 0);
    EXPECT_EQ(data.sdpAttributes, each.after | match) << each.text;
    EXPECT_EQ(capture.lines(), each.traces) << each.text;
  }
  sSdpParsedData data = emptySummary();
  data.sdpAttributes = lite | full;
  EXPECT_EQ(P::checkIce(nullptr, data), 0);
  EXPECT_EQ(data.sdpAttributes, 0U);
}

/// The session has 192.0.2.1, the first m-line port 5004.
struct BodyIceCase {
  std::vector<std::string> lines;
  unsigned int bits;
};

// The parse asks the names of the attribute lines where they tell all of it, and the text where they do not.
TEST(ParserIce, OfABodyIsThatOfItsText) {
  const std::string audio = "m=audio 5004 RTP/AVP 0";
  const std::vector<std::string> more(SDP_ATTRIBUTE_CAPACITY, "a=x");
  const auto behindMore = [&](const std::string& line) {
    std::vector<std::string> lines = {audio};
    lines.insert(lines.end(), more.begin(), more.end());
    lines.push_back(line);
    return lines;
  };
  const std::vector<BodyIceCase> cases = {
      {{audio}, 0},
      {{audio, "a=ICE-Lite"}, lite},
      {{audio, "a=ice-litex:1"}, lite},
      {{audio, "a=ice-lit"}, 0},
      {{"a=ice-lite", audio}, lite},
      {{"a=ice-pwd:x", audio, "a=x"}, full},
      {{audio, "a=ice-pwd"}, 0},
      {{audio, "a=ice-pwd:"}, full},
      {{audio, "a=Ice-Ufrag:x"}, full},
      {{audio, "a=ice-options:x"}, full},
      {{audio, "a=ice-mismatchx"}, full},
      {{audio, "a=candidate"}, 0},
      {{audio, "a=candidates:1"}, 0},
      {{audio, "a=Candidate:1"}, full},
      {{audio, "a=candidate", "a=candidate:1"}, full},
      {{audio, "a=remote-candidates"}, 0},
      {{audio, "a=REMOTE-candidates:1"}, full},
      {{audio, "a=candidate:1", "a=ice-lite"}, lite},
      {{audio, "i=a=ice-lite"}, lite},  // inside a line as well
      {{audio, "a=x:a=candidate:1"}, full},
      {{audio, "a=x:xA=ICE-PWD:1"}, full},
      {{audio, "A=ice-lite"}, lite},  // a line that is not held
      {behindMore("a=ice-lite"), lite},
      {behindMore("a=ice-pwd:x"), full},
      {behindMore("a=y"), 0},
  };
  for (const BodyIceCase& each : cases) {
    const Parsed result = parsed(bodyOf(each.lines));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.data.sdpAttributes & (lite | full), each.bits) << each.lines.back();
    const TraceLines all = result.traces;
    EXPECT_EQ(std::count(all.begin(), all.end(), liteLine), each.bits == lite ? 1 : 0);
    EXPECT_EQ(std::count(all.begin(), all.end(), fullLine), each.bits == full ? 1 : 0);
  }
}

struct MatchCase {
  std::vector<std::string> lines;
  int status;
  int set;  ///< 1 or 0 for the bit, -1 for a bit that is left alone
  bool mismatch = false;
};

const std::string hostLine = "a=candidate:1 1 UDP 1 192.0.2.1 5004 typ host";
const std::string otherPort = "a=candidate:1 1 UDP 1 192.0.2.1 6000 typ host";
const std::string otherAddress = "a=candidate:1 1 UDP 1 192.0.2.77 5004 typ host";
const std::string neither = "a=candidate:1 1 UDP 1 198.51.100.7 6000 typ host";

void expectMatch(const std::string& text, const sDescription& description, const MatchCase& expected) {
  for (const unsigned int before : {0U, match}) {
    const TraceCapture capture;
    sSdpParsedData data = emptySummary();
    data.sdpAttributes = before;
    EXPECT_EQ(P::checkFullIceAttributes(ExactText(text), data, description), expected.status) << text;
    const unsigned int after = expected.set == -1 ? before : expected.set == 1 ? match : 0U;
    EXPECT_EQ(data.sdpAttributes, after) << text;
    const TraceLines mismatch = {{2, 2, "Ice mismatch occurred within the SDP"}};
    EXPECT_EQ(capture.lines(), expected.mismatch ? mismatch : TraceLines{}) << text;
  }
}

TEST(ParserCandidates, MatchWhenOneLineHoldsAddressAndPort) {
  const std::string audio = "m=audio 5004 RTP/AVP 0";
  const std::vector<MatchCase> cases = {
      {{audio}, 0, -1},  // no candidate
      {{audio, hostLine}, 0, 1},
      {{audio, neither, hostLine}, 0, 1},  // what is looked for stands further on
      {{audio, otherPort, hostLine}, 0, 1},
      {{audio, otherAddress, otherPort, hostLine}, 0, 1},
      {{audio, neither}, 0, 0, true},
      {{audio, otherPort}, 0, 0, true},
      {{audio, otherAddress}, 0, 0, true},
      {{audio, otherAddress, otherPort}, 0, 0, true},  // from the second line on there is no 5004 any more
      {{audio, otherAddress, otherPort, "a=x:5004"}, 0, -1},  // the lines run out
      {{audio, neither, "a=x:192.0.2.1 5004"}, 0, -1},
      {{audio, otherPort, otherAddress, "a=x:192.0.2.1"}, 0, -1},
      {{audio, hostLine + "0"}, 0, 1},  // kept: a piece of text, not a field
      {{audio, "a=candidate:1 1 UDP 1 192.0.2.15004"}, 0, 1},
      {{audio, "a=Candidate:1 1 UDP 1 192.0.2.1 5004"}, 0, -1},  // the name is compared exactly
      {{audio, "a=xa=candidate:192.0.2.1 5004"}, 0, 1},          // anywhere in the text
  };
  for (const MatchCase& each : cases) {
    const std::string body = bodyOf(each.lines);
    expectMatch(body, *decoded(body), each);
  }
}

TEST(ParserCandidates, CompareLettersOfTheAddressInEitherCase) {
  const std::string body =
      bodyOf({"m=audio 5004 x", "a=candidate:1 1 UDP 1 2001:DB8::A 5004"}, "c=IN IP6 2001:db8::a");
  expectMatch(body, *decoded(body), {{}, 0, 1});
}

TEST(ParserCandidates, NeedALineFeed) {
  const std::string body = bodyOf({"m=audio 5004 x"});
  const auto description = decoded(body);
  expectMatch(body + "a=candidate:192.0.2.1 5004", *description, {{}, 1, -1});
  expectMatch(body + "a=candidate:", *description, {{}, 1, -1});
  expectMatch(body + "a=candidate:192.0.2.1 5004\r", *description, {{}, 1, -1});
  expectMatch(body + "a=candidate:192.0.2.1 5004\n", *description, {{}, 0, 1});
  expectMatch(body + "a=candidate:1\na=candidate:192.0.2.1 5004", *description, {{}, 1, -1});
  expectMatch(body + "a=candidate", *description, {{}, 0, -1});
}

TEST(ParserCandidates, NeedAnAddressAndAPort) {
  sSdpParsedData data = emptySummary();
  data.sdpAttributes = match;
  const std::string body = bodyOf({"m=audio 5004 x", neither}, "");
  EXPECT_EQ(P::checkFullIceAttributes(ExactText(body), data, *decoded(body)), 1);
  const std::string noMedia = bodyOf({neither});
  EXPECT_EQ(P::checkFullIceAttributes(ExactText(noMedia), data, *decoded(noMedia)), 1);
  EXPECT_EQ(data.sdpAttributes, match);
  EXPECT_EQ(P::checkFullIceAttributes(nullptr, data, *decoded(bodyOf({"m=audio 5004 x"}))), 0);
  EXPECT_EQ(data.sdpAttributes, match);
}

// Looking for both texts anew for each line takes seconds for this body.
TEST(ParserCandidates, TakeTimeInProportionToTheText) {
  std::string text = bodyOf({"m=audio 65535 x"});
  const auto description = decoded(text);
  for (int i = 0; i < 20000; ++i) text += "a=candidate:1 1 UDP 192.0.2 5004\n";
  text += "a=x:192.0.2.1 65535\n";
  sSdpParsedData data = emptySummary();
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(P::checkFullIceAttributes(ExactText(text), data, *description), 0);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  EXPECT_LT(seconds.count(), 1.0);  // milliseconds without sanitizers
  EXPECT_EQ(data.sdpAttributes, 0U);
}

struct VersionCase {
  std::vector<std::string> lines;
  unsigned int version;
};

TEST(ParserIPIndication, FollowsCandidatesThenConnections) {
  const std::string active = "m=audio 5004 x";
  const std::string four = "c=IN IP4 192.0.2.1";
  const std::string six = "c=IN IP6 2001:db8::1";
  const std::string four4 = "a=candidate:192.0.2.1";
  const std::string six6 = "a=Candidate:2001:db8::1";
  const std::vector<VersionCase> cases = {
      {{}, 0},
      {{active}, 0},
      {{active, four}, 2},
      {{active, six}, 10},
      {{active, "c=IN IP4 2001:db8::1"}, 10},  // the address decides, not its type
      {{active, "c=IN IP6 x"}, 2},
      {{active, four, active, six}, 10},
      {{active, six, active, four}, 10},
      {{active, four, six}, 2},  // the first of an m-line
      {{"m=audio 0 x", six}, 0},
      {{"m=audio 0 x", six6}, 0},
      {{active, six, four4}, 2},
      {{active, four, six6}, 10},
      {{active, six6, active, four4}, 10},
      {{active, four4, "a=candidate:x"}, 0},  // deliberate: the last result counts, none included
      {{active, six, four4, "a=candidate"}, 10},
      {{active, "a=candidate:1 1 UDP 1 2001:db8::1 5004 typ host"}, 0},  // deliberate: the value as a whole
      {{active, "a=candidates:2001:db8::1", "a=remote-candidate:2001:db8::1"}, 0},
      {{active, "a=candidate:" + std::string(5000, '1')}, 0},
  };
  for (const VersionCase& each : cases) {
    EXPECT_EQ(P::checkMediaStreamsForIPIndication(*decoded(bodyOf(each.lines, ""))), each.version)
        << joined(each.lines);
  }
}

}  // namespace
