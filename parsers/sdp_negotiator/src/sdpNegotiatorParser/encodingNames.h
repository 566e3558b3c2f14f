#ifndef SDP_ENCODING_NAMES_H
#define SDP_ENCODING_NAMES_H

#include <span>
#include <string_view>

#include "aLine.h"
#include "attributeKinds.h"

// The encoding names of formats, from rtpmap lines.

namespace sdpneg {

/// Finds the encoding name of a format, with its clock rate, in the rtpmap lines of a text that begin before
/// `end`.
/// @param begin a text ended by NUL
/// @return the name inside the text; empty when there is none or an argument is null
std::string_view findEncodingName(const char* begin, const char* end, const char* format);

/// The same in the attribute lines of a description.
/// @param format null, or as it stands in the m-line
std::string_view findEncodingName(std::span<const a_line::entry> lines, const char* format);
std::string_view findEncodingName(const AttributeIndex& lines, const char* format);

/// The encoding name that an rtpmap value gives a format; empty when it defines another format or none.
/// @param value ended by NUL; its line may be followed by others
std::string_view encodingNameOf(const char* value, std::string_view format);

/// What an rtpmap value says.
struct RtpMap {
  std::string_view format;
  const char* name;  ///< goes on to the end of the value
};

/// @param value of one line, ended by NUL
RtpMap rtpMapOf(const char* value);

}  // namespace sdpneg

#endif
