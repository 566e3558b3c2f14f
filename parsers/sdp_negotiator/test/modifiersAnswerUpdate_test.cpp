#include <string_view>

#include "answerUpdateTestSupport.h"

// An answer follows a new offer that differs from the old one in its codecs. Payload types: 0 PCMU, 8 PCMA, 9 G722,
// 18 G729; 50 and 51 are unknown.

namespace {

const std::string rtpmap0 = "a=rtpmap:0 PCMU/8000\r\n";
const std::string rtpmap18 = "a=rtpmap:18 G729/8000\r\n";
const std::string fmtp18 = "a=fmtp:18 annexb=no\r\n";

const TraceLine done{8, 4, "Exiting sdpUpdateAnswer()"};

struct Case {
  const char* name;
  std::string answer;
  std::string newOffer;
  std::string wanted;
};

TEST(AnswerUpdate, LeavesOutCodecsThatTheNewOfferNoLongerHas) {
  const std::string events = "a=rtpmap:101 telephone-event/8000\r\n";
  const Case cases[] = {
      {"format, rtpmap and fmtp", withAudio(" 0 18", rtpmap0 + rtpmap18 + fmtp18 + "a=ptime:20\r\n"),
       withAudio(" 0"), withAudio(" 0", rtpmap0 + "a=ptime:20\r\n")},
      {"several", withAudio(" 0 9 8 18", "a=rtpmap:8 PCMA/8000\r\n" + fmtp18 + rtpmap0), withAudio(" 9 0"),
       withAudio(" 0 9", rtpmap0)},
      {"a format twice", withAudio(" 18 0 18"), withAudio(" 0 18"), withAudio(" 18 0 18")},
      {"a dropped format twice", withAudio(" 0 18 18"), withAudio(" 0"), withAudio(" 0")},
      {"unknown formats stay", withAudio(" 50 0 18 51", "a=rtpmap:50 X/1\r\n"), withAudio(" 0"),
       withAudio(" 50 0 51", "a=rtpmap:50 X/1\r\n")},
      {"only the audio section's attributes", session + "a=rtpmap:18 G729/8000\r\n" + audioSection(" 0 18"),
       withAudio(" 0"), session + "a=rtpmap:18 G729/8000\r\n" + audioSection(" 0")},
      {"an inactive audio section is not looked at",
       session + audioSection(" 18", rtpmap18, "0") + audioSection(" 0 18"), withAudio(" 0"),
       session + audioSection(" 18", rtpmap18, "0") + audioSection(" 0")},
      {"a secure section without port does not matter", withAudio(" 0 18") + "m=audio 0 RTP/SAVP 0\r\n",
       withAudio(" 0"), withAudio(" 0") + "m=audio 0 RTP/SAVP 0\r\n"},
      {"by codec, not by payload type", withAudio(" 0 18 101", events),
       withAudio(" 0 96", "a=rtpmap:96 telephone-event/8000\r\n"), withAudio(" 0 101", events)},
      {"a dynamic payload type that means another codec", withAudio(" 0 101", events),
       withAudio(" 0 101", "a=rtpmap:101 iLBC/8000\r\n"), withAudio(" 0")},
      {"names are compared by their beginning", withAudio(" 0 18", "a=rtpmapped:18 x\r\na=fmtp2:18 y\r\n"),
       withAudio(" 0"), withAudio(" 0")},
      {"other names stay", withAudio(" 0 18", "a=x-rtpmap:18 x\r\na=Rtpmap:18 x\r\n"), withAudio(" 0"),
       withAudio(" 0", "a=x-rtpmap:18 x\r\na=Rtpmap:18 x\r\n")},
      {"a value without a blank stays", withAudio(" 0 18", "a=fmtp:18\r\na=fmtp\r\na=fmtp:18\tx\r\n"),
       withAudio(" 0"), withAudio(" 0", "a=fmtp:18\r\na=fmtp\r\na=fmtp:18\tx\r\n")},
      {"a longer payload type stays", withAudio(" 0 18 189", "a=fmtp:189 x\r\n"), withAudio(" 0"),
       withAudio(" 0 189", "a=fmtp:189 x\r\n")},
      // Deliberate: nothing in front of the blank is the beginning of every payload type.
      {"an empty payload type goes with any", withAudio(" 0 18", "a=fmtp: x\r\n"), withAudio(" 0"),
       withAudio(" 0")},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    expectAnswer(each.answer, each.newOffer, each.wanted);
  }
}

TEST(AnswerUpdate, TakesTheLinesOfAPayloadTypeThatIsALeadingPartOfADroppedOne) {
  // Deliberate: where 96 is dropped the lines of 9 go, though 9 itself stays.
  const std::string lines = "a=rtpmap:9 G722/8000\r\na=fmtp:9 x\r\n";
  const std::string clear = "a=rtpmap:96 CLEARMODE/8000\r\n";
  expectAnswer(withAudio(" 9 96", lines + clear), withAudio(" 9"), withAudio(" 9"));
  expectAnswer(withAudio(" 9 96 0", lines + clear), withAudio(" 9 96", clear),
               withAudio(" 9 96", lines + clear));
}

TEST(AnswerUpdate, KeepsTheFirst20FormatsOfAnMLineThatIsRewritten) {
  std::string formats = " 0";
  for (int i = 50; i < 69; ++i) formats.append(" ").append(std::to_string(i));  // with 0, 20 formats
  expectAnswer(withAudio(formats + " 18 69"), withAudio(" 0"), withAudio(formats));
  expectAnswer(withAudio(formats + " 69 70"), withAudio(" 0"), withAudio(formats + " 69 70"));
}

TEST(AnswerUpdate, LeavesAnAnswerAsItIsThatNothingConcerns) {
  const std::string lf = "v=0\no=a 1 1 IN IP4 192.0.2.1\ns=-\nt=0 0\nx=odd\nm=audio 5004 RTP/AVP  0";
  const Case cases[] = {
      {"the same codecs", withAudio(" 0 18"), withAudio(" 0 18"), ""},
      {"another order", withAudio(" 0 18"), withAudio(" 18 0"), ""},
      {"more codecs", withAudio(" 0"), withAudio(" 18 8 0"), ""},
      {"another form than the codec's", lf, withAudio(" 0"), ""},
      {"no known codec but the first", withAudio(" 0 50"), withAudio(" 0"), ""},
      {"the first known codec counts", withAudio(" 50 0"), withAudio(" 0"), ""},
      {"video of the answer alone", withAudio(" 0") + video, withAudio(" 0"), ""},
      {"inactive audio in the new offer", withAudio(" 0"),
       session + audioSection(" 18", "", "0") + audioSection(" 0") + audioSection(" 8", "", "00"), ""},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    for (const bool modifyOLine : {false, true}) {
      TraceCapture trace;
      const Outcome outcome = update(each.answer, anyOffer, each.newOffer, modifyOLine);
      EXPECT_EQ(outcome.status, 0);
      EXPECT_EQ(outcome.text, each.answer);
      EXPECT_EQ(outcome.length, static_cast<int>(each.answer.size()));
      EXPECT_EQ(outcome.oLineEnd, kOLineEnd);
      EXPECT_EQ(trace.lines(), Traces{done});
    }
  }
}

TEST(AnswerUpdate, AnswersVideoWithPort0) {
  const std::string offered = withAudio(" 0") + video;
  const std::string rejected = "m=video 0 RTP/AVP 96\r\n";
  expectAnswer(withAudio(" 0"), offered, withAudio(" 0") + rejected);
  expectAnswer(withAudio(" 0 18", fmtp18), offered, withAudio(" 0") + rejected);
  // The first video m-line counts, active or not, and its first format.
  expectAnswer(withAudio(" 0"), withAudio(" 0") + "m=video 0 RTP/SAVP 31 96\r\n" + video,
               withAudio(" 0") + "m=video 0 RTP/AVP 31\r\n");
  // A text that does not end in a line end gets one.
  expectAnswer(session + "m=audio 5004 RTP/AVP 0", offered, withAudio(" 0") + rejected);
  const std::string two = video + audioSection(" 18", "", "0") + "m=video 5008/2 RTP/AVP 31\r\n";
  const std::string disabled = "m=video 0 RTP/AVP 96\r\na=rtpmap:96 VP8/90000\r\n" +
                               audioSection(" 18", "", "0") + "m=video 0 RTP/AVP 31\r\n";
  expectAnswer(withAudio(" 0") + two, offered, withAudio(" 0") + disabled);
  expectAnswer(withAudio(" 0 18") + two, offered, withAudio(" 0") + disabled);
  expectAnswer(withAudio(" 0") + "m=video 0 RTP/AVP 99\r\n", offered,
               withAudio(" 0") + "m=video 0 RTP/AVP 99\r\n");
  // Where nothing is added the offered formats do not matter.
  expectAnswer(withAudio(" 0") + two, withAudio(" 0") + "m=video 5006 RTP/AVP\r\n",
               withAudio(" 0") + disabled);
}

/// The text with an o-line by the time of day checked and replaced by "o=NEW".
std::string withoutNewOrigin(const std::string& text) {
  const std::string_view start = "o=ZEV ";
  const std::size_t at = text.find(start);
  if (at == std::string::npos) return text;
  const std::string id =
      text.substr(at + start.size(), text.find(' ', at + start.size()) - at - start.size());
  EXPECT_EQ(id.find_first_not_of("0123456789"), std::string::npos);
  EXPECT_TRUE(id.size() >= 7 && id.size() <= 9) << id;
  const std::string line = std::string(start) + id + " " + id + " IN IP4 0.0.0.0\r\n";
  EXPECT_EQ(text.substr(at, line.size()), line);
  return text.substr(0, at) + "o=NEW\r\n" + text.substr(at + line.size());
}

TEST(AnswerUpdate, RenewsTheOriginLineWhenAskedTo) {
  const std::string offered = withAudio(" 0") + video;
  const auto renewed = [](const std::string& media) {
    return "v=0\r\no=NEW\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n" + media;
  };
  const Case cases[] = {
      {"a format went", withAudio(" 0 18"), withAudio(" 0"), renewed(audioSection(" 0"))},
      {"a format went with its lines", withAudio(" 0 18", rtpmap0 + rtpmap18 + fmtp18), withAudio(" 0"),
       renewed(audioSection(" 0", rtpmap0))},
      {"video was added", withAudio(" 0"), offered, renewed(audioSection(" 0") + "m=video 0 RTP/AVP 96\r\n")},
      // Deliberate: also when the answer's video had port 0 already.
      {"video in both", withAudio(" 0") + "m=video 0 RTP/AVP 9\r\n", offered,
       renewed(audioSection(" 0") + "m=video 0 RTP/AVP 9\r\n")},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    TraceCapture trace;
    const Outcome outcome = update(each.answer, anyOffer, each.newOffer, true);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(withoutNewOrigin(outcome.text), each.wanted);
    EXPECT_EQ(outcome.length, static_cast<int>(outcome.text.size()));
    EXPECT_EQ(outcome.oLineEnd, outcome.text.find("s=-"));
    EXPECT_EQ(trace.count(2, 2, "The o-line has been changed. Exiting..."), 1);
    ASSERT_FALSE(trace.lines().empty());
    EXPECT_EQ(trace.lines().back(), done);
  }
}

TEST(AnswerUpdate, RefusesAnOriginLineThatCannotBeRenewed) {
  const std::string noSession = "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\nt=0 0\r\n" + audioSection(" 0");
  const std::string offered = withAudio(" 0") + video;
  const Traces refused = {
      {2, 2, "The s-line is not present within the SDP. Exiting..."},
      error("Failed to update the o-line in the sdpAnswer."),
  };
  TraceCapture trace;
  const Outcome outcome = update(noSession, anyOffer, offered, true);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(outcome.untouched);
  EXPECT_EQ(outcome.oLineEnd, kOLineEnd);
  Traces lines = trace.lines();
  ASSERT_FALSE(lines.empty());
  lines.erase(lines.begin());  // names an id by the time of day
  EXPECT_EQ(lines, refused);
  expectAnswer(noSession, offered, noSession + "m=video 0 RTP/AVP 96\r\n");
}

TEST(AnswerUpdate, RenewsTheOriginLineWhereThereIsRoom) {
  // The new line is 12 to 16 characters longer, as the id has 7 to 9 digits.
  const std::string rejected = withAudio(" 0") + "m=video 0 RTP/AVP 9\r\n";
  const std::string offered = withAudio(" 0") + video;
  const std::string fits = filledTo(kLongestBody - 16, rejected);
  const Outcome renewed = update(fits, anyOffer, offered, true);
  EXPECT_EQ(renewed.status, 0);
  const std::size_t oLine = fits.find("o=");
  EXPECT_EQ(withoutNewOrigin(renewed.text),
            fits.substr(0, oLine) + "o=NEW\r\n" + fits.substr(fits.find("s=-")));
  TraceCapture trace;
  const Outcome refused = update(filledTo(kLongestBody - 11, rejected), anyOffer, offered, true);
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(refused.untouched);
  EXPECT_EQ(refused.length, static_cast<int>(kLongestBody - 11));
  EXPECT_EQ(refused.oLineEnd, kOLineEnd);
  ASSERT_FALSE(trace.lines().empty());
  EXPECT_EQ(trace.lines().back(), error("Failed to update the o-line in the sdpAnswer."));
}

TEST(AnswerUpdate, DoesTheSameWhileTracingIsOff) {
  const Outcome updated = update(withAudio(" 0 18"), anyOffer, withAudio(" 0") + video);
  EXPECT_EQ(updated.status, 0);
  EXPECT_EQ(updated.text, withAudio(" 0") + "m=video 0 RTP/AVP 96\r\n");
  const Outcome refused = update(withAudio(" 0 18"), anyOffer, withAudio(" 8"));
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(refused.untouched);
}

}  // namespace
