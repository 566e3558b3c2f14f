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

/// The word that stands behind the payload type in an attribute's value, as in "97 iLBC/8000"; the value goes on behind it.
struct PayloadWord {
  const char* text;  ///< empty when there is none
  std::size_t room;  ///< characters up to the end of its field
};

/// @param behind where the number of the value ends
PayloadWord wordBehind(const a_line::entry& line, std::size_t behind) {
  const char* word = line.value + behind;
  while (isSpace(*word)) ++word;
  return {word, static_cast<std::size_t>(line.value + sizeof line.value - word)};
}

/// The word behind a payload type; empty when the value begins with another number or none.
PayloadWord wordOf(const a_line::entry& line, int payloadType) {
  const std::optional<Leading<int>> number = leadingNumberOf<int>(line.value);
  if (!number || number->value != payloadType) return {"", 1};
  return wordBehind(line, number->length);
}

/// The dynamic rules, prepared for comparisons.
template <std::size_t... Indices>
constexpr std::array<NamePattern, sizeof...(Indices)> patternsOf(std::index_sequence<Indices...> /*rules*/) {
  return {NamePattern(kDynamicAudioRules[Indices].prefix,
                      kDynamicAudioRules[Indices].anyCase ? NameTest::prefixAnyCase : NameTest::prefix)...};
}

constexpr auto kEncodings = patternsOf(std::make_index_sequence<std::size(kDynamicAudioRules)>());

/// Of the word itself: no rule holds white space.
std::uint8_t codecOfEncoding(PayloadWord word) {
  char copy[NamePattern::kSize] = {};
  const char* encoding = word.text;
  // Near the end of its field a word is copied, so that as much as is compared can be read.
  if (word.room < sizeof copy) {
    std::memcpy(copy, word.text, word.room);
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
std::uint8_t codecOfFmtp(const char* encoding, int payloadType, std::span<const a_line::entry> attributes) {
  if (!dependsOnRate(encoding)) return SDP_NO_CODEC;
  for (const a_line::entry& line : attributes) {
    if (!kFmtpPrefix.matches(line.name)) continue;
    const std::uint8_t codec = codecOfRate(encoding, Words(wordOf(line, payloadType).text).next());
    if (codec != SDP_NO_CODEC) return codec;
  }
  return SDP_NO_CODEC;
}

/// The codec of a dynamic payload type by the word that its rtpmap line has.
std::uint8_t codecOfWord(PayloadWord encoding, int payloadType, std::span<const a_line::entry> attributes) {
  if (*encoding.text == '\0') return SDP_NO_CODEC;
  const std::uint8_t codec = codecOfEncoding(encoding);
  return codec != SDP_NO_CODEC ? codec : codecOfFmtp(encoding.text, payloadType, attributes);
}

bool isDynamic(int payloadType) {
  return payloadType >= kFirstDynamicPayload && payloadType <= kLastDynamicPayload;
}

/// The codecs of static payload types by their number.
struct StaticCodecs {
  std::uint8_t of[kFirstDynamicPayload];
};

constexpr StaticCodecs staticCodecs() {
  StaticCodecs codecs{};
  for (const StaticAudioRule& rule : kStaticAudioRules) codecs.of[rule.payloadType] = rule.codec;
  return codecs;
}

constexpr StaticCodecs kStaticCodecs = staticCodecs();

/// @param format the payload type's text, or null
std::uint8_t staticCodec(int payloadType, const char* format) {
  // By the text: one without a number, and a sign in front of a zero, is no payload type.
  if (payloadType == 0 && format != nullptr && *format == '0') return kCodecPcmu;
  return payloadType >= 0 && payloadType < kFirstDynamicPayload ? kStaticCodecs.of[payloadType]
                                                                : SDP_NO_CODEC;
}

}  // namespace

// Of several lines for one payload type the first that names a known codec counts.
PayloadCodecs::PayloadCodecs(const AttributeIndex& attributes) {
  attributes.forEach(KindSet(AttributeKind::rtpmap, AttributeKind::longerRtpmap),
                     [&](const a_line::entry& line, AttributeKind) {
                       const std::optional<Leading<int>> number = leadingNumberOf<int>(line.value);
                       if (!number || !isDynamic(number->value)) return true;
                       std::uint8_t& codec = dynamic_[number->value - kFirstDynamicPayload];
                       if (codec != SDP_NO_CODEC) return true;
                       codec =
                           codecOfWord(wordBehind(line, number->length), number->value, attributes.lines());
                       return true;
                     });
}

std::uint8_t PayloadCodecs::of(const char* format) const {
  const int payloadType = numberOrZeroOf<int>(format);
  return isDynamic(payloadType) ? dynamic_[payloadType - kFirstDynamicPayload]
                                : staticCodec(payloadType, format);
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
    const std::uint8_t codec = codecOfWord(wordOf(line, payloadType), payloadType, lines);
    if (codec != SDP_NO_CODEC) return codec;
  }
  return SDP_NO_CODEC;
}

void sdpParserMessage::setG729AnnexB(sSdpParsedData& data, int noOfFormats, unsigned char codec) {
  const int count = std::clamp(noOfFormats, 0, MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  std::replace(data.audioCodec, data.audioCodec + count, kCodecG729, codec);
}
