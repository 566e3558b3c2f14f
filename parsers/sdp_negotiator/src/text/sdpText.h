#ifndef SDP_TEXT_H
#define SDP_TEXT_H

#include <cstddef>
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

/// What became of an edit. A refused edit changes nothing.
enum class Edit { done, noRoom };

/// A caller's text buffer with its capacity. Before and after every operation the text ends in NUL within it.
class SdpText {
 public:
  /// Adopts a buffer that holds a text.
  explicit SdpText(char* text, std::size_t capacity = MAX_SDP_PROTOCOL_DATA_SIZE)
      : text_(text), capacity_(capacity), length_(text != nullptr ? strnlen(text, capacity) : capacity) {}

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

  /// Erases span after span in one pass.
  /// @param next gives the first span at or behind an offset of a text; what stands before that offset is not to
  ///             be looked at. Nothing ends the pass.
  /// @return the number of spans
  template <typename Next>
  std::size_t eraseEach(Next next);

  /// Removes every line that holds one of the prefixes, wherever in the line, from the match through its LF.
  /// Each time the first prefix in the list's order that occurs at all goes, at its first place; a removal
  /// may make a new match across its seam, which goes too. A match in a line without LF ends the removal.
  /// Linear in the text for each prefix.
  /// @return the number of lines removed
  std::size_t removeLines(std::span<const std::string_view> prefixes);

 private:
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

template <typename Next>
std::size_t SdpText::eraseEach(Next next) {
  if (!usable()) return 0;
  std::size_t kept = 0;
  std::size_t rest = 0;
  std::size_t count = 0;
  const auto keepUpTo = [&](std::size_t end) {
    moveDown(kept, rest, end - rest);
    kept += end - rest;
    rest = end;
  };
  for (std::optional<Span> span = next(view(), rest); span; span = next(view(), rest)) {
    keepUpTo(span->begin);
    rest = span->end;
    ++count;
  }
  keepUpTo(length_);
  end(kept);
  return count;
}

}  // namespace sdpneg

#endif
