#include "report/names.h"

#include <optional>

#include "output/printable.h"

namespace tool {

std::string_view Names::of(const Endpoint& participant) const {
  auto found = byAddress.find(participant.text());
  if (found == byAddress.end()) found = byAddress.find(participant.address.text());
  return found == byAddress.end() ? std::string_view() : found->second;
}

bool addName(Names& names, std::string_view assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string_view::npos || equals + 1 == assignment.size()) return false;
  const std::optional<Endpoint> endpoint = parseEndpoint(assignment.substr(0, equals));
  if (!endpoint) return false;
  names.byAddress[endpoint->text()] = assignment.substr(equals + 1);
  return true;
}

std::string labelOf(const Names& names, const Endpoint& participant) {
  const std::string_view name = names.of(participant);
  return name.empty() ? participant.text() : printable(name);
}

}  // namespace tool
