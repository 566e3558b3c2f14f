#ifndef B2BUA_REDIRECTS_H
#define B2BUA_REDIRECTS_H

#include <string>
#include <vector>

#include "sip.h"
#include "transports.h"

namespace b2bua {

/// @return whether a text can be the user part of a URI between < and >
bool isUser(std::string_view user);

/// @return URIs of the contacts of a redirection that the engine can try, the preferred ones first: numeric addresses
///   and transports that it has. Of other parameters nothing is kept.
std::vector<std::string> redirectionsIn(const sip_t& response, const TransportOptions& ways);

}  // namespace b2bua

#endif
