#ifndef B2BUA_NAMED_REQUESTS_H
#define B2BUA_NAMED_REQUESTS_H

#include <string>

#include "mediaPolicy.h"
#include "side.h"

namespace b2bua {

// Requests of the document layer by their names, as the policy has them for each party and direction.

enum class Way { from, to };

/// @return the key of a list of requests of the policy: "offer-to-target"
std::string keyOf(std::size_t list);

/// Reads the requests of a list. Throws WordError for one that no body could be given to.
std::vector<NamedRequest> readRequests(std::size_t list, const std::vector<std::string>& lines);

/// Does what the policy asks for with the bodies from a party, or to it: first what it asks for with all of them, then
/// what it asks for with offers or answers alone. All of it is done, or nothing.
/// @return why the body cannot be used; empty when it can
std::string applyRequests(const Policy& policy, Way way, Side party, bool isAnswer, Body& body);

/// @return whether there are requests for bodies between the parties, in either direction
bool hasRequests(const Policy& policy);

}  // namespace b2bua

#endif
