#ifndef SDP_V_LINE_H
#define SDP_V_LINE_H

#include "commonFns.h"

/// A protocol version line (RFC 4566 5.1).
/// The value is kept as it stands.
struct v_line {
  char text[SDP_VERSION_SIZE];
};

#endif
