#include "audioRule.h"

#include <algorithm>

#include "policyCheck.h"

namespace b2bua {

namespace {

using Formats = std::vector<std::string>;

bool contains(const Formats& formats, const std::string& format) {
  return std::ranges::find(formats, format) != formats.end();
}

bool isCompanion(const BodySection& section, const std::string& format) {
  return !formatsOf(section, format).front().isCodec();
}

/// @return whether an attribute line is about one of the formats
bool isAbout(const BodyLine& line, const Formats& formats) {
  if (line.type != 'a') return false;
  const Attribute attribute = attributeOf(line.value);
  if (attribute.name != "rtpmap" && attribute.name != "fmtp" && attribute.name != "rtcp-fb") return false;
  return contains(formats, attribute.value.substr(0, attribute.value.find_first_of(" \t")));
}

void writeMediaLine(BodySection& section) {
  const std::string& old = section.lines.front().bytes;
  std::string line = "m=";
  const std::vector<std::string> words = wordsOf(section.lines.front().value);
  line += words[0] + " " + words[1] + " " + words[2];
  for (const std::string& format : section.formats) line += " " + format;
  section.lines.front().bytes = line + old.substr(std::min(old.find_last_not_of("\r\n") + 1, old.size()));
}

/// The events and the noise of a section that no codec which stays can be sent with.
Formats misfits(const Policy& policy, const BodySection& section) {
  std::vector<unsigned long> clocks;
  for (const std::string& format : section.formats) {
    const Format told = formatsOf(section, format).front();
    if (told.isCodec() && isAllowedCodec(policy, told)) clocks.push_back(told.clock);
  }
  Formats found;
  for (const std::string& format : section.formats) {
    if (isCompanion(section, format) &&
        std::ranges::find(clocks, formatsOf(section, format).front().clock) == clocks.end())
      found.push_back(format);
  }
  return found;
}

void removeMisfits(const Policy& policy, BodyLines& body) {
  for (BodySection& section : body.sections) {
    const Formats out = section.media == "audio" && section.isActive() ? misfits(policy, section) : Formats();
    if (out.empty() || out.size() == section.formats.size()) continue;
    std::erase_if(section.formats, [&](const std::string& format) { return contains(out, format); });
    std::erase_if(section.lines, [&](const BodyLine& line) { return isAbout(line, out); });
    writeMediaLine(section);
  }
}

/// The library keeps one format of each codec; events of a further clock come back behind them.
void returnCompanions(const BodyLines& before, BodyLines& body) {
  for (std::size_t i = 1; i < body.sections.size(); ++i) {
    const BodySection& old = before.sections[i];
    BodySection& section = body.sections[i];
    Formats lost;
    for (const std::string& format : old.formats) {
      if (isCompanion(old, format) && !contains(section.formats, format)) lost.push_back(format);
    }
    if (section.media != "audio" || !section.isActive() || lost.empty()) continue;
    section.formats.insert(section.formats.end(), lost.begin(), lost.end());
    std::erase_if(section.lines, [&](const BodyLine& line) { return isAbout(line, lost); });
    std::ranges::copy_if(old.lines, std::back_inserter(section.lines),
                         [&](const BodyLine& line) { return isAbout(line, lost); });
    writeMediaLine(section);
  }
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
  BodyLines before(textOf(body));
  removeMisfits(policy, before);
  if (std::string reason = store(before.text(), body); !reason.empty()) return reason;
  body.sdpRestrictAudioCodecsTo(policy.audioCodecs.data(), static_cast<int>(policy.audioCodecs.size()), true);
  BodyLines after(textOf(body));
  if (after.sections.size() != before.sections.size()) return "";
  returnCompanions(before, after);
  return store(after.text(), body);
}

}  // namespace b2bua
