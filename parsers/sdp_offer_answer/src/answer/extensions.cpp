// Header extensions in answers.

#include "answer/extensions.h"

#include <algorithm>
#include <tuple>

#include "answer/direction.h"
#include "parameters.h"

namespace sdp::exchange {
namespace {

bool isLess(const Extension& a, const Extension& b) {
  return std::tie(a.uri, a.encrypted) < std::tie(b.uri, b.encrypted);
}

}  // namespace

std::optional<Extension> readExtension(const Attribute& attribute) {
  constexpr std::string_view kEncrypt = "urn:ietf:params:rtp-hdrext:encrypt";
  const Fields fields = attribute.fields();
  Fields::Iterator field = fields.begin();
  Extension extension{};
  const std::string_view number = *field;
  const std::size_t slash = std::min(number.find('/'), number.size());
  extension.number = number.substr(0, slash);
  if (slash != number.size()) extension.direction = directionOf(number.substr(slash + 1));
  extension.text = trimmed(field.rest());
  extension.uri = *++field;
  if (extension.uri.empty() || !readNumber(extension.number)) return std::nullopt;
  if (extension.uri == kEncrypt) extension.encrypted = *++field;
  return extension;
}

bool isSameExtension(const Extension& a, const Extension& b) { return !isLess(a, b) && !isLess(b, a); }

ExtensionMap::ExtensionMap(Range<AttributeCursor> attributes) {
  for (const Attribute& attribute : attributes) {
    if (const std::optional<Extension> extension = readExtension(attribute))
      extensions_.push_back(*extension);
  }
  std::stable_sort(extensions_.begin(), extensions_.end(), isLess);
}

const Extension* ExtensionMap::find(const Extension& wanted) const {
  const auto place = std::lower_bound(extensions_.begin(), extensions_.end(), wanted, isLess);
  return place != extensions_.end() && isSameExtension(*place, wanted) ? &*place : nullptr;
}

std::string answeredExtension(const Extension& offered, const Extension& local) {
  const Direction direction = answeredDirection(offered.direction.value_or(Direction::sendrecv),
                                                local.direction.value_or(Direction::sendrecv));
  std::string value(offered.number);
  if (local.direction || direction != Direction::sendrecv) value.append("/").append(textOf(direction));
  return value.append(" ").append(local.text);
}

}  // namespace sdp::exchange
