#ifndef SDP_TEXT_ANY_LINES_H
#define SDP_TEXT_ANY_LINES_H

#include <string_view>

#include "text/lines.h"

// Taking a text apart into lines, whichever way they end.

namespace sdpneg {

/// A line with what it ends in: CR LF, LF, or a CR or nothing at the text's end.
struct AnyLine {
  std::string_view content;
  std::string_view whole;  ///< with its end

  std::string_view end() const { return whole.substr(content.size()); }
  /// What it must end in when more lines are to follow it.
  std::string_view endForMore() const { return whole.ends_with('\n') ? end() : std::string_view("\r\n"); }
};

/// Takes a text apart line by line.
class AnyLines {
 public:
  explicit AnyLines(std::string_view text) : text_(text) {}

  bool atEnd() const { return text_.empty(); }
  /// What has not been taken.
  std::string_view rest() const { return text_; }

  AnyLine next() {
    const Line line = lineAt(text_, 0);
    const AnyLine taken = {sdpneg::content(text_, line), text_.substr(0, line.next())};
    text_.remove_prefix(line.next());
    return taken;
  }

 private:
  std::string_view text_;
};

}  // namespace sdpneg

#endif
