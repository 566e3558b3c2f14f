// The codecs of an offered section.

#include "judge/offeredCodecs.h"

#include <algorithm>

#include "h264.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

/// The same for all of an encoding, which has a name.
std::string encodingKeyOf(const Codec& codec) {
  std::string key;
  for (const char c : codec.name) key += sdpneg::lower(c);
  return key.append("/")
      .append(std::to_string(codec.clockRate))
      .append("/")
      .append(std::to_string(codec.channels));
}

bool allowsAsymmetry(const Codec& codec) {
  return codec.parameter("level-asymmetry-allowed").value_or(std::string_view()) == "1";
}

bool hasParameters(Family family) {
  return family == Family::amr || family == Family::h265 || family == Family::vp9 || family == Family::av1;
}

/// The same for all that one offered format may stand for.
std::string keyOf(const CodecTraits& traits) {
  return traits.id ? traits.agreement + std::to_string(profileOf(*traits.id)) : traits.agreement;
}

}  // namespace

CodecTraits::CodecTraits(const Codec& codec) : family(codec.family) {
  if (family != Family::h264 && !hasParameters(family)) return;
  agreement = agreementOf(codec);
  if (family == Family::amr) modes = modesOf(codec);
  if (family != Family::h264) return;
  id = profileLevelIdOf(codec);
  allowsAsymmetry = exchange::allowsAsymmetry(codec);
}

Misfit misfitOf(const CodecTraits& offered, const CodecTraits& answered) {
  Misfit misfit;
  const bool agree = offered.agreement == answered.agreement;
  if (hasParameters(answered.family)) {
    const bool haveModes = offered.modes && answered.modes;
    misfit.parameters = !agree || (haveModes && (*offered.modes & *answered.modes).none());
  }
  if (!offered.id || !answered.id) return misfit;
  misfit.profile = profileOf(*offered.id) != profileOf(*answered.id);
  misfit.mode = !agree;
  const bool isBound = !misfit.profile && !(offered.allowsAsymmetry && answered.allowsAsymmetry);
  misfit.level = isBound && rankOf(*answered.id) > rankOf(*offered.id);
  return misfit;
}

OfferedCodecs::OfferedCodecs(const CodecList& codecs) {
  for (const Codec& codec : codecs) {
    if (codec.name.empty()) continue;
    const CodecTraits traits(codec);
    add(encodings_.try_emplace(encodingKeyOf(codec), traits).first->second, traits);
  }
}

void OfferedCodecs::add(Encoding& encoding, const CodecTraits& traits) {
  if (traits.agreement.empty()) return;
  Alike& alike = encoding.alike[keyOf(traits)];
  alike.anyModes = alike.anyModes || !traits.modes;
  if (traits.modes) alike.modes |= *traits.modes;
  encoding.anyProfile = encoding.anyProfile || !traits.id;
  if (traits.id) alike.highestLevel = std::max(alike.highestLevel, rankOf(*traits.id));
  alike.allowsAsymmetry = alike.allowsAsymmetry || traits.allowsAsymmetry;
}

const OfferedCodecs::Encoding* OfferedCodecs::find(const Codec& codec) const {
  if (codec.name.empty()) return nullptr;
  const auto found = encodings_.find(encodingKeyOf(codec));
  return found == encodings_.end() ? nullptr : &found->second;
}

bool OfferedCodecs::has(const Codec& codec) const { return find(codec) != nullptr; }

bool OfferedCodecs::fits(const Encoding& encoding, const CodecTraits& answered) {
  const bool isOfH264 = answered.family == Family::h264;
  if (answered.agreement.empty() || (isOfH264 && (!answered.id || encoding.anyProfile))) return true;
  const auto found = encoding.alike.find(keyOf(answered));
  if (found == encoding.alike.end()) return false;
  const Alike& alike = found->second;
  if (!isOfH264) return alike.anyModes || !answered.modes || (alike.modes & *answered.modes).any();
  return rankOf(*answered.id) <= alike.highestLevel || (alike.allowsAsymmetry && answered.allowsAsymmetry);
}

Misfit OfferedCodecs::misfitOf(const Codec& codec, const CodecTraits& answered) const {
  const Encoding* const encoding = find(codec);
  if (encoding == nullptr || fits(*encoding, answered)) return {};
  return exchange::misfitOf(encoding->first, answered);
}

}  // namespace sdp::exchange
