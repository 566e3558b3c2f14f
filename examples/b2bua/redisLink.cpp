#include "redisLink.h"

#include <hiredis/hiredis.h>
#include <netdb.h>
#include <poll.h>

#include <cerrno>
#include <span>
#include <stdexcept>
#include <utility>

#include "wholeNumber.h"

namespace b2bua {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kLongestReply{200};    ///< to all that is asked at once, the connecting included
constexpr milliseconds kLongestSentinel{50};  ///< of these, so that another one can be asked
constexpr std::chrono::seconds kBetweenAttempts{1};
constexpr int kMostElements = 256;              ///< of a reply; a call has fewer than a hundred
constexpr std::size_t kLargestReply = 1 << 20;  ///< what has not been read of them yet

/// Waits for the server's socket.
bool isReady(const redisContext& context, short event, Clock::time_point deadline) {
  pollfd socket{context.fd, event, 0};
  int ready = -1;
  // A signal ends the waiting early.
  for (errno = EINTR; ready < 0 && errno == EINTR;) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    if (left.count() <= 0) return false;
    ready = poll(&socket, 1, static_cast<int>(left.count()));
  }
  return ready == 1;
}

/// The client takes room for as many elements as a reply announces, and goes through it again when it gives the reply up:
/// with a billion of them it would be busy for seconds.
void limitArrays(redisReader& reader) {
  static const redisReplyObjectFunctions own = *reader.fn;
  static redisReplyObjectFunctions limited = own;
  limited.createArray = [](const redisReadTask* task, auto count) -> void* {
    return std::cmp_less_equal(count, kMostElements) ? own.createArray(task, count) : nullptr;
  };
  reader.fn = &limited;
}

/// A name is asked for once: later it might hold the engine.
/// @param flags  AI_NUMERICHOST when a name is not to be asked for at all
/// @return the address; empty without one
std::string resolved(const std::string& host, int flags = 0) {
  addrinfo hints{};
  hints.ai_flags = flags;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0) return "";
  const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(found, freeaddrinfo);
  char text[NI_MAXHOST] = "";
  getnameinfo(found->ai_addr, found->ai_addrlen, text, sizeof text, nullptr, 0, NI_NUMERICHOST);
  return text;
}

/// @return 0 for what is none
int portOf(const std::string& text) {
  unsigned short port = 0;
  return readNumber(text, port) ? port : 0;
}

}  // namespace

RedisLink::Server RedisLink::serverOf(const std::string& endpoint) {
  const std::size_t colon = endpoint.rfind(':');
  const int port = colon == std::string::npos ? 0 : portOf(endpoint.substr(colon + 1));
  if (port == 0 || colon == 0) throw std::runtime_error("no HOST:PORT of a Redis server: " + endpoint);
  const std::string host = resolved(endpoint.substr(0, colon));
  if (host.empty()) throw std::runtime_error("no such host: " + endpoint);
  return {host, port};
}

RedisLink::RedisLink(const std::string& address) : context_(nullptr, redisFree) {
  if (address.empty()) return;
  const std::string direct = "redis://";
  const std::string bySentinels = "redis+sentinel://";
  if (address.starts_with(direct)) {
    servers_.push_back(serverOf(address.substr(direct.size())));
  } else if (const std::size_t slash = address.rfind('/');
             address.starts_with(bySentinels) && slash > bySentinels.size() && slash + 1 < address.size()) {
    primary_ = address.substr(slash + 1);
    for (std::size_t at = bySentinels.size(), end = 0; at < slash; at = end + 1) {
      end = std::min(address.find(',', at), slash);
      servers_.push_back(serverOf(address.substr(at, end - at)));
    }
  } else {
    throw std::runtime_error("no redis://HOST:PORT or redis+sentinel://HOST:PORT,.../NAME: " + address);
  }
  if (!run({{"PING"}})) throw std::runtime_error("no Redis server at " + address);
}

bool RedisLink::connect(Clock::time_point deadline) {
  if (context_ && context_->err == 0) return true;
  bool connected = primary_.empty() && open(servers_.front(), deadline);
  for (std::size_t i = 0; !connected && !primary_.empty() && i < servers_.size(); ++i) {
    const std::size_t asked = (firstAsked_ + i) % servers_.size();
    connected =
        connectToPrimary(servers_[asked], std::min(deadline, Clock::now() + kLongestSentinel), deadline);
    if (connected) firstAsked_ = asked;
  }
  if (connected) ++connections_;
  return connected;
}

