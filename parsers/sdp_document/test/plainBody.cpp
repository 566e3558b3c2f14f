#include "plainBody.h"

#include <algorithm>

namespace plain {
namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }
char small(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string_view withoutZeros(std::string_view digits) {
  while (digits.size() > 1 && digits[0] == '0') digits.remove_prefix(1);
  return digits;
}

bool isPort(std::string_view text) {
  if (!hasOnlyDigits(text)) return false;
  text = withoutZeros(text);
  return text.size() < 5 || (text.size() == 5 && text <= "65535");
}

bool isPortField(std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) return isPort(text);
  const std::string_view count = text.substr(slash + 1);
  return isPort(text.substr(0, slash)) && hasOnlyDigits(count) && withoutZeros(count) != "0";
}

/// NAME/CLOCK or NAME/CLOCK/CHANNELS; its name, empty for another form.
std::string_view encodingName(std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) return {};
  const std::string_view numbers = text.substr(slash + 1);
  const std::size_t second = numbers.find('/');
  if (!hasOnlyDigits(numbers.substr(0, second))) return {};
  if (second != std::string_view::npos && !hasOnlyDigits(numbers.substr(second + 1))) return {};
  return text.substr(0, slash);
}

/// The value of `apt` among parameters.
std::string_view aptOf(std::string_view parameters) {
  while (!parameters.empty()) {
    const std::size_t semicolon = std::min(parameters.find(';'), parameters.size());
    const std::string_view parameter = parameters.substr(0, semicolon);
    parameters.remove_prefix(std::min(semicolon + 1, parameters.size()));
    const std::size_t equals = parameter.find('=');
    if (equals == std::string_view::npos) continue;
    const Words name = wordsOf(parameter.substr(0, equals));
    const std::string_view value = wordOf(parameter.substr(equals + 1), 0);
    if (name.size() == 1 && sameLetters(name[0], "apt") && hasOnlyDigits(value)) return value;
  }
  return {};
}

}  // namespace

Words wordsOf(std::string_view text) {
  Words words;
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t end = at;
    while (end < text.size() && !isBlank(text[end])) ++end;
    if (end != at) words.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return words;
}

std::string_view wordOf(std::string_view text, std::size_t n) {
  const Words words = wordsOf(text);
  return n < words.size() ? words[n] : std::string_view();
}

std::string_view attributeName(std::string_view line) {
  if (line.substr(0, 2) != "a=") return {};
  return line.substr(2, line.find(':', 2) - 2);
}

std::string_view attributeValue(std::string_view line) {
  const std::size_t colon = line.find(':');
  return colon == std::string_view::npos ? std::string_view() : line.substr(colon + 1);
}

bool hasOnlyDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool sameLetters(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return small(x) == small(y); });
}

bool isIn(std::string_view word, const Words& words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

PlainBody::PlainBody(std::string_view body) : text(body), sections(1) {
  while (!body.empty()) {
    const std::size_t lf = body.find('\n');
    const std::size_t size = lf == std::string_view::npos ? body.size() : lf + 1;
    std::size_t length = lf == std::string_view::npos ? size : lf;
    if (length != 0 && body[length - 1] == '\r') --length;
    const std::string_view content = body.substr(0, length);
    if (content.substr(0, 2) == "m=") {
      sections.back().end = lines.size();
      sections.emplace_back().first = lines.size();
      sections.back().mLine = content;
      sections.back().words = wordsOf(content.substr(2));
    }
    lines.push_back({sections.size() - 1, content, body.substr(length, size - length)});
    body.remove_prefix(size);
  }
  sections.back().end = lines.size();
  for (std::size_t n = 1; n < sections.size(); ++n) {
    PlainSection& section = sections[n];
    section.readable = section.words.size() > 3 && isPortField(section.port());
    section.bundleOnly = has(n, "bundle-only");
    section.zero =
        section.readable && withoutZeros(section.port().substr(0, section.port().find('/'))) == "0";
    section.alive = section.readable && (!section.zero || section.bundleOnly);
    for (std::size_t i = section.first; i < section.end; ++i) {
      if (attributeName(lines[i].content) != "mid") continue;
      section.mid = wordOf(attributeValue(lines[i].content), 0);
      break;
    }
  }
}

bool PlainBody::has(std::size_t section, std::string_view name) const {
  for (std::size_t i = sections[section].first; i < sections[section].end; ++i) {
    const std::string_view found = attributeName(lines[i].content);
    if (found.data() != nullptr && found == name) return true;
  }
  return false;
}

Words PlainBody::groupedMids() const {
  Words mids;
  for (std::size_t i = 0; i < sections[0].end; ++i) {
    if (attributeName(lines[i].content) != "group") continue;
    const Words words = wordsOf(attributeValue(lines[i].content));
    if (words.size() > 1) mids.insert(mids.end(), words.begin() + 1, words.end());
  }
  return mids;
}

std::vector<std::pair<std::string_view, std::string_view>> PlainBody::repairs(std::size_t section) const {
  Words named;  // payload types whose encoding is known
  std::vector<std::pair<std::string_view, std::string_view>> rtx;
  for (std::size_t i = sections[section].first; i < sections[section].end; ++i) {
    const std::string_view line = lines[i].content;
    const Words words = wordsOf(attributeValue(line));
    if (attributeName(line) == "rtpmap" && words.size() > 1 && !isIn(words[0], named)) {
      const std::string_view name = encodingName(words[1]);
      if (name.empty()) continue;
      named.push_back(words[0]);
      if (sameLetters(name, "rtx")) rtx.emplace_back(words[0], std::string_view());
    }
  }
  for (std::size_t i = sections[section].first; i < sections[section].end; ++i) {
    const std::string_view line = lines[i].content;
    if (attributeName(line) != "fmtp") continue;
    const std::string_view value = attributeValue(line);
    const std::string_view payload = wordOf(value, 0);
    for (auto& [repairing, repaired] : rtx) {
      if (repairing != payload || !repaired.empty()) continue;
      const std::string_view behind =
          value.substr(static_cast<std::size_t>(payload.data() + payload.size() - value.data()));
      repaired = aptOf(behind);
    }
  }
  return rtx;
}

std::size_t PlainBody::blankLines() const {
  return static_cast<std::size_t>(
      std::count_if(lines.begin(), lines.end(), [](const PlainLine& line) { return line.content.empty(); }));
}

}  // namespace plain
