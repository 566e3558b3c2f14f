#include "stateStore.h"

#include <hiredis/hiredis.h>
#include <netdb.h>
#include <poll.h>

#include <map>
#include <stdexcept>
#include <utility>

namespace b2bua {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kLongestReply{
    200};                                      ///< to all that is asked at once, the connecting included
constexpr unsigned long kMostPerSecond = 500;  ///< ms that the engine waits for replies
constexpr std::chrono::seconds kBetweenAttempts{1};
constexpr int kMostElements = 256;         ///< of a reply; a call has fewer than a hundred
constexpr const char* kKeepFor = "86400";  ///< seconds; what nobody ends goes by itself

/// Requests that the former process may have sent since it kept the call.
constexpr unsigned int kCseqGap = 100;

using Fields = std::map<std::string, std::string>;

std::string keyOf(const std::string& id) { return "b2bua:call:" + id; }

std::string packed(const Body& body) {
  unsigned char* bytes = nullptr;
  unsigned int size = 0;
  if (body.compressObject(&bytes, size) != 0) return "";
  const std::unique_ptr<unsigned char[]> owner(bytes);
  return {reinterpret_cast<const char*>(bytes), size};
}

bool unpack(const std::string& bytes, Body& body) {
  return body.uncompressObject(reinterpret_cast<const unsigned char*>(bytes.data()),
                               static_cast<unsigned int>(bytes.size())) == 0;
}

void addFields(const Leg& leg, const std::string& prefix, Fields& fields) {
  const sip_route_t* routes = nullptr;
  const sip_contact_t* contact = nullptr;
  nta_leg_get_route(leg.dialog.get(), &routes, &contact);
  fields[prefix + "call-id"] = leg.callId;
  fields[prefix + "local"] = leg.local;
  fields[prefix + "remote"] = leg.remote;
  fields[prefix + "contact"] = headerText(contact);
  fields[prefix + "routes"] = headerText(routes);
  fields[prefix + "cseq"] = std::to_string(leg.cseq + kCseqGap);
  fields[prefix + "answered"] = leg.answered ? "1" : "";
  fields[prefix + "sent"] = packed(leg.sent);
  fields[prefix + "received"] = packed(leg.received);
}

bool readFields(Fields& fields, const std::string& prefix, Leg& leg) {
  leg.callId = fields[prefix + "call-id"];
  leg.local = fields[prefix + "local"];
  leg.remote = fields[prefix + "remote"];
  leg.contact = fields[prefix + "contact"];
  leg.routes = fields[prefix + "routes"];
  leg.cseq = static_cast<unsigned int>(std::strtoul(fields[prefix + "cseq"].c_str(), nullptr, 10));
  leg.answered = !fields[prefix + "answered"].empty();
  return unpack(fields[prefix + "sent"], leg.sent) && unpack(fields[prefix + "received"], leg.received);
}

/// Waits for the server's socket.
bool isReady(const redisContext& context, short event, Clock::time_point deadline) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
  if (left.count() <= 0) return false;
  pollfd socket{context.fd, event, 0};
  return poll(&socket, 1, static_cast<int>(left.count())) == 1;
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
std::string resolved(const std::string& host) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0)
    throw std::runtime_error("no such host: " + host);
  const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(found, freeaddrinfo);
  char text[NI_MAXHOST] = "";
  getnameinfo(found->ai_addr, found->ai_addrlen, text, sizeof text, nullptr, 0, NI_NUMERICHOST);
  return text;
}

}  // namespace

StateStore::StateStore(const std::string& address) : context_(nullptr, redisFree) {
  if (address.empty()) return;
  const std::string scheme = "redis://";
  const std::size_t colon = address.rfind(':');
  if (!address.starts_with(scheme) || colon < scheme.size()) {
    throw std::runtime_error("no redis://HOST:PORT: " + address);
  }
  host_ = resolved(address.substr(scheme.size(), colon - scheme.size()));
  port_ = static_cast<int>(std::strtol(address.c_str() + colon + 1, nullptr, 10));
  if (!run({{"PING"}})) throw std::runtime_error("no Redis server at " + address);
}

