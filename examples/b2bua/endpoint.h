#ifndef B2BUA_ENDPOINT_H
#define B2BUA_ENDPOINT_H

#include <sys/socket.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace b2bua {

/// A UDP address. Only numeric hosts: an example does no DNS.
struct Endpoint {
  sockaddr_storage address{};
  socklen_t length = 0;

  /// @param host "192.0.2.1", "2001:db8::1" or "[2001:db8::1]"
  static std::optional<Endpoint> of(std::string_view host, std::string_view port);
  /// @param text "192.0.2.1:5060" or "[2001:db8::1]:5060"
  static std::optional<Endpoint> parse(std::string_view text);
  std::pair<std::string, std::string> hostAndPort() const;  ///< without brackets
  std::string text() const;                                 ///< as `parse` takes it
};

/// A bound UDP socket that never blocks.
class UdpSocket {
 public:
  explicit UdpSocket(const Endpoint& listen);  ///< throws std::runtime_error
  ~UdpSocket();
  UdpSocket(const UdpSocket&) = delete;
  UdpSocket& operator=(const UdpSocket&) = delete;

  int descriptor() const { return descriptor_; }
  const Endpoint& local() const { return local_; }  ///< with the real port
  void send(const Endpoint& to, std::string_view text) const;
  /// @return the next datagram, none when there is none; valid until the next call
  std::optional<std::string_view> receive(Endpoint& from);

 private:
  int descriptor_;
  Endpoint local_;
  std::string buffer_;
};

}  // namespace b2bua

#endif
