#ifndef SDPNEG_TEST_MESSAGES_H
#define SDPNEG_TEST_MESSAGES_H

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "calls/callTable.h"

// Composes the messages of calls for tests, and gives them to a table.

namespace calling {

/// "192.0.2.1", or with a port: "127.0.0.1:5062".
inline tool::Endpoint endpoint(std::string_view text) {
  tool::Endpoint end = tool::parseEndpoint(text).value_or(tool::Endpoint());
  if (end.isKnown() && end.port == 0) end.port = 5060;
  return end;
}

inline constexpr std::string_view kAlice = "192.0.2.1";
inline constexpr std::string_view kProxy = "192.0.2.2";
inline constexpr std::string_view kBob = "192.0.2.3";
inline constexpr std::string_view kCarol = "192.0.2.4";

/// A body that one party has.
inline std::string sdp(std::string_view origin = "- 11 1 IN IP4 192.0.2.1",
                       std::string_view address = "192.0.2.1", int port = 4000) {
  return "v=0\r\no=" + std::string(origin) + "\r\ns=-\r\nc=IN IP4 " + std::string(address) +
         "\r\nt=0 0\r\nm=audio " + std::to_string(port) + " RTP/AVP 8\r\na=rtpmap:8 PCMA/8000\r\n";
}

/// A message, of which a test sets what matters to it.
struct Sip {
  std::string start = {};  ///< "INVITE", or "200 INVITE"
  std::string_view source = kAlice;
  std::string_view destination = kBob;
  std::string body = {};
  std::string callId = "a";
  int cseq = 1;
  std::string branch = "z9hG4bK1";
  std::string_view sender = "host";  ///< as Via names it
  std::string fromTag = "f";
  std::string toTag = {};    ///< none where it is empty
  std::string headers = {};  ///< with their ends
  std::string from = "sip:alice@example.org";
  std::string to = "sip:bob@example.org";
  tool::CaptureTime time = {};  ///< in microseconds; 1 ms behind the message before where there is none
  bool isTimeless = false;

  std::string text() const {
    const std::size_t blank = start.find(' ');
    const std::string method = blank == std::string::npos ? start : start.substr(blank + 1);
    std::string text = blank == std::string::npos ? start + " " + to + " SIP/2.0\r\n"
                                                  : "SIP/2.0 " + start.substr(0, blank) + " Reason\r\n";
    text += "Via: SIP/2.0/UDP " + std::string(sender) + ";branch=" + branch + "\r\nFrom: \"A\" <" + from +
            ">;tag=" + fromTag + "\r\nTo: <" + to + ">" + (toTag.empty() ? "" : ";tag=" + toTag) +
            "\r\nCall-ID: " + callId + "\r\nCSeq: " + std::to_string(cseq) + " " + method + "\r\n" + headers;
    if (!body.empty()) text += "Content-Type: application/sdp\r\n";
    return text + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
  }
};

/// What the other side says to a request: "180", "200".
inline Sip reply(const Sip& request, const std::string& status, std::string body = {},
                 std::string toTag = "t") {
  Sip sip = request;
  sip.start = status + " " + request.start;
  std::swap(sip.source, sip.destination);
  sip.body = std::move(body);
  if (sip.toTag.empty()) sip.toTag = std::move(toTag);
  sip.headers.clear();
  sip.time.reset();
  return sip;
}

/// A table, with what it gives away.
class Table {
 public:
  explicit Table(tool::CallOptions options = {})
      : table(std::move(options), [this](tool::Call&& call) { calls.push_back(std::move(call)); }) {}
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  void take(const Sip& sip) {
    now = sip.time.value_or(now + 1000);
    const std::string text = sip.text();
    tool::CapturedMessage message;
    message.number = ++number;
    if (!sip.isTimeless) message.time = now;
    message.transport = tool::Transport::udp;
    message.flow = {endpoint(sip.source), endpoint(sip.destination)};
    message.text = text;
    table.take(message);
  }

  std::vector<tool::Call> calls;
  tool::CallTable table;
  std::int64_t now = 1000000000;
  std::size_t number = 0;
};

/// The calls of some messages.
inline std::vector<tool::Call> callsOf(const std::vector<Sip>& messages, tool::CallOptions options = {}) {
  Table table(std::move(options));
  for (const Sip& message : messages) table.take(message);
  table.table.finish();
  return std::move(table.calls);
}

}  // namespace calling

#endif
