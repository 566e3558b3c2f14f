#include "objectRefusalSupport.h"

#include <thread>

// Why requests of an object were refused.

namespace {

using Call = std::function<void(cSdpNegotiator& object)>;

struct RefusedRequest {
  const char* name;
  cSdpNegotiator object;
  Call call;
  Reason reason;
};

void PrintTo(const RefusedRequest& refused, std::ostream* out) { *out << refused.name; }

constexpr auto kArgument = SDP_REFUSAL_KIND_ARGUMENT;
constexpr auto kBody = SDP_REFUSAL_KIND_BODY;
constexpr auto kNothing = SDP_REFUSAL_KIND_NOTHING;
constexpr auto kCapacity = SDP_REFUSAL_KIND_CAPACITY;
constexpr auto kStorage = SDP_REFUSAL_KIND_STORAGE;

const Reason noText{SDP_REFUSED_NO_TEXT, kBody, "The raw SDP buffer is empty."};
const Reason notExpanded{SDP_REFUSED_NOT_EXPANDED, kStorage, "The stored text cannot be expanded.", false};
const Reason notStored{SDP_REFUSED_NOT_STORED, kStorage,
                       "The text cannot be stored: it does not deflate into the room for it.", false};
const Reason notDecoded{SDP_REFUSED_STORED_NOT_DECODED, kBody, "The codec cannot decode the stored SDP.",
                        false};

Reason nullOf(const std::string& operation) {
  return {SDP_REFUSED_NULL, kArgument, operation + "(): An argument is null or has no size.", false};
}

Reason noKeys(const std::string& keys) {
  return {SDP_REFUSED_NO_SUCH_KEYS, kNothing, "No " + keys + " security in SDP. There is nothing to remove."};
}

Reason invalidPort(const std::string& port) {
  return {SDP_REFUSED_MESSAGE_PORT, kArgument, "Invalid port number (" + port + ") entry.", true, 0,
          SDP_REFUSAL_FIELD_PORT};
}

const std::string video = "m=video 5006 RTP/AVP 31\r\n";

cSdpNegotiator damaged() { return unreadableObjects().front(); }

/// What stores and expands the text.
std::vector<RefusedRequest> storage() {
  return {
      {"textOfNone", emptyObject(),
       [](cSdpNegotiator& o) {
         char t[9];
         EXPECT_EQ(o.getSDP(t, sizeof t), 1);
       },
       noText},
      {"textIntoNull", damaged(), [](cSdpNegotiator& o) { EXPECT_EQ(o.getRawSDP(nullptr, 9), 1); },
       nullOf("getRawSDP")},
      {"textIntoNoRoom", damaged(),
       [](cSdpNegotiator& o) {
         char t[1];
         EXPECT_EQ(o.getRawSDP(t, 0), 1);
       },
       nullOf("getRawSDP")},
      {"damagedText", damaged(), [](cSdpNegotiator& o) { EXPECT_EQ(o.getRawSdpSize(), 0U); }, notExpanded},
      {"nullText", emptyObject(), [](cSdpNegotiator& o) { EXPECT_EQ(o.setRawSDP(nullptr), 1); },
       nullOf("setRawSDP")},
      {"unstorableText", emptyObject(),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.setRawSDP(incompressibleBody(8000).c_str()), 2); }, notStored},
      {"packedIntoNull", emptyObject(),
       [](cSdpNegotiator& o) {
         unsigned int size = 0;
         EXPECT_EQ(o.compressObject(nullptr, size), 1);
       },
       nullOf("compressObject")},
      {"packedFromNull",
       emptyObject(),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.uncompressObject(nullptr, 5), 1); },
       {SDP_REFUSED_INVALID_PACKED_OBJECT, kArgument, "The packed object of 5 bytes is invalid. Exiting."}},
      {"mediaOfATextThatIsNoBody", objectWithText("no body\r\n"),
       [](cSdpNegotiator& o) {
         std::vector<mediaStruct> m;
         EXPECT_EQ(o.getMedia(m), 1);
       },
       notDecoded},
      {"codecsIntoNull", emptyObject(),
       [](cSdpNegotiator& o) {
         unsigned int a = 0;
         EXPECT_EQ(o.getVideoCodecs(nullptr, a), 1);
       },
       nullOf("getVideoCodecs")},
  };
}

