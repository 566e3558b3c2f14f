#include <iterator>

#include "stackUse.h"

// The requests of an object.

namespace {

using W = Workspace;

constexpr unsigned char kCodecs[] = {3, 29};
constexpr unsigned char kVideoCodecs[] = {2};
constexpr const char* kIp = "198.51.100.9";
constexpr const char* kVideoSection = "m=video 40000 RTP/AVP 97\r\na=rtpmap:97 H264/90000\r\n";
constexpr sSdpPrecondions kPrecondition = {SDP_PRECONDITION_DESIRED, 0, 0, 0, 3};

void release(const unsigned char* bytes) { delete[] bytes; }
void release(const char* bytes) { delete[] bytes; }

void compress(W& w) {
  unsigned char* bytes = nullptr;
  unsigned int size = 0;
  w.object.compressObject(&bytes, size);
  release(bytes);
}

void takeOLine(W& w) {
  char* line = nullptr;
  w.object.getOLine(line, w.number);
  release(line);
}

void takeOLineRecord(W& w) {
  o_line record;
  w.object.getOLine(record);
}

void askVideoCodecs(W& w) {
  unsigned char codecs[SDP_VIDEO_CODEC_LIST_SIZE];
  unsigned int attributes = 0;
  w.object.getVideoCodecs(codecs, attributes, w.number);
}

constexpr Request kBasics[] = {
    {"Body and parse", "sdpParse", [](W& w) { w.object.sdpParse(w.body.c_str(), SDP_TYPE_OFFER); }},
    {"Body and parse", "initAudioCodecs", [](W& w) { w.object.initAudioCodecs(); }},
    {"Body and parse", "initPacketizationPeriod", [](W& w) { w.object.initPacketizationPeriod(); }},
    {"Body and parse", "initSdpDescriptor", [](W& w) { w.object.initSdpDescriptor(); }},
    {"Stored text", "setRawSDP", [](W& w) { w.object.setRawSDP(w.body.c_str()); }},
    {"Stored text", "getRawSDP", [](W& w) { w.object.getRawSDP(w.text, sizeof w.text); }},
    {"Stored text", "getSDP", [](W& w) { w.object.getSDP(w.text, sizeof w.text); }},
    {"Stored text", "getRawSdpSize", [](W& w) { w.object.getRawSdpSize(); }},
    {"Stored text", "isSdpPresent", [](W& w) { w.object.isSdpPresent(); }},
    {"Summary", "getParsedData", [](W& w) { w.object.getParsedData(); }},
    {"Summary", "setParsedData",
     [](W& w) {
       sSdpParsedData data = w.object.getParsedData();
       data.sessionMode = CONNECTION_MODE_INACTIVE;
       data.silenceSuppression = FEATURE_STATE_OFF;
       w.object.setParsedData(data);
     }},
    {"Summary", "isParsedDataInitialized", [](W& w) { w.object.isParsedDataInitialized(); }},
    {"Summary", "isSecureVideo", [](W& w) { w.object.isSecureVideo(); }},
    {"Summary", "isRecvOnlyVideo", [](W& w) { w.object.isRecvOnlyVideo(); }},
    {"Summary", "isIceLitePresent", [](W& w) { w.object.isIceLitePresent(); }},
    {"Summary", "isFullIcePresent", [](W& w) { w.object.isFullIcePresent(); }},
    {"Summary", "isMikeyPresent", [](W& w) { w.object.isMikeyPresent(); }},
    {"Summary", "IceCandidatesMatch", [](W& w) { w.object.IceCandidatesMatch(); }},
    {"Summary", "isParsedDataPresent", [](W& w) { w.object.isParsedDataPresent(); }},
    {"Summary", "isSecureCall", [](W& w) { w.object.isSecureCall(); }},
    {"Summary", "isHoldState", [](W& w) { w.object.isHoldState(); }},
    {"Search in the text", "contains", [](W& w) { w.object.contains("no such text"); }},
    {"Search in the text", "isSDESPresent", [](W& w) { w.object.isSDESPresent(); }},
    {"Search in the text", "isAnatPresent", [](W& w) { w.object.isAnatPresent(); }},
    {"Search in the text", "isRmDummySdp", [](W& w) { w.object.isRmDummySdp(); }},
    {"Comparison", "compareSdpByBody(text)", [](W& w) { w.object.compareSdpByBody(w.body.c_str()); }},
    {"Comparison", "compareSdpByBody(object)", [](W& w) { w.object.compareSdpByBody(&w.other); }},
    {"Display", "displaySDPRawData", [](W& w) { w.object.displaySDPRawData(); }},
    {"Display", "displaySDPData", [](W& w) { w.object.displaySDPData(); }},
    {"Media", "getMedia", [](W& w) { w.object.getMedia(w.media); }},
    {"Media", "getVideoCodecs", askVideoCodecs},
    {"Settings", "setAudioCodecs", [](W& w) { w.object.setAudioCodecs(kCodecs, 2); }},
    {"Settings", "addAudioCodec", [](W& w) { w.object.addAudioCodec(kCodecs[0], -1); }},
    {"Settings", "setPacketizationPeriod(list)", [](W& w) { w.object.setPacketizationPeriod(kCodecs, 2); }},
    {"Settings", "setPacketizationPeriod(slot)", [](W& w) { w.object.setPacketizationPeriod(20, -1); }},
    {"Settings", "setMediaPort", [](W& w) { w.object.setMediaPort(80); }},
    {"Settings", "setMediaType", [](W& w) { w.object.setMediaType(64); }},
    {"Settings", "setResourceReserve", [](W& w) { w.object.setResourceReserve(4); }},
    {"Settings", "setEchoCancellation", [](W& w) { w.object.setEchoCancellation(1); }},
    {"Settings", "setEchoCancelDirection", [](W& w) { w.object.setEchoCancelDirection(1); }},
    {"Settings", "setT38MaxBitRate", [](W& w) { w.object.setT38MaxBitRate(1); }},
    {"Settings", "setSdpAttributes", [](W& w) { w.object.setSdpAttributes(1); }},
    {"Settings", "setGainControl", [](W& w) { w.object.setGainControl(1); }},
    {"Settings", "setBandwidth", [](W& w) { w.object.setBandwidth(1); }},
    {"Settings", "setSdpDescriptor", [](W& w) { w.object.setSdpDescriptor({}); }},
    {"Codec names", "getAudioCodecValue", [](W&) { cSdpNegotiator::getAudioCodecValue("OPUS"); }},
    {"Codec names", "getRtpMapAudioCodecValue", [](W&) { cSdpNegotiator::getRtpMapAudioCodecValue("OPUS"); }},
    {"Codec names", "getVideoCodecValue", [](W&) { cSdpNegotiator::getVideoCodecValue("H224"); }},
    {"Codec names", "getAudioCodecText", [](W&) { cSdpNegotiator::getAudioCodecText(38); }},
    {"Codec names", "getVideoCodecText", [](W&) { cSdpNegotiator::getVideoCodecText(13); }},
    {"Texts from values", "sdpEncode", [](W& w) { w.object.sdpEncode(w.text, 1, w.number); }},
    {"Texts from values", "sdpCreateMessage",
     [](W& w) { cSdpNegotiator::sdpCreateMessage(w.text, kIp, 20000, "PCMA,PCMU", true); }},
    {"Texts from values", "generateDummyAnswer",
     [](W& w) { cSdpNegotiator::generateDummyAnswer(w.text, false, w.number, IP_VERSION_4); }},
    {"Transfer", "getObjectSize", [](W& w) { w.object.getObjectSize(); }},
    {"Transfer", "compressObject", compress},
    {"Transfer", "uncompressObject", [](W& w) { w.object.uncompressObject(w.bytes, w.byteCount); }},
};

constexpr Request kOrigin[] = {
    {"Origin line", "getOLine(text)", takeOLine},
    {"Origin line", "getOLine(record)", takeOLineRecord},
    {"Origin line", "compareSdpOLine(text)",
     [](W& w) { w.object.compareSdpOLine("o=- 1 1 IN IP4 192.0.2.1"); }},
    {"Origin line", "compareSdpOLine(object)", [](W& w) { w.object.compareSdpOLine(&w.other); }},
    {"Origin line", "compareSdpOLineUpdate", [](W& w) { w.object.compareSdpOLineUpdate(&w.other); }},
    {"Origin line", "copyOLine", [](W& w) { w.object.copyOLine(&w.other); }},
    {"Origin line", "sdpSetVersionNumber", [](W& w) { w.object.sdpSetVersionNumber(77); }},
    {"Origin line", "sdpSetVersionNumberLong", [](W& w) { w.object.sdpSetVersionNumberLong(77); }},
    {"Origin line", "sdpModifyOLine", [](W& w) { w.object.sdpModifyOLine("1", "2", kIp); }},
    {"Origin line", "sdpModifyOLine()", [](W& w) { w.object.sdpModifyOLine(); }},
    {"Origin line", "sdpIncVersion", [](W& w) { w.object.sdpIncVersion(); }},
    {"Offer versions", "isSdpVersionIncreased",
     [](W& w) {
       w.object.sdpIncVersion();
       w.object.isSdpVersionIncreased(&w.other);
     }},
    {"Offer versions", "sdpModifyVersionAndMlines",
     [](W& w) {
       w.object.sdpParse(
           "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n"
           "m=audio 5004 RTP/AVP 0\r\n",
           SDP_TYPE_OFFER);
       w.object.sdpModifyVersionAndMlines(&w.other, false);
     }},
    {"Answer update", "sdpUpdateAnswer",
     [](W& w) {
       cSdpNegotiator& offer = w.other;
       w.object.sdpUpdateAnswer(&offer, &offer);
     }},
};

constexpr Request kMedia[] = {
    {"Audio codec policy", "sdpRestrictAudioCodecsTo",
     [](W& w) { w.object.sdpRestrictAudioCodecsTo(kCodecs, 2, true); }},
    {"Audio codec policy", "sdpChangeAudioCodecPreference",
     [](W& w) { w.object.sdpChangeAudioCodecPreference(kCodecs[0]); }},
    {"Audio codec policy", "sdpReorderAudioCodecPreference",
     [](W& w) { w.object.sdpReorderAudioCodecPreference(kCodecs, 2); }},
    {"Video", "sdpAddVideoDescriptions", [](W& w) { w.object.sdpAddVideoDescriptions(kVideoSection); }},
    {"Video", "sdpGetVideoDescriptions",
     [](W& w) { w.object.sdpGetVideoDescriptions(w.text, sizeof w.text, true); }},
    {"Video", "sdpRestrictVideoCodecsTo", [](W& w) { w.object.sdpRestrictVideoCodecsTo(kVideoCodecs, 1); }},
    {"Video", "sdpModifyTransportTypes",
     [](W& w) { w.object.sdpModifyTransportTypes("RTP/AVP", "RTP/SAVP"); }},
    {"Video limit", "sdpLimitVideoMediaBandwidth",
     [](W& w) { w.object.sdpLimitVideoMediaBandwidth(1, H264_LEVEL_1); }},
    {"Media requests", "sdpReplaceMode", [](W& w) { w.object.sdpReplaceMode(CONNECTION_MODE_SENDONLY, 0); }},
    {"Media requests", "sdpInsertSilenceSuppression", [](W& w) { w.object.sdpInsertSilenceSuppression(2); }},
    {"Media requests", "sdpInsertEchoCancellation", [](W& w) { w.object.sdpInsertEchoCancellation(1, 3); }},
    {"Media requests", "sdpReplaceCxIP", [](W& w) { w.object.sdpReplaceCxIP("2001:db8::5"); }},
    {"Media requests", "sdpDisablePort", [](W& w) { w.object.sdpDisablePort(MEDIA_VIDEO); }},
    {"Media requests", "sdpDisableSAVPPorts", [](W& w) { w.object.sdpDisableSAVPPorts(); }},
    {"Media requests", "sdpDisableAVPPorts", [](W& w) { w.object.sdpDisableAVPPorts(); }},
    {"Media requests", "sdpRemoveAllVideoMedia", [](W& w) { w.object.sdpRemoveAllVideoMedia(); }},
    {"Media requests", "sdpRemoveVideoMedia", [](W& w) { w.object.sdpRemoveVideoMedia(); }},
    {"Media requests", "sdpBuild2mLineSDP", [](W& w) { w.object.sdpBuild2mLineSDP(); }},
    {"Requests for sets of m-lines", "sdpRemoveDualStackIce", [](W& w) { w.object.sdpRemoveDualStackIce(); }},
    {"Requests for sets of m-lines", "sdpReplaceTransportProtocol",
     [](W& w) { w.object.sdpReplaceTransportProtocol(w.record, true); }},
    {"Requests for sets of m-lines", "sdpReInsertANAT",
     [](W& w) { w.object.sdpReInsertANAT(w.record, true); }},
    {"Attribute requests", "sdpRemoveIce", [](W& w) { w.object.sdpRemoveIce(); }},
    {"Attribute requests", "sdpDelPrecondions", [](W& w) { w.object.sdpDelPrecondions(); }},
    {"Attribute requests", "sdpInsertPrecondions",
     [](W& w) { w.object.sdpInsertPrecondions(1, 1, &kPrecondition); }},
};

constexpr Request kSecurity[] = {
    {"Security", "getSdpSecurityType", [](W& w) { w.object.getSdpSecurityType(); }},
    {"Security", "isDTLSPresent", [](W& w) { w.object.isDTLSPresent(); }},
    {"Security", "sdpPreconditionsExist", [](W& w) { w.object.sdpPreconditionsExist(); }},
    {"Security", "sdpDisableSRTPMedia(all secure)",
     [](W& w) { w.object.sdpDisableSRTPMedia(w.record, NON_SUPPORTED_ALL_SECURE); }},
    {"Security", "sdpDisableSRTPMedia(MIKEY)",
     [](W& w) { w.object.sdpDisableSRTPMedia(w.record, NON_SUPPORTED_MIKEY); }},
    {"Security", "sdpDisableSRTPMedia(SDES)",
     [](W& w) { w.object.sdpDisableSRTPMedia(w.record, NON_SUPPORTED_SDES); }},
    {"Security", "sdpDisableSRTPMedia(plain)",
     [](W& w) { w.object.sdpDisableSRTPMedia(w.record, NON_SUPPORTED_RTP); }},
    {"Security", "sdpRemoveMikeyAttribute", [](W& w) { w.object.sdpRemoveMikeyAttribute(); }},
    {"Security", "sdpDisableSDESCryptoMedia", [](W& w) { w.object.sdpDisableSDESCryptoMedia(); }},
    {"Security", "sdpRemoveANAT", [](W& w) { w.object.sdpRemoveANAT(IP_VERSION_6, w.record, true); }},
    {"Security", "sdpRemoveDTLSAttributes", [](W& w) { w.object.sdpRemoveDTLSAttributes(); }},
    {"Best-effort SRTP", "getSdpBestEffortSrtpType", [](W& w) { w.object.getSdpBestEffortSrtpType(); }},
    {"Best-effort SRTP", "sdpChangeSdpType",
     [](W& w) { w.object.sdpChangeSdpType(BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, w.record); }},
    {"Best-effort SRTP", "isSingleLineSDP", [](W& w) { w.object.isSingleLineSDP(); }},
    {"Best-effort SRTP", "sdpRemoveMlinesZeroPort", [](W& w) { w.object.sdpRemoveMlinesZeroPort(); }},
    {"Dummy bodies", "sdpCreateRmDummyOffer", [](W& w) { w.object.sdpCreateRmDummyOffer(1, 1, true); }},
    {"Dummy bodies", "createDummy", [](W& w) { w.object.createDummy(false, true, kIp, 20000); }},
    {"Dummy bodies", "createDummyAnswer", [](W& w) { w.object.createDummyAnswer(true, kIp, 20000); }},
    {"Dummy bodies", "createDummyAck", [](W& w) { w.object.createDummyAck(true, kIp, 20000); }},
    {"Dummy bodies", "createDummyAck(codecs)",
     [](W& w) { w.object.createDummyAck(true, kIp, 20000, "PCMU,telephone-event"); }},
};

}  // namespace

std::vector<Request> objectRequests() {
  std::vector<Request> all(std::begin(kBasics), std::end(kBasics));
  all.insert(all.end(), std::begin(kOrigin), std::end(kOrigin));
  all.insert(all.end(), std::begin(kMedia), std::end(kMedia));
  all.insert(all.end(), std::begin(kSecurity), std::end(kSecurity));
  return all;
}
