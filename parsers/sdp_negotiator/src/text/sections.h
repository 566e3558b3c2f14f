#ifndef SDP_TEXT_SECTIONS_H
#define SDP_TEXT_SECTIONS_H

#include <concepts>
#include <string_view>
#include <type_traits>

#include "text/lines.h"
#include "text/sdpText.h"

// Walks over the media sections of a text. Edits differ in what they take for an m-line, and the difference is part of
// what they do, so each way to look for one has a name. Nothing is kept between two looks: an edit may change the text
// in between, and a match across a seam of its own counts.

namespace sdpneg {

/// What an m-line begins with.
inline constexpr std::string_view kMLine = "m=";

/// The next m-line at a line's start, behind the LF at or behind `from`. The text's first line never counts.
inline std::size_t nextMLine(std::string_view text, std::size_t from = 0) {
  return findLine(text, kMLine, from);
}

/// The next one of a medium: what follows "m=" begins with its name.
inline std::size_t nextMLineOf(std::string_view text, std::string_view media, std::size_t from = 0) {
  const std::size_t lf = findSought(text, {"\nm=", media}, from);
  return lf != npos ? lf + 1 : npos;
}

/// The next "m=" wherever it stands, inside a value too.
inline std::size_t nextMAnywhere(std::string_view text, std::size_t from = 0) {
  return findAnywhere(text, kMLine, from);
}

/// The next one behind that at `mLine`.
inline std::size_t nextMAnywhereBehind(std::string_view text, std::size_t mLine) {
  return nextMAnywhere(text, mLine + kMLine.size());
}

/// The next one of a medium, wherever "m=" and the medium's name stand.
inline std::size_t nextMAnywhereOf(std::string_view text, std::string_view media, std::size_t from = 0) {
  return findSought(text, {kMLine, media}, from);
}

/// Where the section of an m-line ends: at the next m-line at a line's start, else with the text.
inline std::size_t sectionEnd(std::string_view text, std::size_t mLine) {
  return orEnd(nextMLine(text, mLine), text);
}

/// Where a section ends for readers that take any "m=" behind `from` for the next one: there, else with the text.
inline std::size_t sectionEndAnywhere(std::string_view text, std::size_t from) {
  return orEnd(nextMAnywhere(text, from), text);
}

/// What stands before the first m-line at a line's start; all of a text without one.
inline std::string_view sessionPart(std::string_view text) { return text.substr(0, nextMLine(text)); }

/// A text as it is now.
inline std::string_view viewOf(const SdpText& text) { return text.view(); }
inline std::string_view viewOf(std::string_view text) { return text; }

/// Visits the m-lines at a line's start that a search finds, one after the other. A visitor may edit the text, from its
/// m-line on; the next search begins there.
/// @param text  an `SdpText`, or the view of a text that is only read
/// @param visit takes the m-line's offset; one that returns false ends the walk
template <typename Text, typename Find, std::invocable<std::size_t> Visit>
void forEachFound(const Text& text, Find find, Visit visit) {
  for (std::size_t at = find(viewOf(text), 0); at != npos; at = find(viewOf(text), at)) {
    if constexpr (std::is_same_v<std::invoke_result_t<Visit, std::size_t>, bool>) {
      if (!visit(at)) return;
    } else {
      visit(at);
    }
  }
}

/// Visits all m-lines at a line's start.
template <typename Text, std::invocable<std::size_t> Visit>
void forEachMLine(const Text& text, Visit visit) {
  forEachFound(
      text, [](std::string_view view, std::size_t from) { return nextMLine(view, from); }, visit);
}

/// Visits those of a medium.
template <typename Text, std::invocable<std::size_t> Visit>
void forEachMLineOf(const Text& text, std::string_view media, Visit visit) {
  forEachFound(
      text, [media](std::string_view view, std::size_t from) { return nextMLineOf(view, media, from); },
      visit);
}

}  // namespace sdpneg

#endif
