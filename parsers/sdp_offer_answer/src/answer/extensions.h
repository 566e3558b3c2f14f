#ifndef SDP_OFFER_ANSWER_EXTENSIONS_H
#define SDP_OFFER_ANSWER_EXTENSIONS_H

// Header extensions of RTP (RFC 8285) that both sides have.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sdpDocumentViews.h"

namespace sdp::exchange {

/// An extmap attribute.
struct Extension {
  std::string_view number;
  std::optional<Direction> direction;
  std::string_view uri;
  std::string_view encrypted;  ///< what is encrypted, where the URI says that something is (RFC 6904)
  std::string_view text;       ///< the URI and what stands behind it
};
/// @return nothing when the URI is missing, or the number none
std::optional<Extension> readExtension(const Attribute& attribute);
bool isSameExtension(const Extension& a, const Extension& b);

/// Extensions by their URIs.
class ExtensionMap {
 public:
  explicit ExtensionMap(Range<AttributeCursor> attributes);
  /// The first of the URI; null where there is none.
  const Extension* find(const Extension& wanted) const;

 private:
  std::vector<Extension> extensions_;
};

/// The value of extmap in the answer: the number of the offer, and never more of directions than both have.
std::string answeredExtension(const Extension& offered, const Extension& local);

}  // namespace sdp::exchange

#endif
