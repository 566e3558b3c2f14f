#include <gtest/gtest.h>

#include <regex>

#include "bodies.h"
#include "process.h"

namespace {

const std::string audio(bodies::audioCall);
const std::string secure(bodies::secureCall);
const std::string fax(bodies::faxCall);

struct Case {
  const char* name;
  std::vector<std::string> requests;
  std::string body;
  std::string expected;
};

std::ostream& operator<<(std::ostream& out, const Case& each) { return out << each.name; }

/// The body with its o-line, which ends in LF, replaced.
std::string withOrigin(const std::string& body, const std::string& line) {
  const std::size_t begin = body.find("o=");
  return body.substr(0, begin) + line + body.substr(body.find('\n', begin) + 1);
}

std::string withSessionLine(const std::string& body, const std::string& line) {
  const std::size_t media = body.find("m=");
  return body.substr(0, media) + line + body.substr(media);
}

class Rewrite : public testing::TestWithParam<Case> {};

TEST_P(Rewrite, GivesTheNewBodyByteForByte) {
  std::vector<std::string> arguments = {"rewrite"};
  arguments.insert(arguments.end(), GetParam().requests.begin(), GetParam().requests.end());
  const Outcome outcome = runSdpneg(arguments, {.input = GetParam().body});
  EXPECT_EQ(outcome.out, GetParam().expected);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

const Case cases[] = {
    {"setVersion", {"set-version", "99"}, audio, withOrigin(audio, "o=ann 17 99 IN IP4 192.0.2.10\n")},
    {"setVersionZero", {"set-version", "0"}, audio, withOrigin(audio, "o=ann 17 0 IN IP4 192.0.2.10\n")},
    {"increaseVersionBehindTwoBlanks",
     {"increase-version"},
     withOrigin(audio, "o=ann 17  18 IN IP4 192.0.2.10\n"),
     withOrigin(audio, "o=ann 17  19 IN IP4 192.0.2.10\n")},
    {"setLargestVersion",
     {"set-version", "9223372036854775807", "-"},
     audio,
     withOrigin(audio, "o=ann 17 9223372036854775807 IN IP4 192.0.2.10\n")},
    {"increaseVersion", {"increase-version"}, audio, withOrigin(audio, "o=ann 17 19 IN IP4 192.0.2.10\n")},
    {"increaseVersionOfCrLfBody",
     {"increase-version"},
     withCrLf(audio),
     withCrLf(withOrigin(audio, "o=ann 17 19 IN IP4 192.0.2.10\n"))},
    {"modifyOrigin", {"modify-origin", "5", "6"}, audio, withOrigin(audio, "o=ZEV 5 6 IN IP4 0.0.0.0\r\n")},
    {"modifyOriginOfIPv6",
     {"modify-origin", "5", "6"},
     secure,
     withOrigin(secure, "o=ZEV 5 6 IN IP6 ::\r\n")},
    {"modifyOriginWithAddress",
     {"modify-origin", "5", "6", "2001:db8::1"},
     audio,
     withOrigin(audio, "o=ZEV 5 6 IN IP6 2001:db8::1\r\n")},
    {"restrictWhatHasNoDirection",
     {"mode", "inactive"},
     audio,
     withSessionLine(audio, "a=inactive\r\n") + "a=inactive\r\n"},
    {"receiveOnlyWithoutSessionLine", {"mode", "recvonly"}, audio, audio + "a=recvonly\r\n"},
    {"restrictVideoAlone",
     {"mode", "inactive", "video"},
     secure,
     withSessionLine(replaced(secure, "a=recvonly", "a=inactive"), "a=inactive\r\n")},
    {"restrictAudioAlone",
     {"mode", "RecvOnly", "AUDIO"},
     secure,
     replaced(secure, "a=sendonly", "a=inactive")},
    {"silenceOn", {"silence", "on"}, audio, audio + "a=silenceSupp:on - - - -\r\n"},
    {"silenceOff", {"silence", "off"}, audio, audio + "a=silenceSupp:off - - - -\r\na=gpmd:8 vbd=yes\r\n"},
    {"severalInOrder",
     {"mode", "recvonly", "--", "set-version", "7", "--", "increase-version"},
     audio,
     withOrigin(audio, "o=ann 17 8 IN IP4 192.0.2.10\n") + "a=recvonly\r\n"}};

INSTANTIATE_TEST_SUITE_P(Requests, Rewrite, testing::ValuesIn(cases),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(RewriteRenewOrigin, WritesTheTimeOfDay) {
  const Outcome outcome = runSdpneg({"rewrite", "renew-origin"}, {.input = audio});
  EXPECT_TRUE(std::regex_search(outcome.out,
                                std::regex("^v=0\no=ZEV ([0-9]{7,9}) \\1 IN IP4 0\\.0\\.0\\.0\r\ns=-\n")))
      << outcome.out;
  EXPECT_EQ(outcome.out.substr(outcome.out.find("s=-")), audio.substr(audio.find("s=-")));
}

class RewriteFiles : public testing::Test {
 protected:
  TemporaryFolder folder;
  std::string file = folder.write("call.sdp", audio);
  std::string other = folder.write("other.sdp", fax);
};

TEST_F(RewriteFiles, CopyOriginTakesTheLineOfAnotherBody) {
  const Outcome outcome = runSdpneg({"rewrite", "copy-origin", other, file});
  EXPECT_EQ(outcome.out, withOrigin(audio, "o=fax 1 2 IN IP4 198.51.100.7\r\n"));
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(runSdpneg({"rewrite", "copy-origin", "-", file}, {.input = fax}).out, outcome.out);
}

TEST_F(RewriteFiles, ARequestMeetsABodyThatIsParsedAnew) {
  // The version gains a digit, which moves the end of the o-line.
  const Outcome outcome =
      runSdpneg({"rewrite", "set-version", "9", "--", "increase-version", "--", "copy-origin", other, file});
  EXPECT_EQ(outcome.out, withOrigin(audio, "o=fax 1 2 IN IP4 198.51.100.7\r\n"));
}

TEST_F(RewriteFiles, TheLastWordIsTheFileUnlessItIsAnArgument) {
  EXPECT_EQ(runSdpneg({"rewrite", "modify-origin", "1", "2", file}).out,
            withOrigin(audio, "o=ZEV 1 2 IN IP4 0.0.0.0\r\n"));
  EXPECT_EQ(runSdpneg({"rewrite", "modify-origin", "1", "2", "192.0.2.9", file}).out,
            withOrigin(audio, "o=ZEV 1 2 IN IP4 192.0.2.9\r\n"));
  EXPECT_EQ(runSdpneg({"rewrite", "mode", "recvonly", file}).out, audio + "a=recvonly\r\n");
  EXPECT_EQ(runSdpneg({"rewrite", "mode", "recvonly", "video"}, {.input = audio}).out, audio);
}

TEST_F(RewriteFiles, OptionsMayStandAnywhere) {
  const std::string diff = runSdpneg({"rewrite", "--diff", "--color", "never", "mode", "recvonly", file}).out;
  EXPECT_EQ(diff.substr(0, 4), "--- ");
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"rewrite", "mode", "--diff", "recvonly", file, "--color=never"},
        {"rewrite", "mode", "recvonly", file, "--color", "never", "--diff"}}) {
    EXPECT_EQ(runSdpneg(arguments).out, diff);
  }
}

