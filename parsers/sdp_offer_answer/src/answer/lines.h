#ifndef SDP_OFFER_ANSWER_LINES_H
#define SDP_OFFER_ANSWER_LINES_H

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <new>
#include <string>
#include <string_view>

#include "plainText.h"
#include "sdpDocument.h"

// Writing the lines of an answer.

namespace sdp::exchange {

/// What is thrown when the text would be longer than a document may be.
struct TextTooLong {};

/// A text of lines that end with CR LF.
class Lines {
 public:
  /// Adds a line of pieces, without those of their characters at which a reader might end it.
  void add(std::initializer_list<std::string_view> pieces) {
    for (const std::string_view piece : pieces) {
      const std::size_t begin = text_.size();
      text_ += piece;
      if (!isPlain(piece)) dropLineEnds(begin);
    }
    text_ += "\r\n";
    if (text_.size() > Document::kMaximumLength) throw TextTooLong();
  }
  /// Adds an attribute.
  void addAttribute(std::string_view name, std::string_view value) { add({"a=", name, ":", value}); }
  /// Adds an attribute as it stands elsewhere.
  void add(const Attribute& attribute) {
    if (attribute.value) return addAttribute(attribute.name, *attribute.value);
    add({"a=", attribute.name});
  }
  /// Adds all lines of others.
  void append(const Lines& others) {
    text_ += others.text_;
    if (text_.size() > Document::kMaximumLength) throw TextTooLong();
  }
  std::string& text() { return text_; }

 private:
  void dropLineEnds(std::size_t begin) {
    const auto isEnd = [](char c) { return !isPlain({&c, 1}); };
    text_.erase(std::remove_if(text_.begin() + static_cast<std::ptrdiff_t>(begin), text_.end(), isEnd),
                text_.end());
  }

  std::string text_;
};

}  // namespace sdp::exchange

#endif
