#ifndef SDP_FIXED_TEXT_H
#define SDP_FIXED_TEXT_H

#include <algorithm>
#include <charconv>
#include <concepts>
#include <cstring>
#include <string_view>

// Short texts that are composed without allocation.

namespace sdpneg {

/// Composes a line or number of at most N - 1 characters without allocation. What does not fit is cut, and
/// that is remembered.
template <std::size_t N>
class FixedText {
 public:
  FixedText() { text_[0] = '\0'; }

  [[gnu::always_inline]] FixedText& add(std::string_view text) {
    // A length that is known where this is called remains so: such a piece is written without a call.
    if (text.size() > N - 1 - length_) return addWhatFits(text);
    if (!text.empty()) std::memcpy(text_ + length_, text.data(), text.size());
    length_ += text.size();
    text_[length_] = '\0';
    return *this;
  }

  FixedText& add(std::integral auto number) {
    char digits[24];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number);
    return addWhatFits(std::string_view(digits, static_cast<std::size_t>(end.ptr - digits)));
  }

  /// A number in hexadecimal digits, as `%x` writes it.
  FixedText& addHex(std::unsigned_integral auto number) {
    char digits[24];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number, 16);
    return addWhatFits(std::string_view(digits, static_cast<std::size_t>(end.ptr - digits)));
  }

  std::string_view view() const { return {text_, length_}; }
  const char* text() const { return text_; }
  std::size_t size() const { return length_; }
  bool cut() const { return cut_; }

 private:
  FixedText& addWhatFits(std::string_view text) {
    const std::size_t length = std::min(text.size(), N - 1 - length_);
    if (length != 0) std::memcpy(text_ + length_, text.data(), length);
    length_ += length;
    text_[length_] = '\0';
    cut_ = cut_ || length != text.size();
    return *this;
  }

  char text_[N];
  std::size_t length_ = 0;
  bool cut_ = false;
};

}  // namespace sdpneg

#endif
