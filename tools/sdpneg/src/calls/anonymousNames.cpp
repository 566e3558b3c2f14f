#include "calls/anonymousNames.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "calls/protocolWords.h"
#include "text/search.h"

namespace tool {
namespace {

constexpr std::size_t kSearchedFrom = 3;
constexpr std::size_t kUuidSize = 36;

bool isSmall(char c) { return c >= 'a' && c <= 'z'; }
bool isCapital(char c) { return c >= 'A' && c <= 'Z'; }

enum class Style { small, capitalised, capitals, mixed };

Style styleOf(std::string_view word) {
  const auto capitals = static_cast<std::size_t>(std::ranges::count_if(word, isCapital));
  if (capitals == 0) return Style::small;
  if (capitals == 1 && isCapital(word.front())) return Style::capitalised;
  return std::ranges::any_of(word, isSmall) ? Style::mixed : Style::capitals;
}

/// Top-level domains that nobody owns (RFC 6761, RFC 6762, RFC 8375 and what is used so).
bool isReserved(std::string_view label) {
  constexpr std::array<std::string_view, 9> kReserved = {
      "local", "localhost", "localdomain", "invalid", "test", "internal", "lan", "home", "arpa"};
  return std::ranges::find(kReserved, label) != kReserved.end();
}

}  // namespace

bool isWordCharacter(char c) {
  const char small = sdpneg::lower(c);
  return sdpneg::isDigit(c) || isSmall(small) || static_cast<unsigned char>(c) >= 0x80;
}

bool beginsWithUuid(std::string_view text) {
  if (text.size() < kUuidSize || (text.size() > kUuidSize && isWordCharacter(text[kUuidSize]))) return false;
  for (std::size_t i = 0; i < kUuidSize; ++i) {
    const char small = sdpneg::lower(text[i]);
    const bool isDash = i == 8 || i == 13 || i == 18 || i == 23;
    const bool isHex = sdpneg::isDigit(small) || (small >= 'a' && small <= 'f');
    if (isDash ? small != '-' : !isHex) return false;
  }
  return true;
}

std::string lowered(std::string_view text) {
  std::string small(text);
  std::ranges::transform(small, small.begin(), sdpneg::lower);
  return small;
}

std::uint32_t AnonymousNames::numberOf(Numbers& numbers, std::uint64_t hash) {
  return numbers.try_emplace(hash, static_cast<std::uint32_t>(numbers.size() + 1)).first->second;
}

std::string AnonymousNames::word(std::string_view word) {
  const Style style = styleOf(word);
  // A mix of letters has a number of its own, or two mixes would come out the same.
  const std::string name = style == Style::mixed ? "=" + std::string(word) : lowered(word);
  constexpr std::array<std::string_view, 4> kWords = {"name", "Name", "NAME", "name"};
  return std::string(kWords[static_cast<std::size_t>(style)]) +
         std::to_string(numberOf(words_, keyedHash(key_, name)));
}

std::string AnonymousNames::labels(std::string_view labels) {
  std::string given;
  sdpneg::Words rest(labels, ".");
  for (std::string_view label = rest.next(); !label.empty(); label = rest.next()) {
    learn(label);
    given += isProtocolWord(label) ? std::string(label) : word(label);
    given += '.';
  }
  return given;
}

std::string AnonymousNames::host(std::string_view host) {
  std::string name = lowered(host);
  const bool isRooted = name.ends_with('.');
  while (name.ends_with('.')) name.pop_back();
  if (name.empty() || isReserved(name)) return std::string(host);
  hosts_.insert(keyedHash(key_, name));
  const std::string_view view = name;
  const std::size_t top = view.rfind('.');
  std::string given;
  if (top == std::string_view::npos) {
    given = labels(view);
    given.pop_back();
  } else if (beginsWithUuid(view)) {
    given = uuid(view.substr(0, kUuidSize)) + ".";
    if (top > kUuidSize) given += labels(view.substr(kUuidSize + 1, top - kUuidSize - 1));
    given += isReserved(view.substr(top + 1)) ? std::string(view.substr(top + 1)) : "example";
  } else if (isReserved(view.substr(top + 1))) {
    given = labels(view.substr(0, top)) + std::string(view.substr(top + 1));
  } else {
    const std::size_t dot = top == 0 ? std::string_view::npos : view.rfind('.', top - 1);
    const std::size_t begin = dot == std::string_view::npos ? 0 : dot + 1;
    given = labels(view.substr(0, begin));
    learn(view.substr(begin, top - begin));
    given += "domain" + std::to_string(numberOf(domains_, keyedHash(key_, view.substr(begin)))) + ".example";
  }
  return isRooted ? given + "." : given;
}

std::string AnonymousNames::uuid(std::string_view uuid) {
  char text[kUuidSize + 1];
  std::snprintf(text, sizeof text, "00000000-0000-4000-8000-%012x",
                static_cast<unsigned int>(numberOf(uuids_, keyedHash(key_, lowered(uuid)))));
  return text;
}

void AnonymousNames::learn(std::string_view name) {
  for (std::size_t at = 0; at < name.size();) {
    const std::size_t begin = at;
    while (at < name.size() && isWordCharacter(name[at])) ++at;
    const std::string_view word = name.substr(begin, at - begin);
    at += at == begin ? 1 : 0;
    const bool isNumber = std::ranges::all_of(word, sdpneg::isDigit);
    if (word.size() < kSearchedFrom || isNumber || isProtocolWord(word)) continue;
    known_.insert(keyedHash(key_, lowered(word)));
  }
}

bool AnonymousNames::isKnown(std::string_view word) const {
  return word.size() >= kSearchedFrom && known_.contains(keyedHash(key_, lowered(word))) &&
         !isProtocolWord(word);
}

bool AnonymousNames::isKnownHost(std::string_view host) const {
  std::string name = lowered(host);
  while (name.ends_with('.')) name.pop_back();
  return hosts_.contains(keyedHash(key_, name));
}

}  // namespace tool
