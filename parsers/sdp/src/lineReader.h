#ifndef SDP_LINE_READER_H
#define SDP_LINE_READER_H

#include <cstring>
#include <string_view>

namespace sdp {

/// The length of the line end that a text begins with: CR LF, LF, a lone CR, or the text's end.
inline std::size_t lineEndLength(std::string_view text) {
  if (text.empty()) return 0;
  return text[0] == '\r' && text.size() > 1 && text[1] == '\n' ? 2 : 1;
}

/// Takes a text apart into lines.
class LineReader {
 public:
  explicit LineReader(std::string_view text)
      : begin_(text.data()), next_(begin_), end_(begin_ + text.size()), cr_(find('\r')), lf_(find('\n')) {}

  /// Goes to the next line, empty ones included.
  /// @return false at the end of the text
  bool next() {
    if (next_ == end_) return false;
    if (cr_ < next_) cr_ = find('\r');
    if (lf_ < next_) lf_ = find('\n');
    const char* lineEnd = cr_ < lf_ ? cr_ : lf_;
    line_ = {next_, static_cast<std::size_t>(lineEnd - next_)};
    next_ = lineEnd + lineEndLength({lineEnd, static_cast<std::size_t>(end_ - lineEnd)});
    ++number_;
    return true;
  }

  /// The line without its end.
  std::string_view line() const { return line_; }
  unsigned int number() const { return number_; }
  std::size_t startOffset() const { return static_cast<std::size_t>(line_.data() - begin_); }
  /// The offset behind the line's end.
  std::size_t endOffset() const { return static_cast<std::size_t>(next_ - begin_); }
  const char* position() const { return next_; }

 private:
  const char* find(char c) const {
    const void* found = std::memchr(next_, c, static_cast<std::size_t>(end_ - next_));
    return found != nullptr ? static_cast<const char*>(found) : end_;
  }

  const char* begin_;
  const char* next_;
  const char* end_;
  const char* cr_;  // the next CR at or behind next_, else the text's end; the same for the LF
  const char* lf_;
  std::string_view line_;
  unsigned int number_ = 0;
};

}  // namespace sdp

#endif