/// What edits the text and keeps it, by each way that there is.
std::vector<RefusedRequest> edits() {
  return {
      {"editOfNone", emptyObject(), [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpReplaceMode(1, 64), 1); }, noText},
      {"editOfADamagedText", damaged(), [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpReplaceMode(1, 64), 1); },
       notExpanded},
      {"parsedNotStored", objectHardToStore(audioBody()),
       [](cSdpNegotiator& o) {
         cSdpNegotiator each = o;
         EXPECT_EQ(each.sdpReplaceMode(1, 64), 2);
       },
       notStored},
      {"storedNotStored", objectHardToStore(audioBody()),
       [](cSdpNegotiator& o) {
         cSdpNegotiator each = o;
         EXPECT_EQ(each.sdpIncVersion(), 2);
       },
       notStored},
      {"stayNotStored", objectHardToStore(audioBody() + "a=curr:qos local none\r\n"),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpDelPrecondions(), 2); }, notStored},
      {"newTextDoesNotParse",
       objectWithText(sessionLines() + "m=audio 80 RTP/AVP 0\r\n"),
       [](cSdpNegotiator& o) {
         cSdpNegotiator each = o;
         EXPECT_EQ(each.sdpReplaceMode(1, 64), 1);
       },
       {SDP_REFUSED_INVALID_PORT, kBody, "Invalid port number found in m=audio: 80", true, 1,
        SDP_REFUSAL_FIELD_PORT}},
      {"dummyOfADamagedText", damaged(),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.createDummyAnswer(true, "192.0.2.1", 5004), 1); }, notExpanded},
      {"videoOfNone", emptyObject(),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpGetVideoDescriptions(nullptr, 0, false), 0); }, noText},
      {"addedVideoNotStored", objectHardToStore(audioBody()),
       [](cSdpNegotiator& o) { o.sdpAddVideoDescriptions(video.c_str()); }, notStored},
      {"codecsOfATextThatIsNoBody",
       objectWithText("no body\r\n"),
       [](cSdpNegotiator& o) { o.sdpModifyTransportTypes("RTP/AVP", "RTP/SAVP"); },
       {SDP_REFUSED_BODY, kBody, "line 1, column 1: expected a first line \"v=\", found \"no body\"", false,
        0, SDP_REFUSAL_FIELD_NONE, 1, 1}},
  };
}

std::vector<RefusedRequest> security() {
  return {
      {"noIce",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpRemoveIce(), 1); },
       {SDP_REFUSED_NO_ICE, kNothing, "There is no ICE in the SDP.", false}},
      {"noMikey", parsedObject(audioBody()),
       [](cSdpNegotiator& o) { o.sdpDisableSRTPMedia(nullptr, NON_SUPPORTED_MIKEY); }, noKeys("MIKEY")},
      {"noSdes", parsedObject(audioBody()),
       [](cSdpNegotiator& o) { o.sdpDisableSRTPMedia(nullptr, NON_SUPPORTED_SDES); }, noKeys("SDES")},
      {"noDtls", parsedObject(audioBody()),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpRemoveDTLSAttributes(), 1); }, noKeys("DTLS")},
      {"anatOfNoVersion",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { o.sdpRemoveANAT(static_cast<eIPAddressVersion>(7), nullptr, false); },
       {SDP_REFUSED_NO_IP_VERSION, kArgument,
        "removeAddrVersion(=7) is not IP4 or IP6. exiting sdpRemoveANAT."}},
      {"noAnat",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { o.sdpRemoveANAT(IP_VERSION_6, nullptr, false); },
       {SDP_REFUSED_NO_ANAT, kNothing, "group ANAT attribute is not present, nothing to remove."}},
      {"noAnatRecord",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { o.sdpReInsertANAT(nullptr, false); },
       {SDP_REFUSED_NO_ANAT_RECORD, kArgument, "The Request to re-insert the ANAT is invalid."}},
      {"noSecureRecord",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { o.sdpReplaceTransportProtocol(nullptr, false); },
       {SDP_REFUSED_NO_SECURE_RECORD, kArgument, "The request to restore the RTP/SAVP is invalid."}},
      {"noPreconditions",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpInsertPrecondions(1, 1, nullptr), 1); },
       {SDP_REFUSED_NO_PRECONDITIONS_GIVEN, kArgument, "The preconditions buffer is empty."}},
  };
}

