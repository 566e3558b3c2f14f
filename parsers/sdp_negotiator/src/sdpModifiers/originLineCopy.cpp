#include "sdpModifiers/originLineCopy.h"

// The o-line of another body in the place of one's own.

namespace sdpneg {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

}  // namespace

Refusal replaceOriginLine(SdpText& text, Span old, std::string_view line) {
  const bool inside = old.begin <= old.end && old.end <= text.size();
  if (!inside || line.size() + kLineEnd.size() > text.room() + (old.end - old.begin)) {
    return {.reason = SDP_REFUSED_O_LINE_DOES_NOT_FIT};
  }
  text.replace(old, line);
  text.insert(old.begin + line.size(), kLineEnd);
  return {};
}

}  // namespace sdpneg
