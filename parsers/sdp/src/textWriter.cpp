#include "textWriter.h"

#include <climits>
#include <cstdlib>

// The text that an encoder writes: memory for it, and its end.

namespace sdpcodec {

namespace {
constexpr std::size_t kFirstSize = 4096;
}  // namespace

TextWriter::TextWriter(char*& text, int size)
    : text_(text), next_(text), limit_(text != nullptr && size > 0 ? text + size : text) {}

bool TextWriter::grow(std::size_t length) {
  const auto used = static_cast<std::size_t>(next_ - text_);
  std::size_t size = static_cast<std::size_t>(limit_ - text_);
  while (size < used + length) size = size < kFirstSize ? kFirstSize : size * 2;
  char* grown = size > INT_MAX ? nullptr : static_cast<char*>(std::realloc(text_, size));
  if (grown == nullptr) {
    outOfMemory_ = true;
    return false;
  }
  text_ = grown;
  next_ = grown + used;
  limit_ = grown + size;
  return true;
}

bool TextWriter::finish(int& length, int& size) {
  const bool done = reserve(1);
  if (!done) next_ = text_;
  length = static_cast<int>(next_ - text_);
  size = static_cast<int>(limit_ - text_);
  if (text_ != nullptr && size > 0) *next_ = '\0';
  return done;
}

}  // namespace sdpcodec
