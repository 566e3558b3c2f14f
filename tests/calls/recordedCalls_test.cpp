#include <algorithm>
#include <string>
#include <vector>

#include "recording.h"

// Calls of sipp through the example engine, recorded on loopback: what the tool makes of the recording, beside what other
// programs do.

namespace {

using namespace recorded;

const std::string kOffer =
    "v=0\no=alice 101 1 IN IP4 127.0.0.1\ns=-\nc=IN IP4 127.0.0.1\nt=0 0\nm=audio 4000 RTP/AVP 0 8\n"
    "a=rtpmap:0 PCMU/8000\na=rtpmap:8 PCMA/8000\na=sendrecv\n";
const std::string kAnswer =
    "v=0\no=bob 202 1 IN IP4 127.0.0.1\ns=-\nc=IN IP4 127.0.0.1\nt=0 0\nm=audio 5000 RTP/AVP 8\n"
    "a=rtpmap:8 PCMA/8000\na=sendrecv\n";

class RecordedCalls : public Calls {
 protected:
  /// Calls through the engine and records its messages.
  /// @return the recording; an empty name where nothing can be recorded
  std::string record(const std::vector<std::string>& callerOptions) {
    folder_.write("offer.sdp", withCrLf(kOffer));
    folder_.write("answer.sdp", withCrLf(kAnswer));
    target_ = freePort();
    Engine engine(folder_, kHost, target_);
    Recorder recorder(folder_, "udp port " + engine.port());
    if (!recorder.isRecording()) return {};
    Sipp target = startTarget(folder_, "call-target", kHost, target_, callerOptions);
    Sipp caller = startCaller(folder_, "call-caller", kHost, engine.address(), callerOptions);
    EXPECT_TRUE(caller.finish());
    EXPECT_TRUE(target.finish());
    engine.stop();
    recorder.stop();
    return recorder.file();
  }

  std::string target_;  ///< its port
};

class SngrepReadsCalls : public RecordedCalls {};

#define RECORD_OR_SKIP(file, ...)               \
  const std::string file = record(__VA_ARGS__); \
  if (file.empty()) GTEST_SKIP() << "recording loopback is not permitted here"

TEST_F(RecordedCalls, AreReadAsAnotherProgramReadsThem) {
  RECORD_OR_SKIP(file, {"-m", "3"});
  const Json report = callsOf(file);
  const std::vector<Message> messages = messagesOf(report);
  EXPECT_EQ(messages, messagesOfTshark(folder_, file));
  EXPECT_EQ(report.at("messages"), messages.size());
  EXPECT_GE(std::ranges::count(messages, withCrLf(kOffer), &Message::body), 3);
}

TEST_F(RecordedCalls, AreOneCallForBothLegsOfTheEngine) {
  RECORD_OR_SKIP(file, {"-m", "1"});
  const Json report = callsOf(file);
  ASSERT_EQ(report.at("calls").size(), 1U);
  const Json& call = report.at("calls").at(0);
  EXPECT_EQ(call.at("callIds").size(), 2U);
  EXPECT_TRUE(call.at("joinedBy").is_string()) << call.at("joinedBy");
  EXPECT_EQ(call.at("participants").size(), 3U);
  EXPECT_EQ(call.at("state"), "ended");
  EXPECT_EQ(call.at("result"), 200);
  EXPECT_EQ(call.at("codecs"), Json::array({"PCMA"}));
}

TEST_F(RecordedCalls, AreTheSameCallsWhenTheyAreAnonymous) {
  RECORD_OR_SKIP(file, {"-m", "2"});
  const Json before = callsOf(file);
  const std::string written = folder_.path("anonymous.pcap");
  callsOf(file, {"--anonymize", "--write", written});
  const Json after = callsOf(written);
  EXPECT_EQ(messagesOf(after), messagesOfTshark(folder_, written));
  ASSERT_EQ(after.at("calls").size(), before.at("calls").size());
  for (std::size_t i = 0; i < before.at("calls").size(); ++i) {
    const Json& one = before.at("calls").at(i);
    const Json& other = after.at("calls").at(i);
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

// Each call has two Call-IDs, one for each leg.
TEST_F(SngrepReadsCalls, AsTheToolDoes) {
  RECORD_OR_SKIP(file, {"-m", "3"});
  const Json report = callsOf(file);
  const SngrepReading reading = readingOfSngrep(folder_, file);
  EXPECT_EQ(reading.dialogs, 6U);
  EXPECT_EQ(reading.dialogs, dialogsOf(report));
  EXPECT_EQ(reading.messages, messagesOf(report));
}

TEST_F(SngrepReadsCalls, OfAFilterAsTheToolDoes) {
  RECORD_OR_SKIP(file, {"-m", "3"});
  const std::string filter = "udp port " + target_;
  const Json report = callsOf(file, {"--filter", filter});
  const SngrepReading reading = readingOfSngrep(folder_, file, filter);
  EXPECT_EQ(reading.dialogs, 3U);
  EXPECT_EQ(reading.dialogs, dialogsOf(report));
  EXPECT_EQ(reading.messages, messagesOf(report));
  EXPECT_LT(reading.messages.size(), messagesOf(callsOf(file)).size());
}

TEST_F(SngrepReadsCalls, AsTheToolDoesWhenTheyAreAnonymous) {
  RECORD_OR_SKIP(file, {"-m", "2"});
  const std::string written = folder_.path("anonymous.pcap");
  callsOf(file, {"--anonymize", "--write", written});
  const SngrepReading reading = readingOfSngrep(folder_, written);
  EXPECT_EQ(reading.dialogs, 4U);
  EXPECT_EQ(reading.messages, messagesOf(callsOf(written)));
}

}  // namespace
