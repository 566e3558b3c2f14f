// Reading o-lines, and raising their versions.

#include "origins.h"

#include <algorithm>

#include "sdpDocumentFields.h"
#include "text/anyLines.h"

namespace sdp::exchange {
namespace {

constexpr std::size_t kVersion = 2;  // its field

/// The lines of a body that are not empty.
class Lines {
 public:
  explicit Lines(std::string_view body) : lines_(body) {}

  /// @return false when there is none left
  bool next() {
    while (!lines_.atEnd()) {
      line_ = lines_.next().content;
      if (line_.empty()) continue;
      isSession_ = isSession_ && !sdpneg::startsWith(line_, "m=");
      return true;
    }
    return false;
  }
  /// The next line but the session's first o-line.
  bool nextOther() {
    if (!next()) return false;
    if (wasOriginSeen_ || !isOrigin()) return true;
    wasOriginSeen_ = true;
    return next();
  }
  bool isOrigin() const { return isSession_ && sdpneg::startsWith(line_, "o="); }
  std::string_view line() const { return line_; }

 private:
  sdpneg::AnyLines lines_;
  std::string_view line_;
  bool isSession_ = true;
  bool wasOriginSeen_ = false;
};

}  // namespace

bool Origin::isSameSession(const Origin& other) const {
  Fields::Iterator a = Fields(line).begin();
  Fields::Iterator b = Fields(other.line).begin();
  for (std::size_t field = 0; *a == *b || field == kVersion; ++a, ++b, ++field) {
    if ((*a).empty()) return true;
  }
  return false;
}

std::optional<Origin> originOf(std::string_view body) {
  Lines lines(body);
  while (lines.next()) {
    if (!lines.isOrigin()) continue;
    const std::string_view version = Fields(lines.line())[kVersion];
    if (version.empty() || !std::all_of(version.begin(), version.end(), sdpneg::isDigit)) return std::nullopt;
    return Origin{lines.line(), version};
  }
  return std::nullopt;
}

std::string_view withoutZeros(std::string_view digits) {
  return digits.substr(std::min(digits.find_first_not_of('0'), digits.size() - 1));
}

std::strong_ordering compareVersions(std::string_view a, std::string_view b) {
  a = withoutZeros(a);
  b = withoutZeros(b);
  if (a.size() != b.size()) return a.size() <=> b.size();
  return a.compare(b) <=> 0;
}

std::string raisedVersion(std::string_view version) {
  std::string raised(withoutZeros(version));
  std::size_t at = raised.size();
  while (at != 0 && raised[at - 1] == '9') raised[--at] = '0';
  if (at == 0) return raised.insert(0, 1, '1');
  ++raised[at - 1];
  return raised;
}

bool haveSameLines(std::string_view a, std::string_view b) {
  Lines ofA(a);
  Lines ofB(b);
  while (ofA.nextOther()) {
    if (!ofB.nextOther() || ofA.line() != ofB.line()) return false;
  }
  return !ofB.nextOther();
}

std::string following(std::string_view body, std::string_view sent) {
  const std::optional<Origin> before = originOf(sent);
  const std::optional<Origin> own = originOf(body);
  if (!before || !own) return std::string(body);
  if (haveSameLines(body, sent)) return std::string(sent);
  const std::string version = raisedVersion(before->version);
  const auto begin = static_cast<std::size_t>(own->line.data() - body.data());
  std::string text;
  text.reserve(body.size() + before->line.size() + 1);
  text.append(body.substr(0, begin)).append(before->before()).append(version).append(before->behind());
  return text.append(body.substr(begin + own->line.size()));
}

}  // namespace sdp::exchange
