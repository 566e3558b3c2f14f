// Making the fmtp of formats that are answered.

#include "answer/formatParameters.h"

#include <algorithm>

#include "h264.h"
#include "parameters.h"
#include "plainText.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

bool is(const Codec& codec, std::string_view name, std::string_view value) {
  const std::optional<std::string_view> present = codec.parameter(name);
  return present && sdpneg::equalNoCase(*present, value);
}

bool isOneOf30(const Codec& codec) { return codec.parameter("mode").value_or("30") == "30"; }

/// Which fmtp of a format has a parameter; the first where none does.
std::size_t lineWith(const Codec& codec, std::string_view name) {
  for (std::size_t line = 0; line < codec.fmtps.size(); ++line) {
    const std::optional<std::string_view> value = parameterOf(codec.fmtps[line], name);
    if (value && !value->empty()) return line;
  }
  return 0;
}

/// A fmtp with another list in front of its first semicolon.
std::string withList(std::string_view text, std::string_view list) {
  const std::string_view present = trimmed(text.substr(0, text.find(';')));
  if (present.empty()) return std::string(" ").append(list).append(trimmed(text));
  const auto begin = static_cast<std::size_t>(present.data() - text.data());
  return std::string(text.substr(0, begin)).append(list).append(text.substr(begin + present.size()));
}

/// A list of payload types without what else stands there.
std::string joinedPayloads(std::string_view carried) {
  std::string list;
  Payloads payloads(carried);
  for (std::string_view payload = payloads.next(); !payload.empty(); payload = payloads.next()) {
    list.append(list.empty() ? "" : "/").append(payload);
  }
  return list;
}

}  // namespace

FormatParameters::FormatParameters(const FormatPair& pair, const AnsweredFormats& answered,
                                   const CodecList& local)
    : pair_(pair) {
  const Codec& theirs = *pair.offered;
  const Codec& ours = *pair.local;
  if (theirs.family != ours.family) return;  // they are words
  switch (ours.family) {
    case Family::h264:
      lowerLevel();
      break;
    case Family::amr:
      restrictModes();
      break;
    case Family::g729:
      if (is(theirs, "annexb", "no") && !is(ours, "annexb", "no")) set("annexb", "no");
      break;
    case Family::ilbc:
      if (isOneOf30(theirs) && !isOneOf30(ours)) set("mode", "30");
      break;
    case Family::telephoneEvent:
      restrictEvents();
      break;
    case Family::rtx:
      if (theirs.apt() != ours.apt()) set("apt", theirs.apt());
      break;
    case Family::red:
      translateCarried(answered, local);
      break;
    default:
      break;
  }
}

void FormatParameters::set(std::string_view name, std::string_view text) {
  values_.push_back({name, std::string(text), lineWith(*pair_.local, name)});
}

/// The lower of both levels, unless each side may use its own (RFC 6184, section 8.2.2).
void FormatParameters::lowerLevel() {
  constexpr std::string_view kAsymmetry = "level-asymmetry-allowed";
  if (is(*pair_.offered, kAsymmetry, "1") && is(*pair_.local, kAsymmetry, "1")) return;
  const std::optional<ProfileLevelId> theirs = profileLevelIdOf(*pair_.offered);
  const std::optional<ProfileLevelId> ours = profileLevelIdOf(*pair_.local);
  if (!theirs || !ours || rankOf(*ours) <= rankOf(*theirs)) return;
  set("profile-level-id", textOf(withLevelOf(*ours, *theirs)));
}

/// The modes that both have; those of the offer where only that names some (RFC 4867, section 8.3.1).
void FormatParameters::restrictModes() {
  constexpr std::string_view kModes = "mode-set";
  const std::optional<ModeSet> theirs = modesOf(*pair_.offered);
  if (!theirs) return;
  const std::optional<ModeSet> ours = modesOf(*pair_.local);
  if (!ours) return takeModes(*pair_.offered->parameter(kModes), *theirs);
  if ((*ours & *theirs) == *ours) return;
  set(kModes, textOfCommonModes(*pair_.local->parameter(kModes), *theirs));
}

/// Of a text that may not stand in a line the modes that were understood are taken.
void FormatParameters::takeModes(std::string_view text, ModeSet modes) {
  constexpr std::string_view kModes = "mode-set";
  if (isPlain(text)) return set(kModes, text);
  modes.reset(kOtherMode);
  if (modes.any()) set(kModes, textOfCommonModes(text, modes));
}

void FormatParameters::restrictEvents() {
  const EventSet ours = eventsOf(*pair_.local);
  const EventSet common = ours & eventsOf(*pair_.offered);
  if (common != ours) list_ = textOf(common);
}

/// What red carries is told in the numbers of the offer: as that has it, else the local one translated.
void FormatParameters::translateCarried(const AnsweredFormats& answered, const CodecList& local) {
  Payloads carried(pair_.local->carried());
  std::string list;
  for (std::string_view payload = carried.next(); !payload.empty(); payload = carried.next()) {
    const Codec* const ours = local.find(payload);
    const Codec* const codec = ours == nullptr ? nullptr : answered.translations[local.placeOf(*ours)];
    if (codec == nullptr) continue;  // then the offer has a list
    if (!list.empty()) list += '/';
    list += codec->payload;
  }
  const std::string_view theirs = pair_.offered->carried();
  if (!Payloads(theirs).next().empty()) list = isPlain(theirs) ? std::string(theirs) : joinedPayloads(theirs);
  if (!Payloads(pair_.local->carried()).next().empty() && list != pair_.local->carried()) list_ = list;
}

std::string FormatParameters::applied(std::size_t line, std::string_view text) const {
  std::string result(text);
  if (list_ && line == 0) result = withList(result, *list_);
  for (const Value& value : values_) {
    if (value.line != line) continue;
    if (trimmed(result).empty()) result = " ";
    result = withParameter(result, value.name, value.text);
  }
  return result;
}

}  // namespace sdp::exchange
