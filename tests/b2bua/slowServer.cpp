#include "slowServer.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>

namespace {

constexpr int kLook = 20;  ///< ms
constexpr std::chrono::milliseconds kBetweenBytes{150};

bool hasInput(int descriptor, int longest) {
  pollfd waiting{descriptor, POLLIN, 0};
  return poll(&waiting, 1, longest) == 1;
}

}  // namespace

SlowServer::SlowServer(std::string first, std::string later)
    : first_(std::move(first)),
      later_(std::move(later)),
      listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in own{};
  own.sin_family = AF_INET;
  own.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof own;
  if (bind(listener_, reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0 ||
      listen(listener_, 8) != 0 || getsockname(listener_, reinterpret_cast<sockaddr*>(&own), &length) != 0) {
    throw std::runtime_error("no socket");
  }
  port_ = std::to_string(ntohs(own.sin_port));
  thread_ = std::thread([this] { serve(); });
}

SlowServer::~SlowServer() {
  stopped_ = true;
  thread_.join();
  close(listener_);
}

void SlowServer::serve() {
  while (!stopped_) {
    if (!hasInput(listener_, kLook)) continue;
    const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    answer(connection);
    close(connection);
  }
}

void SlowServer::answer(int connection) {
  char buffer[65'536];
  while (!stopped_) {
    if (!hasInput(connection, kLook)) continue;
    if (recv(connection, buffer, sizeof buffer, 0) <= 0) return;
    const bool isFirst = ++requests_ == 1;
    const std::string& reply = isFirst ? first_ : later_;
    send(connection, reply.data(), reply.size(), MSG_NOSIGNAL);
    while (!isFirst && later_.empty() && !stopped_ && send(connection, ":", 1, MSG_NOSIGNAL) == 1)
      std::this_thread::sleep_for(kBetweenBytes);
  }
}
