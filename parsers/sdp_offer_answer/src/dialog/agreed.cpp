// What both current bodies come to.

#include <algorithm>

#include "agreedParts.h"
#include "answer/direction.h"
#include "bodies.h"
#include "bundles.h"
#include "exchange.h"

namespace sdp::exchange {
namespace {

struct Side {
  explicit Side(std::string_view text) : body(documentOf(text)), bundles(body) {}

  static Document documentOf(std::string_view text) {
    Document document;
    read(document, text);
    return document;
  }

  const Document body;
  const Bundles bundles;
};

/// Both bodies, and what of them is asked for all sections.
class Agreement {
 public:
  explicit Agreement(const DialogData& data)
      : local_(data.local), remote_(data.remote), isAnsweredHere_(data.offerer == Party::remote) {
    findTransports();
  }

  std::uint32_t sectionCount() const { return local_.body.sectionCount(); }

  AgreedSection section(std::uint32_t index) const {
    AgreedSection agreed;
    const Section local = local_.body.section(index);
    const Section remote = remote_.body.section(index);
    agreed.index = index;
    agreed.media = local.media();
    agreed.transport = (isAnsweredHere_ ? local : remote).transport();
    agreed.mid = local.mid();
    agreed.isAccepted = isAccepted(index);
    if (!agreed.isAccepted) return agreed;
    agreed.transportSection = transportOf(index);
    agreed.usesRtcpMux = local.hasRtcpMux() && remote.hasRtcpMux();
    agreed.usesReducedRtcp = local.has("rtcp-rsize") && remote.has("rtcp-rsize");
    fillSide(agreed.local, {local_.body, local_.bundles, index, agreed.transportSection, agreed.usesRtcpMux});
    fillSide(agreed.remote,
             {remote_.body, remote_.bundles, index, agreed.transportSection, agreed.usesRtcpMux});
    agreed.usesIce = hasCredentials(agreed.local) && hasCredentials(agreed.remote);
    agreed.direction = directionOf(index);
    fillCodecs(agreed, local, remote);
    chooseKeys(agreed, {local_.body, local_.bundles, index}, {remote_.body, remote_.bundles, index},
               !isAnsweredHere_);
    return agreed;
  }

 private:
  bool isAccepted(std::uint32_t index) const {
    return isAlive(local_.body, index) && isAlive(remote_.body, index);
  }

  /// The first accepted section of each BUNDLE group of the answer has the transport of all (RFC 8843, section 7).
  void findTransports() {
    const Bundles& bundles = answer().bundles;
    for (std::uint32_t group = 0; group < bundles.groupCount(); ++group) {
      const auto members = bundles.membersOf(group);
      const auto first = std::find_if(members.begin(), members.end(),
                                      [this](std::uint32_t member) { return isAccepted(member); });
      transports_.push_back(first == members.end() ? 0 : *first);
    }
  }

  std::uint32_t transportOf(std::uint32_t index) const {
    const std::optional<std::uint32_t> group = answer().bundles.groupOf(index);
    if (!group || !offer().bundles.groupOf(index) || transports_[*group] == 0) return index;
    return transports_[*group];
  }

  static bool hasCredentials(const AgreedSide& side) {
    return !side.iceUfrag.empty() && !side.icePwd.empty();
  }

  Direction directionOf(std::uint32_t index) const {
    const auto meant = [index](const Side& side) {
      return offeredDirection(side.body.section(index), side.bundles);
    };
    return answeredDirection(meant(remote_), meant(local_));
  }

  const Side& offer() const { return isAnsweredHere_ ? remote_ : local_; }
  const Side& answer() const { return isAnsweredHere_ ? local_ : remote_; }

  Side local_;
  Side remote_;
  bool isAnsweredHere_;
  std::vector<std::uint32_t> transports_;  ///< by group of the answer
};

}  // namespace

AgreedMedia agreedMedia(const DialogData& data) {
  AgreedMedia agreed;
  const Agreement agreement(data);
  agreed.sections.reserve(agreement.sectionCount());
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
