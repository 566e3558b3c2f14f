#include "inspection/summaryJson.h"

#include <nlohmann/json.hpp>

#include "inspection/mediaRows.h"
#include "inspection/names.h"
#include "inspection/summaryValues.h"
#include "output/printable.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

/// The text, or null for an empty one.
Json orNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

template <typename Value>
Json orNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

/// A document as text; bytes that are no UTF-8 become U+FFFD.
std::string dump(const Json& json) {
  return printableJson(json.dump(2, ' ', false, Json::error_handler_t::replace));
}

/// The text with every line but the first moved in. Line feeds inside values are escaped, so all are breaks.
std::string indented(const std::string& text, const char* by) {
  std::string moved;
  for (const char c : text) {
    moved += c;
    if (c == '\n') moved += by;
  }
  return moved;
}

Json problemJson(const Problem& problem) {
  const bool placed = problem.place.line != 0;
  return {{"line", placed ? Json(problem.place.line) : Json(nullptr)},
          {"column", placed ? Json(problem.place.column) : Json(nullptr)},
          {"reason", problem.reason}};
}

Json notesJson(const std::vector<Problem>& notes) {
  Json list = Json::array();
  for (const Problem& note : notes) list.push_back(problemJson(note));
  return list;
}

Json audioJson(const sSdpParsedData& data) {
  Json codecs = Json::array();
  for (const AudioCodec& codec : audioCodecsOf(data)) {
    codecs.push_back({{"name", audioCodecName(codec.value)},
                      {"textName", audioCodecTextName(codec.value)},
                      {"value", codec.value},
                      {"period", orNull(codec.period)}});
  }
  return {{"codecs", std::move(codecs)},
          {"direction", directionName(data.sessionMode)},
          {"echoCancellation", orNull(featureName(data.echoCancellation))},
          {"silenceSuppression", orNull(featureName(data.silenceSuppression))},
          {"gainControl", data.gainControl}};
}

Json videoCodecJson(std::uint8_t codec) { return {{"name", videoCodecName(codec)}, {"value", codec}}; }

Json videoJson(const Inspection& inspection) {
  const sSdpParsedData& data = inspection.object->getParsedData();
  Json codecs = Json::array();
  for (const unsigned char codec : inspection.videoCodecs) codecs.push_back(videoCodecJson(codec));
  return {{"codecs", std::move(codecs)},
          {"direction", orNull(directionName(data.videoMode))},
          {"recvonly", inspection.object->isRecvOnlyVideo()},
          {"h264Level", orNull(h264LevelName(data.h264Profile))},
          {"bandwidth", data.videoBandwidth}};
}

Json securityJson(const cSdpNegotiator& object) {
  return {{"secure", object.isSecureCall()},
          {"secureVideo", object.isSecureVideo()},
          {"sdes", object.isSDESPresent()},
          {"mikey", object.isMikeyPresent()},
          {"dtlsFingerprint", hasDtlsFingerprint(object)}};
}

Json bestEffortJson(const std::optional<BestEffort>& bestEffort) {
  if (!bestEffort) return nullptr;
  return {{"type", bestEffortName(*bestEffort)}, {"reason", orNull(bestEffort->reason)}};
}

Json storedJson(const cSdpNegotiator& object) {
  const StoredForm form = storedFormOf(object);
  return {
      {"form", form.deflated ? "deflated" : "plain"}, {"bytes", form.bytes}, {"characters", form.characters}};
}

Json listedMediaJson(const mediaStruct& media) {
  Json codecs = Json::array();
  for (const codecDetailStruct& detail : media.codecs) {
    Json codec = videoCodecJson(detail.codec);
    codec["h264Level"] = orNull(h264LevelName(detail.profile));
    codecs.push_back(std::move(codec));
  }
  return {{"media", joined(mediaKindNames(media.mediaType), ",")},
          {"label", orNull(media.label)},
          {"direction", directionName(media.mode)},
          {"secure", (media.flags & MEDIA_FLAG_SECURE) != 0},
          {"plain", (media.flags & MEDIA_FLAG_PLAIN) != 0},
          {"ip4", (media.flags & MEDIA_FLAG_ADDRESS_IP4) != 0},
          {"otherAddressType", (media.flags & MEDIA_FLAG_ADDRESS_OTHER) != 0},
          {"bandwidth", media.bandwidth},
          {"codecs", std::move(codecs)}};
}

