#include "endpoint.h"

#include <netdb.h>
#include <netinet/in.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace b2bua {

namespace {

constexpr std::size_t kLargestDatagram = 65536;
constexpr int kReceiveBuffer = 4 * 1024 * 1024;

}  // namespace

std::optional<Endpoint> Endpoint::of(std::string_view host, std::string_view port) {
  if (host.size() > 2 && host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
  addrinfo hints{};
  hints.ai_socktype = SOCK_DGRAM;
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
  addrinfo* found = nullptr;
  if (host.empty() || port.empty() ||
      getaddrinfo(std::string(host).c_str(), std::string(port).c_str(), &hints, &found) != 0) {
    return std::nullopt;
  }
  Endpoint endpoint;
  std::memcpy(&endpoint.address, found->ai_addr, found->ai_addrlen);
  endpoint.length = found->ai_addrlen;
  freeaddrinfo(found);
  return endpoint;
}

std::optional<Endpoint> Endpoint::parse(std::string_view text) {
  const std::size_t colon = text.rfind(':');
  return colon == std::string_view::npos ? std::nullopt : of(text.substr(0, colon), text.substr(colon + 1));
}

std::pair<std::string, std::string> Endpoint::hostAndPort() const {
  char host[NI_MAXHOST] = "";
  char port[NI_MAXSERV] = "";
  getnameinfo(reinterpret_cast<const sockaddr*>(&address), length, host, sizeof host, port, sizeof port,
              NI_NUMERICHOST | NI_NUMERICSERV);
  return {host, port};
}

std::string Endpoint::text() const {
  const auto [host, port] = hostAndPort();
  return (address.ss_family == AF_INET6 ? "[" + host + "]" : host) + ":" + port;
}

UdpSocket::UdpSocket(const Endpoint& listen) : local_(listen), buffer_(kLargestDatagram, '\0') {
  descriptor_ = socket(listen.address.ss_family, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  setsockopt(descriptor_, SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer, sizeof kReceiveBuffer);
  if (bind(descriptor_, reinterpret_cast<const sockaddr*>(&listen.address), listen.length) != 0) {
    const std::string reason = std::strerror(errno);
    if (descriptor_ >= 0) close(descriptor_);
    throw std::runtime_error("cannot listen on " + listen.text() + ": " + reason);
  }
  local_.length = sizeof local_.address;
  getsockname(descriptor_, reinterpret_cast<sockaddr*>(&local_.address), &local_.length);
}

UdpSocket::~UdpSocket() { close(descriptor_); }

// What UDP cannot take is lost as any datagram may be; the transactions repeat it.
void UdpSocket::send(const Endpoint& to, std::string_view text) const {
  sendto(descriptor_, text.data(), text.size(), 0, reinterpret_cast<const sockaddr*>(&to.address), to.length);
}

std::optional<std::string_view> UdpSocket::receive(Endpoint& from) {
  from.length = sizeof from.address;
  const ssize_t size = recvfrom(descriptor_, buffer_.data(), buffer_.size(), 0,
                                reinterpret_cast<sockaddr*>(&from.address), &from.length);
  if (size < 0) return std::nullopt;
  return std::string_view(buffer_.data(), static_cast<std::size_t>(size));
}

}  // namespace b2bua
