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

/// An encoding to compare with. Those that begin alike, letters in either case, form a chain in their order.
struct alignas(64) Encoding {
  NamePattern pattern{"", NameTest::prefix};
  std::uint8_t codec = SDP_NO_CODEC;  ///< none where it depends on a rate
  bool hasRate = false;               ///< the codec depends on a rate
  std::uint8_t next = 0;
};

constexpr std::size_t kBeginnings = 32;

constexpr std::size_t beginningOf(char first) { return static_cast<unsigned char>(first) % kBeginnings; }

/// Encoding 0 ends each chain: it fits every word.
struct Encodings {
  Encoding entries[1 + std::size(kDynamicAudioRules) + std::size(kRateAudioRules)];
  std::uint8_t first[kBeginnings] = {};

  constexpr void addInFront(std::size_t index, std::string_view prefix, NameTest test, std::uint8_t codec) {
    std::uint8_t& chain = first[beginningOf(prefix[0])];
    entries[index] = {NamePattern(prefix, test), codec, codec == SDP_NO_CODEC, chain};
    chain = static_cast<std::uint8_t>(index);
  }
};

constexpr Encodings makeEncodings() {
  Encodings encodings;
  std::size_t index = std::size(encodings.entries);
  for (std::size_t i = std::size(kRateAudioRules); i > 0; --i) {
    encodings.addInFront(--index, kRateAudioRules[i - 1].prefix, NameTest::prefix, SDP_NO_CODEC);
  }
  for (std::size_t i = std::size(kDynamicAudioRules); i > 0; --i) {
    const DynamicAudioRule& rule = kDynamicAudioRules[i - 1];
    const NameTest test = rule.anyCase ? NameTest::prefixAnyCase : NameTest::prefix;
    encodings.addInFront(--index, rule.prefix, test, rule.codec);
  }
  return encodings;
}

constexpr Encodings kEncodings = makeEncodings();

/// The encoding that a text of kSize characters at least begins with; encoding 0 when it is not known.
/// @param isWanted if not, it is not known
inline const Encoding& encodingAt(const char* text, bool isWanted) {
  std::size_t at = kEncodings.first[beginningOf(*text)] * static_cast<std::size_t>(isWanted);
  while (!kEncodings.entries[at].pattern.matchesAt(text)) at = kEncodings.entries[at].next;
  return kEncodings.entries[at];
}

/// The same of a word near the end of its field, which is copied so that as much as is compared can be read.
[[gnu::noinline]] const Encoding& encodingOfLast(PayloadWord word, bool isWanted) {
  char copy[NamePattern::kSize] = {};
  std::memcpy(copy, word.text, word.room);
  return encodingAt(copy, isWanted);
}

/// Of the word itself: no rule holds white space.
inline const Encoding& encodingOf(PayloadWord word, bool isWanted = true) {
  return word.room < NamePattern::kSize ? encodingOfLast(word, isWanted) : encodingAt(word.text, isWanted);
}

std::uint8_t codecOfRate(const char* encoding, std::string_view parameters) {
  for (const RateAudioRule& rule : kRateAudioRules) {
    if (textStartsWith(encoding, rule.prefix) && contains(parameters, rule.rate)) return rule.codec;
  }
  return SDP_NO_CODEC;
}

/// The codec of an encoding whose rate stands in an fmtp line, when that is one of its payload type.
std::uint8_t codecOfFmtp(const char* encoding, int payloadType, const a_line::entry& line) {
  return codecOfRate(encoding, Words(wordOf(line, payloadType).text).next());
}

/// The codec of a payload type by the fmtp lines of its m-line.
std::uint8_t codecOfFmtp(const char* encoding, int payloadType, const AttributeIndex& attributes) {
  std::uint8_t codec = SDP_NO_CODEC;
  constexpr KindSet kinds(AttributeKind::fmtp, AttributeKind::longerFmtp);
  attributes.forEach(kinds, [&](const a_line::entry& line, AttributeKind) {
    codec = codecOfFmtp(encoding, payloadType, line);
    return codec == SDP_NO_CODEC;
  });
  return codec;
}