TEST_F(RewriteFiles, TraceShowsTheLinesOfTheLibrary) {
  const Outcome outcome = runSdpneg({"rewrite", "--trace", "increase-version", file});
  EXPECT_EQ(outcome.out, withOrigin(audio, "o=ann 17 19 IN IP4 192.0.2.10\n"));
  const std::size_t parse = outcome.err.find("SDP_NEGOTIATOR_DETAIL:Entering sdpParse() method");
  const std::size_t request =
      outcome.err.find("SDP_NEGOTIATOR_DETAIL:Request to increase the version of o-line by 1.\n");
  EXPECT_EQ(parse, 0U);
  EXPECT_NE(request, std::string::npos);
}

struct Refusal {
  const char* name;
  std::vector<std::string> requests;
  std::string body;
  std::string why;
};

std::ostream& operator<<(std::ostream& out, const Refusal& each) { return out << each.name; }

class RewriteRefused : public testing::TestWithParam<Refusal> {};

TEST_P(RewriteRefused, SaysWhichAndWhyAndWritesNothing) {
  const TemporaryFolder folder;
  const std::string file = folder.write("call.sdp", GetParam().body);
  std::vector<std::string> arguments = {"rewrite"};
  arguments.insert(arguments.end(), GetParam().requests.begin(), GetParam().requests.end());
  arguments.push_back(file);
  const Outcome outcome = runSdpneg(arguments);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "sdpneg: " + file + ": " + GetParam().why + "\n");
  EXPECT_EQ(outcome.status, 1);
}

