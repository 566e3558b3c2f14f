#ifndef SDP_O_LINE_H
#define SDP_O_LINE_H

#include "commonFns.h"

/// The origin line of a session (RFC 4566 5.2), its six fields as texts.
struct o_line {
  char userName[SDP_USER_NAME_SIZE];
  char sessionId[SDP_SESSION_NUMBER_SIZE];
  char sessionVersion[SDP_SESSION_NUMBER_SIZE];
  char networkType[SDP_NETWORK_TYPE_SIZE];
  char addressType[SDP_ADDRESS_TYPE_SIZE];
  char address[SDP_ORIGIN_ADDRESS_SIZE];  ///< all that follows the fifth blank
  int present;                            ///< 1 when the body has an o-line, else 0
};

/// The fields of an origin line.
/// @param line a decoded origin line, or null
/// @return the field's text inside the record; null when the record is null or the body has no o-line
SDP_CODEC_API const char* sdp_OgetUserName(const o_line* line);
/// @copydoc sdp_OgetUserName
SDP_CODEC_API const char* sdp_OgetSessionId(const o_line* line);
/// @copydoc sdp_OgetUserName
SDP_CODEC_API const char* sdp_OgetSessionVersion(const o_line* line);
/// @copydoc sdp_OgetUserName
SDP_CODEC_API const char* sdp_OgetNetworkType(const o_line* line);
/// @copydoc sdp_OgetUserName
SDP_CODEC_API const char* sdp_OgetAddressType(const o_line* line);
/// @copydoc sdp_OgetUserName
SDP_CODEC_API const char* sdp_OgetAddress(const o_line* line);

#endif
