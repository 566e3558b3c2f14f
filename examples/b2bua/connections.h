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

// Libraries show none or only some of the sockets that they have: the system is asked.

/// @param ports  of this process
std::vector<Connection> connectionsTo(const std::vector<std::string>& ports);

/// @return the descriptor with which this process listens at a port of UDP; -1 when it does not
int datagramSocketOf(const std::string& port);

}  // namespace b2bua

#endif
