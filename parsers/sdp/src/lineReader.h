#ifndef SDP_LINE_READER_H
#define SDP_LINE_READER_H

#include <algorithm>
#include <string_view>

#include "pieces.h"

// Taking a text apart into lines.

namespace sdpcodec {

/// What every line must end in where a CR stands that ends none.
inline constexpr const char* kLineEndWanted = "CR LF or LF at the line's end";

/// Takes a text apart into lines. A line ends at CR LF, LF or the text's end, in front of which a CR counts as well.
/// Any other CR stands in the line and is told: readers that take it for a line end would see lines that others do not.
class LineReader {
 public:
  explicit LineReader(std::string_view text)
      : begin_(text.data()), next_(begin_), end_(begin_ + text.size()), line_(text.substr(0, 0)) {}

  /// Goes to the next line, empty ones included.
  /// @return false at the end of the text
  bool next() {
    if (next_ == end_) return false;
    // An empty line is not worth a window.
    if (isControl(*next_) && endsAt(next_)) return true;
    for (const char* window = next_;; window += kWindow) {
      for (std::uint64_t ends = possibleEnds(window); ends != 0; ends &= ends - 1) {
        if (endsAt(window + std::countr_zero(ends))) return true;
      }
      if (static_cast<std::size_t>(end_ - window) <= kWindow) return take(end_, end_);
    }
  }

  /// The line without its end.
  std::string_view line() const { return line_; }
  /// The first CR within the lines so far, null when there is none.
  const char* loneCr() const { return loneCr_; }
  /// The line's number, from 1; 0 in front of the first one.
  unsigned int number() const {
    return next_ == begin_ ? 0 : 1 + static_cast<unsigned int>(std::count(begin_, line_.data(), '\n'));
  }
  std::size_t startOffset() const { return static_cast<std::size_t>(line_.data() - begin_); }
  /// The offset behind the line's end.
  std::size_t endOffset() const { return static_cast<std::size_t>(next_ - begin_); }
  const char* position() const { return next_; }
  const char* textEnd() const { return end_; }

 private:
  static constexpr auto kControlsOf = [](blocks::Block block) { return blocks::whereUpTo(block, '\r'); };

  // Up to CR, of which only tabs are common within lines.
  static bool isControl(char c) { return static_cast<unsigned char>(c) <= '\r'; }

  bool take(const char* lineEnd, const char* next) {
    line_ = {next_, static_cast<std::size_t>(lineEnd - next_)};
    next_ = next;
    return true;
  }

  // Ends the line where a control character stands, if it is one that ends lines.
  bool endsAt(const char* at) {
    if (*at == '\n') return take(at, at + 1);
    if (*at != '\r') return false;
    if (at + 1 == end_) return take(at, end_);
    if (at[1] == '\n') return take(at, at + 2);
    if (loneCr_ == nullptr) loneCr_ = at;
    return false;
  }

  // The places of control characters in a window. Near the text's end it is one that ends there, without the
  // characters in front.
  std::uint64_t possibleEnds(const char* window) const {
    const auto left = static_cast<std::size_t>(end_ - window);
    if (left >= kWindow) return blocks::bitsOfWindow(window, kControlsOf);
    if (static_cast<std::size_t>(end_ - begin_) >= kWindow)
      return blocks::bitsOfWindow(end_ - kWindow, kControlsOf) >> (kWindow - left);
    return windowOf(window, left, kControlsOf);
  }

  const char* begin_;
  const char* next_;
  const char* end_;
  std::string_view line_;
  const char* loneCr_ = nullptr;
};

}  // namespace sdpcodec

#endif
