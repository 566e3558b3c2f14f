#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "../b2bua/baresip.h"
#include "recording.h"

// Calls between clients that people use, by way of the example engine, recorded on loopback.

namespace {

using namespace recorded;
using Strings = std::vector<std::string>;

constexpr int kPortsOfMedia = 40;
/// Of a recording in which media go both ways.
constexpr std::size_t kSomeMedia = 40'000;

const std::string kCodecs = "audio_codecs=opus/48000/2,PCMA/8000/1";

/// A call and what alice does in it before she hangs up.
struct Course {
  std::string alice = kCodecs;  ///< parameters of her account
  std::string bob = kCodecs;
  Strings commands = {};
  std::string policy = "";  ///< of the engine
  With with = With::dumpcap;
};

class RecordedBaresip : public Calls {
 protected:
  /// Records a call with a tone from both sides.
  /// @return the recording; an empty name where nothing can be recorded
  std::string record(const Course& course) {
    const int media = std::stoi(freePort()) / 2 * 2 - kPortsOfMedia;
    const std::string last = std::to_string(media + kPortsOfMedia);
    const Strings modules = {"opus", "ausine", "srtp"};
    const std::string config =
        "audio_source ausine,440\nrtp_ports " + std::to_string(media) + "-" + last + "\n";
    Baresip bob(folder_, "bob", {}, {course.bob, modules, config});
    Engine engine(folder_, kHost, bob.port(), {"--policy", folder_.write("policy", course.policy)});
    Recorder recorder(folder_,
                      "udp port " + engine.port() + " or udp portrange " + std::to_string(media) + "-" + last,
                      course.with);
    if (!recorder.isRecording()) return {};
    Baresip alice(folder_, "alice", {"-e", "/dial sip:bob@" + engine.address()},
                  {course.alice, modules, config});
    play(course, alice, recorder);
    EXPECT_TRUE(waitUntil([&] { return bob.says("session closed"); }, kLongestCall));
    recorder.stop();
    alice.stop();
    bob.stop();
    const Counters counters = engine.stop();
    EXPECT_EQ(counters.at("ended"), 1);
    EXPECT_EQ(counters.at("reoffers"), static_cast<long>(course.commands.size()));
    participants_ = {kHost + ":" + alice.port(), engine.address(), kHost + ":" + bob.port()};
    if (HasFailure()) std::cout << alice.process().output() << bob.process().output();
    return recorder.file();
  }

  /// The responses and bodies of the leg between alice and the engine, or of the other one, as they should be.
  static Strings course(std::size_t exchanges) {
    Strings lines;
    for (std::size_t i = 0; i < exchanges; ++i) {
      lines.insert(lines.end(), {"INVITE offer", "200 answer", "ACK"});
    }
    lines.insert(lines.end(), {"BYE", "200"});
    return lines;
  }

  /// What a leg has, without provisional responses and repetitions.
  static Strings messagesOfLeg(const Json& call, std::size_t leg) {
    Strings lines;
    for (const Json& message : call.at("messages")) {
      const std::string first = message.at("first");
      if (message.at("callId") != call.at("callIds").at(leg) || message.at("retransmission") ||
          first.starts_with('1')) {
        continue;
      }
      lines.push_back(message.at("body").is_null() ? first : first + " " + std::string(message.at("body")));
    }
    return lines;
  }

  /// "rule number" of each problem.
  static Strings problemsOf(const Json& call) {
    Strings problems;
    for (const Json& problem : call.at("problems")) {
      problems.push_back(std::string(problem.at("rule")) + " " + problem.at("message").dump());
    }
    return problems;
  }

  /// The number of the last INVITE of a leg, or of the first one.
  static std::string inviteOf(const Json& call, std::size_t leg, bool isLast) {
    std::string number;
    for (const Json& message : call.at("messages")) {
      if (message.at("first") != "INVITE" || message.at("callId") != call.at("callIds").at(leg)) continue;
      if (number.empty() || isLast) number = message.at("number").dump();
    }
    return number;
  }

  /// How many messages have a line, by leg.
  static std::vector<std::size_t> legsWith(const Json& call, const std::string& line) {
    std::vector<std::size_t> legs(2);
    for (const Json& message : call.at("messages")) {
      const std::string text = message.at("text");
      if (message.at("retransmission") || text.find("\r\n" + line + "\r\n") == std::string::npos) continue;
      ++legs[message.at("callId") == call.at("callIds").at(0) ? 0 : 1];
    }
    return legs;
  }

  /// What is the same of all these calls.
  void expectOneCall(const Json& report, std::size_t exchanges) const {
    ASSERT_EQ(report.at("calls").size(), 1U);
    const Json& call = report.at("calls").at(0);
    ASSERT_EQ(call.at("callIds").size(), 2U);
    EXPECT_EQ(call.at("joinedBy"), "origin");
    EXPECT_EQ(call.at("legs").at(1).at("joinedTo"), call.at("callIds").at(0));
    EXPECT_EQ(call.at("participants"), Json(participants_));
    EXPECT_EQ(call.at("state"), "ended");
    EXPECT_EQ(call.at("result"), 200);
    EXPECT_EQ(call.at("codecs"), (Json{"opus", "PCMA"}));
    for (const std::size_t leg : {0U, 1U}) EXPECT_EQ(messagesOfLeg(call, leg), course(exchanges));
  }

  Strings participants_;

