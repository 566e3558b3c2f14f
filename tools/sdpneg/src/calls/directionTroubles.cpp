// Calls that begin with media that do not go both ways.

#include <set>
#include <utility>
#include <vector>

#include "calls/causes.h"
#include "captures/sipView.h"
#include "text/search.h"

namespace tool {
namespace {

/// What a segment began with.
struct LegBeginning {
  std::uint64_t invite = 0;  ///< its CSeq
  bool hasInvite = false;
  std::size_t accepted = kNowhere;     ///< the first 2xx of the first INVITE
  const Exchange* exchange = nullptr;  ///< the last one that was answered until then
};

/// Whether a message may be of the dialog that was accepted: early ones have other tags.
bool isOfDialog(const CallMessage& message, const CallMessage& accepted) {
  if (message.toTag.empty()) return true;
  return (message.fromTag == accepted.fromTag && message.toTag == accepted.toTag) ||
         (message.fromTag == accepted.toTag && message.toTag == accepted.fromTag);
}

std::vector<LegBeginning> beginningsOf(const TroubleFinder& finder) {
  const Call& call = finder.call();
  std::vector<LegBeginning> beginnings(finder.segments().size());
  for (std::size_t i = 0; i < call.messages.size(); ++i) {
    const CallMessage& message = call.messages[i];
    if (message.method != "INVITE") continue;
    LegBeginning& beginning = beginnings[finder.segments().of(i)];
    if (beginning.accepted != kNowhere) continue;
    if (message.status == 0 && message.toTag.empty()) {
      beginning.invite = message.cseq;
      beginning.hasInvite = true;
    } else if (message.status / 100 == 2 && beginning.hasInvite && message.cseq == beginning.invite) {
      beginning.accepted = i;
    }
  }
  for (const Exchange& exchange : call.exchanges) {
    if (!exchange.answer || exchange.finalStatus >= 300) continue;
    LegBeginning& beginning = beginnings[finder.segments().of(exchange.offer)];
    if (beginning.accepted == kNowhere) continue;
    const CallMessage& answer = call.messages[*exchange.answer];
    const CallMessage& accepted = call.messages[beginning.accepted];
    const bool isInAck = answer.method == "ACK" && answer.cseq == accepted.cseq;
    if (*exchange.answer > beginning.accepted && !isInAck) continue;
    if (isOfDialog(answer, accepted)) beginning.exchange = &exchange;
  }
  return beginnings;
}

using Told = std::set<std::pair<std::size_t, std::uint32_t>>;

void tellOnce(TroubleFinder& finder, Told& told, std::size_t answer, const sdp::Section& section) {
  // Other bodies are read on the way, and the section may go.
  const std::string media(section.media());
  const Cause cause = causeOf(finder, answer, section.index());
  if (!told.insert({cause.place.message, cause.place.section}).second) return;
  finder.tell("one-way", cause.place, textOf(finder, cause, media));
}

/// Looks at the sections of an exchange one by one.
/// @return whether its bodies were read and all is well
bool lookAtSections(TroubleFinder& finder, const Exchange& exchange, Told& told) {
  std::uint32_t refused = 0;
  bool hasAudio = false;
  bool isFine = true;
  const sdp::Document* offer = finder.bodies().of(exchange.offer);
  const std::uint32_t count = offer == nullptr ? 0 : offer->sectionCount();
  for (std::uint32_t index = 1; index <= count; ++index) {
    offer = finder.bodies().of(exchange.offer);
    const sdp::Document* const answer = finder.bodies().of(*exchange.answer);
    if (offer == nullptr || answer == nullptr) return false;
    const sdp::Section section = offer->section(index);
    const bool isAudio = sdpneg::equalNoCase(section.media(), "audio");
    if (!isAudio && !sdpneg::equalNoCase(section.media(), "video")) continue;
    const Ways ways{wayOf(*offer, index), wayOf(*answer, index)};
    if (ways.isAccepted()) {
      hasAudio = hasAudio || isAudio;
      if (ways.isBothWays()) continue;
      isFine = false;
      tellOnce(finder, told, *exchange.answer, section);
    } else if (isAudio && ways.offered > Way::refused && ways.answered == Way::refused && refused == 0) {
      refused = index;
    }
  }
  if (hasAudio || refused == 0) return isFine && count != 0;
  offer = finder.bodies().of(exchange.offer);
  if (offer != nullptr) tellOnce(finder, told, *exchange.answer, offer->section(refused));
  return false;
}

void lookAt(TroubleFinder& finder, const Exchange& exchange, Told& told) {
  BodyCache& bodies = finder.bodies();
  if (bodies.factsOf(exchange.offer, *exchange.answer).goesBothWays) {
    bodies.passOver(exchange.offer, *exchange.answer);
  } else if (lookAtSections(finder, exchange, told)) {
    bodies.factsOf(exchange.offer, *exchange.answer).goesBothWays = true;
  }
}

/// Whether a message begins a recording (RFC 7866), whose media go one way.
bool isRecording(const CallMessage& message) {
  const SipView view(message.text);
  for (const std::string_view value : view.values("Require")) {
    sdpneg::Words tags(value, " \t\r\n,");
    for (std::string_view tag = tags.next(); !tag.empty(); tag = tags.next()) {
      if (sdpneg::equalNoCase(tag, "siprec")) return true;
    }
  }
  return false;
}

}  // namespace

void findDirectionTroubles(TroubleFinder& finder) {
  Told told;
  for (const LegBeginning& beginning : beginningsOf(finder)) {
    const Exchange* const exchange = beginning.exchange;
    if (exchange == nullptr || isRecording(finder.call().messages[exchange->offer])) continue;
    lookAt(finder, *exchange, told);
  }
}

}  // namespace tool
