// What goes wrong in the course of calls: hold, and changes to fax.

#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "calls/causes.h"
#include "text/search.h"

namespace tool {
namespace {

/// The audio of two parties in a dialog.
struct Held {
  bool wasActive = false;
  const Exchange* last = nullptr;  ///< that holds it; null while it is active
  std::uint32_t section = 0;
};

HeldAudio heldAudioOf(const sdp::Document& offer, const sdp::Document& answer) {
  HeldAudio held;
  for (const sdp::Section& section : answer.sections()) {
    if (!isActiveAudio(section)) continue;
    const Ways ways{wayOf(offer, section.index()), wayOf(answer, section.index())};
    if (!ways.isAccepted()) continue;
    if (ways.isBothWays()) return {true, 0};
    if (held.section == 0) held.section = section.index();
  }
  return held;
}

/// How an exchange leaves the audio; nothing where its bodies cannot be read.
std::optional<HeldAudio> heldAudioOf(BodyCache& bodies, const Exchange& exchange) {
  ShapeFacts& facts = bodies.factsOf(exchange.offer, *exchange.answer);
  if (facts.held) {
    if (!bodies.passOver(exchange.offer, *exchange.answer)) return std::nullopt;
    return facts.held;
  }
  const sdp::Document* const offer = bodies.of(exchange.offer);
  const sdp::Document* const answer = bodies.of(*exchange.answer);
  if (offer == nullptr || answer == nullptr) return std::nullopt;
  facts.held = heldAudioOf(*offer, *answer);
  return facts.held;
}

void follow(TroubleFinder& finder, const Exchange& exchange, Held& held) {
  const std::optional<HeldAudio> left = heldAudioOf(finder.bodies(), exchange);
  if (!left) return;
  if (left->isActive) {
    held = {true, nullptr, 0};
    return;
  }
  if (left->section == 0) return;
  // Where it was held already, that counts.
  if (held.last == nullptr) held = {held.wasActive, &exchange, left->section};
}

/// Of two parties by segment and tags.
using Parties = std::tuple<std::size_t, std::string_view, std::string_view>;

Parties partiesOf(const TroubleFinder& finder, std::size_t message) {
  const CallMessage& asked = finder.call().messages[message];
  std::string_view one = asked.fromTag;
  std::string_view other = asked.toTag;
  if (other < one) std::swap(one, other);
  return {finder.segments().of(message), one, other};
}

/// Legs in which a call is transferred: its parties stay on hold until it ends.
std::set<std::size_t> transferredLegs(const Call& call) {
  std::set<std::size_t> legs;
  for (const CallMessage& message : call.messages) {
    if (message.method == "REFER") legs.insert(message.leg);
  }
  return legs;
}

bool isFax(const sdp::Section& section) {
  return isActive(section) && sdpneg::equalNoCase(section.media(), "image");
}

bool isInDialog(const Call& call, const Exchange& exchange) {
  const CallMessage& offer = call.messages[exchange.offer];
  return !exchange.isFirst || (offer.status == 0 && !offer.toTag.empty());
}

/// Final responses by which the media are refused, and not the one who asks or the moment.
bool refusesMedia(int status) {
  return status >= 400 && status != 401 && status != 407 && status != 491 && status != 481;
}

/// The message and section that tell of a refusal of fax; nothing where there is none, or where a hop only passes it on.
std::optional<TroublePlace> faxRefusal(TroubleFinder& finder, const Exchange& exchange) {
  const sdp::Document* const offer = finder.bodies().of(exchange.offer);
  if (offer == nullptr) return std::nullopt;
  for (const sdp::Section& section : offer->sections()) {
    if (!isFax(section)) continue;
    const std::uint32_t index = section.index();
    if (refusesMedia(exchange.finalStatus)) {
      const std::size_t further = finder.wentAs(exchange.offer);
      const Exchange* const next = further == kNowhere ? nullptr : finder.offeredBy(further);
      if (next != nullptr && refusesMedia(next->finalStatus)) return std::nullopt;
      return TroublePlace{exchange.offer, index};
    }
    if (!exchange.answer || exchange.finalStatus >= 300) return std::nullopt;
    const auto isRefusedIn = [&](std::size_t message) {
      const sdp::Document* const body = finder.bodies().of(message);
      return body != nullptr && wayOf(*body, index) == Way::refused;
    };
    if (!isRefusedIn(*exchange.answer)) return std::nullopt;
    const std::size_t before = finder.cameAs(*exchange.answer);
    if (before != kNowhere && isRefusedIn(before)) return std::nullopt;
    return TroublePlace{*exchange.answer, index};
  }
  return std::nullopt;
}

}  // namespace

void findHoldTroubles(TroubleFinder& finder) {
  const Call& call = finder.call();
  if (call.state != CallState::ended) return;
  const std::set<std::size_t> transferred = transferredLegs(call);
  std::map<Parties, Held> parties;
  for (const Exchange& exchange : call.exchanges) {
    if (!wasAccepted(call, exchange) || transferred.contains(call.messages[exchange.offer].leg)) continue;
    follow(finder, exchange, parties[partiesOf(finder, *exchange.answer)]);
  }
  std::set<std::size_t> told;
  for (const auto& [key, held] : parties) {
    if (!held.wasActive || held.last == nullptr) continue;
    const Cause cause = causeOf(finder, *held.last->answer, held.section);
    if (!told.insert(cause.place.message).second) continue;
    finder.tell("hold-not-resumed", cause.place,
                "the call ended while audio was held since message " +
                    std::to_string(call.messages[cause.place.message].number) + " of " +
                    call.messages[cause.place.message].flow.source.address.text());
  }
}

void findFaxTroubles(TroubleFinder& finder) {
  const Call& call = finder.call();
  for (const Exchange& exchange : call.exchanges) {
    if (!isInDialog(call, exchange)) continue;
    const std::optional<TroublePlace> place = faxRefusal(finder, exchange);
    if (!place) continue;
    const Flow& flow = call.messages[exchange.offer].flow;
    const bool isByPort = place->message != exchange.offer;
    finder.tell("t38-refused", *place,
                flow.destination.address.text() + " refuses T.38 " +
                    (isByPort ? "with port 0" : "with " + std::to_string(exchange.finalStatus)));
  }
}

}  // namespace tool
