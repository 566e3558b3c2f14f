#include "output/columns.h"

#include <algorithm>

namespace tool {
namespace {

using Row = std::vector<Cell>;

std::vector<std::size_t> widthsOf(const std::vector<Row>& rows) {
  std::vector<std::size_t> widths;
  for (const Row& row : rows) {
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
      if (widths.size() <= i) widths.push_back(0);
      widths[i] = std::max(widths[i], row[i].text.size());
    }
  }
  return widths;
}

}  // namespace

std::string inColumns(const std::vector<Row>& rows, const Palette& palette) {
  const std::vector<std::size_t> widths = widthsOf(rows);
  std::string table;
  for (const Row& row : rows) {
    std::size_t gap = 0;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const Cell& cell = row[i];
      gap += 2;
      if (!cell.text.empty()) {
        table.append(gap, ' ').append(cell.style ? palette.paint(*cell.style, cell.text) : cell.text);
        gap = 0;
      }
      if (i + 1 < row.size()) gap += widths[i] - cell.text.size();
    }
    table += '\n';
  }
  return table;
}

}  // namespace tool
