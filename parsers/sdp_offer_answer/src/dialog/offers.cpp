// Offers: those made here, and those of the peer.

#include "bodies.h"
#include "composition.h"
#include "exchange.h"
#include "origins.h"
#include "outgoing.h"
#include "sdpDocumentRequests.h"

namespace sdp::exchange {
namespace {

/// What a text of one's own lacks of being an offer.
LocalBody checked(const Document& document) {
  if (!isDescription(document)) return refused(DialogFailure::brokenBody);
  if (!originOf(document.text())) return refused(DialogFailure::noOrigin);
  const std::uint32_t section = firstUnreadable(document);
  return section == 0 ? LocalBody() : refused(DialogFailure::unreadableSection, section);
}

/// Lets a text be the pending offer.
LocalBody sendOffer(DialogData& data, std::string text) {
  Document body;
  read(body, text);
  rememberSent(data, body);
  data.state = DialogState::localOffer;
  data.pending = text;
  LocalBody sent;
  sent.isRefresh = text == data.local;
  sent.text = std::move(text);
  return sent;
}

/// The directions of a description by places of an offer.
std::vector<Direction> directionsBy(const Arrangement& places, const Document& wanted) {
  std::vector<Direction> directions;
  for (const std::uint32_t section : places) {
    directions.push_back(section == 0 ? Direction::sendrecv : wanted.section(section).direction());
  }
  return directions;
}

/// Who offers anew leaves it to the peer again who begins (RFC 5763, section 5).
void offerBothRoles(Document& body) {
  std::vector<std::uint32_t> sections;
  for (const Section& section : body.sections()) {
    const bool isDecided = section.setup() == "active" || section.setup() == "passive";
    const bool isTcp = section.transport().starts_with("TCP");
    const bool isDtls = !section.fingerprintHash().empty() || section.security() == Security::dtls;
    if (isDecided && isDtls && !isTcp && !section.isDisabled()) sections.push_back(section.index());
  }
  for (const std::uint32_t section : sections) require(body.setAttribute(section, "setup", "actpass"));
}

/// Disables what the peer does not have any more.
void disableRefused(Document& body, const Document& remote) {
  std::vector<std::uint32_t> sections;
  for (const Section& section : body.sections()) {
    if (!section.isDisabled() && !isAlive(remote, section.index())) sections.push_back(section.index());
  }
  if (!sections.empty()) require(disableSections(body, sections));
}

}  // namespace

LocalBody offerDescription(DialogData& data, std::string_view description) {
  if (const Transition step = transitionOf(data.state, Call::offer); step.failure != DialogFailure::none) {
    return refused(step.failure);
  }
  Document wanted;
  read(wanted, description);
  if (LocalBody check = checked(wanted); !check) return check;
  Document local;
  Document remote;
  Document known;
  read(local, data.local);
  read(remote, data.remote);
  read(known, data.payloads);
  const Arrangement places = arrange(wanted, local, remote);
  data.pendingIntent = {data.intent.isHeld, directionsBy(places, wanted)};
  const std::string text = composed(wanted, places, {known, local, remote});
  if (!data.intent.isHeld) return sendOffer(data, versioned(data, text));
  Document body;
  read(body, text);
  setDirections(body, [](std::uint32_t, Direction direction) { return held(direction); });
  return sendOffer(data, versioned(data, body.text()));
}

LocalBody offerFinished(DialogData& data, std::string_view body) {
  if (const Transition step = transitionOf(data.state, Call::offer); step.failure != DialogFailure::none) {
    return refused(step.failure);
  }
  Document document;
  read(document, body);
  if (LocalBody check = checked(document); !check) return check;
  Document local;
  read(local, data.local);
  if (document.sectionCount() < local.sectionCount()) return refused(DialogFailure::sectionCount);
  data.pendingIntent = finishedIntent(data.intent, document, Document());
  return sendOffer(data, std::string(body));
}

LocalBody offerAgain(DialogData& data, bool isHeld) {
  if (const Transition step = transitionOf(data.state, Call::offer); step.failure != DialogFailure::none) {
    return refused(step.failure);
  }
  if (data.local.empty()) return refused(DialogFailure::noBody);
  Document body;
  Document remote;
  read(body, data.local);
  read(remote, data.remote);
  disableRefused(body, remote);
  const std::vector<Direction>& before = data.intent.directions;
  setDirections(body, [&](std::uint32_t section, Direction direction) {
    if (isHeld) return held(direction);
    return section <= before.size() ? before[section - 1] : direction;
  });
  offerBothRoles(body);
  data.pendingIntent = {isHeld, before};
  return sendOffer(data, versioned(data, body.text()));
}

ReceivedOffer takeOffer(DialogData& data, std::string_view body) {
  ReceivedOffer result;
  const Transition step = transitionOf(data.state, Call::receiveOffer);
  result.failure = step.failure;
  if (!result) return result;
  Document offer;
  Document current;
  read(offer, body);
  read(current, data.remote);
  if (!isDescription(offer)) {
    result.failure = DialogFailure::brokenBody;
    return result;
  }
  if (offer.sectionCount() > Dialog::kMaximumSections) {
    result.failure = DialogFailure::tooManySections;
    return result;
  }
  result = changesOf(offer, current);
  data.state = step.next;
  data.pending = body;
  return result;
}

DialogStatus dropOffer(DialogData& data) {
  const Transition step = transitionOf(data.state, Call::rollback);
  data.state = step.next;
  data.pending.clear();
  data.pendingIntent = {};
  return {step.failure};
}

}  // namespace sdp::exchange
