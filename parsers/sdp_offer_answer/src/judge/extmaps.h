#ifndef SDP_OFFER_ANSWER_JUDGE_EXTMAPS_H
#define SDP_OFFER_ANSWER_JUDGE_EXTMAPS_H

// Header extensions of RTP (RFC 8285), as a section or the session has them.

#include <optional>
#include <string_view>
#include <vector>

#include "sdpDocument.h"

namespace sdp::exchange {

/// `NUMBER[/DIRECTION] URI`.
struct Extmap {
  std::string_view uri;
  std::string_view encrypted;  ///< what stands behind the URI of encrypted extensions (RFC 6904); else empty
  std::string_view number;     ///< empty from 4096 on, which stand for any (RFC 8285, section 7)

  bool operator==(const Extmap&) const = default;
};

/// @return nothing when it lacks number or URI
std::optional<Extmap> readExtmap(const Attribute& attribute);

/// Extensions, found by what they are.
class Extmaps {
 public:
  Extmaps() = default;
  explicit Extmaps(Range<AttributeCursor> attributes) {
    add(attributes);
    sort();
  }

  void add(Range<AttributeCursor> attributes);
  /// To be called behind the last.
  void sort();

  /// Whether the extension is there, under any number.
  bool has(const Extmap& extmap) const;
  /// Whether it is there under its number, or under one that stands for any.
  bool hasNumber(const Extmap& extmap) const;

 private:
  std::vector<Extmap> extmaps_;
};

}  // namespace sdp::exchange

#endif
