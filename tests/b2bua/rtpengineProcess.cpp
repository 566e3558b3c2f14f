#include "rtpengineProcess.h"

#include <bencode.h>

#include <thread>

namespace {

constexpr milliseconds kLongestReply{1'000};
constexpr milliseconds kSilence{400};

/// The text behind a key and its own length, within a part of a bencoded text; empty without it.
std::string textBehind(const std::string& part, const std::string& key) {
  const std::size_t at = part.find(std::to_string(key.size()) + ":" + key);
  if (at == std::string::npos) return "";
  const std::string rest = part.substr(part.find(key, at) + key.size());
  return rest.substr(rest.find(':') + 1, std::stoul(rest));
}

/// The number behind a key, which must be there.
long numberBehind(const std::string& part, const std::string& key) {
  const std::string start = std::to_string(key.size()) + ":" + key + "i";
  return std::stol(part.substr(part.find(start) + start.size()));
}

}  // namespace

RtpengineProcess::RtpengineProcess(const TemporaryFolder& folder, const std::string& port)
    : port_(port.empty() ? freePort() : port),
      process_(RTPENGINE_PROGRAM,
               {"--config-file=none", "--table=-1", "--foreground", "--log-stderr", "--log-level=5",
                "--interface=127.0.0.1", "--listen-ng=127.0.0.1:" + port_, "--port-min=20000",
                "--port-max=29999", "--num-threads=1"},
               folder.path(), "rtpengine") {
  EXPECT_TRUE(waitUntil([&] { return ask("ping").find("pong") != std::string::npos; }, kLongestStart));
}

std::string RtpengineProcess::ask(const std::string& command, const std::string& further) const {
  static int number = 0;
  const std::string cookie = "test" + std::to_string(++number) + " ";
  party_.send("127.0.0.1:" + port_, cookie + "d7:command" + b2bua::bencodeText(command) + further + "e");
  return party_.receive(cookie, "", kLongestReply);
}

std::size_t RtpengineProcess::calls() const {
  const std::string reply = ask("list", "5:limiti100e");
  std::size_t count = 0;
  for (std::size_t at = 0; (at = reply.find("16:", at)) != std::string::npos; at += 16) ++count;
  return count;
}

RelayedSide RtpengineProcess::side(const std::string& tag) const {
  const std::string list = ask("list", "5:limiti100e");
  const std::size_t calls = list.find("5:callsl16:");
  if (calls == std::string::npos) return {};
  const std::string call = list.substr(calls + 11, 16);
  const std::string reply = ask("query", "7:call-id16:" + call);
  const std::string start = "d3:tag18:" + call + tag + "7:created";
  const std::size_t begin = reply.find(start);
  if (begin == std::string::npos) return {};
  const std::string part = reply.substr(begin, reply.find("7:created", begin + start.size()) - begin);
  const std::size_t rtp = part.find("5:statsd", part.find("5:flagsl3:RTP"));
  if (rtp == std::string::npos) return {};
  const std::string statistics = part.substr(rtp);
  return {numberBehind(statistics, "packets"), numberBehind(statistics, "errors"), textBehind(part, "codec"),
          textBehind(part, "crypto suite")};
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
