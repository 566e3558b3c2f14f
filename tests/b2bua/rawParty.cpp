#include "rawParty.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace {

using Clock = std::chrono::steady_clock;

sockaddr_in addressOf(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<in_port_t>(std::stoi(text.substr(colon + 1))));
  if (inet_pton(AF_INET, text.substr(0, colon).c_str(), &address.sin_addr) != 1)
    throw std::runtime_error("no address: " + text);
  return address;
}

std::string contentOf(const std::string& body, const std::string& type) {
  return (body.empty() ? "" : "Content-Type: " + type + "\r\n") +
         "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

}  // namespace

int statusOf(const std::string& message) {
  return message.starts_with("SIP/2.0 ") ? std::stoi(message.substr(8, 3)) : 0;
}

std::string headerOf(const std::string& message, const std::string& name) {
  const std::size_t line = message.find("\r\n" + name + ": ");
  if (line == std::string::npos) return "";
  const std::size_t value = line + name.size() + 4;
  return message.substr(value, message.find("\r\n", value) - value);
}

std::string toTagOf(const std::string& message) {
  const std::string to = headerOf(message, "To");
  const std::size_t tag = to.find(";tag=");
  return tag == std::string::npos ? "" : to.substr(tag, to.find(';', tag + 1) - tag);
}

RawParty::RawParty(const std::string& host)
    : host_(host), descriptor_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in own = addressOf(host + ":0");
  socklen_t length = sizeof own;
  if (bind(descriptor_, reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0 ||
      getsockname(descriptor_, reinterpret_cast<sockaddr*>(&own), &length) != 0) {
    throw std::runtime_error("no socket");
  }
  port_ = std::to_string(ntohs(own.sin_port));
}

RawParty::~RawParty() { close(descriptor_); }

void RawParty::send(const std::string& to, const std::string& message) const {
  const sockaddr_in address = addressOf(to);
  if (sendto(descriptor_, message.data(), message.size(), 0, reinterpret_cast<const sockaddr*>(&address),
             sizeof address) < 0) {
    throw std::runtime_error("sendto");
  }
}

std::string RawParty::receive(const std::string& start, const std::string& part, milliseconds longest,
                              std::string* from) const {
  const auto end = Clock::now() + longest;
  std::string buffer(65'536, '\0');
  for (auto now = Clock::now(); now < end; now = Clock::now()) {
    pollfd waiting{descriptor_, POLLIN, 0};
    const auto left = std::chrono::ceil<milliseconds>(end - now);
    if (poll(&waiting, 1, static_cast<int>(left.count())) <= 0) continue;
    sockaddr_in sender{};
    socklen_t length = sizeof sender;
    const ssize_t size =
        recvfrom(descriptor_, buffer.data(), buffer.size(), 0, reinterpret_cast<sockaddr*>(&sender), &length);
    if (size <= 0) return "";
    const std::string message = buffer.substr(0, static_cast<std::size_t>(size));
    if (from != nullptr) *from = "127.0.0.1:" + std::to_string(ntohs(sender.sin_port));
    if (message.starts_with(start) && message.find(part) != std::string::npos) return message;
  }
  return "";
}

void RawParty::request(const std::string& engine, const RawRequest& asked) const {
  const std::string call = std::to_string(asked.call);
  const std::string branch = asked.branch.empty() ? asked.method + std::to_string(asked.cseq) : asked.branch;
  const std::string own = "<sip:alice@" + address() + ">";
  const std::string from = asked.from.empty() ? own : asked.from;
  const std::string to = asked.to.empty() ? "<sip:bob@" + engine + ">" : asked.to;
  const std::string contact =
      asked.contact == "none" ? "" : "Contact: " + (asked.contact.empty() ? own : asked.contact) + "\r\n";
  send(engine, asked.method + " sip:" + asked.user + "@" + engine + " SIP/2.0\r\nVia: SIP/2.0/UDP " +
                   address() + ";branch=z9hG4bK" + call + branch + "\r\nMax-Forwards: 70\r\nFrom: " + from +
                   ";tag=" + call + "\r\nTo: " + to + asked.toTag + "\r\nCall-ID: " + call + "@" + address() +
                   "\r\nCSeq: " + std::to_string(asked.cseq) + " " + asked.method + "\r\n" + contact +
                   asked.header + contentOf(asked.body, asked.contentType));
}

std::string RawParty::ask(const std::string& engine, const RawRequest& asked, milliseconds longest) const {
  request(engine, asked);
  const std::string own = "\r\nCall-ID: " + std::to_string(asked.call) + "@" + address() + "\r\n";
  const std::string cseq = std::to_string(asked.cseq) + " " + asked.method;
  const auto end = Clock::now() + longest;
  while (Clock::now() < end) {
    const std::string response =
        receive("SIP/2.0 ", own, std::chrono::ceil<milliseconds>(end - Clock::now()));
    if (statusOf(response) >= 200 && headerOf(response, "CSeq") == cseq) return response;
  }
  return "";
}

std::string RawParty::respond(const std::string& engine, const std::string& request,
                              const std::string& status, const std::string& body) const {
  const std::string tag = toTagOf(request).empty() ? ";tag=raw" : "";
  const std::string response =
      "SIP/2.0 " + status + "\r\nVia: " + headerOf(request, "Via") +
      "\r\nFrom: " + headerOf(request, "From") + "\r\nTo: " + headerOf(request, "To") + tag +
      "\r\nCall-ID: " + headerOf(request, "Call-ID") + "\r\nCSeq: " + headerOf(request, "CSeq") +
      "\r\nContact: <sip:bob@" + address() + ">\r\n" + contentOf(body, "application/sdp");
  send(engine, response);
  return response;
}