std::vector<RefusedRequest> codecs() {
  static constexpr unsigned char kG729[] = {10, 0};
  static constexpr unsigned char kH264[] = {2, 0};
  return {
      {"noCodecs",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpRestrictAudioCodecsTo(nullptr, 1, true), 0); },
       {SDP_REFUSED_NO_CODECS, kArgument, "Empty audio codecs array. Exiting from sdpRestrictAudioCodecsTo"}},
      {"noCommonCodec",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpRestrictAudioCodecsTo(kG729, 1, true), 0); },
       {SDP_REFUSED_NO_COMMON_CODEC, kBody, "No common codecs found. Don't restrict any codec."}},
      {"eventsFirst",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { o.sdpChangeAudioCodecPreference(29); },
       {SDP_REFUSED_CODEC_NOT_TO_PREFER, kArgument, "Invalid audio codec TELEPHONE_EVENT entry"}},
      {"codecThatIsNotThere",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { o.sdpChangeAudioCodecPreference(10); },
       {SDP_REFUSED_CODEC_NOT_IN_BODY, kBody, "The preferable Audio Codec G729 not found in the SDP"}},
      {"noOrder",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { o.sdpReorderAudioCodecPreference(nullptr, 1); },
       {SDP_REFUSED_INVALID_ORDER, kArgument,
        "sdpReorderAudioCodecPreference exit - Invalid audio codec entry"}},
      {"noVideo",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpRestrictVideoCodecsTo(kH264, 1), 0); },
       {SDP_REFUSED_NO_VIDEO, kBody, "No video m-line found that can be decoded.", false}},
      {"noAllowedVideo",
       parsedObject(audioBody() + video),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpRestrictVideoCodecsTo(kH264, 1), 0); },
       {SDP_REFUSED_NO_ALLOWED_VIDEO_CODEC, kBody,
        "No allowed codecs in media: leaving SDP unchanged and returning false"}},
      {"noSections",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { o.sdpAddVideoDescriptions(nullptr); },
       {SDP_REFUSED_NO_VIDEO_GIVEN, kArgument, "The request to add videoDescriptions  is invalid."}},
      {"tooMuchVideo",
       parsedObject(paddedTo(20479)),
       [](cSdpNegotiator& o) { o.sdpAddVideoDescriptions(video.c_str()); },
       {SDP_REFUSED_VIDEO_DOES_NOT_FIT, kCapacity,
        "sdpAddVideoDescriptions(): The SDP with the videoDescriptions does not fit its buffer."}},
      {"noH264",
       parsedObject(audioBody()),
       [](cSdpNegotiator& o) { o.sdpLimitVideoMediaBandwidth(0, H264_LEVEL_1); },
       {SDP_REFUSED_NO_H264, kNothing,
        "Request to update the profile level id while H264 codec is not present. Ignoring."}},
  };
}

