#include <string>
#include <vector>

#include "refusalTestSupport.h"
#include "sdpModifiers.h"

// Why an edit of codec lists, sections, security, ICE, dummies or answers was refused.

namespace {

using M = sdpModifications;

unsigned short oLineEnd = 0;
int length = 0;

const std::string full = filledTo(kLongestBody, session + audio);
const std::string candidate4 = "a=candidate:1 1 UDP 1 192.0.2.1 5004 typ host\r\n";
const std::string candidate6 = "a=candidate:1 1 UDP 1 2001:db8::1 5004 typ host\r\n";
const std::string secure = "m=audio 5004 RTP/SAVP 0\r\n";
const std::string crypto = "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:any\r\n";

/// More m-lines than a description holds.
std::string manyMLines() {
  std::string text = session;
  for (int i = 0; i <= SDP_MEDIA_CAPACITY; ++i) text += audio;
  return text;
}

TextEdit keepCodec(unsigned char codec) {
  return [=](char* sdp) {
    const unsigned char codecs[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {codec};
    return M::sdpRemoveCodecs(sdp, codecs);
  };
}

TextEdit orderCodecs() {
  return [](char* sdp) {
    const unsigned char codecs[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {1};
    return M::sdpCodecsReordering(sdp, codecs);
  };
}

TextEdit correctTo(const std::string& other) {
  return [=](char* sdp) {
    EditBuffer buffer(other);
    return M::correctMLines(buffer.data(), sdp, false, false);
  };
}

TextEdit restore(const char* record) {
  return [=](char* sdp) {
    char codes[32] = "";
    std::strcpy(codes, record);
    return M::sdpReplaceTransProtocol(sdp, codes, oLineEnd, false);
  };
}

TextEdit reinsert(const char* record) {
  return [=](char* sdp) { return M::sdpReInsertAnat(sdp, record, oLineEnd, false); };
}

TextEdit removeMLines(const char* transport) {
  return [=](char* sdp) -> unsigned short {
    M::sdpRemoveMline(sdp, nullptr, oLineEnd, transport, false);
    return 0;
  };
}

TextEdit applyAnat() {
  return [](char* sdp) -> unsigned short {
    M::sdpApplyAnatAttributes(sdp);
    return 0;
  };
}

TextEdit changeType(eSecurityType oldType) {
  return [=](char* sdp) { return M::sdpChangeSdpType(sdp, oldType, BE_SRTP_1m_LINE, nullptr, 0); };
}

TextEdit createDummy(const char* ip, bool hold = false) {
  return [=](char* sdp) { return M::sdpCreateDummy(sdp, hold, hold, ip, 5004, length, oLineEnd, false); };
}

TextEdit updateAnswer(const std::string& oldOffer, const std::string& newOffer, bool modifyOLine = false) {
  return [=](char* sdp) {
    EditBuffer before(oldOffer);
    EditBuffer after(newOffer);
    return M::sdpUpdateSdp(sdp, before.data(), after.data(), length, oLineEnd, modifyOLine);
  };
}

class RefusedSectionEdit : public testing::TestWithParam<Refused> {};

TEST_P(RefusedSectionEdit, KeepsItsReasonAsItIsTraced) { expectTracedReason(GetParam()); }

TEST_P(RefusedSectionEdit, KeepsItsReasonWithoutTracing) { expectReason(GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    OfCodecLists, RefusedSectionEdit,
    testing::Values(Refused{"noListToKeep", session,
                            [](char* sdp) { return M::sdpRemoveCodecs(sdp, nullptr); },
                            SDP_REFUSED_NO_CODEC_LIST, SDP_REFUSAL_KIND_ARGUMENT, kNotTraced,
                            "There is no list of codecs."},
                    Refused{"noOrder", session,
                            [](char* sdp) { return M::sdpCodecsReordering(sdp, nullptr); },
                            SDP_REFUSED_NO_CODEC_LIST, SDP_REFUSAL_KIND_ARGUMENT, kNotTraced,
                            "There is no list of codecs."},
                    Refused{"noEndOfText", withoutNul(session), keepCodec(3), SDP_REFUSED_UNUSABLE_BUFFER,
                            SDP_REFUSAL_KIND_ARGUMENT, kError,
                            "sdpRemoveCodecs(): The SDP buffer is null or holds no end of text. Exiting."},
                    Refused{"noBody", "s=-\r\n", orderCodecs(), SDP_REFUSED_BODY, SDP_REFUSAL_KIND_BODY,
                            kNotTraced, "line 1, column 1: expected a first line \"v=\", found \"s=-\""},
                    // The codec's form is longer by the CR that one line lacks.
                    Refused{"noRoom", completeBody(kLongestBody), keepCodec(3), SDP_REFUSED_NO_ROOM,
                            SDP_REFUSAL_KIND_CAPACITY, kError,
                            "sdpRemoveCodecs(): The edited SDP does not fit the SDP buffer. Exiting."}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    OfSetsOfMLines, RefusedSectionEdit,
    testing::Values(
        Refused{"noBody", "v=0\r\nm\r\n", correctTo(session + audio), SDP_REFUSED_BODY, SDP_REFUSAL_KIND_BODY,
                kNotTraced,
                "line 2, column 2: expected an equals sign behind the letter, found the end of the line"},
        Refused{"notHeld", manyMLines(), correctTo(session + audio), SDP_REFUSED_M_LINES_NOT_HELD,
                SDP_REFUSAL_KIND_CAPACITY, kError,
                "correctMLines(): A description does not hold all lines of its SDP. Exiting."},
        Refused{"noRoom", completeBody(kLongestBody), correctTo(session + video), SDP_REFUSED_NO_ROOM,
                SDP_REFUSAL_KIND_CAPACITY, kError,
                "correctMLines(): The new SDP does not fit the SDP buffer. Exiting."},
        Refused{"countOfNoBody", "s=-\r\n",
                [](char* sdp) -> unsigned short { return M::isSingleMLineSdp(sdp) ? 1 : 0; },
                SDP_REFUSED_BODY, SDP_REFUSAL_KIND_BODY, kNotTraced,
                "line 1, column 1: expected a first line \"v=\", found \"s=-\"", 0},
        Refused{"noTransportToRemove", session, removeMLines(nullptr), SDP_REFUSED_NO_TRANSPORT,
                SDP_REFUSAL_KIND_ARGUMENT, kError, "sdpRemoveMline(): The transport is null. Exiting.", 0},
        Refused{"nothingRecorded", session, restore(""), SDP_REFUSED_NOTHING_RECORDED,
                SDP_REFUSAL_KIND_NOTHING, kInfo, "The m-line indices is empty. Nothing to change.", 0},
        Refused{"noRoomForADummy", full, restore("\x01"), SDP_REFUSED_NO_ROOM_FOR_M_LINE,
                SDP_REFUSAL_KIND_CAPACITY, kError,
                "sdpReplaceTransProtocol(): The SDP buffer has no room for another m-line. Exiting.", 0},
        Refused{"noRoomForACopy", full, M::sdpBuild2mLineSDP, SDP_REFUSED_NO_ROOM_FOR_M_LINE,
                SDP_REFUSAL_KIND_CAPACITY, kError,
                "sdpBuild2mLineSDP(): The SDP buffer has no room for another m-line. Exiting.", 0},
        Refused{"noRoomForAnat", full, applyAnat(), SDP_REFUSED_NO_ROOM_FOR_ANAT, SDP_REFUSAL_KIND_CAPACITY,
                kError, "sdpApplyAnatAttributes(): The ANAT attributes do not fit the SDP buffer. Exiting.",
                0},
        Refused{"noTextForAnat", withoutNul(session), reinsert("\x01"), SDP_REFUSED_UNUSABLE_BUFFER,
                SDP_REFUSAL_KIND_ARGUMENT, kError,
                "sdpApplyAnatAttributes(): The SDP buffer is null or holds no end of text. Exiting.", 0},
        Refused{"noArguments", "",
                [](char* sdp) { return M::createSDPUserRequest(sdp, nullptr, 5004, "PCMU", false); },
                SDP_REFUSED_NO_REQUEST_ARGUMENTS, SDP_REFUSAL_KIND_ARGUMENT, kInfo,
                "Invalid input arguments. Cannot create SDP message."}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    OfSecurity, RefusedSectionEdit,
    testing::Values(Refused{"cryptoWithoutSuite", "\nm=audio 5004 RTP/AVP 0\r\na=crypto:1\r\n",
                            M::addSDESLine, SDP_REFUSED_CRYPTO_NOT_READ, SDP_REFUSAL_KIND_BODY, kNotTraced,
                            "A crypto attribute has no tag, no suite or no line end."},
                    Refused{"noPort", "\nm=audio\r\n" + crypto, M::addSDESLine, SDP_REFUSED_PORT_NOT_READ,
                            SDP_REFUSAL_KIND_BODY, kNotTraced, "The port of an m-line cannot be read."},
                    // A key of 47 characters for one of 10.
                    Refused{"noRoomForTheKey", filledTo(kLongestBody - 36, "\n" + secure + crypto),
                            M::addSDESLine, SDP_REFUSED_NO_ROOM, SDP_REFUSAL_KIND_CAPACITY, kError,
                            "addSDESLine(): The new key does not fit the SDP buffer. Exiting."},
                    Refused{"noBodyToChange", "s=-\r\n", changeType(BE_SRTP_2m_LINE), SDP_REFUSED_BODY,
                            SDP_REFUSAL_KIND_BODY, kNotTraced,
                            "line 1, column 1: expected a first line \"v=\", found \"s=-\""},
                    Refused{"noTextToChange", withoutNul(session), changeType(SRTP_UKNOWN),
                            SDP_REFUSED_UNUSABLE_BUFFER, SDP_REFUSAL_KIND_ARGUMENT, kError,
                            "sdpChangeSdpType(): The SDP buffer is null or holds no end of text. Exiting."},
                    Refused{"noBodyForMLines", "s=-\r\n",
                            [](char* sdp) {
                              std::vector<mDescription> lines;
                              return M::getMLines(sdp, lines);
                            },
                            SDP_REFUSED_BODY, SDP_REFUSAL_KIND_BODY, kNotTraced,
                            "line 1, column 1: expected a first line \"v=\", found \"s=-\""}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    OfIce, RefusedSectionEdit,
    testing::Values(Refused{"noBody", "s=-\r\n", M::sdpRemoveDualStackIce, SDP_REFUSED_ICE_NOT_DECODED,
                            SDP_REFUSAL_KIND_BODY, kInfo, "Decoding Error 1"},
                    Refused{"notHeld", manyMLines(), M::sdpRemoveDualStackIce, SDP_REFUSED_ICE_NOT_HELD,
                            SDP_REFUSAL_KIND_CAPACITY, kError,
                            "sdpRemoveDualStackIce(): The SDP holds more than its description can. Exiting."},
                    Refused{"sessionOfAnotherType", "v=0\r\nc=IN ATM 192.0.2.1\r\n" + audio,
                            M::sdpRemoveDualStackIce, SDP_REFUSED_ICE_SESSION_ADDRESS_TYPE,
                            SDP_REFUSAL_KIND_BODY, kInfo, "Session level invalid address type"},
                    Refused{"sectionOfAnotherType", session + audio + "c=IN ATM 192.0.2.1\r\n",
                            M::sdpRemoveDualStackIce, SDP_REFUSED_ICE_ADDRESS_TYPE, SDP_REFUSAL_KIND_BODY,
                            kInfo, "Error : invalid first address type in media ATM"},
                    Refused{"candidateWithoutAddress", session + audio + "a=candidate:1 1 UDP\r\n",
                            M::sdpRemoveDualStackIce, SDP_REFUSED_CANDIDATE_WITHOUT_ADDRESS,
                            SDP_REFUSAL_KIND_BODY, kNotTraced, "An ICE candidate has no address."},
                    Refused{"noOtherCandidates", session + audio + candidate4, M::sdpRemoveDualStackIce,
                            SDP_REFUSED_NO_OTHER_CANDIDATES, SDP_REFUSAL_KIND_NOTHING, kNotTraced,
                            "There is no ICE candidate of the other address version."}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    OfDummies, RefusedSectionEdit,
    testing::Values(
        Refused{"noAddress", session, createDummy(nullptr), SDP_REFUSED_NO_DUMMY_ADDRESS,
                SDP_REFUSAL_KIND_ARGUMENT, kInvalidArgument,
                "sdpCreateDummy(): NULL IP provided. Cannot create dummy SDP."},
        Refused{"noEndOfText", withoutNul(session), createDummy("192.0.2.9"), SDP_REFUSED_UNUSABLE_BUFFER,
                SDP_REFUSAL_KIND_ARGUMENT, kError,
                "sdpCreateDummy(): The SDP buffer is null or holds no end of text. Exiting."},
        Refused{"malformedAddress", session + audio, createDummy("nowhere"), SDP_REFUSED_MALFORMED_ADDRESS,
                SDP_REFUSAL_KIND_ARGUMENT, kError, "The new IP address is malformed. Exiting..."},
        Refused{"noRoomForTheDirection", full, createDummy("192.0.2.1", true), SDP_REFUSED_NO_ROOM_FOR_MODE,
                SDP_REFUSAL_KIND_CAPACITY, kProgress,
                "sdpReplaceMode(): Not enough room to add a=inactive line at the session level. Exiting."}),
    nameOfCase);

const std::string plain = session + audio;
const std::string elsewhere = "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.77\r\n" + audio;

INSTANTIATE_TEST_SUITE_P(
    OfAnswers, RefusedSectionEdit,
    testing::Values(
        Refused{"noTextOfAnOffer", plain, updateAnswer(plain, withoutNul(plain)), SDP_REFUSED_UNUSABLE_BUFFER,
                SDP_REFUSAL_KIND_ARGUMENT, kError,
                "sdpUpdateSdp(): The SDP buffer is null or holds no end of text. Exiting."},
        Refused{"malformedAnswer", "s=-\r\n", updateAnswer(plain, plain), SDP_REFUSED_NOT_DECODED,
                SDP_REFUSAL_KIND_BODY, kError,
                "line 1, column 1: expected a first line \"v=\", found \"s=-\""},
        Refused{"malformedOffer", plain, updateAnswer(plain, "v=0\r\nm\r\n"), SDP_REFUSED_NOT_DECODED,
                SDP_REFUSAL_KIND_BODY, kError,
                "line 2, column 2: expected an equals sign behind the letter, found the end of the line"},
        Refused{"otherAddress", plain, updateAnswer(plain, elsewhere), SDP_REFUSED_OFFERS_DIFFER_IN_ADDRESS,
                SDP_REFUSAL_KIND_BODY, kError, "Different IPs between the two Offers. Exiting"},
        Refused{"otherPort", plain, updateAnswer(plain, session + "m=audio 5010 RTP/AVP 0\r\n"),
                SDP_REFUSED_OFFERS_DIFFER_IN_PORT, SDP_REFUSAL_KIND_BODY, kError,
                "Different ports between the two Offers. Exiting."},
        Refused{"manyOffered", plain, updateAnswer(plain, plain + audio), SDP_REFUSED_OFFER_WITH_MANY_AUDIO,
                SDP_REFUSAL_KIND_BODY, kError,
                "More than one active non-secure audio m lines found in new offer. Exiting."},
        Refused{"secureAnswer", session + secure, updateAnswer(plain, plain), SDP_REFUSED_ANSWER_IS_SECURE,
                SDP_REFUSAL_KIND_BODY, kError, "The sdpAnswer contains security. Cannot update the SDP."},
        Refused{"codecNotOffered", session + "m=audio 5004 RTP/AVP 8\r\n", updateAnswer(plain, plain),
                SDP_REFUSED_ANSWER_CODEC_NOT_OFFERED, SDP_REFUSAL_KIND_BODY, kError,
                "The first codec in the sdpAnswer is not present to the SDP Offer."},
        Refused{"manyAnswered", plain + audio, updateAnswer(plain, plain), SDP_REFUSED_ANSWER_WITH_MANY_AUDIO,
                SDP_REFUSAL_KIND_BODY, kError,
                "More than one active non-secure audio m lines found in answer. Exiting."},
        Refused{"noRoomForVideo", full, updateAnswer(plain, plain + video), SDP_REFUSED_NO_ROOM,
                SDP_REFUSAL_KIND_CAPACITY, kError,
                "sdpUpdateSdp(): The video m-line does not fit the SDP buffer. Exiting."},
        Refused{"noOLine", "v=0\r\nm=audio 5004 RTP/AVP 0\r\n", updateAnswer(plain, plain + video, true),
                SDP_REFUSED_ANSWER_O_LINE, SDP_REFUSAL_KIND_BODY, kError,
                "Failed to update the o-line in the sdpAnswer."}),
    nameOfCase);

TEST(RefusedSectionEditPlace, NamesTheLineAndColumnOfTheCodec) {
  SdpBuffer buffer("v=0\r\nm\r\n");
  EXPECT_EQ(keepCodec(3)(buffer.data()), 1);
  EXPECT_EQ(sdpLastRefusal().line, 2);
  EXPECT_EQ(sdpLastRefusal().column, 2);
  SdpBuffer answer(plain);
  EXPECT_EQ(updateAnswer("s=-\r\n", plain)(answer.data()), 1);
  EXPECT_EQ(sdpLastRefusal().line, 1);
  EXPECT_EQ(sdpLastRefusal().column, 1);
}

TEST(RefusedSectionEditPlace, NamesTheSectionAndFieldOfIce) {
  SdpBuffer address(session + audio + video + "c=IN ATM 192.0.2.1\r\n");
  EXPECT_EQ(M::sdpRemoveDualStackIce(address.data()), 1);
  EXPECT_EQ(sdpLastRefusal().section, 2);
  EXPECT_EQ(sdpLastRefusal().field, SDP_REFUSAL_FIELD_ADDRESS_TYPE);
  SdpBuffer candidate(session + audio + candidate6 + video + "a=candidate:1\r\n" + audio);
  EXPECT_EQ(M::sdpRemoveDualStackIce(candidate.data()), 1);
  EXPECT_EQ(sdpLastRefusal().section, 2);
  EXPECT_EQ(sdpLastRefusal().field, SDP_REFUSAL_FIELD_ADDRESS);
}

}  // namespace
