// The o-line of an answer.

#include "answer/sessionWriter.h"
#include "parameters.h"
#include "text/anyLines.h"

namespace sdp::exchange {
namespace {

/// The o-line of a session; empty without one.
std::string_view originOf(const Document& document) {
  for (const Line& line : document.session().lines()) {
    if (line.content.starts_with("o=")) return line.content;
  }
  return {};
}

/// The lines of a text that are not empty, without the first o-line.
class OtherLines {
 public:
  explicit OtherLines(std::string_view text) : lines_(text) {}
  /// The next one; empty when there is none left.
  std::string_view next() {
    while (!lines_.atEnd()) {
      const std::string_view line = lines_.next().content;
      const bool isOrigin = !hasOrigin_ && line.starts_with("o=");
      hasOrigin_ = hasOrigin_ || isOrigin;
      if (!line.empty() && !isOrigin) return line;
    }
    return {};
  }

 private:
  sdpneg::AnyLines lines_;
  bool hasOrigin_ = false;
};

bool areSameLines(std::string_view before, std::string_view text) {
  OtherLines theirs(before);
  OtherLines ours(text);
  for (;;) {
    const std::string_view line = theirs.next();
    if (line != ours.next()) return false;
    if (line.empty()) return true;
  }
}

/// A number of any length without zeros in front.
std::string withoutZeros(std::string_view digits) {
  const std::size_t first = digits.find_first_not_of('0');
  return first == std::string_view::npos ? "0" : std::string(digits.substr(first));
}

std::string raised(std::string digits) {
  for (std::size_t i = digits.size(); i-- > 0; digits[i] = '0') {
    if (digits[i] != '9') {
      ++digits[i];
      return digits;
    }
  }
  return "1" + digits;
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
  if (readNumber(lastVersion)) {
    const std::string text = std::string(before).append(behind);
    version = withoutZeros(lastVersion);
    if (!areSameLines(previous->text(), text)) version = raised(version);
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