/// A body whose text does not deflate, of a size.
std::string incompressible(std::size_t size) {
  std::string body = "v=0\no=- 1 1 IN IP4 192.0.2.1\ns=";
  const std::string end = "\nc=IN IP4 192.0.2.1\nt=0 0\nm=audio 5004 RTP/AVP 0\n";
  unsigned int state = 1;
  while (body.size() + end.size() < size) {
    state = state * 1664525U + 1013904223U;
    const char c = static_cast<char>(state >> 24U);
    body += c == '\0' || c == '\r' || c == '\n' ? 'x' : c;
  }
  return body + end;
}

/// A body of a size, which deflates well.
std::string sized(std::size_t size) {
  const std::string begin = "v=0\no=- 1 1 IN IP4 192.0.2.1\ns=";
  const std::string end = "\nc=IN IP4 192.0.2.1\nt=0 0\nm=audio 5004 RTP/AVP 0\n";
  return begin + std::string(size - begin.size() - end.size(), 'x') + end;
}

const std::string tooLarge = "Attempt to increment <oline> version past maximum length. Exiting.";

const std::string anotherField =
    "by the library's count \"IN\" of the o-line is field 5 and not 4, so another field would be taken for the version";

const Refusal refusals[] = {
    {"setVersionBehindABlankInTheUserName",
     {"set-version", "9"},
     withOrigin(audio, "o=Ann Lee 17 18 IN IP4 192.0.2.10\n"),
     "request set-version is refused: " + anotherField},
    {"increaseVersionBehindABlankInTheUserName",
     {"increase-version"},
     withOrigin(audio, "o=Ann Lee 17 18 IN IP4 192.0.2.10\n"),
     "request increase-version is refused: " + anotherField},
    {"setVersionBehindTwoBlanks",
     {"set-version", "9"},
     withOrigin(audio, "o=ann 17  18 IN IP4 192.0.2.10\n"),
     "request set-version is refused: " + anotherField},
    {"setVersionBehindABlankInFrontOfTheOLine",
     {"set-version", "9"},
     "v=0\ns=A call\no=ann 17 18 IN IP4 192.0.2.10\nc=IN IP4 192.0.2.10\nt=0 0\nm=audio 49170 RTP/AVP 0\n",
     "request set-version is refused: " + anotherField},
    {"fromTheErrorTrace", {"silence", "on"}, fax, "request silence is refused: No audio <mline> found."},
    {"fromAnInformationTrace",
     {"modify-origin", "1", "2"},
     replaced(audio, "s=-\n", ""),
     "request modify-origin is refused: The s-line is not present within the SDP. Exiting..."},
    {"fromADetailTrace",
     {"mode", "sendonly"},
     sized(20470),
     "request mode is refused: sdpReplaceMode(): Not enough room to add a=sendonly line at the session level. Exiting."},
    {"thatHasNoRoom",
     {"silence", "on"},
     sized(20460),
     "request silence is refused: The silence suppression attributes have NOT been added. Possibility to "
     "overflow the buffer size. Exiting."},
    {"ofABodyThatIsTooLong",
     {"increase-version"},
     sized(20480),
     "request increase-version is refused: the body is longer than the 20479 characters that requests take"},
    {"whereTheStatusSaysNothing",
     {"modify-origin", std::string(65, '1'), "2"},
     audio,
     "request modify-origin is refused: The input values of session id or the session version are invalid."},
    {"inTheMiddle",
     {"set-version", "9223372036854775807", "--", "increase-version", "--", "mode", "inactive"},
     audio,
     "request 2, increase-version, is refused: " + tooLarge},
    {"thatCannotBeStored",
     {"set-version", "1000000000000000000"},
     incompressible(2555),
     "request set-version is refused: the text cannot be stored: it does not deflate into 2560 bytes"}};

