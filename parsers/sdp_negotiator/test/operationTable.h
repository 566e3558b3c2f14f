#ifndef OPERATION_TABLE_H
#define OPERATION_TABLE_H

#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "requestTable.h"
#include "sdpModifiers.h"
#include "sdpNegotiator.h"

// Every edit of a text and every request of an object that reads or changes its text, with values that give it much to
// do. What looks for costly texts goes through this table.

/// What an operation works on, made anew for each run.
struct Operands {
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  char second[MAX_SDP_PROTOCOL_DATA_SIZE];
  char out[MAX_SDP_PROTOCOL_DATA_SIZE];
  unsigned short oLineEnd = 0;
  int length = 0;
  char record[32] = {};  ///< of removed m-lines
  std::vector<mDescription> mLines;
  sDescription description;

  cSdpNegotiator object;
  RequestValues values;
};

struct Operation {
  const char* name;
  void (*run)(Operands& on);
};

namespace operationTable {

using With = Operands;
using Edits = sdpModifications;

/// Codecs that bodies do not have, so that a search for each goes to the end.
inline constexpr unsigned char kAbsent[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {
    38, 36, 35, 34, 33, 32, 31, 30, 27, 26, 25, 24, 23, 22, 21, 20, 19, 18, 17, 16};
inline constexpr unsigned char kPresent[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {3, 1, 10, 29, 37};
/// Positions that a text has only when it has many m-lines, none in order.
inline constexpr char kRecord[] = {25, 1,  24, 2,  23, 3,  22, 4,  21, 5,  20, 6, 19,
                                   7,  18, 8,  17, 9,  16, 10, 15, 11, 14, 12, 13};
inline constexpr const char* kIp = "2001:db8::ffff:198.51.100.99";
inline constexpr int kAllMedia = 0xff;
inline constexpr sSdpPrecondions kPrecondition = {SDP_PRECONDITION_DESIRED, 0, 0, 1, 3};

inline const std::vector<std::string>& manyNames() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> made;
    for (char last = 'a'; last <= 'y'; ++last) made.push_back(std::string("audi") + last);
    return made;
  }();
  return names;
}

inline char* firstMLine(With& on) { return std::strstr(on.text, "\nm="); }

inline constexpr Operation kValueEdits[] = {
    {"sdpReplaceVersionNumber", [](With& on) { Edits::sdpReplaceVersionNumber(on.text, 77, on.oLineEnd); }},
    {"sdpReplaceVersionNumberLong",
     [](With& on) { Edits::sdpReplaceVersionNumberLong(on.text, 7777777777777, on.oLineEnd); }},
    {"sdpModifyOLine", [](With& on) { Edits::sdpModifyOLine(on.text, "1", "2", kIp, on.oLineEnd); }},
    {"sdpModifyOLine, time of day", [](With& on) { Edits::sdpModifyOLine(on.text, kIp, on.oLineEnd); }},
    {"sdpIncVersion", [](With& on) { Edits::sdpIncVersion(on.text); }},
    {"sdpModifyProfileId", [](With& on) { Edits::sdpModifyProfileId(on.text, H264_LEVEL_1); }},
    {"sdpApplyBLine", [](With& on) { Edits::sdpApplyBLine(on.text, 1); }},
    {"sdpReplaceCxIP", [](With& on) { Edits::sdpReplaceCxIP(on.text, kIp); }},
    {"sdpModifyCLines", [](With& on) { Edits::sdpModifyCLines(on.text, kIp); }},
    {"sdpModifyCLinesAllLines", [](With& on) { Edits::sdpModifyCLinesAllLines(on.text, kIp); }},
    {"sdpSetMediaPort, any",
     [](With& on) {
       Edits::sdpSetMediaPort(on.text, -1, IP_VERSION_UNKNOWN, Edits::MEDIA_SECURITY_ANY, 65000);
     }},
    {"sdpSetMediaPort, IPv6 and secure",
     [](With& on) {
       Edits::sdpSetMediaPort(on.text, MEDIA_VIDEO, IP_VERSION_6, Edits::MEDIA_SECURITY_SECURE, 65000);
     }},
    {"sdpSetMediaPort, IPv4 and plain",
     [](With& on) {
       Edits::sdpSetMediaPort(on.text, MEDIA_AUDIO, IP_VERSION_4, Edits::MEDIA_SECURITY_NON_SECURE, 65000);
     }},
    {"sdpDisablePort", [](With& on) { Edits::sdpDisablePort(on.text, kAllMedia, IP_VERSION_UNKNOWN); }},
    {"sdpDisablePort, IPv6", [](With& on) { Edits::sdpDisablePort(on.text, kAllMedia, IP_VERSION_6); }},
    {"sdpRemoveVideoMedia, all", [](With& on) { Edits::sdpRemoveVideoMedia(on.text, true); }},
    {"sdpRemoveVideoMedia", [](With& on) { Edits::sdpRemoveVideoMedia(on.text, false); }},
    {"sdpReplaceMode", [](With& on) { Edits::sdpReplaceMode(on.text, CONNECTION_MODE_INACTIVE, 0); }},
    {"setMediaConnectionMode",
     [](With& on) {
       Edits::setMediaConnectionMode(on.text, on.second, firstMLine(on), "audio", "inactive");
     }},
    {"sdpReplaceMLineTransportProtocol",
     [](With& on) {
       char* const mLine = std::strstr(on.text, "m=");
       if (mLine == nullptr) return;
       Edits::sdpReplaceMLineTransportProtocol(mLine, std::strchr(mLine, '\n'), "RTP/SAVP", "RTP/AVP");
     }},
    {"sdpSetMediaTransportType",
     [](With& on) { Edits::sdpSetMediaTransportType(on.text, "RTP/AVP", "RTP/SAVP", manyNames()); }},
};

inline constexpr Operation kLineEdits[] = {
    {"sdpRemoveCodecs, absent", [](With& on) { Edits::sdpRemoveCodecs(on.text, kAbsent); }},
    {"sdpRemoveCodecs, present", [](With& on) { Edits::sdpRemoveCodecs(on.text, kPresent); }},
    {"sdpCodecsReordering, absent", [](With& on) { Edits::sdpCodecsReordering(on.text, kAbsent); }},
    {"sdpCodecsReordering, present", [](With& on) { Edits::sdpCodecsReordering(on.text, kPresent); }},
    {"sdpInsertPrecondions",
     [](With& on) {
       Edits::sdpInsertPrecondions(on.text, MAX_SDP_PROTOCOL_DATA_SIZE, 1, 1, &kPrecondition);
     }},
    {"sdpDelPreconditions", [](With& on) { Edits::sdpDelPreconditions(on.text); }},
    {"sdpInsertEchoCancellation", [](With& on) { Edits::sdpInsertEchoCancellation(on.text, 1, 3); }},
    {"sdpInsertSilenceSuppression",
     [](With& on) { Edits::sdpInsertSilenceSuppression(on.text, 2, on.object.getParsedData()); }},
    {"sdpRemoveSecureAttributes, crypto",
     [](With& on) { Edits::sdpRemoveSecureAttributes(on.text, "a=crypto"); }},
    {"sdpRemoveSecureAttributes, key-mgmt",
     [](With& on) { Edits::sdpRemoveSecureAttributes(on.text, "a=key-mgmt:"); }},
    {"sdpRemoveDTLSAttributes", [](With& on) { Edits::sdpRemoveDTLSAttributes(on.text); }},
    {"sdpRemoveAnatAttributes", [](With& on) { Edits::sdpRemoveAnatAttributes(on.text); }},
    {"sdpRemoveICE", [](With& on) { Edits::sdpRemoveICE(on.text); }},
    {"sdpRemoveCandidates", [](With& on) { Edits::sdpRemoveCandidates(on.text); }},
    {"sdpRemoveDualStackIce", [](With& on) { Edits::sdpRemoveDualStackIce(on.text); }},
    {"addSDESLine",
     [](With& on) {
       char* const mLine = firstMLine(on);
       if (mLine != nullptr) Edits::addSDESLine(mLine);
     }},
    {"isSDESonly", [](With& on) { Edits::isSDESonly(on.text); }},
    {"isSAVPMline", [](With& on) { Edits::isSAVPMline(on.text, on.text + std::strlen(on.text)); }},
};

inline constexpr Operation kSectionEdits[] = {
    {"sdpApplyAnatAttributes", [](With& on) { Edits::sdpApplyAnatAttributes(on.text); }},
    {"sdpRemoveAnat, IPv4",
     [](With& on) { Edits::sdpRemoveAnat(on.text, IP_VERSION_4, on.record, on.oLineEnd, true); }},
    {"sdpRemoveAnat, IPv6",
     [](With& on) { Edits::sdpRemoveAnat(on.text, IP_VERSION_6, on.record, on.oLineEnd, true); }},
    {"sdpReInsertAnat", [](With& on) { Edits::sdpReInsertAnat(on.text, kRecord, on.oLineEnd, true); }},
    {"sdpRemoveMline",
     [](With& on) { Edits::sdpRemoveMline(on.text, on.record, on.oLineEnd, "RTP/AVP", true); }},
    {"sdpRemoveSecurity", [](With& on) { Edits::sdpRemoveSecurity(on.text, on.record, on.oLineEnd, true); }},
    {"sdpDisableSRTPMediaStreams",
     [](With& on) { Edits::sdpDisableSRTPMediaStreams(on.text, on.record, on.oLineEnd); }},
    {"sdpReplaceTransProtocol",
     [](With& on) {
       std::memcpy(on.record, kRecord, sizeof kRecord);
       Edits::sdpReplaceTransProtocol(on.text, on.record, on.oLineEnd, true);
     }},
    {"sdpChangeSdpType, one m-line",
     [](With& on) {
       Edits::sdpChangeSdpType(on.text, BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, on.record, on.oLineEnd);
     }},
    {"sdpChangeSdpType, secure",
     [](With& on) {
       Edits::sdpChangeSdpType(on.text, BE_SRTP_2m_LINE, SECURITY_SRTP_ONLY, on.record, on.oLineEnd);
     }},
    {"sdpBuild2mLineSDP", [](With& on) { Edits::sdpBuild2mLineSDP(on.text); }},
    {"sdpRemoveMlinesZeroPort", [](With& on) { Edits::sdpRemoveMlinesZeroPort(on.text); }},
    {"getVideoDescriptions, removed",
     [](With& on) { Edits::getVideoDescriptions(on.text, on.out, sizeof on.out, true); }},
    {"getVideoDescriptions",
     [](With& on) { Edits::getVideoDescriptions(on.text, on.out, sizeof on.out, false); }},
    {"sdpCreateDummy, offer",
     [](With& on) {
       Edits::sdpCreateDummy(on.text, false, true, false, kIp, 20000, on.length, on.oLineEnd, true);
     }},
    {"sdpCreateDummy, answer",
     [](With& on) {
       Edits::sdpCreateDummy(on.text, true, true, true, kIp, 20000, on.length, on.oLineEnd, true);
     }},
};

inline constexpr Operation kDecodingEdits[] = {
    {"getMLines", [](With& on) { Edits::getMLines(on.text, on.mLines); }},
    {"getSdpsDescription", [](With& on) { Edits::getSdpsDescription(on.text, on.description); }},
    {"compareNumberOfMLines", [](With& on) { Edits::compareNumberOfMLines(on.text, on.second); }},
    {"correctMLines", [](With& on) { Edits::correctMLines(on.text, on.second, false, true); }},
    {"correctMLines, kept", [](With& on) { Edits::correctMLines(on.text, on.second, true, false); }},
    {"isSingleMLineSdp", [](With& on) { Edits::isSingleMLineSdp(on.text); }},
    {"sdpUpdateSdp",
     [](With& on) {
       std::memcpy(on.out, on.second, sizeof on.out);
       Edits::sdpUpdateSdp(on.text, on.second, on.out, on.length, on.oLineEnd, true);
     }},
};

/// Requests beside those of `requestTable`.
inline constexpr Operation kQuestions[] = {
    {"sdpParse", [](With& on) { on.object.sdpParse(on.text, SDP_TYPE_UNKNOWN); }},
    {"setRawSDP", [](With& on) { on.object.setRawSDP(on.text); }},
    {"getSDP", [](With& on) { on.object.getSDP(on.out, sizeof on.out); }},
    {"getRawSdpSize", [](With& on) { on.object.getRawSdpSize(); }},
    {"contains", [](With& on) { on.object.contains("m=m=m=m=x"); }},
    {"isSDESPresent", [](With& on) { on.object.isSDESPresent(); }},
    {"isAnatPresent", [](With& on) { on.object.isAnatPresent(); }},
    {"isRmDummySdp", [](With& on) { on.object.isRmDummySdp(); }},
    {"compareSdpByBody", [](With& on) { on.object.compareSdpByBody(on.text); }},
    {"displaySDPRawData", [](With& on) { on.object.displaySDPRawData(); }},
    {"getMedia",
     [](With& on) {
       std::vector<mediaStruct> media;
       on.object.getMedia(media);
     }},
    {"getVideoCodecs",
     [](With& on) {
       unsigned char codecs[SDP_VIDEO_CODEC_LIST_SIZE];
       unsigned int attributes = 0;
       on.object.getVideoCodecs(codecs, attributes, on.length);
     }},
    {"getOLine",
     [](With& on) {
       o_line line;
       on.object.getOLine(line);
     }},
    {"compareSdpOLine", [](With& on) { on.object.compareSdpOLine(&on.values.other); }},
    {"compareSdpOLineUpdate", [](With& on) { on.object.compareSdpOLineUpdate(&on.values.other); }},
    {"isSdpVersionIncreased", [](With& on) { on.object.isSdpVersionIncreased(&on.values.other); }},
    {"getSdpSecurityType", [](With& on) { on.object.getSdpSecurityType(); }},
    {"isDTLSPresent", [](With& on) { on.object.isDTLSPresent(); }},
    {"getSdpBestEffortSrtpType", [](With& on) { on.object.getSdpBestEffortSrtpType(); }},
    {"isSingleLineSDP", [](With& on) { on.object.isSingleLineSDP(); }},
    {"sdpPreconditionsExist", [](With& on) { on.object.sdpPreconditionsExist(); }},
};

inline constexpr std::span<const Operation> kEdits[] = {kValueEdits, kLineEdits, kSectionEdits,
                                                        kDecodingEdits};

/// Values for requests beside the usual ones, by which they do more.
inline constexpr void (*kRequestValues[])(RequestValues& values) = {
    [](RequestValues&) {},
    [](RequestValues& values) {
      std::memcpy(values.codecs + 1, kAbsent, sizeof kAbsent - 1);
      values.codecCount = MAX_SDP_NEGOTIATOR_AUDIO_CODECS;
      std::memset(values.videoCodecs, 13, sizeof values.videoCodecs);
      values.videoCodecCount = MAX_SDP_NEGOTIATOR_AUDIO_CODECS;
      std::memcpy(values.removed, kRecord, sizeof kRecord);
      values.fromTransport = "RTP/AVP";
      values.toTransport = "RTP/SAVP";
      values.mediaMask = kAllMedia;
      values.mode = CONNECTION_MODE_INACTIVE;
      values.state = FEATURE_STATE_OFF;
      values.unsupported = NON_SUPPORTED_RTP;
      values.ipVersion = IP_VERSION_4;
      values.third = true;
    },
};

}  // namespace operationTable

