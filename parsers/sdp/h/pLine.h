#ifndef SDP_P_LINE_H
#define SDP_P_LINE_H

#include "commonFns.h"

/// The phone number lines of a session (RFC 4566 5.6).
/// The values are kept as they stand.
struct p_line {
  struct entry {
    char text[SDP_CONTACT_SIZE];
  };
  entry entries[SDP_CONTACT_CAPACITY];
  int count;
};

#endif
