#ifndef SDP_OFFER_ANSWER_BUNDLES_H
#define SDP_OFFER_ANSWER_BUNDLES_H

// BUNDLE groups of a body, and whose keys and ICE credentials hold for a section (RFC 8843, section 7).

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "sdpDocument.h"

namespace sdp::exchange {

/// Where attributes of a name stand that hold for a section.
enum class Credential : std::uint8_t { crypto, keyMgmt, fingerprint, setup, tlsId, iceUfrag, icePwd, count };
inline constexpr std::size_t kCredentials = static_cast<std::size_t>(Credential::count);
std::string_view nameOf(Credential credential);

/// The groups of a body, read once. The document must outlive it, and not be edited.
class Bundles {
 public:
  Bundles() = default;
  explicit Bundles(const Document& document);

  /// The number of the BUNDLE group of a section (from 1), from 0 among all groups; nothing outside of one.
  std::optional<std::uint32_t> groupOf(std::uint32_t section) const;
  /// Whether two sections are in one BUNDLE group.
  bool areTogether(std::uint32_t a, std::uint32_t b) const;
  /// The attributes that hold for a section: its own, else the session's, else those of the first section of its group
  /// that has such.
  Range<AttributeCursor> attributesOf(std::uint32_t section, Credential credential) const;
  /// The value of the first of them; empty without one.
  std::string_view valueOf(std::uint32_t section, Credential credential) const;
  bool has(std::uint32_t section, Credential credential) const {
    return !attributesOf(section, credential).empty();
  }

 private:
  static constexpr std::uint32_t kNone = 0xFFFFFFFFU;
  struct Group {
    std::uint32_t holders[kCredentials];  ///< the first section that has such; 0 for none
  };

  const Document* document_ = nullptr;
  std::vector<std::uint32_t> groups_;  ///< by section; kNone outside of one
  std::vector<Group> holders_;         ///< by group
};

}  // namespace sdp::exchange

#endif
