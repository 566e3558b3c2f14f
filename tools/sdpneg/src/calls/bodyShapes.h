#ifndef SDPNEG_BODY_SHAPES_H
#define SDPNEG_BODY_SHAPES_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "calls/callKeys.h"
#include "calls/keyedHash.h"
#include "sdpDocument.h"

// What bodies are but for what differs from call to call. Most bodies of a capture have one of a few shapes, and what two
// shapes come to need be found out only once.

namespace tool {

/// A body's text with one o-line, one port and one public address for all that there are. Ports that mean something (0
/// and 9), addresses that do (private and unspecified ones), names and several ports stay, and all other lines.
std::string shapeOf(std::string_view sdp);

/// What an offer and its answer agree on.
struct AgreedMedia {
  std::vector<std::string> codecs;
  std::vector<sdp::Security> securities;
};

/// How an exchange leaves the audio.
struct HeldAudio {
  bool isActive = false;
  std::uint32_t section = 0;  ///< the first one that is held; 0 where none is
};

/// What is known of bodies of two shapes. What is not known, or not fine, is to be looked at.
struct ShapeFacts {
  std::optional<AgreedMedia> agreed;
  std::optional<HeldAudio> held;
  bool isJudgedFine = false;  ///< as offer and answer
  bool hasFineCodecs = false;
  bool goesBothWays = false;
  bool isPassedOnWell = false;  ///< as what came to a hop and what it sent
  bool isReachable = false;     ///< of both: there is no private address
};

/// The shapes of many bodies, of which so many are kept that they take little memory.
class BodyShapes {
 public:
  /// A shape; 0 stands for bodies whose shapes are not kept.
  using Shape = std::uint32_t;

  /// Forgets all where it is full. What was given out does not hold any more.
  void makeRoom();
  Shape of(std::string_view sdp);
  /// What is known of two shapes. It holds until another one is asked for; where there is no room for it, nothing is known
  /// and nothing stays known.
  ShapeFacts& factsOf(Shape first, Shape second);

 private:
  static constexpr std::size_t kMostPairs = 1024;

  std::unordered_map<std::string, Shape, KeyedHasher> shapes_;
  std::size_t bytes_ = 0;
  WordKeys pairs_{kMostPairs};
  std::vector<ShapeFacts> facts_;  ///< by pair
  ShapeFacts unknown_;
};

}  // namespace tool

#endif
