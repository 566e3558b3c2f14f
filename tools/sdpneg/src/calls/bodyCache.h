#ifndef SDPNEG_BODY_CACHE_H
#define SDPNEG_BODY_CACHE_H

#include <array>
#include <cstddef>
#include <string_view>

#include "calls/call.h"
#include "sdpDocument.h"

namespace tool {

/// Bodies of a call that were read last. Relays repeat them, and an offer has several answers. It can be used for one call
/// after another and then makes no documents anew, which costs more than reading most bodies.
class BodyCache {
 public:
  /// Begins with another call, or with one whose texts are others now.
  /// @param call must stay where it is as long as bodies are asked for
  void begin(const Call& call);

  /// The body of a message. It serves until four others were asked for.
  /// @return null where it cannot be read, and when as much was read as a call of this size may cost
  const sdp::Document* of(std::size_t message);
  /// The same, whatever was read.
  const sdp::Document* ofAny(std::size_t message);
  bool isSpent() const { return isSpent_; }
  /// To be called before bodies that were read are gone through again.
  bool spend(std::size_t bytes);

 private:
  struct Slot {
    sdp::Document body;
    std::string_view text;  ///< that it has read; empty where it has none
    std::size_t message = 0;
    std::size_t used = 0;
  };

  Slot* find(std::size_t message);
  const sdp::Document* read(std::size_t message);

  const Call* call_ = nullptr;
  std::array<Slot, 6> slots_;
  std::size_t clock_ = 0;
  std::size_t left_ = 0;
  bool isSpent_ = false;
};

}  // namespace tool

#endif
