#include <gtest/gtest.h>

#include "bodies.h"
#include "process.h"
#include "rewriteCases.h"
#include "testFiles.h"

// Requests of the document layer: on bodies that an object refuses, and in one chain with requests of an object.

namespace {

using rewriting::Case;
using rewriting::expectBody;

const std::string session = "v=0\no=- 1 2 IN IP4 127.0.0.1\ns=-\nt=0 0\n";
const std::string group = "a=group:BUNDLE a v\n";

/// A browser's offer without candidates yet, which an object refuses for its ports.
const std::string audio =
    "m=audio 9 UDP/TLS/RTP/SAVPF 111 63 9 0 8 13 110 126\n"
    "c=IN IP4 0.0.0.0\n"
    "a=mid:a\n"
    "a=ice-ufrag:abcd\n"
    "a=fingerprint:sha-256 AB:CD\n"
    "a=setup:actpass\n"
    "a=sendrecv\n"
    "a=rtcp-mux\n"
    "a=rtpmap:111 opus/48000/2\n"
    "a=rtcp-fb:111 transport-cc\n"
    "a=fmtp:111 minptime=10\n"
    "a=rtpmap:63 red/48000/2\n"
    "a=fmtp:63 111/111\n"
    "a=rtpmap:110 telephone-event/48000\n"
    "a=rtpmap:126 telephone-event/8000\n";
const std::string video =
    "m=video 9 UDP/TLS/RTP/SAVPF 96 97\n"
    "c=IN IP4 0.0.0.0\n"
    "a=mid:v\n"
    "a=ice-ufrag:abcd\n"
    "a=fingerprint:sha-256 AB:CD\n"
    "a=setup:actpass\n"
    "a=rtpmap:96 VP8/90000\n"
    "a=rtpmap:97 rtx/90000\n"
    "a=fmtp:97 apt=96\n"
    "a=x-own:1\n";
const std::string browser = session + group + audio + video;

const std::string audioOfPcma =
    "m=audio 9 UDP/TLS/RTP/SAVPF 8 126\n"
    "c=IN IP4 0.0.0.0\n"
    "a=mid:a\n"
    "a=ice-ufrag:abcd\n"
    "a=fingerprint:sha-256 AB:CD\n"
    "a=setup:actpass\n"
    "a=sendrecv\n"
    "a=rtcp-mux\n"
    "a=rtpmap:126 telephone-event/8000\n";
const std::string videoAway = replaced(video, "m=video 9", "m=video 0");
const std::string groupOfAudio = "a=group:BUNDLE a\n";

const std::string anchored =
    replaced(replaced(replaced(browser, "m=video 9", "m=video 40000"), "m=audio 9", "m=audio 40000"),
             "0.0.0.0", "192.0.2.7");
const std::string anchoredBody = replaced(anchored, "a=ice-ufrag:abcd\n", "");

/// Of the form that an object takes, with a codec that none of its table has.
const std::string known =
    "v=0\n"
    "o=ann 17 18 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n"
    "m=audio 49170 RTP/AVP 8 0 101\n"
    "a=rtpmap:101 telephone-event/8000\n";

class DocumentRequests : public testing::TestWithParam<Case> {};

TEST_P(DocumentRequests, GiveTheNewBodyByteForByte) { expectBody(GetParam()); }

const Case cases[] = {
    {"keepCodecs",
     {"keep-codecs", "PCMA,telephone-event"},
     browser,
     session + groupOfAudio + audioOfPcma + videoAway},
    {"keepCodecsOfAMedium",
     {"keep-codecs", "PCMA,telephone-event", "audio"},
     browser,
     session + group + audioOfPcma + video},
    {"keepCodecsOfASection",
     {"keep-codecs", "PCMA,telephone-event", "1"},
     browser,
     session + group + audioOfPcma + video},
    {"keepCodecsOfAMid",
     {"keep-codecs", "PCMA,telephone-event", "mid=a"},
     browser,
     session + group + audioOfPcma + video},
    {"keepCodecsFromStandardInput",
     {"keep-codecs", "PCMA,telephone-event", "audio", "-"},
     browser,
     session + group + audioOfPcma + video},
    {"dropCodecs", {"drop-codecs", "VP8"}, browser, session + groupOfAudio + audio + videoAway},
    {"orderCodecs",
     {"order-codecs", "PCMA,0"},
     browser,
     replaced(browser, "111 63 9 0 8 13", "8 0 111 63 9 13")},
    {"anchor", {"anchor", "192.0.2.7", "40000"}, browser, anchoredBody},
    {"setProfile",
     {"set-profile", "RTP/AVP", "video"},
     session + video,
     session + replaced(replaced(replaced(video, "UDP/TLS/RTP/SAVPF", "RTP/AVP"),
                                 "a=fingerprint:sha-256 AB:CD\n", ""),
                        "a=setup:actpass\n", "")},
    {"opportunistic", {"opportunistic"}, browser, replaced(browser, "UDP/TLS/RTP/SAVPF", "RTP/AVPF")},
    {"secureOnly", {"secure-only"}, replaced(browser, "UDP/TLS/RTP/SAVPF", "RTP/AVPF"), browser},
    {"unbundle", {"unbundle"}, browser, replaced(browser, group, "")},
    {"stripAttributes",
     {"strip-attributes", "x-*,setup"},
     browser,
     replaced(replaced(browser, "a=x-own:1\n", ""), "a=setup:actpass\n", "")},
    {"direction",
     {"direction", "recvonly"},
     browser,
     replaced(browser, "a=sendrecv", "a=recvonly") + "a=recvonly\n"},
    {"disable", {"disable", "2"}, browser, session + groupOfAudio + audio + videoAway},
    {"canonical", {"canonical"}, replaced(browser, "m=video 9 ", "m=VIDEO  09\t"), withCrLf(browser)},
    {"selectingNothing", {"direction", "inactive", "image"}, browser, browser},
    {"onAnEmptyText", {"direction", "inactive"}, "", ""},
    {"onWhatIsNoBody", {"anchor", "192.0.2.7", "40000"}, "hello\n", "hello\n"},
    {"withNulBytes",
     {"direction", "inactive"},
     session + std::string("a=\0\0\n", 5) + audio,
     session + std::string("a=\0\0\n", 5) + replaced(audio, "a=sendrecv", "a=inactive")},
    {"severalInOrder",
     {"keep-codecs", "PCMA,telephone-event", "audio", "--", "disable", "video", "--", "order-codecs",
      "telephone-event"},
     browser,
     session + groupOfAudio + replaced(audioOfPcma, " 8 126", " 126 8") + videoAway},
    {"inFrontOfAnObject",
     {"anchor", "192.0.2.7", "40000", "--", "increase-version"},
     browser,
     replaced(anchoredBody, "o=- 1 2", "o=- 1 3")},
    {"betweenRequestsOfAnObject",
     {"increase-version", "--", "direction", "recvonly", "--", "drop-codecs", "PCMA", "--",
      "increase-version"},
     known,
     replaced(replaced(known, "17 18", "17 20"), " 8 0", " 0") + "a=recvonly\n"},
    {"behindAnObject",
     {"increase-version", "--", "order-codecs", "0"},
     known,
     replaced(replaced(known, "17 18", "17 19"), " 8 0", " 0 8")},
    {"besideTheNotesOfAnObject",
     {"reorder-audio", "G729", "--", "unbundle"},
     known,
     withCrLf(replaced(replaced(known, " 8 0 101", ""), "a=rtpmap:101 telephone-event/8000\n", "")),
     "sdpneg: note: reorder-audio leaves an m-line without a format, line 6\n"},
};

INSTANTIATE_TEST_SUITE_P(Bodies, DocumentRequests, testing::ValuesIn(cases),
                         [](const auto& each) { return std::string(each.param.name); });

struct Refusal {
  const char* name;
  std::vector<std::string> request;
  std::string body;
  int status;
  std::string errors;  ///< all of standard error, where the file is FILE
};

std::ostream& operator<<(std::ostream& out, const Refusal& each) { return out << each.name; }

class DocumentRefusals : public testing::TestWithParam<Refusal> {};

TEST_P(DocumentRefusals, WriteNothingAndSayWhy) {
  const TemporaryFolder folder;
  const std::string file = folder.write("browser.sdp", GetParam().body);
  std::vector<std::string> arguments = GetParam().request;
  arguments.insert(arguments.begin(), {"rewrite", "--in-place"});
  arguments.push_back(file);
  const Outcome outcome = runSdpneg(arguments);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(replaced(outcome.err, file, "FILE"), GetParam().errors);
  EXPECT_EQ(outcome.status, GetParam().status);
  EXPECT_EQ(readBytes(file), GetParam().body);
}

const std::string tryHelp = "Try 'sdpneg rewrite --help' for more.\n";
const std::string noCommon =
    "sdpneg: FILE:5: section 1 (audio): no common codec: it has opus, G722, PCMU; kept would be PCMA";
const std::string threeCodecs = session +
                                "m=audio 9 UDP/TLS/RTP/SAVPF 111 9 0\n"
                                "c=IN IP4 0.0.0.0\n"
                                "a=rtpmap:111 opus/48000/2\n";

const Refusal refusals[] = {
    {"noCommonCodec", {"keep-codecs", "PCMA"}, threeCodecs, 1, noCommon + "\n"},
    {"inTheMiddle",
     {"direction", "inactive", "--", "keep-codecs", "PCMA", "--", "anchor", "192.0.2.7", "40000"},
     threeCodecs,
     1,
     noCommon + " (request 2, keep-codecs)\n"},
    {"behindAnObject",
     {"anchor", "192.0.2.7", "40000", "--", "increase-version", "--", "keep-codecs", "PCMA"},
     threeCodecs,
     1,
     replaced(noCommon, "FILE:5:", "FILE:") + " (request 3, keep-codecs, line 5 of what request 2 left)\n"},
    {"anObjectInFront",
     {"increase-version", "--", "keep-codecs", "PCMU"},
     threeCodecs,
     1,
     "sdpneg: FILE:5:9: request 1, increase-version, is refused: the port of m-line 1 (audio), 9, is below 1024\n"},
    {"anObjectBehind",
     {"keep-codecs", "PCMU", "--", "increase-version"},
     threeCodecs,
     1,
     "sdpneg: FILE: request 2, increase-version, is refused: what comes to it cannot be read: line 5, column "
     "9: the port of m-line 1 (audio), 9, is below 1024\n"},
    {"anObjectAlone",
     {"increase-version"},
     threeCodecs,
     2,
     "sdpneg: FILE:5:9: the port of m-line 1 (audio), 9, is below 1024\n"},
    {"anObjectsOwnRefusal",
     {"direction", "inactive", "--", "silence", "on"},
     std::string(bodies::faxCall),
     1,
     "sdpneg: FILE: request 2, silence, is refused: No audio <mline> found.\n"},
    {"anUnreadableSection",
     {"anchor", "192.0.2.7", "40000"},
     session + "m=audio 9\n",
     1,
     "sdpneg: FILE:5: section 1 (audio): unreadable m-line\n"},
    {"hostileWords",
     {"disable", "1", "--", "keep-codecs", "X\x1b[2J"},
     session,
     64,
     "sdpneg: LIST of keep-codecs is codecs between commas, each NAME, NAME/CLOCK, NAME/CLOCK/CHANNELS or a "
     "payload type, not 'X\\x1B[2J'\n" +
         tryHelp},
    {"oddPort",
     {"anchor", "192.0.2.7", "40001"},
     browser,
     64,
     "sdpneg: PORT of anchor is an even port from 1024 to 65534, not '40001'\n" + tryHelp},
    {"noAddress",
     {"anchor", "example.com", "40000"},
     browser,
     64,
     "sdpneg: ADDRESS of anchor is an IPv4 or IPv6 address, not 'example.com'\n" + tryHelp},
    {"directionInCapitals",
     {"direction", "SENDONLY"},
     browser,
     64,
     "sdpneg: DIRECTION of direction is a direction: sendrecv, sendonly, recvonly or inactive, not 'SENDONLY'\n" +
         tryHelp},
    {"wrongArgumentBehindRequests",
     {"disable", "1", "--", "set-profile", "AVP"},
     browser,
     64,
     "sdpneg: PROFILE of set-profile is a profile of RTP: RTP/AVP, RTP/AVPF, RTP/SAVP, RTP/SAVPF, "
     "UDP/TLS/RTP/SAVP or UDP/TLS/RTP/SAVPF, not 'AVP'\n" +
         tryHelp},
    {"wrongMediaInFrontOfRequests",
     {"keep-codecs", "PCMA", "sound", "--", "unbundle"},
     browser,
     64,
     "sdpneg: MEDIA of keep-codecs is a section's number, mid=VALUE, or one of these words: audio, video, "
     "text, application, message, image or all, not 'sound'\n" +
         tryHelp},
};

INSTANTIATE_TEST_SUITE_P(Bodies, DocumentRefusals, testing::ValuesIn(refusals),
                         [](const auto& each) { return std::string(each.param.name); });

class DocumentFiles : public testing::Test {
 protected:
  TemporaryFolder folder;
  std::string file = folder.write("2", browser);
};

TEST_F(DocumentFiles, AreWhateverSelectsNoMedia) {
  const std::string kept = session + group + audioOfPcma + video;
  EXPECT_EQ(runSdpneg({"rewrite", "keep-codecs", "PCMA,telephone-event", "audio", file}).out, kept);
  EXPECT_EQ(runSdpneg({"rewrite", "unbundle", file}).out, replaced(browser, group, ""));
  EXPECT_EQ(runSdpneg({"rewrite", "opportunistic", file}).out,
            replaced(browser, "UDP/TLS/RTP/SAVPF", "RTP/AVPF"));
  const std::string here = "cd '" + folder.path() + "' && '" SDPNEG_PROGRAM "' rewrite opportunistic ";
  EXPECT_EQ(std::system((here + "./2 >file").c_str()), 0);
  EXPECT_EQ(readBytes(folder.path("file")), replaced(browser, "UDP/TLS/RTP/SAVPF", "RTP/AVPF"));
  // A number is a section.
  EXPECT_EQ(std::system((here + "2 <2 >section 2>error; test $? = 1").c_str()), 0);
  EXPECT_EQ(readBytes(folder.path("section")), "");
}

TEST_F(DocumentFiles, AreReadBeforeAnythingIsDone) {
  const Outcome outcome = runSdpneg({"rewrite", "disable", "all", folder.path("missing")});
  EXPECT_EQ(outcome.err,
            "sdpneg: " + folder.path("missing") + ": cannot be read: No such file or directory\n");
  EXPECT_EQ(outcome.status, 2);
}

TEST_F(DocumentFiles, AreWrittenInPlace) {
  EXPECT_EQ(runSdpneg({"rewrite", "--in-place", "unbundle", file}).status, 0);
  EXPECT_EQ(readBytes(file), replaced(browser, group, ""));
}

TEST_F(DocumentFiles, AreShownAsDiff) {
  const Outcome outcome = runSdpneg({"rewrite", "--diff", "disable", "video", file});
  EXPECT_NE(outcome.out.find("\n-a=group:BUNDLE a v\n+a=group:BUNDLE a\n"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("\n-m=video 9 UDP/TLS/RTP/SAVPF 96 97\n+m=video 0 UDP/TLS/RTP/SAVPF 96 97\n"),
            std::string::npos)
      << outcome.out;
}

TEST_F(DocumentFiles, MayHoldASipMessage) {
  const std::string length = std::to_string(threeCodecs.size());
  const std::string head =
      "SIP/2.0 200 OK\r\nContent-Type: application/sdp\r\nContent-Length: " + length + "\r\n\r\n";
  const std::string message = folder.write("message", head + threeCodecs);
  const Outcome done = runSdpneg({"rewrite", "keep-codecs", "G722", message});
  const std::string body = replaced(replaced(threeCodecs, "111 9 0", "9"), "a=rtpmap:111 opus/48000/2\n", "");
  EXPECT_EQ(done.out, replaced(head, length, std::to_string(body.size())) + body);
  const Outcome refused = runSdpneg({"rewrite", "keep-codecs", "PCMA", message});
  EXPECT_EQ(refused.err,
            "sdpneg: " + message +
                ":9: section 1 (audio): no common codec: it has opus, G722, PCMU; kept would be PCMA\n");
  const Outcome first = runSdpneg({"rewrite", "increase-version", "--", "unbundle", message});
  EXPECT_EQ(
      first.err,
      "sdpneg: " + message +
          ":9:9: request 1, increase-version, is refused: the port of m-line 1 (audio), 9, is below 1024\n");
  const std::string bare = folder.write("bare", "SIP/2.0 200 OK\r\n\r\n");
  EXPECT_EQ(runSdpneg({"rewrite", "unbundle", bare}).status, 2);
}

TEST_F(DocumentFiles, MayBeLargerThanWhatAnObjectReads) {
  const std::string large = browser + "a=x-long:" + std::string(std::size_t{2} * 1024 * 1024, 'y') + "\n";
  const std::string name = folder.write("large", large);
  const Outcome outcome = runSdpneg({"rewrite", "strip-attributes", "x-*", name});
  EXPECT_EQ(outcome.out, replaced(browser, "a=x-own:1\n", ""));
  EXPECT_EQ(runSdpneg({"rewrite", "increase-version", "--", "unbundle", name}).status, 1);
}

TEST_F(DocumentFiles, SayWhatHadNothingToDo) {
  const Outcome outcome =
      runSdpneg({"rewrite", "--verbose", "direction", "sendrecv", "--", "unbundle", file});
  EXPECT_EQ(outcome.err, "sdpneg: " + file + ": note: request 1, direction, had nothing to do\n");
}

TEST_F(DocumentFiles, TraceWhatTheObjectDoes) {
  EXPECT_EQ(runSdpneg({"rewrite", "--trace", "unbundle", file}).err, "");
  const std::string call = folder.write("call", known);
  const Outcome outcome = runSdpneg({"rewrite", "--trace", "unbundle", "--", "increase-version", call});
  EXPECT_TRUE(outcome.err.starts_with("SDP_NEGOTIATOR_DETAIL:Entering sdpParse() method: SDP length is " +
                                      std::to_string(known.size()) + "\n"))
      << outcome.err;
}

}  // namespace
