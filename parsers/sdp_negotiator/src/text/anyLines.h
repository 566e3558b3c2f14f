#ifndef SDP_TEXT_ANY_LINES_H
#define SDP_TEXT_ANY_LINES_H

#include <algorithm>
#include <string_view>

#include "text/search.h"

namespace sdpneg {

/// A line however it ends: at CR LF, LF or a lone CR.
struct AnyLine {
  std::string_view content;
  std::string_view whole;  ///< with its end

  std::string_view end() const { return whole.substr(content.size()); }
};

/// Takes a text apart line by line. Linear, whatever the lines end in.
class AnyLines {
 public:
  explicit AnyLines(std::string_view text) : text_(text) {}

  bool atEnd() const { return at_ == text_.size(); }
  /// What has not been taken.
  std::string_view rest() const { return text_.substr(at_); }

  AnyLine next() {
    if (lf_ < at_ || at_ == 0) lf_ = std::min(text_.find('\n', at_), text_.size());
    const std::size_t begin = at_;
    const std::size_t end = std::min(text_.substr(begin, lf_ - begin).find('\r'), lf_ - begin) + begin;
    const bool crLf = end + 1 == lf_ && lf_ != text_.size();
    at_ = std::min(end + (crLf ? 2 : 1), text_.size());
    return {text_.substr(begin, end - begin), text_.substr(begin, at_ - begin)};
  }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t lf_ = 0;  ///< the next LF at or behind `at_`, or the text's end; outdated when it lies in front
};

}  // namespace sdpneg

#endif
