#ifndef SDP_TEXT_LINES_H
#define SDP_TEXT_LINES_H

#include "text/search.h"

// Finding lines and sections. Edits differ in how they search, and the difference is part of what they do:
// "anywhere" takes a match inside another line's value too, "line" only one that follows an LF, so that a
// match in the text's first line is not seen.

namespace sdpneg {

/// A line by offsets. The only place that knows CR LF and LF.
struct Line {
  std::size_t begin;
  std::size_t lf;  ///< its LF; the text's end when it has none
  bool terminated;

  /// Behind the line's LF.
  std::size_t next() const { return terminated ? lf + 1 : lf; }
};

/// The first LF at or behind an offset.
inline std::size_t findLf(std::string_view text, std::size_t from) {
  // Short lines are not worth a call.
  constexpr std::size_t kNear = 8;
  for (std::size_t at = from; at < from + kNear; ++at) {
    if (at >= text.size()) return npos;
    if (text[at] == '\n') return at;
  }
  return text.find('\n', from + kNear);
}

/// The line from `begin`, which need not be a line's start, through the next LF.
inline Line lineAt(std::string_view text, std::size_t begin) {
  const std::size_t lf = findLf(text, begin);
  return {begin, lf == npos ? text.size() : lf, lf != npos};
}

/// The line's text without LF and without a CR in front of it or of the text's end.
inline std::string_view content(std::string_view text, const Line& line) {
  const bool cr = line.lf > line.begin && text[line.lf - 1] == '\r';
  return text.substr(line.begin, line.lf - line.begin - (cr ? 1 : 0));
}

/// The first place of a piece of text, inside a value too, as std::string_view::find has it.
inline std::size_t findAnywhere(std::string_view text, std::string_view piece, std::size_t from = 0) {
  return findPiece(text, piece, from);
}

/// The start of the first line that begins with `prefix` and whose LF in front stands at or behind `from`.
/// @return npos when there is none; the text's first line never counts
inline std::size_t findLine(std::string_view text, std::string_view prefix, std::size_t from = 0) {
  const std::size_t lf = findSought(text, {"\n", prefix}, from);
  return lf != npos ? lf + 1 : npos;
}

/// An offset, or the text's end where nothing was found.
inline std::size_t orEnd(std::size_t offset, std::string_view text) {
  return offset == npos ? text.size() : offset;
}

/// What goes in front of a line that is appended to a text: CR LF where the text's last line has no LF.
inline std::string_view missingLineEnd(std::string_view text) {
  return text.empty() || text.back() == '\n' ? std::string_view() : std::string_view("\r\n");
}

}  // namespace sdpneg

#endif
