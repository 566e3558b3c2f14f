#include "stateStore.h"

#include <algorithm>
#include <charconv>
#include <ctime>
#include <map>

#include "anchor.h"
#include "wholeNumber.h"

namespace b2bua {

namespace {

using Command = RedisLink::Command;

constexpr const char* kKeepFor = "86400";     ///< seconds; what nobody ends goes by itself
constexpr const char* kKeepMarkFor = "3600";  ///< longer than a call stays with one that is no owner any more
constexpr const char* kEnded = "-";           ///< instead of an owner
constexpr std::time_t kLongestUntilAck = 32;  ///< seconds that a party repeats its 200
constexpr std::size_t kLongestText = 8192;
constexpr const char* kAt = "at";    ///< when it was written
constexpr const char* kAck = "ack";  ///< there while a 200 has none

/// Requests that may be sent before the call is kept again.
constexpr unsigned int kCseqGap = 100;
constexpr unsigned int kLargestCseq = 0x7fff'ffff;

using Fields = std::map<std::string, std::string>;

template <class Type>
struct Field {
  const char* name;
  Type Leg::*member;
};

constexpr Field<std::string> kTexts[] = {{"call-id", &Leg::callId}, {"local", &Leg::local},
                                         {"remote", &Leg::remote},  {"contact", &Leg::contact},
                                         {"routes", &Leg::routes},  {"transport", &Leg::transport}};
constexpr Field<bool> kFlags[] = {{"answered", &Leg::answered}, {"allows-update", &Leg::allowsUpdate}};
constexpr Field<Body> kBodies[] = {{"sent", &Leg::sent}, {"received", &Leg::received}};

std::string keyOf(const std::string& id) { return "b2bua:call:" + id; }

std::string prefixOf(Side side) { return std::string(nameOf(side)) + "."; }

std::string now() { return std::to_string(std::time(nullptr)); }

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

bool readCount(std::string_view text, unsigned int& number) {
  return readNumber(text, number) && number <= kLargestCseq;
}

void addNumbers(Leg& leg, Fields& fields) {
  leg.keptCseq = std::min(leg.cseq, kLargestCseq - kCseqGap) + kCseqGap;
  fields[prefixOf(leg.side) + "cseq"] = std::to_string(leg.keptCseq);
}

void addFields(Leg& leg, Fields& fields) {
  const std::string prefix = prefixOf(leg.side);
  const sip_route_t* routes = nullptr;
  const sip_contact_t* contact = nullptr;
  nta_leg_get_route(leg.dialog.get(), &routes, &contact);
  leg.contact = headerText(contact);
  leg.routes = headerText(routes);
  for (const auto& [name, member] : kTexts) fields[prefix + name] = leg.*member;
  for (const auto& [name, member] : kFlags) fields[prefix + name] = leg.*member ? "1" : "";
  for (const auto& [name, member] : kBodies) fields[prefix + name] = packed(leg.*member);
  fields[prefix + "refused"] = leg.refused ? packed(*leg.refused) : "";
  addNumbers(leg, fields);
  fields[prefix + "remote-cseq"] = std::to_string(leg.remoteCseq);
  if (leg.unacknowledged != 0) fields[prefix + kAck] = std::to_string(leg.unacknowledged);
  fields[prefix + "timer"] = leg.timer.text();
  if (!leg.ports.empty()) fields[prefix + "ports"] = textOf(leg.ports);
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

bool readFields(Fields& fields, Leg& leg) {
  const std::string prefix = prefixOf(leg.side);
  for (const auto& [name, member] : kTexts) leg.*member = fields[prefix + name];
  for (const auto& [name, member] : kFlags) leg.*member = !fields[prefix + name].empty();
  leg.timer.read(fields[prefix + "timer"]);
  leg.ports = portsOf(fields[prefix + "ports"]);
  if (!isDialog(leg) || !readCount(fields[prefix + "cseq"], leg.cseq) ||
      !readCount(fields[prefix + "remote-cseq"], leg.remoteCseq))
    return false;
  const std::string& ack = fields[prefix + kAck];
  if (!ack.empty() && !readCount(ack, leg.unacknowledged)) return false;
  const std::string& refused = fields[prefix + "refused"];
  if (!refused.empty()) leg.refused = std::make_unique<Body>();
  return std::ranges::all_of(
             kBodies,
             [&](const auto& body) { return unpack(fields[prefix + body.name], leg.*body.member); }) &&
         (refused.empty() || unpack(refused, *leg.refused));
}

Command hashCommand(const std::string& id, const Fields& fields) {
  Command command = {"HSET", keyOf(id)};
  for (const auto& [name, value] : fields) {
    command.push_back(name);
    command.push_back(value);
  }
  return command;
}

/// @return what stands behind the owner's name
std::string_view turnIn(std::string_view owner) {
  return owner.substr(std::min(owner.find(' '), owner.size() - 1) + 1);
}

/// The ACK that was to come may have gone to a process that is no more; one too many does no harm in that time.
bool mayWaitForAck(const std::string& savedAt) {
  long long at = 0;
  std::from_chars(savedAt.data(), savedAt.data() + savedAt.size(), at);
  const std::time_t now = std::time(nullptr);
  return at >= now - kLongestUntilAck && at <= now + kLongestUntilAck;
}

}  // namespace

/// With the number of processes that have had the call: after a change of the primary a record may name a former one.
std::string StateStore::ownerOf(const Call& call) const { return own_ + " " + std::to_string(call.turn); }

bool StateStore::isElsewhere(const std::string& owner, const Call& call) const {
  unsigned int turn = 0;
  const bool named = !owner.empty() && !isOwn(owner);
  return named && (!readCount(turnIn(owner), turn) || turn >= call.turn);
}

bool StateStore::save(const std::vector<Call*>& calls) {
  // With each message, calls that wait are tried again.
  if (!link_.isAskable()) return false;
  std::vector<Command> commands;
  for (Call* const call : calls) {
    Fields fields = {{"owner", ownerOf(*call)}, {kAt, now()}};
    for (Leg& leg : call->legs) addFields(leg, fields);
    commands.push_back(hashCommand(call->id, fields));
    commands.push_back({"EXPIRE", keyOf(call->id), kKeepFor});
  }
  return link_.run(commands);
}

bool StateStore::remove(const std::string& id, bool mark) {
  const std::string key = keyOf(id);
  if (!mark) return link_.post({{"DEL", key}});
  return link_.post({{"DEL", key}, {"HSET", key, "owner", kEnded}, {"EXPIRE", key, kKeepMarkFor}});
}

void StateStore::addAck(const Leg& leg) {
  link_.post({hashCommand(leg.call->id,
                          {{prefixOf(leg.side) + kAck, std::to_string(leg.unacknowledged)}, {kAt, now()}})});
}

void StateStore::removeAcks(const std::vector<std::string>& ids) {
  std::vector<Command> commands;
  commands.reserve(ids.size());
  for (const std::string& id : ids)
    commands.push_back({"HDEL", keyOf(id), prefixOf(kCaller) + kAck, prefixOf(kTarget) + kAck});
  link_.post(commands);
}

Found StateStore::load(Call& call) {
  std::vector<RedisLink::Reply> replies;
  if (!link_.run({{"HGETALL", keyOf(call.id)}}, &replies)) return Found::unknown;
  const RedisLink::Reply& texts = replies.front();
  Fields fields;
  for (std::size_t i = 0; i + 1 < texts.size(); i += 2) fields[texts[i]] = texts[i + 1];
  for (Leg& leg : call.legs) {
    if (!readFields(fields, leg)) return Found::no;
    if (!mayWaitForAck(fields[kAt])) leg.unacknowledged = 0;
  }
  readCount(turnIn(fields["owner"]), call.turn);
  return Found::yes;
}

bool StateStore::claim(Call& call) {
  ++call.turn;
  Fields fields = {{"owner", ownerOf(call)}};
  for (Leg& leg : call.legs) addNumbers(leg, fields);
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
