#ifndef SDP_M_LINE_H
#define SDP_M_LINE_H

#include "commonFns.h"
#include "mediaType.h"

/// A media line (RFC 4566 5.14).
struct m_line {
  unsigned int mediaType;  ///< an eMediaType value, or 0 when the media name is none of the known six
  char media[SDP_MEDIA_NAME_SIZE];
  char port[SDP_PORT_SIZE];               ///< the port as it stands; begins with a digit
  char portSuffix[SDP_PORT_SUFFIX_SIZE];  ///< "/number of ports", with its slash; or empty
  char transport[SDP_TRANSPORT_SIZE];
  char formats[SDP_FORMAT_CAPACITY][SDP_FORMAT_SIZE];
  int formatCount;
  int incomplete;  ///< 1 when a field or format was cut or left out, else 0
};

/// @param line a media line, or null
/// @return the port field without a "/number of ports", inside the record; null for a null record
SDP_CODEC_API const char* sdp_MgetPort(const m_line* line);

/// @param line a media line, or null
/// @return the transport field, inside the record; null for a null record
SDP_CODEC_API const char* sdp_MgetTransport(const m_line* line);

/// @param line a media line, or null
/// @return the number of formats, 0 for a null record
SDP_CODEC_API int sdp_MgetNoOfFormats(const m_line* line);

/// @param line  a media line, or null
/// @param index of the format, from 0
/// @return the format (a payload type or a name), inside the record; null when there is none at that index
SDP_CODEC_API const char* sdp_MgetFormat(const m_line* line, int index);

/// Decodes one m-line from a text. Fields and formats beyond the capacities are cut; `incomplete` then is 1.
/// @param line     receives the m-line; unchanged on failure
/// @param position at the line's "m="; on success moved behind the line's end (sessionDescription.h), at the text's
///                 NUL at the latest
/// @param error    null, or SDP_ERROR_TEXT_SIZE characters for the message of a failure; empty on success
/// @param errorLine   1 on failure, else 0
/// @param errorColumn the column of a failure, from 1, else 0
/// @return 0, or 1 when an argument is null, the text is no m-line or its line holds a CR that ends none
SDP_CODEC_API unsigned short sdp_Mdecode_r(m_line* line, const char*& position, char* error, int& errorLine,
                                           int& errorColumn);

#endif
