#include <cstring>
#include <iterator>

#include "stackUse.h"

// The edits of texts, and what lies below them.

namespace {

using W = Workspace;
using M = sdpModifications;

constexpr unsigned char kCodecs[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {3, 29};
constexpr unsigned char kVideoCodecs[] = {2};
constexpr const char* kIp = "198.51.100.9";
constexpr sSdpPrecondions kPrecondition = {SDP_PRECONDITION_DESIRED, 0, 0, 0, 3};

constexpr Request kFirst[] = {
    {"Origin line", "sdpReplaceVersionNumber",
     [](W& w) { M::sdpReplaceVersionNumber(w.text, 77, w.oLineEnd); }},
    {"Origin line", "sdpReplaceVersionNumberLong",
     [](W& w) { M::sdpReplaceVersionNumberLong(w.text, 77, w.oLineEnd); }},
    {"Origin line", "sdpModifyOLine", [](W& w) { M::sdpModifyOLine(w.text, "1", "2", kIp, w.oLineEnd); }},
    {"Origin line", "sdpIncVersion", [](W& w) { M::sdpIncVersion(w.text); }},
    {"Origin line", "generateOLine", [](W& w) { M::generateOLine(w.second); }},
    {"Generation", "sdpEncoder", [](W& w) { M::sdpEncoder(w.text, w.object.getParsedData(), 1, w.number); }},
    {"Generation", "createSDPUserRequest",
     [](W& w) { M::createSDPUserRequest(w.text, kIp, 20000, "PCMA,PCMU", true); }},
    {"Generation", "buildDummyMLine", [](W& w) { M::buildDummyMLine(w.second, 1, true); }},
    {"Generation", "sdpBuild2mLineSDP", [](W& w) { M::sdpBuild2mLineSDP(w.text); }},
    {"Generation", "sdpReplaceMLineTransportProtocol",
     [](W& w) {
       char* const mLine = std::strstr(w.text, "m=");
       if (mLine == nullptr) return;
       M::sdpReplaceMLineTransportProtocol(mLine, std::strchr(mLine, '\n'), "RTP/AVP", "RTP/SAVP");
     }},
    {"Codec lists", "sdpRemoveCodecs", [](W& w) { M::sdpRemoveCodecs(w.text, kCodecs); }},
    {"Codec lists", "sdpCodecsReordering", [](W& w) { M::sdpCodecsReordering(w.text, kCodecs); }},
    {"Video limits", "decodeProfileIntToString",
     [](W& w) { M::decodeProfileIntToString(w.second, H264_LEVEL_1); }},
    {"Video limits", "decodeProfileIntToString(codecs)",
     [](W& w) { M::decodeProfileIntToString(w.second, kVideoCodecs, 1, H264_LEVEL_1); }},
    {"Video limits", "sdpModifyProfileId", [](W& w) { M::sdpModifyProfileId(w.text, H264_LEVEL_1); }},
    {"Video limits", "sdpApplyBLine", [](W& w) { M::sdpApplyBLine(w.text, 1); }},
    {"Preconditions", "sdpInsertPrecondions",
     [](W& w) { M::sdpInsertPrecondions(w.text, MAX_SDP_PROTOCOL_DATA_SIZE, 1, 1, &kPrecondition); }},
    {"Preconditions", "sdpDelPreconditions", [](W& w) { M::sdpDelPreconditions(w.text); }},
    {"Connection and ports", "sdpReplaceCxIP", [](W& w) { M::sdpReplaceCxIP(w.text, "2001:db8::5"); }},
    {"Connection and ports", "getMediaName", [](W& w) { M::getMediaName(MEDIA_AUDIO, w.second, 20); }},
    {"Connection and ports", "sdpSetMediaPort",
     [](W& w) { M::sdpSetMediaPort(w.text, -1, IP_VERSION_4, M::MEDIA_SECURITY_ANY, 20000); }},
    {"Connection and ports", "sdpDisablePort",
     [](W& w) { M::sdpDisablePort(w.text, MEDIA_AUDIO | MEDIA_VIDEO, IP_VERSION_UNKNOWN); }},
    {"Connection and ports", "sdpRemoveVideoMedia", [](W& w) { M::sdpRemoveVideoMedia(w.text, true); }},
    {"Media attributes", "sdpInsertEchoCancellation",
     [](W& w) { M::sdpInsertEchoCancellation(w.text, 1, 3); }},
    {"Media attributes", "sdpInsertSilenceSuppression",
     [](W& w) { M::sdpInsertSilenceSuppression(w.text, 2, w.object.getParsedData()); }},
    {"Directions", "sdpReplaceMode", [](W& w) { M::sdpReplaceMode(w.text, CONNECTION_MODE_INACTIVE, 0); }},
    {"Directions", "changeConnectionMode",
     [](W& w) { M::changeConnectionMode("sendonly", "recvonly", w.second); }},
    {"Directions", "setMediaConnectionMode",
     [](W& w) {
       char* const mLine = std::strstr(w.text, "\nm=");
       M::setMediaConnectionMode(w.text, w.second, mLine, "audio", "inactive");
     }},
};

constexpr Request kSecond[] = {
    {"Removal of attributes", "sdpRemoveSecureAttributes",
     [](W& w) { M::sdpRemoveSecureAttributes(w.text, "a=crypto"); }},
    {"Removal of attributes", "sdpRemoveDTLSAttributes", [](W& w) { M::sdpRemoveDTLSAttributes(w.text); }},
    {"Removal of attributes", "sdpRemoveAnatAttributes", [](W& w) { M::sdpRemoveAnatAttributes(w.text); }},
    {"Removal of attributes", "sdpRemoveICE", [](W& w) { M::sdpRemoveICE(w.text); }},
    {"Removal of attributes", "sdpRemoveCandidates", [](W& w) { M::sdpRemoveCandidates(w.text); }},
    {"ICE and ANAT", "sdpRemoveDualStackIce", [](W& w) { M::sdpRemoveDualStackIce(w.text); }},
    {"ICE and ANAT", "sdpApplyAnatAttributes", [](W& w) { M::sdpApplyAnatAttributes(w.text); }},
    {"ICE and ANAT", "sdpRemoveAnat",
     [](W& w) { M::sdpRemoveAnat(w.text, IP_VERSION_6, w.record, w.oLineEnd, true); }},
    {"ICE and ANAT", "sdpReInsertAnat", [](W& w) { M::sdpReInsertAnat(w.text, w.record, w.oLineEnd, true); }},
    {"Connection lines", "sdpModifyCLines", [](W& w) { M::sdpModifyCLines(w.text, kIp); }},
    {"Connection lines", "sdpModifyCLinesAllLines", [](W& w) { M::sdpModifyCLinesAllLines(w.text, kIp); }},
    {"Removal and return of m-lines", "sdpRemoveMline",
     [](W& w) { M::sdpRemoveMline(w.text, w.record, w.oLineEnd, "RTP/AVP", true); }},
    {"Removal and return of m-lines", "sdpRemoveSecurity",
     [](W& w) { M::sdpRemoveSecurity(w.text, w.record, w.oLineEnd, true); }},
    {"Removal and return of m-lines", "sdpDisableSRTPMediaStreams",
     [](W& w) { M::sdpDisableSRTPMediaStreams(w.text, w.record, w.oLineEnd); }},
    {"Removal and return of m-lines", "sdpReplaceTransProtocol",
     [](W& w) { M::sdpReplaceTransProtocol(w.text, w.record, w.oLineEnd, true); }},
    {"Best-effort SRTP", "getMLines", [](W& w) { M::getMLines(w.text, w.mLines); }},
    {"Best-effort SRTP", "getSdpsDescription", [](W& w) { M::getSdpsDescription(w.text, w.description); }},
    {"Best-effort SRTP", "isSAVPMline", [](W& w) { M::isSAVPMline(w.text, w.text + 50); }},
    {"Best-effort SRTP", "is2mLineBeSrtp", [](W& w) { M::is2mLineBeSrtp(w.mLines); }},
    {"Best-effort SRTP", "is1mLineBeSrtp", [](W& w) { M::is1mLineBeSrtp(w.mLines); }},
    {"Best-effort SRTP", "sdpChangeSdpType",
     [](W& w) { M::sdpChangeSdpType(w.text, BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, w.record, w.oLineEnd); }},
    {"SDES", "generateSDESKey", [](W& w) { M::generateSDESKey(w.second, sizeof w.second); }},
    {"SDES", "addSDESLine",
     [](W& w) {
       char* const mLine = std::strstr(w.text, "\nm=");
       if (mLine != nullptr) M::addSDESLine(mLine);
     }},
    {"SDES", "isSDESonly", [](W& w) { M::isSDESonly(w.text); }},
    {"Sets of m-lines", "compareNumberOfMLines", [](W& w) { M::compareNumberOfMLines(w.text, w.second); }},
    {"Sets of m-lines", "correctMLines", [](W& w) { M::correctMLines(w.text, w.second, true, true); }},
    {"Sets of m-lines", "isSingleMLineSdp", [](W& w) { M::isSingleMLineSdp(w.text); }},
    {"Sets of m-lines", "sdpRemoveMlinesZeroPort", [](W& w) { M::sdpRemoveMlinesZeroPort(w.text); }},
    {"Sets of m-lines", "sdpSetMediaTransportType",
     [](W& w) {
       M::sdpSetMediaTransportType(w.text, "RTP/AVP", "RTP/SAVP", {"audio", "video"});
     }},
    {"Dummy bodies", "sdpCreateDummy",
     [](W& w) { M::sdpCreateDummy(w.text, true, true, kIp, 20000, w.number, w.oLineEnd, true); }},
    {"Video sections", "getVideoDescriptions",
     [](W& w) { M::getVideoDescriptions(w.text, w.second, sizeof w.second, true); }},
    {"Answer update", "sdpUpdateSdp",
     [](W& w) { M::sdpUpdateSdp(w.text, w.second, w.third, w.number, w.oLineEnd, true); }},
};

constexpr Request kOthers[] = {
    {"The parse alone", "sdpParserMessage::sdpParse",
     [](W& w) {
       sSdpParsedData data;
       data.init();
       sdpParserMessage::sdpParse(w.text, SDP_TYPE_OFFER, data);
     }},
    {"Codec", "sdp_decodeOpt_r",
     [](W& w) {
       char error[SDP_ERROR_TEXT_SIZE];
       unsigned short start = 0;
       sdp_decodeOpt_r(&w.description, w.text, SDP_TYPE_OFFER, error, false, start, w.oLineEnd);
     }},
    {"Codec", "sdp_encode_r",
     [](W& w) { sdp_encode_r(&w.description, SDP_TYPE_OFFER, w.encoded, w.encodedLength, w.encodedSize); }},
};

}  // namespace

std::vector<Request> textEdits() {
  std::vector<Request> all(std::begin(kFirst), std::end(kFirst));
  all.insert(all.end(), std::begin(kSecond), std::end(kSecond));
  return all;
}

std::vector<Request> otherRequests() { return {std::begin(kOthers), std::end(kOthers)}; }