bool StateStore::connect(Clock::time_point deadline) {
  if (context_ && context_->err == 0) return true;
  context_.reset(redisConnectNonBlock(host_.c_str(), port_));
  if (!context_ || context_->err != 0) return false;
  limitArrays(*context_->reader);
  return isReady(*context_, POLLOUT, deadline);
}

/// However slowly the server answers, there is one deadline for all that is asked; then its connection is given up,
/// since a late reply would be taken for that to the next command.
bool StateStore::run(const std::vector<Command>& commands, std::vector<std::string>* texts) {
  const Clock::time_point start = Clock::now();
  if (start < nextAttempt_ || milliseconds_.sum() >= kMostPerSecond) return false;
  const bool done = exchange(commands, texts, start + kLongestReply);
  const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
  milliseconds_.add(static_cast<unsigned long>(waited.count()));
  if (done) return true;
  context_.reset();
  nextAttempt_ = Clock::now() + kBetweenAttempts;
  return false;
}

bool StateStore::exchange(const std::vector<Command>& commands, std::vector<std::string>* texts,
                          Clock::time_point deadline) {
  if (!connect(deadline)) return false;
  for (const Command& command : commands) {
    std::vector<const char*> words;
    std::vector<std::size_t> sizes;
    for (const std::string& word : command) {
      words.push_back(word.data());
      sizes.push_back(word.size());
    }
    redisAppendCommandArgv(context_.get(), static_cast<int>(words.size()), words.data(), sizes.data());
  }
  if (!flush(deadline)) return false;
  for (std::size_t i = 0; i < commands.size(); ++i) {
    if (!takeReply(texts, deadline)) return false;
  }
  return true;
}

bool StateStore::flush(Clock::time_point deadline) {
  for (int done = 0; done == 0;) {
    if (!isReady(*context_, POLLOUT, deadline) || redisBufferWrite(context_.get(), &done) != REDIS_OK)
      return false;
  }
  return true;
}

bool StateStore::takeReply(std::vector<std::string>* texts, Clock::time_point deadline) {
  void* taken = nullptr;
  while (redisGetReplyFromReader(context_.get(), &taken) == REDIS_OK && taken == nullptr) {
    if (!isReady(*context_, POLLIN, deadline) || redisBufferRead(context_.get()) != REDIS_OK) return false;
  }
  const std::unique_ptr<void, void (*)(void*)> owner(taken, freeReplyObject);
  const auto* const reply = static_cast<const redisReply*>(taken);
  if (reply == nullptr || reply->type == REDIS_REPLY_ERROR) return false;
  for (std::size_t i = 0; texts != nullptr && reply->type == REDIS_REPLY_ARRAY && i < reply->elements; ++i) {
    const redisReply& element = *reply->element[i];
    texts->emplace_back(element.str != nullptr ? element.str : "", element.str != nullptr ? element.len : 0);
  }
  return true;
}

bool StateStore::save(const Call& call) {
  if (!isUsed()) return true;
  Command command = {"HSET", keyOf(call.id)};
  Fields fields;
  addFields(call.legs[kCaller], "caller.", fields);
  addFields(call.legs[kTarget], "target.", fields);
  for (const auto& [name, value] : fields) {
    command.push_back(name);
    command.push_back(value);
  }
  return run({command, {"EXPIRE", keyOf(call.id), kKeepFor}});
}

bool StateStore::remove(const std::string& id) { return !isUsed() || run({{"DEL", keyOf(id)}}); }

bool StateStore::load(Call& call) {
  std::vector<std::string> texts;
  if (!isUsed() || !run({{"HGETALL", keyOf(call.id)}}, &texts)) return false;
  Fields fields;
  for (std::size_t i = 0; i + 1 < texts.size(); i += 2) fields[texts[i]] = texts[i + 1];
  return readFields(fields, "caller.", call.legs[kCaller]) &&
         readFields(fields, "target.", call.legs[kTarget]);
}

}  // namespace b2bua
