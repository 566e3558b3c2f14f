#ifndef SDP_S_LINE_H
#define SDP_S_LINE_H

#include "commonFns.h"

/// A session name line (RFC 4566 5.3).
/// The value is kept as it stands.
struct s_line {
  char text[SDP_TEXT_SIZE];
};

#endif
