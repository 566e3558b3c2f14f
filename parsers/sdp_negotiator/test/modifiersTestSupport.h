#ifndef MODIFIERS_TEST_SUPPORT_H
#define MODIFIERS_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "objectTestSupport.h"
#include "sdpDataDefinitions.h"
#include "sdpModifiers.h"
#include "traceCapture.h"

using Traces = std::vector<TraceLine>;

/// The longest text that an SDP buffer holds.
inline constexpr std::size_t kLongestBody = MAX_SDP_PROTOCOL_DATA_SIZE - 1;

/// A caller's SDP buffer: a text in exactly MAX_SDP_PROTOCOL_DATA_SIZE characters, none of them NUL behind
/// the text's own, and guard bytes behind. A text of the capacity or more leaves no room for its NUL.
class SdpBuffer {
 public:
  explicit SdpBuffer(const std::string& text)
      : bytes_(std::make_unique<char[]>(MAX_SDP_PROTOCOL_DATA_SIZE + kGuard)) {
    std::memset(bytes_.get(), '#', MAX_SDP_PROTOCOL_DATA_SIZE + kGuard);
    const std::size_t length = std::min<std::size_t>(text.size(), MAX_SDP_PROTOCOL_DATA_SIZE);
    text.copy(bytes_.get(), length);
    if (length < MAX_SDP_PROTOCOL_DATA_SIZE) bytes_[length] = '\0';
  }

  char* data() { return bytes_.get(); }
  /// All characters of the buffer, those behind the text included.
  std::string all() const { return {bytes_.get(), MAX_SDP_PROTOCOL_DATA_SIZE}; }

  /// The buffer holds this text with its NUL, and nothing was written behind it.
  void expectText(const std::string& wanted) const {
    const std::size_t length = strnlen(bytes_.get(), MAX_SDP_PROTOCOL_DATA_SIZE);
    ASSERT_LT(length, std::size_t{MAX_SDP_PROTOCOL_DATA_SIZE}) << "no NUL in the buffer";
    EXPECT_EQ(std::string(bytes_.get(), length), wanted);
    expectGuard();
  }
  void expectGuard() const {
    EXPECT_EQ(std::string(bytes_.get() + MAX_SDP_PROTOCOL_DATA_SIZE, kGuard), std::string(kGuard, '#'));
  }

 private:
  static constexpr std::size_t kGuard = 64;
  std::unique_ptr<char[]> bytes_;
};

/// A buffer whose text can be looked at between edits.
class EditBuffer : public SdpBuffer {
 public:
  static constexpr std::size_t capacity = MAX_SDP_PROTOCOL_DATA_SIZE;

  using SdpBuffer::SdpBuffer;
  std::string text() { return {data(), strnlen(data(), capacity)}; }
  void expect(const std::string& wanted, const std::string& what = "") const {
    SCOPED_TRACE(what);
    expectText(wanted);
  }
};

using TextEdit = std::function<unsigned short(char*)>;

/// The edit makes the one text of the other, byte for byte, and returns the status.
inline void expectEdit(const std::string& before, const TextEdit& edit, unsigned short status,
                       const std::string& after) {
  SCOPED_TRACE(before.substr(0, 300));
  SdpBuffer buffer(before);
  EXPECT_EQ(edit(buffer.data()), status);
  buffer.expectText(after);
}

/// The edit returns the status and touches not one character: neither in a whole buffer nor in a block that
/// ends right behind the text's NUL (or at the capacity), where the sanitizer sees a read behind it.
inline void expectUntouched(const std::string& before, const TextEdit& edit, unsigned short status) {
  SCOPED_TRACE(before.substr(0, 300));
  SdpBuffer buffer(before);
  const std::string all = buffer.all();
  EXPECT_EQ(edit(buffer.data()), status);
  EXPECT_TRUE(buffer.all() == all) << "the buffer has changed";
  buffer.expectGuard();
  const std::size_t size = std::min<std::size_t>(before.size() + 1, MAX_SDP_PROTOCOL_DATA_SIZE);
  const auto exact = std::make_unique<char[]>(size);
  std::memcpy(exact.get(), before.c_str(), size);
  EXPECT_EQ(edit(exact.get()), status);
  EXPECT_EQ(std::memcmp(exact.get(), before.c_str(), size), 0) << "the exact block has changed";
}

/// A session with this o-line.
inline std::string bodyWith(const std::string& originLine) {
  return "v=0\r\n" + originLine + "\r\ns=-\r\nt=0 0\r\n";
}

/// A text that leaves no room for its NUL.
inline std::string withoutNul(const std::string& text) {
  return text + std::string(MAX_SDP_PROTOCOL_DATA_SIZE, ' ');
}

/// A text filled up with a note line to exactly `length` characters. The text ends in a line end.
inline std::string filledTo(std::size_t length, const std::string& text) {
  const std::string prefix = "a=note:";
  EXPECT_GE(length, text.size() + prefix.size() + 2);
  return text + prefix + std::string(length - text.size() - prefix.size() - 2, 'n') + "\r\n";
}

/// A buffer of 20480 characters without NUL and with nothing behind it.
inline std::vector<char> unterminatedBuffer() {
  const std::string text = paddedTo(EditBuffer::capacity);
  return {text.begin(), text.end()};
}

inline const std::string session =
    "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n";
inline const std::string audio = "m=audio 5004 RTP/AVP 0\r\n";
inline const std::string video = "m=video 5006 RTP/AVP 96\r\na=rtpmap:96 VP8/90000\r\n";

/// A body of that length whose description is complete. All lines end in CR LF but the first attribute's.
inline std::string completeBody(std::size_t length, const std::string& media = audio) {
  std::string attributes = "a=n\n";
  while (session.size() + attributes.size() + media.size() + 330 < length) {
    attributes += "a=n:" + std::string(320, 'x') + "\r\n";
    if (attributes.size() / 320 == 30) attributes += media;
  }
  attributes += "a=n:" + std::string(length - session.size() - attributes.size() - 6, 'y') + "\r\n";
  EXPECT_EQ(session.size() + attributes.size(), length);
  return session + attributes;
}

#endif
