#include "streamParty.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace {

using Clock = std::chrono::steady_clock;

sockaddr_in loopback(const std::string& port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<in_port_t>(std::stoi(port)));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

void limitWaiting(int descriptor) {
  const timeval limit{5, 0};
  setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

std::size_t contentLength(const std::string& head) {
  const std::size_t at = head.find("\r\nContent-Length: ");
  return at == std::string::npos ? 0 : std::stoul(head.substr(at + 18));
}

}  // namespace

StreamParty::StreamParty(const std::string& folder)
    : context_(nullptr, SSL_CTX_free),
      tls_(nullptr, SSL_free),
      listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  signal(SIGPIPE, SIG_IGN);  // The engine may close a connection while it is written to.
  sockaddr_in own = loopback("0");
  socklen_t length = sizeof own;
  if (bind(listener_, reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0 ||
      listen(listener_, 8) != 0 || getsockname(listener_, reinterpret_cast<sockaddr*>(&own), &length) != 0)
    throw std::runtime_error("no socket");
  port_ = std::to_string(ntohs(own.sin_port));
  if (folder.empty()) return;
  context_.reset(SSL_CTX_new(TLS_method()));
  const std::string own_pem = folder + "/agent.pem";
  if (SSL_CTX_use_certificate_chain_file(context_.get(), own_pem.c_str()) != 1 ||
      SSL_CTX_use_PrivateKey_file(context_.get(), own_pem.c_str(), SSL_FILETYPE_PEM) != 1 ||
      SSL_CTX_load_verify_locations(context_.get(), (folder + "/cafile.pem").c_str(), nullptr) != 1)
    throw std::runtime_error("no certificate in " + folder);
}

StreamParty::~StreamParty() {
  tls_.reset();
  if (descriptor_ >= 0) close(descriptor_);
  close(listener_);
}

bool StreamParty::begin(int descriptor, bool client) {
  tls_.reset();
  received_.clear();
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = descriptor;
  limitWaiting(descriptor);
  if (!context_) return true;
  tls_.reset(SSL_new(context_.get()));
  SSL_set_fd(tls_.get(), descriptor);
  // The engine proves who it is to those who ask.
  if (client) SSL_set_verify(tls_.get(), SSL_VERIFY_PEER, nullptr);
  return (client ? SSL_connect(tls_.get()) : SSL_accept(tls_.get())) == 1;
}

bool StreamParty::connect(const std::string& port, const std::string& from) {
  const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = loopback(port);
  sockaddr_in own = loopback("0");
  inet_pton(AF_INET, from.c_str(), &own.sin_addr);
  if (bind(descriptor, reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0 ||
      ::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    close(descriptor);
    return false;
  }
  return begin(descriptor, true);
}

bool StreamParty::accept(milliseconds longest) {
  pollfd waiting{listener_, POLLIN, 0};
  if (poll(&waiting, 1, static_cast<int>(longest.count())) != 1) return false;
  const int descriptor = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  return descriptor >= 0 && begin(descriptor, false);
}

void StreamParty::send(const std::string& message) const {
  const auto size = tls_ ? SSL_write(tls_.get(), message.data(), static_cast<int>(message.size()))
                         : ::send(descriptor_, message.data(), message.size(), MSG_NOSIGNAL);
  if (static_cast<std::size_t>(size) != message.size()) throw std::runtime_error("not sent");
}

bool StreamParty::isReadable(milliseconds longest) const {
  pollfd waiting{descriptor_, POLLIN, 0};
  return (tls_ && SSL_pending(tls_.get()) > 0) || poll(&waiting, 1, static_cast<int>(longest.count())) == 1;
}

bool StreamParty::readMore(milliseconds longest) {
  if (!isReadable(longest)) return false;
  std::string buffer(16'384, '\0');
  const auto size = tls_ ? SSL_read(tls_.get(), buffer.data(), static_cast<int>(buffer.size()))
                         : recv(descriptor_, buffer.data(), buffer.size(), 0);
  if (size <= 0) return false;
  received_.append(buffer, 0, static_cast<std::size_t>(size));
  return true;
}

std::string StreamParty::receive(const std::string& start, milliseconds longest) {
  const auto end = Clock::now() + longest;
  while (Clock::now() < end) {
    const std::size_t head = received_.find("\r\n\r\n");
    const std::size_t size =
        head == std::string::npos ? 0 : head + 4 + contentLength(received_.substr(0, head + 2));
    if (head == std::string::npos || received_.size() < size) {
      if (!readMore(std::chrono::ceil<milliseconds>(end - Clock::now()))) return "";
      continue;
    }
    const std::string message = received_.substr(0, size);
    received_.erase(0, size);
    if (message.starts_with(start)) return message;
  }
  return "";
}

bool StreamParty::isClosed(milliseconds longest) {
  const auto end = Clock::now() + longest;
  while (Clock::now() < end) {
    if (!isReadable(std::chrono::ceil<milliseconds>(end - Clock::now()))) return false;
    if (!readMore(milliseconds(0))) return true;
  }
  return false;
}
