#include "requestTestSupport.h"

// The update of an answer by a new offer. Payload types: 0 PCMU, 8 PCMA, 18 G729.

namespace {

using M = sdpModifications;

const TraceLine entered{1, 1, "Entered sdpUpdateAnswer()"};

std::string body(const std::string& formats, const std::string& more = "") {
  return session + "m=audio 5004 RTP/AVP" + formats + "\r\n" + more;
}

/// The edit reads its three texts from buffers of an SDP text's size.
TextEdit edit(const std::string& oldOffer, const std::string& newOffer) {
  return [=](char* text) {
    SdpBuffer first(oldOffer);
    SdpBuffer second(newOffer);
    int length = 0;
    unsigned short oLineEnd = 0;
    return M::sdpUpdateSdp(text, first.data(), second.data(), length, oLineEnd, true);
  };
}

RequestCase update(const std::string& name, const std::string& oldOffer, const std::string& newOffer,
                   const std::string& before, const std::string& after, bool timed = true) {
  return {name,
          [=](cSdpNegotiator& o) {
            const cSdpNegotiator offer = objectWithText(oldOffer);
            const cSdpNegotiator answer = objectWithText(newOffer);
            return o.sdpUpdateAnswer(&offer, &answer);
          },
          edit(oldOffer, newOffer),
          before,
          after,
          {entered, buildingText, buildingText},
          {},
          timed ? "IP4 0.0.0.0" : ""};
}

const std::string g729 = "a=rtpmap:18 G729/8000\r\na=fmtp:18 annexb=no\r\n";
const std::string video = "m=video 5006 RTP/AVP 31\r\n";
const std::string rejectedVideo = "m=video 0 RTP/AVP 31\r\n";

std::vector<RequestCase> updates() {
  return {
      update("DropsACodec", body(" 0 8 18"), body(" 0 8"), body(" 0 18", g729), body(" 0")),
      update("KeepsTheOrderOfTheAnswer", body(" 0 8 18"), body(" 18 0"), body(" 0 8 18"), body(" 0 18")),
      update("KeepsTheCodecsOfBoth", body(" 0 8"), body(" 8 0"), body(" 0 8"), body(" 0 8"), false),
      update("RejectsNewVideo", body(" 0"), body(" 0", video), body(" 0"), body(" 0", rejectedVideo)),
      update("ClosesItsVideo", body(" 0", video), body(" 0", video), body(" 0", video),
             body(" 0", rejectedVideo)),
      update("OfDeflatedOffers", padded(body(" 0 8 18")), padded(body(" 0")), body(" 0 8"), body(" 0")),
  };
}

class AnswerUpdate : public testing::TestWithParam<RequestCase> {};

TEST_P(AnswerUpdate, EditsTheTextAndParsesItAgain) { expectEditedAndParsed(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Offers, AnswerUpdate, testing::ValuesIn(updates()), caseName);

TEST(AnswerUpdate, LeavesTheObjectEmptyWhenTheTextCannotBeStored) {
  const std::string offer = body(" 0");
  expectEmptiedWhenNotStored(update("Video", offer, body(" 0", video), body(" 0", video), ""));
}

TEST(AnswerUpdate, NeedsBothOffers) {
  const cSdpNegotiator offer = parsedObject(body(" 0"));
  const cSdpNegotiator before = parsedObject(body(" 0 8"));
  cSdpNegotiator object = before;
  const Traces refused = {entered, {4, 3, "Invalid input objects. Cannot create the update SDP. Exiting."}};
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpUpdateAnswer(nullptr, &offer), 1); }), refused);
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpUpdateAnswer(&offer, nullptr), 1); }), refused);
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpUpdateAnswer(nullptr, nullptr), 1); }), refused);
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(AnswerUpdate, ThatIsRefusedLeavesTheObject) {
  const std::string otherPort = session + "m=audio 5014 RTP/AVP 0\r\n";
  const std::string secure = session + "m=audio 5004 RTP/SAVP 0\r\n";
  const std::string otherAddress =
      "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.77\r\nt=0 0\r\n";
  expectFailedEdit(update("OtherPort", body(" 0"), otherPort, body(" 0"), ""));
  expectFailedEdit(
      update("OtherAddress", body(" 0"), otherAddress + "m=audio 5004 RTP/AVP 0\r\n", body(" 0"), ""));
  expectFailedEdit(update("FirstCodecGone", body(" 0 8"), body(" 8"), body(" 0 8"), ""));
  expectFailedEdit(update("SecureAnswer", body(" 0"), body(" 0"), secure, ""));
  expectFailedEdit(update("NoOffer", "no body\r\n", body(" 0"), body(" 0"), ""));
  expectFailedEdit(update("NoNewOffer", body(" 0"), "no body\r\n", body(" 0"), ""));
  expectFailedEdit(update("NoAnswer", body(" 0"), body(" 0"), "no body\r\n", ""));
}

