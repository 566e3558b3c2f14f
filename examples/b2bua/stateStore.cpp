#include "stateStore.h"

#include <algorithm>
#include <charconv>
#include <ctime>
#include <map>

#include "anchor.h"

namespace b2bua {

namespace {

using Command = RedisLink::Command;

constexpr const char* kKeepFor = "86400";     ///< seconds; what nobody ends goes by itself
constexpr const char* kKeepMarkFor = "3600";  ///< longer than a call stays with one that is no owner any more
constexpr const char* kEnded = "-";           ///< instead of an owner
constexpr std::time_t kLongestUntilAck = 32;  ///< seconds that a party repeats its 200
constexpr std::size_t kLongestText = 8192;
constexpr const char* kAck = "ack";  ///< there while a 200 has none

/// Requests that may be sent before the call is kept again.
constexpr unsigned int kCseqGap = 100;
constexpr unsigned int kLargestCseq = 0x7fff'ffff;

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

bool readNumber(const std::string& text, unsigned int& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size() && number <= kLargestCseq;
}

void addNumbers(Leg& leg, const std::string& prefix, Fields& fields) {
  leg.keptCseq = std::min(leg.cseq, kLargestCseq - kCseqGap) + kCseqGap;
  fields[prefix + "cseq"] = std::to_string(leg.keptCseq);
}

void addFields(Leg& leg, const std::string& prefix, Fields& fields) {
  const sip_route_t* routes = nullptr;
  const sip_contact_t* contact = nullptr;
  nta_leg_get_route(leg.dialog.get(), &routes, &contact);
  fields[prefix + "call-id"] = leg.callId;
  fields[prefix + "local"] = leg.local;
  fields[prefix + "remote"] = leg.remote;
  fields[prefix + "contact"] = headerText(contact);
  fields[prefix + "transport"] = leg.transport;
  fields[prefix + "routes"] = headerText(routes);
  addNumbers(leg, prefix, fields);
  fields[prefix + "remote-cseq"] = std::to_string(leg.remoteCseq);
  if (leg.unacknowledged != 0) fields[prefix + kAck] = std::to_string(leg.unacknowledged);
  fields[prefix + "answered"] = leg.answered ? "1" : "";
  fields[prefix + "allows-update"] = leg.allowsUpdate ? "1" : "";
  fields[prefix + "timer"] = leg.timer.text();
  if (!leg.ports.empty()) fields[prefix + "ports"] = textOf(leg.ports);
  fields[prefix + "sent"] = packed(leg.sent);
  fields[prefix + "refused"] = leg.refused ? packed(*leg.refused) : "";
  fields[prefix + "received"] = packed(leg.received);
}

/// What goes into headers: the stack would take further lines with it.
bool isText(const std::string& text) {
  return !text.empty() && text.size() <= kLongestText &&
         std::ranges::none_of(text, [](unsigned char c) { return c < ' ' || c == 0x7f; });
}

bool isSip(const url_t& url) {
  return (url.url_type == url_sip || url.url_type == url_sips) && url.url_host != nullptr;
}

bool areRoutes(const sip_route_t* route) {
  const bool valid = route != nullptr;
  while (route != nullptr && isSip(*route->r_url)) route = route->r_next;
  return valid && route == nullptr;
}

/// @return whether the stack can make a dialog of a leg
bool isDialog(const Leg& leg) {
  if (!isText(leg.callId) || !isText(leg.local) || !isText(leg.remote) || !isText(leg.contact)) return false;
  if (!leg.routes.empty() && !isText(leg.routes)) return false;
  su_home_t home[1] = {SU_HOME_INIT(home)};
  const sip_from_t* const local = sip_from_make(home, leg.local.c_str());
  const sip_to_t* const remote = sip_to_make(home, leg.remote.c_str());
  const sip_contact_t* const contact = sip_contact_make(home, leg.contact.c_str());
  const bool valid = local != nullptr && local->a_tag != nullptr && remote != nullptr &&
                     remote->a_tag != nullptr && contact != nullptr && isSip(*contact->m_url) &&
                     (leg.routes.empty() || areRoutes(sip_route_make(home, leg.routes.c_str())));
  su_home_deinit(home);
  return valid;
}

/// @return whether there is none, or it can be read
bool readRefused(const std::string& bytes, Leg& leg) {
  if (bytes.empty()) return true;
  leg.refused = std::make_unique<Body>();
  return unpack(bytes, *leg.refused);
}

bool readFields(Fields& fields, const std::string& prefix, Leg& leg) {
  leg.callId = fields[prefix + "call-id"];
  leg.local = fields[prefix + "local"];
  leg.remote = fields[prefix + "remote"];
  leg.contact = fields[prefix + "contact"];
  leg.transport = fields[prefix + "transport"];
  leg.routes = fields[prefix + "routes"];
  leg.answered = !fields[prefix + "answered"].empty();
  leg.allowsUpdate = !fields[prefix + "allows-update"].empty();
  leg.timer.read(fields[prefix + "timer"]);
  leg.ports = portsOf(fields[prefix + "ports"]);
  return readNumber(fields[prefix + "cseq"], leg.cseq) &&
         readNumber(fields[prefix + "remote-cseq"], leg.remoteCseq) &&
         (fields[prefix + kAck].empty() || readNumber(fields[prefix + kAck], leg.unacknowledged)) &&
         isDialog(leg) && unpack(fields[prefix + "sent"], leg.sent) &&
         unpack(fields[prefix + "received"], leg.received) && readRefused(fields[prefix + "refused"], leg);
}

Command hashCommand(const std::string& id, const Fields& fields) {
  Command command = {"HSET", keyOf(id)};
  for (const auto& [name, value] : fields) {
    command.push_back(name);
    command.push_back(value);
  }
  return command;
}

/// The ACK that was to come may have gone to a process that is no more; one too many does no harm in that time.
bool mayWaitForAck(const std::string& savedAt) {
  long long at = 0;
  std::from_chars(savedAt.data(), savedAt.data() + savedAt.size(), at);
  const std::time_t now = std::time(nullptr);
  return at >= now - kLongestUntilAck && at <= now + kLongestUntilAck;
}

}  // namespace

bool StateStore::save(const std::vector<Call*>& calls) {
  if (!isUsed() || calls.empty()) return true;
  std::vector<Command> commands;
  for (Call* const call : calls) {
    Fields fields = {{"owner", own_}, {"at", std::to_string(std::time(nullptr))}};
    addFields(call->legs[kCaller], "caller.", fields);
    addFields(call->legs[kTarget], "target.", fields);
    commands.push_back(hashCommand(call->id, fields));
    commands.push_back({"EXPIRE", keyOf(call->id), kKeepFor});
  }
  return link_.run(commands);
}

bool StateStore::remove(const std::string& id, bool mark) {
  if (!isUsed()) return true;
  const std::string key = keyOf(id);
  if (!mark) return link_.post({{"DEL", key}});
  return link_.post({{"DEL", key}, {"HSET", key, "owner", kEnded}, {"EXPIRE", key, kKeepMarkFor}});
}

void StateStore::removeAcks(const std::vector<std::string>& ids) {
  std::vector<Command> commands;
  commands.reserve(ids.size());
  for (const std::string& id : ids)
    commands.push_back({"HDEL", keyOf(id), std::string("caller.") + kAck, std::string("target.") + kAck});
  link_.post(commands);
}

Found StateStore::load(Call& call) {
  std::vector<RedisLink::Reply> replies;
  if (!isUsed()) return Found::no;
  if (!link_.run({{"HGETALL", keyOf(call.id)}}, &replies)) return Found::unknown;
  const RedisLink::Reply& texts = replies.front();
  Fields fields;
  for (std::size_t i = 0; i + 1 < texts.size(); i += 2) fields[texts[i]] = texts[i + 1];
  if (!readFields(fields, "caller.", call.legs[kCaller]) ||
      !readFields(fields, "target.", call.legs[kTarget]))
    return Found::no;
  if (!mayWaitForAck(fields["at"])) call.legs[kCaller].unacknowledged = call.legs[kTarget].unacknowledged = 0;
  return Found::yes;
}

bool StateStore::claim(Call& call) {
  Fields fields = {{"owner", own_}};
  addNumbers(call.legs[kCaller], "caller.", fields);
  addNumbers(call.legs[kTarget], "target.", fields);
  return link_.run({hashCommand(call.id, fields), {"EXPIRE", keyOf(call.id), kKeepFor}});
}

std::vector<std::string> StateStore::ownersOf(const std::vector<std::string>& ids) {
  std::vector<Command> commands;
  commands.reserve(ids.size());
  for (const std::string& id : ids) commands.push_back({"HGET", keyOf(id), "owner"});
  std::vector<RedisLink::Reply> replies;
  if (!link_.run(commands, &replies)) return {};
  std::vector<std::string> owners;
  owners.reserve(replies.size());
  for (const RedisLink::Reply& reply : replies) owners.push_back(reply.empty() ? "" : reply.front());
  return owners;
}

}  // namespace b2bua
