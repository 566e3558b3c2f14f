#ifndef SDP_MODIFIERS_RECORD_TEXT_H
#define SDP_MODIFIERS_RECORD_TEXT_H

#include <string_view>

#include "text/fixedText.h"

// Records of removed m-lines as traces show them.

namespace sdpneg {

/// The codes of a record of removed m-lines, see `codesOf`, as unsigned decimals with commas between them, cut to
/// N - 1 characters.
template <std::size_t N>
FixedText<N> recordText(std::string_view codes) {
  FixedText<N> text;
  for (const char code : codes) text.add(text.size() != 0 ? "," : "").add(static_cast<unsigned char>(code));
  return text;
}

}  // namespace sdpneg

#endif
