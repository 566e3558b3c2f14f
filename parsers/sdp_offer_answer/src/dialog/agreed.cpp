// What both current bodies come to.

#include <unordered_map>

#include "agreedParts.h"
#include "bodies.h"
#include "bundles.h"
#include "exchange.h"

namespace sdp::exchange {
namespace {

/// Both bodies, and what of them is asked for all sections.
class Agreement {
 public:
  explicit Agreement(const DialogData& data) {
    read(local_, data.local);
    read(remote_, data.remote);
    ofLocal_ = Bundles(local_);
    ofRemote_ = Bundles(remote_);
    isAnsweredHere_ = data.offerer == Party::remote;
    findTransports();
  }

  std::uint32_t sectionCount() const { return local_.sectionCount(); }

  AgreedSection section(std::uint32_t index) const {
    AgreedSection agreed;
    const Section local = local_.section(index);
    const Section remote = remote_.section(index);
    agreed.index = index;
    agreed.media = local.media();
    agreed.transport = (isAnsweredHere_ ? local : remote).transport();
    agreed.mid = local.mid();
    agreed.isAccepted = isAccepted(index);
    if (!agreed.isAccepted) return agreed;
    agreed.transportSection = transportOf(index);
    agreed.usesRtcpMux = local.hasRtcpMux() && remote.hasRtcpMux();
    agreed.usesReducedRtcp = local.has("rtcp-rsize") && remote.has("rtcp-rsize");
    fillSide(agreed.local, {local_, ofLocal_, index, agreed.transportSection, agreed.usesRtcpMux});
    fillSide(agreed.remote, {remote_, ofRemote_, index, agreed.transportSection, agreed.usesRtcpMux});
    agreed.usesIce = hasCredentials(agreed.local) && hasCredentials(agreed.remote);
    agreed.direction = directionOf(index);
    fillCodecs(agreed, local, remote);
    chooseKeys(agreed, {local_, ofLocal_, index}, {remote_, ofRemote_, index}, !isAnsweredHere_);
    return agreed;
  }

 private:
  const Document& answer() const { return isAnsweredHere_ ? local_ : remote_; }

  bool isAccepted(std::uint32_t index) const { return isAlive(local_, index) && isAlive(remote_, index); }

  /// The first accepted section of each BUNDLE group of the answer has the transport of all (RFC 8843, section 7).
  void findTransports() {
    std::unordered_map<std::string_view, std::uint32_t> sections;
    for (const Section& section : answer().sections()) {
      if (!section.mid().empty() && isAccepted(section.index())) {
        sections.emplace(section.mid(), section.index());
      }
    }
    for (const Group& group : answer().session().groups()) {
      std::uint32_t first = 0;
      for (const std::string_view mid : group.mids) {
        const auto found = sections.find(mid);
        if (found == sections.end()) continue;
        first = found->second;
        break;
      }
      transports_.push_back(first);
    }
  }

  std::uint32_t transportOf(std::uint32_t index) const {
    const std::optional<std::uint32_t> group = (isAnsweredHere_ ? ofLocal_ : ofRemote_).groupOf(index);
    const bool isOffered = (isAnsweredHere_ ? ofRemote_ : ofLocal_).groupOf(index).has_value();
    if (!group || !isOffered || transports_[*group] == 0) return index;
    return transports_[*group];
  }

  static bool hasCredentials(const AgreedSide& side) {
    return !side.iceUfrag.empty() && !side.icePwd.empty();
  }

  Direction directionOf(std::uint32_t index) const {
    const auto meant = [index](const Document& body, const Bundles& bundles) {
      return meantDirection(body.section(index), bundles.has(index, Credential::iceUfrag)).direction;
    };
    return narrowed(meant(local_, ofLocal_), meant(remote_, ofRemote_));
  }

  Document local_;
  Document remote_;
  Bundles ofLocal_;
  Bundles ofRemote_;
  bool isAnsweredHere_ = false;
  std::vector<std::uint32_t> transports_;  ///< by group of the answer
};

}  // namespace

AgreedMedia agreedMedia(const DialogData& data) {
  AgreedMedia agreed;
  const Agreement agreement(data);
  for (std::uint32_t i = 1; i <= agreement.sectionCount(); ++i)
    agreed.sections.push_back(agreement.section(i));
  return agreed;
}

AgreedSection agreedSection(const DialogData& data, std::uint32_t section) {
  const Agreement agreement(data);
  if (section != 0 && section <= agreement.sectionCount()) return agreement.section(section);
  AgreedSection none;
  none.failure = DialogFailure::noSection;
  return none;
}

}  // namespace sdp::exchange
