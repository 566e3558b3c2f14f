#include "calls/secretLines.h"

#include <algorithm>
#include <array>

#include "text/search.h"

namespace tool {
namespace {

using sdpneg::equalNoCase;
using sdpneg::npos;

constexpr std::string_view kMask = "[key ";

bool isLetter(char c) { return sdpneg::lower(c) >= 'a' && sdpneg::lower(c) <= 'z'; }
bool isSeparator(char c) { return isGap(c) || isLineEnd(c); }

/// How long the mask is that a text begins with; 0 without one.
std::size_t maskSize(std::string_view text) {
  if (!text.starts_with(kMask)) return 0;
  std::size_t at = kMask.size();
  while (at < text.size() && sdpneg::isDigit(text[at])) ++at;
  return at > kMask.size() && at < text.size() && text[at] == ']' ? at + 1 : 0;
}

void add(std::string_view text, std::size_t begin, std::size_t end, SecretPlaces& places) {
  while (begin < end && isSeparator(text[begin])) ++begin;
  while (end > begin && isSeparator(text[end - 1])) --end;
  if (begin < end && maskSize(text.substr(begin, end - begin)) != end - begin) places.push_back({begin, end});
}

/// Takes words apart, of which a mask is one.
class Tokens {
 public:
  Tokens(std::string_view text, std::size_t from, std::size_t to) : text_(text), at_(from), end_(to) {}

  /// @return false when there is none left
  bool next() {
    while (at_ < end_ && isSeparator(text_[at_])) ++at_;
    begin = at_;
    while (at_ < end_ && !isSeparator(text_[at_])) {
      const std::size_t mask = text_[at_] == '[' ? maskSize(text_.substr(at_, end_ - at_)) : 0;
      at_ += std::max<std::size_t>(mask, 1);
    }
    end = at_;
    return begin < end;
  }
  std::string_view word() const { return text_.substr(begin, end - begin); }

  std::size_t begin = 0;
  std::size_t end = 0;

