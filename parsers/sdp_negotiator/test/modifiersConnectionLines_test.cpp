#include <span>

#include "modifiersTestSupport.h"

// The address in the connection lines of a session and of its media sections.

namespace {

using M = sdpModifications;

const std::string head = "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\n";
const std::string oldLine = "c=IN IP4 192.0.2.1\r\n";
const std::string newLine = "c=IN IP4 10.0.0.1\r\n";
const std::string newLine6 = "c=IN IP6 2001:db8::1\r\n";
const std::string audioOff = "m=audio 0 RTP/AVP 0\r\n";

const TraceLine entering{8, 4, "Entering sdpReplaceCxIP() method. ip=[10.0.0.1]"};
const TraceLine replaced{8, 4, "The IP address has been changed to 10.0.0.1. Exiting."};
const TraceLine noRoom{4, 3, "sdpReplaceCxIP(): The new c-line does not fit the SDP buffer. Exiting."};

TraceLine unusable(const std::string& operation) {
  return {4, 3, operation + "(): The SDP buffer is null or holds no end of text. Exiting."};
}

struct Case {
  const char* name;
  std::string before;
  unsigned short status;
  std::string after;
  int rewritten;  ///< c-lines
};

using Operation = unsigned short (*)(char*, const char*);

void expectCases(Operation operation, std::span<const Case> cases) {
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    TraceCapture trace;
    expectEdit(
        each.before, [&](char* sdp) { return operation(sdp, "10.0.0.1"); }, each.status, each.after);
    Traces wanted;
    for (int i = 0; i < each.rewritten; ++i) wanted.insert(wanted.end(), {entering, replaced});
    EXPECT_EQ(trace.takeLines(), wanted);
    // Once more in a block that ends behind its NUL: the new address is the shorter one.
    const auto exact = std::make_unique<char[]>(each.before.size() + 1);
    std::memcpy(exact.get(), each.before.c_str(), each.before.size() + 1);
    EXPECT_EQ(operation(exact.get(), "10.0.0.1"), each.status);
    EXPECT_STREQ(exact.get(), each.after.c_str());
  }
}

const Case allAudio[] = {
    {"neither c-line nor m-line", head + "t=0 0\r\n", 0, head + "t=0 0\r\n", 0},
    {"an empty text", "", 0, "", 0},
    {"the session's alone", head + oldLine + "t=0 0\r\n", 0, head + newLine + "t=0 0\r\n", 1},
    {"the session's and a section's", head + oldLine + audio + oldLine, 0, head + newLine + audio + newLine,
     2},
    {"a section's alone", head + audio + oldLine, 0, head + audio + newLine, 1},
    {"a section's behind other lines", head + audio + "b=AS:64\r\n" + oldLine + "a=ptime:20\r\n", 0,
     head + audio + "b=AS:64\r\n" + newLine + "a=ptime:20\r\n", 1},
    {"those of several audio sections", head + audio + oldLine + audio + audio + oldLine, 0,
     head + audio + newLine + audio + audio + newLine, 2},
    {"only the first of a section", head + audio + oldLine + oldLine, 0, head + audio + newLine + oldLine, 1},
    {"only the first of the session", head + oldLine + oldLine + audio, 0, head + newLine + oldLine + audio,
     1},
    {"none of a port 0", head + oldLine + audioOff + oldLine + audio + oldLine, 0,
     head + newLine + audioOff + oldLine + audio + newLine, 2},
    {"none of other media",
     head + video + oldLine + "m=application 1 UDP x\r\n" + oldLine + "m=image 1 udptl t38\r\n" + oldLine +
         audio + oldLine,
     0,
     head + video + oldLine + "m=application 1 UDP x\r\n" + oldLine + "m=image 1 udptl t38\r\n" + oldLine +
         audio + newLine,
     1},
    {"no later section's", head + audio + video + oldLine, 0, head + audio + video + oldLine, 0},
    {"LF only", "v=0\nc=IN IP4 192.0.2.1\nm=audio 1 RTP/AVP 0\nc=IN IP4 192.0.2.1\n", 0,
     "v=0\n" + newLine + "m=audio 1 RTP/AVP 0\n" + newLine, 2},
    {"an m-line that names audio only in part", head + "m=audiox 1 RTP/AVP 0\r\n" + oldLine, 0,
     head + "m=audiox 1 RTP/AVP 0\r\n" + newLine, 1},
    {"in the text's first line", "m=audio 1 RTP/AVP 0\r\n" + oldLine, 0, "m=audio 1 RTP/AVP 0\r\n" + newLine,
     1},
    {"a section that stands in the text's first line", "m=audio 1 RTP/AVP 0\r\n" + audioOff + oldLine, 0,
     "m=audio 1 RTP/AVP 0\r\n" + audioOff + oldLine, 0},
    // What was rewritten before a failure stays.
    {"a port that is none", head + oldLine + audio + oldLine + "m=audio x RTP/AVP 0\r\n" + audio + oldLine, 1,
     head + newLine + audio + newLine + "m=audio x RTP/AVP 0\r\n" + audio + oldLine, 2},
    {"an m-line without LF", head + audio + oldLine + "m=audio 1 RTP/AVP 0", 1,
     head + audio + newLine + "m=audio 1 RTP/AVP 0", 1},
};

TEST(ModifyCLines, SetsTheSessionsAndAllActiveAudioSections) { expectCases(&M::sdpModifyCLines, allAudio); }

