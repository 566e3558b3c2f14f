// Collecting what is wrong with an answer.

#include "judge/findings.h"

#include <algorithm>
#include <cstddef>

namespace sdp::exchange {
namespace {

constexpr std::size_t kLongestPiece = 64;

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

/// A character and how many bytes it takes; 0 bytes for what is no UTF-8.
struct Character {
  std::uint32_t code = 0;
  std::size_t length = 0;
};

/// The character with which a text begins that is not empty (RFC 3629, section 3).
Character firstOf(std::string_view text) {
  const auto head = static_cast<unsigned char>(text.front());
  if (head < 0x80U) return {head, 1};
  const std::size_t length = head >= 0xF0U ? 4 : head >= 0xE0U ? 3 : 2;
  if (head < 0xC2U || head > 0xF4U || length > text.size()) return {};
  std::uint32_t code = head & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if (!isContinuation(text[i])) return {};
    code = code << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
  }
  constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < kLeast[length] || code > 0x10FFFF || isSurrogate ? Character{} : Character{code, length};
}

bool isShown(std::uint32_t code) {
  if (code < 0x20 || (code >= 0x7F && code < 0xA0)) return false;       // control characters
  if (code == 0x61C || code == 0x200E || code == 0x200F) return false;  // marks of direction
  if (code >= 0x2028 && code <= 0x202E) return false;                   // ends of lines, and directions
  return code < 0x2066 || code > 0x2069;
}

void addEscaped(std::string& text, std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text.append("\\x").append(1, kDigits[byte / 16U]).append(1, kDigits[byte % 16U]);
  }
}

}  // namespace

std::string shown(std::string_view piece) {
  std::string text;
  std::size_t at = 0;
  while (at < std::min(piece.size(), kLongestPiece)) {
    const Character character = firstOf(piece.substr(at));
    const std::string_view bytes = piece.substr(at, std::max<std::size_t>(character.length, 1));
    if (character.length != 0 && isShown(character.code)) {
      text.append(bytes);
    } else {
      addEscaped(text, bytes);
    }
    at += bytes.size();
  }
  if (at < piece.size()) text.append("...");
  return text;
}

void Findings::add(std::uint32_t section, AnswerRule rule, std::initializer_list<std::string_view> pieces) {
  const auto place = static_cast<std::size_t>(rule);
  if (findings_.size() >= Judgement::kMostFindings && broken_[place]) {
    hasMore_ = true;
    return;
  }
  broken_[place] = true;
  Finding finding{section, rule, {}};
  for (const std::string_view piece : pieces) finding.text.append(piece);
  findings_.push_back(std::move(finding));
}

std::vector<Finding> Findings::take() {
  std::stable_sort(findings_.begin(), findings_.end(), [](const Finding& a, const Finding& b) {
    return a.section != b.section ? a.section < b.section : a.rule < b.rule;
  });
  return std::move(findings_);
}

}  // namespace sdp::exchange
