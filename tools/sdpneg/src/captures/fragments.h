#ifndef SDPNEG_FRAGMENTS_H
#define SDPNEG_FRAGMENTS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <unordered_map>
#include <utility>

#include "captures/capturedMessage.h"
#include "captures/ipPacket.h"
#include "captures/pieces.h"

// Packets put together again from their fragments, which may come in any order.

namespace tool {

inline constexpr std::size_t kMaxFragmentedPackets = 1024;
inline constexpr std::size_t kMaxFragmentBytes = std::size_t{16} * 1024 * 1024;
inline constexpr std::size_t kMaxFragmentsOfPacket = 1024;
/// Microseconds of the capture for which fragments wait for the others.
inline constexpr std::int64_t kFragmentPatience = 30 * 1000000LL;

class Fragments {
 public:
  /// Gets each packet that is whole, or cut where it is given up and its front is there.
  using Done = std::function<void(const IpPacket&, CaptureTime)>;

  Fragments(CaptureOutput& output, Done done) : output_(&output), done_(std::move(done)) {}

  /// @param packet one with a fragment's place
  void take(const IpPacket& packet, CaptureTime time);
  /// Gives up what is not whole.
  void flush();

  std::size_t count() const { return waiting_.size(); }
  /// What keeping them takes, about.
  std::size_t size() const { return size_; }

 private:
  struct Key {
    Flow flow;  ///< without ports
    std::uint32_t id;
    std::uint8_t protocol;
    bool operator==(const Key&) const = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const;
  };
  struct Waiting {
    Key key;
    CaptureTime since;
    CaptureTime last;
    Pieces pieces;
    std::size_t end = 0;  ///< of the whole packet, 0 while it is not known
  };
  using Place = std::list<Waiting>::iterator;

  Place placeOf(const IpPacket& packet, CaptureTime time);
  void giveUp(Place place, CaptureTrouble trouble);
  void giveUpOld(CaptureTime now);
  void finish(Place place);

  CaptureOutput* output_;
  Done done_;
  std::list<Waiting> waiting_;  ///< the oldest first
  std::unordered_map<Key, Place, KeyHash> places_;
  std::size_t size_ = 0;
};

}  // namespace tool

#endif
