// What a line is about, where it stands by itself, and the names of attributes.

#include <algorithm>

#include "attributeNames.h"
#include "lineReader.h"
#include "text/search.h"

namespace sdp::core {
namespace {

/// A name with the room behind it that looking it up wants.
class RoomyName {
 public:
  explicit RoomyName(std::string_view name) : length_(name.size()) {
    if (length_ <= kLongestKnownName) std::copy(name.begin(), name.end(), characters_);
  }
  void toLower() { std::transform(characters_, characters_ + kLongestKnownName, characters_, sdpneg::lower); }
  Kind kind() const { return knownAttribute(characters_, length_); }

 private:
  char characters_[kLongestKnownName + 1] = {};
  std::size_t length_;
};

}  // namespace

Kind attributeKind(std::string_view name) { return RoomyName(name).kind(); }

Kind attributeKindNoCase(std::string_view name) {
  RoomyName lower(name);
  lower.toLower();
  return lower.kind();
}

std::string_view nameOf(Kind kind) {
  const auto* const name = std::find_if(std::begin(kKnownNames), std::end(kKnownNames),
                                        [kind](const KnownName& known) { return known.kind == kind; });
  return name == std::end(kKnownNames) ? std::string_view() : name->text;
}

void classify(Line& line) { readKind(line); }

}  // namespace sdp::core
