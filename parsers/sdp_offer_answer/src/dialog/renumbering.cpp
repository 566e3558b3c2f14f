// Payload numbers in the lines of a section.

#include "renumbering.h"

#include <algorithm>
#include <array>

#include "parameters.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

constexpr std::array<std::string_view, 6> kOfFormats{
    "a=rtpmap:", "a=fmtp:", "a=rtcp-fb:", "a=imageattr:", "a=framesize:", "a=gpmd:"};
constexpr std::string_view kRid = "a=rid:";

/// The name of the attribute of formats that a line is; empty for others.
std::string_view attributeOf(std::string_view line) {
  for (const std::string_view name : kOfFormats) {
    if (sdpneg::startsWith(line, name)) return name;
  }
  return {};
}

std::size_t offsetOf(std::string_view piece, std::string_view text) {
  return static_cast<std::size_t>(piece.data() - text.data());
}

}  // namespace

RenumberedSection::RenumberedSection(const Section& section, const Renumbering& numbers)
    : section_(section), numbers_(numbers) {
  if (!numbers.empty()) codecs_ = CodecList(section);
}

std::string RenumberedSection::written(std::string_view line) const {
  if (numbers_.empty()) return std::string(line);
  if (sdpneg::startsWith(line, "m=")) return mLine(line);
  if (sdpneg::startsWith(line, kRid)) return rid(line);
  const std::string_view name = attributeOf(line);
  std::string_view rest = line.substr(name.size());
  const std::string_view payload = name.empty() ? name : Fields::takeField(rest);
  if (payload.empty()) return std::string(line);
  std::string text(line.substr(0, offsetOf(payload, line)));
  text.append(renumbered(numbers_, payload));
  if (name != "a=fmtp:") return text.append(rest);
  return text.append(parametersOf(payload, rest));
}

std::string RenumberedSection::addedMaps() const {
  std::string text;
  for (const auto& [payload, number] : numbers_) {
    bool hasMap = false;
    for (const Attribute& map : section_.attributes("rtpmap")) hasMap = hasMap || map.fields()[0] == payload;
    const std::optional<Format> format = section_.format(payload);
    if (hasMap || !format || !format->encoding) continue;
    text.append("a=rtpmap:").append(number).append(" ").append(textOf(*format->encoding)).append("\r\n");
  }
  return text;
}

std::string RenumberedSection::mLine(std::string_view line) const {
  constexpr int kFieldsBefore = 3;
  std::string_view rest = line;
  for (int i = 0; i < kFieldsBefore; ++i) Fields::takeField(rest);
  std::string text(line.substr(0, line.size() - rest.size()));
  for (const std::string_view payload : Fields(rest)) text.append(" ").append(renumbered(numbers_, payload));
  return text;
}

std::string RenumberedSection::parametersOf(std::string_view payload, std::string_view text) const {
  const Codec* const codec = codecs_.find(payload);
  if (codec == nullptr) return std::string(text);
  if (codec->family == Family::rtx) {
    const std::string_view apt = Fields(parameterOf(text, "apt").value_or(std::string_view()))[0];
    return apt.empty() ? std::string(text) : withParameter(text, "apt", renumbered(numbers_, apt));
  }
  if (codec->family != Family::red) return std::string(text);
  const std::string_view carried = Fields(text.substr(0, text.find(';')))[0];
  const std::size_t begin = carried.empty() ? 0 : offsetOf(carried, text);
  return std::string(text.substr(0, begin))
      .append(list(carried, '/'))
      .append(text.substr(begin + carried.size()));
}

/// The `pt` of a restriction (RFC 8851, section 10).
std::string RenumberedSection::rid(std::string_view line) const {
  std::string_view rest = line;
  Fields::takeField(rest);
  Fields::takeField(rest);
  const std::optional<std::string_view> payloads = parameterOf(rest, "pt");
  if (!payloads || payloads->empty()) return std::string(line);
  std::string text(line.substr(0, line.size() - rest.size()));
  return text.append(withParameter(rest, "pt", list(*payloads, ',')));
}

std::string RenumberedSection::list(std::string_view payloads, char separator) const {
  std::string text;
  while (true) {
    const std::size_t end = std::min(payloads.find(separator), payloads.size());
    text.append(renumbered(numbers_, payloads.substr(0, end)));
    if (end == payloads.size()) return text;
    text.append(1, separator);
    payloads.remove_prefix(end + 1);
  }
}

}  // namespace sdp::exchange
