#ifndef SDPNEG_PRINTABLE_H
#define SDPNEG_PRINTABLE_H

#include <string>
#include <string_view>

namespace tool {

/// A text as it may go to a terminal: control characters, those of a terminal's 8-bit set included, bytes
/// that are no UTF-8 and characters that change the direction of writing are shown as "\xHH". A backslash
/// stays as it is; the JSON output has the exact text.
std::string printable(std::string_view text);

/// A text of several lines as it may go to a terminal: their ends, LF or CR LF, become LF.
std::string printableLines(std::string_view text);

/// A JSON document that says the same, in which "\uHHHH" stands for the characters of strings that `printable`
/// does not show. The document has none below a blank there.
std::string printableJson(std::string_view document);

}  // namespace tool

#endif
