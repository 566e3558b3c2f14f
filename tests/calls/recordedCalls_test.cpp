#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "../b2bua/calls.h"

// Calls through the example engine, recorded on loopback: what the tool makes of the recording, beside what tshark does.

namespace {

using Json = nlohmann::json;

const std::string kHost = "127.0.0.1";
const std::string kOffer =
    "v=0\no=alice 101 1 IN IP4 127.0.0.1\ns=-\nc=IN IP4 127.0.0.1\nt=0 0\nm=audio 4000 RTP/AVP 0 8\n"
    "a=rtpmap:0 PCMU/8000\na=rtpmap:8 PCMA/8000\na=sendrecv\n";
const std::string kAnswer =
    "v=0\no=bob 202 1 IN IP4 127.0.0.1\ns=-\nc=IN IP4 127.0.0.1\nt=0 0\nm=audio 5000 RTP/AVP 8\n"
    "a=rtpmap:8 PCMA/8000\na=sendrecv\n";

/// A SIP message of a recording.
struct Message {
  std::string first;  ///< method or status
  std::string callId;
  std::string body;

  bool operator==(const Message&) const = default;
};

void PrintTo(const Message& message, std::ostream* out) {
  *out << message.first << " " << message.callId << "\n" << message.body;
}

std::string bytesOfHex(const std::string& hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

class RecordedCalls : public Calls {
 protected:
  /// Calls through the engine and records its messages.
  /// @return the recording; an empty name where nothing can be recorded
  std::string record(const std::vector<std::string>& callerOptions) {
    folder_.write("offer.sdp", withCrLf(kOffer));
    folder_.write("answer.sdp", withCrLf(kAnswer));
    const std::string port = freePort();
    Engine engine(folder_, kHost, port);
    const std::string file = folder_.path("recording");
    Process recorder(DUMPCAP_PROGRAM, {"-i", "lo", "-f", "udp port " + engine.port(), "-w", file},
                     folder_.path(), "recorder");
    const auto isRecording = [&] {
      return !recorder.isRunning() || recorder.output().find("File: ") != std::string::npos;
    };
    if (!waitUntil(isRecording, kLongestStart) || !recorder.isRunning()) return {};
    Sipp target = startTarget(folder_, "call-target", kHost, port, callerOptions);
    Sipp caller = startCaller(folder_, "call-caller", kHost, engine.address(), callerOptions);
    EXPECT_TRUE(caller.finish());
    EXPECT_TRUE(target.finish());
    engine.stop();
    waitUntilRecorded(file);
    recorder.signal(SIGINT);
    EXPECT_TRUE(recorder.wait(kLongestStart).has_value());
    return file;
  }

  /// What is recorded arrives a little later, so it is waited until nothing has for a while.
  static void waitUntilRecorded(const std::string& file) {
    std::uintmax_t size = 0;
    auto since = std::chrono::steady_clock::now();
    const bool isQuiet = waitUntil(
        [&] {
          const std::uintmax_t now = std::filesystem::file_size(file);
          if (std::exchange(size, now) != now) since = std::chrono::steady_clock::now();
          return std::chrono::steady_clock::now() - since > milliseconds{600};
        },
        kLongestStart);
    EXPECT_TRUE(isQuiet);
  }

  static Json calls(const std::string& file, std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"calls", "--json", "--bodies", file});
    const ::Outcome outcome = runSdpneg(options);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return Json::parse(outcome.out);
  }

  /// All messages, in the order of the recording.
  static std::vector<Message> messagesOf(const Json& report) {
    std::map<std::size_t, Message> messages;
    for (const Json& call : report.at("calls")) {
      for (const Json& one : call.at("messages")) {
        const std::string text = one.at("text");
        messages[one.at("number")] = {one.at("first"), one.at("callId"),
                                      text.substr(text.find("\r\n\r\n") + 4)};
      }
    }
    std::vector<Message> inOrder;
    for (const auto& [number, message] : messages) inOrder.push_back(message);
    return inOrder;
  }

