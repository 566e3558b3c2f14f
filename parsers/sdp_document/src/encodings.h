#ifndef SDP_DOCUMENT_ENCODINGS_H
#define SDP_DOCUMENT_ENCODINGS_H

// Encodings of media: their names, clocks and channels, and what they are for.

#include <cstdint>
#include <string_view>

#include "text/search.h"

namespace sdp::core {

/// What a format is for. Those between codec and otherCompanion serve others and have rules of their own in a choice of
/// codecs.
enum class Role : std::uint8_t { codec, rtx, red, comfortNoise, telephoneEvent, otherCompanion };

/// The name of an encoding, which is compared without regard to case: at first by its first eight characters in lower
/// case, as one number.
class EncodingName {
 public:
  constexpr EncodingName() noexcept = default;
  explicit constexpr EncodingName(std::string_view text) noexcept : text_(text) {
    for (std::size_t i = 0; i < text.size() && i < sizeof head_; ++i) {
      const char c = text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] - 'A' + 'a') : text[i];
      head_ |= std::uint64_t{static_cast<unsigned char>(c)} << (8 * i);
    }
  }
  /// The same for a text at which eight characters are readable, whatever its length.
  static EncodingName ofRoomy(std::string_view text) noexcept;

  /// Empty when it is unknown.
  constexpr std::string_view text() const { return text_; }
  constexpr std::uint64_t head() const { return head_; }
  bool operator==(const EncodingName& other) const {
    if (head_ != other.head_ || text_.size() != other.text_.size()) return false;
    return text_.size() <= sizeof head_ ||
           sdpneg::equalNoCase(text_.substr(sizeof head_), other.text_.substr(sizeof head_));
  }

 private:
  std::string_view text_;
  std::uint64_t head_ = 0;
};

/// An encoding, as `NAME/CLOCK/CHANNELS` tells it. Numbers beyond the type are told as its largest.
struct EncodingParts {
  EncodingName name;
  std::uint32_t clock = 0;
  std::uint32_t channels = 1;
};

/// Reads the encoding that the first field of a text is: `NAME/CLOCK` or `NAME/CLOCK/CHANNELS`.
/// @param room how many characters behind the text are readable
/// @return false for other fields; nothing is changed then
bool readEncoding(std::string_view text, std::size_t room, EncodingParts& encoding);

/// What RFC 3551 gives a payload type; null for others.
const EncodingParts* staticEncodingOf(std::uint16_t payload);

Role roleOf(const EncodingName& name);

}  // namespace sdp::core

#endif
