#include "gate.h"

#include "connections.h"

namespace b2bua {

namespace {

constexpr int kMostAtOnce = 2'000;  ///< timers want their turn
constexpr unsigned long kMostMalformed =
    100;  ///< of a source in a second; then it is not heard for the rest of it

}  // namespace

void Gate::open(const std::string& port) { socket_ = datagramSocketOf(port); }

bool Gate::mayCome(const SourceCounts& counts) const {
  return counts.malformed <= kMostMalformed && (mostMessages_ == 0 || counts.messages <= mostMessages_);
}

unsigned long Gate::sift(const std::function<unsigned long()>& malformed) {
  const auto* const source = reinterpret_cast<const sockaddr*>(&next_);
  if (SourceCounts* const counts = isNextKnown_ ? sources_.of(*source) : nullptr;
      counts != nullptr && malformed() != malformed_)
    ++counts->malformed;
  isNextKnown_ = false;
  for (unsigned long dropped = 0;; ++dropped) {
    char first = 0;
    socklen_t length = sizeof next_;
    if (dropped >= kMostAtOnce || recvfrom(socket_, &first, 1, MSG_PEEK | MSG_DONTWAIT,
                                           reinterpret_cast<sockaddr*>(&next_), &length) < 0)
      return dropped;
    SourceCounts* const counts = sources_.of(*source);
    if (counts != nullptr) ++counts->messages;
    isNextKnown_ = counts == nullptr || mayCome(*counts);
    if (isNextKnown_) {
      if (counts != nullptr) malformed_ = malformed();
      return dropped;
    }
    recv(socket_, &first, 1, MSG_DONTWAIT);
  }
}

bool Gate::isBeyond(const sockaddr& address) {
  SourceCounts* const counts = sources_.of(address);
  if (counts == nullptr) return false;
  ++counts->messages;
  return !mayCome(*counts);
}

}  // namespace b2bua
