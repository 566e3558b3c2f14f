#ifndef SDP_OFFER_ANSWER_PLAIN_TEXT_H
#define SDP_OFFER_ANSWER_PLAIN_TEXT_H

// Texts of a peer that may stand in lines of ours.

#include <string_view>

namespace sdp::exchange {

/// Whether a text has no NUL, CR or LF, at which some reader ends a line: what stands behind one would be a line of the
/// peer's making.
inline bool isPlain(std::string_view text) {
  constexpr std::string_view kEnds("\0\r\n", 3);
  return text.find_first_of(kEnds) == std::string_view::npos;
}

/// A text that is plain; empty for others.
inline std::string_view plainOrEmpty(std::string_view text) {
  return isPlain(text) ? text : std::string_view();
}

}  // namespace sdp::exchange

#endif