std::uint8_t codecOfFmtp(const char* encoding, int payloadType, std::span<const a_line::entry> attributes) {
  for (const a_line::entry& line : attributes) {
    if (!kFmtpPrefix.matches(line.name)) continue;
    const std::uint8_t codec = codecOfFmtp(encoding, payloadType, line);
    if (codec != SDP_NO_CODEC) return codec;
  }
  return SDP_NO_CODEC;
}

/// The codec of a dynamic payload type by the word that its rtpmap line has.
std::uint8_t codecOfWord(PayloadWord encoding, int payloadType, std::span<const a_line::entry> attributes) {
  const Encoding& found = encodingOf(encoding);
  return found.hasRate ? codecOfFmtp(encoding.text, payloadType, attributes) : found.codec;
}

bool isDynamic(int payloadType) {
  return payloadType >= kFirstDynamicPayload && payloadType <= kLastDynamicPayload;
}

/// Codecs of payload types by their number.
struct StaticCodecs {
  std::uint8_t of[kLastDynamicPayload + 1];
};

constexpr StaticCodecs staticCodecs() {
  StaticCodecs codecs{};
  codecs.of[0] = kCodecPcmu;
  for (const StaticAudioRule& rule : kStaticAudioRules) codecs.of[rule.payloadType] = rule.codec;
  return codecs;
}

constexpr StaticCodecs kStaticCodecs = staticCodecs();

/// @param format the payload type's text, or null
std::uint8_t staticCodec(int payloadType, const char* format) {
  // By the text: one without a number, and a sign in front of a zero, is no payload type.
  if (payloadType == 0 && (format == nullptr || *format != '0')) return SDP_NO_CODEC;
  return payloadType >= 0 && payloadType < kFirstDynamicPayload ? kStaticCodecs.of[payloadType]
                                                                : SDP_NO_CODEC;
}

}  // namespace

// Of several lines for one payload type the first that names a known codec counts. What a line holds could not be
// foreseen, so a line of another payload type is not left out, but names nothing, and what it names is not kept.
PayloadCodecs::PayloadCodecs(const AttributeIndex& attributes) {
  constexpr unsigned int kNotKept = kLastDynamicPayload + 1;
  constexpr unsigned int kDynamic = kLastDynamicPayload + 1 - kFirstDynamicPayload;
  constexpr std::size_t kBlock = 16;
  static_assert(sizeof kStaticCodecs.of % kBlock == 0 && sizeof codecs_ > sizeof kStaticCodecs.of);
  for (std::size_t i = 0; i < sizeof kStaticCodecs.of; i += kBlock) {
    std::memcpy(codecs_ + i, kStaticCodecs.of + i, kBlock);
  }
  codecs_[kNotKept] = SDP_NO_CODEC;
  constexpr KindSet kinds(AttributeKind::rtpmap, AttributeKind::longerRtpmap);
  attributes.forEach(kinds, [&](const a_line::entry& line, AttributeKind) {
    Leading<int> number = shortNumberOf<kPayloadDigits>(line.value);
    if (number.length == 0) number = leadingNumberOf<int>(line.value).value_or(number);
    const unsigned int dynamic = static_cast<unsigned int>(number.value) - kFirstDynamicPayload;
    const bool isKept = dynamic < kDynamic;
    const PayloadWord word = wordBehind(line, number.length);
    const Encoding& found = encodingOf(word, isKept);
    std::uint8_t& codec =
        codecs_[kNotKept - ((kDynamic - dynamic) & (0U - static_cast<unsigned int>(isKept)))];
    codec = firstCodec(codec, found.codec);
    if (found.hasRate && codec == SDP_NO_CODEC) codec = codecOfFmtp(word.text, number.value, attributes);
    return true;
  });
}

std::uint8_t PayloadCodecs::ofLonger(const char* format) const {
  const int payloadType = numberOrZeroOf<int>(format);
  return isDynamic(payloadType) ? codecs_[payloadType] : staticCodec(payloadType, format);
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
