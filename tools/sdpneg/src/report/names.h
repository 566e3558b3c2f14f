#ifndef SDPNEG_NAMES_H
#define SDPNEG_NAMES_H

#include <map>
#include <string>
#include <string_view>

#include "captures/endpoint.h"

namespace tool {

/// What the user calls participants.
struct Names {
  std::map<std::string, std::string, std::less<>> byAddress;  ///< "192.0.2.1" or "192.0.2.1:5060"

  /// The name of a participant, by its text, else by its address; empty where it has none.
  std::string_view of(const Endpoint& participant) const;
};

/// Takes "192.0.2.1=sbc" or "127.0.0.1:5060=engine".
/// @return false where that is no address and name
bool addName(Names& names, std::string_view assignment);

/// A participant's name, else its address; printable.
std::string labelOf(const Names& names, const Endpoint& participant);

}  // namespace tool

#endif
