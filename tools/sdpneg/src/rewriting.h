#ifndef SDPNEG_REWRITING_H
#define SDPNEG_REWRITING_H

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "requestLine.h"
#include "traceLines.h"

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

/// What requests made of a body.
struct Rewritten {
  std::string text;                    ///< the new body
  std::vector<Removed> removed;        ///< of those that removed some
  std::vector<Idle> idle;              ///< of those that had nothing to do
  std::optional<std::string> refusal;  ///< which request was refused and why
  std::vector<TraceLine> trace;
};

/// Applies requests to a body in their order. Behind each the new body is parsed, so that the next one meets an
/// object whose summary is that of its text.
Rewritten rewrite(const cSdpNegotiator& body, std::span<const RequestCall> calls);

}  // namespace tool

#endif
