#include "inspection/summaryTable.h"

#include "inspection/mediaRows.h"
#include "inspection/names.h"
#include "inspection/summaryValues.h"
#include "output/labelledRows.h"
#include "output/printable.h"
#include "sections/sectionsTable.h"

namespace tool {
namespace {

std::string orNone(const std::string& text) { return text.empty() ? "none" : text; }

std::string withUnit(std::uint32_t number, const char* unit) { return std::to_string(number) + " " + unit; }

std::string addressText(const sSdpParsedData& data) {
  const std::optional<std::string> address = addressOf(data);
  if (!address) return "none";
  return *address + " (IPv" + ipVersionName(data.address.getIPAddressVersion()) + ")";
}

std::string audioCodecsText(const sSdpParsedData& data) {
  std::vector<std::string> words;
  for (const AudioCodec& codec : audioCodecsOf(data)) {
    std::string word = audioCodecName(codec.value);
    if (codec.period) word += " (" + std::to_string(*codec.period) + " ms)";
    words.push_back(std::move(word));
  }
  return orNone(joined(words, ", "));
}

std::string securityText(const cSdpNegotiator& object) {
  std::vector<std::string> words{object.isSecureCall() ? "secure" : "not secure"};
  if (object.isSecureVideo()) words.emplace_back("video secure");
  if (object.isSDESPresent()) words.emplace_back("SDES");
  if (object.isMikeyPresent()) words.emplace_back("MIKEY");
  if (hasDtlsFingerprint(object)) words.emplace_back("DTLS fingerprint");
  return joined(words, ", ");
}

std::string iceText(const cSdpNegotiator& object) {
  const std::string kind = iceKindOf(object);
  if (kind == "none") return "none";
  return kind + (object.IceCandidatesMatch() ? ", a candidate matches address and port"
                                             : ", no candidate matches address and port");
}

std::string storedText(const cSdpNegotiator& object) {
  const StoredForm form = storedFormOf(object);
  if (!form.deflated) return "plain, " + withUnit(form.bytes, "bytes");
  return "deflated, " + withUnit(form.bytes, "bytes for") + " " + withUnit(form.characters, "characters");
}

void addVideo(LabelledRows& rows, const Inspection& inspection) {
  const sSdpParsedData& data = inspection.object->getParsedData();
  std::vector<std::string> codecs;
  for (const unsigned char codec : inspection.videoCodecs) codecs.push_back(videoCodecName(codec));
  rows.addGiven("video codecs", joined(codecs, ", "));
  rows.addGiven("video direction", directionName(data.videoMode));
  rows.addGiven("H.264 level", h264LevelName(data.h264Profile));
  if (data.videoBandwidth != 0) rows.add("video bandwidth", std::to_string(data.videoBandwidth));
}

void addAudio(LabelledRows& rows, const sSdpParsedData& data) {
  rows.add("audio codecs", audioCodecsText(data));
  rows.add("direction", directionName(data.sessionMode));
  rows.addGiven("echo cancellation", featureName(data.echoCancellation));
  rows.addGiven("silence suppr.", featureName(data.silenceSuppression));
  if (data.gainControl != 0) rows.add("gain control", std::to_string(data.gainControl));
  const std::optional<std::uint32_t> rate = t38MaxBitRateOf(data);
  if (rate) rows.add("T.38", "at most " + withUnit(*rate, "bit/s"));
}

std::string listedMediaText(const mediaStruct& media) {
  std::vector<std::string> words = mediaKindNames(media.mediaType);
  if (!media.label.empty()) words.push_back("label " + media.label);
  words.push_back(directionName(media.mode));
  if ((media.flags & MEDIA_FLAG_SECURE) != 0) words.emplace_back("secure");
  if ((media.flags & MEDIA_FLAG_PLAIN) != 0) words.emplace_back("plain");
  if ((media.flags & MEDIA_FLAG_ADDRESS_IP4) != 0) words.emplace_back("IP4");
  if ((media.flags & MEDIA_FLAG_ADDRESS_OTHER) != 0) words.emplace_back("not IP4");
  if (media.bandwidth != 0) words.push_back("bandwidth " + std::to_string(media.bandwidth));
  for (const codecDetailStruct& detail : media.codecs) {
    const std::string level = h264LevelName(detail.profile);
    words.push_back(videoCodecName(detail.codec) + (level.empty() ? "" : " level " + level));
  }
  return joined(words, ", ");
}

void addSummary(LabelledRows& rows, const Inspection& inspection) {
  const cSdpNegotiator& object = *inspection.object;
  const sSdpParsedData& data = object.getParsedData();
  const std::optional<std::uint32_t> port = portOf(data);
  rows.add("origin", orNone(originLineOf(object)));
  rows.add("address", addressText(data));
  rows.add("port", port ? std::to_string(*port) : "none");
  rows.add("media", orNone(joined(mediaKindNames(data.mediaType), ", ")));
  addAudio(rows, data);
  addVideo(rows, inspection);
  rows.add("security", securityText(object), object.isSecureCall() ? Style::good : Style::warning);
  if (inspection.bestEffort) rows.add("best effort", bestEffortText(*inspection.bestEffort));
  rows.add("ICE", iceText(object));
  if (object.isAnatPresent()) rows.add("ANAT", "media grouped by address family");
  rows.add("hold", object.isHoldState() ? "yes" : "no");
  if (data.bandwidth != 0) rows.add("bandwidth", std::to_string(data.bandwidth));
  for (const mediaStruct& media : inspection.media) rows.add("listed media", listedMediaText(media));
  rows.add("stored", storedText(object));
}

void addResult(LabelledRows& rows, const Inspection& inspection) {
  const bool parsed = inspection.result == Result::parsed;
  if (!parsed) rows.add("result", resultName(inspection.result), Style::bad);
  if (inspection.problem) rows.add("problem", inspection.problem->reason, Style::bad);
  if (parsed) addSummary(rows, inspection);
  if (inspection.description == nullptr) return;
  const bool complete = sdp_isComplete(inspection.description.get());
  rows.add("description", complete ? "complete" : "incomplete: some of the text is left out",
           complete ? std::nullopt : std::optional(Style::warning));
}

/// What the description has of the m-lines.
std::string mediaBlock(const Inspection& inspection) {
  if (inspection.description == nullptr || inspection.mediaLines.empty()) return {};
  std::string block = "\n" + mediaTable(inspection);
  const std::size_t left = inspection.mediaLines.size() - mediaRowsOf(inspection).size();
  if (left != 0) block += "  and " + std::to_string(left) + " more m-lines\n";
  return block;
}

/// All sections, where that may be more.
std::string sectionsBlock(const Inspection& inspection, const Palette& palette) {
  if (!inspection.document || inspection.isWhole() || inspection.document->sectionCount() == 0) return {};
  return "\n" + sectionsTable(*inspection.document, inspection.firstLine, palette);
}

}  // namespace

std::string summaryTable(const std::string& name, const Inspection& inspection, const Palette& palette) {
  LabelledRows rows(palette);
  addResult(rows, inspection);
  return palette.paint(Style::heading, printable(name)) + "\n" + rows.text() + mediaBlock(inspection) +
         sectionsBlock(inspection, palette);
}

}  // namespace tool
