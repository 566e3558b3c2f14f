#ifndef SDP_OFFER_ANSWER_JUDGE_CRYPTOS_H
#define SDP_OFFER_ANSWER_JUDGE_CRYPTOS_H

// The crypto attributes of an offer (RFC 4568), found by their tags.

#include <cstdint>
#include <string_view>
#include <vector>

#include "bundles.h"
#include "sdpDocument.h"

namespace sdp::exchange {

/// `TAG SUITE KEYS`, without the keys.
struct TagAndSuite {
  std::string_view tag;
  std::string_view suite;
};

TagAndSuite readCrypto(const Attribute& attribute);

/// Those of one section.
class Cryptos {
 public:
  Cryptos() = default;
  /// Takes those that have tag, suite and keys.
  explicit Cryptos(Range<AttributeCursor> attributes);

  bool hasTag(std::string_view tag) const;
  bool has(const TagAndSuite& crypto) const;

 private:
  std::vector<TagAndSuite> cryptos_;
};

/// Those of an offer.
class OfferedCryptos {
 public:
  OfferedCryptos(const Document& offer, const Bundles& bundles);
  /// Those that hold for a section.
  Cryptos own(std::uint32_t section) const;
  /// Those that it has of its group; null where it has its own, or none.
  const Cryptos* ofGroup(std::uint32_t section) const;

 private:
  const Bundles* bundles_;
  std::vector<Cryptos> groups_;  ///< read once, since many sections may have them
};

}  // namespace sdp::exchange

#endif
