#include <memory>
#include <string_view>

#include "modifiersTestSupport.h"

// An answer follows a new offer that differs from the old one in its codecs. Payload types: 0 PCMU, 8 PCMA, 9 G722,
// 18 G729; 50 and 51 are unknown.

namespace {

constexpr unsigned short kOLineEnd = 7777;  // what a caller passes in

struct Outcome {
  unsigned short status = 99;
  int length = -1;
  unsigned short oLineEnd = kOLineEnd;
  std::string text;
  bool untouched = false;  ///< not one character of the answer's buffer was written
};

/// A text in a heap block that ends right behind its NUL.
std::unique_ptr<char[]> exactBlock(const std::string& text) {
  auto block = std::make_unique<char[]>(text.size() + 1);
  std::memcpy(block.get(), text.c_str(), text.size() + 1);
  return block;
}

Outcome update(const std::string& answer, const std::string& oldOffer, const std::string& newOffer,
               bool modifyOLine = false) {
  Outcome outcome;
  EditBuffer buffer(answer);
  const std::string before = buffer.all();
  const auto oldBlock = exactBlock(oldOffer);
  const auto newBlock = exactBlock(newOffer);
  outcome.status = sdpModifications::sdpUpdateSdp(buffer.data(), oldBlock.get(), newBlock.get(),
                                                  outcome.length, outcome.oLineEnd, modifyOLine);
  EXPECT_EQ(oldBlock.get(), oldOffer) << "the old offer has changed";
  EXPECT_EQ(newBlock.get(), newOffer) << "the new offer has changed";
  buffer.expectGuard();
  outcome.text = buffer.text();
  outcome.untouched = buffer.all() == before;
  return outcome;
}

std::string audioSection(const std::string& formats, const std::string& attributes = "",
                         const std::string& port = "5004") {
  return "m=audio " + port + " RTP/AVP" + formats + "\r\n" + attributes;
}

std::string withAudio(const std::string& formats, const std::string& attributes = "") {
  return session + audioSection(formats, attributes);
}

const std::string rtpmap0 = "a=rtpmap:0 PCMU/8000\r\n";
const std::string rtpmap18 = "a=rtpmap:18 G729/8000\r\n";
const std::string fmtp18 = "a=fmtp:18 annexb=no\r\n";
const std::string anyOffer = withAudio(" 0 18");

/// The update succeeds and makes exactly this answer.
void expectAnswer(const std::string& answer, const std::string& newOffer, const std::string& wanted,
                  const std::string& oldOffer = anyOffer) {
  const Outcome outcome = update(answer, oldOffer, newOffer);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.text, wanted);
  EXPECT_EQ(outcome.length, static_cast<int>(wanted.size()));
  EXPECT_EQ(outcome.oLineEnd, kOLineEnd);
}

/// The update is refused with these traces and nothing is written.
void expectRefusal(const std::string& answer, const std::string& oldOffer, const std::string& newOffer,
                   const Traces& traces, bool modifyOLine = false) {
  TraceCapture trace;
  const Outcome outcome = update(answer, oldOffer, newOffer, modifyOLine);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(outcome.untouched);
  EXPECT_EQ(outcome.length, static_cast<int>(answer.size()));
  EXPECT_EQ(outcome.oLineEnd, kOLineEnd);
  EXPECT_EQ(trace.lines(), traces);
}

TraceLine error(const std::string& text) { return {4, 3, text}; }

const TraceLine done{8, 4, "Exiting sdpUpdateAnswer()"};
const TraceLine firstCodecMissing =
    error("The first codec in the sdpAnswer is not present to the SDP Offer.");
const TraceLine differentPorts = error("Different ports between the two Offers. Exiting.");
const TraceLine severalOffered =
    error("More than one active non-secure audio m lines found in new offer. Exiting.");
const TraceLine severalAnswered =
    error("More than one active non-secure audio m lines found in answer. Exiting.");
const TraceLine noRoom = error("sdpUpdateSdp(): The new sdpAnswer does not fit the SDP buffer. Exiting.");
const TraceLine noVideoRoom = error("sdpUpdateSdp(): The video m-line does not fit the SDP buffer. Exiting.");

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

