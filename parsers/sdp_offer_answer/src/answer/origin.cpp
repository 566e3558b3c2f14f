// The o-line of an answer.

#include "answer/sessionWriter.h"
#include "origins.h"
#include "parameters.h"

namespace sdp::exchange {
namespace {

/// The o-line of a session; empty without one.
std::string_view originOf(const Document& document) {
  for (const Line& line : document.session().lines()) {
    if (line.content.starts_with("o=")) return line.content;
  }
  return {};
}

}  // namespace

std::string originLine(const Sides& sides, std::string_view before, std::string_view behind) {
  std::string_view own = originOf(sides.local);
  if (own.empty()) own = "o=- 0 0 IN IP4 0.0.0.0";
  const Document* const previous = sides.options.previous;
  if (previous == nullptr) return std::string(own);
  const Fields last(originOf(*previous));
  const std::string_view lastId = last[1];
  const std::string_view lastVersion = last[2];
  const Fields fields(own);
  if (lastVersion.empty() || fields[2].empty()) return std::string(own);
  std::string version(fields[2]);
  if (previous != nullptr && readNumber(lastVersion)) {
    const std::string text = std::string(before).append(behind);
    version = haveSameLines(previous->text(), text) ? withoutZeros(lastVersion) : raisedVersion(lastVersion);
  }
  const auto placeOf = [own](std::string_view field) {
    return static_cast<std::size_t>(field.data() - own.data());
  };
  const std::size_t id = placeOf(fields[1]);
  const std::size_t idEnd = id + fields[1].size();
  const std::size_t versionBegin = placeOf(fields[2]);
  std::string line(own.substr(0, id));
  line.append(lastId).append(own.substr(idEnd, versionBegin - idEnd)).append(version);
  return line.append(own.substr(versionBegin + fields[2].size()));
}

}  // namespace sdp::exchange
