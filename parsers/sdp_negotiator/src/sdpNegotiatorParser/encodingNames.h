#ifndef SDP_ENCODING_NAMES_H
#define SDP_ENCODING_NAMES_H

#include <string_view>

// The encoding names of formats, from the rtpmap lines of a text.

namespace sdpneg {

/// Finds the encoding name of a format, with its clock rate, in the rtpmap lines of a text that begin before
/// `end`.
/// @param begin a text ended by NUL
/// @return the name inside the text; empty when there is none or an argument is null
std::string_view findEncodingName(const char* begin, const char* end, const char* format);

}  // namespace sdpneg

#endif