Json summaryJson(const Inspection& inspection) {
  const cSdpNegotiator& object = *inspection.object;
  const sSdpParsedData& data = object.getParsedData();
  Json listed = Json::array();
  for (const mediaStruct& media : inspection.media) listed.push_back(listedMediaJson(media));
  return {{"origin", orNull(originLineOf(object))},
          {"address", orNull(addressOf(data))},
          {"ipVersion", data.address.isZero() ? Json(nullptr) : Json(data.address.isIPv6() ? 6 : 4)},
          {"port", orNull(portOf(data))},
          {"media", mediaKindNames(data.mediaType)},
          {"audio", audioJson(data)},
          {"video", videoJson(inspection)},
          {"t38MaxBitRate", orNull(t38MaxBitRateOf(data))},
          {"security", securityJson(object)},
          {"bestEffort", bestEffortJson(inspection.bestEffort)},
          {"ice", {{"kind", iceKindOf(object)}, {"candidatesMatch", object.IceCandidatesMatch()}}},
          {"ipv6Media", (data.sdpAttributes & SDP_ATTR_IPV6) != 0},
          {"hold", object.isHoldState()},
          {"anat", object.isAnatPresent()},
          {"bandwidth", data.bandwidth},
          {"listedMedia", std::move(listed)},
          {"stored", storedJson(object)}};
}

Json connectionJson(const MediaRow& row) {
  if (!row.connection) return nullptr;
  return {{"type", row.connection->type}, {"address", row.connection->address}};
}

Json mediaLineJson(const MediaRow& row) {
  Json formats = Json::array();
  for (const MediaFormat& each : row.formats) {
    formats.push_back({{"format", each.format}, {"name", orNull(each.name)}});
  }
  return {{"line", row.line},
          {"media", row.media},
          {"port", row.port},
          {"active", row.active},
          {"transport", row.transport},
          {"direction", orNull(row.direction)},
          {"connection", connectionJson(row)},
          {"bandwidth", orNull(row.bandwidth)},
          {"label", orNull(row.label)},
          {"formats", std::move(formats)}};
}

Json descriptionJson(const Inspection& inspection) {
  if (inspection.description == nullptr) return nullptr;
  Json lines = Json::array();
  for (const MediaRow& row : mediaRowsOf(inspection)) lines.push_back(mediaLineJson(row));
  return {{"complete", sdp_isComplete(inspection.description.get())},
          {"mediaCount", inspection.mediaLines.size()},
          {"mediaLines", std::move(lines)}};
}

}  // namespace

std::string jsonBegin() { return "{\n  \"format\": 1,\n  \"bodies\": ["; }

std::string jsonBody(const std::string& name, const Inspection& inspection, bool first) {
  const Json json = {{"file", name},
                     {"result", resultName(inspection.result)},
                     {"problem", inspection.problem ? problemJson(*inspection.problem) : Json(nullptr)},
                     {"notes", notesJson(inspection.notes)},
                     {"summary", inspection.object ? summaryJson(inspection) : Json(nullptr)},
                     {"description", descriptionJson(inspection)}};
  return (first ? "\n    " : ",\n    ") + indented(dump(json), "    ");
}

std::string jsonEnd(const Counts& counts) {
  const Json json = {{"inputs", counts.inputs},         {"parsed", counts.parsed},
                     {"refused", counts.refused},       {"undecodable", counts.undecodable},
                     {"unreadable", counts.unreadable}, {"problems", counts.problems}};
  return "\n  ],\n  \"counts\": " + indented(dump(json), "  ") + "\n}\n";
}

}  // namespace tool
