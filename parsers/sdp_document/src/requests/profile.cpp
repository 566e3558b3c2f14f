// Profiles: RTP/AVP and its secure and feedback forms, and the keys beside them.

#include "requests/profile.h"

#include "edits.h"
#include "keys.h"
#include "refusals.h"
#include "text/search.h"

namespace sdp::core {
namespace {

constexpr Kinds kDtls = kindsOf(Kind::fingerprint, Kind::setup, Kind::tlsId);
constexpr Kinds kNotDtls = kindsOf(Kind::crypto, Kind::keyMgmt);
constexpr Kinds kFeedback = kindsOf(Kind::rtcpFb, Kind::rtcpRsize);

bool hasFeedback(std::string_view profile) { return profile.ends_with('F'); }

/// Which keys go with a profile, and which do not.
struct Profile {
  explicit Profile(std::string_view profile)
      : text(profile), tls(sdpneg::contains(profile, "TLS")), secure(sdpneg::contains(profile, "SAVP")) {}

  Kinds goesFromSections() const {
    Kinds goes = hasFeedback(text) ? 0 : kFeedback;
    if (!secure || tls) goes |= kNotDtls;
    if (!tls) goes |= kDtls;
    return goes;
  }
  Kinds goesFromSession() const {
    Kinds goes = tls ? 0 : kDtls;
    if (tls || !secure) goes |= one(Kind::keyMgmt);
    return goes;
  }

  std::string_view text;
  bool tls;
  bool secure;
};

/// Leaves those of the chosen sections that have a profile to change: RTP, but not framed into TCP (RFC 4571).
void chooseRtp(Model& model, const Selection& selection) {
  choose(model, selection);
  std::erase_if(model.chosen, [&model](Index n) { return !isRtp(model.parts[n]) || isTcp(model.parts[n]); });
}

/// The transports of each BUNDLE group before a request, to see which it makes differ.
class BundleTransports {
 public:
  explicit BundleTransports(Model& model) : model_(model) {
    model.groups.read(model);
    read(model.transports);
  }

  /// @return differentTransports when a group that had one transport has several now
  Refusal refusal() {
    if (model_.groups.groups.empty()) return {};
    read(model_.transportsNow);
    for (Index g = 0; g < model_.transports.size(); ++g) {
      if (model_.transports[g].other == kNone && model_.transportsNow[g].other != kNone) {
        const Refusal refusal =
            refusalIn(model_, model_.parts[model_.transportsNow[g].other], Reason::differentTransports);
        return refusal;
      }
    }
    return {};
  }

 private:
  void read(std::vector<GroupTransport>& transports) {
    GroupTable& table = model_.groups;
    transports.assign(table.groups.size(), {});
    if (table.groups.empty()) return;
    for (MidEntry& entry : table.mids) entry.transport = entry.otherTransport = kNone;
    for (Index n = 1; n < model_.parts.size(); ++n) {
      const Part& section = model_.parts[n];
      const Index mid = table.midOf(model_, section);
      if (mid == kNone || !isRtp(section) || isDisabled(model_, section)) continue;
      MidEntry& entry = table.mids[mid];
      if (entry.transport == kNone) {
        entry.transport = n;
      } else if (entry.otherTransport == kNone && differ(entry.transport, n)) {
        entry.otherTransport = n;
      }
    }
    for (const Member& member : table.members) {
      if (!table.groups[member.group].isBundle()) continue;
      add(transports[member.group], table.mids[member.mid].transport);
      add(transports[member.group], table.mids[member.mid].otherTransport);
    }
  }
  bool differ(Index a, Index b) const { return model_.parts[a].m.transport != model_.parts[b].m.transport; }
  void add(GroupTransport& group, Index section) const {
    if (section == kNone || group.other != kNone) return;
    if (group.first == kNone) {
      group.first = section;
    } else if (differ(group.first, section)) {
      group.other = section;
    }
  }

  Model& model_;
};

Refusal refuseKeyless(const Model& model, const Profile& profile) {
  for (const Index n : model.chosen) {
    const Part& section = model.parts[n];
    if (profile.tls && !hasKey(model, section, Kind::fingerprint)) {
      return refusalIn(model, section, Reason::noFingerprint);
    }
    if (profile.secure && !profile.tls && !hasKey(model, section, Kind::crypto) &&
        !hasKey(model, section, Kind::keyMgmt)) {
      return refusalIn(model, section, Reason::noKeys);
    }
  }
  return {};
}

/// The session's keys go for all sections, so nobody else may rest on them.
Refusal refuseKeysInUse(const Model& model, Kinds goes) {
  const auto leaves = [&](Kind key) { return has(goes, key) && has(model, model.session(), key); };
  const bool fingerprint = leaves(Kind::fingerprint);
  const bool keyMgmt = leaves(Kind::keyMgmt);
  auto chosen = model.chosen.begin();
  for (Index n = 1; n < model.parts.size(); ++n) {
    const Part& section = model.parts[n];
    if (chosen != model.chosen.end() && *chosen == n) {
      ++chosen;
      continue;
    }
    if (!section.m.readable || isDisabled(model, section)) continue;
    const Security security = securityOf(model, section);
    const bool restsOnFingerprint = fingerprint &&
                                    (security == Security::dtls || security == Security::osrtp) &&
                                    !has(model, section, Kind::fingerprint);
    const bool restsOnKeyMgmt = keyMgmt && security == Security::mikey && !has(model, section, Kind::keyMgmt);
    if (restsOnFingerprint || restsOnKeyMgmt) return refusalIn(model, section, Reason::sessionKeysInUse);
  }
  return {};
}

}  // namespace

Refusal setProfile(Model& model, std::string_view text, const Selection& selection) {
  const Profile profile(text);
  chooseRtp(model, selection);
  if (model.chosen.empty()) return {};
  if (const Refusal refusal = refuseKeyless(model, profile)) return refusal;
  if (const Refusal refusal = refuseKeysInUse(model, profile.goesFromSession())) return refusal;
  BundleTransports bundles(model);
  removeLines(model, model.session(), profile.goesFromSession());
  for (const Index n : model.chosen) {
    setTransport(model, model.parts[n], text);
    removeLines(model, model.parts[n], profile.goesFromSections());
  }
  return bundles.refusal();
}

Refusal makeOpportunistic(Model& model, const Selection& selection) {
  chooseRtp(model, selection);
  BundleTransports bundles(model);
  for (const Index n : model.chosen) {
    Part& section = model.parts[n];
    const Security security = securityOf(model, section);
    if (security != Security::sdes && security != Security::mikey && security != Security::dtls) continue;
    setTransport(model, section, hasFeedback(section.m.transport) ? "RTP/AVPF" : "RTP/AVP");
  }
  return bundles.refusal();
}

Refusal makeSecureOnly(Model& model, const Selection& selection) {
  chooseRtp(model, selection);
  BundleTransports bundles(model);
  for (const Index n : model.chosen) {
    Part& section = model.parts[n];
    if (securityOf(model, section) != Security::osrtp) continue;
    const bool feedback = hasFeedback(section.m.transport);
    if (hasKey(model, section, Kind::crypto) || hasKey(model, section, Kind::keyMgmt)) {
      setTransport(model, section, feedback ? "RTP/SAVPF" : "RTP/SAVP");
    } else {
      setTransport(model, section, feedback ? "UDP/TLS/RTP/SAVPF" : "UDP/TLS/RTP/SAVP");
    }
  }
  return bundles.refusal();
}

}  // namespace sdp::core
