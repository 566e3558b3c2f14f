#ifndef SDP_PARSER_CONNECTION_VERSION_H
#define SDP_PARSER_CONNECTION_VERSION_H

#include <string_view>

#include "vocabulary.h"

// The address version that a c-line names.

namespace sdpneg {

/// `sdpParserMessage::getcLineIPVersion`: by the first c-line in front of the next m-line. The text's first line never
/// counts, so that a text may begin at the m-line whose c-line is asked for.
eIPAddressVersion connectionVersion(std::string_view text);

/// The address version that the c-line at an offset names.
eIPAddressVersion versionOfConnection(std::string_view text, std::size_t cLine);

}  // namespace sdpneg

#endif
