// Bodies of a call over a hop: what they say in short, what is wrong with them, and no secret is left in what is shown.

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "calls/bodyParts.h"
#include "calls/media.h"
#include "calls/secretFinder.h"
#include "calls/secrets.h"
#include "calls/troubles.h"
#include "captureChecks.h"
#include "text/shown.h"

namespace {

constexpr std::array<std::string_view, 3> kEnds = {"192.0.2.1:5060", "198.51.100.2:5060", "203.0.113.3:5060"};

/// The next byte; 0 behind the last.
unsigned int take(std::string_view& input) {
  if (input.empty()) return 0;
  const auto byte = static_cast<unsigned char>(input.front());
  input.remove_prefix(1);
  return byte;
}

/// A text up to the next 0xFF.
std::string_view takeText(std::string_view& input) {
  const std::size_t size = std::min(input.find('\xFF'), input.size());
  const std::string_view text = input.substr(0, size);
  input.remove_prefix(std::min(size + 1, input.size()));
  return text;
}

void addMessage(tool::Call& call, std::string_view& input) {
  const unsigned int kind = take(input);
  tool::CallMessage message;
  message.number = call.messages.size() + 1;
  const std::size_t from = kind % 3;
  message.flow = {*tool::parseEndpoint(kEnds[from]),
                  *tool::parseEndpoint(kEnds[(from + 1 + (kind >> 2U) % 2) % 3])};
  message.leg = (kind >> 3U) % 2;
  message.method = (kind & 0x10U) != 0 ? "UPDATE" : "INVITE";
  message.status = (kind & 0x20U) != 0 ? 200 : 0;
  message.cseq = 1 + (kind >> 6U);
  message.fromTag = "a";
  message.toTag = (kind & 0x40U) != 0 ? "b" : "";
  if (kind == 0xFE && !call.messages.empty()) message.retransmissionOf = 0;
  const std::string_view header = takeText(input);
  const std::string_view body = takeText(input);
  message.text = std::string(header) + "\r\n\r\n" + std::string(body);
  message.sdpBegin = header.size() + 4;
  message.sdpSize = body.size();
  call.messages.push_back(message);
}

/// Exchanges and hops between any messages, so that each offer and each incoming one comes first.
void connect(tool::Call& call, std::string_view& input) {
  const std::size_t count = call.messages.size();
  constexpr std::array<int, 4> kStatus = {0, 200, 486, 488};
  for (std::size_t later = 1; later < count; ++later) {
    const unsigned int kind = take(input);
    const std::size_t earlier = (kind >> 4U) % later;
    if ((kind & 1U) != 0) call.hops.push_back({earlier, later});
    if ((kind & 2U) != 0) call.exchanges.push_back({earlier, later, kStatus[(kind >> 2U) % 4], later < 3});
  }
  call.state = count % 2 == 0 ? tool::CallState::ended : tool::CallState::up;
}

void requirePrintable(std::string_view text) {
  while (!text.empty()) {
    const sdpneg::Character first = sdpneg::firstCharacter(text);
    fuzzing::require(sdpneg::isShown(first), "what is for people is not printable");
    text.remove_prefix(first.length);
  }
}

void checkTroubles(const tool::Call& call) {
  fuzzing::require(call.troubles.size() <= 1001, "there are too many troubles");
  fuzzing::require(std::is_sorted(call.troubles.begin(), call.troubles.end(),
                                  [](const auto& a, const auto& b) { return a.message < b.message; }),
                   "troubles are not in the order of messages");
  for (const tool::Trouble& trouble : call.troubles) {
    fuzzing::require(trouble.message < call.messages.size(), "a trouble is of no message");
    const std::string& text = call.messages[trouble.message].text;
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    fuzzing::require(trouble.line <= lines, "a trouble is behind the last line");
    requirePrintable(trouble.text);
    requirePrintable(trouble.rule);
  }
}

void checkParts(std::string_view body) {
  std::string whole;
  for (const tool::BodyPart& part : tool::bodyParts(body)) {
    whole += part.text;
    requirePrintable(part.name);
  }
  fuzzing::require(whole == body, "the parts of a body are not the body");
  const std::string form = tool::shortForm(body);
  fuzzing::require(form.size() < 4000, "a short form is long");
  requirePrintable(form);
}

/// What a strict reader would take for a key.
void requireNoKey(std::string_view text) {
  constexpr std::string_view kKey = "inline:";
  for (std::size_t at = text.find(kKey); at != std::string_view::npos; at = text.find(kKey, at + 1)) {
    const std::string_view key = text.substr(at + kKey.size());
    const std::size_t line = std::min(text.find_last_of("\r\n", at) + 1, at);
    if (!text.substr(line).starts_with("a=crypto:")) continue;
    fuzzing::require(key.empty() || !std::isalnum(static_cast<unsigned char>(key.front())), "a key is shown");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  tool::Call call;
  call.legs.resize(2);
  const unsigned int count = 1 + take(input) % 6;
  for (unsigned int i = 0; i < count; ++i) addMessage(call, input);
  connect(call, input);
  for (const tool::CallMessage& message : call.messages) checkParts(message.sdp());
  describeMedia(call);
  for (const std::string& codec : call.codecs) requirePrintable(codec);
  findTroubles(call);
  checkTroubles(call);
  const tool::Call before = call;
  maskSecrets(call);
  for (std::size_t i = 0; i < call.messages.size(); ++i) {
    const tool::CallMessage& message = call.messages[i];
    fuzzing::require(message.sdpBegin + message.sdpSize <= message.text.size(),
                     "a body is not in its message");
    fuzzing::require(std::count(message.text.begin(), message.text.end(), '\n') ==
                         std::count(before.messages[i].text.begin(), before.messages[i].text.end(), '\n'),
                     "masks change the number of lines");
    requireNoKey(message.text);
  }
  return 0;
}
