#ifndef SDP_OFFER_ANSWER_H264_H
#define SDP_OFFER_ANSWER_H264_H

// Profiles and levels of H.264, as profile-level-id tells them (RFC 6184, section 8.1).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "codecs.h"

namespace sdp::exchange {

/// What profile-level-id says: three bytes in hexadecimal digits.
struct ProfileLevelId {
  std::uint8_t profileIdc;
  std::uint8_t profileIop;  ///< the constraint flags, the first in the highest bit
  std::uint8_t levelIdc;
};

/// @return nothing when the text is no six hexadecimal digits
std::optional<ProfileLevelId> readProfileLevelId(std::string_view text);
/// What a format has as profile-level-id; nothing without, and where it is none.
std::optional<ProfileLevelId> profileLevelIdOf(const Codec& codec);
std::string textOf(const ProfileLevelId& id);

/// A number for the profile, the same for all of one: by the rows of table 5, outside of it by the bytes but for the
/// level.
std::uint32_t profileOf(const ProfileLevelId& id);

/// A number for the level, higher for higher ones. 1b is between 1 and 1.1.
int rankOf(const ProfileLevelId& id);
/// The id with the level of another one, as its own profile spells that.
ProfileLevelId withLevelOf(ProfileLevelId id, const ProfileLevelId& level);

}  // namespace sdp::exchange

#endif
