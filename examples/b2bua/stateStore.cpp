#include "stateStore.h"

#include <hiredis/hiredis.h>

#include <map>
#include <sstream>
#include <stdexcept>

namespace b2bua {

namespace {

constexpr timeval kTimeout{0, 200'000};
constexpr std::chrono::seconds kBetweenAttempts{1};
constexpr const char* kKeepFor = "86400";  ///< seconds; what nobody ends goes by itself

/// Requests that the former process may have sent since it kept the call.
constexpr unsigned int kCseqGap = 100;

using Fields = std::map<std::string, std::string>;

std::string keyOf(const std::string& id) { return "b2bua:call:" + id; }

std::string packed(const cSdpNegotiator& object) {
  unsigned char* bytes = nullptr;
  unsigned int size = 0;
  if (object.compressObject(&bytes, size) != 0) return "";
  const std::unique_ptr<unsigned char[]> owner(bytes);
  return {reinterpret_cast<const char*>(bytes), size};
}

bool unpack(const std::string& bytes, cSdpNegotiator& object) {
  return object.uncompressObject(reinterpret_cast<const unsigned char*>(bytes.data()),
                                 static_cast<unsigned int>(bytes.size())) == 0;
}

/// The members that are texts, under the names of their fields.
constexpr std::pair<const char*, std::string Leg::*> kTexts[] = {
    {"call-id", &Leg::callId},       {"local", &Leg::local},     {"remote", &Leg::remote},
    {"remote-tag", &Leg::remoteTag}, {"contact", &Leg::contact}, {"routes", &Leg::routes}};

void addFields(const Leg& leg, const std::string& prefix, Fields& fields) {
  for (const auto& [name, member] : kTexts) fields[prefix + name] = leg.*member;
  fields[prefix + "peer"] = leg.peer.text();
  fields[prefix + "numbers"] = std::to_string(leg.localCseq) + " " + std::to_string(leg.remoteCseq) + " " +
                               std::to_string(static_cast<int>(leg.answered));
  fields[prefix + "sent"] = packed(leg.sent);
  fields[prefix + "received"] = packed(leg.received);
}

bool readLeg(Fields& fields, const std::string& prefix, Leg& leg) {
  for (const auto& [name, member] : kTexts) leg.*member = fields[prefix + name];
  const auto peer = Endpoint::parse(fields[prefix + "peer"]);
  std::istringstream numbers(fields[prefix + "numbers"]);
  if (!peer || !(numbers >> leg.localCseq >> leg.remoteCseq >> leg.answered)) return false;
  leg.peer = *peer;
  leg.localCseq += kCseqGap;
  return unpack(fields[prefix + "sent"], leg.sent) && unpack(fields[prefix + "received"], leg.received);
}

}  // namespace

void StateStore::Free::operator()(redisContext* context) const { redisFree(context); }

StateStore::StateStore(const std::string& address) {
  if (address.empty()) return;
  const std::string scheme = "redis://";
  const auto endpoint =
      address.starts_with(scheme) ? Endpoint::parse(address.substr(scheme.size())) : std::nullopt;
  if (!endpoint) throw std::runtime_error("--state: no redis://HOST:PORT: " + address);
  const auto [host, port] = endpoint->hostAndPort();
  host_ = host;
  port_ = std::stoi(port);
  if (!connect()) throw std::runtime_error("no Redis server at " + address);
}

StateStore::~StateStore() = default;

bool StateStore::connect() {
  if (context_ && context_->err == 0) return true;
  if (Clock::now() < nextAttempt_) return false;
  nextAttempt_ = Clock::now() + kBetweenAttempts;
  context_.reset(redisConnectWithTimeout(host_.c_str(), port_, kTimeout));
  if (!context_ || context_->err != 0 || redisSetTimeout(context_.get(), kTimeout) != REDIS_OK) return false;
  return run({"PING"});
}

/// @param texts receives the strings of an array reply
bool StateStore::run(const std::vector<std::string>& command, std::vector<std::string>* texts) {
  if (command.front() != "PING" && !connect()) return false;
  std::vector<const char*> words;
  std::vector<std::size_t> sizes;
  for (const std::string& word : command) {
    words.push_back(word.data());
    sizes.push_back(word.size());
  }
  const std::unique_ptr<void, void (*)(void*)> owner(
      redisCommandArgv(context_.get(), static_cast<int>(words.size()), words.data(), sizes.data()),
      freeReplyObject);
  const auto* const reply = static_cast<const redisReply*>(owner.get());
  if (reply == nullptr || reply->type == REDIS_REPLY_ERROR) return false;
  for (std::size_t i = 0; texts != nullptr && reply->type == REDIS_REPLY_ARRAY && i < reply->elements; ++i) {
    texts->emplace_back(reply->element[i]->str, reply->element[i]->len);
  }
  return true;
}

bool StateStore::save(const Call& call) {
  if (!isUsed()) return true;
  std::vector<std::string> command = {"HSET", keyOf(call.id)};
  Fields fields;
  addFields(call.legs[kCaller], "caller.", fields);
  addFields(call.legs[kTarget], "target.", fields);
  for (const auto& [name, value] : fields) {
    command.push_back(name);
    command.push_back(value);
  }
  return run(command) && run({"EXPIRE", keyOf(call.id), kKeepFor});
}

bool StateStore::remove(const std::string& id) { return !isUsed() || run({"DEL", keyOf(id)}); }

bool StateStore::load(const std::string& id, Call& call) {
  std::vector<std::string> texts;
  if (!isUsed() || !run({"HGETALL", keyOf(id)}, &texts)) return false;
  Fields fields;
  for (std::size_t i = 0; i + 1 < texts.size(); i += 2) fields[texts[i]] = texts[i + 1];
  call.id = id;
  call.established = true;
  return readLeg(fields, "caller.", call.legs[kCaller]) && readLeg(fields, "target.", call.legs[kTarget]);
}

}  // namespace b2bua
