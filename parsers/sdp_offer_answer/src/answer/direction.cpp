// Directions of answers.

#include "answer/direction.h"

namespace sdp::exchange {
namespace {

bool sends(Direction direction) {
  return direction == Direction::sendrecv || direction == Direction::sendonly;
}
bool receives(Direction direction) {
  return direction == Direction::sendrecv || direction == Direction::recvonly;
}

}  // namespace

Direction answeredDirection(Direction offered, Direction local) {
  const bool send = sends(local) && receives(offered);
  const bool receive = receives(local) && sends(offered);
  if (send) return receive ? Direction::sendrecv : Direction::sendonly;
  return receive ? Direction::recvonly : Direction::inactive;
}

Direction offeredDirection(const Section& offered, const Bundles& bundles) {
  constexpr std::uint16_t kDiscard = 9;
  const Direction direction = offered.direction();
  if (direction != Direction::sendrecv || offered.port() == kDiscard) return direction;
  const std::optional<Connection> connection = offered.connection();
  if (!connection || (connection->address != "0.0.0.0" && connection->address != "::")) return direction;
  return bundles.has(offered.index(), Credential::iceUfrag) ? direction : Direction::sendonly;
}

}  // namespace sdp::exchange
