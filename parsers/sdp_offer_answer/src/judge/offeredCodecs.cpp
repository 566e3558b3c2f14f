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

/// What formats of H264 must have the same, that have a profile-level-id.
std::string h264KeyOf(const Codec& codec, const ProfileLevelId& id) {
  return agreementOf(codec).append(std::to_string(profileOf(id)));
}

bool hasParameters(Family family) {
  return family == Family::amr || family == Family::h265 || family == Family::vp9 || family == Family::av1;
}

}  // namespace

Misfit misfitOf(const Codec& offered, const Codec& answered) {
  Misfit misfit;
  if (hasParameters(offered.family)) misfit.parameters = !areSameAlone(offered, answered);
  if (offered.family != Family::h264) return misfit;
  const std::optional<ProfileLevelId> theirs = profileLevelIdOf(offered);
  const std::optional<ProfileLevelId> ours = profileLevelIdOf(answered);
  if (!theirs || !ours) return misfit;
  misfit.profile = profileOf(*theirs) != profileOf(*ours);
  misfit.mode = agreementOf(offered) != agreementOf(answered);
  const bool isBound = !misfit.profile && !(allowsAsymmetry(offered) && allowsAsymmetry(answered));
  misfit.level = isBound && rankOf(*ours) > rankOf(*theirs);
  return misfit;
}

OfferedCodecs::OfferedCodecs(const CodecList& codecs) {
  for (const Codec& codec : codecs) {
    if (codec.name.empty()) continue;
    Encoding& encoding = encodings_[encodingKeyOf(codec)];
    if (encoding.first == nullptr) encoding.first = &codec;
    if (hasParameters(codec.family)) {
      Alike& alike = encoding.alike[agreementOf(codec)];
      const std::optional<ModeSet> modes = modesOf(codec);
      if (modes) alike.modes |= *modes;
      alike.anyModes = alike.anyModes || !modes;
    }
    if (codec.family != Family::h264) continue;
    const std::optional<ProfileLevelId> id = profileLevelIdOf(codec);
    encoding.anyProfile = encoding.anyProfile || !id;
    if (!id) continue;
    Alike& alike = encoding.alike[h264KeyOf(codec, *id)];
    alike.highestLevel = std::max(alike.highestLevel, rankOf(*id));
    alike.isAsymmetric = alike.isAsymmetric || allowsAsymmetry(codec);
  }
}

const OfferedCodecs::Encoding* OfferedCodecs::find(const Codec& codec) const {
  if (codec.name.empty()) return nullptr;
  const auto found = encodings_.find(encodingKeyOf(codec));
  return found == encodings_.end() ? nullptr : &found->second;
}

bool OfferedCodecs::has(const Codec& codec) const { return find(codec) != nullptr; }

bool OfferedCodecs::fits(const Encoding& encoding, const Codec& answered) {
  if (hasParameters(answered.family)) {
    const auto alike = encoding.alike.find(agreementOf(answered));
    if (alike == encoding.alike.end()) return false;
    const std::optional<ModeSet> modes = modesOf(answered);
    return alike->second.anyModes || !modes || (alike->second.modes & *modes).any();
  }
  if (answered.family != Family::h264) return true;
  const std::optional<ProfileLevelId> id = profileLevelIdOf(answered);
  if (!id || encoding.anyProfile) return true;
  const auto alike = encoding.alike.find(h264KeyOf(answered, *id));
  if (alike == encoding.alike.end()) return false;
  return rankOf(*id) <= alike->second.highestLevel ||
         (alike->second.isAsymmetric && allowsAsymmetry(answered));
}

Misfit OfferedCodecs::misfitOf(const Codec& answered) const {
  const Encoding* const encoding = find(answered);
  if (encoding == nullptr || fits(*encoding, answered)) return {};
  return exchange::misfitOf(*encoding->first, answered);
}

}  // namespace sdp::exchange
