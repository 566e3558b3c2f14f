#ifndef SDP_MODIFIERS_NOTES_H
#define SDP_MODIFIERS_NOTES_H

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "sdpModifiers/changes.h"
#include "text/sections.h"
#include "trace.h"

// Where a text has the lines that many edits look for, noted in one pass, so that an edit with nothing to do costs nothing
// and the others go where they have to.

namespace sdpneg {

/// What is noted. Lines count at a line's start, which the text's first one is not; attributes wherever they stand, inside
/// a value too.
enum class Noted : std::uint16_t {
  mLine,
  cLine,
  direction,  ///< a line with an attribute of one
  keyManagement,
  crypto,
  ice  ///< an attribute that is removed as ICE
};

/// The notes of a text, which is kept elsewhere.
class Notes {
 public:
  explicit Notes(std::string_view text) { take(text); }

  /// Notes another text, or the same one anew.
  void take(std::string_view text);

  /// The first one at or behind `from` and in front of `end`; npos without one.
  std::size_t find(Noted what, std::size_t from, std::size_t end = npos) const;
  std::size_t size() const { return count_; }
  /// The first one of all, whatever it is; npos without one.
  std::size_t first() const { return count_ != 0 ? notes_[0].at : npos; }
  /// The last one of a kind; npos without one.
  std::size_t last(Noted what) const;
  /// False when there is none; edits may have taken what there was.
  bool mayHave(Noted what) const { return (kinds_ & bitOf(what)) != 0 || !complete_; }
  /// False when an edit has put in what might have to be noted.
  bool isComplete() const { return complete_; }
  /// False when there is no m-line of a medium.
  bool mayHaveMedia(std::string_view name) const {
    return name.empty() ? mayHave(Noted::mLine) : (media_ & bitOf(name[0])) != 0;
  }
  /// Visits those at or behind `from`, which the text may be edited from on meanwhile.
  /// @param visit takes the offset; false ends the walk
  template <std::predicate<std::size_t> Visit>
  void each(Noted what, std::size_t from, Visit visit) const;
  /// Visits all of them, whatever they are, with what they are.
  template <typename Visit>
  void eachOfAll(Visit visit) const {
    for (std::size_t i = 0; i < count_; ++i) visit(notes_[i].what, std::size_t{notes_[i].at});
  }

  // In step with edits of the text, each behind the one before, by the offsets in front of the first of them. Until
  // `settle` only what stands behind the last edit is to be asked for. What edits put in is not noted, but `mayHave` knows.

  /// Tells that a piece stands in the place of a span. It holds no LF but at its end. Where nothing takes the place of
  /// what ends a line, that began one, too.
  void replaced(const Span& span, bool endsLine, std::string_view inserted);
  /// Tells that the edits have ended: all offsets are those of the new text.
  void settle();

 private:
  struct Note {
    std::uint16_t at;
    Noted what;
  };

  static unsigned int bitOf(Noted what) { return 1U << static_cast<unsigned int>(what); }
  /// Of the first letter of a medium; others may share it.
  static unsigned int bitOf(char letter) { return 1U << (static_cast<unsigned char>(letter) & 0x1FU); }
  void add(std::size_t at, Noted what) {
    notes_[count_++] = {static_cast<std::uint16_t>(at), what};
    kinds_ |= bitOf(what);
  }
  std::size_t firstFrom(std::size_t from) const;
  void noteAt(std::string_view text, std::size_t at);
  void noteAttribute(std::string_view attribute, std::size_t at);
  void moveUpTo(std::size_t end);
  void drop(std::size_t first, std::size_t behind);

  /// Not one takes less than an LF, a letter and an equals sign.
  static constexpr std::size_t kMost = MAX_SDP_PROTOCOL_DATA_SIZE / 3;

