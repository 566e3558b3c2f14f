#include "connections.h"

#include <netdb.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>

namespace b2bua {

namespace {

/// @param which  getsockname or getpeername
std::optional<Endpoint> endpointOf(int descriptor, int (*which)(int, sockaddr*, socklen_t*)) {
  sockaddr_storage address{};
  socklen_t length = sizeof address;
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  char host[NI_MAXHOST] = "";
  char port[NI_MAXSERV] = "";
  if (which(descriptor, any, &length) != 0 || (any->sa_family != AF_INET && any->sa_family != AF_INET6) ||
      getnameinfo(any, length, host, sizeof host, port, sizeof port, NI_NUMERICHOST | NI_NUMERICSERV) != 0)
    return std::nullopt;
  return Endpoint{host, port};
}

std::vector<int> descriptors() {
  std::vector<int> all;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", error))
    all.push_back(static_cast<int>(std::strtol(entry.path().filename().c_str(), nullptr, 10)));
  return all;
}

}  // namespace

std::vector<Connection> connectionsTo(const std::vector<std::string>& ports) {
  std::vector<Connection> connections;
  for (const int descriptor : descriptors()) {
    const auto own = endpointOf(descriptor, getsockname);
    if (!own || std::ranges::find(ports, own->port) == ports.end()) continue;
    if (const auto peer = endpointOf(descriptor, getpeername))
      connections.push_back({descriptor, *own, *peer});
  }
  return connections;
}

int datagramSocketOf(const std::string& port) {
  for (const int descriptor : descriptors()) {
    int type = 0;
    socklen_t length = sizeof type;
    if (getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &length) != 0 || type != SOCK_DGRAM) continue;
    if (const auto own = endpointOf(descriptor, getsockname); own && own->port == port) return descriptor;
  }
  return -1;
}

}  // namespace b2bua
