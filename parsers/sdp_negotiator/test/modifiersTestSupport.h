#ifndef MODIFIERS_TEST_SUPPORT_H
#define MODIFIERS_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "objectTestSupport.h"
#include "sdpModifiers.h"

/// A buffer of 20480 characters for an edit, with guard bytes behind it.
class EditBuffer {
 public:
  static constexpr std::size_t capacity = 20480;

  explicit EditBuffer(const std::string& text) : bytes_(capacity + guards, guard) {
    EXPECT_LT(text.size(), capacity);
    std::copy(text.begin(), text.end(), bytes_.begin());
    bytes_[text.size()] = '\0';
  }

  char* data() { return bytes_.data(); }
  std::string text() const { return {bytes_.data(), strnlen(bytes_.data(), capacity)}; }

  void expect(const std::string& wanted, const std::string& what = "") const {
    EXPECT_EQ(text(), wanted) << what;
    EXPECT_TRUE(std::all_of(bytes_.begin() + capacity, bytes_.end(), [](char c) { return c == guard; }))
        << what;
  }

 private:
  static constexpr std::size_t guards = 64;
  static constexpr char guard = '\x5b';
  std::vector<char> bytes_;
};

/// A buffer of 20480 characters without NUL and with nothing behind it.
inline std::vector<char> unterminatedBuffer() {
  const std::string text = paddedTo(EditBuffer::capacity);
  return {text.begin(), text.end()};
}

inline const std::string session =
    "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n";
inline const std::string audio = "m=audio 5004 RTP/AVP 0\r\n";
inline const std::string video = "m=video 5006 RTP/AVP 96\r\na=rtpmap:96 VP8/90000\r\n";

#endif
