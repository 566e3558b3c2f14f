#ifndef SDP_DATA_DEFINITIONS_H
#define SDP_DATA_DEFINITIONS_H

#include <cstdint>
#include <string>
#include <vector>

#include "cMsgIPAddress.h"
#include "commonFns.h"
#include "mediaType.h"
#include "sdpNegotiatorExport.h"

// The records, enumerations, limits and codec tables that the library shares with its callers. Records
// are plain values. All enumerations have a fixed underlying type, so a value without a name is legal.

/// Characters of the largest SDP text that is parsed or rewritten; also the size of every working buffer.
inline constexpr int MAX_SDP_PROTOCOL_DATA_SIZE = 20480;

/// Entries of an audio codec list and of a packetization list.
inline constexpr int MAX_SDP_NEGOTIATOR_AUDIO_CODECS = 20;

/// Media descriptions of a body; a decoded description that claims more is treated as corrupt.
inline constexpr int MAX_SDP_NEGOTIATOR_MEDIA_DESCRIPTIONS = SDP_MEDIA_CAPACITY;

/// Attribute lines in one block of a decoded description (session level or one media description).
inline constexpr int MAX_SDP_NEGOTIATOR_ATTRIBUTE_LINES = SDP_ATTRIBUTE_CAPACITY;

/// Size of a buffer for an encoding name taken from an rtpmap line, its NUL included.
inline constexpr int SDP_ENCODING_NAME_SIZE = 33;

/// `port` and `T38MaxBitRate` of the records below while they are not known.
inline constexpr std::uint32_t SDP_PORT_NOT_SET = 0xFFFFFFFF;
inline constexpr std::uint32_t SDP_T38_MAX_BIT_RATE_NOT_SET = 0xFFFFFFFF;

/// An entry of `packetizationPeriod` that was not given, and an unused one of `audioCodec`.
inline constexpr std::uint8_t SDP_PACKETIZATION_NOT_SET = 255;
inline constexpr std::uint8_t SDP_NO_CODEC = 0;

/// Directions of a session or of a media description (RFC 4566 6), and "confrnce".
enum eConnectionMode : int {
  CONNECTION_MODE_NONE = 0,  ///< no direction attribute
  CONNECTION_MODE_SENDONLY = 1,
  CONNECTION_MODE_RECVONLY = 2,
  CONNECTION_MODE_SENDRECV = 3,
  CONNECTION_MODE_INACTIVE = 4,
  CONNECTION_MODE_CONFRNCE = 5
};

/// Echo cancellation ("ecan") and silence suppression ("silenceSupp"), as in RFC 3108.
enum eFeatureState : int {
  FEATURE_STATE_NOT_SPECIFIED = 0,  ///< "-"
  FEATURE_STATE_ON = 1,
  FEATURE_STATE_OFF = 2
};

/// Bits of `sSdpParsedData::sdpAttributes`.
enum eSdpAttribute : int {
  /// A non-zero-port RTP/SAVP m-line, or an RTP/AVP one, whatever its port, that carries "crypto", "setup",
  /// "fingerprint" or "key-mgmt".
  SDP_ATTR_SECURE_RTP = 0x1,
  SDP_ATTR_SECURE_VIDEO = 0x2,    ///< an active video m-line has a secure transport
  SDP_ATTR_RECVONLY_VIDEO = 0x4,  ///< video is received only
  SDP_ATTR_ICE_LITE = 0x8,        ///< "a=ice-lite" is present
  SDP_ATTR_FULL_ICE = 0x10,       ///< ICE attributes, but no "a=ice-lite"
  SDP_ATTR_IPV6 = 0x20,           ///< the media are addressed with IPv6
  SDP_ATTR_MIKEY = 0x40,          ///< a "key-mgmt" attribute with a value is present (RFC 4567)
  /// A candidate line holds both the session's address and the first m-line's port.
  SDP_ATTR_ICE_CANDIDATES_MATCH = 0x800,
};

/// H.264 levels (RFC 6184) in rising order. The profile itself is not kept.
enum eH264_profile_id : int {
  H264_PROFILE_NOT_PRESENT = -2,  ///< no H.264 format
  H264_LEVEL_1 = 0,               ///< also for a level that is not recognised
  H264_LEVEL_1B = 1,
  H264_LEVEL_1_1 = 2,
  H264_LEVEL_1_2 = 3,
  H264_LEVEL_1_3 = 4,
  H264_LEVEL_2 = 5,
  H264_LEVEL_2_1 = 6,
  H264_LEVEL_2_2 = 7,
  H264_LEVEL_3 = 8,
  H264_LEVEL_3_1 = 9,
  H264_LEVEL_3_2 = 10,
  H264_LEVEL_4 = 11,
  H264_LEVEL_4_1 = 12,
  H264_LEVEL_4_2 = 13,
  H264_LEVEL_5 = 14,
  H264_LEVEL_5_1 = 15
};

