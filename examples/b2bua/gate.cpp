#include "gate.h"

#include <netdb.h>
#include <unistd.h>

#include <string_view>
#include <utility>

namespace b2bua {

namespace {

constexpr int kMostAtOnce = 2'000;  ///< timers want their turn
constexpr unsigned long kMostMalformed =
    100;  ///< of a source in a second; then it is not heard for the rest of it
constexpr std::size_t kMostHeaderLines = 512;
constexpr std::size_t kLongestDatagram = 65'536;

/// @return the address of a UDP socket as HOST:PORT; empty for other descriptors
std::string addressOf(int descriptor) {
  int type = 0;
  socklen_t length = sizeof type;
  if (getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &length) != 0 || type != SOCK_DGRAM) return "";
  sockaddr_storage address{};
  length = sizeof address;
  char host[NI_MAXHOST] = "";
  char port[NI_MAXSERV] = "";
  const auto* const name = reinterpret_cast<const sockaddr*>(&address);
  if (getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length) != 0 ||
      getnameinfo(name, length, host, sizeof host, port, sizeof port, NI_NUMERICHOST | NI_NUMERICSERV) != 0)
    return "";
  const bool six = address.ss_family == AF_INET6;
  return (six ? "[" : "") + std::string(host) + (six ? "]:" : ":") + port;
}

}  // namespace

/// The stack does not tell its descriptor.
void Gate::open(const std::string& address) {
  const auto most = static_cast<int>(sysconf(_SC_OPEN_MAX));
  for (socket_ = 0; socket_ < most; ++socket_) {
    if (addressOf(socket_) == address) return;
  }
  socket_ = -1;
}

bool hasTooManyHeaders(std::string_view message) {
  const auto isEnd = [&](std::size_t at) {
    return at < message.size() && std::string_view("\r\n\0", 3).find(message[at]) != std::string_view::npos;
  };
  std::size_t at = 0;
  while (isEnd(at)) ++at;  // Line ends in front of a message say nothing.
  for (std::size_t lines = 0; at < message.size(); ++at) {
    if (!isEnd(at)) continue;
    if (++lines > kMostHeaderLines) return true;
    if (message.substr(at).starts_with("\r\n")) ++at;
    if (isEnd(at + 1) && message[at + 1] != '\0') return false;
  }
  return false;
}

bool Gate::mayCome(const SourceCounts& counts) const {
  return counts.malformed <= kMostMalformed && (mostMessages_ == 0 || counts.messages <= mostMessages_);
}

unsigned long Gate::sift(const std::function<unsigned long()>& malformed) {
  const auto* const source = reinterpret_cast<const sockaddr*>(&next_);
  if (SourceCounts* const counts = isNextKnown_ ? sources_.of(*source) : nullptr;
      counts != nullptr && malformed() != malformed_)
    ++counts->malformed;
  isNextKnown_ = false;
  for (unsigned long dropped = 0;; ++dropped) {
    char first = 0;
    socklen_t length = sizeof next_;
    if ((dropped >= kMostAtOnce && !isNextTooLong()) ||
        recvfrom(socket_, &first, 1, MSG_PEEK | MSG_DONTWAIT, reinterpret_cast<sockaddr*>(&next_), &length) <
            0)
      return dropped;
    SourceCounts* const counts = sources_.of(*source);
    if (counts != nullptr) ++counts->messages;
    isNextKnown_ = (counts == nullptr || mayCome(*counts)) && !isNextTooLong();
    if (isNextKnown_) {
      if (counts != nullptr) malformed_ = malformed();
      return dropped;
    }
    recv(socket_, &first, 1, MSG_DONTWAIT);
  }
}

/// The stack needs a second for the headers of a datagram that has nothing else.
bool Gate::isNextTooLong() {
  buffer_.resize(kLongestDatagram);
  const ssize_t size = recv(socket_, buffer_.data(), buffer_.size(), MSG_PEEK | MSG_DONTWAIT);
  return size > 0 && hasTooManyHeaders(std::string_view(buffer_).substr(0, static_cast<std::size_t>(size)));
}

bool Gate::isBeyond(const sockaddr& address) {
  if (std::exchange(isNextKnown_, false)) return false;
  SourceCounts* const counts = sources_.of(address);
  if (counts == nullptr) return false;
  ++counts->messages;
  return !mayCome(*counts);
}

}  // namespace b2bua
