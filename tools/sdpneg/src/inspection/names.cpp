#include "inspection/names.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "sdpNegotiator.h"

namespace tool {
namespace {

std::string orNumber(std::string_view name, std::uint32_t number) {
  return name.empty() ? std::string("(").append(std::to_string(number)).append(")") : std::string(name);
}

/// The name that stands at an index of a table, an empty text outside it.
template <std::size_t Size>
std::string_view nameAt(const std::string_view (&names)[Size], std::size_t index) {
  return index < Size ? names[index] : std::string_view();
}

}  // namespace

std::string directionName(std::uint32_t mode) {
  constexpr std::string_view kNames[] = {"", "sendonly", "recvonly", "sendrecv", "inactive", "confrnce"};
  return mode == CONNECTION_MODE_NONE ? std::string() : orNumber(nameAt(kNames, mode), mode);
}

std::vector<std::string> mediaKindNames(std::uint32_t kinds) {
  constexpr struct {
    eMediaType kind;
    const char* name;
  } kKinds[] = {{MEDIA_AUDIO, "audio"},
                {MEDIA_VIDEO, "video"},
                {MEDIA_MESSAGE, "message"},
                {MEDIA_IMAGE, "image"},
                {MEDIA_APPLICATION, "application"},
                {MEDIA_TEXT, "text"}};
  std::vector<std::string> names;
  for (const auto& each : kKinds) {
    if ((kinds & each.kind) != 0) names.emplace_back(each.name);
  }
  return names;
}

std::string audioCodecName(std::uint8_t codec) {
  const auto* const row = std::find_if(std::begin(audioCodecTable), std::end(audioCodecTable),
                                       [codec](const audioCodecRow& each) { return each.value == codec; });
  const std::string_view name = row != std::end(audioCodecTable) ? row->encodingName : std::string_view();
  return name == "NOT_SPECIFIED" ? audioCodecTextName(codec) : orNumber(name, codec);
}

std::string audioCodecTextName(std::uint8_t codec) {
  return orNumber(cSdpNegotiator::getAudioCodecText(codec), codec);
}

std::string videoCodecName(std::uint8_t codec) {
  return orNumber(cSdpNegotiator::getVideoCodecText(codec), codec);
}

std::string h264LevelName(std::int32_t level) {
  return level < 0 ? std::string() : std::string(nameAt(kH264LevelNames, static_cast<std::size_t>(level)));
}

std::string featureName(std::uint8_t state) {
  constexpr std::string_view kNames[] = {"", "on", "off"};
  return std::string(nameAt(kNames, state));
}

std::string ipVersionName(eIPAddressVersion version) {
  if (version == kIpVersion4) return "4";
  return version == kIpVersion6 ? "6" : "";
}

std::string joined(const std::vector<std::string>& words, const char* separator) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += separator;
    text += word;
  }
  return text;
}

}  // namespace tool
