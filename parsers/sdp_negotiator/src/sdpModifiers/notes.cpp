#include "sdpModifiers/notes.h"

#include <algorithm>
#include <iterator>

#include "sdpModifiers/attributeRemoval.h"
#include "text/find.h"
#include "vocabulary.h"

// All that is noted begins with a letter and an equals sign, so that the places of these signs are enough to look at.

namespace sdpneg {

namespace {

bool isLineStart(std::string_view text, std::size_t at) { return at > 0 && text[at - 1] == '\n'; }

/// Where the value of a line begins.
constexpr std::size_t kPrefix = 2;

/// A bit for a letter, whatever its case; few other characters share it.
constexpr std::uint32_t bitOfLetter(char letter) {
  return 1U << (static_cast<unsigned char>(letter) & 0x1FU);
}

constexpr std::uint32_t bitsOf(std::string_view letters) {
  std::uint32_t bits = 0;
  for (const char letter : letters) bits |= bitOfLetter(letter);
  return bits;
}

/// Tells most attributes that are not noted from the others by their first two letters: those of candidate, crypto, ice-,
/// inactive, key-mgmt, recvonly, remote-candidates, sendonly and sendrecv.
bool mayBeNoted(std::string_view attribute) {
  constexpr std::uint32_t kFirst = bitsOf("cikrs");
  constexpr std::uint32_t kSecond = bitsOf("arcne");
  if (attribute.size() < kPrefix) return false;
  return (bitOfLetter(attribute[0]) & kFirst) != 0 && (bitOfLetter(attribute[1]) & kSecond) != 0;
}

}  // namespace

void Notes::take(std::string_view text) {
  count_ = moved_ = near_ = 0;
  difference_ = 0;
  kinds_ = media_ = 0;
  complete_ = true;
  forEachPlace(text, '=', [&](std::size_t sign) {
    if (sign > 0) noteAt(text, sign - 1);
  });
}

void Notes::noteAt(std::string_view text, std::size_t at) {
  switch (text[at]) {
    case 'a':
      if (mayBeNoted(text.substr(at + kPrefix))) noteAttribute(text, at);
      break;
    case 'c':
      if (isLineStart(text, at)) add(at, Noted::cLine);
      break;
    case 'm':
      if (!isLineStart(text, at)) break;
      add(at, Noted::mLine);
      if (at + kPrefix < text.size()) media_ |= bitOf(text[at + kPrefix]);
      break;
    default:
      break;
  }
}

void Notes::noteAttribute(std::string_view text, std::size_t at) {
  const std::string_view attribute = text.substr(at);
  if (startsWithDirection(attribute.substr(kPrefix))) {
    if (isLineStart(text, at)) add(at, Noted::direction);
  } else if (startsWith(attribute, kKeyManagement)) {
    add(at, Noted::keyManagement);
  } else if (startsWith(attribute, kCrypto)) {
    add(at, Noted::crypto);
  } else if (isIceAttribute(attribute)) {
    add(at, Noted::ice);
  }
}

std::size_t Notes::last(Noted what) const {
  for (std::size_t i = count_; i > moved_; --i) {
    if (notes_[i - 1].what == what) return notes_[i - 1].at;
  }
  return npos;
}

void Notes::moveUpTo(std::size_t end) {
  for (; moved_ < count_ && notes_[moved_].at < end; ++moved_) {
    notes_[moved_].at = static_cast<std::uint16_t>(notes_[moved_].at + difference_);
  }
}

void Notes::drop(std::size_t first, std::size_t behind) {
  std::copy(notes_ + behind, notes_ + count_, notes_ + first);
  count_ -= behind - first;
}

void Notes::replaced(const Span& span, bool endsLine, std::string_view inserted) {
  // A line that is replaced stays where it is noted; what is inserted in front of a line moves it.
  moveUpTo(span.begin + (span.begin == span.end || inserted.empty() ? 0 : 1));
  difference_ +=
      static_cast<std::ptrdiff_t>(inserted.size()) - static_cast<std::ptrdiff_t>(span.end - span.begin);
  // Behind a line whose LF has gone no other one begins.
  const bool joinsLines = endsLine && !inserted.empty() && !inserted.ends_with('\n');
  const std::size_t end = span.end + (joinsLines ? 1 : 0);
  std::size_t behind = moved_;
  while (behind < count_ && notes_[behind].at < end) ++behind;
  if (behind != moved_) drop(moved_, behind);
  // An attribute inside what was inserted, or where it meets what follows, may be any.
  if (joinsLines || inserted.find('=', kPrefix) != npos) complete_ = false;
}

void Notes::settle() {
  if (difference_ != 0) moveUpTo(npos);
  difference_ = 0;
  moved_ = 0;
}

Edit NotedText::replace(Span span, std::string_view inserted) {
  const bool endsLine = span.begin < span.end && view()[span.end - 1] == '\n';
  const Edit edit = pass_.replace(span, inserted);
  if (edit == Edit::done) notes_.replaced(span, endsLine, inserted);
  return edit;
}

std::optional<std::size_t> NotedText::removeLines(Noted what) {
  const std::string_view all = view();
  bool whole = notes_.isComplete();
  notes_.each(what, 0, [&](std::size_t at) {
    whole = whole && isLineStart(all, at) && lineAt(all, at).terminated;
    return whole;
  });
  if (!whole) return std::nullopt;
  std::size_t count = 0;
  for (std::size_t at = notes_.find(what, 0); at != npos; at = notes_.find(what, at)) {
    replace({at, lineAt(view(), at).next()}, {});
    ++count;
  }
  settle();
  return count;
}

void NotedText::finishPass() {
  pass_.finish();
  notes_.settle();
}

void NotedText::noteReplaced(const Span& span, const Span& line) {
  notes_.replaced(span, true, text_.view().substr(line.begin, line.end - line.begin));
  notes_.settle();
}

}  // namespace sdpneg
