#ifndef FUZZ_EDIT_BUFFER_H
#define FUZZ_EDIT_BUFFER_H

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "sdpDataDefinitions.h"

// Edits of any text in the buffer that the operations assume, with values from the input's end.

inline constexpr std::size_t kCapacity = MAX_SDP_PROTOCOL_DATA_SIZE;

inline void require(bool condition) {
  if (!condition) std::abort();
}

/// Numbers and words from the end of an input.
class Values {
 public:
  explicit Values(std::string_view rest) : rest_(rest) {}

  template <typename Number>
  Number number() {
    Number value{};
    const std::size_t size = std::min(sizeof value, rest_.size());
    std::memcpy(&value, rest_.data() + rest_.size() - size, size);
    rest_.remove_suffix(size);
    return value;
  }
  /// Without NUL, of at most 511 characters.
  std::string word() {
    const std::size_t wanted = number<std::uint16_t>() % 512U;
    const std::size_t length = std::min(wanted, rest_.size());
    std::string text(rest_.substr(rest_.size() - length));
    rest_.remove_suffix(length);
    return text.substr(0, text.find('\0'));
  }

 private:
  std::string_view rest_;
};

/// A buffer of exactly the capacity, so that the sanitizer sees a read or write behind it. A text of the
/// capacity leaves no room for its NUL.
class Buffer {
 public:
  explicit Buffer(const std::string& text) : bytes_(std::make_unique<char[]>(kCapacity)) {
    std::memset(bytes_.get(), 'o', kCapacity);
    const std::size_t length = std::min(text.size(), kCapacity);
    if (length != 0) std::memcpy(bytes_.get(), text.data(), length);
    if (length < kCapacity) bytes_[length] = '\0';
  }
  char* data() { return bytes_.get(); }
  std::string all() const { return {bytes_.get(), kCapacity}; }
  std::string text() const { return {bytes_.get(), strnlen(bytes_.get(), kCapacity)}; }

 private:
  std::unique_ptr<char[]> bytes_;
};

/// Runs an edit; a refusal changes nothing, and a text keeps its NUL inside.
/// @return the text behind it
template <typename Edit>
std::string run(const std::string& before, Edit edit, unsigned short& status) {
  Buffer buffer(before);
  const std::string all = buffer.all();
  status = edit(buffer.data());
  const std::string after = buffer.text();
  require(after.size() < kCapacity || (buffer.all() == all && before.size() >= kCapacity));
  require(status == 0 || status == 1);
  return after;
}

/// The text cut or filled up with a line to leave so many characters of the buffer; 0 leaves none for a NUL.
inline std::string filled(std::string text, std::size_t left) {
  const std::size_t length = kCapacity - left;
  const bool isFilled = text.size() < length;
  text.resize(length, 'x');
  if (isFilled) text.back() = '\n';
  return text;
}

#endif
