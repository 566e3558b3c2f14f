#ifndef SDPNEG_TEST_MADE_CALL_H
#define SDPNEG_TEST_MADE_CALL_H

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "calls/call.h"

// Calls made by hand, message by message, for those who look at complete ones.

namespace made {

/// Addresses of documentation are public here; those of `kInside` are not.
inline constexpr std::string_view kAlice = "192.0.2.1:5060";
inline constexpr std::string_view kProxy = "198.51.100.2:5060";
inline constexpr std::string_view kBob = "203.0.113.3:5060";
inline constexpr std::string_view kInside = "10.0.0.1:5060";

/// A body with CR LF: session lines of a version, then what is given.
inline std::string body(std::string_view media, std::string_view version = "1",
                        std::string_view address = "192.0.2.1") {
  std::string text = "v=0\no=alice 7 " + std::string(version) + " IN IP4 192.0.2.1\ns=-\nc=IN IP4 " +
                     std::string(address) + "\nt=0 0\n" + std::string(media);
  std::string ended;
  for (const char c : text) {
    if (c == '\n') ended += '\r';
    ended += c;
  }
  return ended;
}

inline constexpr std::string_view kAudio = "m=audio 4000 RTP/AVP 8\n";

/// How a message goes; what is left out is that of an INVITE from Alice to Bob.
struct Line {
  std::string_view source = kAlice;
  std::string_view destination = kBob;
  std::string method = "INVITE";
  int status = 0;
  std::uint64_t cseq = 1;
  std::size_t leg = 0;
  std::string fromTag = "a";
  std::string toTag = {};
};

/// Makes a call by adding to it.
class Maker {
 public:
  Maker() {
    call.legs.push_back({});
    call.legs.push_back({});
    call.number = 1;
  }

  tool::Call call;

  /// Adds a message and returns its index. Its header has five lines with the empty one, so the body begins on line 6.
  std::size_t add(const Line& line, std::string_view sdp = {}) {
    tool::CallMessage message;
    message.number = call.messages.size() + 1;
    message.flow = {*tool::parseEndpoint(line.source), *tool::parseEndpoint(line.destination)};
    message.leg = line.leg;
    message.method = line.method;
    message.status = line.status;
    message.cseq = line.cseq;
    message.fromTag = line.fromTag;
    message.toTag = line.toTag;
    message.text = line.status == 0 ? line.method + " sip:bob@example.org SIP/2.0\r\n"
                                    : "SIP/2.0 " + std::to_string(line.status) + " Reason\r\n";
    message.text += "Call-ID: " + std::to_string(line.leg) + "\r\nCSeq: 1 INVITE\r\n";
    message.text += "Content-Type: application/sdp\r\n\r\n";
    message.sdpBegin = message.text.size();
    message.sdpSize = sdp.size();
    message.text += sdp;
    if (!sdp.empty()) message.body = tool::BodyRole::sdp;
    call.messages.push_back(std::move(message));
    return call.messages.size() - 1;
  }

  /// Adds an exchange between messages that are there.
  void exchange(std::size_t offer, std::optional<std::size_t> answer, int finalStatus = 200,
                bool isFirst = true) {
    call.messages[offer].body = tool::BodyRole::offer;
    if (answer) call.messages[*answer].body = tool::BodyRole::answer;
    call.exchanges.push_back({offer, answer, finalStatus, isFirst});
  }

  void hop(std::size_t before, std::size_t after) { call.hops.push_back({before, after}); }

  /// An INVITE from Alice to Bob and its 200.
  std::pair<std::size_t, std::size_t> begin(std::string_view offer, std::string_view answer) {
    const std::size_t invite = add({}, offer);
    const std::size_t accepted = add(accept({}), answer);
    exchange(invite, accepted);
    return {invite, accepted};
  }

  /// A request within the dialog and its 200.
  std::pair<std::size_t, std::size_t> again(std::uint64_t cseq, std::string_view offer,
                                            std::string_view answer) {
    Line line;
    line.cseq = cseq;
    line.toTag = "b";
    const std::size_t invite = add(line, offer);
    const std::size_t accepted = add(accept(line), answer);
    exchange(invite, accepted, 200, false);
    return {invite, accepted};
  }

  /// The 200 of a request.
  static Line accept(Line line) {
    std::swap(line.source, line.destination);
    line.status = 200;
    line.toTag = "b";
    return line;
  }
};

/// What is told of troubles, "rule message section line" each, by the numbers of messages.
inline std::vector<std::string> rulesOf(const tool::Call& call) {
  std::vector<std::string> rules;
  for (const tool::Trouble& trouble : call.troubles) {
    rules.push_back(trouble.rule + " " + std::to_string(call.messages[trouble.message].number) + " " +
                    std::to_string(trouble.section) + " " + std::to_string(trouble.line));
  }
  return rules;
}

/// The text of the first trouble of a rule; empty without one.
inline std::string textOf(const tool::Call& call, std::string_view rule) {
  const auto found =
      std::ranges::find_if(call.troubles, [&](const tool::Trouble& trouble) { return trouble.rule == rule; });
  return found == call.troubles.end() ? std::string() : found->text;
}

}  // namespace made

#endif
