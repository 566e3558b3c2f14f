#ifndef SDPNEG_REWRITING_H
#define SDPNEG_REWRITING_H

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "input/place.h"
#include "inspection/traceLines.h"
#include "requests/requestTable.h"

namespace tool {

/// The m-lines that a request removed.
struct Removed {
  std::string_view request;
  std::string record;
};

/// A request that left the body as it was, and why where that is known.
struct Idle {
  std::string request;  ///< "request 2, remove-ice,"
  std::string why;
};

/// Something that a request did to the body beside what it was asked for.
struct SideEffect {
  std::string_view request;
  std::string what;
};

/// What requests made of a body.
struct Rewritten {
  std::string text;                 ///< the new body
  std::vector<SideEffect> effects;  ///< of each request on what the one before it left
  std::vector<Removed> removed;     ///< of those that removed some
  std::vector<Idle> idle;           ///< of those that had nothing to do
  std::optional<Problem> refusal;   ///< which request was refused and why
  std::vector<TraceLine> trace;
};

/// Applies requests to a body in their order. Behind each of an object the new body is read again: one that the library
/// cannot read is refused, and the next request meets an object whose summary is that of its text.
Rewritten rewrite(const cSdpNegotiator& body, std::span<const RequestCall> calls);

/// The same for a text that nothing has read yet. A request of the document layer takes it as it is; the first one of
/// an object behind the beginning or behind such is refused where the object cannot read what there is then.
/// @param firstLine the line of the input with which the text begins
Rewritten rewrite(std::string_view text, std::size_t firstLine, std::span<const RequestCall> calls);

}  // namespace tool

#endif
