// Header extensions of RTP.

#include "judge/extmaps.h"

#include <algorithm>
#include <tuple>

#include "parameters.h"

namespace sdp::exchange {
namespace {

constexpr std::uint64_t kFirstOfAny = 4096;
constexpr std::string_view kEncrypt = "urn:ietf:params:rtp-hdrext:encrypt";

bool isLess(const Extmap& a, const Extmap& b) {
  return std::tie(a.uri, a.encrypted, a.number) < std::tie(b.uri, b.encrypted, b.number);
}

}  // namespace

std::optional<Extmap> readExtmap(const Attribute& attribute) {
  const Fields fields = attribute.fields();
  Fields::Iterator field = fields.begin();
  std::string_view number = (*field).substr(0, (*field).find('/'));
  const std::optional<std::uint64_t> value = readNumber(number);
  Extmap extmap;
  extmap.uri = *++field;
  if (!value || extmap.uri.empty()) return std::nullopt;
  if (extmap.uri == kEncrypt) extmap.encrypted = *++field;
  while (number.size() > 1 && number.front() == '0') number.remove_prefix(1);
  if (*value < kFirstOfAny) extmap.number = number;
  return extmap;
}

void Extmaps::add(Range<AttributeCursor> attributes) {
  for (const Attribute& attribute : attributes) {
    if (const std::optional<Extmap> extmap = readExtmap(attribute)) extmaps_.push_back(*extmap);
  }
}

void Extmaps::sort() { std::sort(extmaps_.begin(), extmaps_.end(), isLess); }

bool Extmaps::has(const Extmap& extmap) const {
  // The empty number is the least.
  const auto first =
      std::lower_bound(extmaps_.begin(), extmaps_.end(), Extmap{extmap.uri, extmap.encrypted, {}}, isLess);
  return first != extmaps_.end() && first->uri == extmap.uri && first->encrypted == extmap.encrypted;
}

bool Extmaps::hasNumber(const Extmap& extmap) const {
  const auto find = [this](const Extmap& wanted) {
    return std::binary_search(extmaps_.begin(), extmaps_.end(), wanted, isLess);
  };
  return find(extmap) || find(Extmap{extmap.uri, extmap.encrypted, {}});
}

}  // namespace sdp::exchange
