#ifndef SDP_C_LINE_H
#define SDP_C_LINE_H

#include "commonFns.h"

/// The connection lines of the session or of a media description (RFC 4566 5.7), in their order.
struct c_line {
  struct entry {
    char networkType[SDP_NETWORK_TYPE_SIZE];
    char addressType[SDP_ADDRESS_TYPE_SIZE];
    char address[SDP_ADDRESS_SIZE];        ///< without the suffix of a multicast address
    char suffix[SDP_ADDRESS_SUFFIX_SIZE];  ///< "/ttl" or "/number of addresses", with its slash; or empty
  };
  entry entries[SDP_CONNECTION_CAPACITY];
  int count;
};

/// @param line connection lines, or null
/// @return the number of entries, 0 for a null record
SDP_CODEC_API int sdp_CgetNoOfCs(const c_line* line);

/// @param line  connection lines, or null
/// @param index of the entry, from 0
/// @return the bare address, inside the record; null when there is no such entry
SDP_CODEC_API const char* sdp_CgetAddress(const c_line* line, int index);

/// @param line  connection lines, or null
/// @param index of the entry, from 0
/// @return "IP4", "IP6" or another type as it stands, inside the record; null when there is no such entry
SDP_CODEC_API const char* sdp_CgetAddressType(const c_line* line, int index);

#endif
