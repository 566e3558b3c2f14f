#include "output/colour.h"

#include <cstdlib>

namespace tool {
namespace {

std::string_view codeOf(Style style) {
  switch (style) {
    case Style::heading:
      return "\x1b[1m";
    case Style::label:
      return "\x1b[36m";
    case Style::good:
      return "\x1b[32m";
    case Style::warning:
      return "\x1b[33m";
    case Style::bad:
      return "\x1b[31m";
  }
  return "";
}

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

}  // namespace

std::string Palette::paint(Style style, std::string_view text) const {
  if (!coloured_) return std::string(text);
  std::string painted(codeOf(style));
  painted += text;
  return painted += "\x1b[0m";
}

Palette paletteFor(std::string_view when, const Output& output) {
  if (when != "auto") return Palette(when == "always");
  return Palette(!isSet("NO_COLOR") && isCapableTerminal(output));
}

}  // namespace tool
