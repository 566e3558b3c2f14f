#ifndef SDP_OFFER_ANSWER_BUNDLES_H
#define SDP_OFFER_ANSWER_BUNDLES_H

// BUNDLE groups of a body, and whose keys and ICE credentials hold for a section (RFC 8843, section 7).

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "sdpDocument.h"

namespace sdp::exchange {

/// Attributes that a section may have from elsewhere.
enum class Credential : std::uint8_t { crypto, keyMgmt, fingerprint, setup, tlsId, iceUfrag, icePwd, count };
inline constexpr std::size_t kCredentials = static_cast<std::size_t>(Credential::count);
std::string_view nameOf(Credential credential);

/// Where an attribute that holds for a section stands.
enum class Place : std::uint8_t { nowhere, section, session, group };

/// The groups of a body, read once. A mid at which a reader might end its line is none. The document must outlive it,
/// and not be edited.
class Bundles {
 public:
  explicit Bundles(const Document& document);

  /// The number of the BUNDLE group of a section (from 1), from 0 among all groups; nothing outside of one.
  std::optional<std::uint32_t> groupOf(std::uint32_t section) const;
  /// Whether two sections are in one BUNDLE group.
  bool areTogether(std::uint32_t a, std::uint32_t b) const;
  /// How many groups the session has, of all kinds.
  std::uint32_t groupCount() const { return static_cast<std::uint32_t>(groups_.size()); }
  /// The sections of a BUNDLE group, in the order of its mids.
  std::span<const std::uint32_t> membersOf(std::uint32_t group) const { return groups_[group].members; }

  /// Where the attributes stand that hold for a section: its own, else the session's (but not of crypto, which only
  /// sections have), else those of the first section of its group that has such and is not disabled.
  Place placeOf(std::uint32_t section, Credential credential) const;
  /// The section that has them; 0 where none has, also where the session has them.
  std::uint32_t holderOf(std::uint32_t section, Credential credential) const;
  Range<AttributeCursor> attributesOf(std::uint32_t section, Credential credential) const;
  /// The first field of the first of them; empty without one.
  std::string_view valueOf(std::uint32_t section, Credential credential) const;
  bool has(std::uint32_t section, Credential credential) const {
    return placeOf(section, credential) != Place::nowhere;
  }
  /// Whether both ICE credentials hold for a section; empty ones are none.
  bool hasIce(std::uint32_t section) const {
    return !valueOf(section, Credential::iceUfrag).empty() && !valueOf(section, Credential::icePwd).empty();
  }

 private:
  static constexpr std::uint32_t kNone = 0xFFFFFFFFU;
  /// The first fields of attributes that sections share, which are not searched for each of these anew.
  using Values = std::array<std::string_view, kCredentials>;
  struct Group {
    std::vector<std::uint32_t> members;
    std::array<std::uint32_t, kCredentials> holders{};  ///< the first section that has such; 0 for none
    Values values;                                      ///< what it has
  };

  void findMembers();
  void findHolders(Group& group) const;

  const Document* document_;
  std::array<bool, kCredentials> isInSession_{};
  Values inSession_;
  std::vector<std::uint32_t> groupOf_;  ///< by section; kNone outside of one
  std::vector<Group> groups_;           ///< all groups; those that are no BUNDLE have no members
};

}  // namespace sdp::exchange

#endif
