#ifndef SDPNEG_COLUMNS_H
#define SDPNEG_COLUMNS_H

#include <optional>
#include <string>
#include <vector>

#include "output/colour.h"

namespace tool {

struct Cell {
  std::string text;  ///< printable
  std::optional<Style> style = std::nullopt;
};

/// Lays rows out in columns, two blanks apart. The last cell of a row takes what it needs.
std::string inColumns(const std::vector<std::vector<Cell>>& rows, const Palette& palette);

}  // namespace tool

#endif
