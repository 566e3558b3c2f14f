#ifndef SDP_COMMON_FNS_H
#define SDP_COMMON_FNS_H

#include "sdpCapacities.h"

#ifndef SDP_CODEC_API
#define SDP_CODEC_API __attribute__((visibility("default")))
#endif

/// What an SDP body is in its offer/answer exchange (RFC 3264). The codec treats all kinds alike.
enum eSdpType : int { SDP_TYPE_UNKNOWN = 0, SDP_TYPE_OFFER = 1, SDP_TYPE_ANSWER = 2 };

/// Bits of the line-presence sets of a session and of a media description.
enum eSdpLinePresence : unsigned int {
  SDP_HAS_I_LINE = 0x1,
  SDP_HAS_C_LINE = 0x2,
  SDP_HAS_B_LINE = 0x4,
  SDP_HAS_K_LINE = 0x8,
  SDP_HAS_A_LINE = 0x10,
  SDP_HAS_V_LINE = 0x20,
  SDP_HAS_O_LINE = 0x40,
  SDP_HAS_S_LINE = 0x80,
  SDP_HAS_U_LINE = 0x100,
  SDP_HAS_E_LINE = 0x200,
  SDP_HAS_P_LINE = 0x400,
  SDP_HAS_T_LINE = 0x800,
  SDP_HAS_R_LINE = 0x1000,
  SDP_HAS_Z_LINE = 0x2000
};

#endif