  std::size_t count_ = 0;
  std::size_t moved_ = 0;          ///< notes that have the offsets of the new text
  std::ptrdiff_t difference_ = 0;  ///< what the others are to be moved by
  mutable std::size_t near_ = 0;   ///< where the last search began
  unsigned int kinds_ = 0;
  unsigned int media_ = 0;
  bool complete_ = true;
  Note notes_[kMost + 1];  ///< one more is written in vain
};

// Searches follow each other through the text, so that it is near where the last one began.
inline std::size_t Notes::firstFrom(std::size_t from) const {
  std::size_t i = std::clamp(near_, moved_, count_);
  while (i > moved_ && notes_[i - 1].at >= from) --i;
  while (i < count_ && notes_[i].at < from) ++i;
  return near_ = i;
}

inline std::size_t Notes::find(Noted what, std::size_t from, std::size_t end) const {
  if (!mayHave(what)) return npos;
  for (std::size_t i = firstFrom(from); i < count_ && notes_[i].at < end; ++i) {
    if (notes_[i].what == what) return notes_[i].at;
  }
  return npos;
}

template <std::predicate<std::size_t> Visit>
void Notes::each(Noted what, std::size_t from, Visit visit) const {
  for (std::size_t i = firstFrom(from); i < count_; ++i) {
    if (notes_[i].what == what && !visit(notes_[i].at)) return;
  }
}

/// A text with notes of it, for edits in a row. Each goes through the text from its beginning to its end, and settles then.
class NotedText {
 public:
  explicit NotedText(SdpText& text) : text_(text), pass_(text), notes_(text.view()) {}

  /// The text, for edits that need no notes; in between `replace` and `settle` it is not to be looked at.
  SdpText& text() { return text_; }
  const SdpText& text() const { return text_; }
  const Notes& notes() const { return notes_; }
  /// Whether trace lines are written, asked once for all edits.
  bool tracing() const { return tracing_; }

  /// See `SdpText::Pass`.
  std::string_view view() const { return pass_.view(); }
  /// @param inserted without LF but at its end
  Edit replace(Span span, std::string_view inserted);
  Edit insert(std::size_t at, std::string_view inserted) { return replace({at, at}, inserted); }
  void settle() {
    if (pass_.hasBegun()) finishPass();
  }
  /// Whether there are few enough notes to plan a change for each.
  bool isPlannable() const { return notes_.size() <= PlannedChanges::kMost; }
  /// Makes changes that are planned, all of them or none. The notes do not follow, and are not to be asked any more.
  /// @return false when there is no room for them
  bool make(const PlannedChanges& changes) {
    const bool can = changes.areHeld() && changes.fitInto(text_);
    if (can) changes.makeIn(text_);
    return can;
  }

  /// Notes the text anew, for edits that needed no notes and have changed it.
  void noteAgain() { notes_.take(text_.view()); }
  /// Removes the lines that were noted with an attribute, in one pass.
  /// @return how many; nothing, with nothing removed, when the notes do not tell it all: one does not begin or end its
  ///         line, so that its removal makes other lines
  std::optional<std::size_t> removeLines(Noted what);
  /// Notes what such an edit did instead, when it put a line in the place of a span that is not empty.
  /// @param line in the text
  void noteReplaced(const Span& span, const Span& line);

 private:
  void finishPass();

  SdpText& text_;
  SdpText::Pass pass_;
  bool tracing_ = isTracing();
  Notes notes_;
};

/// As for a text without notes.
inline std::size_t nextMLine(const Notes& notes, std::size_t from = 0) {
  return notes.find(Noted::mLine, from + 1);
}

inline std::size_t sectionEnd(const NotedText& text, std::size_t mLine) {
  return orEnd(nextMLine(text.notes(), mLine), text.view());
}

/// Visits the m-lines of a medium, and settles when there is one. A visitor may edit the text from its m-line on.
/// @param from  the LF of the first one
/// @param visit takes the m-line's offset; one that returns false ends the walk
template <std::predicate<std::size_t> Visit>
void forEachMLineOf(NotedText& text, std::string_view media, Visit visit, std::size_t from = 0) {
  if (!text.notes().mayHaveMedia(media)) return;
  text.notes().each(Noted::mLine, from + 1, [&](std::size_t at) {
    return !startsWith(text.view().substr(at + kMLine.size()), media) || visit(at);
  });
  text.settle();
}

}  // namespace sdpneg

#endif