// Deliberate: whether the texts can be had is not asked. They count as empty then, which the edit judges.
TEST(AnswerUpdate, TakesATextThatIsNotThereForAnEmptyOne) {
  const cSdpNegotiator offer = parsedObject(body(" 0"));
  const cSdpNegotiator empty = emptyObject();
  cSdpNegotiator object = emptyObject();
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpUpdateAnswer(&offer, &offer), 1); }),
            (Traces{entered, buildingText, textIsEmpty, buildingText, buildingText} +
             tracesOfEdit(edit(body(" 0"), body(" 0")), "")));
  EXPECT_TRUE(sameBytes(object, emptyObject()));
  object = offer;
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpUpdateAnswer(&empty, &offer), 1); }),
            (Traces{entered, buildingText, buildingText, textIsEmpty, buildingText} +
             tracesOfEdit(edit("", body(" 0")), body(" 0"))));
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpUpdateAnswer(&offer, &empty), 1); }),
            (Traces{entered, buildingText, buildingText, buildingText, textIsEmpty} +
             tracesOfEdit(edit(body(" 0"), ""), body(" 0"))));
  EXPECT_TRUE(sameBytes(object, offer));
}

// A part of a text is not taken for it: the longest body, which has no room for its NUL, would lose its end.
TEST(AnswerUpdate, TakesATextThatCannotBeReadForAnEmptyOne) {
  const cSdpNegotiator offer = parsedObject(audioBody());
  const Traces expanding = {entered, buildingText, buildingText, buildingText};
  for (const cSdpNegotiator& unreadable : unreadableObjects()) {
    cSdpNegotiator object = unreadable;
    EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpUpdateAnswer(&offer, &offer), 1); }),
              expanding + tracesOfEdit(edit(audioBody(), audioBody()), ""));
    EXPECT_TRUE(sameBytes(object, unreadable));
    object = offer;
    EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpUpdateAnswer(&unreadable, &offer), 1); }),
              expanding + tracesOfEdit(edit("", audioBody()), audioBody()));
    EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpUpdateAnswer(&offer, &unreadable), 1); }),
              expanding + tracesOfEdit(edit(audioBody(), ""), audioBody()));
    EXPECT_TRUE(sameBytes(object, offer));
  }
}

TEST(AnswerUpdate, MayBeMadeWithTheObjectItself) {
  cSdpNegotiator object = parsedObject(body(" 0 8"));
  object.setBandwidth(64);
  EXPECT_EQ(object.sdpUpdateAnswer(&object, &object), 0);
  EXPECT_TRUE(sameBytes(object, parsedObject(body(" 0 8"))));
}

TEST(AnswerUpdate, LeavesTheOffersAlone) {
  const cSdpNegotiator offer = parsedObject(body(" 0 8"));
  const cSdpNegotiator answer = parsedObject(body(" 0"));
  const cSdpNegotiator offerBefore = offer;
  const cSdpNegotiator answerBefore = answer;
  cSdpNegotiator object = parsedObject(body(" 0 8"));
  EXPECT_EQ(object.sdpUpdateAnswer(&offer, &answer), 0);
  EXPECT_TRUE(sameBytes(offer, offerBefore));
  EXPECT_TRUE(sameBytes(answer, answerBefore));
}

}  // namespace
