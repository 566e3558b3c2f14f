#include <gtest/gtest.h>

#include <string>

#include "modifiersTestSupport.h"

// Removal of m-lines of port 0 (RFC 3264 8.2).

namespace {

const TextEdit removeZeroPorts = [](char* sdp) { return sdpModifications::sdpRemoveMlinesZeroPort(sdp); };

const std::string head = "v=0\r\ns=-\r\n";
const std::string crypto = "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:abc\r\n";
const std::string zeroSecure = "m=audio 0 RTP/SAVP 0\r\n";

struct Removal {
  const char* name;
  std::string before;
  unsigned short status;
  std::string after;
};

class ZeroPortRemoval : public testing::TestWithParam<Removal> {};

TEST_P(ZeroPortRemoval, TakesTheMLinesOut) {
  const Removal& one = GetParam();
  expectEdit(one.before, removeZeroPorts, one.status, one.after);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ZeroPortRemoval,
    testing::Values(
        // Deliberate: the section's other lines join what stands in front.
        Removal{"onlyTheMLineGoes", head + "m=audio 0 RTP/AVP 0\r\na=rtpmap:0 PCMU/8000\r\n", 0,
                head + "a=rtpmap:0 PCMU/8000\r\n"},
        Removal{"theLinesJoinTheSectionInFront", head + video + "m=audio 0 RTP/AVP 0\r\na=x\r\n" + audio, 0,
                head + video + "a=x\r\n" + audio},
        Removal{"everyOne", head + "m=audio 0 x 0\r\nm=video 0 x 0\r\na=x\r\nm=text 0 x 0\r\n", 0,
                head + "a=x\r\n"},
        Removal{"bareLf", "v=0\nm=audio 0 x 0\na=x\nm=video 0 x 0\n", 0, "v=0\na=x\n"},
        Removal{"behindCrLfEndedByLf", "v=0\r\nm=audio 0 x 0\na=x\r\n", 0, "v=0\r\na=x\r\n"},
        Removal{"behindLfEndedByCrLf", "v=0\nm=audio 0 x 0\r\na=x\r\n", 0, "v=0\na=x\r\n"},
        Removal{"nothingInFrontButALf", "\nm=audio 0 x 0\n", 0, "\n"},
        Removal{"zeroInSeveralDigits", head + "m=audio 000 x 0\r\n", 0, head},
        Removal{"tabs", head + "m=audio\t0\tx\r\n", 0, head},
        Removal{"theStatusIsOfTheLastPort", head + "m=audio 0 x 0\r\nm=audio x y\r\n", 1,
                head + "m=audio x y\r\n"},
        Removal{"aPortThatCannotBeReadInFront", head + "m=audio x y\r\nm=audio 0 x 0\r\n", 0,
                head + "m=audio x y\r\n"},
        Removal{"theLastWithoutLfStays", head + "m=audio 0 x 0\r\nm=video 0 x 0", 1, head + "m=video 0 x 0"},
        Removal{"aSecureOneTakesItsCryptoLine", head + zeroSecure + "a=x\r\n" + crypto + "a=y\r\n" + video, 0,
                head + "a=x\r\na=y\r\n" + video},
        Removal{"onlyTheFirstCryptoLine", head + zeroSecure + crypto + crypto + "a=y\r\n", 0,
                head + crypto + "a=y\r\n"},
        Removal{"theLastLineOfTheText", head + zeroSecure + crypto, 0, head},
        // Deliberate: the LF in front of the next m-line is the section's end, and that of the line is to stand
        // before it.
        Removal{"aCryptoLineInFrontOfTheNextMLineStays", head + zeroSecure + "a=x\r\n" + crypto + video, 0,
                head + "a=x\r\n" + crypto + video},
        Removal{"secureByTheFeedbackProfile", head + "m=audio 0 RTP/SAVPF 0\r\n" + crypto, 0, head},
        Removal{"noCryptoLineAtAll", head + zeroSecure + "a=x\r\n", 0, head + "a=x\r\n"},
        Removal{"theCryptoLineOfTheNextSectionStays",
                head + zeroSecure + "a=x\r\nm=audio 5004 RTP/SAVP 0\r\n" + crypto + "a=y\r\n", 0,
                head + "a=x\r\nm=audio 5004 RTP/SAVP 0\r\n" + crypto + "a=y\r\n"},
        Removal{"aCryptoLineWithoutLfStays", head + zeroSecure + "a=crypto:1 x", 0, head + "a=crypto:1 x"},
        Removal{"aPlainOneLeavesTheCryptoLine", head + "m=audio 0 RTP/AVP 0\r\n" + crypto + "a=x\r\n", 0,
                head + crypto + "a=x\r\n"},
        // Deliberate: the text is searched anywhere, so that what stands in front of it joins the next line.
        Removal{"cryptoInAValue", head + zeroSecure + "a=note:a=crypto\r\na=y\r\n", 0,
                head + "a=note:a=y\r\n"},
        Removal{"cryptoByItsStart", head + zeroSecure + "a=cryptonym\r\na=y\r\n", 0, head + "a=y\r\n"},
        Removal{"cryptoOnTheMLineGoesWithIt", head + "m=audio 0 RTP/SAVP a=crypto\r\na=x\r\n" + crypto, 0,
                head + "a=x\r\n" + crypto},
        Removal{"severalSecureOnes",
                head + zeroSecure + crypto + "a=x\r\n" + zeroSecure + crypto + "a=y\r\n" + audio, 0,
                head + "a=x\r\na=y\r\n" + audio}),
    [](const auto& tested) { return tested.param.name; });

struct Kept {
  const char* name;
  std::string text;
  unsigned short status;
};

class ZeroPortKept : public testing::TestWithParam<Kept> {};

TEST_P(ZeroPortKept, LeavesTheTextAsItIs) {
  expectUntouched(GetParam().text, removeZeroPorts, GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(Cases, ZeroPortKept,
                         testing::Values(Kept{"noMLine", head, 1}, Kept{"empty", "", 1},
                                         Kept{"activeMLines", head + audio + video, 0},
                                         Kept{"inTheFirstLine", "m=audio 0 x 0\r\na=x\r\n", 1},
                                         Kept{"inAValue", head + "i=m=audio 0 x 0\r\n", 1},
                                         Kept{"aPortAboveTheLargest", head + "m=audio 65536 x 0\r\n", 1},
                                         Kept{"aNegativePort", head + "m=audio -1 x 0\r\n", 1},
                                         Kept{"aPortWithASuffix", head + "m=audio 0/2 x 0\r\n", 1},
                                         Kept{"noPort", head + "m=audio\r\n", 1},
                                         Kept{"noLf", head + "m=audio 0 x 0", 1},
                                         Kept{"cutBehindThePrefix", head + "m=", 1},
                                         Kept{"theLastIsUnreadable", head + audio + "m=audio x 0\r\n", 1},
                                         Kept{"withoutNul", withoutNul(head + "m=audio 0 x 0\r\n"), 1}),
                         [](const auto& tested) { return tested.param.name; });

TEST(ZeroPortMLines, AreRemovedFromAFullBuffer) {
  const std::string line = "m=a 0 b\n";
  std::string before = "v=0\n";
  while (before.size() + line.size() <= kLongestBody) before += line;
  before.insert(3, kLongestBody - before.size(), '0');
  const std::string first = before.substr(0, before.find('\n') + 1);
  expectEdit(before, removeZeroPorts, 0, first);
}

TEST(ZeroPortMLines, TraceEachStep) {
  const auto debug = [](const std::string& text) {
    return TraceLine{1, 1, "sdpRemoveMlinesZeroPort() " + text};
  };
  const std::string active = "m=video 5 x 0\r\n";
  SdpBuffer buffer("v=0\r\n" + zeroSecure + "a=x\r\na=crypto:1\r\na=y\r\n" + active + "m=text 0 x 0\r\na=z");
  TraceCapture trace;
  EXPECT_EQ(removeZeroPorts(buffer.data()), 0);
  buffer.expectText("v=0\r\na=x\r\na=y\r\n" + active + "a=z");
  const std::string text = "\nm=text 0 x 0\r\na=z";
  const std::string behind = "\n" + active.substr(0, active.size() - 1) + text;
  const std::string mLine = "\n" + zeroSecure.substr(0, zeroSecure.size() - 1);
  EXPECT_EQ(trace.lines(), (Traces{debug("Modifier"),
                                   debug("mLine =[" + mLine + "\na=x\r\na=crypto:1\r\na=y\r" + behind + "]"),
                                   debug("port =[0]"),
                                   debug("mediaEnd =[" + behind + "]"),
                                   debug("mlineEnd =[\na=x\r\na=crypto:1\r\na=y\r" + behind + "]"),
                                   debug("mLine =[" + mLine + "\na=x\r\na=y\r" + behind + "]"),
                                   debug("mLine =[\na=x\r\na=y\r" + behind + "]"),
                                   debug("mLine =[" + behind + "]"),
                                   debug("port =[5]"),
                                   debug("mLine =[" + text + "]"),
                                   debug("port =[0]"),
                                   debug("mediaEnd =[]"),
                                   debug("mlineEnd =[\na=z]"),
                                   debug("mLine =[\na=z]"),
                                   debug("sdp_buffer =[v=0\r\na=x\r\na=y\r\n" + active + "a=z]"),
                                   {1, 1, "Exiting sdpRemoveMlinesZeroPort() Mofifier"}}));
}

TEST(ZeroPortMLines, TraceASecureOneWithoutACryptoLineAndAPortThatCannotBeRead) {
  const auto debug = [](const std::string& text) {
    return TraceLine{1, 1, "sdpRemoveMlinesZeroPort() " + text};
  };
  SdpBuffer buffer("v=0\n" + zeroSecure + "a=x\nm=text x y\n");
  TraceCapture trace;
  EXPECT_EQ(removeZeroPorts(buffer.data()), 1);
  buffer.expectText("v=0\na=x\nm=text x y\n");
  const std::string last = "\nm=text x y\n";
  const std::string behind = "\na=x" + last;
  const std::string mLine = "\n" + zeroSecure.substr(0, zeroSecure.size() - 1);
  EXPECT_EQ(trace.lines(), (Traces{debug("Modifier"),
                                   debug("mLine =[" + mLine + behind + "]"),
                                   debug("port =[0]"),
                                   debug("mediaEnd =[" + last + "]"),
                                   debug("mlineEnd =[" + behind + "]"),
                                   debug("mLine =[" + mLine + behind + "]"),
                                   debug("mLine =[" + behind + "]"),
                                   debug("mLine =[" + last + "]"),
                                   debug("port =[0]"),
                                   debug("sdp_buffer =[v=0\na=x" + last + "]"),
                                   {1, 1, "Exiting sdpRemoveMlinesZeroPort() Mofifier"}}));
}

TEST(ZeroPortMLines, AreNotLookedForWithoutAText) {
  TraceCapture trace;
  EXPECT_EQ(removeZeroPorts(nullptr), 1);
  EXPECT_EQ(
      trace.lines(),
      (Traces{
          {1, 1, "sdpRemoveMlinesZeroPort() Modifier"},
          {4, 3, "sdpRemoveMlinesZeroPort(): The SDP buffer is null or holds no end of text. Exiting."}}));
}

}  // namespace
