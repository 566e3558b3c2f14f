#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "attributeLines.h"
#include "audioCodecRules.h"
#include "sdpNegotiatorParser.h"
#include "text/search.h"
#include "vocabulary.h"

// Which codec an audio format stands for.

namespace sdpneg {
namespace {

/// Whether a value's first two digits already rule a payload type of two or three digits out, as they do for
/// most lines. A value with anything else in front of its number is left to be read in full.
bool tellsAnotherType(const char* value, int payloadType) {
  const int leading = payloadType < 100 ? payloadType : payloadType / 10;
  if (!isDigit(value[0]) || value[0] == '0' || !isDigit(value[1])) return false;
  return (value[0] - '0') * 10 + (value[1] - '0') != leading;
}

/// The word that follows a payload type in an attribute line, as in "rtpmap:97 iLBC/8000".
/// @param attribute what the attribute's name begins with
/// @return empty when the line is another one or lacks the number or the word
std::string_view wordOf(const a_line::entry& line, std::string_view attribute, int payloadType) {
  if (!textStartsWith(line.name, attribute)) return {};
  if (tellsAnotherType(line.value, payloadType)) return {};
  const std::string_view value = line.value;
  const std::optional<Leading<int>> number = leadingNumber<int>(value);
  if (!number || number->value != payloadType) return {};
  return Words(value.substr(number->length)).next();
}

std::uint8_t codecOfEncoding(std::string_view encoding) {
  for (const DynamicAudioRule& rule : kDynamicAudioRules) {
    const bool matches =
        rule.anyCase ? startsWithNoCase(encoding, rule.prefix) : startsWith(encoding, rule.prefix);
    if (matches) return rule.codec;
  }
  return SDP_NO_CODEC;
}

std::uint8_t codecOfRate(std::string_view encoding, std::string_view parameters) {
  for (const RateAudioRule& rule : kRateAudioRules) {
    if (startsWith(encoding, rule.prefix) && contains(parameters, rule.rate)) return rule.codec;
  }
  return SDP_NO_CODEC;
}

bool dependsOnRate(std::string_view encoding) {
  return std::any_of(std::begin(kRateAudioRules), std::end(kRateAudioRules),
                     [encoding](const RateAudioRule& rule) { return startsWith(encoding, rule.prefix); });
}

/// The codec of an encoding whose rate stands in an fmtp line of its payload type.
std::uint8_t codecOfFmtp(std::string_view encoding, int payloadType,
                         std::span<const a_line::entry> attributes) {
  if (!dependsOnRate(encoding)) return SDP_NO_CODEC;
  for (const a_line::entry& line : attributes) {
    const std::uint8_t codec = codecOfRate(encoding, wordOf(line, "fmtp", payloadType));
    if (codec != SDP_NO_CODEC) return codec;
  }
  return SDP_NO_CODEC;
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned char sdpParserMessage::convertCodec(const char* format, const a_line* attributes) {
  using namespace sdpneg;
  const std::string_view text = viewOf(format);
  const int payloadType = numberOrZero<int>(text);
  if (payloadType >= kFirstDynamicPayload && payloadType <= kLastDynamicPayload) {
    return convertDynamicCodec(payloadType, attributes);
  }
  // By the text: one without a number, and a sign in front of a zero, is no payload type.
  if (payloadType == 0 && startsWith(text, "0")) return kCodecPcmu;
  for (const StaticAudioRule& rule : kStaticAudioRules) {
    if (rule.payloadType == payloadType) return rule.codec;
  }
  return SDP_NO_CODEC;
}

unsigned char sdpParserMessage::convertDynamicCodec(int payloadType, const a_line* attributes) {
  using namespace sdpneg;
  const std::span<const a_line::entry> lines = entriesOf(attributes);
  for (const a_line::entry& line : lines) {
    const std::string_view encoding = wordOf(line, "rtpmap", payloadType);
    if (encoding.empty()) continue;
    std::uint8_t codec = codecOfEncoding(encoding);
    if (codec == SDP_NO_CODEC) codec = codecOfFmtp(encoding, payloadType, lines);
    if (codec != SDP_NO_CODEC) return codec;
  }
  return SDP_NO_CODEC;
}

void sdpParserMessage::setG729AnnexB(sSdpParsedData& data, int noOfFormats, unsigned char codec) {
  const int count = std::clamp(noOfFormats, 0, MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  std::replace(data.audioCodec, data.audioCodec + count, kCodecG729, codec);
}
