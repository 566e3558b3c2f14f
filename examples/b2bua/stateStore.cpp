#include "stateStore.h"

#include <hiredis/hiredis.h>

#include <map>
#include <stdexcept>

namespace b2bua {

namespace {

using Clock = std::chrono::steady_clock;

constexpr timeval kTimeout{0, 200'000};
constexpr std::chrono::seconds kBetweenAttempts{1};
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

}  // namespace

StateStore::StateStore(const std::string& address) : context_(nullptr, redisFree) {
  if (address.empty()) return;
  const std::string scheme = "redis://";
  const std::size_t colon = address.rfind(':');
  if (!address.starts_with(scheme) || colon < scheme.size()) {
    throw std::runtime_error("no redis://HOST:PORT: " + address);
  }
  host_ = address.substr(scheme.size(), colon - scheme.size());
  port_ = static_cast<int>(std::strtol(address.c_str() + colon + 1, nullptr, 10));
  if (!run({"PING"})) throw std::runtime_error("no Redis server at " + address);
}

bool StateStore::connect() {
  if (context_ && context_->err == 0) return true;
  if (Clock::now() < nextAttempt_) return false;
  nextAttempt_ = Clock::now() + kBetweenAttempts;
  context_.reset(redisConnectWithTimeout(host_.c_str(), port_, kTimeout));
  return context_ && context_->err == 0 && redisSetTimeout(context_.get(), kTimeout) == REDIS_OK;
}

/// @param texts receives the strings of an array reply
bool StateStore::run(const std::vector<std::string>& command, std::vector<std::string>* texts) {
  if (!connect()) return false;
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

bool StateStore::load(Call& call) {
  std::vector<std::string> texts;
  if (!isUsed() || !run({"HGETALL", keyOf(call.id)}, &texts)) return false;
  Fields fields;
  for (std::size_t i = 0; i + 1 < texts.size(); i += 2) fields[texts[i]] = texts[i + 1];
  return readFields(fields, "caller.", call.legs[kCaller]) &&
         readFields(fields, "target.", call.legs[kTarget]);
}

}  // namespace b2bua
