#include "rawCaller.h"

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

int statusOf(const std::string& response) {
  return response.starts_with("SIP/2.0 ") ? std::stoi(response.substr(8, 3)) : 0;
}

std::string tagOf(const std::string& response) {
  const std::size_t to = response.find("\r\nTo:");
  const std::size_t tag = response.find(";tag=", to);
  return to == std::string::npos || tag == std::string::npos
             ? ""
             : response.substr(tag, response.find_first_of(";\r", tag + 1) - tag);
}

}  // namespace

RawCaller::RawCaller(const std::string& engine)
    : engine_(engine), descriptor_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  const sockaddr_in to = addressOf(engine);
  sockaddr_in from{};
  socklen_t length = sizeof from;
  if (connect(descriptor_, reinterpret_cast<const sockaddr*>(&to), sizeof to) != 0 ||
      getsockname(descriptor_, reinterpret_cast<sockaddr*>(&from), &length) != 0) {
    throw std::runtime_error("no socket to " + engine);
  }
  local_ = "127.0.0.1:" + std::to_string(ntohs(from.sin_port));
}

RawCaller::~RawCaller() { close(descriptor_); }

std::string RawCaller::request(const std::string& method, const std::string& branch, const std::string& toTag,
                               const std::string& body) const {
  const std::string call = std::to_string(number_);
  return method + " sip:bob@" + engine_ + " SIP/2.0\r\nVia: SIP/2.0/UDP " + local_ + ";branch=z9hG4bK" +
         call + branch + "\r\nMax-Forwards: 70\r\nFrom: <sip:alice@" + local_ + ">;tag=" + call +
         "\r\nTo: <sip:bob@" + engine_ + ">" + toTag + "\r\nCall-ID: " + call + "@" + local_ +
         "\r\nCSeq: " + std::to_string(method == "BYE" ? 2 : 1) + " " + method + "\r\nContact: <sip:alice@" +
         local_ + ">\r\n" + (body.empty() ? "" : "Content-Type: application/sdp\r\n") +
         "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

void RawCaller::send(const std::string& message) const {
  if (::send(descriptor_, message.data(), message.size(), 0) < 0) throw std::runtime_error("send");
}

std::string RawCaller::finalResponse(const std::string& method, milliseconds longest) const {
  const std::string call = "\r\nCall-ID: " + std::to_string(number_) + "@";
  const auto end = Clock::now() + longest;
  std::string buffer(65'536, '\0');
  for (auto now = Clock::now(); now < end; now = Clock::now()) {
    pollfd waiting{descriptor_, POLLIN, 0};
    const auto left = std::chrono::ceil<milliseconds>(end - now);
    if (poll(&waiting, 1, static_cast<int>(left.count())) <= 0) continue;
    const ssize_t size = recv(descriptor_, buffer.data(), buffer.size(), 0);
    if (size <= 0) return "";
    const std::string message = buffer.substr(0, static_cast<std::size_t>(size));
    if (statusOf(message) >= 200 && message.find(call) != std::string::npos &&
        message.find(" " + method + "\r\n") != std::string::npos) {
      return message;
    }
  }
  return "";
}

int RawCaller::call(const std::string& body, milliseconds longest) {
  ++number_;
  send(request("INVITE", "INVITE", "", body));
  const std::string response = finalResponse("INVITE", longest);
  const int status = statusOf(response);
  if (status == 0) return 0;
  const std::string tag = tagOf(response);
  // The ACK to a refusal belongs to the INVITE, the one to a 200 does not.
  send(request("ACK", status < 300 ? "ACK" : "INVITE", tag, ""));
  if (status >= 300) return status;
  send(request("BYE", "BYE", tag, ""));
  return statusOf(finalResponse("BYE", longest)) == 200 ? status : -1;
}