/// How the media of a body are secured.
enum eSecurityType : int {
  SECURITY_NONE = 0,       ///< no body, or neither RTP/AVP nor RTP/SAVP in it
  SECURITY_RTP_ONLY = 1,   ///< plain RTP only
  SECURITY_SRTP_ONLY = 2,  ///< secure RTP only
  SECURITY_BOTH = 3,       ///< both, or plain RTP with a security attribute
  BE_SRTP_1m_LINE = 4,     ///< best effort with one m-line per medium
  BE_SRTP_2m_LINE = 5,     ///< best effort with a secure and a plain m-line per medium
  SRTP_UKNOWN = 6          ///< no best-effort form could be established
};

/// What the other side does not support and is to be removed. Any other value means all secure media.
enum eNonSupportedSecurity : int {
  NON_SUPPORTED_ALL_SECURE = 0,
  NON_SUPPORTED_MIKEY = 1,
  NON_SUPPORTED_SDES = 2,
  NON_SUPPORTED_RTP = 3  ///< the plain RTP media
};

/// What a precondition line says (RFC 3312), values of `sSdpPrecondions::status`.
enum eSdpPreconditionStatus : unsigned int {
  SDP_PRECONDITION_CURRENT = 1,
  SDP_PRECONDITION_DESIRED = 2,
  SDP_PRECONDITION_CONFIRMED = 3
};

/// One precondition line.
struct sSdpPrecondions {
  unsigned int status;      ///< an eSdpPreconditionStatus
  unsigned int type;        ///< 0 quality of service, 1 token
  unsigned int strength;    ///< of desired lines: 0 mandatory, 1 optional, 2 none, 3 failure, 4 unknown
  unsigned int statusType;  ///< 0 end-to-end, 1 local, 2 remote
  unsigned int direction;   ///< 0 none, 1 send, 2 receive, 3 both
};

/// The parsed summary of one SDP body: 132 bytes, whose layout is also the object's transfer form.
struct SDP_NEGOTIATOR_API sSdpParsedData {
  std::uint16_t storedSdpLength;  ///< deflated bytes of the object's stored text, 0 when it is plain
  std::uint8_t padding2[2];
  cMsgIPAddress address;  ///< connection address of the chosen audio, video or image media
  std::uint32_t port;     ///< of the chosen media, or SDP_PORT_NOT_SET
  /// Values of `audioCodecTable` in m-line order; SDP_NO_CODEC ends the list.
  std::uint8_t audioCodec[MAX_SDP_NEGOTIATOR_AUDIO_CODECS];
  /// Milliseconds for each entry of `audioCodec`, or SDP_PACKETIZATION_NOT_SET.
  std::uint8_t packetizationPeriod[MAX_SDP_NEGOTIATOR_AUDIO_CODECS];
  std::uint32_t T38MaxBitRate;  ///< bit/s, or SDP_T38_MAX_BIT_RATE_NOT_SET
  std::int32_t h264Profile;     ///< eH264_profile_id: the highest level met
  /// Bits of eMediaType: kinds that have an m-line with a port other than 0. Only bits below 64 are legal.
  std::uint32_t mediaType;
  std::uint32_t bandwidth;      ///< of the session's b-line
  std::uint32_t sdpAttributes;  ///< bits of eSdpAttribute
  std::uint16_t oLineStart;     ///< offset of the o-line in the text
  std::uint16_t oLineEnd;       ///< offset just behind the o-line, its line end included
  std::int16_t gainControl;  ///< 4 without media, 44 for voice-band data, -1 after conflicting "gpmd" lines
  std::uint8_t padding94[2];
  std::uint32_t state;               ///< 1 from `init` on; not used by the library
  std::uint8_t echoCancellation;     ///< eFeatureState
  std::uint8_t echoCancelDirection;  ///< as set by the caller; never parsed
  std::uint8_t silenceSuppression;   ///< eFeatureState
  std::uint8_t resourceReserve;      ///< 0 to 3 as set by the caller; never parsed
  std::uint8_t sessionMode;          ///< eConnectionMode of the audio
  std::uint8_t padding105[3];
  std::uint32_t videoBandwidth;  ///< the largest b-line value of the active video m-lines
  std::uint8_t videoMode;        ///< eConnectionMode of the chosen video m-line
  std::uint8_t reserved[19];     ///< 0 from `init` on; not used by the library

