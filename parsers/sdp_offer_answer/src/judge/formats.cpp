// The rules of formats.

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "judge/bodies.h"
#include "judge/offeredCodecs.h"
#include "parameters.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

constexpr std::uint64_t kFirstDynamic = 96;
// These are types of RTCP packets less 128 (RFC 5761, section 4).
constexpr std::uint64_t kFirstReserved = 64;
constexpr std::uint64_t kLastReserved = 95;

/// "96 VP8/90000", to be shown.
std::string textOf(const Codec& codec) {
  std::string text = shown(codec.payload);
  if (codec.name.empty()) return text.append(", of which nothing is known,");
  text.append(" ").append(shown(codec.name)).append("/").append(std::to_string(codec.clockRate));
  return codec.channels == 1 ? text : text.append("/").append(std::to_string(codec.channels));
}

void addMisfit(std::uint32_t section, const Codec& codec, const Misfit& misfit, Findings& findings) {
  const auto add = [&](AnswerRule rule, std::string_view what) {
    findings.add(section, rule, {textOf(codec), " has ", what});
  };
  if (misfit.parameters) add(AnswerRule::codecParameters, "parameters that were not offered");
  if (misfit.profile) add(AnswerRule::h264Profile, "a profile that was not offered");
  if (misfit.mode) add(AnswerRule::h264Mode, "a packetization-mode that was not offered");
  if (misfit.level) add(AnswerRule::h264Level, "a higher level than was offered");
}

/// Judges one format by those of the offer.
/// @param gathered  these once more, when the first format wants all of them
/// @return whether the offer has its number, whatever that means there, or its encoding
bool judgeCodec(std::uint32_t section, const CodecList& list, std::optional<OfferedCodecs>& gathered,
                const Codec& codec, Findings& findings) {
  const Codec* const numbered = list.find(codec.payload);
  const bool isKnown = numbered != nullptr && !numbered->name.empty() && !codec.name.empty();
  if (isKnown && haveSameEncoding(*numbered, codec)) {
    addMisfit(section, codec, misfitOf(CodecTraits(*numbered), CodecTraits(codec)), findings);
    return true;
  }
  if (isKnown) {
    findings.add(section, AnswerRule::payloadChanged, {textOf(codec), "; offered was ", textOf(*numbered)});
  }
  if (!gathered) gathered.emplace(list);
  const OfferedCodecs& offered = *gathered;
  const bool isOffered = offered.has(codec);
  if (isOffered) addMisfit(section, codec, offered.misfitOf(codec, CodecTraits(codec)), findings);
  if (isOffered || numbered != nullptr) return true;
  findings.add(section, AnswerRule::codecNotOffered, {textOf(codec), " was not offered"});
  return false;
}

bool hasCodec(const CodecList& list) {
  return std::any_of(list.begin(), list.end(), [](const Codec& codec) { return !codec.isCompanion; });
}

void judgeCodecs(std::uint32_t section, const CodecList& offered, const CodecList& answered,
                 Findings& findings) {
  std::optional<OfferedCodecs> gathered;
  bool hasOffered = false;
  for (const Codec& codec : answered) {
    if (judgeCodec(section, offered, gathered, codec, findings)) hasOffered = true;
  }
  if (!hasOffered) findings.add(section, AnswerRule::noFormat, {"none of its formats was offered"});
  if (hasCodec(offered) && !hasCodec(answered)) {
    findings.add(section, AnswerRule::noCodec, {"codecs were offered, and it has none"});
  }
}

/// Formats that are no payload types.
void judgeWords(const Pair& pair, Findings& findings) {
  const auto lowerCase = [](std::string_view format) {
    std::string text(format);
    std::transform(text.begin(), text.end(), text.begin(), sdpneg::lower);
    return text;
  };
  std::set<std::string> offered;
  for (const Format& format : pair.offered.formats()) offered.insert(lowerCase(format.format));
  for (const Format& format : pair.answered.formats()) {
    if (offered.count(lowerCase(format.format)) != 0) return;
  }
  findings.add(pair.number, AnswerRule::noFormat, {"none of its formats was offered"});
}

/// Payload types that stand in the m-line again, each once.
void judgeRepeated(const Pair& pair, const CodecList& codecs, Findings& findings) {
  if (!codecs.hasRepeated()) return;
  enum : std::uint8_t { once, again };
  std::map<std::string_view, std::uint8_t> told;
  for (const Format& format : pair.answered.formats()) {
    const auto [place, isNew] = told.emplace(format.format, once);
    if (isNew || place->second == again) continue;
    place->second = again;
    findings.add(pair.number, AnswerRule::payloadTwice, {shown(format.format), " stands there again"});
  }
}

void judgePayloads(const Pair& pair, const CodecList& codecs, Findings& findings) {
  const bool hasMux = pair.answered.hasRtcpMux();
  for (const Codec& codec : codecs) {
    const std::uint64_t number = readNumber(codec.payload).value_or(0);
    if (hasMux && number >= kFirstReserved && number <= kLastReserved) {
      findings.add(pair.number, AnswerRule::payloadReserved,
                   {textOf(codec), " is taken for RTCP beside rtcp-mux"});
    }
    if (number >= kFirstDynamic && codec.name.empty()) {
      findings.add(pair.number, AnswerRule::noRtpmap, {shown(codec.payload), " has no rtpmap"});
    }
    if (codec.family == Family::rtx && codecs.find(codec.apt()) == nullptr) {
      findings.add(pair.number, AnswerRule::rtxWithoutCodec,
                   {textOf(codec), " repairs no format of the section"});
    }
  }
}

}  // namespace

void judgeFormats(const Pair& pair, Findings& findings) {
  if (!pair.answered.isRtp()) return judgeWords(pair, findings);
  const CodecList answered(pair.answered);
  if (pair.offered.isRtp()) judgeCodecs(pair.number, CodecList(pair.offered), answered, findings);
  judgeRepeated(pair, answered, findings);
  judgePayloads(pair, answered, findings);
}

}  // namespace sdp::exchange
