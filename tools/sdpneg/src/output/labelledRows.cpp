#include "output/labelledRows.h"

#include "output/printable.h"

namespace tool {
namespace {

constexpr std::size_t kLabelWidth = 18;

}  // namespace

void LabelledRows::add(std::string_view label, std::string_view value, std::optional<Style> style) {
  const std::string shown = printable(value);
  const std::size_t gap = label.size() < kLabelWidth ? kLabelWidth - label.size() : 1;
  text_ += "  " + palette_.paint(Style::label, label) + std::string(gap, ' ');
  text_ += (style ? palette_.paint(*style, shown) : shown) + "\n";
}

void LabelledRows::addGiven(std::string_view label, std::string_view value) {
  if (!value.empty()) add(label, value);
}

}  // namespace tool
