#include "promiseChecks.h"

#include <algorithm>

namespace plain {
namespace {

/// The lines of a section or of the session that begin so.
std::vector<std::string_view> linesOf(const PlainBody& body, std::size_t section, std::string_view prefix) {
  std::vector<std::string_view> lines;
  for (std::size_t i = body.sections[section].first; i < body.sections[section].end; ++i) {
    if (body.lines[i].content.starts_with(prefix)) lines.push_back(body.lines[i].content);
  }
  return lines;
}

std::size_t portOf(const PlainSection& section) {
  std::size_t port = 0;
  for (const char c : section.port().substr(0, section.port().find('/')))
    port = port * 10 + static_cast<std::size_t>(c - '0');
  return port;
}

/// Whether `anchor` leaves its port: it has none, or is of TCP and connects itself.
bool keepsPort(const PlainSection& before) {
  return before.zero || (before.transport().starts_with("TCP") && portOf(before) == 9);
}

void checkWays(const Change& change, Complaints& complaints) {
  for (const PlainLine& line : change.after.lines) {
    if (isIn(attributeName(line.content), kWays))
      complaints.add("a way that goes round the anchor: " + std::string(line.content));
    if (!line.content.starts_with("c=")) continue;
    const std::string_view told = wordOf(line.content.substr(2), 2);
    if (told != change.words[1] && told != "0.0.0.0" && told != "::")
      complaints.add("another address: " + std::string(line.content));
  }
}

/// `a=rtcp` tells the port beside that of the section, and the anchor's address where there was one.
void checkRtcp(const Change& change, std::size_t n, Complaints& complaints) {
  const std::vector<std::string_view> before = linesOf(change.before, n, "a=rtcp:");
  const std::vector<std::string_view> after = linesOf(change.after, n, "a=rtcp:");
  if (n == 0 || keepsPort(change.before.sections[n])) {
    if (!after.empty()) complaints.add("a=rtcp where no port was given", n);
    return;
  }
  if (before.size() != after.size()) return complaints.add("another number of a=rtcp", n);
  const std::size_t port = portOf(change.after.sections[n]) + (change.after.has(n, "rtcp-mux") ? 0 : 1);
  const std::string_view address = change.words[1];
  const std::string_view type = address.find(':') == std::string_view::npos ? "IP4" : "IP6";
  for (std::size_t i = 0; i < after.size(); ++i) {
    std::string wanted = "a=rtcp:" + std::to_string(port);
    if (!wordOf(attributeValue(before[i]), 3).empty())
      wanted.append(" IN ").append(type).append(" ").append(address);
    if (after[i] != wanted) complaints.add("it is not " + wanted + ": " + std::string(after[i]), n);
  }
}

/// The keys that a profile has no use for, of a section and, as far as they can stand there, of the session.
Words keysBeside(std::string_view profile) {
  if (profile.starts_with("UDP/TLS")) return {"crypto", "key-mgmt"};
  if (profile.starts_with("RTP/SAVP")) return {"fingerprint", "setup", "tls-id"};
  return {"crypto", "key-mgmt", "fingerprint", "setup", "tls-id"};
}

/// What a profile has no use for is gone, and the rest is there.
void checkKeys(const Change& change, std::size_t n, const Words& gone, Complaints& complaints) {
  for (const std::string_view key : {"crypto", "key-mgmt", "fingerprint", "setup", "tls-id"}) {
    if (n == 0 && key == "crypto") continue;
    const bool isThere = change.after.has(n, key);
    if (isIn(key, gone) && isThere) complaints.add("keys that do not go with it: " + std::string(key), n);
    if (!isIn(key, gone) && isThere != change.before.has(n, key))
      complaints.add("keys that were to stay: " + std::string(key), n);
  }
}

}  // namespace

void checkAnchor(const Change& change, Complaints& complaints) {
  checkWays(change, complaints);
  checkRtcp(change, 0, complaints);
  for (std::size_t n = 1; n < change.after.sections.size(); ++n) {
    if (linesOf(change.after, n, "c=").empty() && linesOf(change.after, 0, "c=").empty())
      complaints.add("no address", n);
    checkRtcp(change, n, complaints);
    if (keepsPort(change.before.sections[n])) continue;
    const std::size_t port = portOf(change.after.sections[n]);
    if (port < 1024 || port > 65534 || port % 2 != 0) complaints.add("a port that is none of the row", n);
  }
}

void checkProfile(const Change& change, Complaints& complaints) {
  const std::string_view profile = change.words[1];
  const Words gone = keysBeside(profile);
  bool isAny = false;
  for (std::size_t n = 1; n < change.after.sections.size(); ++n) {
    const PlainSection& section = change.before.sections[n];
    if (!change.chosen[n] || section.transport().find("RTP/") == std::string_view::npos ||
        section.transport().starts_with("TCP"))
      continue;
    isAny = true;
    if (change.after.sections[n].transport() != profile) complaints.add("another transport", n);
    if (profile.back() != 'F' && (change.after.has(n, "rtcp-fb") || change.after.has(n, "rtcp-rsize")))
      complaints.add("feedback", n);
    checkKeys(change, n, gone, complaints);
  }
  checkKeys(change, 0, isAny ? gone : Words(), complaints);
}

}  // namespace plain
