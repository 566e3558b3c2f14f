// What the dialog asks of bodies.

#include "bodies.h"

#include <new>
#include <stdexcept>

#include "text/search.h"

namespace sdp::exchange {

void require(const Refusal& refusal) {
  if (refusal.reason == Reason::noMemory) throw std::bad_alloc();
  if (refusal.reason == Reason::textTooLong) throw std::length_error("body");
}

void read(Document& document, std::string_view text) { require(document.read(text)); }

bool isDescription(const Document& document) {
  if (document.sectionCount() != 0) return true;
  for (const Line& line : document.session().lines()) {
    if (sdpneg::startsWith(line.content, "v=")) return true;
  }
  return false;
}

std::uint32_t firstUnreadable(const Document& document) {
  for (const Section& section : document.sections()) {
    if (!section.isReadable()) return section.index();
  }
  return 0;
}

bool isAlive(const Document& document, std::uint32_t section) {
  const Section asked = document.section(section);
  return asked.isReadable() && !asked.isDisabled();
}

bool isHoldable(const Section& section) {
  return section.isReadable() && section.isRtp() && !section.isDisabled();
}

Direction held(Direction direction) {
  if (direction == Direction::sendrecv) return Direction::sendonly;
  return direction == Direction::recvonly ? Direction::inactive : direction;
}

std::vector<Direction> directionsOf(const Document& document) {
  std::vector<Direction> directions;
  directions.reserve(document.sectionCount());
  for (const Section& section : document.sections()) directions.push_back(section.direction());
  return directions;
}

}  // namespace sdp::exchange
