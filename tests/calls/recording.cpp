#include "recording.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <map>
#include <sstream>
#include <utility>

namespace recorded {
namespace {

constexpr milliseconds kQuiet{600};
constexpr milliseconds kLongestReading{60'000};

std::string programOf(With with) { return with == With::dumpcap ? DUMPCAP_PROGRAM : TCPDUMP_PROGRAM; }

/// What it says when it records.
std::string readyOf(With with) { return with == With::dumpcap ? "File: " : "listening on "; }

std::vector<std::string> argumentsOf(With with, const std::string& filter, const std::string& file) {
  if (with == With::dumpcap) return {"-i", "lo", "-f", filter, "-w", file};
  // Each frame is had and written at once, and by the user that made the folder. What waits for it has place for as many
  // frames as fit in by their largest size.
  return {"-i",   "any", "-y", "LINUX_SLL2", "--immediate-mode", "-s", "9000", "-B", "32768", "-U", "-Z",
          "root", "-w",  file, filter};
}

std::string bytesOfHex(const std::string& hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

/// Standard output of tshark.
std::string tshark(const TemporaryFolder& folder, const std::string& file, const std::string& options) {
  Process process("/bin/sh", {"-c", TSHARK_PROGRAM " -r \"$0\" " + options + " 2>tshark.errors", file},
                  folder.path(), "tshark");
  EXPECT_EQ(process.wait(kLongestReading), 0);
  return process.output();
}

}  // namespace

void PrintTo(const Message& message, std::ostream* out) {
  *out << message.first << " " << message.callId << "\n" << message.body;
}

Recorder::Recorder(const TemporaryFolder& folder, const std::string& filter, With with)
    : file_(folder.path("recording")),
      process_(programOf(with), argumentsOf(with, filter, file_), folder.path(), "recorder") {
  const bool hasBegun = waitUntil(
      [&] { return !process_.isRunning() || process_.output().find(readyOf(with)) != std::string::npos; },
      kLongestStart);
  isRecording_ = hasBegun && process_.isRunning();
}

std::size_t Recorder::size() const {
  std::error_code none;
  const std::uintmax_t size = std::filesystem::file_size(file_, none);
  return none ? 0 : size;
}

/// What is recorded arrives a little later.
void Recorder::waitUntilQuiet() const {
  std::size_t before = 0;
  auto since = std::chrono::steady_clock::now();
  const bool isQuiet = waitUntil(
      [&] {
        const std::size_t now = size();
        if (std::exchange(before, now) != now) since = std::chrono::steady_clock::now();
        return std::chrono::steady_clock::now() - since > kQuiet;
      },
      kLongestStart);
  EXPECT_TRUE(isQuiet);
}

void Recorder::stop() {
  waitUntilQuiet();
  process_.signal(SIGINT);
  EXPECT_TRUE(process_.wait(kLongestStart).has_value());
}

Json callsOf(const std::string& file, std::vector<std::string> options) {
  options.insert(options.begin(), {"calls", "--json", "--bodies", file});
  const ::Outcome outcome = runSdpneg(options);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  return Json::parse(outcome.out);
}

std::vector<Message> messagesOf(const Json& report) {
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

std::vector<Message> messagesOfTshark(const TemporaryFolder& folder, const std::string& file) {
  std::vector<Message> messages;
  for (const Json& packet : Json::parse(tshark(folder, file, "-Y sip -T json -x"))) {
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

std::size_t framesOf(const TemporaryFolder& folder, const std::string& file) {
  const std::string numbers = tshark(folder, file, "-T fields -e frame.number");
  return static_cast<std::size_t>(std::ranges::count(numbers, '\n'));
}

SngrepReading readingOfSngrep(const TemporaryFolder& folder, const std::string& file,
                              const std::string& filter) {
  const std::string saved = folder.path("saved");
  std::vector<std::string> arguments = {"-F", "-N", "-I", file, "-O", saved};
  std::istringstream words(filter);
  for (std::string word; words >> word;) arguments.push_back(word);
  Process process(SNGREP_PROGRAM, arguments, folder.path(), "sngrep");
  EXPECT_EQ(process.wait(kLongestReading), 0);
  // It tells the number again and again, on one line.
  static const std::string mark = "Dialog count: ";
  const std::string output = process.output();
  const std::size_t last = output.rfind(mark);
  if (last == std::string::npos) {
    ADD_FAILURE() << output;
    return {};
  }
  EXPECT_EQ(framesOf(folder, saved), messagesOfTshark(folder, saved).size()) << "it saved other frames too";
  return {std::stoul(output.substr(last + mark.size())), messagesOfTshark(folder, saved)};
}

std::size_t dialogsOf(const Json& report) {
  std::size_t dialogs = 0;
  for (const Json& call : report.at("calls")) dialogs += call.at("callIds").size();
  return dialogs;
}

}  // namespace recorded
