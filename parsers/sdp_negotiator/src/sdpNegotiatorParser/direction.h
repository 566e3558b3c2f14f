#ifndef SDP_DIRECTION_H
#define SDP_DIRECTION_H

#include <string_view>

#include "sdpDataDefinitions.h"

namespace sdpneg {

/// Characters of every direction's name.
inline constexpr std::size_t directionLength = 8;

/// @return the direction of that name (RFC 4566 6), or of "confrnce"; CONNECTION_MODE_NONE for another name
inline eConnectionMode directionOf(std::string_view name) {
  if (name.size() != directionLength) return CONNECTION_MODE_NONE;
  if (name == "sendonly") return CONNECTION_MODE_SENDONLY;
  if (name == "recvonly") return CONNECTION_MODE_RECVONLY;
  if (name == "sendrecv") return CONNECTION_MODE_SENDRECV;
  if (name == "inactive") return CONNECTION_MODE_INACTIVE;
  return name == "confrnce" ? CONNECTION_MODE_CONFRNCE : CONNECTION_MODE_NONE;
}

/// Whether a text begins with the direction of a medium; "confrnce" is none.
inline bool startsWithDirection(std::string_view text) {
  const eConnectionMode mode = directionOf(text.substr(0, directionLength));
  return mode != CONNECTION_MODE_NONE && mode != CONNECTION_MODE_CONFRNCE;
}

/// Tells names that are no direction from the others by their beginning.
inline bool mayBeDirection(const char* name) {
  return name[0] != '\0' && (name[1] == 'e' || name[1] == 'n' || name[1] == 'o');
}

/// The first direction that is given.
inline unsigned char firstGiven(unsigned char direction, unsigned char otherwise) {
  return direction != CONNECTION_MODE_NONE ? direction : otherwise;
}

}  // namespace sdpneg

#endif
