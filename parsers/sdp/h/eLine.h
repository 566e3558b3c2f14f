#ifndef SDP_E_LINE_H
#define SDP_E_LINE_H

#include "commonFns.h"

/// The e-mail address lines of a session (RFC 4566 5.6).
/// The values are kept as they stand.
struct e_line {
  struct entry {
    char text[SDP_CONTACT_SIZE];
  };
  entry entries[SDP_CONTACT_CAPACITY];
  int count;
};

#endif
