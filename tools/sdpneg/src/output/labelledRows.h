#ifndef SDPNEG_LABELLED_ROWS_H
#define SDPNEG_LABELLED_ROWS_H

#include <optional>
#include <string>
#include <string_view>

#include "output/colour.h"

namespace tool {

/// Collects lines of a label and a value. Values are made printable.
class LabelledRows {
 public:
  explicit LabelledRows(const Palette& palette) : palette_(palette) {}

  /// @param style of the value; none for the terminal's own
  void add(std::string_view label, std::string_view value, std::optional<Style> style = std::nullopt);
  /// Adds a line where there is a value.
  void addGiven(std::string_view label, std::string_view value);

  const std::string& text() const { return text_; }

 private:
  const Palette& palette_;
  std::string text_;
};

}  // namespace tool

#endif
