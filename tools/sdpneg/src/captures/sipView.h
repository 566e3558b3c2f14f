#ifndef SDPNEG_SIP_VIEW_H
#define SDPNEG_SIP_VIEW_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "captures/sipStart.h"

// What is asked of a captured SIP message. Nothing is copied: names and values are pieces of its text.

namespace tool {

/// The lines of a header one by one, folded ones together (RFC 3261 7.3.1).
class HeaderLines {
 public:
  struct Field {
    std::string_view name;
    std::string_view value;  ///< without blanks around it; may be folded
  };

  /// @param text a message, of which the start line is passed over
  explicit HeaderLines(std::string_view text);

  /// The next line that has a colon; nothing behind the last one.
  std::optional<Field> next();
  /// Where the body begins; the text's size where there is no empty line. Holds behind the last line.
  std::size_t bodyBegin() const { return at_; }

 private:
  std::string_view text_;
  std::size_t at_;
  bool atEnd_ = false;
};

/// Fields that are asked for of every message.
enum class KnownField : std::uint8_t {
  callId,
  contentEncoding,
  contentLength,
  contentType,
  cseq,
  from,
  rack,
  rseq,
  to,
  via
};
inline constexpr std::size_t kKnownFields = static_cast<std::size_t>(KnownField::via) + 1;

/// Whether a field's name is this one or its compact form (RFC 3261 7.3.3), in whichever case.
bool isHeaderName(std::string_view field, std::string_view name);

/// A value without its folds.
std::string unfolded(std::string_view value);

/// A length as Content-Length has it; nothing for any other text.
std::optional<std::size_t> parseContentLength(std::string_view value);

/// A message by its parts. It can be used for one message after another and then takes no memory of its own.
class SipView {
 public:
  SipView() = default;
  explicit SipView(std::string_view text) { read(text); }

  /// @param text must stay where it is as long as this is asked
  void read(std::string_view text);

  StartLine kind() const { return kind_; }
  std::string_view startLine() const { return startLine_; }
  std::string_view method() const;      ///< of a request
  std::string_view requestUri() const;  ///< of a request
  int status() const;                   ///< of a response, 0 for a request

  const std::vector<HeaderLines::Field>& fields() const { return fields_; }
  /// @param name the long form; lines with the compact form count as well
  /// @return the first value of that name, maybe folded
  std::optional<std::string_view> value(std::string_view name) const;
  /// The same without looking for it.
  std::optional<std::string_view> value(KnownField field) const {
    const std::size_t place = known_[static_cast<std::size_t>(field)];
    if (place == 0) return std::nullopt;
    return fields_[place - 1].value;
  }
  /// All lines of that name. Values that one line has behind commas are not taken apart.
  std::vector<std::string_view> values(std::string_view name) const;

  /// As long as Content-Length says, where so much is there.
  std::string_view body() const;
  /// The SDP body or the first such part of a multipart body.
  std::optional<std::string_view> sdp() const;

 private:
  std::string_view text_;
  StartLine kind_ = StartLine::none;
  std::string_view startLine_;
  std::vector<HeaderLines::Field> fields_;
  std::array<std::size_t, kKnownFields> known_{};  ///< the first one of each, from 1; 0 where there is none
  std::size_t bodyBegin_ = 0;
};

}  // namespace tool

#endif