std::vector<RefusedRequest> origins() {
  std::string largest = audioBody();
  largest.replace(largest.find(" 1 1 ") + 3, 1, "9223372036854775807");
  static const cSdpNegotiator most = parsedObject(largest);
  static const cSdpNegotiator one = parsedObject(audioBody());
  cSdpNegotiator outside = one;
  outside.setRawSDP("v=0\r\n");  // shorter than where the o-line is recorded
  const auto raise = [](cSdpNegotiator& o, cSdpNegotiator earlier) {
    o.sdpModifyVersionAndMlines(&earlier, false);
  };
  return {
      {"copyOfNull", one, [](cSdpNegotiator& o) { EXPECT_EQ(o.copyOLine(nullptr), 1); }, nullOf("copyOLine")},
      {"copyOutsideOfTheText",
       outside,
       [](cSdpNegotiator& o) { EXPECT_EQ(o.copyOLine(&one), 1); },
       {SDP_REFUSED_O_LINE_DOES_NOT_FIT, kCapacity, "copyOLine(): The o-line does not fit the SDP buffer."}},
      {"noLineToCompare",
       one,
       [](cSdpNegotiator& o) { EXPECT_EQ(o.compareSdpOLine(static_cast<const char*>(nullptr)), 1); },
       {SDP_REFUSED_NO_O_LINE_GIVEN, kArgument, "The o-line buffer is empty."}},
      {"noObjectToCompare",
       one,
       [](cSdpNegotiator& o) {
         EXPECT_EQ(o.compareSdpOLine(static_cast<const cSdpNegotiator*>(nullptr)), 1);
       },
       {SDP_REFUSED_NO_OBJECT_TO_COMPARE, kArgument, "The sdpNegotiator class is NULL."}},
      {"noId",
       one,
       [](cSdpNegotiator& o) { o.sdpModifyOLine(nullptr, "1"); },
       {SDP_REFUSED_ORIGIN_IDS, kArgument,
        "The input values of session id or the session version are invalid."}},
      {"noBodyToCompare",
       one,
       [](cSdpNegotiator& o) { EXPECT_EQ(o.compareSdpByBody(static_cast<const char*>(nullptr)), 1); },
       {SDP_REFUSED_NO_TEXT_TO_COMPARE, kArgument, "Empty Buffer! Exiting..."}},
      {"noOtherBody",
       one,
       [](cSdpNegotiator& o) {
         EXPECT_EQ(o.compareSdpByBody(static_cast<const cSdpNegotiator*>(nullptr)), 1);
       },
       {SDP_REFUSED_NO_BUFFER, kArgument, "The SDP buffer is NULL."}},
      {"noEarlierOffer",
       one,
       [](cSdpNegotiator& o) { EXPECT_EQ(o.isSdpVersionIncreased(nullptr), 1); },
       {SDP_REFUSED_NO_EARLIER_OFFER, kArgument,
        "Invalid input object. Cannot check the required elements of the SDP. Exiting."}},
      {"noEarlierObject",
       one,
       [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpModifyVersionAndMlines(nullptr, false), 1); },
       {SDP_REFUSED_NO_EARLIER_OBJECT, kArgument, "Invalid input object. Cannot continue. Exiting."}},
      {"largestVersion",
       one,
       [=](cSdpNegotiator& o) { raise(o, most); },
       {SDP_REFUSED_VERSION_CANNOT_BE_RAISED, kBody,
        "sdpModifyVersionAndMlines(): The session version cannot be raised. Exiting."}},
      {"fewerMLines",
       parsedObject(audioBody() + video),
       [=](cSdpNegotiator& o) { raise(o, one); },
       {SDP_REFUSED_FEWER_M_LINES, kBody, "The earlier SDP has fewer m-lines.", false}},
      {"noOffers",
       one,
       [](cSdpNegotiator& o) { EXPECT_EQ(o.sdpUpdateAnswer(nullptr, &one), 1); },
       {SDP_REFUSED_NO_OBJECTS_TO_UPDATE, kArgument,
        "Invalid input objects. Cannot create the update SDP. Exiting."}},
  };
}

std::vector<RefusedRequest> values() {
  static constexpr unsigned char kTooLarge[] = {39};
  return {
      {"codecList",
       emptyObject(),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.setAudioCodecs(nullptr, 1), 1); },
       {SDP_REFUSED_NO_CODECS_GIVEN, kArgument, "Empty audio codecs input. Exiting..."}},
      {"codec",
       emptyObject(),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.setAudioCodecs(kTooLarge, 1), 1); },
       {SDP_REFUSED_INVALID_CODEC, kArgument, "Invalid audio codec (39) entry"}},
      {"slot",
       emptyObject(),
       [](cSdpNegotiator& o) { EXPECT_TRUE(o.addAudioCodec(1, 20)); },
       {SDP_REFUSED_INVALID_SLOT, kArgument,
        "Invalid slot (20) entry. MUST not exceed to MAX_SDP_NEGOTIATOR_AUDIO_CODECS"}},
      {"periods",
       emptyObject(),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.setPacketizationPeriod(nullptr, 1), 1); },
       {SDP_REFUSED_NO_PERIODS_GIVEN, kArgument, "Empty packetization time input. Exiting..."}},
      {"port", emptyObject(), [](cSdpNegotiator& o) { EXPECT_EQ(o.setMediaPort(1023), 1); },
       invalidPort("1023")},
      {"portAboveInt", emptyObject(), [](cSdpNegotiator& o) { EXPECT_EQ(o.setMediaPort(4294967295U), 1); },
       invalidPort("-1")},
      {"mediaType",
       emptyObject(),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.setMediaType(64), 1); },
       {SDP_REFUSED_INVALID_MEDIA_TYPE, kArgument, "Invalid mediaType entry (64)"}},
      {"reservation",
       emptyObject(),
       [](cSdpNegotiator& o) { EXPECT_EQ(o.setResourceReserve(4), 1); },
       {SDP_REFUSED_INVALID_RESERVATION, kArgument, "Invalid eResourceReserve entry (4)"}},
      {"messageAddress",
       emptyObject(),
       [](cSdpNegotiator&) { EXPECT_EQ(cSdpNegotiator::sdpCreateMessage(nullptr, "x", 0, "", false), 1); },
       {SDP_REFUSED_MESSAGE_ADDRESS, kArgument, "Invalid IP address. Cannot create SDP message. Exiting.",
        true, 0, SDP_REFUSAL_FIELD_ADDRESS}},
      {"messagePort", emptyObject(),
       [](cSdpNegotiator&) {
         EXPECT_EQ(cSdpNegotiator::sdpCreateMessage(nullptr, "192.0.2.1", 80, "", false), 1);
       },
       invalidPort("80")},
  };
}