/// An edit, or a request with one of the sets of values.
class AnyOperation {
 public:
  explicit AnyOperation(const Operation& edit, bool isRequest)
      : name_(edit.name), isRequest_(isRequest), run_(edit.run) {}
  AnyOperation(const RequestRow& request, void (*values)(RequestValues&))
      : name_(request.name), isRequest_(true), request_(request.run), values_(values) {}

  const char* name() const { return name_; }
  bool isRequest() const { return isRequest_; }

  /// Makes the operands anew.
  /// @param object what a request is made of; it may be empty
  void prepare(Operands& on, const std::string& text, const cSdpNegotiator& object) const {
    std::memcpy(on.text, text.c_str(), text.size() + 1);
    if (!isRequest_) std::memcpy(on.second, text.c_str(), text.size() + 1);
    on.oLineEnd = object.getParsedData().oLineEnd;
    std::memset(on.record, 0, sizeof on.record);
    on.object = object;
    if (values_ == nullptr) return;
    on.values = RequestValues();
    values_(on.values);
    on.values.other = object;
    on.values.offer = object;
    on.values.videoOut = on.out;
    on.values.videoOutSize = sizeof on.out;
  }
  void run(Operands& on) const {
    if (request_ != nullptr) {
      request_(on.object, on.values);
    } else {
      run_(on);
    }
  }

 private:
  const char* name_;
  bool isRequest_;
  void (*run_)(Operands&) = nullptr;
  unsigned short (*request_)(cSdpNegotiator&, RequestValues&) = nullptr;
  void (*values_)(RequestValues&) = nullptr;
};

inline std::vector<AnyOperation> allOperations() {
  std::vector<AnyOperation> all;
  for (const auto& topic : operationTable::kEdits) {
    for (const Operation& edit : topic) all.emplace_back(edit, false);
  }
  for (const Operation& question : operationTable::kQuestions) all.emplace_back(question, true);
  for (const RequestRow& request : allRequests()) {
    for (const auto values : operationTable::kRequestValues) all.emplace_back(request, values);
  }
  return all;
}

#endif