 private:
  static void play(const Course& course, const Baresip& alice, const Recorder& recorder) {
    std::size_t answers = 1;
    const auto isAnswered = [&] { return alice.count("\nSIP/2.0 200 ") >= answers; };
    EXPECT_TRUE(waitUntil(isAnswered, kLongestCall));
    EXPECT_TRUE(waitUntil([&] { return recorder.size() > kSomeMedia; }, kLongestCall));
    for (const std::string& command : course.commands) {
      alice.command(command);
      ++answers;
      EXPECT_TRUE(waitUntil(isAnswered, kLongestCall)) << command;
    }
    alice.command("hangup");
  }
};

class RecordedByTcpdump : public RecordedBaresip {};
class SngrepReadsBaresip : public RecordedBaresip {};

#define RECORD_OR_SKIP(file, ...)               \
  const std::string file = record(__VA_ARGS__); \
  if (file.empty()) GTEST_SKIP() << "recording loopback is not permitted here"

TEST_F(RecordedBaresip, IsHeldAndGoesOnWithoutTrouble) {
  RECORD_OR_SKIP(file, {.commands = {"hold", "resume"}});
  const Json report = callsOf(file);
  expectOneCall(report, 3);
  const Json& call = report.at("calls").at(0);
  EXPECT_EQ(call.at("security"), "plain");
  EXPECT_EQ(legsWith(call, "a=sendonly"), (std::vector<std::size_t>{1, 1}));
  EXPECT_EQ(legsWith(call, "a=recvonly"), (std::vector<std::size_t>{1, 1}));
  EXPECT_EQ(legsWith(call, "a=sendrecv"), (std::vector<std::size_t>{4, 4}));
  EXPECT_EQ(problemsOf(call), Strings{});
  EXPECT_EQ(messagesOf(report), messagesOfTshark(folder_, file));
  EXPECT_GT(framesOf(folder_, file), messagesOf(report).size()) << "no media were recorded";
}

TEST_F(RecordedBaresip, ThatStaysOnHoldIsTold) {
  RECORD_OR_SKIP(file, {.commands = {"hold"}});
  const Json report = callsOf(file);
  expectOneCall(report, 2);
  const Json& call = report.at("calls").at(0);
  EXPECT_EQ(problemsOf(call), Strings{"hold-not-resumed " + inviteOf(call, 0, true)});
  EXPECT_EQ(call.at("problems").at(0).at("severity"), "warning");
}

// Keys are offered with a plain profile, and the policy takes them away: the media go on as before, in the clear.
TEST_F(RecordedBaresip, WhoseKeysAHopTookAwayIsTold) {
  RECORD_OR_SKIP(file, {.alice = kCodecs + ";mediaenc=srtp", .policy = "security = plain\n"});
  const Json report = callsOf(file);
  expectOneCall(report, 1);
  const Json& call = report.at("calls").at(0);
  EXPECT_EQ(call.at("security"), "plain");
  EXPECT_EQ(problemsOf(call), Strings{"hop-lost-keys " + inviteOf(call, 1, false)});
}

TEST_F(RecordedByTcpdump, WithKeysThatAreMasked) {
  RECORD_OR_SKIP(file, {.alice = kCodecs + ";mediaenc=srtp-mand",
                        .bob = kCodecs + ";mediaenc=srtp-mand",
                        .with = With::tcpdumpCooked});
  const Json report = callsOf(file);
  expectOneCall(report, 1);
  EXPECT_EQ(report.at("calls").at(0).at("security"), "sdes");
  EXPECT_EQ(problemsOf(report.at("calls").at(0)), Strings{});
  const std::vector<Message> messages = messagesOf(report);
  const std::vector<Message> bare = messagesOfTshark(folder_, file);
  ASSERT_EQ(messages.size(), bare.size());
  const std::string text = report.dump();
  std::size_t keys = 0;
  for (std::size_t i = 0; i < bare.size(); ++i) {
    EXPECT_EQ(messages[i].first, bare[i].first);
    EXPECT_EQ(messages[i].callId, bare[i].callId);
    const std::string mark = "inline:";
    const std::string& body = bare[i].body;
    for (std::size_t at = body.find(mark); at != std::string::npos; at = body.find(mark, at + 1)) {
      const std::size_t end = body.find_first_of(" |\r\n", at);
      const std::string key = body.substr(at + mark.size(), end - at - mark.size());
      EXPECT_GE(key.size(), 40U);
      EXPECT_EQ(text.find(key), std::string::npos) << key;
      ++keys;
    }
  }
  // An offer and an answer for each leg, with a key or more.
  EXPECT_GE(keys, 4U);
}

TEST_F(RecordedByTcpdump, FromAllInterfacesIsReadAsTsharkDoes) {
  RECORD_OR_SKIP(file, {.commands = {"hold", "resume"}, .with = With::tcpdumpCooked});
  const Json report = callsOf(file);
  expectOneCall(report, 3);
  EXPECT_EQ(problemsOf(report.at("calls").at(0)), Strings{});
  EXPECT_EQ(messagesOf(report), messagesOfTshark(folder_, file));
  EXPECT_GT(framesOf(folder_, file), messagesOf(report).size()) << "no media were recorded";
}

// Media are in the recording, which it does not save.
TEST_F(SngrepReadsBaresip, AsTheToolDoes) {
  RECORD_OR_SKIP(file, {.commands = {"hold", "resume"}});
  const Json report = callsOf(file);
  const SngrepReading reading = readingOfSngrep(folder_, file);
  EXPECT_EQ(reading.dialogs, 2U);
  EXPECT_EQ(reading.messages, messagesOf(report));
  EXPECT_GT(framesOf(folder_, file), reading.messages.size());
}

}  // namespace
