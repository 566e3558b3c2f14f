#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <nlohmann/json.hpp>
#include <thread>

#include "process.h"

// The command as its users have it: logs in, lines, ladders, JSON and pages out.

namespace {

using Json = nlohmann::json;

/// A body of CR LF lines.
std::string sdp(const std::string& user, const std::string& address, int port,
                const std::string& media = "a=sendrecv\n") {
  return withCrLf("v=0\no=" + user + " 7 1 IN IP4 " + address + "\ns=-\nc=IN IP4 " + address +
                  "\nt=0 0\nm=audio " + std::to_string(port) + " RTP/AVP 8\na=rtpmap:8 PCMA/8000\n" + media);
}

/// A message in a log: its time and way, then its text.
struct Entry {
  std::string time;
  std::string way;
  std::string start;
  std::string cseq;
  std::string toTag = {};
  std::string body = {};
  std::string callId = "one@example.org";
  std::string headers = {};

  std::string text() const {
    return "2026-11-22 10:00:" + time + " " + way + "\n" + start +
           "\r\nVia: SIP/2.0/UDP host;branch=z9hG4bK" + cseq.substr(0, 1) +
           "\r\nFrom: <sip:alice@example.org>;tag=f\r\n" + "To: <sip:bob@example.com>" +
           (toTag.empty() ? "" : ";tag=" + toTag) + "\r\nCall-ID: " + callId + "\r\nCSeq: " + cseq + "\r\n" +
           headers + (body.empty() ? "" : "Content-Type: application/sdp\r\n") +
           "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body + "\n";
  }
};

constexpr const char* kThere = "192.0.2.1:5060 -> 192.0.2.3:5060";
constexpr const char* kBack = "192.0.2.3:5060 -> 192.0.2.1:5060";
constexpr const char* kInvite = "INVITE sip:bob@example.com SIP/2.0";

/// A call that is answered and ended.
std::string plainCall(const std::string& answer = sdp("bob", "192.0.2.3", 5000)) {
  return Entry{"00.000", kThere, kInvite, "1 INVITE", "", sdp("alice", "192.0.2.1", 4000)}.text() +
         Entry{"00.100", kBack, "SIP/2.0 180 Ringing", "1 INVITE", "t"}.text() +
         Entry{"02.000", kBack, "SIP/2.0 200 OK", "1 INVITE", "t", answer}.text() +
         Entry{"02.010", kThere, "ACK sip:bob@example.com SIP/2.0", "1 ACK", "t"}.text() +
         Entry{"05.000", kThere, "BYE sip:bob@example.com SIP/2.0", "2 BYE", "t"}.text() +
         Entry{"05.020", kBack, "SIP/2.0 200 OK", "2 BYE", "t"}.text();
}

/// One in which the answer is sent as sendonly: the caller is not heard.
std::string oneWayCall() { return plainCall(sdp("bob", "192.0.2.3", 5000, "a=sendonly\n")); }

TEST(Calls, AreALineEach) {
  const Outcome outcome = runSdpneg({"calls"}, {.input = plainCall()});
  EXPECT_EQ(outcome.out,
            "CALL   START (UTC)              FROM                        TO                          "
            "RESULT         CODECS          SECURITY   ODD\n"
            "1      2026-11-22 10:00:00.000  alice@example.org           bob@example.com             "
            "ended 200      PCMA            plain\n"
            "6 messages, 1 call\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Calls, OfSeveralInputsAreOneCapture) {
  const TemporaryFolder folder;
  std::string there;
  std::string back;
  const std::string log = plainCall();
  for (std::size_t at = 0; at < log.size();) {
    const std::size_t next = std::min(log.find("\n2026", at), log.size() - 1) + 1;
    const std::string entry = log.substr(at, next - at);
    (entry.find(kThere) != std::string::npos ? there : back) += entry;
    at = next;
  }
  const Outcome outcome = runSdpneg({"calls", folder.write("there", there), folder.write("back", back)});
  EXPECT_EQ(outcome.out, runSdpneg({"calls"}, {.input = log}).out);
}

TEST(Calls, ThatThereAreNoneIsSaid) {
  const Outcome outcome = runSdpneg({"calls"}, {.input = "nothing of SIP\n"});
  EXPECT_EQ(outcome.out, "0 messages, 0 calls\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Calls, MessagesOfNoCallAreCounted) {
  const std::string log =
      plainCall() +
      Entry{"10.000", kThere, "REGISTER sip:example.com SIP/2.0", "1 REGISTER", "", "", "reg"}.text();
  EXPECT_TRUE(runSdpneg({"calls"}, {.input = log}).out.ends_with("\n7 messages (1 of no call), 1 call\n"));
}

TEST(CallLadder, HasParticipantsMessagesAndBodiesInShort) {
  const Outcome outcome = runSdpneg(
      {"calls", "--call=1", "--name=192.0.2.1=alice", "--name=192.0.2.3:5060=bob"}, {.input = plainCall()});
  EXPECT_EQ(outcome.out,
            "Call 1: sip:alice@example.org -> sip:bob@example.com\n"
            "  2026-11-22 10:00:00.000 UTC, 5.020 s, ended 200\n"
            "  leg 1: one@example.org\n"
            "\n"
            "                    alice                 192.0.2.3\n"
            "     #1      0.000  |-- INVITE (offer) -->|\n"
            "                      audio PCMA sendrecv 192.0.2.1:4000 plain\n"
            "     #2      0.100  |<------- 180 --------|\n"
            "     #3      2.000  |<-- 200 (answer) ----|\n"
            "                      audio PCMA sendrecv 192.0.2.3:5000 plain\n"
            "     #4      2.010  |-------- ACK ------->|\n"
            "     #5      5.000  |-------- BYE ------->|\n"
            "     #6      5.020  |<----- 200 BYE ------|\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(CallLadder, WithBodiesTellsWhatAHopChanged) {
  const std::string there = sdp("alice", "192.0.2.1", 4000);
  const std::string on = replaced(there, "192.0.2.1", "192.0.2.2");
  const std::string log =
      Entry{"00.000", "192.0.2.1:5060 -> 192.0.2.2:5060", kInvite, "1 INVITE", "", there}.text() +
      Entry{"00.010", "192.0.2.2:5060 -> 192.0.2.3:5060", kInvite, "1 INVITE", "", on}.text();
  const Outcome outcome = runSdpneg({"calls", "--call=1", "--bodies"}, {.input = log});
  EXPECT_TRUE(
      outcome.out.ends_with("\n#2 INVITE (offer) 192.0.2.2 -> 192.0.2.3\n"
                            "    v=0\n"
                            "    o=alice 7 1 IN IP4 192.0.2.2\n"
                            "    s=-\n"
                            "    c=IN IP4 192.0.2.2\n"
                            "    t=0 0\n"
                            "    m=audio 4000 RTP/AVP 8\n"
                            "    a=rtpmap:8 PCMA/8000\n"
                            "    a=sendrecv\n"
                            "  192.0.2.2 changed of #1:\n"
                            "   session\n"
                            "     v=0\n"
                            "    -o=alice 7 1 IN IP4 192.0.2.1\n"
                            "    +o=alice 7 1 IN IP4 192.0.2.2\n"
                            "     s=-\n"
                            "    -c=IN IP4 192.0.2.1\n"
                            "    +c=IN IP4 192.0.2.2\n"
                            "     t=0 0\n"))
      << outcome.out;
}

TEST(CallLadder, OfACallThatThereIsNotIsAMistakeOfTheInput) {
  const Outcome outcome = runSdpneg({"calls", "--call", "2"}, {.input = plainCall()});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "sdpneg: there is no call 2\n");
  EXPECT_EQ(outcome.status, 2);
}

TEST(CallCheck, NamesWhatIsWrongAndEndsWithOne) {
  const Outcome outcome = runSdpneg({"calls", "--check"}, {.input = oneWayCall()});
  EXPECT_TRUE(outcome.out.starts_with("call 1, message 3, line 15, section 1: one-way: ")) << outcome.out;
  EXPECT_EQ(outcome.status, 1);
}

TEST(CallCheck, IsQuietWhereNothingIsWrong) {
  const Outcome outcome = runSdpneg({"calls", "--check"}, {.input = plainCall()});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST(CallCheck, WithJsonLeavesGoodCallsOut) {
  const Json good = Json::parse(runSdpneg({"calls", "--check", "--json"}, {.input = plainCall()}).out);
  EXPECT_TRUE(good["calls"].empty());
  EXPECT_EQ(good["messages"], 6);
  const Outcome outcome = runSdpneg({"calls", "--check", "--json"}, {.input = oneWayCall()});
  const Json bad = Json::parse(outcome.out);
  ASSERT_EQ(bad["calls"].size(), 1U);
  EXPECT_EQ(bad["calls"][0]["problems"][0]["rule"], "one-way");
  EXPECT_EQ(bad["calls"][0]["problems"][0]["message"], 3);
  EXPECT_EQ(outcome.status, 1);
}

TEST(CallJson, TellsTheCall) {
  const Json document = Json::parse(runSdpneg({"calls", "--json"}, {.input = plainCall()}).out);
  EXPECT_EQ(document["format"], 1);
  ASSERT_EQ(document["calls"].size(), 1U);
  const Json& call = document["calls"][0];
  EXPECT_EQ(call["callIds"], Json({"one@example.org"}));
  EXPECT_EQ(call["participants"], Json({"192.0.2.1", "192.0.2.3"}));
  EXPECT_EQ(call["state"], "ended");
  EXPECT_EQ(call["result"], 200);
  EXPECT_EQ(call["messages"][2]["first"], "200");
  EXPECT_EQ(call["messages"][2]["body"], "answer");
  EXPECT_TRUE(call["messages"][2]["text"].is_null());
  const Json texts = Json::parse(runSdpneg({"calls", "--json", "--bodies"}, {.input = plainCall()}).out);
  EXPECT_TRUE(texts["calls"][0]["messages"][2]["text"].is_string());
}

/// A call with keys, of which no output may have any.
std::string callWithKeys() {
  const std::string key = "inline:MDEyMzQ1Njc4OWFiY2RlZjAxMjM0NTY3ODlhYmNk";
  return Entry{"00.000", kThere,
               kInvite,  "1 INVITE",
               "",       sdp("alice", "192.0.2.1", 4000, "a=crypto:1 AES_CM_128_HMAC_SHA1_80 " + key + "\n"),
               "one",    "Authorization: Digest username=\"alice\", response=\"0123456789abcdef\"\r\n"}
      .text();
}

TEST(CallKeys, AreMaskedInAllOutputs) {
  const TemporaryFolder folder;
  const std::string page = folder.path("page.html");
  const std::vector<std::vector<std::string>> commands = {
      {"calls", "--call=1", "--bodies"}, {"calls", "--json", "--bodies"}, {"calls", "--html", page}};
  for (const auto& command : commands) {
    const Outcome outcome = runSdpneg(command, {.input = callWithKeys()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out.find("MDEyMzQ1"), std::string::npos);
    EXPECT_EQ(outcome.out.find("0123456789abcdef"), std::string::npos);
  }
  std::ifstream file(page);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  EXPECT_NE(text.find("AES_CM_128_HMAC_SHA1_80"), std::string::npos) << "the call is in the page";
  EXPECT_EQ(text.find("MDEyMzQ1"), std::string::npos);
  EXPECT_EQ(text.find("0123456789abcdef"), std::string::npos);
}

TEST(CallKeys, AreShownOnATerminalOnly) {
  const std::vector<std::string> command = {"calls", "--call=1", "--bodies", "--show-keys"};
  const Outcome terminal = runSdpneg(command, {.input = callWithKeys(), .outputToTerminal = true});
  EXPECT_NE(terminal.out.find("MDEyMzQ1"), std::string::npos);
  const Outcome pipe = runSdpneg(command, {.input = callWithKeys()});
  EXPECT_EQ(pipe.out.find("MDEyMzQ1"), std::string::npos);
  EXPECT_EQ(pipe.err, "sdpneg: keys are shown on a terminal only, and stay masked\n");
}

TEST(CallFilters, LeaveCallsOutAndNumbersAsTheyAre) {
  const std::string log = replaced(plainCall(), "one@", "zero@") +
                          replaced(replaced(plainCall(), "2026-11-22", "2026-11-23"), "alice@", "anna@");
  const auto lines = [&](const std::string& option) {
    const std::string out = runSdpneg({"calls", option}, {.input = log}).out;
    return std::count(out.begin(), out.end(), '\n');
  };
  EXPECT_EQ(lines("--call-id=*@example.org"), 4);
  const std::vector<std::string> second = {"--call-id=one*", "--from=ANNA", "--since=2026-11-23"};
  for (const std::string& option : second) {
    const std::string out = runSdpneg({"calls", option}, {.input = log}).out;
    EXPECT_NE(out.find("\n2      2026-11-23 10:00:00.000  anna@"), std::string::npos) << out;
    EXPECT_EQ(out.find("\n1 "), std::string::npos) << out;
  }
  EXPECT_EQ(lines("--until=2026-11-22 23:00"), 3);
  EXPECT_EQ(lines("--address=192.0.2.3"), 4);
  EXPECT_EQ(lines("--address=192.0.2.3:9"), 1);
  EXPECT_EQ(lines("--to=nobody"), 1);
}

TEST(CallUsage, MistakesAreSaid) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"--call=0"}, "--call wants the number of a call, not '0'"},
      {{"--call=1x"}, "--call wants the number of a call, not '1x'"},
      {{"--json", "--call=1"}, "--json and --call do not go together"},
      {{"--check", "--call=1"}, "--check and --call do not go together"},
      {{"--bodies"}, "--bodies wants --call or --json"},
      {{"--name=sbc"}, "--name wants ADDRESS=NAME, not 'sbc'"},
      {{"--address=host"}, "--address wants an IP address, or one with a port, not 'host'"},
      {{"--since=noon"}, "--since wants a time such as '2026-11-22 10:00:00', not 'noon'"},
      {{"--write=x.pcap"}, "--write wants --anonymize: only anonymised captures are written"},
      {{"--show-keys", "--html=x.html"}, "--show-keys is for a terminal, and pages show no keys"},
      {{"--follow", "a", "b"}, "--follow wants one input"},
      {{"-", "-"}, "standard input can be read only once"}};
  for (const auto& [arguments, mistake] : cases) {
    std::vector<std::string> command = {"calls"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const Outcome outcome = runSdpneg(command);
    EXPECT_EQ(outcome.err, "sdpneg: " + mistake + "\nTry 'sdpneg calls --help' for more.\n");
    EXPECT_EQ(outcome.status, 64);
  }
}

TEST(CallInputs, ThatCannotBeReadAreSaidAndTheOthersShown) {
  const TemporaryFolder folder;
  const std::string log = folder.write("log", plainCall());
  const Outcome outcome = runSdpneg({"calls", folder.path("none"), log});
  EXPECT_TRUE(outcome.err.starts_with("sdpneg: " + folder.path("none") + ": cannot be read: "))
      << outcome.err;
  EXPECT_NE(outcome.out.find("ended 200"), std::string::npos);
  EXPECT_EQ(outcome.status, 2);
}

TEST(CallInputs, OfWhichTheEndIsMissingAreToldOf) {
  const std::string log = plainCall();
  const Outcome outcome = runSdpneg({"calls"}, {.input = log.substr(0, log.find("m=audio"))});
  EXPECT_EQ(outcome.err, "sdpneg: 1 messages whose end was not captured\n");
  EXPECT_NE(outcome.out.find("\n1 message, 1 call\n"), std::string::npos);
}

TEST(CallPage, OfAnonymisedCallsDoesNotNameTheFile) {
  const TemporaryFolder folder;
  const std::string log = folder.write("alice.log", plainCall());
  const std::string page = folder.path("page.html");
  const auto write = [&](std::vector<std::string> command) {
    command.insert(command.begin(), {"calls", "--html", page, log, folder.path("alice.none")});
    runSdpneg(command);
    std::ifstream file(page);
    return std::string(std::istreambuf_iterator<char>(file), {});
  };
  EXPECT_NE(write({}).find("alice.log"), std::string::npos);
  const std::string anonymised = write({"--anonymize"});
  EXPECT_NE(anonymised.find("\"title\":\"anonymised\""), std::string::npos);
  EXPECT_EQ(anonymised.find("alice"), std::string::npos);
}

TEST(CallPage, ThatCannotBeWrittenLeavesNothing) {
  const TemporaryFolder folder;
  const Outcome outcome = runSdpneg({"calls", "--html", folder.path("no/page.html")}, {.input = plainCall()});
  EXPECT_EQ(outcome.status, 74);
  EXPECT_TRUE(outcome.err.starts_with("sdpneg: " + folder.path("no/page.html") + ": cannot be written: "));
}

/// The program beside the test, for what happens while it runs.
class Running {
 public:
  explicit Running(std::vector<std::string> arguments) {
    if (pipe(ends_) != 0) throw std::runtime_error("pipe");
    child_ = fork();
    if (child_ < 0) throw std::runtime_error("fork");
    if (child_ != 0) {
      close(ends_[1]);
      return;
    }
    dup2(ends_[1], STDOUT_FILENO);
    std::string program = SDPNEG_PROGRAM;
    std::vector<char*> argv = {program.data()};
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    execv(program.c_str(), argv.data());
    _exit(127);
  }
  ~Running() {
    close(ends_[0]);
    if (child_ > 0) kill(child_, SIGKILL);
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

  /// Reads until a piece has come, or the output ends.
  std::string readUntil(const std::string& piece) {
    char buffer[4096];
    while (text_.find(piece) == std::string::npos) {
      const ssize_t length = read(ends_[0], buffer, sizeof buffer);
      if (length <= 0) break;
      text_.append(buffer, static_cast<std::size_t>(length));
    }
    return text_;
  }
  int interrupt() {
    kill(child_, SIGINT);
    readUntil("no such piece");
    int status = 0;
    waitpid(child_, &status, 0);
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  const std::string& text() const { return text_; }

 private:
  int ends_[2] = {-1, -1};
  pid_t child_ = -1;
  std::string text_;
};

TEST(CallFollow, ShowsCallsOfAGrowingFileUntilItIsInterrupted) {
  const TemporaryFolder folder;
  const std::string log = folder.write("log", plainCall());
  Running running({"calls", "--follow", log});
  // The call is of the past, so it is over at once.
  EXPECT_NE(running.readUntil("\n1 ").find("ended 200"), std::string::npos);
  // The second one is over since the third comes long after it.
  std::ofstream(log, std::ios::app) << replaced(
                                           replaced(replaced(plainCall(), "one@", "two@"), "alice@", "anna@"),
                                           "2026-", "2998-")
                                    << replaced(replaced(plainCall(), "one@", "three@"), "2026-", "2999-");
  EXPECT_NE(running.readUntil("\n2 ").find("anna@example.org"), std::string::npos);
  EXPECT_EQ(running.interrupt(), 0);
}

TEST(CallFollow, WaitsForTheFrontOfAFile) {
  const TemporaryFolder folder;
  const std::string log = folder.write("log", plainCall().substr(0, 100));
  Running running({"calls", "--follow", log});
  std::this_thread::sleep_for(std::chrono::milliseconds(500));  // in which it looks for more
  std::ofstream(log, std::ios::app) << plainCall().substr(100);
  EXPECT_NE(running.readUntil("\n1 ").find("ended 200"), std::string::npos);
  EXPECT_EQ(running.interrupt(), 0);
}

TEST(CallFollow, TellsOpenCallsWhenItIsInterrupted) {
  const TemporaryFolder folder;
  const std::string log = folder.write("log", replaced(plainCall(), "2026-11-22", "2999-11-22"));
  Running running({"calls", "--follow", log});
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(running.interrupt(), 0);
  EXPECT_TRUE(running.text().ends_with("\n6 messages, 1 call\n")) << running.text();
}

}  // namespace
