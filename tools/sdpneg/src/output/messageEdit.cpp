#include "output/messageEdit.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "text/search.h"

namespace tool {
namespace {

struct Replacement {
  Range range;
  std::string text;
};

/// The line end in front of a boundary belongs to it (RFC 2046 5.1.1), but where it is also the only end of the
/// SDP body's last line, that is taken with it. A length without it was right, and stays so.
std::size_t uncountedLineEnd(std::string_view body, std::string_view length) {
  const std::size_t lineEnd = body.ends_with("\r\n") ? 2 : body.ends_with('\n') ? 1 : 0;
  return sdpneg::numberOrZero<std::size_t>(length) + lineEnd == body.size() ? lineEnd : 0;
}

/// The new number of a Content-Length field.
/// @param size of the new body
std::string newLength(std::string_view text, Range body, Range digits, std::size_t size) {
  return std::to_string(size - std::min(size, uncountedLineEnd(body.of(text), digits.of(text))));
}

/// Goes through a text once, however many replacements there are. They do not overlap.
std::string withReplacements(std::string_view text, std::vector<Replacement> replacements) {
  std::sort(replacements.begin(), replacements.end(),
            [](const Replacement& a, const Replacement& b) { return a.range.begin < b.range.begin; });
  std::string result;
  result.reserve(text.size());
  std::size_t at = 0;
  for (const Replacement& each : replacements) {
    result.append(text.substr(at, each.range.begin - at)).append(each.text);
    at = each.range.end;
  }
  return result.append(text.substr(at));
}

}  // namespace

std::string withBody(std::string_view text, const BodyRange& body, std::string_view newBody) {
  std::vector<Replacement> replacements{{body.range, std::string(newBody)}};
  // What the replacements take away and add so far; from the inside out, as lengths count those inside them.
  std::size_t removed = body.range.end - body.range.begin;
  std::size_t added = newBody.size();
  for (auto around = body.around.rbegin(); around != body.around.rend(); ++around) {
    const std::size_t size = around->body.end - around->body.begin - removed + added;
    for (const Range digits : around->lengths) {
      replacements.push_back({digits, newLength(text, around->body, digits, size)});
      removed += digits.end - digits.begin;
      added += replacements.back().text.size();
    }
  }
  return withReplacements(text, std::move(replacements));
}

}  // namespace tool
