#ifndef SDP_U_LINE_H
#define SDP_U_LINE_H

#include "commonFns.h"

/// A line with the URI of a description (RFC 4566 5.5).
/// The value is kept as it stands.
struct u_line {
  char text[SDP_TEXT_SIZE];
};

#endif
