#ifndef SDPNEG_BODY_TEXT_H
#define SDPNEG_BODY_TEXT_H

#include <optional>
#include <string>
#include <string_view>

#include "input/inputFiles.h"
#include "input/sipMessage.h"

namespace tool {

/// An input with the place of its body, of which nothing is read yet.
struct BodyText {
  std::string name;
  std::string bytes;
  BodyRange body;
  std::optional<Problem> problem;  ///< why there is no body

  std::string_view text() const { return body.range.of(bytes); }
  /// The line of the input with which the body begins.
  std::size_t firstLine() const { return placeOf(bytes, body.range.begin).line; }
};

/// Reads an input for the document layer, which takes any text, also an empty one.
BodyText readBodyText(const Input& input);

}  // namespace tool

#endif
