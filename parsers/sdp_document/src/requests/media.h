#ifndef SDP_DOCUMENT_MEDIA_H
#define SDP_DOCUMENT_MEDIA_H

// What a body says of media: where they go, who sends them, which attributes tell more.

#include <span>

#include "model.h"
#include "requests/selection.h"
#include "sdpDocumentRefusal.h"
#include "sdpDocumentViews.h"

namespace sdp::core {

/// An address literal, and its type as a c-line names it: "IP4" or "IP6".
struct AddressLiteral {
  std::string_view type;
  std::string_view text;
};
/// @return nothing when the text is no literal of either family (RFC 4566, section 9; no zone, no leading zeros)
std::optional<AddressLiteral> addressLiteralOf(std::string_view text);

inline constexpr std::uint16_t kLowestPort = 1024;
inline constexpr std::uint16_t kHighestPort = 65534;
/// Fit for RTP, whose RTCP has the next port.
inline bool isAnchorPort(std::uint32_t port) {
  return port >= kLowestPort && port <= kHighestPort && port % 2 == 0;
}

/// The line behind which a section's c-line belongs: the m-line, or the last i-line that follows it.
Index lineBeforeConnection(const Model& model, const Part& section);

Refusal anchor(Model& model, const AddressLiteral& address, std::uint16_t port);
Refusal unbundle(Model& model);
/// @param names as they were given, checked
Refusal stripAttributes(Model& model, std::string_view names, const Selection& selection);
bool areAttributeNames(std::string_view names);
Refusal setDirection(Model& model, Direction direction, const Selection& selection);
/// Gives one section a direction.
void setDirectionOf(Model& model, Part& section, Direction direction);
Refusal disable(Model& model, const Selection& selection);
Refusal disableSections(Model& model, std::span<const std::uint32_t> sections);
Refusal canonicalise(Model& model);

/// Adds a line behind the last of a part that is not empty.
bool addAtEnd(Model& model, Part& part, std::initializer_list<std::string_view> content);

}  // namespace sdp::core

#endif