// Deliberate: the name says all, but at most two are looked at, and the second in no usual body.
const Case atMostTwo[] = {
    {"neither c-line nor m-line", head + "t=0 0\r\n", 0, head + "t=0 0\r\n", 0},
    {"the first section's", head + audio + oldLine + audio + oldLine, 0,
     head + audio + newLine + audio + oldLine, 1},
    {"of whatever medium", head + video + oldLine + audio + oldLine, 0,
     head + video + newLine + audio + oldLine, 1},
    {"the first section has port 0", head + audioOff + oldLine + audio + oldLine, 0,
     head + audioOff + oldLine + audio + oldLine, 0},
    {"the first section has none", head + audio + video + oldLine, 0, head + audio + video + oldLine, 0},
    {"a port that is none", head + "m=audio x RTP/AVP 0\r\n" + oldLine, 1,
     head + "m=audio x RTP/AVP 0\r\n" + oldLine, 0},
    // With a session c-line the port is read from the text's second character on.
    {"the session's, and no port in v=0", head + oldLine + audio + oldLine, 1,
     head + newLine + audio + oldLine, 1},
    {"the session's alone", head + oldLine, 1, head + newLine, 1},
    {"the session's twice, by a port in the first line", "v=0 7 x\r\n" + oldLine + audio + oldLine, 0,
     "v=0 7 x\r\n" + newLine + audio + oldLine, 2},
    {"the session's once, by a port 0 in the first line", "v=0 0 x\r\n" + oldLine + audio + oldLine, 0,
     "v=0 0 x\r\n" + newLine + audio + oldLine, 1},
};

TEST(ModifyCLinesAllLines, SetsTheSessionsOrTheFirstSections) {
  expectCases(&M::sdpModifyCLinesAllLines, atMostTwo);
}

constexpr Operation operations[] = {&M::sdpModifyCLines, &M::sdpModifyCLinesAllLines};

TEST(ModifyCLinesOfBoth, TakeAnIpv6Address) {
  for (const Operation operation : operations) {
    expectEdit(
        head + audio + oldLine, [&](char* sdp) { return operation(sdp, "2001:db8::1"); }, 0,
        head + audio + newLine6);
  }
}

TEST(ModifyCLinesOfBoth, RefuseAnInvalidAddressAtTheFirstLine) {
  const Traces traces{{8, 4, "Entering sdpReplaceCxIP() method. ip=[abc]"},
                      {4, 3, "The new IP address is malformed. Exiting..."}};
  for (const Operation operation : operations) {
    for (const std::string& before : {head + oldLine + audio + oldLine, head + audio + oldLine}) {
      SdpBuffer buffer(before);
      TraceCapture trace;
      EXPECT_EQ(operation(buffer.data(), "abc"), 1);
      buffer.expectText(before);
      EXPECT_EQ(trace.takeLines(), traces);
    }
    // Nothing to rewrite: the address is not looked at, as a missing one is not.
    expectUntouched(
        head + audioOff + oldLine, [&](char* sdp) { return operation(sdp, nullptr); }, 0);
  }
}

TEST(ModifyCLinesOfBoth, RefuseALineWithoutLf) {
  for (const Operation operation : operations) {
    TraceCapture trace;
    expectEdit(
        head + audio + "c=IN IP4 192.0.2.1", [&](char* sdp) { return operation(sdp, "10.0.0.1"); }, 1,
        head + audio + "c=IN IP4 192.0.2.1");
    EXPECT_EQ(trace.takeLines(), (Traces{entering, {4, 3, "Bad termination of <cline>. Exiting."}}));
  }
}

// The new line is one character longer; the end of the buffer counts, not 20480 characters from the line on.
TEST(ModifyCLinesOfBoth, StayInTheBuffer) {
  const std::string shorter = "c=IN IP4 10.0.0.\r\n";
  for (const Operation operation : operations) {
    for (const bool fits : {true, false}) {
      const std::string before = filledTo(kLongestBody - (fits ? 1 : 0), head + audio + shorter);
      SdpBuffer buffer(before);
      TraceCapture trace;
      EXPECT_EQ(operation(buffer.data(), "10.0.0.1"), fits ? 0 : 1);
      buffer.expectText(fits ? head + audio + newLine + before.substr((head + audio + shorter).size())
                             : before);
      EXPECT_EQ(trace.takeLines(), (Traces{entering, fits ? replaced : noRoom}));
    }
  }
}

TEST(ModifyCLines, KeepsWhatItRewroteBeforeTheBufferWasFull) {
  const std::string shorter = "c=IN IP4 10.0.0.\r\n";
  const std::string before = filledTo(kLongestBody - 1, head + shorter + audio + shorter);
  SdpBuffer buffer(before);
  TraceCapture trace;
  EXPECT_EQ(M::sdpModifyCLines(buffer.data(), "10.0.0.1"), 1);
  buffer.expectText(head + newLine + before.substr((head + shorter).size()));
  EXPECT_EQ(trace.takeLines(), (Traces{entering, replaced, entering, noRoom}));
}

TEST(ModifyCLinesOfBoth, RefuseABufferWithoutText) {
  const char* const names[] = {"sdpModifyCLines", "sdpModifyCLinesAllLines"};
  for (std::size_t i = 0; i < std::size(operations); ++i) {
    TraceCapture trace;
    EXPECT_EQ(operations[i](nullptr, "10.0.0.1"), 1);
    EXPECT_EQ(trace.takeLines(), Traces{unusable(names[i])});
    std::vector<char> text = unterminatedBuffer();
    EXPECT_EQ(operations[i](text.data(), "10.0.0.1"), 1);
    EXPECT_EQ(text, unterminatedBuffer());
    EXPECT_EQ(trace.takeLines(), Traces{unusable(names[i])});
  }
}

}  // namespace
