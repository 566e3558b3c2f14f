#ifndef SDP_Z_LINE_H
#define SDP_Z_LINE_H

#include "commonFns.h"

/// A time zone line (RFC 4566 5.11).
/// The value is kept as it stands.
struct z_line {
  char text[SDP_TEXT_SIZE];
};

#endif
