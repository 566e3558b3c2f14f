#include <connections.h>
#include <httplib.h>
#include <monitor.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <csignal>
#include <set>
#include <sstream>
#include <thread>

#include "calls.h"
#include "rawParty.h"

// What the engine tells over HTTP.

namespace {

constexpr milliseconds kLongestWait{5'000};

const std::string kBody =
    "v=0\r\no=SECRETname 21 4 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n"
    "m=audio 49170 RTP/AVP 8\r\n";

/// The samples of a text in Prometheus' format, each with its labels as they stand there.
using Samples = std::map<std::string, double>;

bool isName(const std::string& text) {
  return !text.empty() && text.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_:") == text.npos &&
         (text[0] < '0' || text[0] > '9');
}

/// Takes nothing but what is in the format for sure: HELP, TYPE, then the samples of that name.
Samples samplesOf(const std::string& text) {
  Samples samples;
  std::set<std::string> names;
  std::istringstream lines(text);
  std::string name;
  std::string type;
  EXPECT_TRUE(text.ends_with("\n"));
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string first;
    words >> first;
    if (first == "#") {
      std::string kind;
      std::string named;
      words >> kind >> named;
      EXPECT_EQ(kind, type.empty() && name == named ? "TYPE" : "HELP") << line;
      if (kind == "HELP") {
        EXPECT_TRUE(isName(named) && names.insert(named).second) << line;
        EXPECT_GT(line.size(), ("# HELP " + named + " ").size()) << line;
        name = named;
        type.clear();
      } else {
        words >> type;
        EXPECT_TRUE(type == "gauge" || type == "histogram" || (type == "counter" && name.ends_with("_total")))
            << line;
      }
      continue;
    }
    const std::string base = first.substr(0, first.find('{'));
    const std::string part = base.starts_with(name) ? base.substr(name.size()) : "?";
    EXPECT_TRUE(part.empty()
                    ? type != "histogram"
                    : type == "histogram" && (part == "_bucket" || part == "_sum" || part == "_count"))
        << line;
    if (const std::size_t label = first.find('{'); label != first.npos) {
      const std::size_t equals = first.find("=\"", label);
      EXPECT_TRUE(equals != first.npos && first.ends_with("\"}")) << line;
      EXPECT_TRUE(isName(first.substr(label + 1, equals - label - 1))) << line;
      EXPECT_EQ(first.find_first_of("\\\"", equals + 2), first.size() - 2) << line;
    }
    const std::string number = line.substr(std::min(line.size(), first.size() + 1));
    double value = -1;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    EXPECT_TRUE(error == std::errc() && end == number.data() + number.size()) << line;
    EXPECT_TRUE(samples.emplace(first, value).second) << line;
  }
  return samples;
}

b2bua::Snapshot snapshotNow() {
  b2bua::Snapshot snapshot{};
  snapshot.time = std::chrono::steady_clock::now();
  return snapshot;
}

std::pair<int, std::string> get(int port, const std::string& path) {
  httplib::Client client("127.0.0.1", port);
  const auto response = client.Get(path);
  return response ? std::pair(response->status, response->body) : std::pair(0, std::string());
}

using Answer = std::pair<int, std::string>;

/// A client that is not done with its request.
class SlowClient {
 public:
  explicit SlowClient(int port) : descriptor_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  }
  ~SlowClient() { close(descriptor_); }
  SlowClient(const SlowClient&) = delete;
  SlowClient& operator=(const SlowClient&) = delete;

  void say(const std::string& text) const { ::send(descriptor_, text.data(), text.size(), MSG_NOSIGNAL); }
  bool isClosed(milliseconds longest) const {
    pollfd wait{descriptor_, POLLIN, 0};
    return poll(&wait, 1, static_cast<int>(longest.count())) == 1;
  }

 private:
  int descriptor_;
};

class MonitoredEngine : public Calls {
 protected:
  // The client writes to whoever closes the connection.
  MonitoredEngine() { std::signal(SIGPIPE, SIG_IGN); }

