#ifndef SDPNEG_BYTE_READER_H
#define SDPNEG_BYTE_READER_H

#include <cstddef>
#include <cstdint>
#include <string_view>

// The one way in which numbers and pieces are taken out of captured bytes.

namespace tool {

/// Takes numbers and pieces from the front of some bytes and never goes behind their end. What is not there reads as 0 or
/// as nothing, and from then on isGood() is false, so that a whole header is read first and asked about then.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes) : rest_(bytes) {}

  /// Whether all that was asked for was there.
  bool isGood() const { return isGood_; }
  std::size_t left() const { return rest_.size(); }
  std::string_view rest() const { return rest_; }

  std::string_view take(std::size_t size) {
    if (size > rest_.size()) {
      isGood_ = false;
      rest_ = {};
      return {};
    }
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return taken;
  }
  void skip(std::size_t size) { take(size); }

  std::uint8_t u8() { return static_cast<std::uint8_t>(number(1)); }
  std::uint16_t u16() { return static_cast<std::uint16_t>(number(2)); }
  std::uint32_t u32() { return static_cast<std::uint32_t>(number(4)); }
  std::uint64_t u64() { return number(8); }

 private:
  /// In network byte order.
  std::uint64_t number(std::size_t size) {
    std::uint64_t value = 0;
    for (const char c : take(size)) value = value << 8U | static_cast<unsigned char>(c);
    return value;
  }

  std::string_view rest_;
  bool isGood_ = true;
};

}  // namespace tool

#endif
