// The crypto attributes of an offer.

#include "judge/cryptos.h"

#include <algorithm>
#include <tuple>

#include "parameters.h"

namespace sdp::exchange {
namespace {

bool isLess(const TagAndSuite& a, const TagAndSuite& b) {
  return std::tie(a.tag, a.suite) < std::tie(b.tag, b.suite);
}

}  // namespace

TagAndSuite readCrypto(const Attribute& attribute) {
  const Fields fields = attribute.fields();
  Fields::Iterator field = fields.begin();
  const std::string_view tag = *field;
  return {tag, *++field};
}

Cryptos::Cryptos(Range<AttributeCursor> attributes) {
  for (const Attribute& attribute : attributes) {
    const TagAndSuite crypto = readCrypto(attribute);
    if (readNumber(crypto.tag) && !attribute.fields()[2].empty()) cryptos_.push_back(crypto);
  }
  std::sort(cryptos_.begin(), cryptos_.end(), isLess);
}

bool Cryptos::hasTag(std::string_view tag) const {
  const auto first = std::lower_bound(cryptos_.begin(), cryptos_.end(), TagAndSuite{tag, {}}, isLess);
  return first != cryptos_.end() && first->tag == tag;
}

bool Cryptos::has(const TagAndSuite& crypto) const {
  return std::binary_search(cryptos_.begin(), cryptos_.end(), crypto, isLess);
}

OfferedCryptos::OfferedCryptos(const Document& offer, const Bundles& bundles)
    : bundles_(&bundles), groups_(bundles.groupCount()) {
  std::vector<bool> isRead(groups_.size());
  for (const Section& section : offer.sections()) {
    const std::uint32_t index = section.index();
    if (bundles.placeOf(index, Credential::crypto) != Place::group) continue;
    const std::uint32_t group = *bundles.groupOf(index);
    if (!isRead[group]) groups_[group] = Cryptos(bundles.attributesOf(index, Credential::crypto));
    isRead[group] = true;
  }
}

Cryptos OfferedCryptos::own(std::uint32_t section) const {
  return Cryptos(bundles_->attributesOf(section, Credential::crypto));
}

const Cryptos* OfferedCryptos::ofGroup(std::uint32_t section) const {
  if (bundles_->placeOf(section, Credential::crypto) != Place::group) return nullptr;
  return &groups_[*bundles_->groupOf(section)];
}

}  // namespace sdp::exchange
