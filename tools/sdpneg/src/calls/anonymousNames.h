#ifndef SDPNEG_ANONYMOUS_NAMES_H
#define SDPNEG_ANONYMOUS_NAMES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "calls/keyedHash.h"

// Names of people, hosts and things for others.

namespace tool {

/// Gives each name another one, numbered in the order in which they come. No name is kept, only its hash, so long ones
/// take no more memory than short ones.
class AnonymousNames {
 public:
  explicit AnonymousNames(const HashKey& key) : key_(key) {}

  /// "name1" for "alice", "Name1" for "Alice" and "NAME1" for "ALICE". What is written in another mix is another name.
  std::string word(std::string_view word);
  /// "name2.domain1.example" for "pbx.example.org". Words of the protocol stay in front of the domain, and reserved
  /// domains such as "local" and "invalid" behind it.
  /// @param host no address; letters count as small ones
  std::string host(std::string_view host);
  /// A UUID by its number: "00000000-0000-4000-8000-000000000001".
  std::string uuid(std::string_view uuid);

  /// Notes that the words of a text are somebody's name, but those of the protocol, numbers, and what is too short to be
  /// searched.
  void learn(std::string_view name);
  bool isKnown(std::string_view word) const;
  bool isKnownHost(std::string_view host) const;
  /// How many names are known.
  std::size_t size() const { return known_.size() + hosts_.size(); }

 private:
  using Numbers = std::unordered_map<std::uint64_t, std::uint32_t>;
  /// The number of a text among those of its kind.
  static std::uint32_t numberOf(Numbers& numbers, std::uint64_t hash);
  std::string labels(std::string_view labels);

  HashKey key_;
  Numbers words_;
  Numbers domains_;
  Numbers uuids_;
  std::unordered_set<std::uint64_t> known_;
  std::unordered_set<std::uint64_t> hosts_;
};

/// Letters and digits of ASCII, and all that is none of ASCII.
bool isWordCharacter(char c);
/// Whether a text begins with a UUID and nothing goes on behind it.
bool beginsWithUuid(std::string_view text);
/// With small letters.
std::string lowered(std::string_view text);

}  // namespace tool

#endif
