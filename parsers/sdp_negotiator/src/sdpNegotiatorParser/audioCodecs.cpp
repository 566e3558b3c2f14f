#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "attributeLines.h"
#include "audioCodecRules.h"
#include "payloadCodecs.h"
#include "sdpNegotiatorParser.h"
#include "text/search.h"
#include "vocabulary.h"

// Which codec an audio format stands for.

namespace sdpneg {
namespace {

/// The payload type that an attribute's value begins with, and what stands behind it, as in "97 iLBC/8000".
struct PayloadLine {
  int payloadType;
  const char* word;  ///< the word that follows, and what stands behind that
  std::size_t room;  ///< characters from the word to the end of its field
};

/// @return nothing when the value lacks the number or the word
std::optional<PayloadLine> payloadLine(const a_line::entry& line) {
  const std::optional<Leading<int>> number = leadingNumberOf<int>(line.value);
  if (!number) return std::nullopt;
  const char* word = line.value + number->length;
  while (isSpace(*word)) ++word;
  if (*word == '\0') return std::nullopt;
  return PayloadLine{number->value, word, static_cast<std::size_t>(line.value + sizeof line.value - word)};
}

/// The dynamic rules, prepared for comparisons.
template <std::size_t... Indices>
constexpr std::array<NamePattern, sizeof...(Indices)> patternsOf(std::index_sequence<Indices...> /*rules*/) {
  return {NamePattern(kDynamicAudioRules[Indices].prefix,
                      kDynamicAudioRules[Indices].anyCase ? NameTest::prefixAnyCase : NameTest::prefix)...};
}

constexpr auto kEncodings = patternsOf(std::make_index_sequence<std::size(kDynamicAudioRules)>());

/// @param rtpmap with an encoding: no rule holds white space
std::uint8_t codecOfEncoding(const PayloadLine& rtpmap) {
  char copy[NamePattern::kSize] = {};
  const char* encoding = rtpmap.word;
  // Near the end of its field a word is copied, so that as much as is compared can be read.
  if (rtpmap.room < sizeof copy) {
    std::memcpy(copy, rtpmap.word, rtpmap.room);
    encoding = copy;
  }
  for (std::size_t i = 0; i < kEncodings.size(); ++i) {
    if (kEncodings[i].matchesAt(encoding)) return kDynamicAudioRules[i].codec;
  }
  return SDP_NO_CODEC;
}

std::uint8_t codecOfRate(const char* encoding, std::string_view parameters) {
  for (const RateAudioRule& rule : kRateAudioRules) {
    if (textStartsWith(encoding, rule.prefix) && contains(parameters, rule.rate)) return rule.codec;
  }
  return SDP_NO_CODEC;
}

bool dependsOnRate(const char* encoding) {
  return std::any_of(std::begin(kRateAudioRules), std::end(kRateAudioRules),
                     [encoding](const RateAudioRule& rule) { return textStartsWith(encoding, rule.prefix); });
}

/// The codec of an encoding whose rate stands in an fmtp line of its payload type.
std::uint8_t codecOfFmtp(const PayloadLine& rtpmap, std::span<const a_line::entry> attributes) {
  if (!dependsOnRate(rtpmap.word)) return SDP_NO_CODEC;
  for (const a_line::entry& line : attributes) {
    if (!kFmtpPrefix.matches(line.name)) continue;
    const std::optional<PayloadLine> fmtp = payloadLine(line);
    if (!fmtp || fmtp->payloadType != rtpmap.payloadType) continue;
    const std::uint8_t codec = codecOfRate(rtpmap.word, Words(fmtp->word).next());
    if (codec != SDP_NO_CODEC) return codec;
  }
  return SDP_NO_CODEC;
}

/// The codec that an rtpmap line gives its payload type.
std::uint8_t codecOfRtpmap(const PayloadLine& rtpmap, std::span<const a_line::entry> attributes) {
  const std::uint8_t codec = codecOfEncoding(rtpmap);
  return codec != SDP_NO_CODEC ? codec : codecOfFmtp(rtpmap, attributes);
}

bool isDynamic(int payloadType) {
  return payloadType >= kFirstDynamicPayload && payloadType <= kLastDynamicPayload;
}

/// @param format the payload type's text, or null
std::uint8_t staticCodec(int payloadType, const char* format) {
  // By the text: one without a number, and a sign in front of a zero, is no payload type.
  if (payloadType == 0 && format != nullptr && *format == '0') return kCodecPcmu;
  for (const StaticAudioRule& rule : kStaticAudioRules) {
    if (rule.payloadType == payloadType) return rule.codec;
  }
  return SDP_NO_CODEC;
}

}  // namespace

// Of several lines for one payload type the first that names a known codec counts.
void PayloadCodecs::readDynamic() {
  std::fill(std::begin(dynamic_), std::end(dynamic_), SDP_NO_CODEC);
  hasDynamic_ = true;
  attributes_.forEach(KindSet(AttributeKind::rtpmap, AttributeKind::longerRtpmap),
                      [this](const a_line::entry& line, AttributeKind) {
                        const std::optional<PayloadLine> rtpmap = payloadLine(line);
                        if (!rtpmap || !isDynamic(rtpmap->payloadType)) return true;
                        std::uint8_t& codec = dynamic_[rtpmap->payloadType - kFirstDynamicPayload];
                        if (codec == SDP_NO_CODEC) codec = codecOfRtpmap(*rtpmap, attributes_.lines());
                        return true;
                      });
}

std::uint8_t PayloadCodecs::of(const char* format) {
  const int payloadType = numberOrZeroOf<int>(format);
  if (!isDynamic(payloadType)) return staticCodec(payloadType, format);
  if (!hasDynamic_) readDynamic();
  return dynamic_[payloadType - kFirstDynamicPayload];
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned char sdpParserMessage::convertCodec(const char* format, const a_line* attributes) {
  using namespace sdpneg;
  const int payloadType = numberOrZeroOf<int>(format);
  return isDynamic(payloadType) ? convertDynamicCodec(payloadType, attributes)
                                : staticCodec(payloadType, format);
}

unsigned char sdpParserMessage::convertDynamicCodec(int payloadType, const a_line* attributes) {
  using namespace sdpneg;
  const std::span<const a_line::entry> lines = entriesOf(attributes);
  for (const a_line::entry& line : lines) {
    if (!kRtpmapPrefix.matches(line.name)) continue;
    const std::optional<PayloadLine> rtpmap = payloadLine(line);
    if (!rtpmap || rtpmap->payloadType != payloadType) continue;
    const std::uint8_t codec = codecOfRtpmap(*rtpmap, lines);
    if (codec != SDP_NO_CODEC) return codec;
  }
  return SDP_NO_CODEC;
}

void sdpParserMessage::setG729AnnexB(sSdpParsedData& data, int noOfFormats, unsigned char codec) {
  const int count = std::clamp(noOfFormats, 0, MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  std::replace(data.audioCodec, data.audioCodec + count, kCodecG729, codec);
}
