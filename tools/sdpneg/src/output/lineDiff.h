#ifndef SDPNEG_LINE_DIFF_H
#define SDPNEG_LINE_DIFF_H

#include <string>
#include <string_view>

#include "output/colour.h"

namespace tool {

/// A text with its name.
struct NamedText {
  std::string_view name;
  std::string_view text;
};

/// The lines that differ between two texts, as a unified diff for readers: three lines of context, and control
/// characters made visible, the CRs at line ends only where some lines lack them. Texts with so many different
/// lines that a comparison would take long are told apart as a whole.
/// @return an empty text when both are the same
std::string unifiedDiff(NamedText before, NamedText after, const Palette& palette);

}  // namespace tool

#endif
