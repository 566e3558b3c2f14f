#include "inspection/summaryValues.h"

#include <string_view>

#include "text/anyLines.h"

namespace tool {
namespace {

constexpr int kAddressTextSize = 46;

std::string textOf(const cSdpNegotiator& object) {
  std::string text(MAX_SDP_PROTOCOL_DATA_SIZE + 1, '\0');
  if (object.getRawSDP(text.data(), static_cast<unsigned int>(text.size())) != 0) return {};
  text.resize(text.find('\0'));
  return text;
}

}  // namespace

std::vector<AudioCodec> audioCodecsOf(const sSdpParsedData& data) {
  std::vector<AudioCodec> codecs;
  for (int i = 0; i < MAX_SDP_NEGOTIATOR_AUDIO_CODECS && data.audioCodec[i] != SDP_NO_CODEC; ++i) {
    const std::uint8_t period = data.packetizationPeriod[i];
    codecs.push_back({data.audioCodec[i],
                      period != SDP_PACKETIZATION_NOT_SET ? std::optional<int>(period) : std::nullopt});
  }
  return codecs;
}

std::optional<std::string> addressOf(const sSdpParsedData& data) {
  if (data.address.isZero()) return std::nullopt;
  char text[kAddressTextSize];
  data.address.getIPAddressText(text, kAddressTextSize);
  return text;
}

std::optional<std::uint32_t> portOf(const sSdpParsedData& data) {
  return data.port != SDP_PORT_NOT_SET ? std::optional(data.port) : std::nullopt;
}

std::optional<std::uint32_t> t38MaxBitRateOf(const sSdpParsedData& data) {
  return data.T38MaxBitRate != SDP_T38_MAX_BIT_RATE_NOT_SET ? std::optional(data.T38MaxBitRate)
                                                            : std::nullopt;
}

std::string iceKindOf(const cSdpNegotiator& object) {
  if (object.isIceLitePresent()) return "lite";
  return object.isFullIcePresent() ? "full" : "none";
}

std::string originLineOf(const cSdpNegotiator& object) {
  const sSdpParsedData& data = object.getParsedData();
  const std::string text = textOf(object);
  if (data.oLineStart >= data.oLineEnd || data.oLineEnd > text.size()) return {};
  const std::string line = text.substr(data.oLineStart, data.oLineEnd - data.oLineStart);
  return std::string(sdpneg::AnyLines(line).next().content);
}

bool hasDtlsFingerprint(const cSdpNegotiator& object) { return object.contains("a=fingerprint"); }

StoredForm storedFormOf(const cSdpNegotiator& object) {
  const unsigned int deflated = object.getParsedData().storedSdpLength;
  const auto characters = static_cast<unsigned int>(textOf(object).size());
  return {deflated != 0, deflated != 0 ? deflated : characters, characters};
}

}  // namespace tool
