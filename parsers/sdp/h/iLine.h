#ifndef SDP_I_LINE_H
#define SDP_I_LINE_H

#include "commonFns.h"

/// An information line of the session or of a media description (RFC 4566 5.4).
/// The value is kept as it stands.
struct i_line {
  char text[SDP_TEXT_SIZE];
};

#endif
