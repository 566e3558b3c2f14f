// Keeping in mind what was sent, and what was wanted by it.

#include "outgoing.h"

#include "answer/direction.h"
#include "bodies.h"
#include "bundles.h"
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
  data.sent = body.text();
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