/// A Sentinel may not know yet that another one is the primary now, so that one is asked what it is.
bool RedisLink::connectToPrimary(const Server& sentinel, Clock::time_point limit,
                                 Clock::time_point deadline) {
  std::vector<Reply> replies;
  const Command question = {"SENTINEL", "get-master-addr-by-name", primary_};
  if (!open(sentinel, limit) || !exchange({question}, &replies, limit)) return false;
  const Reply& address = replies.front();
  if (address.size() != 2) return false;
  const Server primary = {resolved(address[0], AI_NUMERICHOST), portOf(address[1])};
  return !primary.host.empty() && primary.port != 0 && open(primary, deadline) &&
         exchange({{"ROLE"}}, &replies, deadline) && !replies.back().empty() &&
         replies.back().front() == "master";
}

bool RedisLink::open(const Server& server, Clock::time_point deadline) {
  context_.reset(redisConnectNonBlock(server.host.c_str(), server.port));
  unread_ = 0;
  if (!context_ || context_->err != 0) return false;
  limitArrays(*context_->reader);
  return isReady(*context_, POLLOUT, deadline);
}

/// However slowly the server answers, there is one deadline for all that is asked; then its connection is given up,
/// since a late reply would be taken for that to the next command.
bool RedisLink::run(const std::vector<Command>& commands, std::vector<Reply>* replies) {
  if (!isAskable()) return false;
  const Clock::time_point start = Clock::now();
  const Clock::time_point deadline = start + kLongestReply;
  const bool done = connect(deadline) && exchange(commands, replies, deadline);
  const auto waited = std::chrono::duration_cast<milliseconds>(Clock::now() - start);
  milliseconds_.add(static_cast<unsigned long>(waited.count()));
  if (done) return true;
  context_.reset();
  nextAttempt_ = Clock::now() + kBetweenAttempts;
  return false;
}

bool RedisLink::post(const std::vector<Command>& commands) {
  if (!context_ || context_->err != 0) return false;
  append(commands);
  int done = 0;
  // What does not fit into the socket goes with what is asked next.
  return redisBufferWrite(context_.get(), &done) == REDIS_OK;
}

void RedisLink::append(const std::vector<Command>& commands) {
  unread_ += commands.size();
  for (const Command& command : commands) {
    std::vector<const char*> words;
    std::vector<std::size_t> sizes;
    for (const std::string& word : command) {
      words.push_back(word.data());
      sizes.push_back(word.size());
    }
    redisAppendCommandArgv(context_.get(), static_cast<int>(words.size()), words.data(), sizes.data());
  }
}

bool RedisLink::exchange(const std::vector<Command>& commands, std::vector<Reply>* replies,
                         Clock::time_point deadline) {
  append(commands);
  if (!flush(deadline)) return false;
  for (; unread_ > 0; --unread_) {
    if (!takeReply(unread_ > commands.size() ? nullptr : replies, deadline)) return false;
  }
  return true;
}

bool RedisLink::flush(Clock::time_point deadline) {
  for (int done = 0; done == 0;) {
    if (!isReady(*context_, POLLOUT, deadline) || redisBufferWrite(context_.get(), &done) != REDIS_OK)
      return false;
  }
  return true;
}

bool RedisLink::takeReply(std::vector<Reply>* replies, Clock::time_point deadline) {
  void* read = nullptr;
  while (redisGetReplyFromReader(context_.get(), &read) == REDIS_OK && read == nullptr) {
    if (context_->reader->len > kLargestReply || !isReady(*context_, POLLIN, deadline) ||
        redisBufferRead(context_.get()) != REDIS_OK) {
      return false;
    }
  }
  const std::unique_ptr<void, void (*)(void*)> owner(read, freeReplyObject);
  const auto* const reply = static_cast<const redisReply*>(read);
  if (reply == nullptr || reply->type == REDIS_REPLY_ERROR) return false;
  if (replies == nullptr) return true;
  std::span<const redisReply* const> texts(reply->element, reply->elements);
  if (reply->type == REDIS_REPLY_STRING) texts = {&reply, 1};
  Reply& taken = replies->emplace_back();
  for (const redisReply* const text : texts) taken.emplace_back(std::string_view(text->str, text->len));
  return true;
}

}  // namespace b2bua
