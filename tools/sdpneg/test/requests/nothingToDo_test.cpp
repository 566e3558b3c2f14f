#include "bodies.h"
#include "rewriteCases.h"

// Requests that have nothing to do leave the body as it is, and are no refusals.

namespace {

using namespace rewriting;

const std::string audio(bodies::audioCall);
const std::string fax(bodies::faxCall);
const std::string session = "v=0\r\no=ann 17 18 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n";
const std::string secure = session + "m=audio 49170 RTP/SAVP 0\r\n";
const std::string video = session +
                          "m=video 49172 RTP/AVP 96\r\nb=AS:512\r\na=rtpmap:96 H264/90000\r\n"
                          "a=fmtp:96 profile-level-id=42e01f\r\n";
const std::string candidate4 = "a=candidate:1 1 UDP 2130706431 192.0.2.10 49170 typ host\r\n";
const std::string echo = audio + "a=ecan:fb on -\r\n";

struct Idle {
  const char* name;
  std::vector<std::string> request;
  std::string body;
  std::string why = {};  ///< behind "had nothing to do"
};

std::ostream& operator<<(std::ostream& out, const Idle& each) { return out << each.name; }

class NothingToDo : public testing::TestWithParam<Idle> {};

TEST_P(NothingToDo, IsSuccessAndToldWhenAsked) {
  const Outcome quiet = runRewrite(GetParam().request, GetParam().body);
  EXPECT_EQ(quiet.out, GetParam().body);
  EXPECT_EQ(quiet.err, "");
  EXPECT_EQ(quiet.status, 0);
  std::vector<std::string> request = GetParam().request;
  request.emplace_back("--verbose");
  const Outcome told = runRewrite(request, GetParam().body);
  EXPECT_EQ(told.out, GetParam().body);
  EXPECT_EQ(told.err, "sdpneg: (standard input): note: request " + request.front() + " had nothing to do" +
                          GetParam().why + "\n");
  EXPECT_EQ(told.status, 0);
}

const Idle idles[] = {
    {"removeIce", {"remove-ice"}, audio, ": the body has no ICE"},
    {"removeCandidates", {"remove-candidates"}, audio},
    {"removeDualStackIce",
     {"remove-dual-stack-ice"},
     secure + candidate4,
     ": all candidates are of their media's address family"},
    {"removeDualStackIceWithoutCandidate",
     {"remove-dual-stack-ice"},
     session,
     ": all candidates are of their media's address family"},
    {"removeDtls", {"remove-dtls"}, audio, ": the body has no DTLS-SRTP"},
    {"removeMikey", {"remove-mikey"}, audio},
    {"removeSdes", {"remove-sdes"}, audio},
    {"removeSecure", {"remove-secure"}, audio},
    {"removeMikeyMedia", {"remove-secure", "mikey"}, secure, ": the body has no MIKEY"},
    {"removeSdesMedia", {"remove-secure", "sdes"}, audio, ": the body has no SDES"},
    {"removePlain", {"remove-plain"}, secure},
    {"removeAnat", {"remove-anat", "6"}, audio, ": the body has no ANAT group"},
    {"changeToTheSame", {"change-security", "plain", "plain"}, audio, ": FROM and TO are the same"},
    {"changeOfASecureBody",
     {"change-security", "best-effort2", "secure"},
     secure,
     ": the body has no plain m-line beside a secure one"},
    {"setTransport",
     {"set-transport", "RTP/SAVPF", "RTP/AVP"},
     audio,
     ": no m-line holds FROM, or all that do begin with TO already"},
    {"setTransportThatTheOldOneBeginsWith",
     {"set-transport", "RTP/AVP", "RTP/A"},
     audio,
     ": no m-line holds FROM, or all that do begin with TO already"},
    {"capVideoBandwidth", {"cap-video-bandwidth", "512"}, video, ": the bandwidth of the video is 512"},
    {"capVideoBandwidthOfAnAudioCall",
     {"cap-video-bandwidth", "1"},
     audio,
     ": the bandwidth of the video is 0"},
    {"capH264Level", {"cap-h264-level", "3.1"}, video, ": the highest level is 3.1"},
    {"capH264LevelOfAnAudioCall", {"cap-h264-level", "1"}, audio, ": the body has no H.264"},
    {"restrictVideo", {"restrict-video", "H264"}, audio, ": the body has no video"},
    {"restrictAudio", {"restrict-audio", "PCMU"}, fax, ": the body has no audio"},
    {"preferWhatIsFirst", {"prefer-audio", "PCMA"}, audio},
    {"cutVideo", {"cut-video"}, without(audio, "c=IN IP4 192.0.2.10\n"), ": the body has no video"},
    {"removeVideo", {"remove-video"}, audio},
    {"removeZeroPorts", {"remove-zero-ports"}, audio},
    {"removePreconditions", {"remove-preconditions"}, audio},
    {"portOff", {"port-off", "text"}, audio},
    {"silenceTwice", {"silence", "on"}, audio + "a=silenceSupp:on - - - -\r\n"},
    {"echoTwice", {"echo", "on", "fb"}, echo, ": the body has this echo cancellation"},
    {"sameAddress", {"address", "192.0.2.10"}, secure},
    {"sameVersion", {"set-version", "18"}, audio}};

INSTANTIATE_TEST_SUITE_P(Requests, NothingToDo, testing::ValuesIn(idles),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(NothingToDo, IsToldOfEachRequestByItsNumber) {
  const Outcome outcome =
      runRewrite({"--verbose", "remove-ice", "--", "mode", "recvonly", "--", "remove-mikey"}, audio);
  EXPECT_EQ(outcome.out, audio + "a=recvonly\r\n");
  EXPECT_EQ(outcome.err,
            "sdpneg: (standard input): note: request 1, remove-ice, had nothing to do: the body has no ICE\n"
            "sdpneg: (standard input): note: request 3, remove-mikey, had nothing to do\n");
  EXPECT_EQ(outcome.status, 0);
}

class SomethingToDo : public testing::TestWithParam<Refusal> {};
TEST_P(SomethingToDo, ThatCouldNotBeDoneIsRefused) { expectRefusal(GetParam()); }

const Refusal refusals[] = {{"iceThatTheLibraryDoesNotRemove",
                             {"remove-ice"},
                             audio + "a=ice-mismatch\r\n",
                             1,
                             "remove-ice is refused: no attribute of ICE could be removed"},
                            {"candidateWithoutAnAddress",
                             {"remove-dual-stack-ice"},
                             secure + "a=candidate:1 1 UDP 2130706431\r\n",
                             1,
                             "remove-dual-stack-ice is refused: a candidate has no address"},
                            {"candidateOfAnUnknownFamily",
                             {"remove-dual-stack-ice"},
                             replaced(secure, "c=IN IP4", "c=IN X") + candidate4,
                             1,
                             "remove-dual-stack-ice is refused: an address type is neither IP4 nor IP6"},
                            {"anotherEchoCancellation",
                             {"echo", "off", "fb"},
                             echo,
                             1,
                             "echo is refused: Echo cancellation already exists in SDP."}};

INSTANTIATE_TEST_SUITE_P(Requests, SomethingToDo, testing::ValuesIn(refusals),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