  static int portOf(Engine& engine) {
    const std::string output = engine.process().output();
    const std::size_t line = output.find("\nhttp ");
    return line == output.npos ? 0 : std::stoi(output.substr(line + 6));
  }
  int port() { return portOf(engine_); }

  const RawParty caller_;
  const RawParty target_;
  Engine engine_{folder_, "127.0.0.1", target_.port(), {"--http", "127.0.0.1:0", "--drain-seconds", "20"}};
};

}  // namespace

TEST(Metrics, AreInPrometheusFormat) {
  b2bua::Snapshot snapshot = snapshotNow();
  snapshot.counters.calls = 7;
  snapshot.counters.of(b2bua::Limit::invites) = 3;
  snapshot.messages = 40;
  snapshot.calls = 2;
  snapshot.transactions = 9;
  snapshot.memory = 4'096;
  for (const double seconds : {0.01, 0.1, 0.2, 100.0})
    snapshot.setupTimes.add(std::chrono::duration<double>(seconds));
  const std::string text = b2bua::metricsOf(snapshot);
  const Samples samples = samplesOf(text);
  EXPECT_EQ(samples.at("b2bua_calls_total"), 7);
  EXPECT_EQ(samples.at("b2bua_established_total"), 0);
  EXPECT_EQ(samples.at("b2bua_not_taken_total{limit=\"invites\"}"), 3);
  EXPECT_EQ(samples.at("b2bua_not_taken_total{limit=\"calls\"}"), 0);
  EXPECT_EQ(samples.at("b2bua_messages_total"), 40);
  EXPECT_EQ(samples.at("b2bua_active_calls"), 2);
  EXPECT_EQ(samples.at("b2bua_transactions"), 9);
  EXPECT_EQ(samples.at("b2bua_ready"), 1);
  EXPECT_EQ(samples.at("process_resident_memory_bytes"), 4'096);
  // A bound belongs to its bucket, and each bucket has those below it.
  EXPECT_EQ(samples.at("b2bua_setup_seconds_bucket{le=\"0.05\"}"), 1);
  EXPECT_EQ(samples.at("b2bua_setup_seconds_bucket{le=\"0.1\"}"), 2);
  EXPECT_EQ(samples.at("b2bua_setup_seconds_bucket{le=\"0.25\"}"), 3);
  EXPECT_EQ(samples.at("b2bua_setup_seconds_bucket{le=\"60\"}"), 3);
  EXPECT_EQ(samples.at("b2bua_setup_seconds_bucket{le=\"+Inf\"}"), 4);
  EXPECT_EQ(samples.at("b2bua_setup_seconds_count"), 4);
  EXPECT_NEAR(samples.at("b2bua_setup_seconds_sum"), 100.31, 1e-9);
  EXPECT_NE(
      text.find("# HELP b2bua_calls_total Calls that a caller began.\n# TYPE b2bua_calls_total counter\n"),
      text.npos);
}

TEST(Metrics, StandUpToPrometheusOwnCheck) {
  if (std::string(PROMTOOL_PROGRAM).empty()) GTEST_SKIP() << "promtool is not installed";
  const TemporaryFolder folder;
  const std::string command = std::string(PROMTOOL_PROGRAM) + " check metrics < " +
                              folder.write("metrics", b2bua::metricsOf(snapshotNow()));
  Process promtool("/bin/sh", {"-c", command}, folder.path(), "promtool");
  EXPECT_EQ(promtool.wait(kLongestWait), 0) << promtool.output();
  EXPECT_EQ(promtool.output(), "");
}

TEST(Monitor, TellsThatTheLoopStandsStill) {
  b2bua::Monitor monitor("127.0.0.1:0");
  b2bua::Snapshot snapshot = snapshotNow();
  snapshot.notReady = "draining";
  monitor.show(snapshot);
  EXPECT_EQ(get(monitor.port(), "/healthz"), Answer(200, "ok\n"));
  EXPECT_EQ(get(monitor.port(), "/readyz"), Answer(503, "draining\n"));
  snapshot.notReady.clear();
  monitor.show(snapshot);
  EXPECT_EQ(get(monitor.port(), "/readyz"), Answer(200, "ok\n"));
  snapshot.time -= std::chrono::seconds(4);
  monitor.show(snapshot);
  EXPECT_EQ(get(monitor.port(), "/healthz"), Answer(503, "the engine does not work\n"));
  EXPECT_EQ(get(monitor.port(), "/readyz"), Answer(503, "the engine does not work\n"));
}

// The library itself gives up two seconds after the last byte only.
TEST(Monitor, WaitsForNobodyLongerThanThreeSnapshots) {
  b2bua::Monitor monitor("127.0.0.1:0");
  const SlowClient client(monitor.port());
  client.say("GET /metrics HTTP/1.1\r\n");
  for (int i = 0; i < 3; ++i) {
    std::this_thread::sleep_for(milliseconds(100));
    monitor.show(snapshotNow());
    client.say("a: b\r\n");
    EXPECT_FALSE(client.isClosed(milliseconds(100)));
  }
  monitor.show(snapshotNow());
  EXPECT_TRUE(client.isClosed(milliseconds(1'000)));
}

TEST(Monitor, HasSixtyFourConnections) {
  b2bua::Monitor monitor("127.0.0.1:0");
  const std::vector<std::string> port = {std::to_string(monitor.port())};
  std::vector<std::unique_ptr<SlowClient>> clients;
  for (int i = 0; i < 70; ++i) {
    clients.push_back(std::make_unique<SlowClient>(monitor.port()));
    clients.back()->say("GET");  // The library itself closes silent ones after a second.
    // With several that are not accepted yet, the system lets further ones wait for seconds.
    ASSERT_TRUE(waitUntil([&] { return b2bua::connectionsTo(port).size() == clients.size(); }, kLongestWait));
  }
  monitor.show(snapshotNow());
  const auto isClosed = [](const auto& client) { return client->isClosed(milliseconds(10)); };
  EXPECT_EQ(std::ranges::count_if(clients, isClosed), 6);
  for (int i = 0; i < 3; ++i) monitor.show(snapshotNow());
  EXPECT_TRUE(waitUntil([&] { return std::ranges::all_of(clients, isClosed); }, kLongestWait));
  monitor.show(snapshotNow());
  EXPECT_EQ(get(monitor.port(), "/healthz").first, 200);
}

TEST(Monitor, KnowsNothingElse) {
  b2bua::Monitor monitor("127.0.0.1:0");
  EXPECT_EQ(get(monitor.port(), "/").first, 404);
  EXPECT_EQ(get(monitor.port(), "/metrics/more").first, 404);
  httplib::Client client("127.0.0.1", monitor.port());
  EXPECT_EQ(client.Delete("/metrics")->status, 405);
  EXPECT_THROW(b2bua::Monitor("127.0.0.1:" + std::to_string(monitor.port())), std::runtime_error);
  EXPECT_EQ(b2bua::Monitor("").port(), 0);
}

TEST_F(MonitoredEngine, TellsWhatCallsDid) {
  const std::string address = engine_.address();
  caller_.request(address, {.body = kBody});
  target_.respond(address, target_.receive("INVITE ", "", kLongestWait), "200 OK", kBody);
  const std::string tag = toTagOf(caller_.receive("SIP/2.0 200 ", "", kLongestWait));
  caller_.request(address, {.method = "ACK", .toTag = tag});
  ASSERT_NE(target_.receive("ACK ", "", kLongestWait), "");
  EXPECT_EQ(statusOf(caller_.ask(address, {.call = 2, .body = "SECRETbody"}, kLongestWait)), 488);
  caller_.send(address, "garbage\r\n\r\n");
  Samples samples;
  std::string text;
  EXPECT_TRUE(waitUntil(
      [&] {
        text = get(port(), "/metrics").second;
        samples = samplesOf(text);
        return samples["b2bua_refused_bodies_total"] == 1 && samples["b2bua_malformed_total"] == 1;
      },
      kLongestWait))
      << text;
  EXPECT_EQ(samples["b2bua_calls_total"], 2);
  EXPECT_EQ(samples["b2bua_established_total"], 1);
  EXPECT_EQ(samples["b2bua_failed_total"], 1);
  EXPECT_EQ(samples["b2bua_active_calls"], 1);
  EXPECT_EQ(samples["b2bua_setup_seconds_count"], 1);
  EXPECT_GT(samples["b2bua_messages_total"], 4);
  EXPECT_GT(samples["b2bua_transactions"], 1);
  EXPECT_NEAR(samples["process_resident_memory_bytes"],
              1024.0 * static_cast<double>(engine_.process().residentMemory()), 4e6);
  for (const char* name : {"SECRET", "alice", "192.0.2", "127.0.0.1", caller_.port().c_str()})
    EXPECT_EQ(text.find(name), text.npos) << name;
}

TEST_F(MonitoredEngine, IsNotReadyWhileItDrains) {
  EXPECT_EQ(get(port(), "/readyz"), Answer(200, "ok\n"));
  caller_.request(engine_.address(), {.body = kBody});
  ASSERT_NE(target_.receive("INVITE ", "", kLongestWait), "");
  engine_.process().signal(SIGTERM);
  EXPECT_TRUE(waitUntil([&] { return get(port(), "/readyz") == Answer(503, "draining\n"); }, kLongestWait));
  EXPECT_EQ(get(port(), "/healthz"), Answer(200, "ok\n"));
}

TEST_F(MonitoredEngine, IsNotReadyWithoutItsMediaRelay) {
  const std::string nobody = "127.0.0.1:" + RawParty().port();
  Engine engine(folder_, "127.0.0.1", target_.port(),
                {"--http", "127.0.0.1:0", "--media", "rtpengine", "udp:" + nobody}, "0", "media");
  const Answer gone(503, "the media relay is gone\n");
  EXPECT_TRUE(waitUntil([&] { return get(portOf(engine), "/readyz") == gone; }, kLongestWait));
  EXPECT_EQ(get(portOf(engine), "/healthz"), Answer(200, "ok\n"));
}

TEST_F(MonitoredEngine, IsNotReadyWithAsManyCallsAsThereMayBe) {
  Engine engine(folder_, "127.0.0.1", target_.port(), {"--http", "127.0.0.1:0", "--max-calls", "1"}, "0",
                "full");
  EXPECT_EQ(get(portOf(engine), "/readyz"), Answer(200, "ok\n"));
  caller_.request(engine.address(), {.body = kBody});
  EXPECT_NE(target_.receive("INVITE ", "", kLongestWait), "");
  const Answer full(503, "as many calls as there may be\n");
  EXPECT_TRUE(waitUntil([&] { return get(portOf(engine), "/readyz") == full; }, kLongestWait));
}

TEST_F(MonitoredEngine, OutlastsWhoeverIsRudeToIt) {
  httplib::Headers headers = {{"Range", "bytes=0-1"}};
  for (int i = 0; i < 1'500; ++i) headers.begin()->second += ",0-1";
  httplib::Client client("127.0.0.1", port());
  client.set_read_timeout(1);
  client.Get("/metrics", headers);
  client.Get("/" + std::string(100'000, 'x'));
  client.Post("/metrics", std::string(1'000'000, 'x'), "text/plain");
  // As many as it has threads say nothing.
  std::vector<int> silentOnes;
  for (int i = 0; i < 8; ++i) {
    silentOnes.push_back(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(static_cast<in_port_t>(port()));
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(silentOnes.back(), reinterpret_cast<const sockaddr*>(&to), sizeof to), 0);
  }
  EXPECT_EQ(statusOf(caller_.ask(engine_.address(), {.method = "OPTIONS"}, kLongestWait)), 200);
  EXPECT_TRUE(waitUntil([&] { return get(port(), "/healthz").first == 200; }, kLongestWait));
  for (const int descriptor : silentOnes) close(descriptor);
  EXPECT_EQ(engine_.stop().at("active"), 0);
}
