#include "rewriteCases.h"

// Requests for video, transports, the set of m-lines and whole bodies.

namespace {

using namespace rewriting;

const std::string session = "v=0\r\no=ann 17 18 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n";
const std::string audioSection =
    "m=audio 49170 RTP/AVP 0 8\r\na=rtpmap:0 PCMU/8000\r\na=rtpmap:8 PCMA/8000\r\n";
const std::string videoSection =
    "m=video 49172 RTP/AVP 96\r\nb=AS:512\r\na=rtpmap:96 H264/90000\r\na=fmtp:96 profile-level-id=42e01f\r\n";
const std::string crypto =
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:MDEyMzQ1Njc4OWFiY2RlZjAxMjM0NTY3ODlhYmNk\r\n";

const std::string audio = session + audioSection;
const std::string call = audio + videoSection;

/// The video section as another body hands it out, with the session's c-line in front of its attributes.
const std::string handedOut = replaced(videoSection, "a=rtpmap", "c=IN IP4 192.0.2.10\r\na=rtpmap");

const std::string h263 = "a=rtpmap:34 H263/90000\r\n";
const std::string twoVideoCodecs = replaced(call, "AVP 96", "AVP 34 96") + h263;

/// A body that another side's one becomes at the address 192.0.2.99.
std::string atNewAddress(const std::string& text) {
  return renewed(replaced(text, "c=IN IP4 192.0.2.10", "c=IN IP4 192.0.2.99"), "IP4 192.0.2.99");
}

class RewriteBody : public testing::TestWithParam<Case> {};
TEST_P(RewriteBody, GivesTheNewBodyByteForByte) { expectBody(GetParam()); }

const Case cases[] = {
    {"restrictVideo", {"restrict-video", "H264"}, twoVideoCodecs, call},
    {"restrictVideoToWhatIsThere", {"restrict-video", "h263,H264"}, twoVideoCodecs, twoVideoCodecs},
    {"removeZeroPorts", {"remove-zero-ports"}, audio + "m=video 0 RTP/AVP 31\r\n", audio},
    {"removeZeroPortsButNotTheirLines",
     {"remove-zero-ports"},
     audio + "m=video 0 RTP/AVP 31\r\na=inactive\r\n",
     audio + "a=inactive\r\n"},
    {"removeZeroPortsWithTheKeyOfASecureOne",
     {"remove-zero-ports"},
     audio + "m=video 0 RTP/SAVP 31\r\n" + crypto + "a=inactive\r\n",
     audio + "a=inactive\r\n"},
    {"removeZeroPortsOfABodyWithout", {"remove-zero-ports"}, call, call},
    {"removeZeroPortsOfABodyWithoutMedia", {"remove-zero-ports"}, session, session},
    {"setTransport", {"set-transport", "RTP/AVP", "RTP/SAVP"}, call, replaced(call, "RTP/AVP", "RTP/SAVP")},
    {"setLongerTransport",
     {"set-transport", "RTP/AVP", "RTP/AVPF"},
     call,
     replaced(call, "RTP/AVP", "RTP/AVPF")},
    {"setTransportWhereItHolds",
     {"set-transport", "AVPF", "RTP/AVP1"},
     replaced(call, "49172 RTP/AVP", "49172 RTP/AVPF"),
     replaced(call, "49172 RTP/AVP", "49172 RTP/AVP1")},
    {"matchMedia", {"match-mlines", other}, audio, audio + "m=video 49172 RTP/AVP 96\r\n", "", call},
    {"matchMediaByName",
     {"match-mlines", other, "media"},
     audio,
     audio + "m=video 49172 RTP/AVP 96\r\n",
     "",
     call},
    {"matchMediaWithTheSame", {"match-mlines", other}, call, call, "", audio},
    {"matchMediaOfAnotherTransport",
     {"match-mlines", other, "media"},
     audio,
     audio,
     "",
     session + "m=audio 40000 RTP/SAVP 9\r\n"},
    // Only the first digit of the port becomes 0.
    {"matchTransport",
     {"match-mlines", other, "transport"},
     audio,
     audio + "m=audio 00000 RTP/SAVP 9\r\n",
     "",
     session + "m=audio 40000 RTP/SAVP 9\r\n"},
    {"matchKeep", {"match-mlines", other, "keep"}, call, audio, "", audio},
    {"addVideoAtTheEnd", {"add-video", other}, audio, audio + handedOut, "", call},
    {"addVideoInPlaceOfTheOwn",
     {"add-video", other},
     audio + "m=video 50000 RTP/AVP 31\r\na=sendonly\r\n",
     audio + handedOut,
     "",
     call},
    // What is handed out of the middle of a body ends in CR.
    {"addVideoThatIsNotTheLast",
     {"add-video", other},
     audio,
     audio + handedOut,
     "",
     session + videoSection + audioSection},
    {"cutVideo", {"cut-video"}, call, audio},
    // An empty line stays in its place.
    {"cutVideoInTheMiddle",
     {"cut-video"},
     session + videoSection + audioSection,
     session + "\n" + audioSection,
     "sdpneg: note: cut-video leaves an empty line, line 6\n"},
    {"cutVideoOfABodyWithout", {"cut-video"}, audio, audio},
    {"dummyAnswer",
     {"dummy", "answer", "192.0.2.99", "5000"},
     audio,
     atNewAddress(session + "a=inactive\r\n" + audioSection + "a=inactive\r\n")},
    {"dummyAnswerOnHoldByName",
     {"dummy", "answer", "192.0.2.99", "5000", "hold"},
     audio,
     atNewAddress(session + "a=inactive\r\n" + audioSection + "a=inactive\r\n")},
    {"dummyAnswerThatIsActive",
     {"dummy", "answer", "192.0.2.99", "5000", "active"},
     call + "a=sendonly\r\n",
     atNewAddress(replaced(call, "video 49172", "video 0") + "a=inactive\r\n")},
    {"dummyAck",
     {"dummy", "ack", "192.0.2.99", "5000"},
     audio + "a=sendonly\r\n",
     atNewAddress(audio + "a=recvonly\r\n")},
    {"dummyAckLeavesBothWays", {"dummy", "ack", "192.0.2.99", "5000"}, audio, atNewAddress(audio)},
    {"dummyAckThatReceivesOnly",
     {"dummy", "recvonly-ack", "192.0.2.99", "5000"},
     audio,
     atNewAddress(audio + "a=recvonly\r\n")},
    {"dummyAckWithCodecs",
     {"dummy", "ack", "192.0.2.99", "5000", "hold", "G722,pcma"},
     audio,
     atNewAddress(session + "m=audio 49170 RTP/AVP 8\r\na=rtpmap:8 PCMA/8000\r\n")},
    {"dummyOfASecureBodyGetsThePort",
     {"dummy", "ack", "192.0.2.99", "5000"},
     session + "m=audio 49170 RTP/SAVP 0\r\n",
     atNewAddress(session + "m=audio 5000 RTP/SAVP 0\r\n")},
    {"dummyOffer",
     {"dummy-offer", "7", "4294967295"},
     call,
     "v=0\r\no=IRM 7 4294967295 IN IP4 127.0.0.1\r\ns=IRM\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
     "m=audio 5004 RTP/SAVP 0 8 9 4 18\r\n"},
    {"dummyOfferOfIPv6",
     {"dummy-offer", "7", "8", "6"},
     call,
     "v=0\r\no=IRM 7 8 IN IP6 FD00:127::1\r\ns=IRM\r\nc=IN IP6 FD00:127::1\r\nt=0 0\r\n"
     "m=audio 5004 RTP/SAVP 0 8 9 4 18\r\n"}};

INSTANTIATE_TEST_SUITE_P(Requests, RewriteBody, testing::ValuesIn(cases),
                         [](const auto& each) { return std::string(each.param.name); });

class RewriteBodyRefused : public testing::TestWithParam<Refusal> {};
TEST_P(RewriteBodyRefused, SaysWhyAndWritesNothing) { expectRefusal(GetParam()); }

const std::string connection = "c=IN IP4 192.0.2.10\r\n";

/// A body whose last section has more attributes than a description holds.
std::string incomplete(std::string body) {
  for (int i = 0; i < 300; ++i) body += "a=note\r\n";
  return body;
}

const Refusal refusals[] = {
    {"restrictVideoToNothingInCommon",
     {"restrict-video", "H263"},
     call,
     1,
     "restrict-video is refused: No allowed codecs in media"},
    {"unknownVideoCodec",
     {"restrict-video", "PCMU"},
     call,
     64,
     "CODECS of restrict-video is names of video codecs"},
    {"transportThatIsTooLong",
     {"set-transport", "RTP/AVP", "UDP/TLS/RTP/SAVPF"},
     call,
     64,
     "TO of set-transport is a transport of at most 14 characters without blanks, not 'UDP/TLS/RTP/SAVPF'"},
    {"transportWithoutRoom",
     {"set-transport", "RTP/AVP", "RTP/SAVP"},
     full(audio),
     1,
     "set-transport is refused: sdpSetMediaTransportType(): The new transport does not fit the SDP buffer."},
    {"matchOfAnIncompleteBody",
     {"match-mlines", other},
     incomplete(audio),
     1,
     "match-mlines is refused: correctMLines(): A description does not hold all lines of its SDP.",
     call},
    {"matchByWhatIsNone",
     {"match-mlines", other, "port", "-"},
     audio,
     64,
     "BY of match-mlines is what is compared: media, transport or keep, not 'port'",
     call},
    {"addVideoOfAnAudioCall",
     {"add-video", other},
     call,
     1,
     "add-video is refused: the other body has no video",
     audio},
    {"addVideoWithoutConnection",
     {"add-video", other},
     audio,
     1,
     "add-video is refused: the other body has video without a c-line, or too much of it",
     without(call, connection)},
    {"addVideoWithoutAPlace",
     {"add-video", other},
     replaced(audio, "s=-", "s=video"),
     1,
     "add-video is refused: the body says \"video\" but has no m-line of it, and so no place for one",
     call},
    {"addVideoWithoutRoom",
     {"add-video", other},
     full(audio),
     1,
     "add-video is refused: sdpAddVideoDescriptions(): The SDP with the videoDescriptions does not fit its buffer.",
     call},
    {"cutVideoWithoutConnection",
     {"cut-video"},
     without(call, connection),
     1,
     "cut-video is refused: the body has no c-line"},
    {"dummyOfAPort",
     {"dummy", "answer", "192.0.2.99", "80"},
     session + "m=audio 49170 RTP/SAVP 0\r\n",
     1,
     "dummy is refused: sdpSetMediaPort(): error while trying to set media connection port 80"},
    {"dummyPortThatIsNone",
     {"dummy", "answer", "192.0.2.99", "65536"},
     audio,
     64,
     "PORT of dummy is a port of 0 to 65535, not '65536'"},
    {"dummyAnswerWithCodecs",
     {"dummy", "answer", "192.0.2.99", "5000", "hold", "PCMU"},
     audio,
     1,
     "dummy is refused: only an ack takes codecs"},
    {"dummyAckWithCodecsThatAreNotThere",
     {"dummy", "ack", "192.0.2.99", "5000", "hold", "G722,G729"},
     audio,
     1,
     "dummy is refused: the body has none of these codecs"},
    // The library reads these names itself, and knows only those of rtpmap lines.
    {"dummyAckWithTheNameOfATrace",
     {"dummy", "ack", "192.0.2.99", "5000", "hold", "G711ALAW64K", "-"},
     audio,
     64,
     "CODECS of dummy is names of audio codecs between commas, as rtpmap lines have them"},
    {"dummyOfferOfABigNumber",
     {"dummy-offer", "4294967296", "1"},
     audio,
     64,
     "ID of dummy-offer is a whole number of 32 bits, not '4294967296'"}};

INSTANTIATE_TEST_SUITE_P(Requests, RewriteBodyRefused, testing::ValuesIn(refusals),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(RewriteBodyFile, IsReadFromStandardInput) {
  const TemporaryFolder folder;
  const std::string file = folder.write("audio.sdp", audio);
  const Outcome outcome = runSdpneg({"rewrite", "match-mlines", "-", "keep", file}, {.input = call});
  EXPECT_EQ(outcome.out, audio);
  EXPECT_EQ(outcome.status, 0);
}

TEST(RewriteDummy, GivesSdesKeysOfItsOwn) {
  const Outcome outcome =
      runRewrite({"dummy", "ack", "192.0.2.99", "5000"}, session + "m=audio 49170 RTP/SAVP 0\r\n" + crypto);
  const std::string begin =
      atNewAddress(session + "m=audio 5000 RTP/SAVP 0\r\n") + "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:";
  ASSERT_TRUE(outcome.out.starts_with(begin)) << outcome.out;
  EXPECT_TRUE(std::regex_match(outcome.out.substr(begin.size()), std::regex("[A-Za-z0-9+/]{40}\r\n")));
}

}  // namespace
