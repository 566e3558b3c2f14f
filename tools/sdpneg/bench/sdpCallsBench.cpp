// Messages a second of `sdpneg calls` and of `tshark -Y sip` on the same capture, in turn in one run.
//
//   sdpCallsBench [CALLS] [RUNS]    20,000 calls and 3 runs where nothing is said

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "captures/packets.h"

namespace {

constexpr std::size_t kMessagesOfACall = 7;

std::string body(std::size_t call, int port) {
  return "v=0\r\no=- " + std::to_string(call) +
         " 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\nm=audio " + std::to_string(port) +
         " RTP/AVP 0 8 101\r\na=rtpmap:0 PCMU/8000\r\na=rtpmap:8 PCMA/8000\r\na=rtpmap:101 telephone-event/8000\r\n"
         "a=fmtp:101 0-15\r\na=ptime:20\r\na=sendrecv\r\n";
}

std::string message(const std::string& line, std::size_t call, const std::string& cseq, bool isAnswered,
                    const std::string& sdp = {}) {
  const std::string id = std::to_string(call);
  return line + "\r\nVia: SIP/2.0/UDP 192.0.2.1:5060;branch=z9hG4bK" + id + cseq.substr(0, 1) +
         ";rport\r\nMax-Forwards: 70\r\nFrom: \"Caller\" <sip:caller@example.org>;tag=f" + id +
         "\r\nTo: <sip:callee@example.org>" + (isAnswered ? ";tag=t" + id : "") + "\r\nCall-ID: " + id +
         "@192.0.2.1\r\nCSeq: " + cseq + "\r\nContact: <sip:caller@192.0.2.1:5060>\r\nUser-Agent: bench\r\n" +
         (sdp.empty() ? "" : "Content-Type: application/sdp\r\n") +
         "Content-Length: " + std::to_string(sdp.size()) + "\r\n\r\n" + sdp;
}

/// The messages of a call, those that the caller sends at 0, 4 and 5.
std::vector<std::string> callOf(std::size_t call) {
  const std::string request = " sip:callee@example.org SIP/2.0";
  return {message("INVITE" + request, call, "1 INVITE", false, body(call, 4000)),
          message("SIP/2.0 100 Trying", call, "1 INVITE", false),
          message("SIP/2.0 180 Ringing", call, "1 INVITE", true),
          message("SIP/2.0 200 OK", call, "1 INVITE", true, body(call, 5000)),
          message("ACK" + request, call, "1 ACK", true),
          message("BYE" + request, call, "2 BYE", true),
          message("SIP/2.0 200 OK", call, "2 BYE", true)};
}

void writeCapture(const std::string& file, std::size_t calls) {
  std::ofstream out(file, std::ios::binary);
  out << packets::pcap({});
  const std::size_t header = packets::pcap({}).size();
  std::int64_t time = 1700000000000000;
  for (std::size_t call = 0; call < calls; ++call) {
    std::vector<packets::Record> records;
    for (const std::string& text : callOf(call)) {
      const std::size_t at = records.size();
      const bool isCaller = at == 0 || at == 4 || at == 5;
      const packets::Addresses addresses = isCaller ? packets::Addresses{} : packets::kBack;
      records.push_back(
          {packets::ethernet(packets::ip4(packets::udp(text, 5060, 5060), {.addresses = addresses})),
           time += 1000});
    }
    out << packets::pcap(records).substr(header);
  }
}

struct Cost {
  double wall = std::numeric_limits<double>::max();
  double user = std::numeric_limits<double>::max();
  long kilobytes = 0;
};

/// Runs a program with its output thrown away, and keeps the least.
/// @return whether it ran and said that all went well
bool run(const std::string& command, Cost& least) {
  const auto begin = std::chrono::steady_clock::now();
  const pid_t child = ::fork();
  if (child == 0) {
    ::execl("/bin/sh", "sh", "-c", ("exec " + command + " >/dev/null 2>&1").c_str(), nullptr);
    ::_exit(127);
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0) return false;
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - begin;
  least.wall = std::min(least.wall, wall.count());
  least.user = std::min(least.user, static_cast<double>(usage.ru_utime.tv_sec) +
                                        static_cast<double>(usage.ru_utime.tv_usec) / 1e6);
  least.kilobytes = std::max(least.kilobytes, usage.ru_maxrss);
  return true;
}

void print(const char* name, const Cost& cost, std::size_t messages) {
  std::printf("%-17s %12.0f messages/s   %8.2f s, %8.2f s of user time, %7ld kB\n", name,
              static_cast<double>(messages) / cost.wall, cost.wall, cost.user, cost.kilobytes);
}

std::size_t numberOr(const char* text, std::size_t other) {
  const unsigned long number = text == nullptr ? 0 : std::strtoul(text, nullptr, 10);
  return number == 0 ? other : number;
}

}  // namespace

int main(int argc, char** argv) {
  const std::size_t calls = numberOr(argc > 1 ? argv[1] : nullptr, 20000);
  const std::size_t runs = numberOr(argc > 2 ? argv[2] : nullptr, 3);
  char folder[] = "/tmp/sdpCallsBench.XXXXXX";
  if (::mkdtemp(folder) == nullptr) {
    std::perror("sdpCallsBench: no folder");
    return 1;
  }
  const std::string file = std::string(folder) + "/calls.pcap";
  writeCapture(file, calls);

  Cost lines;
  Cost json;
  Cost anonymous;
  Cost tshark;
  const std::string sdpneg = SDPNEG_PROGRAM " calls ";
  bool isGood = true;
  bool hasTshark = true;
  for (std::size_t i = 0; i < runs; ++i) {
    isGood = run(sdpneg + file, lines) && run(sdpneg + "--json " + file, json) &&
             run(sdpneg + "--anonymize " + file, anonymous) && isGood;
    hasTshark = run("tshark -r " + file + " -Y sip", tshark) && hasTshark;
  }
  ::unlink(file.c_str());
  ::rmdir(folder);
  if (!isGood) {
    std::fprintf(stderr, "sdpCallsBench: sdpneg failed\n");
    return 1;
  }
  const std::size_t messages = calls * kMessagesOfACall;
  if (hasTshark) {
    std::printf("calls / tshark -Y sip: %.1f times as many messages a second, %.1f times by user time\n",
                tshark.wall / lines.wall, tshark.user / lines.user);
  } else {
    std::printf("tshark cannot be run: nothing to compare with\n");
  }
  print("calls", lines, messages);
  print("calls --json", json, messages);
  print("calls --anonymize", anonymous, messages);
  if (hasTshark) print("tshark -Y sip", tshark, messages);
  return 0;
}