  /// Resets every byte of the record to the state in which nothing was parsed.
  void init();

  /// Tells whether nothing was parsed into the record or set in it. Only the first entries of the two
  /// lists count; `storedSdpLength`, `state` and the reserved bytes do not.
  /// @return whether all other members have the values that `init` gives
  bool isInitialized() const;
};

/// The address and port from which an SDP body is built; laid out like `address` and `port` of
/// `sSdpParsedData`.
struct SDP_NEGOTIATOR_API sSDPDescriptor {
  cMsgIPAddress address;
  std::uint32_t port;

  /// Resets to the zero address and SDP_PORT_NOT_SET.
  void init();
};

/// `codecDetailStruct::kind`.
inline constexpr std::uint32_t CODEC_DETAIL_VIDEO = 2;
inline constexpr std::uint32_t CODEC_DETAIL_APPLICATION = 4;

/// A recognised format of a video or application m-line.
struct codecDetailStruct {
  std::uint32_t kind = 0;                           ///< CODEC_DETAIL_VIDEO or CODEC_DETAIL_APPLICATION
  std::uint8_t codec = SDP_NO_CODEC;                ///< value of `videoCodecTable`
  std::int32_t profile = H264_PROFILE_NOT_PRESENT;  ///< eH264_profile_id
};

/// Bits of `mediaStruct::flags`. Without a known address type neither of the address bits is set.
enum eMediaFlag : int {
  MEDIA_FLAG_ADDRESS_OTHER = 0x20,  ///< the connection's address type is not "IP4"
  MEDIA_FLAG_ADDRESS_IP4 = 0x80,
  MEDIA_FLAG_PLAIN = 0x100,  ///< the transport does not contain "SAVP"
  MEDIA_FLAG_SECURE = 0x200  ///< the transport contains "SAVP"
};

/// An active video or application m-line.
struct mediaStruct {
  std::uint32_t mediaType = 0;                    ///< MEDIA_VIDEO or MEDIA_APPLICATION
  std::uint32_t spare = 0;                        ///< always 0
  std::string label;                              ///< value of the "label" attribute (RFC 4574), or empty
  std::uint32_t flags = 0;                        ///< bits of eMediaFlag
  std::uint32_t mode = CONNECTION_MODE_SENDRECV;  ///< eConnectionMode
  std::uint32_t bandwidth = 0;                    ///< of the m-line's b-line
  std::vector<codecDetailStruct> codecs;          ///< the recognised formats in m-line order
};

/// `audioCodecRow::kind`.
inline constexpr std::uint8_t AUDIO_CODEC_KIND_OTHER = 0;  ///< events and clear channel
inline constexpr std::uint8_t AUDIO_CODEC_KIND_AUDIO = 1;
inline constexpr std::uint8_t AUDIO_CODEC_KIND_FAX = 3;  ///< fax over the image media

/// A row of `audioCodecTable`.
struct audioCodecRow {
  /// As in an rtpmap line, or "NOT_SPECIFIED". A rate variant has the suffix "@<kbit/s>" or
  /// "/<clock rate>@<kbit/s>".
  const char* encodingName;
  const char* textName;  ///< the name in traces and for callers
  std::uint8_t value;    ///< the value in codec lists
  std::uint8_t kind;     ///< one of AUDIO_CODEC_KIND_...
};

/// A row of `videoCodecTable`.
struct videoCodecRow {
  const char* encodingName;
  std::uint8_t value;  ///< the value in codec lists
};

/// Rows of the tables, the empty last ones included.
inline constexpr int AUDIO_CODEC_TABLE_ROWS = 40;
inline constexpr int VIDEO_CODEC_TABLE_ROWS = 14;

/// The codecs that the library knows. Lookups scan from the first row to the empty last one and take the
/// first match: 25 is "T38_LOOSE", the second name of that value is for lookups by name.
extern SDP_NEGOTIATOR_API const audioCodecRow audioCodecTable[AUDIO_CODEC_TABLE_ROWS];
extern SDP_NEGOTIATOR_API const videoCodecRow videoCodecTable[VIDEO_CODEC_TABLE_ROWS];

#endif
