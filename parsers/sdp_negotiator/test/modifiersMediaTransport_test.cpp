#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "modifiersTestSupport.h"
#include "sdpRefusal.h"

// The transport of the m-lines of chosen media (RFC 4566 5.14).

namespace {

using Names = std::vector<std::string>;

TextEdit setTransport(const char* from, const char* to, const Names& names = {"audio"}) {
  return [=](char* sdp) { return sdpModifications::sdpSetMediaTransportType(sdp, from, to, names); };
}

const TextEdit toPlain = setTransport("RTP/SAVP", "RTP/AVP");
const TextEdit toSecure = setTransport("RTP/AVP", "RTP/SAVP");

struct Change {
  const char* name;
  std::string before;
  TextEdit edit;
  std::string after;
};

class MediaTransport : public testing::TestWithParam<Change> {};

TEST_P(MediaTransport, IsSetOnTheMLinesOfTheMedium) {
  const Change& one = GetParam();
  expectEdit(session + one.before, one.edit, 0, session + one.after);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MediaTransport,
    testing::Values(
        Change{"shorter", "m=audio 5004 RTP/SAVP 0 8 9 4 18\r\na=x\r\n", toPlain,
               "m=audio 5004 RTP/AVP 0 8 9 4 18\r\na=x\r\n"},
        Change{"longer", "m=audio 5004 RTP/AVP 0\r\na=x\r\n", toSecure, "m=audio 5004 RTP/SAVP 0\r\na=x\r\n"},
        Change{"bareLf", "m=audio 5004 RTP/AVP 0\na=x\n", toSecure, "m=audio 5004 RTP/SAVP 0\na=x\n"},
        Change{"tabsAreBlanks", "m=audio\t5004\tRTP/AVP\t0\r\n", toSecure, "m=audio\t5004\tRTP/SAVP\t0\r\n"},
        Change{"everyMLineOfTheMedium",
               "m=audio 1 RTP/AVP 0\r\nm=video 2 RTP/AVP 31\r\nm=audio 3 RTP/AVP 0\r\n", toSecure,
               "m=audio 1 RTP/SAVP 0\r\nm=video 2 RTP/AVP 31\r\nm=audio 3 RTP/SAVP 0\r\n"},
        Change{"severalMedia", "m=audio 1 RTP/AVP 0\r\nm=video 2 RTP/AVP 31\r\nm=application 3 RTP/AVP 9\r\n",
               setTransport("RTP/AVP", "RTP/SAVP", {"application", "text", "audio"}),
               "m=audio 1 RTP/SAVP 0\r\nm=video 2 RTP/AVP 31\r\nm=application 3 RTP/SAVP 9\r\n"},
        Change{"theMediumByItsStart", "m=audiobook 1 RTP/AVP 0\r\n", toSecure,
               "m=audiobook 1 RTP/SAVP 0\r\n"},
        // The other transport only opens the way: the third field goes, whatever it holds.
        Change{"theOtherTransportAnywhereOnTheLine", "m=audio 1 udp RTP/AVP\r\n", toSecure,
               "m=audio 1 RTP/SAVP RTP/AVP\r\n"},
        Change{"anEmptyOtherTransport", "m=audio 1 udp 0\r\n", setTransport("", "RTP/AVP"),
               "m=audio 1 RTP/AVP 0\r\n"},
        Change{"theFeedbackProfileHoldsTheOther", "m=audio 1 RTP/SAVPF 0\r\n", toPlain,
               "m=audio 1 RTP/AVP 0\r\n"},
        Change{"fourteenCharacters", "m=audio 1 RTP/AVP 0\r\n", setTransport("RTP", "12345678901234"),
               "m=audio 1 12345678901234 0\r\n"},
        Change{"fifteenAreCut", "m=audio 1 RTP/AVP 0\r\n", setTransport("RTP", "123456789012345"),
               "m=audio 1 12345678901234 0\r\n"},
        Change{"twoBlanksInFrontOfThePort", "m=audio  5004 RTP/SAVP 0\r\n", toPlain,
               "m=audio  5004 RTP/AVP 0\r\n"},
        Change{"twoBlanksBehindThePort", "m=audio 5004  RTP/AVP 0\r\n", toSecure,
               "m=audio 5004  RTP/SAVP 0\r\n"},
        Change{"runsOfBlanksAndTabs", "m=audio \t 5004\t\t \tRTP/AVP  0  8\n", toSecure,
               "m=audio \t 5004\t\t \tRTP/SAVP  0  8\n"},
        Change{"blanksInFrontOfTheLinesEnd", "m=audio 5004  RTP/AVP  \r\n", toSecure,
               "m=audio 5004  RTP/SAVP  \r\n"},
        Change{"blanksInFrontOfTheName", "m= audio 5004 RTP/AVP 0\r\n",
               setTransport("RTP/AVP", "RTP/SAVP", {" audio"}), "m= audio 5004 RTP/SAVP 0\r\n"},
        Change{"aCrInTheField", "m=audio 1 RTP/AVP\rx 0\r\n", toSecure, "m=audio 1 RTP/SAVP 0\r\n"},
        Change{"theSecondTimeFindsNothing", "m=audio 1 RTP/AVP 0\r\n",
               setTransport("RTP/AVP", "RTP/SAVP", {"audio", "audio"}), "m=audio 1 RTP/SAVP 0\r\n"}),
    [](const auto& tested) { return tested.param.name; });

struct Kept {
  const char* name;
  std::string text;
  TextEdit edit;
};

class MediaTransportKept : public testing::TestWithParam<Kept> {};

TEST_P(MediaTransportKept, LeavesTheTextAsItIs) {
  expectUntouched("v=0\r\n" + GetParam().text, GetParam().edit, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MediaTransportKept,
    testing::Values(
        Kept{"feedbackProfileWithoutTheOther", "m=audio 5004 RTP/AVPF 0 8\r\n", toPlain},
        Kept{"anotherMedium", "m=video 5004 RTP/SAVP 31\r\n", toPlain},
        Kept{"anotherCase", "m=Audio 5004 RTP/SAVP 0\r\n", toPlain},
        Kept{"anotherTransport", "m=audio 5004 RTP/AVP 0\r\n", setTransport("udp", "RTP/SAVP")},
        Kept{"theOtherOnTheNextLine", "m=audio 5004 udp 0\r\na=RTP/SAVP\r\n", toPlain},
        Kept{"itIsTheNewOne", "m=audio 5004 RTP/SAVP 0\r\n", setTransport("RTP/SAVP", "RTP/SAVP")},
        Kept{"itBeginsWithTheNewOne", "m=audio 5004 RTP/SAVPF 0\r\n", setTransport("RTP", "RTP/SAVP")},
        Kept{"theNewOneIsEmpty", "m=audio 5004 RTP/SAVP 0\r\n", setTransport("RTP", "")},
        Kept{"noFormats", "m=audio 5004 RTP/AVP\r\n", toSecure},
        Kept{"noFormatsBareLf", "m=audio 5004 RTP/AVP\n", toSecure},
        Kept{"noTransport", "m=audio RTP/AVP\r\na=b c d\r\n", toSecure},
        Kept{"onlyBlanksBehindThePort", "m=audio RTP/AVP  \t \r\na=b c d\r\n", toSecure},
        Kept{"onlyBlanksBehindThePortBareLf", "m=audio RTP/AVP  \na=b c d\n", toSecure},
        Kept{"onlyBlanksBehindTheName", "m=audioRTP/AVP   \na=b c d\n", toSecure},
        Kept{"onlyAName", "m=audioRTP/AVP\r\na=b c d\r\n", toSecure},
        Kept{"withoutLf", "m=audio 5004 RTP/AVP 0", toSecure},
        Kept{"inAValue", "i=m=audio 5004 RTP/AVP 0\r\n", toSecure},
        Kept{"behindALoneCr", "i=x\rm=audio 5004 RTP/AVP 0\r\n", toSecure},
        Kept{"cutBehindThePrefix", "m=", toSecure}, Kept{"cutInTheName", "m=aud", toSecure},
        Kept{"noMLine", "s=-\r\n", toSecure},
        Kept{"noNames", "m=audio 1 RTP/AVP 0\r\n", setTransport("RTP/AVP", "RTP/SAVP", {})},
        // The empty name stands first at the m-line's start, as does what the prefix begins with.
        Kept{"theEmptyName", "m=audio 1 RTP/AVP 0\r\n", setTransport("RTP/AVP", "RTP/SAVP", {""})},
        Kept{"aNameThatStandsEarlier", "m=m=audio 1 RTP/AVP 0\r\n",
             setTransport("RTP/AVP", "RTP/SAVP", {"m", "m=", "="})},
        Kept{"aNameThatIsLongerThanTheText", "m=audio 1 RTP/AVP 0\r\n",
             setTransport("RTP/AVP", "RTP/SAVP", {std::string(30000, 'a')})}),
    [](const auto& tested) { return tested.param.name; });

TEST(MediaTransportEdit, DoesNotSeeAnMLineInTheFirstLine) {
  expectUntouched("m=audio 1 RTP/AVP 0\r\n", toSecure, 0);
  expectEdit("\nm=audio 1 RTP/AVP 0\r\n", toSecure, 0, "\nm=audio 1 RTP/SAVP 0\r\n");
}

TEST(MediaTransportEdit, TracesEachStep) {
  const std::string head = "v=0\r\n";
  const std::string audioLine = "m=audio 1 RTP/AVP 0\r\n";
  const std::string videoLine = "m=video 2 RTP/AVP 31\r\n";
  const std::string last = "m=audio 3 udp";
  const auto info = [](const std::string& text) { return TraceLine{2, 2, text}; };
  const std::string changed = head + "m=audio 1 RTP/SAVP 0\r\n" + videoLine + last;
  SdpBuffer buffer(head + audioLine + videoLine + last);
  TraceCapture trace;
  EXPECT_EQ(setTransport("RTP/AVP", "RTP/SAVP", {"audio", "text"})(buffer.data()), 0);
  buffer.expectText(changed);
  const TraceLine step4 = info(" sdpSetMediaTransportType() Step-4. exiting if (endMline != NULL)");
  const TraceLine step5 = info(" sdpSetMediaTransportType() Step-5. Changing transport type");
  const TraceLine found = info(" sdpSetMediaTransportType():Found media line with mediaType=audio");
  const TraceLine whole = info(" sdpSetMediaTransportType() method. sdp_buffer=[" + changed + "]");
  const auto visiting = [&](int number, const std::string& from) {
    return info(" sdpSetMediaTransportType() Step-2:Into while statement for [" + std::to_string(number) +
                "] mLine=[" + from + "]");
  };
  EXPECT_EQ(trace.lines(),
            (Traces{info(" sdpSetMediaTransportType() method. Enter"),
                    info("sdpSetMediaTransportType() method. change mediaLines=2"),
                    info(" sdpSetMediaTransportType() Step-1:Change transport for m line[0] =[audio]"),
                    info("sdpSetMediaTransportType() . mLine=[" + head + audioLine + videoLine + last + "]"),
                    visiting(0, audioLine + videoLine + last),
                    found,
                    info(" sdpSetMediaTransportType() method. startOfTransport=[RTP/AVP 0\r\n" + videoLine +
                         last + "]"),
                    info(" sdpSetMediaTransportType() Step-3. Changing transport type"),
                    step4,
                    visiting(0, videoLine + last),
                    step5,
                    whole,
                    visiting(0, last),
                    found,
                    step4,
                    info(" sdpSetMediaTransportType() Step-1:Change transport for m line[1] =[text]"),
                    info("sdpSetMediaTransportType() . mLine=[" + changed + "]"),
                    visiting(1, "m=audio 1 RTP/SAVP 0\r\n" + videoLine + last),
                    step5,
                    whole,
                    visiting(1, videoLine + last),
                    step5,
                    whole,
                    visiting(1, last),
                    step5,
                    whole,
                    info(" sdpSetMediaTransportType() method. Exit")}));
}

TEST(MediaTransportEdit, LeavesAnMLineThatDoesNotFitAndGoesOn) {
  // The first grows by seven characters, the second gets shorter by six.
  const std::string before = "v=0\r\nm=audio 1 RTP/AVP 0\r\nm=audio 2 RTP/AVP/abcdefghijkl 0\r\n";
  const std::string both = "v=0\r\nm=audio 1 12345678901234 0\r\nm=audio 2 12345678901234 0\r\n";
  const std::string second = "v=0\r\nm=audio 1 RTP/AVP 0\r\nm=audio 2 12345678901234 0\r\n";
  const TextEdit edit = setTransport("RTP/AVP", "12345678901234");
  const auto padding = [&](std::size_t length) { return filledTo(length, before).substr(before.size()); };
  const TraceLine refused = {4, 3,
                             "sdpSetMediaTransportType(): The new transport does not fit the SDP buffer."};
  for (const std::size_t room : {8U, 7U, 6U, 0U}) {
    const std::string fill = padding(kLongestBody - room);
    SdpBuffer buffer(before + fill);
    TraceCapture trace;
    EXPECT_EQ(edit(buffer.data()), 0);
    buffer.expectText((room >= 7 ? both : second) + fill);
    EXPECT_EQ(trace.count(refused.flag, refused.level, refused.text), room >= 7 ? 0 : 1) << room;
  }
}

// Tracing would have the m-lines gone through name after name.
TEST(MediaTransportEdit, OfManyNamesIsSetOnceOnEachMLine) {
  const Names names = {"text", "audio", "aud", "audio", "video", "audiox", "v", "video", "m"};
  expectEdit(
      session + "m=audio 1 RTP/AVP 0\r\nm=video 2 RTP/AVP 0\r\nm=au 3 RTP/AVP 0\r\nm=text 4 RTP/AVP 0\r\n",
      setTransport("RTP/AVP", "RTP/SAVP", names), 0,
      session +
          "m=audio 1 RTP/SAVP 0\r\nm=video 2 RTP/SAVP 0\r\nm=au 3 RTP/AVP 0\r\nm=text 4 RTP/SAVP 0\r\n");
}

TEST(MediaTransportEdit, OfMoreNamesThanADescriptionHasMLines) {
  Names names;
  for (char last = 'a'; last <= 'z'; ++last) names.push_back(std::string("audi") + last);
  expectEdit(session + "m=audio 1 RTP/AVP 0\r\nm=audi 2 RTP/AVP 0\r\nm=audiz 3 RTP/AVP 0\r\n",
             setTransport("RTP/AVP", "RTP/SAVP", names), 0,
             session + "m=audio 1 RTP/SAVP 0\r\nm=audi 2 RTP/AVP 0\r\nm=audiz 3 RTP/SAVP 0\r\n");
}

// The second and third visit of "audio" meet what the ones in front of them left.
TEST(MediaTransportEdit, ANameThatComesAgainIsRefusedAgain) {
  const std::string full = filledTo(kLongestBody, session + "m=audio 1 RTP/AVP 0\r\nm=audio 2 RTP/AVP 0\r\n");
  EditBuffer buffer(full);
  const unsigned int before = sdpLastRefusal().number;
  EXPECT_EQ(setTransport("RTP/AVP", "RTP/SAVP", {"audio", "video", "audio", "audio"})(buffer.data()), 0);
  buffer.expect(full);
  EXPECT_EQ(sdpLastRefusal().number - before, 6U);
  EXPECT_EQ(sdpLastRefusal().reason, SDP_REFUSED_TRANSPORT_DOES_NOT_FIT);
}

TEST(MediaTransportEdit, ANameThatComesAgainUsesTheRoomThatAnotherMade) {
  const std::string rest = "m=video 2 RTP/AVPFFF 0\r\n";
  const std::string full = filledTo(kLongestBody, session + "m=audio 1 RTP/AVP 0\r\n" + rest);
  const std::string note = full.substr(full.find("a=note:"));
  EditBuffer buffer(full);
  const unsigned int before = sdpLastRefusal().number;
  EXPECT_EQ(setTransport("RTP/AVP", "RTP/SAVP", {"audio", "video", "audio"})(buffer.data()), 0);
  buffer.expect(session + "m=audio 1 RTP/SAVP 0\r\nm=video 2 RTP/SAVP 0\r\n" + note);
  EXPECT_EQ(sdpLastRefusal().number - before, 1U);
}

TEST(MediaTransportEdit, TakesATransportThatLiesInTheTextItself) {
  SdpBuffer buffer("v=0\nm=audio 1 RTP/AVP 0\nm=audio 2 RTP/AVP 0\na=tcp/x");
  const Names names = {"audio"};
  // Behind 4 characters and two lines of 20, and "a=".
  EXPECT_EQ(sdpModifications::sdpSetMediaTransportType(buffer.data(), "RTP/AVP", buffer.data() + 46, names),
            0);
  buffer.expectText("v=0\nm=audio 1 tcp/x 0\nm=audio 2 tcp/x 0\na=tcp/x");
}

TEST(MediaTransportEdit, RefusesNullAndUnterminatedArguments) {
  const TraceLine enter = {2, 2, " sdpSetMediaTransportType() method. Enter"};
  const TraceLine count = {2, 2, "sdpSetMediaTransportType() method. change mediaLines=1"};
  const TraceLine exit = {2, 2, " sdpSetMediaTransportType() method. Exit"};
  const TraceLine noText = {
      4, 3, "sdpSetMediaTransportType(): The SDP buffer is null or holds no end of text. Exiting."};
  const TraceLine noTransport = {4, 3, "sdpSetMediaTransportType(): A transport is null. Exiting."};
  TraceCapture trace;
  EXPECT_EQ(toSecure(nullptr), 0);
  EXPECT_EQ(trace.takeLines(), (Traces{enter, count, noText, exit}));
  expectUntouched(withoutNul(session + audio), toSecure, 0);
  trace.takeLines();
  SdpBuffer buffer(session + audio);
  EXPECT_EQ(setTransport(nullptr, "RTP/SAVP")(buffer.data()), 0);
  EXPECT_EQ(trace.takeLines(), (Traces{enter, count, noTransport, exit}));
  EXPECT_EQ(setTransport("RTP/AVP", nullptr)(buffer.data()), 0);
  EXPECT_EQ(trace.takeLines(), (Traces{enter, count, noTransport, exit}));
  buffer.expectText(session + audio);
}

}  // namespace
