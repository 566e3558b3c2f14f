#ifndef SDP_B_LINE_H
#define SDP_B_LINE_H

#include "commonFns.h"

/// The bandwidth lines of the session or of a media description (RFC 4566 5.8), in their order.
struct b_line {
  struct entry {
    char type[SDP_BANDWIDTH_TYPE_SIZE];      ///< "AS", "CT", "TIAS" or another modifier as it stands
    char number[SDP_BANDWIDTH_NUMBER_SIZE];  ///< the digits as they stand
    unsigned int value;                      ///< the number, 4294967295 when it is larger
  };
  entry entries[SDP_BANDWIDTH_CAPACITY];
  int count;
  int incomplete;  ///< 1 when something of the lines was cut or left out, else 0
};

/// @param line bandwidth lines, or null
/// @return the value of the first one, saturated at 4294967295; 0 when there is none
SDP_CODEC_API unsigned int sdp_BgetBandwidthValue(const b_line* line);

/// Decodes one b-line from a text.
/// @param line     receives the b-line as its only entry; unchanged on failure
/// @param position at the line's "b="; on success moved behind the line's end (sessionDescription.h), at the text's
///                 NUL at the latest
/// @param error    null, or SDP_ERROR_TEXT_SIZE characters for the message of a failure; empty on success
/// @param errorLine   1 on failure, else 0
/// @param errorColumn the column of a failure, from 1, else 0
/// @return 0, or 1 when an argument is null, the text is no b-line or its line holds a CR that ends none
SDP_CODEC_API unsigned short sdp_Bdecode_r(b_line* line, const char*& position, char* error, int& errorLine,
                                           int& errorColumn);

/// Writes the b-lines, each with CR LF. An entry whose value was changed is written with the new value.
/// @param line   bandwidth lines
/// @param text   null, or the result of an earlier encoding operation; it is allocated with malloc, grown
///               with realloc and released by the caller with free
/// @param length receives the length of the text without its NUL
/// @param size   the allocated size of the text; read when the text is not null
/// @return 0, or 1 when the record is null or memory ran out; the text then is still the caller's, and after
///         running out of memory it is empty and `size` says what is allocated
SDP_CODEC_API unsigned short sdp_Bencode_r(const b_line* line, char*& text, int& length, int& size);

#endif
