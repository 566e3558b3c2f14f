#ifndef SDPNEG_COLOUR_H
#define SDPNEG_COLOUR_H

#include <string>
#include <string_view>

#include "output/streams.h"

namespace tool {

enum class Style { heading, label, good, warning, bad };

/// Adds colours, or leaves texts as they are.
class Palette {
 public:
  explicit Palette(bool coloured) : coloured_(coloured) {}

  /// @param text what may go to a terminal as it is
  std::string paint(Style style, std::string_view text) const;

 private:
  bool coloured_;
};

/// Decides about colours. NO_COLOR in the environment counts for "auto" only: an option that asks for colours
/// is the later word.
/// @param when "auto", "always" or "never"
Palette paletteFor(std::string_view when, const Output& output);

}  // namespace tool

#endif