TEST(AnswerUpdate, ComparesTheAddressesOfTheSessions) {
  const auto offer = [](const std::string& cLines, const std::string& mediaLine = "") {
    return "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\n" + cLines + "t=0 0\r\n" + audioSection(" 0") +
           mediaLine;
  };
  const std::string first = "c=IN IP4 192.0.2.1\r\n";
  const std::string second = "c=IN IP4 192.0.2.2\r\n";
  expectRefusal(withAudio(" 0"), offer(first), offer(second),
                {error("Different IPs between the two Offers. Exiting")});
  expectRefusal(withAudio(" 0"), offer(second + first), offer(first + second),
                {error("Different IPs between the two Offers. Exiting")});
  const std::string answer = withAudio(" 0");
  expectAnswer(answer, offer(""), answer, offer(first));
  expectAnswer(answer, offer(first), answer, offer(""));
  expectAnswer(answer, offer(first + second), answer, offer(first));
  expectAnswer(answer, offer("", second), answer, offer("", first));
  expectAnswer(answer, offer("c=IN IP6 2001:DB8::A\r\n"), answer, offer("c=IN IP6 2001:db8::a\r\n"));
}

TEST(AnswerUpdate, ComparesThePortsOfTheActiveAudio) {
  const auto offer = [](const std::string& port) { return session + audioSection(" 0", "", port); };
  const std::string answer = withAudio(" 0");
  const std::string inactive = audioSection(" 0", "", "0");
  const struct {
    const char* name;
    std::string oldOffer;
    std::string newOffer;
  } different[] = {
      {"another port", offer("5004"), offer("5006")},
      {"as text", offer("5004"), offer("05004")},
      {"to the last character", offer("500411"), offer("500412")},
      {"none in the new offer", offer("5004"), offer("0")},
      {"none in the old offer", offer("0"), offer("5004")},
      {"the first of the old offer", offer("5004") + audioSection(" 0", "", "5006"), offer("5006")},
      {"the last of the new offer", offer("5004"), offer("5004") + audioSection(" 0", "", "5006")},
  };
  for (const auto& each : different) {
    SCOPED_TRACE(each.name);
    expectRefusal(answer, each.oldOffer, each.newOffer, {differentPorts});
  }
  // Two offers without active audio have the same port, and then no codec.
  expectRefusal(answer, offer("0"), offer("00"), {firstCodecMissing});
  expectAnswer(answer, offer("5004"), answer, session + inactive + audioSection(" 8"));
  expectAnswer(answer, session + inactive + audioSection(" 0"), answer, offer("5004"));
  expectAnswer(answer, offer("5004/2"), answer, offer("5004"));
  expectAnswer(answer, offer("99999999999"), answer, offer("99999999999"));
}

TEST(AnswerUpdate, IsForOneActiveAudioOnEachSide) {
  const std::string two = withAudio(" 0") + audioSection(" 0");
  expectRefusal(withAudio(" 0"), anyOffer, two, {severalOffered});
  expectRefusal(two, anyOffer, withAudio(" 0"), {severalAnswered});
  // An earlier reason counts.
  expectRefusal(two, anyOffer, withAudio(" 8"), {firstCodecMissing});
  expectRefusal(withAudio(" 18") + audioSection(" 0"), anyOffer, withAudio(" 0"), {firstCodecMissing});
  // The first known codec may stand on the second m-line.
  expectRefusal(withAudio(" 50") + audioSection(" 0"), anyOffer, withAudio(" 0"), {severalAnswered});
}

TEST(AnswerUpdate, RefusesASecureAnswer) {
  const Traces secured = {error("The sdpAnswer contains security. Cannot update the SDP.")};
  expectRefusal(session + "m=audio 5004 RTP/SAVP 0\r\n", anyOffer, withAudio(" 0"), secured);
  expectRefusal(withAudio(" 0") + "m=video 5006 UDP/TLS/RTP/SAVPF 96\r\n", anyOffer, withAudio(" 0"),
                secured);
  expectRefusal(withAudio(" 0") + "m=other 5006 RTP/SAVP 96\r\n", anyOffer, withAudio(" 0"), secured);
  const std::string inactive = withAudio(" 0") + "m=video 0 RTP/SAVP 96\r\n";
  expectAnswer(inactive, withAudio(" 0"), inactive);
  // In the offers nobody asks.
  expectAnswer(withAudio(" 0"), session + "m=audio 5004 RTP/SAVP 0\r\n", withAudio(" 0"));
}

