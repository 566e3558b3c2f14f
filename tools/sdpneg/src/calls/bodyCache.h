#ifndef SDPNEG_BODY_CACHE_H
#define SDPNEG_BODY_CACHE_H

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "calls/bodyShapes.h"
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
  /// Counts the bodies of two messages as asked for by of(), where what they come to is known by their shapes.
  /// @return whether of() would have had both
  bool passOver(std::size_t first, std::size_t second);
  /// The same for ofAny().
  void passOverAny(std::size_t first, std::size_t second);
  /// What is known of the bodies of two messages by their shapes. It holds until other ones are asked for.
  ShapeFacts& factsOf(std::size_t first, std::size_t second);
  bool isSpent() const { return isSpent_; }
  /// To be called before bodies that were read are gone through again.
  bool spend(std::size_t bytes);

 private:
  struct Slot {
    sdp::Document body;
    std::string_view text;  ///< that it is for; empty where there is none
    bool isRead = false;    ///< which is done when it is needed
    std::size_t message = 0;
    std::size_t used = 0;
  };

  Slot* find(std::size_t message);
  /// The slot for a message, which takes the place of another one. It costs what its body has.
  Slot* slotOf(std::size_t message);
  Slot* slotOfAny(std::size_t message);
  static const sdp::Document* read(Slot& slot);
  BodyShapes::Shape shapeOf(std::size_t message);
  BodyShapes::Shape shapeOfText(std::string_view text);

  const Call* call_ = nullptr;
  std::array<Slot, 6> slots_;
  BodyShapes shapes_;
  std::vector<std::optional<BodyShapes::Shape>> shapesOfMessages_;
  std::vector<std::pair<std::string_view, BodyShapes::Shape>> shapesOfTexts_;  ///< the last ones of the call
  std::size_t clock_ = 0;
  std::size_t left_ = 0;
  bool isSpent_ = false;
};

}  // namespace tool

#endif
