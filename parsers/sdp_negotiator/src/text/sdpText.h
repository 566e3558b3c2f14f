#ifndef SDP_TEXT_H
#define SDP_TEXT_H

#include <cstddef>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>

#include "sdpDataDefinitions.h"
#include "text/search.h"

// The one place that writes into an SDP text. An edit finds what it changes in `view()`, names it by offsets,
// and has it changed here; offsets outlive an edit, views and lines do not.

namespace sdpneg {

/// A half-open range of byte offsets.
struct Span {
  std::size_t begin;
  std::size_t end;
};

/// A piece of text in the place of a span.
struct Change {
  Span span;
  std::string_view inserted;
};

/// What a change takes of the room of a text: nothing where the text does not grow.
inline std::size_t takes(const Change& change) {
  const std::size_t old = change.span.end - change.span.begin;
  return change.inserted.size() > old ? change.inserted.size() - old : 0;
}

/// What became of an edit. A refused edit changes nothing.
enum class Edit { done, noRoom };

/// A caller's text buffer with its capacity. Before and after every operation the text ends in NUL within it.
class SdpText {
 public:
  /// Adopts a buffer that holds a text.
  explicit SdpText(char* text, std::size_t capacity = MAX_SDP_PROTOCOL_DATA_SIZE)
      : text_(text), capacity_(capacity), length_(text != nullptr ? strnlen(text, capacity) : capacity) {}

  /// The same for one whose length is known, in front of a NUL within the usual capacity.
  static SdpText ofLength(char* text, std::size_t length) {
    return {text, MAX_SDP_PROTOCOL_DATA_SIZE, length};
  }

  /// False for a null buffer and for one without NUL in its capacity: such a text is neither read nor
  /// written.
  bool usable() const { return length_ < capacity_; }
  /// Whether there is no buffer at all.
  bool isNull() const { return text_ == nullptr; }

  std::string_view view() const { return usable() ? std::string_view(text_, length_) : std::string_view(); }
  std::size_t size() const { return usable() ? length_ : 0; }
  /// Characters that can still be added.
  std::size_t room() const { return usable() ? capacity_ - 1 - length_ : 0; }

  /// Puts `inserted` in the place of `span`; `inserted` may lie in this very text.
  Edit replace(Span span, std::string_view inserted);
  Edit insert(std::size_t at, std::string_view inserted) { return replace({at, at}, inserted); }
  Edit append(std::string_view inserted) { return insert(size(), inserted); }
  void erase(Span span) { replace(span, {}); }
  void truncate(std::size_t length) { erase({length, size()}); }

  class Pass;

  /// Erases span after span in one pass.
  /// @param next gives the first span at or behind an offset of a text; what stands before that offset is not to
  ///             be looked at. Nothing ends the pass.
  /// @return the number of spans
  template <typename Next>
  std::size_t eraseEach(Next next);

  /// Makes change after change in one pass, found in a copy of the text as it is now.
  /// @param next gives the first change at or behind an offset of the copy. It is also given the room that the changes
  ///             so far leave, and gives none that takes more. What is inserted may lie in the copy. Nothing ends the
  ///             pass.
  template <typename Next>
  void changeEach(Next next);

  /// Removes every line that holds one of the prefixes, wherever in the line, from the match through its LF.
  /// Each time the first prefix in the list's order that occurs at all goes, at its first place; a removal
  /// may make a new match across its seam, which goes too. A match in a line without LF ends the removal.
  /// Linear in the text for each prefix.
  /// @return the number of lines removed
  std::size_t removeLines(std::span<const std::string_view> prefixes);

 private:
  SdpText(char* text, std::size_t capacity, std::size_t length)
      : text_(text), capacity_(capacity), length_(length) {}

  class Removal;

  void put(Span span, std::string_view inserted);
  Edit putAside(Span span, std::string_view inserted);
  void moveDown(std::size_t to, std::size_t from, std::size_t count);
  void end(std::size_t length);
  bool holds(std::string_view text) const;

  char* text_;
  std::size_t capacity_;
  std::size_t length_;
};

/// Edits of a text from its beginning to its end, each behind the one before, by the offsets that stood before the first
/// of them. They are linear in the text together: what stands between two edits is moved once, and what stands behind the
/// last one only when room has to be made. In between the text itself is not to be looked at.
class SdpText::Pass {
 public:
  explicit Pass(SdpText& text) : text_(text) {}

  /// The text as it was before the first edit; what stands in front of the end of the last one is not to be looked at.
  std::string_view view() const {
    return text_.usable() ? std::string_view(text_.text_ + shift_, text_.length_) : std::string_view();
  }

  /// What the edits so far leave for those that take more than they give.
  std::size_t room() const {
    return text_.usable() ? text_.capacity_ - 1 - kept_ - (text_.length_ - rest_) : 0;
  }

  /// @param span     behind those before
  /// @param inserted not of this very text
  Edit replace(Span span, std::string_view inserted);

  /// Whether there has been an edit.
  bool hasBegun() const { return kept_ != 0 || rest_ != 0; }

  /// Ends the pass. Another one may follow, by the offsets that stand then.
  void finish();

 private:
  void makeRoom(std::size_t size, std::size_t from);

  SdpText& text_;
  std::size_t kept_ = 0;   ///< characters of the edited text, in front of a gap
  std::size_t rest_ = 0;   ///< the offset of what is left
  std::size_t shift_ = 0;  ///< how far what is left stands behind its offset
};

template <typename Next>
std::size_t SdpText::eraseEach(Next next) {
  if (!usable()) return 0;
  Pass pass(*this);
  std::size_t rest = 0;
  std::size_t count = 0;
  for (std::optional<Span> span = next(view(), rest); span; span = next(view(), rest)) {
    pass.replace(*span, {});
    rest = span->end;
    ++count;
  }
  pass.finish();
  return count;
}

template <typename Next>
void SdpText::changeEach(Next next) {
  char copied[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (!usable() || length_ >= sizeof copied) return;
  std::memcpy(copied, text_, length_ + 1);
  const std::string_view text(copied, length_);
  Pass pass(*this);
  std::size_t rest = 0;
  for (std::optional<Change> change = next(text, rest, pass.room());
       change && pass.replace(change->span, change->inserted) == Edit::done;
       change = next(text, rest, pass.room())) {
    rest = change->span.end;
  }
  pass.finish();
}

}  // namespace sdpneg

#endif
