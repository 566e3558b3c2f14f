#ifndef SDPNEG_SECRET_FINDER_H
#define SDPNEG_SECRET_FINDER_H

#include <cstddef>
#include <string_view>
#include <vector>

namespace tool {

/// A piece of a text.
struct SecretPlace {
  std::size_t begin = 0;
  std::size_t end = 0;
};

/// The secrets of a message, in their order. They are found by the names in front of them wherever these stand, whatever
/// the message claims to be: in a header, in a body or a part of one, in a message within a message, in a text that was
/// cut. What cannot be told from a secret counts as one.
std::vector<SecretPlace> findSecrets(std::string_view text);

}  // namespace tool

#endif
