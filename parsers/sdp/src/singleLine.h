#ifndef SDP_SINGLE_LINE_H
#define SDP_SINGLE_LINE_H

#include <string_view>

#include "fields.h"

// Decoding one line on its own.

namespace sdpcodec {

/// Reads the value of one line into a record.
using ValueReader = Problem (*)(std::string_view value, const char* readable, void* record);

/// Decodes the one line that begins at `position`: its letter, an equals sign and a value for `read`.
/// On success the position is moved behind the line's end.
/// @param read null when there is no record to read into
/// @return 0, or 1 with the message and place of the failure
unsigned short decodeSingleLine(char letter, const char*& position, char* error, int& errorLine,
                                int& errorColumn, ValueReader read, void* record);

}  // namespace sdpcodec

#endif
