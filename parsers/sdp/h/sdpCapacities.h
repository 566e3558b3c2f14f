#ifndef SDP_CAPACITIES_H
#define SDP_CAPACITIES_H

// The fixed capacities of a decoded session description. Sizes of texts include the terminating NUL.
// What a body holds beyond them is cut or left out, and the description is marked as incomplete.

#if __has_include("sdpBuildConfig.h")
#include "sdpBuildConfig.h"
#endif

/// Attribute lines held per block (session level or one media description), 40 to 255. The library and its
/// callers must agree on it, so it is a build option of the library and is installed with the headers.
#ifndef SDP_ATTRIBUTE_CAPACITY
#define SDP_ATTRIBUTE_CAPACITY 40
#endif
static_assert(SDP_ATTRIBUTE_CAPACITY >= 40 && SDP_ATTRIBUTE_CAPACITY <= 255);

/// Media descriptions held; the number met in the text may be larger.
inline constexpr int SDP_MEDIA_CAPACITY = 25;

inline constexpr int SDP_ATTRIBUTE_NAME_SIZE = 64;
inline constexpr int SDP_ATTRIBUTE_VALUE_SIZE = 350;

inline constexpr int SDP_FORMAT_CAPACITY = 64;
inline constexpr int SDP_FORMAT_SIZE = 32;
inline constexpr int SDP_MEDIA_NAME_SIZE = 32;
inline constexpr int SDP_PORT_SIZE = 32;
inline constexpr int SDP_PORT_SUFFIX_SIZE = 32;
inline constexpr int SDP_TRANSPORT_SIZE = 64;

inline constexpr int SDP_CONNECTION_CAPACITY = 8;
inline constexpr int SDP_NETWORK_TYPE_SIZE = 11;
inline constexpr int SDP_ADDRESS_TYPE_SIZE = 11;
inline constexpr int SDP_ADDRESS_SIZE = 127;
inline constexpr int SDP_ADDRESS_SUFFIX_SIZE = 16;

inline constexpr int SDP_BANDWIDTH_CAPACITY = 8;
inline constexpr int SDP_BANDWIDTH_TYPE_SIZE = 64;
inline constexpr int SDP_BANDWIDTH_NUMBER_SIZE = 32;

inline constexpr int SDP_USER_NAME_SIZE = 256;
inline constexpr int SDP_SESSION_NUMBER_SIZE = 65;  ///< of a session id, and of a session version
inline constexpr int SDP_ORIGIN_ADDRESS_SIZE = 256;

inline constexpr int SDP_CONTACT_CAPACITY = 4;  ///< e-lines, and p-lines
inline constexpr int SDP_CONTACT_SIZE = 256;
inline constexpr int SDP_TIME_CAPACITY = 8;     ///< t-lines
inline constexpr int SDP_REPEAT_CAPACITY = 16;  ///< r-lines, of all t-lines together
inline constexpr int SDP_TIME_SIZE = 128;
inline constexpr int SDP_VERSION_SIZE = 16;
inline constexpr int SDP_TEXT_SIZE = 512;  ///< the value of an s-, i-, u-, z- or k-line

/// Characters in the error text buffer that a decoding operation is given.
inline constexpr int SDP_ERROR_TEXT_SIZE = 256;

#endif