TEST(AnswerUpdate, NeedsTheAnswersFirstCodecInTheNewOffer) {
  expectRefusal(withAudio(" 18 0"), anyOffer, withAudio(" 0"), {firstCodecMissing});
  expectRefusal(withAudio(" 50"), anyOffer, withAudio(" 0"), {firstCodecMissing});
  expectRefusal(withAudio(""), anyOffer, withAudio(" 0"), {firstCodecMissing});
  expectRefusal(session, anyOffer, withAudio(" 0"), {firstCodecMissing});
  expectRefusal(session + audioSection(" 0", "", "0"), anyOffer, withAudio(" 0"), {firstCodecMissing});
  expectRefusal(withAudio(" 0"), anyOffer, withAudio(" 50"), {firstCodecMissing});
  expectRefusal(withAudio(" 50"), anyOffer, withAudio(" 50"), {firstCodecMissing});
}

/// What the codec says of a text that it refuses.
TraceLine codecErrorOf(const std::string& text) {
  const auto description = std::make_unique<sDescription>();
  char message[SDP_ERROR_TEXT_SIZE] = "";
  unsigned short start = 0;
  unsigned short end = 0;
  EXPECT_EQ(sdp_decodeOpt_r(description.get(), text.c_str(), SDP_TYPE_UNKNOWN, message, false, start, end),
            1);
  EXPECT_STRNE(message, "");
  return error(message);
}

TEST(AnswerUpdate, RefusesATextThatIsNoBody) {
  const std::string good = withAudio(" 0");
  const std::string bad = "v=0\r\nm=audio\r\n";
  const struct {
    std::string answer;
    std::string oldOffer;
    std::string newOffer;
    std::string trace;
  } cases[] = {
      {bad, bad, bad, "The sdpAnswer is malformed, exiting."},
      {good, bad, bad, "The oldSdpOffer is malformed, exiting."},
      {good, good, bad, "The newSdpOffer is malformed, exiting."},
  };
  for (const auto& each : cases) {
    expectRefusal(each.answer, each.oldOffer, each.newOffer, {error(each.trace), codecErrorOf(bad)});
  }
  expectRefusal(good, "", good, {error(cases[1].trace), codecErrorOf("")});
}

