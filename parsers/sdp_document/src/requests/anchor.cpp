// Leading media by way of one address.

#include <algorithm>
#include <charconv>
#include <utility>

#include "edits.h"
#include "fieldReader.h"
#include "keys.h"
#include "refusals.h"
#include "requests/media.h"

namespace sdp::core {
namespace {

constexpr std::uint16_t kDiscardPort = 9;

/// A mid stands in one section (RFC 5888, section 4). Of more that bear it, each behind the first is followed into so
/// many of the BUNDLE groups that name it.
constexpr Index kMostGroupsAgain = 16;

/// A number as text.
class Digits {
 public:
  explicit Digits(std::uint64_t number)
      : end_(std::to_chars(digits_, digits_ + sizeof digits_, number).ptr) {}
  std::string_view view() const { return {digits_, static_cast<std::size_t>(end_ - digits_)}; }

 private:
  char digits_[20];
  char* end_;
};

/// One request to lead media elsewhere.
class Anchoring {
 public:
  Anchoring(Model& model, const AddressLiteral& address, std::uint16_t port)
      : model_(model), address_(address), next_(port) {}

  Refusal run();

 private:
  bool keepsPort(const Part& section) const;
  Refusal choosePorts();
  Index leaderOf(const Part& section);
  bool holdsLiveMedia(const Part& section) const;
  void leadSections();
  void lead(Part& part, bool mayStay);
  void setConnection(Part& part, Index line, bool mayStay);
  void addConnection(Part& section);
  void setRtcp(Part& section, Index line);

  Model& model_;
  AddressLiteral address_;
  std::uint32_t next_;
};

/// Sections that take no port of the row: disabled ones, those that have the port of their group, and TCP ones that
/// connect from wherever they are (RFC 4145).
bool Anchoring::keepsPort(const Part& section) const {
  return section.m.portNumber == 0 || (isTcp(section) && section.m.portNumber == kDiscardPort);
}

/// The first section of a BUNDLE group with this one that has its port field.
Index Anchoring::leaderOf(const Part& section) {
  GroupTable& table = model_.groups;
  const Index mid = table.midOf(model_, section);
  if (mid == kNone) return kNone;
  MidEntry& entry = table.mids[mid];
  Index left = std::exchange(entry.isFollowed, true) ? kMostGroupsAgain : kNone;
  Index leader = kNone;
  for (Index m = entry.firstOfBundles; m != kNone && left != 0; m = table.members[m].nextOfBundles) {
    --left;
    Index& first = model_.leaders.slotOf(table.members[m].group, section.m.port);
    if (first == kNone) first = model_.indexOf(section);
    leader = std::min(leader, first);
  }
  return leader;
}

Refusal Anchoring::choosePorts() {
  model_.groups.read(model_);
  const std::size_t members = model_.groups.members.size();
  const std::size_t again = std::min(members, std::size_t{kMostGroupsAgain});
  model_.leaders.reset(members + again * model_.sectionCount());
  for (MidEntry& entry : model_.groups.mids) entry.isFollowed = false;
  model_.ports.assign(model_.parts.size(), kNone);
  for (Index n = 1; n < model_.parts.size(); ++n) {
    const Part& section = model_.parts[n];
    if (keepsPort(section)) continue;
    const Index leader = leaderOf(section);
    if (leader < n) {
      model_.ports[n] = model_.ports[leader];
      continue;
    }
    const std::uint64_t most = next_ > kHighestPort ? 0 : (kHighestPort - next_) / 2 + 1;
    if (section.m.portCount > most) return refusalIn(model_, section, Reason::noPortLeft);
    model_.ports[n] = next_;
    next_ += static_cast<std::uint32_t>(2 * section.m.portCount);
  }
  return {};
}

/// It sends or receives though its address may be unspecified: ICE tells the address later.
bool Anchoring::holdsLiveMedia(const Part& section) const {
  return !isDisabled(model_, section) &&
         (section.m.portNumber == kDiscardPort || hasKey(model_, section, Kind::iceUfrag));
}

void Anchoring::setConnection(Part& part, Index line, bool mayStay) {
  const std::string_view address = connectionIn(model_.lines[line]).address;
  if (mayStay && (address == "0.0.0.0" || address == "::")) return;
  replaceLine(model_, part, line, {"c=IN ", address_.type, " ", address_.text});
}

void Anchoring::addConnection(Part& section) {
  addBehind(model_, section, lineBeforeConnection(model_, section),
            {"c=IN ", address_.type, " ", address_.text});
}

/// `a=rtcp` goes where the section has got no port (RFC 3605).
void Anchoring::setRtcp(Part& section, Index line) {
  const std::optional<std::string_view> value = valueOf(model_.lines[line]);
  if (!value) return;
  const Index port = model_.ports[model_.indexOf(section)];
  if (port == kNone) return removeLine(model_, line);
  const Digits digits(has(model_, section, Kind::rtcpMux) ? port : port + 1);
  const bool hadAddress = !Fields(*value)[3].empty();
  if (hadAddress) {
    replaceLine(model_, section, line, {"a=rtcp:", digits.view(), " IN ", address_.type, " ", address_.text});
  } else {
    replaceLine(model_, section, line, {"a=rtcp:", digits.view()});
  }
}

/// Everything in a part that tells of addresses, in one pass.
/// @param mayStay an address that is unspecified
void Anchoring::lead(Part& part, bool mayStay) {
  const Index port = model_.ports[model_.indexOf(part)];
  if (port != kNone) {
    const std::size_t slash = std::min(part.m.port.find('/'), part.m.port.size());
    setPort(model_, part, {Digits(port).view(), part.m.port.substr(slash)});
  }
  forEach(model_, part, kOfAddresses | kindsOf(Kind::connection, Kind::rtcp), [&](Index i) {
    switch (model_.lines[i].kind) {
      case Kind::connection:
        return setConnection(part, i, mayStay);
      case Kind::rtcp:
        return setRtcp(part, i);
      default:
        return removeLine(model_, i);
    }
  });
}

void Anchoring::leadSections() {
  const bool sessionHas = has(model_, model_.session(), Kind::connection);
  bool sessionHoldsLive = false;
  for (std::size_t n = 1; n < model_.parts.size(); ++n) {
    Part& section = model_.parts[n];
    const bool live = holdsLiveMedia(section);
    if (!has(model_, section, Kind::connection)) {
      sessionHoldsLive = sessionHoldsLive || live;
      if (!sessionHas) addConnection(section);
    }
    lead(section, !live);
  }
  // Last, since sections ask it.
  lead(model_.parts[0], !sessionHoldsLive);
}

Refusal Anchoring::run() {
  for (std::size_t n = 1; n < model_.parts.size(); ++n) {
    const Part& section = model_.parts[n];
    if (!section.m.readable) return refusalIn(model_, section, Reason::unreadableSection);
    if (!isDisabled(model_, section) && has(model_, section, Kind::path)) {
      return refusalIn(model_, section, Reason::pathAttribute);
    }
  }
  if (const Refusal refusal = choosePorts()) return refusal;
  leadSections();
  return {};
}

}  // namespace

Index lineBeforeConnection(const Model& model, const Part& section) {
  Index behind = section.first;
  for (Index i = section.first + 1; i < section.end; ++i) {
    if (model.lines[i].gone != 0) continue;
    if (model.lines[i].kind != Kind::information) break;
    behind = i;
  }
  return behind;
}

Refusal anchor(Model& model, const AddressLiteral& address, std::uint16_t port) {
  return Anchoring(model, address, port).run();
}

}  // namespace sdp::core