  /// The same as tshark decodes it.
  std::vector<Message> messagesOfTshark(const std::string& file) const {
    Process tshark("/bin/sh",
                   {"-c", std::string(TSHARK_PROGRAM) + " -r \"$0\" -Y sip -T json -x 2>tshark.errors", file},
                   folder_.path(), "tshark");
    EXPECT_EQ(tshark.wait(milliseconds{60'000}), 0);
    std::vector<Message> messages;
    for (const Json& packet : Json::parse(tshark.output())) {
      const Json& sip = packet.at("_source").at("layers").at("sip");
      Message message;
      const bool isRequest = sip.contains("sip.Request-Line");
      const Json& line = sip.at(isRequest ? "sip.Request-Line_tree" : "sip.Status-Line_tree");
      message.first = line.at(isRequest ? "sip.Method" : "sip.Status-Code");
      message.callId = sip.at("sip.msg_hdr_tree").at("sip.Call-ID");
      if (sip.contains("sip.msg_body_raw")) message.body = bytesOfHex(sip.at("sip.msg_body_raw").at(0));
      messages.push_back(message);
    }
    return messages;
  }
};

#define RECORD_OR_SKIP(file, ...)               \
  const std::string file = record(__VA_ARGS__); \
  if (file.empty()) GTEST_SKIP() << "recording loopback is not permitted here"

TEST_F(RecordedCalls, AreReadAsAnotherProgramReadsThem) {
  RECORD_OR_SKIP(file, {"-m", "3"});
  const Json report = calls(file);
  const std::vector<Message> messages = messagesOf(report);
  EXPECT_EQ(messages, messagesOfTshark(file));
  EXPECT_EQ(report.at("messages"), messages.size());
  EXPECT_GE(std::ranges::count(messages, withCrLf(kOffer), &Message::body), 3);
}

TEST_F(RecordedCalls, AreOneCallForBothLegsOfTheEngine) {
  RECORD_OR_SKIP(file, {"-m", "1"});
  const Json report = calls(file);
  ASSERT_EQ(report.at("calls").size(), 1U);
  const Json& call = report.at("calls")[0];
  EXPECT_EQ(call.at("callIds").size(), 2U);
  EXPECT_TRUE(call.at("joinedBy").is_string()) << call.at("joinedBy");
  EXPECT_EQ(call.at("participants").size(), 3U);
  EXPECT_EQ(call.at("state"), "ended");
  EXPECT_EQ(call.at("result"), 200);
  EXPECT_EQ(call.at("codecs"), Json::array({"PCMA"}));
}

TEST_F(RecordedCalls, AreTheSameCallsWhenTheyAreAnonymous) {
  RECORD_OR_SKIP(file, {"-m", "2"});
  const Json before = calls(file);
  const std::string written = folder_.path("anonymous.pcap");
  calls(file, {"--anonymize", "--write", written});
  const Json after = calls(written);
  EXPECT_EQ(messagesOf(after), messagesOfTshark(written));
  ASSERT_EQ(after.at("calls").size(), before.at("calls").size());
  for (std::size_t i = 0; i < before.at("calls").size(); ++i) {
    const Json& one = before.at("calls")[i];
    const Json& other = after.at("calls")[i];
    for (const char* key : {"joinedBy", "state", "result", "codecs", "start", "end"}) {
      EXPECT_EQ(one.at(key), other.at(key)) << key;
    }
    EXPECT_EQ(one.at("callIds").size(), other.at("callIds").size());
    EXPECT_EQ(one.at("messages").size(), other.at("messages").size());
    EXPECT_EQ(one.at("problems").size(), other.at("problems").size());
  }
  const std::string text = after.dump();
  for (const std::string name : {"alice", "Alice", "\"bob", "o=bob", ":bob@"}) {
    EXPECT_EQ(text.find(name), std::string::npos) << name;
  }
}

}  // namespace
