#ifndef REQUEST_TABLE_H
#define REQUEST_TABLE_H

#include <span>
#include <vector>

#include "sdpNegotiator.h"

// Every request of an object that changes its text, with what it leaves of the summary. Tests, fuzz targets and
// benchmarks go through this table, so that a request that is added here is tried by all of them.

/// What requests are given; as it is made, what an engine gives in an ordinary call.
struct RequestValues {
  /// PCMU, PCMA, G729 and G722, then none; more than an object holds.
  unsigned char codecs[MAX_SDP_NEGOTIATOR_AUDIO_CODECS + 5] = {3, 1, 10, 7};
  int codecCount = 4;
  /// H264, VP8 and H263, then none.
  unsigned char videoCodecs[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {2, 12, 1};
  int videoCodecCount = 3;
  const char* codecNames = "G711ULAW64K,TELEPHONE_EVENT";

  const char* ip = "192.0.2.99";
  unsigned int port = 5004;
  const char* sessionId = "8000";
  const char* sessionVersion = "1";
  unsigned int version = 7;
  long long longVersion = 5000000000;
  eIPAddressVersion ipVersion = IP_VERSION_6;

  unsigned char mode = CONNECTION_MODE_SENDONLY;
  int mediaSelect = 64;
  unsigned int mediaMask = MEDIA_VIDEO;
  unsigned char state = FEATURE_STATE_ON;
  unsigned char side = 3;
  eNonSupportedSecurity unsupported = NON_SUPPORTED_ALL_SECURE;
  eSecurityType from = BE_SRTP_2m_LINE;
  eSecurityType to = BE_SRTP_1m_LINE;
  const char* fromTransport = "RTP/SAVP";
  const char* toTransport = "RTP/AVP";
  unsigned int bandwidth = 128;
  eH264_profile_id profile = H264_LEVEL_1;

  bool flag = true;
  bool hold = true;
  bool third = false;
  bool answer = true;

  const char* sections = "m=video 5008 RTP/AVP 34\r\nb=AS:256\r\na=rtpmap:34 H263/90000\r\n";
  char* videoOut = nullptr;  ///< receives video sections
  unsigned int videoOutSize = 0;
  char removed[32] = {1};  ///< record of removed m-lines: an audio one that was the first
  sSdpPrecondions preconditions[2] = {{SDP_PRECONDITION_CURRENT, 0, 0, 1, 0},
                                      {SDP_PRECONDITION_DESIRED, 0, 0, 1, 3}};
  int preconditionCount = 2;

  cSdpNegotiator other;  ///< a parsed object; `sdpModifyVersionAndMlines` changes it
  cSdpNegotiator offer;  ///< another one
};

/// Parts of a summary.
enum SummaryPart : unsigned int {
  kNoPart = 0,
  kOLineStart = 0x1,
  kOLineEnd = 0x2,
  kAudioCodecs = 0x4,
  kPeriods = 0x8,
  kIceFlags = 0x10,    ///< SDP_ATTR_ICE_LITE and SDP_ATTR_FULL_ICE
  kCandidates = 0x20,  ///< what ICE candidates tell: whether they match, and IPv6
  kVideoBandwidth = 0x40,
  kH264Level = 0x80,
  kMedia = 0x100,  ///< what else media sections tell
  kWhole = 0x1ff   ///< with what was set without a body to tell it
};

/// What a request does to the summary.
enum class Summary {
  parsed,  ///< it is that of the new text; the object may be empty or unchanged instead
  stored,  ///< only some parts are set and the others stay as they were
  either   ///< parsed or stored, by what there is to do
};

/// Which result says that all bytes of the object are as they were.
enum class Unchanged { byNoResult, byZero, byOthers };

struct RequestRow {
  const char* name;
  unsigned short (*run)(cSdpNegotiator& object, RequestValues& values);
  Summary summary = Summary::parsed;
  // Of a stored one.
  unsigned int sets = kNoPart;   ///< parts that it sets
  unsigned int stale = kNoPart;  ///< parts that may tell something else than the new text of an ordinary body
  Unchanged unchanged = Unchanged::byNoResult;
};

namespace requestTable {

using Object = cSdpNegotiator;
using With = RequestValues;

inline constexpr unsigned int kCodecLists = kAudioCodecs | kPeriods;
/// A new codec order gives the text the codec's form, where the o-line may stand elsewhere.
inline constexpr unsigned int kCodecsAndOLine = kAudioCodecs | kOLineStart | kOLineEnd;
/// Video that goes may be what the summary chose, or what made it choose another medium.
inline constexpr unsigned int kVideoSections = kMedia | kVideoBandwidth | kH264Level;

inline unsigned short portOf(const With& v) { return static_cast<unsigned short>(v.port); }

/// Origin line: where it ends is told anew, but for a version that is raised.
inline constexpr RequestRow kOriginLineRequests[] = {
    {"copyOLine", [](Object& o, With& v) { return o.copyOLine(&v.other); }, Summary::stored, kOLineEnd,
     kNoPart},
    {"sdpSetVersionNumber", [](Object& o, With& v) { return o.sdpSetVersionNumber(v.version); },
     Summary::stored, kOLineEnd, kNoPart},
    {"sdpSetVersionNumberLong", [](Object& o, With& v) { return o.sdpSetVersionNumberLong(v.longVersion); },
     Summary::stored, kOLineEnd, kNoPart},
    {"sdpModifyOLine",
     [](Object& o, With& v) { return o.sdpModifyOLine(v.sessionId, v.sessionVersion, v.ip); },
     Summary::stored, kOLineEnd, kNoPart},
    {"sdpModifyOLine, no address",
     [](Object& o, With& v) { return o.sdpModifyOLine(v.sessionId, v.sessionVersion); }, Summary::stored,
     kOLineEnd, kNoPart},
    {"sdpModifyOLine, time of day", [](Object& o, With&) { return o.sdpModifyOLine(); }, Summary::stored,
     kOLineEnd, kNoPart},
    {"sdpIncVersion", [](Object& o, With&) { return o.sdpIncVersion(); }, Summary::stored, kNoPart,
     kOLineEnd},
};

inline constexpr RequestRow kAudioCodecRequests[] = {
    {"sdpRestrictAudioCodecsTo",
     [](Object& o, With& v) { return o.sdpRestrictAudioCodecsTo(v.codecs, v.codecCount, false); },
     Summary::parsed, kNoPart, kNoPart, Unchanged::byZero},
    {"sdpRestrictAudioCodecsTo, given order",
     [](Object& o, With& v) { return o.sdpRestrictAudioCodecsTo(v.codecs, v.codecCount, true); },
     Summary::parsed, kNoPart, kNoPart, Unchanged::byZero},
    {"sdpChangeAudioCodecPreference",
     [](Object& o, With& v) { return o.sdpChangeAudioCodecPreference(v.codecs[0]); }, Summary::stored,
     kCodecLists, kCodecsAndOLine},
    {"sdpReorderAudioCodecPreference",
     [](Object& o, With& v) { return o.sdpReorderAudioCodecPreference(v.codecs, v.codecCount); },
     Summary::stored, kCodecLists, kCodecsAndOLine | kPeriods},
};

inline constexpr RequestRow kVideoRequests[] = {
    // More than the video goes where another section follows it, and what is left need not parse.
    {"sdpAddVideoDescriptions",
     [](Object& o, With& v) -> unsigned short {
       o.sdpAddVideoDescriptions(v.sections);
       return 0;
     },
     Summary::stored, kNoPart, kWhole},
    {"sdpGetVideoDescriptions",
     [](Object& o, With& v) { return o.sdpGetVideoDescriptions(v.videoOut, v.videoOutSize, v.flag); },
     Summary::stored, kNoPart, kVideoSections, Unchanged::byZero},
    {"sdpRestrictVideoCodecsTo",
     [](Object& o, With& v) { return o.sdpRestrictVideoCodecsTo(v.videoCodecs, v.videoCodecCount); },
     Summary::stored, kNoPart, kH264Level, Unchanged::byZero},
    {"sdpModifyTransportTypes",
     [](Object& o, With& v) -> unsigned short {
       o.sdpModifyTransportTypes(v.fromTransport, v.toTransport);
       return 0;
     }},
    // Levels 1b and 1.1 are written alike.
    {"sdpLimitVideoMediaBandwidth",
     [](Object& o, With& v) { return o.sdpLimitVideoMediaBandwidth(v.bandwidth, v.profile); },
     Summary::stored, kVideoBandwidth | kH264Level, kH264Level, Unchanged::byOthers},
};

inline constexpr RequestRow kSecurityRequests[] = {
    {"sdpDisableSRTPMedia",
     [](Object& o, With& v) { return o.sdpDisableSRTPMedia(v.removed, v.unsupported); }},
    {"sdpRemoveMikeyAttribute", [](Object& o, With&) { return o.sdpRemoveMikeyAttribute(); }},
    {"sdpDisableSDESCryptoMedia", [](Object& o, With&) { return o.sdpDisableSDESCryptoMedia(); }},
    {"sdpRemoveANAT", [](Object& o, With& v) { return o.sdpRemoveANAT(v.ipVersion, v.removed, v.flag); }},
    {"sdpReInsertANAT", [](Object& o, With& v) { return o.sdpReInsertANAT(v.removed, v.flag); }},
    {"sdpRemoveDTLSAttributes", [](Object& o, With&) { return o.sdpRemoveDTLSAttributes(); }, Summary::parsed,
     kNoPart, kNoPart, Unchanged::byOthers},
    {"sdpRemoveDualStackIce", [](Object& o, With&) { return o.sdpRemoveDualStackIce(); }},
    {"sdpReplaceTransportProtocol",
     [](Object& o, With& v) { return o.sdpReplaceTransportProtocol(v.removed, v.flag); }},
};

inline constexpr RequestRow kBestEffortRequests[] = {
    {"sdpChangeSdpType", [](Object& o, With& v) { return o.sdpChangeSdpType(v.from, v.to, v.removed); }},
    {"sdpBuild2mLineSDP", [](Object& o, With&) { return o.sdpBuild2mLineSDP(); }},
    {"sdpRemoveMlinesZeroPort",
     [](Object& o, With&) -> unsigned short {
       o.sdpRemoveMlinesZeroPort();
       return 0;
     }},
};

inline constexpr RequestRow kMediaRequests[] = {
    {"sdpReplaceMode", [](Object& o, With& v) { return o.sdpReplaceMode(v.mode, v.mediaSelect); }},
    {"sdpReplaceMode, all media", [](Object& o, With& v) { return o.sdpReplaceMode(v.mode); }},
    {"sdpInsertSilenceSuppression",
     [](Object& o, With& v) { return o.sdpInsertSilenceSuppression(v.state); }},
    {"sdpInsertEchoCancellation",
     [](Object& o, With& v) { return o.sdpInsertEchoCancellation(v.state, v.side); }},
    {"sdpReplaceCxIP", [](Object& o, With& v) { return o.sdpReplaceCxIP(v.ip); }},
    {"sdpDisablePort", [](Object& o, With& v) { return o.sdpDisablePort(v.mediaMask); }},
    {"sdpDisableSAVPPorts", [](Object& o, With&) { return o.sdpDisableSAVPPorts(); }},
    {"sdpDisableAVPPorts", [](Object& o, With&) { return o.sdpDisableAVPPorts(); }},
    {"sdpRemoveAllVideoMedia", [](Object& o, With&) { return o.sdpRemoveAllVideoMedia(); }},
    {"sdpRemoveVideoMedia", [](Object& o, With&) { return o.sdpRemoveVideoMedia(); }},
};

inline constexpr RequestRow kAttributeRequests[] = {
    // An "a=ice-mismatch" stays, and tells of ICE.
    {"sdpRemoveIce", [](Object& o, With&) { return o.sdpRemoveIce(); }, Summary::stored, kIceFlags,
     kIceFlags | kCandidates, Unchanged::byOthers},
    {"sdpDelPrecondions", [](Object& o, With&) { return o.sdpDelPrecondions(); }, Summary::stored, kNoPart,
     kNoPart, Unchanged::byOthers},
    {"sdpInsertPrecondions",
     [](Object& o, With& v) {
       return o.sdpInsertPrecondions(v.flag ? 1 : 0, v.preconditionCount, v.preconditions);
     },
     Summary::stored, kNoPart, kNoPart, Unchanged::byOthers},
};

inline constexpr RequestRow kDummyRequests[] = {
    {"sdpCreateRmDummyOffer",
     [](Object& o, With& v) { return o.sdpCreateRmDummyOffer(v.version, v.port, v.flag); }},
    {"createDummy",
     [](Object& o, With& v) { return o.createDummy(v.answer, v.hold, v.third, v.ip, portOf(v), v.flag); },
     Summary::parsed, kNoPart, kNoPart, Unchanged::byOthers},
    {"createDummy, own o-line",
     [](Object& o, With& v) { return o.createDummy(v.answer, v.hold, v.ip, portOf(v)); }, Summary::parsed,
     kNoPart, kNoPart, Unchanged::byOthers},
    {"createDummyAnswer", [](Object& o, With& v) { return o.createDummyAnswer(v.hold, v.ip, portOf(v)); },
     Summary::parsed, kNoPart, kNoPart, Unchanged::byOthers},
    {"createDummyAck", [](Object& o, With& v) { return o.createDummyAck(v.hold, v.ip, portOf(v)); },
     Summary::parsed, kNoPart, kNoPart, Unchanged::byOthers},
    {"createDummyAck, codecs",
     [](Object& o, With& v) { return o.createDummyAck(v.hold, v.ip, portOf(v), v.codecNames); },
     Summary::parsed, kNoPart, kNoPart, Unchanged::byOthers},
};

/// Other bodies and summaries. The first stores where there is no m-line to add.
inline constexpr RequestRow kOtherBodyRequests[] = {
    {"sdpModifyVersionAndMlines",
     [](Object& o, With& v) { return o.sdpModifyVersionAndMlines(&v.other, v.flag); }, Summary::either,
     kOLineEnd, kNoPart},
    {"sdpUpdateAnswer", [](Object& o, With& v) { return o.sdpUpdateAnswer(&v.offer, &v.other); }},
    {"setParsedData",
     [](Object& o, With& v) -> unsigned short {
       o.setParsedData(v.other.getParsedData());
       return 0;
     },
     Summary::either, kWhole, kWhole},
};

inline constexpr std::span<const RequestRow> kTopics[] = {
    kOriginLineRequests, kAudioCodecRequests, kVideoRequests, kSecurityRequests, kBestEffortRequests,
    kMediaRequests,      kAttributeRequests,  kDummyRequests, kOtherBodyRequests};

}  // namespace requestTable

inline std::vector<RequestRow> allRequests() {
  std::vector<RequestRow> all;
  for (const auto& topic : requestTable::kTopics) all.insert(all.end(), topic.begin(), topic.end());
  return all;
}

#endif
