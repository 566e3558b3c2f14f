#ifndef SDP_K_LINE_H
#define SDP_K_LINE_H

#include "commonFns.h"

/// A key line of the session or of a media description (RFC 4566 5.12).
/// The value is kept as it stands.
struct k_line {
  char text[SDP_TEXT_SIZE];
};

#endif
