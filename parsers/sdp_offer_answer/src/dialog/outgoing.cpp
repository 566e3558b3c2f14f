// Keeping in mind what was sent, and what was wanted by it.

#include "outgoing.h"

#include "answer/direction.h"
#include "bodies.h"
#include "bundles.h"
#include "origins.h"
#include "payloads.h"

namespace sdp::exchange {
namespace {

bool receivesAny(const Document& body) {
  for (const Section& section : body.sections()) {
    const Direction direction = section.direction();
    const bool receives = direction == Direction::sendrecv || direction == Direction::recvonly;
    if (receives && isHoldable(section)) return true;
  }
  return false;
}

/// Whether a text has a higher version than another one of the same session.
bool isLater(std::string_view text, std::string_view other) {
  const std::optional<Origin> now = originOf(text);
  const std::optional<Origin> before = originOf(other);
  return now && before && now->isSameSession(*before) && compareVersions(now->version, before->version) > 0;
}

}  // namespace

LocalBody refused(DialogFailure failure, std::uint32_t section) {
  LocalBody body;
  body.failure = failure;
  body.section = section;
  return body;
}

void rememberSent(DialogData& data, const Document& body) {
  Document before;
  read(before, data.payloads);
  data.payloads = remembered(body, before);
  // The current body again leaves the version of a later offer used that was refused.
  if (body.text() != data.local || !isLater(data.sent, data.local)) data.sent = body.text();
}

std::string versioned(const DialogData& data, std::string_view text) {
  // Where another offer was refused in between, the peer is back at the current body.
  const bool isCurrent = originOf(text) && originOf(data.local) && haveSameLines(text, data.local);
  return isCurrent ? data.local : following(text, data.sent);
}

Intent finishedIntent(const Intent& before, const Document& body, const Document& offer) {
  const bool isHeld = before.isHeld && !receivesAny(body);
  const Bundles bundles(offer);
  Intent intent{isHeld, directionsOf(body)};
  for (std::size_t i = 0; i < intent.directions.size() && i < before.directions.size(); ++i) {
    const auto section = static_cast<std::uint32_t>(i + 1);
    const Direction wanted = before.directions[i];
    Direction expected = isHeld ? held(wanted) : wanted;
    if (section <= offer.sectionCount()) {
      expected = answeredDirection(offeredDirection(offer.section(section), bundles), expected);
    }
    if (isHeld || expected == intent.directions[i]) intent.directions[i] = wanted;
  }
  return intent;
}

}  // namespace sdp::exchange
