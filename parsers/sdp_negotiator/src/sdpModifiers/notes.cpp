#include "sdpModifiers/notes.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "sdpModifiers/attributeRemoval.h"
#include "text/blocks.h"
#include "vocabulary.h"

// All that is noted begins with a letter and an equals sign, and the attributes with few pairs of letters behind it, so that
// few places are looked at one by one.

namespace sdpneg {

namespace {

bool isLineStart(std::string_view text, std::size_t at) { return at > 0 && text[at - 1] == '\n'; }

/// Where the value of a line begins.
constexpr std::size_t kPrefix = 2;

/// What is looked at to tell what may be noted: a letter, the sign, and the second letter of an attribute's name.
constexpr std::size_t kLookedAt = 4;

/// Where in sixteen places something may begin that is noted. Few attributes share their second letter with those that are:
/// candidate, crypto, ice-, inactive, key-mgmt, recvonly, remote-candidates, sendonly and sendrecv.
/// @param text sixteen characters of it and three more can be read
[[gnu::always_inline]] inline blocks::Block mayBeNotedAt(const char* text) {
  using namespace blocks;
  const Block letter = at(text);
  const Block second = at(text + kLookedAt - 1);
  // Without the bits in which they differ, "a", "c" and "e" are one.
  constexpr auto kShared = static_cast<char>(~(('a' ^ 'c') | ('a' ^ 'e')));
  const Block name = where(second & of(kShared), 'a') | where(second, 'n') | where(second, 'r');
  const Block line = where(letter, 'm') | where(letter, 'c') | (where(letter, 'a') & name);
  return where(at(text + 1), '=') & line;
}

/// The places where something may begin that is noted, for one piece of a text after the other. They are collected before
/// one is looked at, without a branch for each: nobody can foresee where a text has them, and a processor that guesses
/// wrong loses more time than a line takes.
class Candidates {
 public:
  explicit Candidates(std::string_view text) : text_(text) {}

  bool atEnd() const { return looked_ >= text_.size(); }

  /// Those of the next piece, in their order.
  std::span<const std::uint16_t> next() {
    count_ = 0;
    for (int i = 0; i < kWindows && looked_ + kNeeded <= text_.size(); ++i) takeWindow(looked_);
    if (looked_ + kNeeded > text_.size()) takeRest();
    return {places_, count_};
  }

 private:
  static constexpr int kWindows = 16;
  static constexpr std::size_t kNeeded = blocks::kWindow + kLookedAt - 1;
  static constexpr std::uint64_t kLast = std::uint64_t{1} << (blocks::kWindow - 1);

  void takeWindow(std::size_t at) {
    using namespace blocks;
    const auto bits = [&](std::size_t offset) {
      return std::uint64_t{bitsOf(mayBeNotedAt(text_.data() + at + offset))} << offset;
    };
    std::uint64_t left = (bits(0) | bits(kSize) | bits(2 * kSize) | bits(3 * kSize)) >> (looked_ - at);
    for (int i = 0; i < 2; ++i) {
      places_[count_] = static_cast<std::uint16_t>(looked_ + firstOf(left | kLast));
      count_ += (left | (0 - left)) >> (kWindow - 1);  // 1 where there was one
      left &= left - 1;
    }
    for (; left != 0; left &= left - 1) {
      places_[count_++] = static_cast<std::uint16_t>(looked_ + firstOf(left));
    }
    looked_ = at + kWindow;
  }

  void takeRest() {
    // The last window has places that have been looked at.
    if (text_.size() >= kNeeded && looked_ + kLookedAt <= text_.size()) takeWindow(text_.size() - kNeeded);
    for (; looked_ < text_.size(); ++looked_) {
      if (looked_ + 1 < text_.size() && text_[looked_ + 1] == '=')
        places_[count_++] = static_cast<std::uint16_t>(looked_);
    }
  }

  std::string_view text_;
  std::size_t looked_ = 0;
  std::size_t count_ = 0;
  /// As many as all characters of the pieces can be, which is more than there are.
  std::uint16_t places_[(kWindows + 2) * blocks::kWindow];
};

/// Whether the name of an attribute that is noted may begin at an offset: few other letters have the bits that theirs share.
bool mayBeginName(std::string_view text, std::size_t at) {
  constexpr auto kShared =
      static_cast<unsigned char>(~(('c' ^ 'i') | ('c' ^ 'k') | ('c' ^ 'r') | ('c' ^ 's')));
  return at < text.size() && (static_cast<unsigned char>(text[at]) & kShared) == ('c' & kShared);
}

/// Whether a direction of a medium stands at an offset.
bool isDirectionAt(std::string_view text, std::size_t at) {
  if (at + kDirectionLength > text.size()) return false;
  std::uint64_t word = 0;
  std::memcpy(&word, text.data() + at, sizeof word);
  const auto is = [word](const char(&name)[kDirectionLength + 1]) {
    std::uint64_t of = 0;
    std::memcpy(&of, name, sizeof of);
    return static_cast<unsigned int>(word == of);
  };
  return (is("sendrecv") | is("sendonly") | is("recvonly") | is("inactive")) != 0;
}

}  // namespace

void Notes::take(std::string_view text) {
  count_ = moved_ = near_ = 0;
  difference_ = 0;
  kinds_ = media_ = 0;
  complete_ = true;
  Candidates candidates(text);
  while (!candidates.atEnd()) {
    for (const std::size_t at : candidates.next()) noteAt(text, at);
  }
}

void Notes::noteAt(std::string_view text, std::size_t at) {
  const char letter = text[at];
  if (letter == 'a' && !mayBeginName(text, at + kPrefix)) return;
  const bool direction = letter == 'a' && isDirectionAt(text, at + kPrefix);
  if (letter != 'm' && letter != 'c' && !direction) {
    if (letter == 'a') noteAttribute(text.substr(at), at);
    return;
  }
  // Without a branch for what most texts have in turn. One that counts is not overwritten by the next.
  const bool counts = isLineStart(text, at);
  const Noted what = letter == 'm' ? Noted::mLine : letter == 'c' ? Noted::cLine : Noted::direction;
  notes_[count_] = {static_cast<std::uint16_t>(at), what};
  count_ += counts ? 1 : 0;
  kinds_ |= counts ? bitOf(what) : 0U;
  const unsigned int medium = at + kPrefix < text.size() ? bitOf(text[at + kPrefix]) : 0U;
  media_ |= counts && letter == 'm' ? medium : 0U;
}

void Notes::noteAttribute(std::string_view attribute, std::size_t at) {
  switch (attribute.size() > kPrefix ? attribute[kPrefix] : '\0') {
    case 'k':
      if (startsWith(attribute, kKeyManagement)) add(at, Noted::keyManagement);
      break;
    case 'c':
    case 'i':
    case 'r':
      if (startsWith(attribute, kCrypto)) {
        add(at, Noted::crypto);
      } else if (isIceAttribute(attribute)) {
        add(at, Noted::ice);
      }
      break;
    default:
      break;
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
