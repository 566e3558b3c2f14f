#ifndef SDPNEG_REQUEST_LINE_H
#define SDPNEG_REQUEST_LINE_H

#include <span>
#include <string>
#include <vector>

#include "requests/requestTable.h"

namespace tool {

/// What the operands of `sdpneg rewrite` say.
struct RequestLine {
  std::vector<RequestCall> calls;
  std::string file = "-";
};

/// Reads "REQUEST [ARGUMENT...] [-- REQUEST [ARGUMENT...]]... [FILE]". A word that can be the optional argument of
/// the last request is that, and FILE otherwise.
/// @throws UsageError
RequestLine readRequestLine(std::span<const std::string> words);

}  // namespace tool

#endif
