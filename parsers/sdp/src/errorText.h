#ifndef SDP_ERROR_TEXT_H
#define SDP_ERROR_TEXT_H

#include <string_view>

#include "fields.h"

// What is wrong with a text, in one sentence with its line and column.

namespace sdpcodec {

/// Where in a text a problem stands, both from 1.
struct Place {
  unsigned int line;
  unsigned int column;
};

/// Writes "line N, column M: expected ..., found ..." and nothing when there is no buffer.
/// @param error a buffer of SDP_ERROR_TEXT_SIZE characters, or null
/// @param found what stands at the place, up to the line's end
/// @param textEnds the text ends with the line
void writeError(char* error, Place place, const char* expected, std::string_view found, bool textEnds);

/// Writes what is wrong with a line of known number, in the words of `writeError`.
void writeLineError(char* error, unsigned int lineNumber, std::string_view line, Problem problem,
                    bool textEnds, unsigned int& column);

}  // namespace sdpcodec

#endif
