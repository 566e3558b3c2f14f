#include "calls/callFilter.h"

#include <algorithm>

#include "text/search.h"

namespace tool {
namespace {

bool hasCallId(const Call& call, const std::vector<std::string>& patterns) {
  return std::ranges::any_of(call.legs, [&](const Leg& leg) {
    return std::ranges::any_of(
        patterns, [&](const std::string& pattern) { return matchesPattern(leg.callId, pattern); });
  });
}

bool hasPart(std::string_view uri, std::string_view part) {
  return part.empty() || sdpneg::findNoCase(uri, part) != sdpneg::npos;
}

bool isAt(const Endpoint& endpoint, const Endpoint& sought) {
  return endpoint.address == sought.address && (sought.port == 0 || endpoint.port == sought.port);
}

bool hasAddress(const Call& call, const std::vector<Endpoint>& addresses) {
  return std::ranges::any_of(call.messages, [&](const CallMessage& message) {
    return std::ranges::any_of(addresses, [&](const Endpoint& sought) {
      return isAt(message.flow.source, sought) || isAt(message.flow.destination, sought);
    });
  });
}

/// A call without times is at none.
bool isWithin(const Call& call, CaptureTime since, CaptureTime until) {
  if (since && (!call.end || *call.end < *since)) return false;
  return !until || (call.start && *call.start <= *until);
}

}  // namespace

bool CallFilter::matches(const Call& call) const {
  return (callIds.empty() || hasCallId(call, callIds)) && hasPart(call.from, from) && hasPart(call.to, to) &&
         (addresses.empty() || hasAddress(call, addresses)) && isWithin(call, since, until);
}

bool matchesPattern(std::string_view text, std::string_view pattern) {
  // Pieces between stars are found one after another, each as early as can be; the last one ends the text.
  const std::size_t first = pattern.find('*');
  if (first == std::string_view::npos) return text == pattern;
  const std::string_view last = pattern.substr(pattern.rfind('*') + 1);
  if (!sdpneg::startsWith(text, pattern.substr(0, first)) || text.size() < first + last.size() ||
      !text.ends_with(last)) {
    return false;
  }
  text = text.substr(first, text.size() - first - last.size());
  sdpneg::Words pieces(pattern.substr(first, pattern.size() - first - last.size()), "*");
  for (std::string_view piece = pieces.next(); !piece.empty(); piece = pieces.next()) {
    const std::size_t found = text.find(piece);
    if (found == std::string_view::npos) return false;
    text.remove_prefix(found + piece.size());
  }
  return true;
}

}  // namespace tool
