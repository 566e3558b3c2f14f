#include "requests/requestArguments.h"

#include <algorithm>
#include <string>

#include "cMsgIPAddress.h"
#include "inspection/names.h"
#include "sdpNegotiator.h"
#include "text/search.h"

namespace tool {

std::size_t indexOf(std::span<const std::string_view> values, std::string_view word) {
  const auto found = std::find_if(values.begin(), values.end(), [word](std::string_view value) {
    return sdpneg::equalNoCase(value, word);
  });
  return static_cast<std::size_t>(found - values.begin());
}

std::vector<std::string_view> splitAt(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  for (std::size_t end = text.find(separator); end != sdpneg::npos; end = text.find(separator)) {
    pieces.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  pieces.push_back(text);
  return pieces;
}

bool isAddress(std::string_view word) { return cMsgIPAddress::isValid(std::string(word).c_str()); }

bool isField(std::string_view word) {
  return !word.empty() && std::all_of(word.begin(), word.end(), [](char c) {
    return static_cast<unsigned char>(c) > ' ' && c != '\x7f';
  });
}

unsigned char audioCodecOf(std::string_view name) {
  constexpr std::string_view kNoName = "NOT_SPECIFIED";  // of the codecs that rtpmap lines have no name for
  if (name.empty() || sdpneg::equalNoCase(name, kNoName)) return SDP_NO_CODEC;
  const std::string text(name);
  const unsigned char value = cSdpNegotiator::getRtpMapAudioCodecValue(text.c_str());
  return value != SDP_NO_CODEC ? value : cSdpNegotiator::getAudioCodecValue(text.c_str());
}

namespace {

unsigned char videoCodecOf(std::string_view name) {
  return cSdpNegotiator::getVideoCodecValue(std::string(name).c_str());
}

std::optional<std::vector<unsigned char>> codecsOf(std::string_view names,
                                                   unsigned char (*codecOf)(std::string_view)) {
  std::vector<unsigned char> codecs;
  for (const std::string_view name : splitAt(names, ',')) {
    codecs.push_back(codecOf(name));
    if (codecs.back() == SDP_NO_CODEC) return std::nullopt;
  }
  if (codecs.size() > MAX_SDP_NEGOTIATOR_AUDIO_CODECS) return std::nullopt;
  return codecs;
}

}  // namespace

std::optional<std::vector<unsigned char>> audioCodecsOf(std::string_view names) {
  return codecsOf(names, audioCodecOf);
}
std::optional<std::vector<unsigned char>> videoCodecsOf(std::string_view names) {
  return codecsOf(names, videoCodecOf);
}

std::vector<std::string> audioCodecNames() {
  std::vector<std::string> names;
  for (const audioCodecRow& row : audioCodecTable) {
    const std::string name = audioCodecName(row.value);
    const bool known = std::find(names.begin(), names.end(), name) != names.end();
    if (row.value != SDP_NO_CODEC && !known) names.push_back(name);
  }
  return names;
}

std::vector<std::string> audioEncodingNames() {
  std::vector<std::string> names = audioCodecNames();
  std::erase_if(names, [](const std::string& name) {
    return cSdpNegotiator::getRtpMapAudioCodecValue(name.c_str()) == SDP_NO_CODEC;
  });
  return names;
}

std::vector<std::string> videoCodecNames() {
  std::vector<std::string> names;
  for (const videoCodecRow& row : videoCodecTable) {
    if (row.value != SDP_NO_CODEC) names.emplace_back(row.encodingName);
  }
  return names;
}

bool isAudioCodec(std::string_view word) { return audioCodecOf(word) != SDP_NO_CODEC; }
bool areAudioCodecs(std::string_view word) { return audioCodecsOf(word).has_value(); }
bool areVideoCodecs(std::string_view word) { return videoCodecsOf(word).has_value(); }

}  // namespace tool
