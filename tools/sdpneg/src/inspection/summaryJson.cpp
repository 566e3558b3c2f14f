#include "inspection/summaryJson.h"

#include "inspection/mediaRows.h"
#include "inspection/names.h"
#include "inspection/summaryValues.h"
#include "output/json.h"
#include "sections/sectionsJson.h"

namespace tool {
namespace {

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

void writeJsonBody(BufferedOutput& out, const std::string& name, const Inspection& inspection, bool first) {
  const Json json = {{"file", name},
                     {"result", resultName(inspection.result)},
                     {"problem", inspection.problem ? problemJson(*inspection.problem) : Json(nullptr)},
                     {"notes", notesJson(inspection.notes)},
                     {"summary", inspection.object ? summaryJson(inspection) : Json(nullptr)},
                     {"description", descriptionJson(inspection)},
                     {"sections", inspection.document ? Json::array() : Json(nullptr)}};
  constexpr std::string_view kBy = "    ";
  out.write(first ? "\n" : ",\n");
  out.write(kBy);
  if (!inspection.document) return out.write(indented(jsonText(json), kBy));
  JsonList sections(out, json, std::string(kBy));
  writeSections(out, sections, *inspection.document, inspection.firstLine);
  sections.end();
}

std::string jsonEnd(const Counts& counts) {
  const Json json = {{"inputs", counts.inputs},         {"parsed", counts.parsed},
                     {"refused", counts.refused},       {"undecodable", counts.undecodable},
                     {"unreadable", counts.unreadable}, {"problems", counts.problems}};
  return "\n  ],\n  \"counts\": " + indented(jsonText(json), "  ") + "\n}\n";
}

}  // namespace tool
