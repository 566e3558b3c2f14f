#include "videoRule.h"

#include <sdpDocumentRequests.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

#include "bodyLines.h"
#include "wholeNumber.h"

namespace b2bua {

namespace {

constexpr std::size_t kIdDigits = 6;  ///< of a profile-level-id (RFC 6184 8.1)
constexpr std::size_t kLevelAt = 4;
constexpr unsigned int k1b = 21;

/// Those of eH264_profile_id: twice their numbers, for 1b to lie behind 1.
constexpr unsigned int kLevels[] = {20, k1b, 22, 24, 26, 40, 42, 44, 60, 62, 64, 80, 82, 84, 100, 102};

/// Baseline, Main and Extended have one number for 1b and 1.1, which a bit tells apart; the others have 9 for 1b.
struct ProfileLevel {
  static constexpr unsigned int kBitOf1b = 0x1000;

  unsigned int id = 0;

  bool hasBit() const {
    const unsigned int profile = id >> 16U;
    return profile == 0x42 || profile == 0x4D || profile == 0x58;
  }
  unsigned int level() const {
    const unsigned int number = id & 0xFFU;
    const bool is1b = number == 9 || (number == 11 && hasBit() && (id & kBitOf1b) != 0);
    return is1b ? k1b : 2 * number;
  }
  void setLevel(unsigned int level) {
    const unsigned int of1b = hasBit() ? kBitOf1b | 11U : 9U;
    id = (id & ~0xFFU) | (level == k1b ? of1b : level / 2);
  }
};

/// Other codecs have a profile-level-id too, but none of six digits.
std::string withLevelsCapped(std::string line, unsigned int highest) {
  constexpr std::string_view kName = "profile-level-id";
  const std::string lower = tolerantly(line);
  for (std::size_t at = lower.find(kName); at != std::string::npos; at = lower.find(kName, at)) {
    at = std::min(lower.find_first_not_of(" =", at + kName.size()), lower.size());
    const std::string_view digits = std::string_view(lower).substr(at, kIdDigits);
    ProfileLevel found;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), found.id, 16);
    if (error != std::errc() || end - digits.data() != kIdDigits || found.level() <= highest) continue;
    found.setLevel(highest);
    std::array<char, kIdDigits + 1> text{};
    std::snprintf(text.data(), text.size(), "%06X", found.id);
    // Those in front of the level stay as they are written, but for the bit.
    const bool isNew =
        std::string_view(lower).substr(at, kLevelAt) != lowerCase(text.data()).substr(0, kLevelAt);
    const std::size_t from = isNew ? 0 : kLevelAt;
    line.replace(at + from, kIdDigits - from, text.data() + from);
  }
  return line;
}

/// Bandwidths of media; those of RTCP are none.
/// @param most  in kbit/s
std::string withBandwidthCapped(const std::string& line, unsigned long most) {
  struct Unit {
    std::string_view type;
    unsigned long perKilobit;
  };
  constexpr Unit kUnits[] = {{"AS", 1}, {"CT", 1}, {"TIAS", 1'000}};
  const std::string text = tolerantly(line.substr(2));
  const std::size_t colon = std::min(text.find(':'), text.size());
  const std::string_view type = sdp::Fields(std::string_view(text).substr(0, colon))[0];
  const auto unit =
      std::ranges::find_if(kUnits, [&](const Unit& each) { return lowerCase(each.type) == type; });
  if (unit == std::end(kUnits)) return line;
  const std::string_view number =
      sdp::Fields(std::string_view(text).substr(std::min(colon + 1, text.size())))[0];
  unsigned long bandwidth = 0;
  const bool isNumber = readNumber(number, bandwidth);
  most *= unit->perKilobit;
  return isNumber && bandwidth <= most ? line : "b=" + std::string(unit->type) + ":" + std::to_string(most);
}

/// @return whether video and nothing else has a port
bool isVideoAlone(const std::string& body) {
  const sdp::Document document = documentOf(body);
  const auto isOther = [](const sdp::Section& section) {
    return !section.isDisabled() && section.media() != "video";
  };
  return hasPort(document) && std::ranges::none_of(document.sections(), isOther);
}

std::string refuseVideo(Body& body) {
  const bool had = hasMedia(body);
  sdp::Document document = documentOf(textOf(body));
  if (sdp::disable(document, "video")) return "the body is too large to be kept";
  if (std::string reason = store(document, body); !reason.empty()) return reason;
  return !had || hasMedia(body) ? "" : "no media but video";
}

}  // namespace

std::string withVideoCapped(const Policy& policy, const std::string& body) {
  bool isVideo = isVideoAlone(body);
  return withLines(body, [&](const std::string& line) {
    if (line.starts_with("m=")) isVideo = line.starts_with("m=video ");
    if (isVideo && line.starts_with("b=")) return withBandwidthCapped(line, policy.videoBandwidth);
    return isVideo && line.starts_with("a=") ? withLevelsCapped(line, kLevels[policy.videoLevel]) : line;
  });
}

std::string limitVideo(const Policy& policy, Body& body, OfferChanges&) {
  if (policy.video == Video::off) return refuseVideo(body);
  return policy.video == Video::capped ? store(withVideoCapped(policy, textOf(body)), body) : "";
}

}  // namespace b2bua
