#include <functional>
#include <string>
#include <vector>

#include "modifiersTestSupport.h"
#include "sdpModifiers.h"

// Values that go into a line: one that holds a control character would make lines of its own, and is refused.

namespace {

using M = sdpModifications;

const std::string body = session + audio + "a=sendrecv\r\n" + video;

struct Argument {
  const char* name;
  std::string value;  ///< one that is taken
  const char* operation;
  std::function<unsigned short(char* sdp, const char* value)> edit;
  unsigned short refusal = 1;
};

void PrintTo(const Argument& argument, std::ostream* out) { *out << argument.name; }

unsigned short anyEnd = 0;
int anyLength = 0;

std::vector<Argument> arguments() {
  return {
      {"sessionId", "77", "sdpModifyOLine",
       [](char* sdp, const char* v) { return M::sdpModifyOLine(sdp, v, "1", nullptr, anyEnd); }},
      {"sessionVersion", "77", "sdpModifyOLine",
       [](char* sdp, const char* v) { return M::sdpModifyOLine(sdp, "1", v, nullptr, anyEnd); }},
      {"addressOfARequest", "192.0.2.7", "createSDPUserRequest",
       [](char* sdp, const char* v) { return M::createSDPUserRequest(sdp, v, 5004, "PCMU", false); }},
      {"direction", "inactive", "setMediaConnectionMode",
       [](char* sdp, const char* v) { return M::setMediaConnectionMode(sdp, nullptr, sdp, "video", v); }},
      {"transportOfALine", "RTP/SAVP", "sdpReplaceMLineTransportProtocol",
       [](char* sdp, const char* v) {
         char* const line = sdp + session.size();
         return M::sdpReplaceMLineTransportProtocol(line, sdp + session.size() + audio.size() - 1, "RTP/AVP",
                                                    v);
       }},
      // Its status is 0 whatever happens.
      {"transportOfMedia", "RTP/SAVP", "sdpSetMediaTransportType",
       [](char* sdp, const char* v) { return M::sdpSetMediaTransportType(sdp, "RTP/AVP", v, {"audio"}); }, 0},
      {"addressOfADummy", "192.0.2.7", "sdpCreateDummy",
       [](char* sdp, const char* v) {
         return M::sdpCreateDummy(sdp, true, true, v, 5004, anyLength, anyEnd, false);
       }},
  };
}

class LineText : public testing::TestWithParam<Argument> {};

TEST_P(LineText, WithAControlCharacterIsRefused) {
  const Argument& argument = GetParam();
  const TraceLine refused{
      4, 3, std::string(argument.operation) + "(): An argument holds a control character. Exiting."};
  for (int code = 1; code < 0x80; ++code) {
    if (code >= 0x20 && code < 0x7F) continue;
    const std::string control(1, static_cast<char>(code));
    for (const std::string& value : {control + argument.value, argument.value + control,
                                     argument.value + control + "a=injected", control}) {
      SCOPED_TRACE(code);
      const auto edit = [&](char* sdp) { return argument.edit(sdp, value.c_str()); };
      expectUntouched(body, edit, argument.refusal);
      TraceCapture trace;
      SdpBuffer buffer(body);
      edit(buffer.data());
      EXPECT_EQ(trace.count(refused.flag, refused.level, refused.text), 1);
    }
  }
}

TEST_P(LineText, WithoutOneIsTaken) {
  const Argument& argument = GetParam();
  SdpBuffer buffer(body);
  EXPECT_EQ(argument.edit(buffer.data(), argument.value.c_str()), 0);
  EXPECT_NE(std::string(buffer.data()), body);
  EXPECT_NE(std::string(buffer.data()).find(argument.value), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Arguments, LineText, testing::ValuesIn(arguments()),
                         [](const auto& each) { return each.param.name; });

TEST(LineTexts, MayHoldBytesAbove127) {
  SdpBuffer buffer(bodyWith("o=- 5 7 IN"));
  EXPECT_EQ(M::sdpModifyOLine(buffer.data(), "\x80\xFF", "\xC3\xBC", nullptr, anyEnd), 0);
  buffer.expectText(bodyWith("o=ZEV \x80\xFF \xC3\xBC IN IP4 0.0.0.0"));
}

// No address has a control character, so that these are refused as what they are: none.
TEST(LineTexts, AddressesWithAControlCharacterAreNone) {
  for (const char* const ip : {"192.0.2.7\r\na=injected", "192.0.2.7\n", "2001:db8::7\r", "\t192.0.2.7",
                               "2001:db8::7%\r\na=injected"}) {
    expectUntouched(
        body, [&](char* sdp) { return M::sdpReplaceCxIP(sdp, ip); }, 1);
    expectUntouched(
        body, [&](char* sdp) { return M::sdpModifyCLines(sdp, ip); }, 1);
    expectUntouched(
        body, [&](char* sdp) { return M::sdpModifyCLinesAllLines(sdp, ip); }, 1);
    expectUntouched(
        body, [&](char* sdp) { return M::sdpModifyOLine(sdp, ip, anyEnd); }, 1);
    expectUntouched(
        body, [&](char* sdp) { return M::sdpModifyOLine(sdp, "1", "2", ip, anyEnd); }, 1);
  }
}

}  // namespace
