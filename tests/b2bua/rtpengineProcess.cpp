#include "rtpengineProcess.h"

#include <thread>

namespace {

constexpr milliseconds kLongestReply{1'000};
constexpr milliseconds kSilence{400};

}  // namespace

RtpengineProcess::RtpengineProcess(const TemporaryFolder& folder, const std::string& port)
    : port_(port.empty() ? freePort() : port),
      process_(RTPENGINE_PROGRAM,
               {"--config-file=none", "--table=-1", "--foreground", "--log-stderr", "--log-level=5",
                "--interface=127.0.0.1", "--listen-ng=127.0.0.1:" + port_, "--port-min=20000",
                "--port-max=29999", "--num-threads=1"},
               folder.path(), "rtpengine") {
  EXPECT_TRUE(waitUntil(
      [&] {
        return ask({{"command", "ping"}}).value("result", "") == "pong";
      },
      kLongestStart));
}

/// It takes JSON as well as bencode.
nlohmann::json RtpengineProcess::ask(const nlohmann::json& members) const {
  static int number = 0;
  const std::string cookie = "test" + std::to_string(++number) + " ";
  party_.send("127.0.0.1:" + port_, cookie + members.dump());
  const std::string reply = party_.receive(cookie, "", kLongestReply);
  return reply.empty() ? nlohmann::json::object() : nlohmann::json::parse(reply.substr(cookie.size()));
}

nlohmann::json RtpengineProcess::list() const { return ask({{"command", "list"}})["calls"]; }

RelayedSide RtpengineProcess::side(const std::string& tag) const {
  const nlohmann::json calls = list();
  if (calls.empty()) return {};
  const std::string call = calls[0];
  const nlohmann::json sides = ask({{"command", "query"}, {"call-id", call}})["tags"];
  if (!sides.contains(call + tag)) return {};
  const nlohmann::json medium = sides[call + tag]["medias"][0];
  const nlohmann::json stream = medium["streams"][0];
  return {stream["stats"]["packets"], stream["stats"]["errors"], medium.value("codec", ""),
          stream.value("crypto suite", "")};
}

bool RtpengineProcess::hasFlow(long packets) const {
  const long caller = side("-c").packets + packets;
  const long target = side("-t").packets + packets;
  return waitUntil([&] { return side("-c").packets >= caller && side("-t").packets >= target; },
                   kLongestCall);
}

bool RtpengineProcess::isSilent(const std::string& tag) const {
  return waitUntil(
      [&] {
        const long before = side(tag).packets;
        std::this_thread::sleep_for(kSilence);
        return side(tag).packets == before;
      },
      kLongestCall);
}
