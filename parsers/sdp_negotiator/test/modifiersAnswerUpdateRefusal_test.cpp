#include "answerUpdateTestSupport.h"

// Which updates of an answer are refused: what the bodies have to agree in, and what has to find room. Payload types:
// 0 PCMU, 8 PCMA, 18 G729; 50 is unknown.

namespace {

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

const TraceLine firstCodecMissing =
    error("The first codec in the sdpAnswer is not present to the SDP Offer.");
const TraceLine differentPorts = error("Different ports between the two Offers. Exiting.");
const TraceLine severalOffered =
    error("More than one active non-secure audio m lines found in new offer. Exiting.");
const TraceLine severalAnswered =
    error("More than one active non-secure audio m lines found in answer. Exiting.");
const TraceLine noRoom = error("sdpUpdateSdp(): The new sdpAnswer does not fit the SDP buffer. Exiting.");
const TraceLine noVideoRoom = error("sdpUpdateSdp(): The video m-line does not fit the SDP buffer. Exiting.");

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
      {"in the fifth character", offer("50041"), offer("50042")},
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
  // Five characters of a port are compared.
  expectAnswer(answer, offer("500412"), answer, offer("500411"));
  expectAnswer(answer, offer("50041"), answer, offer("500411"));
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

TEST(AnswerUpdate, RefusesToAddVideoWithoutFormat) {
  const std::string offered = withAudio(" 0") + "m=video 5006 RTP/AVP\r\n" + video;
  const Traces refused = {
      error("sdpUpdateSdp(): The video m-line of the newSdpOffer has no format. Exiting.")};
  expectRefusal(withAudio(" 0"), anyOffer, offered, refused);
  expectRefusal(withAudio(" 0 18"), anyOffer, offered, refused);
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

/// `fullAnswer` as the codec writes it, without format 18: five characters longer and three shorter.
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