INSTANTIATE_TEST_SUITE_P(Requests, RewriteRefused, testing::ValuesIn(refusals),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_F(RewriteFiles, BadInputIsNoRefusal) {
  const std::string browser = folder.write("browser.sdp", bodies::browserOffer);
  const Outcome outcome = runSdpneg({"rewrite", "copy-origin", folder.path("none"), browser});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "sdpneg: " + browser + ":5:9: the port of m-line 1 (audio), 9, is below 1024\n" +
                             "sdpneg: " + folder.path("none") +
                             ": cannot be read: No such file or directory\n");
  EXPECT_EQ(outcome.status, 2);
  const std::string nul = audio + std::string("a=x\0", 4);
  EXPECT_EQ(runSdpneg({"rewrite", "mode", "inactive"}, {.input = nul}).status, 2);
}

TEST(RewriteLongBody, MayHaveAllTheCharactersThatRequestsTake) {
  const std::string body = sized(20479);
  const Outcome outcome = runSdpneg({"rewrite", "increase-version"}, {.input = body});
  EXPECT_TRUE(outcome.out == replaced(body, "o=- 1 1", "o=- 1 2")) << outcome.out.size();
  EXPECT_EQ(outcome.status, 0);
}

TEST(RewriteUsage, IsChecked) {
  const std::string list = "; 'sdpneg requests' lists them";
  const std::string version = "N of set-version is a whole number from 0 to 9223372036854775807, not ";
  const struct {
    std::vector<std::string> words;
    std::string mistake;
  } wrong[] = {
      {{}, "a request is missing" + list},
      {{"mode", "inactive", "--"}, "a request is missing" + list},
      {{"--", "mode", "inactive"}, "a request is missing" + list},
      {{"nothing"}, "there is no request 'nothing'" + list},
      {{"--nothing", "mode", "inactive"}, "there is no request '--nothing'" + list},
      {{"set-version"}, "an argument is missing: set-version N"},
      {{"modify-origin", "1"}, "an argument is missing: modify-origin ID VERSION [IP]"},
      {{"modify-origin", "1 2", "3"}, "ID of modify-origin is a session id without blanks, not '1 2'"},
      {{"modify-origin", "", "3"}, "ID of modify-origin is a session id without blanks, not ''"},
      {{"modify-origin", "1", "2", "192.0.2.256", "file"},
       "IP of modify-origin is an IP address, not '192.0.2.256'"},
      {{"set-version", "1x"}, version + "'1x'"},
      {{"set-version", "9223372036854775808"}, version + "'9223372036854775808'"},
      {{"set-version", "-5"}, version + "'-5'"},
      {{"set-version", "-0"}, version + "'-0'"},
      {{"mode", "sendrecv"},
       "DIRECTION of mode is a direction: sendonly, recvonly or inactive, not 'sendrecv'"},
      {{"mode", "inactive", "text", "file"}, "MEDIA of mode is a kind of media: audio or video, not 'text'"},
      {{"renew-origin", "a", "b"}, "'b' is one word too many behind renew-origin"},
      {{"renew-origin", "a", "--", "renew-origin"}, "'a' is one word too many behind renew-origin"},
      {{"--in-place", "renew-origin"}, "--in-place wants a FILE"},
      {{"copy-origin", "-"}, "standard input can be read only once"}};
  for (const auto& each : wrong) {
    std::vector<std::string> arguments = {"rewrite"};
    arguments.insert(arguments.end(), each.words.begin(), each.words.end());
    const Outcome outcome = runSdpneg(arguments, {.input = audio});
    EXPECT_EQ(outcome.err, "sdpneg: " + each.mistake + "\nTry 'sdpneg rewrite --help' for more.\n");
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.status, 64);
  }
  EXPECT_EQ(runSdpneg({"rewrite", "--color", "pink", "renew-origin"}, {.input = audio}).status, 64);
}

}  // namespace
