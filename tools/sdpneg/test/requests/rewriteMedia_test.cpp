#include "bodies.h"
#include "rewriteCases.h"

// Requests for codecs, media and attributes, each from the command line to the new body.

namespace {

using namespace rewriting;

const std::string audio(bodies::audioCall);
const std::string secure(bodies::secureCall);
const std::string fax(bodies::faxCall);

/// A body in the form in which the library writes a description.
const std::string call =
    "v=0\r\no=ann 17 18 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n"
    "m=audio 49170 RTP/AVP 0 8 18 101\r\n"
    "a=rtpmap:0 PCMU/8000\r\na=rtpmap:8 PCMA/8000\r\na=rtpmap:18 G729/8000\r\n"
    "a=rtpmap:101 telephone-event/8000\r\na=ptime:20\r\n"
    "m=video 49172 RTP/AVP 96\r\nb=AS:512\r\na=rtpmap:96 H264/90000\r\na=fmtp:96 profile-level-id=42e01f\r\n";

class RewriteMedia : public testing::TestWithParam<Case> {};

TEST_P(RewriteMedia, GivesTheNewBodyByteForByte) { expectBody(GetParam()); }

const std::string onlyPcma = without(
    without(replaced(call, "0 8 18 101", "8 101"), "a=rtpmap:0 PCMU/8000\r\n"), "a=rtpmap:18 G729/8000\r\n");
const std::string withoutPcmu = without(replaced(call, "0 8 18 101", "8 18 101"), "a=rtpmap:0 PCMU/8000\r\n");
const std::string g729First = replaced(replaced(withoutPcmu, "8 18 101", "18 8 101"),
                                       "a=rtpmap:8 PCMA/8000\r\na=rtpmap:18 G729/8000\r\n",
                                       "a=rtpmap:18 G729/8000\r\na=rtpmap:8 PCMA/8000\r\n");

const Case cases[] = {
    {"restrictAudio", {"restrict-audio", "PCMA"}, call, onlyPcma},
    {"restrictAudioInAnyLetterCase", {"restrict-audio", "pcma"}, call, onlyPcma},
    {"restrictAudioInTheBodysOrder", {"restrict-audio", "G729,PCMA"}, call, withoutPcmu},
    {"restrictAudioInTheBodysOrderByName", {"restrict-audio", "G729,PCMA", "kept"}, call, withoutPcmu},
    {"restrictAudioInTheGivenOrder", {"restrict-audio", "G729,PCMA", "Given"}, call, g729First},
    {"restrictAudioToWhatIsThere", {"restrict-audio", "opus,PCMA"}, call, onlyPcma},
    {"preferAudio",
     {"prefer-audio", "PCMA"},
     call,
     replaced(replaced(call, "0 8 18 101", "8 0 18 101"), "a=rtpmap:0 PCMU/8000\r\na=rtpmap:8 PCMA/8000\r\n",
              "a=rtpmap:8 PCMA/8000\r\na=rtpmap:0 PCMU/8000\r\n")},
    {"preferAudioThatIsFirst", {"prefer-audio", "PCMU"}, call, call},
    {"reorderAudio",
     {"reorder-audio", "G729,PCMA"},
     call,
     without(replaced(g729First, "18 8 101", "18 8"), "a=rtpmap:101 telephone-event/8000\r\n")},
    {"capVideoBandwidth", {"cap-video-bandwidth", "384"}, call, replaced(call, "AS:512", "AS:384")},
    {"capH264Level", {"cap-h264-level", "3"}, call, replaced(call, "42e01f", "42e01E")},
    {"address",
     {"address", "2001:db8::7"},
     call,
     replaced(call, "c=IN IP4 192.0.2.10", "c=IN IP6 2001:db8::7")},
    {"portOffAudio", {"port-off", "audio"}, call, replaced(call, "audio 49170", "audio 0")},
    {"portOffVideo", {"port-off", "Video"}, call, replaced(call, "video 49172", "video 0")},
    {"portOffImage", {"port-off", "image"}, fax, replaced(fax, "30010", "0")},
    {"portOffApplication", {"port-off", "application"}, call, call},
    {"portOffPlain", {"port-off", "plain"}, call, replaced(replaced(call, "49170", "0"), "49172", "0")},
    {"portOffPlainOfASecureCall", {"port-off", "plain"}, secure, secure},
    {"portOffSecure",
     {"port-off", "secure"},
     secure,
     replaced(replaced(secure, "audio 40000", "audio 0"), "40002", "0")},
    {"removeVideo", {"remove-video"}, call, replaced(call, "video 49172", "video 0")},
    {"removeAllOfTheVideo",
     {"remove-video", "all"},
     replaced(call, "b=AS:512", "c=IN IP4 192.0.2.11"),
     replaced(call.substr(0, call.find("b=AS")) + "c=IN IP4 192.0.2.11\r\n", "49172", "0")},
    {"echo", {"echo", "on", "fb"}, call, replaced(call, "m=video", "a=ecan:fb on -\r\nm=video")},
    {"echoOff", {"echo", "OFF", "b"}, audio, audio + "a=ecan:b off -\r\n"},
    {"addPreconditions",
     {"add-preconditions", "curr:qos:e2e:none,DES:qos:optional:local:sendrecv,conf:token:remote:recv"},
     call,
     call + "a=curr:qos e2e none\r\na=des:qos optional local sendrecv\r\na=conf:token remote recv\r\n"},
    {"removePreconditions",
     {"remove-preconditions"},
     call + "a=curr:qos e2e none\r\na=des:qos optional local sendrecv\r\n",
     call}};

INSTANTIATE_TEST_SUITE_P(Requests, RewriteMedia, testing::ValuesIn(cases),
                         [](const auto& each) { return std::string(each.param.name); });

class RewriteMediaRefused : public testing::TestWithParam<Refusal> {};

TEST_P(RewriteMediaRefused, SaysWhyAndWritesNothing) { expectRefusal(GetParam()); }

const Refusal refusals[] = {
    {"restrictAudioToNothingInCommon",
     {"restrict-audio", "G722"},
     call,
     1,
     "restrict-audio is refused: No common codecs found. Don't restrict any codec."},
    {"unknownCodec",
     {"restrict-audio", "PCMU,nothing"},
     call,
     64,
     "CODECS of restrict-audio is names of audio codecs between commas, not 'PCMU,nothing'"},
    {"emptyCodec", {"reorder-audio", "PCMU,"}, call, 64, "CODECS of reorder-audio is names"},
    {"codecWithoutAName", {"prefer-audio", "NOT_SPECIFIED"}, call, 64, "CODEC of prefer-audio is the name"},
    {"moreThanTwentyCodecs",
     {"restrict-audio", "0" +
                            [] {
                              std::string list;
                              for (int i = 0; i < 20; ++i) list += ",PCMU";
                              return list;
                            }()},
     call,
     64,
     "CODECS of restrict-audio is names"},
    {"preferenceOfAnAbsentCodec",
     {"prefer-audio", "G722"},
     call,
     1,
     "prefer-audio is refused: The preferable Audio Codec G722"},
    {"preferenceOfTelephoneEvents",
     {"prefer-audio", "telephone-event"},
     call,
     1,
     "prefer-audio is refused: Invalid audio codec"},
    {"unknownLevel",
     {"cap-h264-level", "3.5"},
     call,
     64,
     "LEVEL of cap-h264-level is an H.264 level: 1, 1b,"},
    {"addressThatIsNone", {"address", "192.0.2"}, call, 64, "IP of address is an IP address, not '192.0.2'"},
    {"echoOfAFax", {"echo", "on", "f"}, fax, 1, "echo is refused: No audio <mline> found. Exiting..."},
    {"echoTwice",
     {"echo", "on", "f"},
     call + "a=ecan:b on -\r\n",
     1,
     "echo is refused: Echo cancellation already exists in SDP. Exiting..."},
    {"preconditionsOfAFax",
     {"add-preconditions", "curr:qos:e2e:none"},
     fax,
     1,
     "add-preconditions is refused: "},
    {"currentPreconditionWithStrength",
     {"add-preconditions", "desired:qos:mandatory:e2e:none"},
     call,
     64,
     "LIST of add-preconditions is preconditions between commas"},
    {"desiredPreconditionWithoutStrength",
     {"add-preconditions", "des:qos:e2e:none"},
     call,
     64,
     "LIST of add-preconditions is preconditions between commas"}};

INSTANTIATE_TEST_SUITE_P(Requests, RewriteMediaRefused, testing::ValuesIn(refusals),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
