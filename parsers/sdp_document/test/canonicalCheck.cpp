#include <algorithm>

#include "promiseChecks.h"

namespace plain {
namespace {

std::string withoutLeadingZeros(std::string_view port) {
  std::string text;
  bool leading = true;
  for (std::size_t i = 0; i < port.size(); ++i) {
    const bool last = i + 1 == port.size() || port[i + 1] == '/';
    if (leading && port[i] == '0' && !last) continue;
    leading = port[i] == '/';
    text += port[i];
  }
  return text;
}

bool isStraight(std::string_view before, std::string_view after) {
  const Words a = wordsOf(before.substr(2));
  const Words b = wordsOf(after.substr(2));
  if (a.size() != b.size() || a.size() < 4) return false;
  std::string joined = "m=";
  for (std::size_t i = 0; i < b.size(); ++i) joined.append(i == 0 ? "" : " ").append(b[i]);
  if (joined != after || !sameLetters(a[0], b[0]) || !sameLetters(a[2], b[2])) return false;
  return withoutLeadingZeros(a[1]) == b[1] && std::equal(a.begin() + 3, a.end(), b.begin() + 3);
}

bool isSpelt(std::string_view before, std::string_view after) {
  const std::string_view name = attributeName(before);
  if (name.data() == nullptr || before.size() != after.size() || !sameLetters(before, after)) return false;
  return before.substr(2 + name.size()) == after.substr(2 + name.size()) &&
         attributeName(after).size() == name.size();
}

}  // namespace

void checkCanonical(const PlainBody& before, const PlainBody& after, Complaints& complaints) {
  std::vector<std::string_view> wanted;
  for (const PlainLine& line : before.lines) {
    if (!line.content.empty()) wanted.push_back(line.content);
  }
  if (wanted.size() != after.lines.size())
    return complaints.add("another number of lines that are not empty");
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    const PlainLine& line = after.lines[i];
    if (line.end != "\r\n") complaints.add("a line without CR LF");
    if (line.content.find('\r') != std::string_view::npos) complaints.add("a CR within a line");
    if (line.content == wanted[i]) continue;
    if (isMLine(wanted[i]) ? !isStraight(wanted[i], line.content) : !isSpelt(wanted[i], line.content)) {
      complaints.add("another line: " + std::string(line.content));
    }
  }
}

}  // namespace plain
