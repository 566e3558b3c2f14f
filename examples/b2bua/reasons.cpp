#include "reasons.h"

#include <sdpRefusal.h>

#include <algorithm>
#include <charconv>
#include <vector>

#include "bodyLines.h"

namespace b2bua {

namespace {

constexpr std::string_view kLine = "line ";
constexpr std::string_view kFound = ", found ";
constexpr std::string_view kSecretNames[] = {"crypto", "key-mgmt", "ice-pwd", "inline:"};

/// @return what of a line is secret: the attribute's name; empty when nothing is
std::string secretIn(std::string_view line) {
  const std::string lower = lowerCase(line);
  for (const std::string_view name : kSecretNames) {
    if (lower.find(name) != std::string::npos) return std::string(name.substr(0, name.find(':')));
  }
  const std::size_t letter = lower.find_first_not_of(" \t");
  return letter != std::string::npos && lower[letter] == 'k' ? "k" : "";
}

/// @return where the value of a name begins that stands in a line: behind its colon, or in an attribute behind a blank
std::size_t valueOf(std::string_view lower, std::string_view name) {
  const std::size_t attribute = lower.find("a=");
  for (std::size_t at = lower.find(name); at != std::string_view::npos; at = lower.find(name, at + 1)) {
    const std::size_t end = at + name.size();
    const std::size_t value = lower.find_first_not_of(" \t", end);
    if (value == std::string_view::npos) break;
    if (lower[value] == ':') return value + 1;
    if (attribute < at && value > end) return value;
  }
  return std::string_view::npos;
}

/// @return where the keys of SDES begin: behind what is only said of them, where that stands in its place
std::size_t keysOf(std::string_view lower) {
  const std::size_t crypto = valueOf(lower, "crypto");
  const bool isUsual = crypto != std::string_view::npos &&
                       sdp::Fields(lower.substr(crypto))[2].starts_with("inline") &&
                       valueOf(lower, "inline") != std::string_view::npos;
  return isUsual ? std::string_view::npos : crypto;
}

/// @return where the password of a URI begins that stands in a line (scheme:user:password@host, maybe with "//")
std::size_t passwordOf(std::string_view line) {
  for (std::size_t at = line.find('@'); at != std::string_view::npos; at = line.find('@', at + 1)) {
    const std::size_t before = line.substr(0, at).find_last_of(" \t<>\"@");
    const std::size_t begin = before + 1;  // 0 when there is none
    const std::size_t scheme = line.find(':', begin);
    if (scheme >= at) continue;
    const std::size_t colon = line.find(':', scheme + 1);
    if (colon < at) return colon + 1;
  }
  return std::string_view::npos;
}

/// @return where the secret of a line begins
std::size_t secretOf(std::string_view line) {
  const std::string lower = lowerCase(line);
  std::size_t secret = std::min(keysOf(lower), passwordOf(line));
  for (const std::string_view name : {"inline", "ice-pwd", "fingerprint", "key-mgmt", "zrtp-hash"})
    secret = std::min(secret, valueOf(lower, name));
  const auto isPartOfWord = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
  };
  for (std::size_t k = lower.find("k="); k < secret; k = lower.find("k=", k + 1)) {
    if (k == 0 || !isPartOfWord(lower[k - 1])) return k + 2;
  }
  return secret;
}

/// @param ends  what ends a line
std::string_view lineAt(std::string_view text, std::size_t number, std::string_view ends) {
  for (; number > 1 && !text.empty(); --number) {
    const std::size_t end = std::min(text.find_first_of(ends), text.size());
    text.remove_prefix(std::min(end + (text.substr(end).starts_with("\r\n") ? 2 : 1), text.size()));
  }
  return text.substr(0, text.find_first_of(ends));
}

/// @return the text without what could break a line or a quoted text
std::string harmless(std::string_view text) {
  constexpr std::size_t kLongest = 120;
  std::string reason(text.substr(0, kLongest));
  for (char& c : reason) {
    if (c < ' ' || c > '~') c = '?';
    if (c == '"' || c == '\\') c = '\'';
  }
  return reason;
}

}  // namespace

std::string lastReason() {
  const sSdpRefusal& refusal = sdpLastRefusal();
  if (refusal.kind == SDP_REFUSAL_KIND_STORAGE) return "the body is too large to be kept";
  return harmless(refusal.text);
}

std::string reasonOf(const sdp::Refusal& refusal) {
  std::string reason;
  if (refusal.line != 0) reason.append(kLine).append(std::to_string(refusal.line)).append(": ");
  reason.append(textOf(refusal.reason));
  std::replace(reason.begin(), reason.end(), '"', '\'');
  return reason;
}

// In parentheses are names of the library elsewhere, here the medium of a section.
std::string reasonOf(const sdp::Document& document) {
  if (document.explanation().empty()) return "the body is too large to be kept";
  std::string reason = harmless(document.explanation());
  std::erase_if(reason, [](char c) { return c == '(' || c == ')'; });
  return reason;
}

std::string withoutSecrets(const std::string& reason, std::string_view body) {
  const std::size_t found = reason.find(kFound);
  if (found == std::string::npos || !reason.starts_with(kLine)) return reason;
  std::size_t number = 0;
  std::from_chars(reason.data() + kLine.size(), reason.data() + reason.size(), number);
  // Whether a CR alone ends a line or not, none of its keys leaves.
  for (const std::string_view ends : {"\n", "\r\n"}) {
    const std::string secret = secretIn(lineAt(body, number, ends));
    if (!secret.empty()) return reason.substr(0, found) + ", in " + secret;
  }
  return reason;
}

std::string withoutKeys(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    const std::size_t secret = secretOf(line);
    result.append(line.substr(0, secret)).append(secret < line.size() ? "..." : "");
    text.remove_prefix(line.size());
    const std::size_t next = std::min(text.find_first_not_of("\r\n"), text.size());
    result.append(text.substr(0, next));
    text.remove_prefix(next);
  }
  return result;
}

std::string withoutFound(std::string_view text) { return std::string(text.substr(0, text.find(kFound))); }

std::string toldReason(const std::string& reason) {
  const std::string_view text = std::string_view(reason).substr(0, reason.find(kFound));
  const auto isHump = [](char one, char next) {
    return one >= 'a' && one <= 'z' && next >= 'A' && next <= 'Z';
  };
  const bool isInternal = text.find_first_of("_()") != std::string_view::npos ||
                          std::ranges::adjacent_find(text, isHump) != text.end();
  return isInternal ? "the body cannot be used" : reason;
}

}  // namespace b2bua