TEST(AnswerUpdate, RefusesABufferThatIsNullOrHoldsNoEnd) {
  const Traces refused = {error("sdpUpdateSdp(): The SDP buffer is null or holds no end of text. Exiting.")};
  const std::string good = withAudio(" 0");
  for (int place = 0; place < 3; ++place) {
    for (const bool null : {true, false}) {
      SCOPED_TRACE(place);
      std::vector<char> unterminated = unterminatedBuffer();
      const std::vector<char> before = unterminated;
      EditBuffer buffers[] = {EditBuffer(good), EditBuffer(good), EditBuffer(good)};
      char* texts[] = {buffers[0].data(), buffers[1].data(), buffers[2].data()};
      texts[place] = null ? nullptr : unterminated.data();
      int length = -1;
      unsigned short oLineEnd = kOLineEnd;
      TraceCapture trace;
      EXPECT_EQ(sdpModifications::sdpUpdateSdp(texts[0], texts[1], texts[2], length, oLineEnd, true), 1);
      EXPECT_EQ(trace.lines(), refused);
      EXPECT_EQ(length, place == 0 ? 0 : static_cast<int>(good.size()));
      EXPECT_EQ(oLineEnd, kOLineEnd);
      EXPECT_EQ(unterminated, before);
      for (const EditBuffer& buffer : buffers) buffer.expect(good);
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

TEST(AnswerUpdate, RefusesToAddVideoWithoutFormat) {
  const std::string offered = withAudio(" 0") + "m=video 5006 RTP/AVP\r\n" + video;
  const Traces refused = {
      error("sdpUpdateSdp(): The video m-line of the newSdpOffer has no format. Exiting.")};
  expectRefusal(withAudio(" 0"), anyOffer, offered, refused);
  expectRefusal(withAudio(" 0 18"), anyOffer, offered, refused);
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

/// A body with as many attribute lines in its audio section as given.
std::string withAttributes(const std::string& formats, int count) {
  std::string attributes;
  for (int i = 0; i < count; ++i) attributes += "a=n:" + std::to_string(i) + "\r\n";
  return withAudio(formats, attributes);
}

TEST(AnswerUpdate, RewritesOnlyAnAnswerThatItsDescriptionHoldsWhole) {
  const Traces refused = {
      error("sdpUpdateSdp(): The sdpAnswer holds more than can be written anew. Exiting.")};
  constexpr int most = SDP_ATTRIBUTE_CAPACITY;
  expectAnswer(withAttributes(" 0 18", most), withAudio(" 0"), withAttributes(" 0", most));
  expectRefusal(withAttributes(" 0 18", most + 1), anyOffer, withAudio(" 0"), refused);
  expectRefusal(withAudio(" 0 18") + "x=odd\r\n", anyOffer, withAudio(" 0"), refused);
  // What needs no rewriting goes on.
  const std::string more = withAttributes(" 0", most + 1);
  expectAnswer(more, withAudio(" 0") + video, more + "m=video 0 RTP/AVP 96\r\n");
}

TEST(AnswerUpdate, FindsItsReasonsBehindManyMLinesAndFormats) {
  std::string formats = " 0";
  while (formats.size() < 200) formats += " 18";
  std::string many = session;
  for (int i = 0; i < 60; ++i) many += audioSection(formats);
  expectRefusal(withAudio(" 0"), anyOffer, many, {severalOffered});
  expectRefusal(many, anyOffer, withAudio(" 0"), {severalAnswered});
  std::string manyFormats;
  for (int i = 0; i < 1000; ++i) manyFormats += " 18";
  expectAnswer(withAudio(" 0" + manyFormats), withAudio(" 0 18"), withAudio(" 0" + manyFormats));
  expectRefusal(withAudio(" 0" + manyFormats), anyOffer, withAudio(" 0"),
                {error("sdpUpdateSdp(): The sdpAnswer holds more than can be written anew. Exiting.")});
}

/// An answer of that length with the formats 0 and 18, five of whose lines end in a bare LF.
std::string fullAnswer(std::size_t length) {
  std::string text =
      "v=0\no=a 1 1 IN IP4 192.0.2.1\ns=-\nc=IN IP4 192.0.2.1\nt=0 0\n" + audioSection(" 0 18");
  for (int lines = 0; text.size() + 700 < length; ++lines) {
    if (lines == 38) text += "m=text 0 RTP/AVP 98\r\n";
    text += "a=n:" + std::string(330, 'x') + "\r\n";
  }
  while (length - text.size() > 340) text += "a=n:" + std::string(200, 'y') + "\r\n";
  return text + "a=n:" + std::string(length - text.size() - 6, 'z') + "\r\n";
}

/// The same as the codec writes it, without format 18: five characters longer and three shorter.
std::string fullAnswerRewritten(std::size_t length) {
  std::string text = fullAnswer(length);
  text.erase(text.find(" 18\r\n"), 3);
  for (std::size_t lf = text.find('\n'); lf < text.find("m=audio"); lf = text.find('\n', lf + 2)) {
    text.insert(lf, 1, '\r');
  }
  return text;
}

TEST(AnswerUpdate, FillsTheBufferAndNoMore) {
  const std::string fits = fullAnswer(kLongestBody - 2);
  ASSERT_EQ(fits.size(), kLongestBody - 2);
  const std::string rewritten = fullAnswerRewritten(kLongestBody - 2);
  ASSERT_EQ(rewritten.size(), kLongestBody);
  expectAnswer(fits, withAudio(" 0"), rewritten);
  expectRefusal(fullAnswer(kLongestBody - 1), anyOffer, withAudio(" 0"), {noRoom});
  expectRefusal(fullAnswer(kLongestBody), anyOffer, withAudio(" 0"), {noRoom});
}

TEST(AnswerUpdate, AddsVideoWhereThereIsJustEnoughRoom) {
  const std::string line = "m=video 0 RTP/AVP 96\r\n";
  const std::string offered = withAudio(" 0") + video;
  const std::string fits = filledTo(kLongestBody - line.size(), withAudio(" 0"));
  expectAnswer(fits, offered, fits + line);
  expectRefusal(filledTo(kLongestBody - line.size() + 1, withAudio(" 0")), anyOffer, offered, {noVideoRoom});
  // Also when the audio was rewritten before.
  expectRefusal(fullAnswer(kLongestBody - 2), anyOffer, offered, {noVideoRoom});
}

}  // namespace
