#ifndef SDPNEG_MESSAGE_HEADER_H
#define SDPNEG_MESSAGE_HEADER_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Header fields of SIP messages (RFC 3261 7.3) and of the parts of a multipart body (RFC 2046). Lines end in
// CR LF or LF; a line that begins with a blank goes on with the field before it.

namespace tool {

/// A piece of a text by its offsets.
struct Range {
  std::size_t begin = 0;
  std::size_t end = 0;

  std::string_view of(std::string_view text) const { return text.substr(begin, end - begin); }
};

struct HeaderField {
  std::string name;
  std::string value;   ///< unfolded
  std::size_t offset;  ///< of the field's line in the text
};

struct Header {
  std::vector<HeaderField> fields;
  std::optional<std::size_t> bodyBegin;  ///< behind the empty line, when there is one
};

/// The line that begins at `begin` and ends before `end`.
struct HeaderLine {
  std::string_view text;  ///< without its end
  std::size_t next;       ///< the offset behind its end
};
HeaderLine headerLineAt(std::string_view text, std::size_t begin, std::size_t end);

/// Reads header fields up to the empty line. Lines that are none are skipped.
Header readHeader(std::string_view text, Range range);

/// @param name    a field's name, compared without regard to case
/// @param compact its short form, or an empty text
/// @return the first such field; null when there is none
const HeaderField* findField(const Header& header, std::string_view name, std::string_view compact = {});

/// The value up to its parameters: "multipart/mixed" of "multipart/mixed;boundary=x".
std::string_view valueWithoutParameters(std::string_view value);

/// A parameter's value without its quotes.
std::optional<std::string> findParameter(std::string_view value, std::string_view name);

}  // namespace tool

#endif
