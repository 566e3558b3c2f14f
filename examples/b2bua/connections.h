#ifndef B2BUA_CONNECTIONS_H
#define B2BUA_CONNECTIONS_H

#include <string>
#include <vector>

namespace b2bua {

/// An address as text.
struct Endpoint {
  std::string host;
  std::string port;
};

/// A TCP connection that somebody has made to this process.
struct Connection {
  int descriptor;
  Endpoint own;
  Endpoint peer;
};

/// Those that libraries have, which show only some of them, or none: the system is asked.
/// @param ports  of this process
std::vector<Connection> connectionsTo(const std::vector<std::string>& ports);

}  // namespace b2bua

#endif
