#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "modifiersTestSupport.h"
#include "sdpModifiers.h"

// The transport field of one m-line (RFC 4566 5.14), given by the line's start and end in its text.

namespace {

const TraceLine kEntering = {2, 2, "Entering sdpReplaceMLineTransportProtocol() method."};
const TraceLine kChanging = {2, 2, " sdpReplaceMLineTransportProtocol() method. Changing transport type"};

/// Sets the transport of the line that begins at `mLine` and ends at its first LF.
TextEdit setTransport(std::size_t mLine, const char* expected, const char* transport) {
  return [=](char* sdp) {
    char* const line = sdp + mLine;
    return sdpModifications::sdpReplaceMLineTransportProtocol(line, std::strchr(line, '\n'), expected,
                                                              transport);
  };
}

struct Change {
  const char* name;
  std::string before;
  const char* expected;
  const char* transport;
  std::string after;
};

class TransportChange : public testing::TestWithParam<Change> {};

TEST_P(TransportChange, ReplacesTheThirdField) {
  const Change& one = GetParam();
  expectEdit(one.before + "a=x\r\n", setTransport(0, one.expected, one.transport), 0, one.after + "a=x\r\n");
  TraceCapture trace;
  SdpBuffer buffer("v=0\r\n" + one.before);
  setTransport(5, one.expected, one.transport)(buffer.data());
  buffer.expectText("v=0\r\n" + one.after);
  EXPECT_EQ(trace.lines(), (Traces{kEntering, kChanging}));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TransportChange,
    testing::Values(
        Change{"longer", "m=audio 4000 RTP/AVP 0 8\r\n", "RTP/AVP", "RTP/SAVP",
               "m=audio 4000 RTP/SAVP 0 8\r\n"},
        Change{"shorter", "m=audio 4000 RTP/SAVP 0 8\r\n", "RTP/SAVP", "RTP/AVP",
               "m=audio 4000 RTP/AVP 0 8\r\n"},
        Change{"sameLength", "m=audio 4000 RTP/AVP 0 8\r\n", "RTP", "udp/abc",
               "m=audio 4000 udp/abc 0 8\r\n"},
        Change{"bareLf", "m=audio 4000 RTP/AVP 0\n", "RTP/AVP", "RTP/SAVP", "m=audio 4000 RTP/SAVP 0\n"},
        Change{"tabsAreBlanks", "m=audio\t4000\tRTP/AVP\t0\n", "RTP/AVP", "RTP/SAVP",
               "m=audio\t4000\tRTP/SAVP\t0\n"},
        Change{"expectedOnlyGates", "m=audio 4000 udp 0\r\n", "audio", "RTP/SAVP",
               "m=audio 4000 RTP/SAVP 0\r\n"},
        Change{"aBlankInFrontOfTheCr", "m=audio 4000 RTP/AVP \r\n", "RTP/AVP", "RTP/SAVP",
               "m=audio 4000 RTP/SAVP \r\n"},
        Change{"aCrInTheField", "m=audio 4000 RTP/AVP\rx 0\r\n", "RTP/AVP", "RTP/SAVP",
               "m=audio 4000 RTP/SAVP 0\r\n"},
        Change{"expectedBehindTheField", "m=audio 4000 udp RTP/AVP\r\n", "RTP/AVP", "RTP/SAVP",
               "m=audio 4000 RTP/SAVP RTP/AVP\r\n"},
        Change{"anEmptyExpectedIsOnEveryLine", "m=audio 4000 udp 0\r\n", "", "tcp", "m=audio 4000 tcp 0\r\n"},
        Change{"feedbackProfileByItsStart", "m=audio 4000 RTP/AVPF 0\r\n", "RTP/AVP", "RTP/SAVP",
               "m=audio 4000 RTP/SAVP 0\r\n"},
        Change{"startOfTheNewOneIsNotTheNewOne", "m=audio 4000 RTP/SAV 0\r\n", "RTP", "RTP/SAVP",
               "m=audio 4000 RTP/SAVP 0\r\n"},
        Change{"caseCounts", "m=audio 4000 rtp/savp 0\r\n", "rtp", "RTP/SAVP", "m=audio 4000 RTP/SAVP 0\r\n"},
        Change{"fourteenCharactersAreTaken", "m=audio 4000 RTP/AVP 0\r\n", "RTP/AVP", "12345678901234",
               "m=audio 4000 12345678901234 0\r\n"},
        Change{"fifteenAreCut", "m=audio 4000 RTP/AVP 0\r\n", "RTP/AVP", "123456789012345",
               "m=audio 4000 12345678901234 0\r\n"},
        Change{"blanksAreCountedOneByOne", "m=audio  4000 RTP/AVP 0\r\n", "RTP/AVP", "RTP/SAVP",
               "m=audio  RTP/SAVP RTP/AVP 0\r\n"},
        Change{"aBlankInFrontOfTheThirdCharacterDoesNotCount", "m audio 4000 RTP/AVP 0\r\n", "RTP/AVP",
               "RTP/SAVP", "m audio 4000 RTP/SAVP 0\r\n"},
        Change{"theThirdCharacterIsTheFirstBlank", "m= 4000 RTP/AVP 0\r\n", "RTP/AVP", "RTP/SAVP",
               "m= 4000 RTP/SAVP 0\r\n"},
        Change{"overlongField", "m=audio 4000 RTP/AVP" + std::string(9000, 'x') + " 0\r\n", "RTP/AVP",
               "RTP/SAVP", "m=audio 4000 RTP/SAVP 0\r\n"},
        Change{"bytesAbove127", "m=\xFF \x80 \xC3\xBC 0\r\n", "", "udp", "m=\xFF \x80 udp 0\r\n"}),
    [](const auto& tested) { return tested.param.name; });

struct Kept {
  const char* name;
  std::string text;
  const char* transport;
};

class TransportKept : public testing::TestWithParam<Kept> {};

TEST_P(TransportKept, IsASuccessThatChangesNothing) {
  const Kept& one = GetParam();
  expectUntouched(one.text + "a=x y z\r\n", setTransport(0, "m=", one.transport), 0);
  TraceCapture trace;
  SdpBuffer buffer(one.text);
  setTransport(0, "m=", one.transport)(buffer.data());
  EXPECT_EQ(trace.lines(), Traces{kEntering});
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TransportKept,
    testing::Values(Kept{"itIsTheNewOne", "m=audio 4000 RTP/SAVP 0\r\n", "RTP/SAVP"},
                    Kept{"itBeginsWithTheNewOne", "m=audio 4000 RTP/SAVPF 0\r\n", "RTP/SAVP"},
                    Kept{"itBeginsWithWhatIsTakenOfTheNewOne", "m=audio 4000 12345678901234 0\r\n",
                         "123456789012345"},
                    Kept{"theNewOneIsEmpty", "m=audio 4000 RTP/AVP 0\r\n", ""},
                    Kept{"itRunsToTheLinesEnd", "m=audio 4000 RTP/AVP\n", "RTP/SAVP"},
                    Kept{"itRunsToTheCrOfTheLinesEnd", "m=audio 4000 RTP/AVP\r\n", "RTP/SAVP"},
                    Kept{"whereThePortIsMissingItIsTheFormat", "m=audio RTP/AVP 0\r\n", "RTP/SAVP"},
                    Kept{"itIsEmpty", "m=audio 4000  RTP/AVP 0\r\n", "RTP/SAVP"},
                    Kept{"itIsEmptyInFrontOfTheCr", "m=audio 4000 \r\n", "RTP/SAVP"},
                    Kept{"itIsEmptyAtTheLinesEnd", "m=audio 4000 \n", "RTP/SAVP"},
                    Kept{"twoFields", "m=audio 4000\r\n", "RTP/SAVP"},
                    Kept{"oneField", "m=audio\r\n", "RTP/SAVP"}, Kept{"prefixOnly", "m=\n", "RTP/SAVP"}),
    [](const auto& tested) { return tested.param.name; });

TEST(MLineTransport, ExpectedMustStandOnThisLine) {
  const std::string text = "m=audio 4000 RTP/SAVP 0\r\nm=audio 4000 RTP/AVP 0\r\n";
  expectUntouched(text, setTransport(0, "RTP/AVP", "udp"), 1);
  expectUntouched(text, setTransport(0, "rtp", "udp"), 1);
  expectUntouched(text, setTransport(0, "0\r\n", "udp"), 1);  // the LF is the line's end, not of the line
  expectEdit(text, setTransport(25, "RTP/AVP", "udp"), 0,
             "m=audio 4000 RTP/SAVP 0\r\nm=audio 4000 udp 0\r\n");
  TraceCapture trace;
  SdpBuffer buffer(text);
  setTransport(0, "RTP/AVP", "udp")(buffer.data());
  EXPECT_EQ(trace.lines(), Traces{kEntering});
}

TEST(MLineTransport, TheLineEndsWhereTheCallerSays) {
  const auto endingAt = [](std::size_t end) -> TextEdit {
    return [end](char* sdp) {
      return sdpModifications::sdpReplaceMLineTransportProtocol(sdp, sdp + end, "m=", "udp");
    };
  };
  const std::string text = "m=audio 4000 RTP/AVP 0";
  expectUntouched(text, endingAt(0), 1);
  expectUntouched(text, endingAt(1), 1);
  expectUntouched(text, endingAt(20), 0);
  expectEdit(text, endingAt(21), 0, "m=audio 4000 udp 0");
  expectEdit(text, endingAt(22), 0, "m=audio 4000 udp 0");
  expectUntouched(text, endingAt(23), 1);
}

TEST(MLineTransport, NeedsRoomForTheGrowthOnly) {
  const std::string before = "m=audio 4000 RTP/AVP 0\r\n";
  const std::string after = "m=audio 4000 RTP/SAVP 0\r\n";
  const TextEdit edit = setTransport(0, "RTP/AVP", "RTP/SAVP");
  expectEdit(filledTo(kLongestBody - 2, before), edit, 0, filledTo(kLongestBody - 1, after));
  expectEdit(filledTo(kLongestBody - 1, before), edit, 0, filledTo(kLongestBody, after));
  expectUntouched(filledTo(kLongestBody, before), edit, 1);
  expectEdit(filledTo(kLongestBody, before), setTransport(0, "RTP/AVP", "udp/abc"), 0,
             filledTo(kLongestBody, "m=audio 4000 udp/abc 0\r\n"));
  TraceCapture trace;
  SdpBuffer buffer(filledTo(kLongestBody, before));
  edit(buffer.data());
  EXPECT_EQ(
      trace.lines(),
      (Traces{
          kEntering,
          kChanging,
          {4, 3,
           "sdpReplaceMLineTransportProtocol(): The new transport does not fit the SDP buffer. Exiting."}}));
}

TEST(MLineTransport, ANewTransportMayLieInTheTextItself) {
  SdpBuffer buffer("m=audio 4000 RTP/AVP 0\r\na=tcp/x y");
  char* const line = buffer.data();
  ASSERT_EQ(sdpModifications::sdpReplaceMLineTransportProtocol(line, line + 23, line + 13, line + 26), 1);
  ASSERT_EQ(sdpModifications::sdpReplaceMLineTransportProtocol(line, line + 23, "RTP", line + 26), 0);
  buffer.expectText("m=audio 4000 tcp/x y 0\r\na=tcp/x y");
}

TEST(MLineTransport, ArgumentsThatAreNullOrOutsideTheTextAreRefused) {
  const std::string prefix = "sdpReplaceMLineTransportProtocol(): ";
  const TraceLine noText = {4, 3, prefix + "The SDP buffer is null or holds no end of text. Exiting."};
  const TraceLine noEnd = {4, 3, prefix + "The line's end does not lie in the text. Exiting."};
  const TraceLine noTransport = {4, 3, prefix + "A transport is null. Exiting."};
  SdpBuffer buffer("v=0\r\nm=audio 4000 RTP/AVP 0\r\n");
  const std::string all = buffer.all();
  char* const line = buffer.data() + 5;
  char* const end = line + 23;
  TraceCapture trace;
  const auto refuse = [&](char* from, char* to, const char* expected, const char* transport,
                          const TraceLine& reason) {
    EXPECT_EQ(sdpModifications::sdpReplaceMLineTransportProtocol(from, to, expected, transport), 1);
    EXPECT_EQ(trace.takeLines(), Traces{reason});
    EXPECT_TRUE(buffer.all() == all);
  };
  refuse(nullptr, end, "RTP", "udp", noText);
  refuse(nullptr, nullptr, "RTP", "udp", noText);
  refuse(line, nullptr, "RTP", "udp", noEnd);
  refuse(line, line - 1, "RTP", "udp", noEnd);
  refuse(line, line + 25, "RTP", "udp", noEnd);
  refuse(line, end, nullptr, "udp", noTransport);
  refuse(line, end, "RTP", nullptr, noTransport);
  expectUntouched(
      std::string(MAX_SDP_PROTOCOL_DATA_SIZE, 'm'),
      [](char* sdp) { return sdpModifications::sdpReplaceMLineTransportProtocol(sdp, sdp + 10, "m", "udp"); },
      1);
}

}  // namespace
