// Attributes of sections: directions, and those that are to go by their names.

#include <algorithm>

#include "edits.h"
#include "keys.h"
#include "requests/media.h"
#include "text/search.h"

namespace sdp::core {
namespace {

/// Without these a body falls apart.
constexpr Kinds kNeverStripped = kindsOf(Kind::group, Kind::mid, Kind::bundleOnly);
constexpr Kinds kAttributes = ~(one(Kind::attribute) - 1) & ~kNeverStripped;

/// Calls `visit(std::string_view)` for each name of a list with commas; ends when that returns true.
template <typename Visit>
bool anyName(std::string_view names, Visit visit) {
  for (;;) {
    const std::size_t comma = names.find(',');
    if (visit(names.substr(0, comma))) return true;
    if (comma == std::string_view::npos) return false;
    names.remove_prefix(comma + 1);
  }
}

bool isNamed(std::string_view name, std::string_view names) {
  return anyName(names, [name](std::string_view wanted) {
    return wanted.ends_with('*') ? name.starts_with(wanted.substr(0, wanted.size() - 1)) : name == wanted;
  });
}

bool isOddInName(char c) { return c == ' ' || c == ':' || sdpneg::isControl(c); }

void strip(Model& model, const Part& part, std::string_view names) {
  forEach(model, part, kAttributes, [&](Index i) {
    if (isNamed(nameOf(model.lines[i]), names)) removeLine(model, i);
  });
}

}  // namespace

bool areAttributeNames(std::string_view names) {
  return !anyName(names, [](std::string_view name) {
    return name.empty() || sdpneg::contains(name.substr(0, name.size() - 1), "*") ||
           std::any_of(name.begin(), name.end(), isOddInName);
  });
}

Refusal stripAttributes(Model& model, std::string_view names, const Selection& selection) {
  choose(model, selection);
  if (selection.isAll()) strip(model, model.session(), names);
  for (const Index n : model.chosen) strip(model, model.parts[n], names);
  return {};
}

Refusal setDirection(Model& model, Direction direction, const Selection& selection) {
  choose(model, selection, true);
  for (const Index n : model.chosen) setDirectionOf(model, model.parts[n], direction);
  return {};
}

void setDirectionOf(Model& model, Part& section, Direction direction) {
  const Index first = firstOf(model, section, kDirections);
  if (first == kNone) {
    if (directionOf(model, section) != direction) addAtEnd(model, section, {"a=", textOf(direction)});
    return;
  }
  forEach(model, section, kDirections, [&](Index i) {
    if (i != first) removeLine(model, i);
  });
  const std::string_view word = textOf(direction);
  if (model.lines[first].content().substr(2) != word) replaceLine(model, section, first, {"a=", word});
}

bool addAtEnd(Model& model, Part& part, std::initializer_list<std::string_view> content) {
  Index last = part.end;
  while (last > part.first && (model.lines[last - 1].gone != 0 || model.lines[last - 1].kind == Kind::empty))
    --last;
  if (last == part.first) return false;
  addBehind(model, part, last - 1, content);
  return true;
}

}  // namespace sdp::core
