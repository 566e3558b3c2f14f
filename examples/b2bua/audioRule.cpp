#include "audioRule.h"

#include <sdpDocumentRequests.h>

#include <algorithm>

#include "bodyLines.h"
#include "policyCheck.h"

namespace b2bua {

namespace {

std::string encodingOf(const sdp::Format& format) {
  return lowerCase(format.encoding ? format.encoding->name : "");
}

bool isAudio(const sdp::Section& section) { return section.media() == "audio" && !section.isDisabled(); }

/// The events and the noise of a section that no codec which stays can be sent with.
std::vector<std::string> misfits(const Policy& policy, const sdp::Section& section) {
  std::vector<std::uint32_t> clocks;
  for (const sdp::Format& format : section.formats()) {
    const std::string name = encodingOf(format);
    if (!isCompanion(name) && isAllowedCodec(policy, name)) clocks.push_back(format.encoding->clockRate);
  }
  std::vector<std::string> found;
  for (const sdp::Format& format : section.formats()) {
    if (isCompanion(encodingOf(format)) &&
        std::ranges::find(clocks, format.encoding->clockRate) == clocks.end())
      found.emplace_back(format.format);
  }
  return found;
}

/// All of them, and what else could become a codec (RFC 6871).
sdp::Refusal removeMisfits(const Policy& policy, sdp::Document& body) {
  for (std::uint32_t i = 1; i <= body.sectionCount(); ++i) {
    const sdp::Section section = body.section(i);
    const std::vector<std::string> out =
        isAudio(section) ? misfits(policy, section) : std::vector<std::string>();
    if (out.size() == section.formats().size()) continue;
    for (const std::string& format : out) {
      if (sdp::Refusal refusal = sdp::dropCodecs(body, format, std::to_string(i))) return refusal;
    }
  }
  for (const char* const name : {"rmcap", "omcap"}) {
    if (sdp::Refusal refusal = body.removeAttributes(0, name)) return refusal;
  }
  return sdp::stripAttributes(body, "rmcap,omcap", "audio");
}

bool isAbout(const sdp::Attribute& attribute, std::string_view format) {
  return (attribute.name == "rtpmap" || attribute.name == "fmtp" || attribute.name == "rtcp-fb") &&
         attribute.fields()[0] == format;
}

/// Adds what one section says of a format to another, as far as that does not say it.
sdp::Refusal copyAttributes(const sdp::Section& from, std::string_view format, sdp::Document& to) {
  for (const sdp::Attribute& attribute : from.attributes()) {
    if (!isAbout(attribute, format)) continue;
    const auto isSame = [&](const sdp::Attribute& other) {
      return other.name == attribute.name && other.value == attribute.value;
    };
    if (std::ranges::any_of(to.section(from.index()).attributes(), isSame)) continue;
    if (sdp::Refusal refusal = to.addAttribute(from.index(), attribute.name, attribute.value)) return refusal;
  }
  return {};
}

/// The library keeps one format of each codec; events of a further clock come back behind them.
sdp::Refusal returnCompanions(const sdp::Document& before, sdp::Document& body) {
  for (const sdp::Section& old : before.sections()) {
    const std::uint32_t i = old.index();
    if (!isAudio(body.section(i))) continue;
    for (const sdp::Format& format : old.formats()) {
      if (!isCompanion(encodingOf(format)) || body.section(i).format(format.format)) continue;
      std::string formats;
      for (const sdp::Format& kept : body.section(i).formats()) formats.append(kept.format).append(" ");
      if (sdp::Refusal refusal = body.setFormats(i, formats.append(format.format))) return refusal;
      if (sdp::Refusal refusal = copyAttributes(old, format.format, body)) return refusal;
    }
  }
  return {};
}

/// An m-line of which nothing is left stays as it was, since without formats none can read it: so a refused section
/// passes, and the check finds another one.
std::string withFormats(const sdp::Document& before, const std::string& body) {
  std::uint32_t section = 0;
  return withLines(body, [&](const std::string& line) {
    if (!line.starts_with("m=")) return line;
    ++section;
    const bool hasFormats = !sdp::Fields(line)[3].empty();
    return hasFormats ? line : std::string((*before.section(section).lines().begin()).content);
  });
}

bool isCodecOf(const Policy& policy, unsigned char codec) {
  static const unsigned char events = cSdpNegotiator::getAudioCodecValue("TELEPHONE_EVENT");
  static const unsigned char noise = cSdpNegotiator::getAudioCodecValue("COMFORT_NOISE");
  return codec != SDP_NO_CODEC && codec != events && codec != noise &&
         std::ranges::find(policy.audioCodecs, codec) != policy.audioCodecs.end();
}

}  // namespace

std::string restrictAudio(const Policy& policy, Body& body, OfferChanges&) {
  if (policy.audioCodecs.empty() || (body.getParsedData().mediaType & MEDIA_AUDIO) == 0) return "";
  const auto isAllowed = [&](unsigned char codec) { return isCodecOf(policy, codec); };
  if (std::ranges::none_of(body.getParsedData().audioCodec, isAllowed)) return "no allowed audio codec";
  sdp::Document before = documentOf(textOf(body));
  if (removeMisfits(policy, before)) return "not usable after the policy";
  if (std::string reason = store(before, body); !reason.empty()) return reason;
  body.sdpRestrictAudioCodecsTo(policy.audioCodecs.data(), static_cast<int>(policy.audioCodecs.size()), true);
  sdp::Document after = documentOf(withFormats(before, textOf(body)));
  if (after.sectionCount() != before.sectionCount()) return "";
  return returnCompanions(before, after) ? "not usable after the policy" : store(after, body);
}

}  // namespace b2bua