 private:
  std::string_view text_;
  std::size_t at_;
  std::size_t end_;
};

bool isHexDigit(char c) { return sdpneg::isDigit(c) || (sdpneg::lower(c) >= 'a' && sdpneg::lower(c) <= 'f'); }

/// Whether a text begins with "Name:"; two hexadecimal digits are of a fingerprint.
bool beginsWithName(std::string_view text) {
  constexpr std::size_t kLongest = 40;
  std::size_t at = 0;
  while (at < std::min(text.size(), kLongest) && isNameCharacter(text[at])) ++at;
  if (at == 0 || (at == 2 && isHexDigit(text[0]) && isHexDigit(text[1]))) return false;
  while (at < text.size() && at < 2 * kLongest && isGap(text[at])) ++at;
  return at < text.size() && text[at] == ':';
}

/// Whether a text begins with "x=" and something, so that it is no end of a key in base64.
bool beginsWithType(std::string_view text) {
  if (text.size() < 3 || !isLetter(text[0])) return false;
  std::size_t at = 1;
  while (at < std::min<std::size_t>(text.size(), 16) && isGap(text[at])) ++at;
  return at + 1 < text.size() && text[at] == '=' && text[at + 1] != '=' && !isLineEnd(text[at + 1]);
}

bool beginsLine(std::string_view text) {
  return text.empty() || isLineEnd(text.front()) || text.starts_with("--") || text.starts_with("SIP/") ||
         beginsWithType(text) || beginsWithName(text);
}

bool isSuite(std::string_view word) {
  return word.size() <= 48 && sdpneg::contains(word, "_") && std::ranges::all_of(word, [](char c) {
           return (c >= 'A' && c <= 'Z') || sdpneg::isDigit(c) || c == '_';
         });
}

bool isTag(std::string_view word) {
  return word.size() <= 9 && std::ranges::all_of(word, [](char c) { return sdpneg::isDigit(c); });
}

/// Session parameters that have no keys (RFC 4568, section 6.3).
bool isPlainParameter(std::string_view word) {
  constexpr std::array<std::string_view, 6> kNames = {
      "KDR=", "WSH=", "FEC_ORDER=", "UNENCRYPTED_SRTP", "UNENCRYPTED_SRTCP", "UNAUTHENTICATED_SRTP"};
  return word.size() <= 24 && !sdpneg::contains(word, ":") &&
         std::ranges::any_of(kNames, [&](std::string_view name) { return word.starts_with(name); });
}

/// Whether what stands behind a key is of lifetime and MKI: "2^20|1:32".
bool isLifetime(std::string_view text) {
  return text.size() <= 48 && std::ranges::all_of(text, [](char c) {
           return sdpneg::isDigit(c) || c == '^' || c == ':' || c == '|';
         });
}

/// How many characters stand in front of a key: "inline:".
std::size_t keyMethodSize(std::string_view text) {
  for (const std::string_view method : {"inline:", "uri:", "FEC_KEY=inline:", "FEC_KEY=uri:"}) {
    if (sdpneg::startsWithNoCase(text, method)) return method.size();
  }
  return 0;
}

/// Masks "inline:KEY|2^20|1:32;inline:KEY".
void maskKeyParameters(std::string_view text, std::size_t begin, std::size_t end, SecretPlaces& places) {
  while (begin < end) {
    const std::string_view rest = text.substr(begin, end - begin);
    const std::string_view piece = rest.substr(0, rest.find(';'));
    const std::size_t pieceEnd = begin + piece.size();
    const std::size_t bar = std::min(piece.find('|'), piece.size());
    const std::size_t key = keyMethodSize(piece);
    add(text, begin + key, begin + (isLifetime(piece.substr(bar)) ? bar : piece.size()), places);
    begin = pieceEnd + 1;
  }
}

bool isScheme(std::string_view word) {
  constexpr std::array<std::string_view, 9> kSchemes = {"Digest",    "Basic",   "Bearer", "NTLM",  "Kerberos",
                                                        "Negotiate", "TLS-DSK", "PGP",    "GSSAPI"};
  return std::ranges::any_of(kSchemes, [&](std::string_view scheme) { return equalNoCase(scheme, word); });
}

bool isToldByChallenge(std::string_view name) {
  constexpr std::array<std::string_view, 7> kNames = {"realm",  "algorithm", "qop",     "stale",
                                                      "domain", "charset",   "userhash"};
  return std::ranges::any_of(kNames, [&](std::string_view known) { return equalNoCase(known, name); });
}

/// Where a parameter ends: at a comma outside of quotes.
std::size_t parameterEnd(std::string_view text, std::size_t begin, std::size_t end) {
  bool isQuoted = false;
  for (std::size_t at = begin; at < end; ++at) {
    if (isQuoted && text[at] == '\\') {
      ++at;
    } else if (text[at] == '"') {
      isQuoted = !isQuoted;
    } else if (text[at] == ',' && !isQuoted) {
      return at;
    }
  }
  return end;
}

void maskParameter(std::string_view text, std::size_t begin, std::size_t end, bool isChallenge,
                   SecretPlaces& places) {
  Tokens words(text, begin, end);
  if (words.next() && isScheme(words.word())) begin = words.end;
  while (begin < end && isSeparator(text[begin])) ++begin;
  while (end > begin && isSeparator(text[end - 1])) --end;
  std::size_t nameEnd = begin;
  while (nameEnd < end && isNameCharacter(text[nameEnd])) ++nameEnd;
  std::size_t value = nameEnd;
  while (value < end && isSeparator(text[value])) ++value;
  const bool hasName = nameEnd > begin && nameEnd - begin <= 32 && value + 1 < end && text[value] == '=' &&
                       text[value + 1] != '=';
  if (!hasName) return maskTokens(text, begin, end, places);
  if (isChallenge && isToldByChallenge(text.substr(begin, nameEnd - begin))) return;
  ++value;
  while (value < end && isSeparator(text[value])) ++value;
  const bool isQuoted = end - value >= 2 && text[value] == '"' && text[end - 1] == '"';
  add(text, isQuoted ? value + 1 : value, isQuoted ? end - 1 : end, places);
}

}  // namespace

bool isGap(char c) { return c == ' ' || c == '\t' || c == '\0' || c == '\v' || c == '\f'; }
bool isLineEnd(char c) { return c == '\r' || c == '\n'; }
bool isNameCharacter(char c) { return isLetter(c) || sdpneg::isDigit(c) || c == '-' || c == '_' || c == '.'; }

std::size_t endOfLines(std::string_view text, std::size_t begin) {
  for (;;) {
    const std::size_t end = text.find_first_of("\r\n", begin);
    if (end == npos) return text.size();
    begin = end + 1;
    if (text[end] == '\r' && begin < text.size() && text[begin] == '\n') ++begin;
    if (beginsLine(text.substr(begin))) return end;
  }
}

void maskTokens(std::string_view text, std::size_t begin, std::size_t end, SecretPlaces& places) {
  Tokens words(text, begin, end);
  while (words.next()) add(text, words.begin, words.end, places);
}

void maskBehind(std::string_view text, std::size_t begin, std::size_t end, bool (*mayStand)(std::string_view),
                SecretPlaces& places) {
  Tokens words(text, begin, end);
  if (!words.next()) return;
  if (!mayStand(words.word())) add(text, words.begin, words.end, places);
  maskTokens(text, words.end, end, places);
}

bool isKeyProtocol(std::string_view word) { return equalNoCase(word, "mikey"); }

bool isHashName(std::string_view word) {
  return word.size() <= 8 && !sdpneg::contains(word, ":") &&
         (sdpneg::startsWithNoCase(word, "sha") || sdpneg::startsWithNoCase(word, "md"));
}

void maskKeyLine(std::string_view text, std::size_t begin, std::size_t end, SecretPlaces& places) {
  constexpr std::array<std::string_view, 4> kMethods = {"clear", "base64", "uri", "prompt"};
  Tokens words(text, begin, end);
  if (!words.next()) return;
  const std::size_t colon = words.word().find(':');
  const std::string_view method = words.word().substr(0, colon);
  const bool isKnown =
      std::ranges::any_of(kMethods, [&](std::string_view known) { return equalNoCase(known, method); });
  add(text, isKnown ? words.begin + std::min(method.size() + 1, words.word().size()) : words.begin, words.end,
      places);
  maskTokens(text, words.end, end, places);
}

void maskCrypto(std::string_view text, std::size_t begin, std::size_t end, SecretPlaces& places) {
  Tokens words(text, begin, end);
  for (int i = 0; words.next(); i = std::min(i + 1, 2)) {
    const std::string_view word = words.word();
    const bool isPlain =
        (i == 0 && isTag(word)) || (i == 1 && isSuite(word)) || (i == 2 && isPlainParameter(word));
    if (!isPlain) maskKeyParameters(text, words.begin, words.end, places);
  }
}

void maskCredentials(std::string_view text, std::size_t begin, std::size_t end, bool isChallenge,
                     SecretPlaces& places) {
  while (begin < end) {
    const std::size_t parameter = parameterEnd(text, begin, end);
    maskParameter(text, begin, parameter, isChallenge, places);
    begin = parameter + 1;
  }
}

}  // namespace tool
