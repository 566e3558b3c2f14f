// Profiles and levels of H.264.

#include "h264.h"

#include "text/search.h"

namespace sdp::exchange {
namespace {

constexpr std::uint8_t kConstraint3 = 0x10;
constexpr std::uint8_t kLevel1b = 9;
constexpr std::uint8_t kLevel11 = 11;

/// A row of table 5: the profile, and what the constraint flags are under a mask.
struct Row {
  std::uint8_t profileIdc;
  std::uint8_t mask;
  std::uint8_t flags;
  std::uint32_t profile;
};

/// RFC 6184, table 5. The last four flags are reserved and 0.
constexpr Row kRows[] = {
    {0x42, 0x4F, 0x40, 1},   // Constrained Baseline
    {0x4D, 0x8F, 0x80, 1},   //
    {0x58, 0xCF, 0xC0, 1},   //
    {0x42, 0x4F, 0x00, 2},   // Baseline
    {0x58, 0xCF, 0x80, 2},   //
    {0x4D, 0xAF, 0x00, 3},   // Main
    {0x58, 0xCF, 0x00, 4},   // Extended
    {0x64, 0xFF, 0x00, 5},   // High
    {0x6E, 0xFF, 0x00, 6},   // High 10
    {0x7A, 0xFF, 0x00, 7},   // High 4:2:2
    {0xF4, 0xFF, 0x00, 8},   // High 4:4:4 Predictive
    {0x6E, 0xFF, 0x10, 9},   // High 10 Intra
    {0x7A, 0xFF, 0x10, 10},  // High 4:2:2 Intra
    {0xF4, 0xFF, 0x10, 11},  // High 4:4:4 Intra
    {0x2C, 0xFF, 0x10, 12},  // CAVLC 4:4:4 Intra
};

/// Profiles that tell level 1b by a constraint flag beside level 1.1, and no level of its own.
bool tellsLevel1bByFlag(std::uint8_t profileIdc) {
  return profileIdc == 0x42 || profileIdc == 0x4D || profileIdc == 0x58;
}

bool isLevel1b(const ProfileLevelId& id) {
  if (id.levelIdc == kLevel1b) return true;
  return id.levelIdc == kLevel11 && (id.profileIop & kConstraint3) != 0 && tellsLevel1bByFlag(id.profileIdc);
}

std::optional<std::uint8_t> readDigit(char c) {
  if (sdpneg::isDigit(c)) return static_cast<std::uint8_t>(c - '0');
  const char letter = sdpneg::lower(c);
  if (letter < 'a' || letter > 'f') return std::nullopt;
  return static_cast<std::uint8_t>(letter - 'a' + 10);
}

}  // namespace

std::optional<ProfileLevelId> readProfileLevelId(std::string_view text) {
  constexpr std::size_t kDigits = 6;
  if (text.size() != kDigits) return std::nullopt;
  std::uint32_t value = 0;
  for (const char c : text) {
    const std::optional<std::uint8_t> digit = readDigit(c);
    if (!digit) return std::nullopt;
    value = value << 4U | *digit;
  }
  const auto byte = [value](unsigned shift) { return static_cast<std::uint8_t>(value >> shift & 0xFFU); };
  return ProfileLevelId{byte(16), byte(8), byte(0)};
}

std::optional<ProfileLevelId> profileLevelIdOf(const Codec& codec) {
  const std::optional<std::string_view> value = codec.parameter("profile-level-id");
  return value ? readProfileLevelId(*value) : std::nullopt;
}

std::string textOf(const ProfileLevelId& id) {
  constexpr std::string_view kHex = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : {id.profileIdc, id.profileIop, id.levelIdc}) {
    text += kHex[byte >> 4U];
    text += kHex[byte & 0xFU];
  }
  return text;
}

std::uint32_t profileOf(const ProfileLevelId& id) {
  for (const Row& row : kRows) {
    if (row.profileIdc == id.profileIdc && (id.profileIop & row.mask) == row.flags) return row.profile;
  }
  constexpr std::uint32_t kOutside = 0x10000;
  return kOutside | std::uint32_t{id.profileIdc} << 8U | id.profileIop;
}

int rankOf(const ProfileLevelId& id) { return isLevel1b(id) ? 2 * kLevel11 - 1 : 2 * id.levelIdc; }

ProfileLevelId withLevelOf(ProfileLevelId id, const ProfileLevelId& level) {
  const bool byFlag = tellsLevel1bByFlag(id.profileIdc);
  const bool is1b = isLevel1b(level);
  id.levelIdc = is1b ? (byFlag ? kLevel11 : kLevel1b) : level.levelIdc;
  // Beside level 1.1 the flag would make it 1b, and beside others it says nothing of the level.
  if (byFlag && is1b) id.profileIop |= kConstraint3;
  if (byFlag && !is1b && id.levelIdc == kLevel11) id.profileIop &= static_cast<std::uint8_t>(~kConstraint3);
  return id;
}

}  // namespace sdp::exchange
