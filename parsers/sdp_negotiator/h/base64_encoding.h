#ifndef BASE64_ENCODING_H
#define BASE64_ENCODING_H

#include "sdpNegotiatorExport.h"

/// @file
/// Base64 (RFC 4648 4), without line breaks. No state; may be used from several threads.

/// The 64 characters that groups of six bits are written with, ended by NUL. The pad character is "=".
extern SDP_NEGOTIATOR_API const char base64_alphabet[65];

/// Writes one group of characters.
/// @param in  3 bytes, or 2 for one: the byte behind those of a shorter group lends its first bits to the last
///            character, so the caller sets it to 0
/// @param out receives exactly 4 characters, no NUL
/// @param len 1 to 3; one byte gives two pad characters, two give one
SDP_NEGOTIATOR_API void base64_encodeblock(const unsigned char* in, char* out, unsigned long len);

/// Writes bytes as text in one line.
/// @param in     `inLen` bytes
/// @param out    receives the text and its NUL
/// @param outCap characters of `out`; 4 for each 3 bytes begun, and 1 more, are needed
/// @return 1; 0 when the capacity is too small or an argument is null: what whole groups fit are written then,
///         without NUL
SDP_NEGOTIATOR_API int base64_encode(const unsigned char* in, unsigned long inLen, char* out,
                                     unsigned long outCap);

#endif
