#ifndef SDP_T_LINE_H
#define SDP_T_LINE_H

#include "commonFns.h"

/// The time lines of a session (RFC 4566 5.9). The values are kept as they stand.
struct t_line {
  struct entry {
    char text[SDP_TIME_SIZE];
  };
  entry entries[SDP_TIME_CAPACITY];
  int count;
};

/// The repeat lines of a session (RFC 4566 5.10), each with the index of the time line that it follows.
struct r_line {
  struct entry {
    char text[SDP_TIME_SIZE];
    int time;
  };
  entry entries[SDP_REPEAT_CAPACITY];
  int count;
};

#endif
