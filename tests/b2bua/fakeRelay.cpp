#include "fakeRelay.h"

#include <bencode.h>

#include <algorithm>

#include "calls.h"

namespace {

constexpr milliseconds kLook{20};
constexpr milliseconds kLongestWait{5'000};

}  // namespace

std::string okReply(const RelayRequest& request) {
  const std::string body = request.texts.contains("sdp") ? request.texts.at("sdp") : "";
  return request.cookie + " " +
         b2bua::bencodeDictionary(
             {{"result", b2bua::bencodeText("ok")},
              {"sdp", b2bua::bencodeText(replaced(body, "c=IN IP4 192.0.2.", "c=IN IP4 198.51.100."))}});
}

FakeRelay::FakeRelay()
    : replies_([](const RelayRequest& request) { return std::vector{okReply(request)}; }),
      thread_([this] { serve(); }) {}

FakeRelay::~FakeRelay() {
  stopped_ = true;
  thread_.join();
}

void FakeRelay::answerWith(Replies replies) {
  const std::lock_guard lock(mutex_);
  replies_ = std::move(replies);
}

void FakeRelay::hold(const std::string& command) {
  const std::lock_guard lock(mutex_);
  held_ = command;
}

void FakeRelay::letGo() {
  const std::lock_guard lock(mutex_);
  held_.clear();
  for (const std::string& reply : kept_) party_.send(engine_, reply);
  kept_.clear();
}

std::vector<RelayRequest> FakeRelay::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

bool FakeRelay::waitFor(const std::string& command, std::size_t count) const {
  return waitUntil(
      [&] {
        const std::vector<RelayRequest> all = requests();
        return std::ranges::count_if(all, [&](const RelayRequest& request) {
                 return request.texts.at("command") == command;
               }) >= static_cast<std::ptrdiff_t>(count);
      },
      kLongestWait);
}

void FakeRelay::serve() {
  while (!stopped_) {
    std::string from;
    const std::string datagram = party_.receive("", "", kLook, &from);
    if (datagram.empty() || silent_) continue;
    const std::lock_guard lock(mutex_);
    engine_ = from;
    answer(datagram);
  }
}

void FakeRelay::answer(const std::string& datagram) {
  const std::size_t blank = datagram.find(' ');
  RelayRequest request{datagram.substr(0, blank), {}, datagram.substr(blank + 1)};
  request.texts = b2bua::textsOfBencode(request.bytes).value();
  const std::string& command = request.texts.at("command");
  if (command == "ping") return party_.send(engine_, request.cookie + " d6:result4:ponge");
  ++datagrams_;
  const auto isSame = [&](const RelayRequest& known) { return known.cookie == request.cookie; };
  const bool isNew = std::ranges::none_of(requests_, isSame);
  if (isNew) requests_.push_back(request);
  if (command == held_) {
    if (isNew) kept_.push_back(okReply(request));
    return;
  }
  for (const std::string& reply : replies_(request)) party_.send(engine_, reply);
}
