#ifndef SDP_LINE_READER_H
#define SDP_LINE_READER_H

#include <cstring>
#include <string_view>

// Taking a text apart into lines.

namespace sdpcodec {

/// What every line must end in where a CR stands that ends none.
inline constexpr const char* kLineEndWanted = "CR LF or LF at the line's end";

/// Takes a text apart into lines. A line ends at CR LF, LF or the text's end, in front of which a CR counts as well.
/// Any other CR stands in the line and is told: readers that take it for a line end would see lines that others do not.
class LineReader {
 public:
  explicit LineReader(std::string_view text)
      : begin_(text.data()),
        next_(begin_),
        end_(begin_ + text.size()),
        cr_(find('\r')),
        lf_(find('\n')),
        line_(text.substr(0, 0)) {}

  /// Goes to the next line, empty ones included.
  /// @return false at the end of the text
  bool next() {
    if (next_ == end_) return false;
    if (cr_ < next_) cr_ = find('\r');
    if (lf_ < next_) lf_ = find('\n');
    const char* lineEnd = lf_ != next_ && lf_[-1] == '\r' ? lf_ - 1 : lf_;
    line_ = {next_, static_cast<std::size_t>(lineEnd - next_)};
    loneCr_ = cr_ < lineEnd ? cr_ : nullptr;
    next_ = lf_ != end_ ? lf_ + 1 : end_;
    ++number_;
    return true;
  }

  /// The line without its end.
  std::string_view line() const { return line_; }
  /// The first CR within the line, null when there is none.
  const char* loneCr() const { return loneCr_; }
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
  const char* cr_;  // the next CR at or behind next_, else the text's end
  const char* lf_;  // the next LF at or behind next_, else the text's end
  std::string_view line_;
  const char* loneCr_ = nullptr;
  unsigned int number_ = 0;
};

}  // namespace sdpcodec

#endif