class RefusedRequests : public testing::TestWithParam<RefusedRequest> {};

TEST_P(RefusedRequests, TellWhy) {
  cSdpNegotiator object = GetParam().object;
  expectRefused(GetParam().reason, [&] { GetParam().call(object); });
}

std::string requestName(const testing::TestParamInfo<RefusedRequest>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Storage, RefusedRequests, testing::ValuesIn(storage()), requestName);
INSTANTIATE_TEST_SUITE_P(Edits, RefusedRequests, testing::ValuesIn(edits()), requestName);
INSTANTIATE_TEST_SUITE_P(Security, RefusedRequests, testing::ValuesIn(security()), requestName);
INSTANTIATE_TEST_SUITE_P(Codecs, RefusedRequests, testing::ValuesIn(codecs()), requestName);
INSTANTIATE_TEST_SUITE_P(Origins, RefusedRequests, testing::ValuesIn(origins()), requestName);
INSTANTIATE_TEST_SUITE_P(Values, RefusedRequests, testing::ValuesIn(values()), requestName);

TEST(LastRefusal, StaysUntilTheNextOne) {
  cSdpNegotiator object = parsedObject(audioBody());
  EXPECT_EQ(object.setMediaType(64), 1);
  const unsigned int number = sdpLastRefusal().number;
  EXPECT_EQ(object.sdpReplaceMode(CONNECTION_MODE_SENDONLY, 64), 0);
  EXPECT_EQ(object.setMediaType(63), 0);
  EXPECT_EQ(sdpLastRefusal().number, number);
  EXPECT_EQ(sdpLastRefusal().reason, SDP_REFUSED_INVALID_MEDIA_TYPE);
  EXPECT_EQ(object.setResourceReserve(4), 1);
  EXPECT_EQ(sdpLastRefusal().number, number + 1);
  EXPECT_EQ(sdpLastRefusal().reason, SDP_REFUSED_INVALID_RESERVATION);
}

// A bandwidth that is lowered is a request that is done, whatever the level.
TEST(LastRefusal, IsNotThatOfAPartOfARequest) {
  cSdpNegotiator object = parsedObject(audioBody() + video + "b=AS:256\r\n");
  ASSERT_EQ(object.getParsedData().videoBandwidth, 256U);
  const unsigned int number = sdpLastRefusal().number;
  const Traces traces =
      tracesOf([&] { EXPECT_EQ(object.sdpLimitVideoMediaBandwidth(128, H264_LEVEL_1), 0); });
  EXPECT_EQ(
      std::ranges::count(
          traces,
          TraceLine{4, 3,
                    "Request to update the profile level id while H264 codec is not present. Ignoring."}),
      1);
  EXPECT_EQ(sdpLastRefusal().number, number);
}

TEST(LastRefusal, BelongsToTheThread) {
  cSdpNegotiator object;
  EXPECT_EQ(object.setMediaType(64), 1);
  const sSdpRefusal before = sdpLastRefusal();
  const sSdpRefusal* ofOther = nullptr;
  std::thread([&] {
    ofOther = &sdpLastRefusal();
    EXPECT_EQ(ofOther->number, 0U);
    EXPECT_EQ(ofOther->reason, SDP_REFUSED_NOTHING);
    EXPECT_EQ(ofOther->kind, SDP_REFUSAL_KIND_NONE);
    EXPECT_STREQ(ofOther->text, "");
    cSdpNegotiator own;
    EXPECT_EQ(own.setResourceReserve(4), 1);
    EXPECT_EQ(ofOther->number, 1U);
    EXPECT_EQ(ofOther->reason, SDP_REFUSED_INVALID_RESERVATION);
  }).join();
  EXPECT_NE(ofOther, &sdpLastRefusal());
  EXPECT_EQ(sdpLastRefusal().number, before.number);
  EXPECT_EQ(sdpLastRefusal().reason, SDP_REFUSED_INVALID_MEDIA_TYPE);
}

}  // namespace
