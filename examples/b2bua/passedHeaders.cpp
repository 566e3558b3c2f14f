#include "passedHeaders.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "bodyLines.h"

namespace b2bua {

namespace {

constexpr std::size_t kMostHeaders = 32;
constexpr std::size_t kMostBytes = 8'192;

/// What the engine says by itself to each party, or the stack.
constexpr std::string_view kOwnNames =
    "accept allow call-id contact content-disposition content-encoding content-language content-length content-type "
    "cseq from max-forwards mime-version min-se proxy-require rack record-route require retry-after route rseq "
    "session-expires supported timestamp to unsupported via warning";

bool isToken(std::string_view text) {
  const auto isTokenCharacter = [](unsigned char c) {
    return c < 0x80 && (std::isalnum(c) != 0 ||
                        std::string_view("-.!%*_+`'~").find(static_cast<char>(c)) != std::string_view::npos);
  };
  return !text.empty() && std::ranges::all_of(text, isTokenCharacter);
}

/// @param pattern  a name in lower case, or its beginning and "*"
bool matches(std::string_view pattern, std::string_view name) {
  if (!pattern.ends_with('*')) return pattern == name;
  return name.starts_with(pattern.substr(0, pattern.size() - 1));
}

std::string nameOf(const sip_header_t& header) {
  const bool known = header.sh_class != sip_unknown_class;
  const char* const name = known ? header.sh_class->hc_name : header.sh_unknown->un_name;
  return name != nullptr ? name : "";
}

/// The stack keeps headers that it does not know as they came, maybe on several lines that belong together.
std::string valueOf(const sip_header_t& header) {
  if (header.sh_class != sip_unknown_class) return headerValue(&header);
  std::string value = header.sh_unknown->un_value != nullptr ? header.sh_unknown->un_value : "";
  for (std::size_t end = value.find("\r\n"); end != std::string::npos; end = value.find("\r\n", end)) {
    if (value.find_first_of(" \t", end) != end + 2) break;
    value.erase(end, 2);
  }
  return value;
}

/// A line of its own, whatever the parser let through.
bool isLine(const std::string& text) {
  return std::ranges::none_of(text, [](unsigned char c) { return (c < ' ' && c != '\t') || c == 0x7f; });
}

}  // namespace

std::string checkPassedHeader(const std::string& name) {
  const std::string pattern = lowerCase(name);
  const std::string_view begin = std::string_view(pattern).substr(0, pattern.find('*'));
  if (!isToken(begin) || pattern.size() - begin.size() > (pattern.ends_with('*') ? 1U : 0U))
    return "no name of a header: " + name;
  // A single letter may be the short form of any of these.
  bool own = pattern.size() == 1;
  std::istringstream words{std::string(kOwnNames)};
  for (std::string word; words >> word;) own = own || matches(pattern, word);
  return own ? "a header of the engine's own: " + name : "";
}

std::string passedHeaders(const sip_t& message, const std::vector<std::string>& names) {
  std::string lines;
  std::size_t count = 0;
  const auto* header = reinterpret_cast<const sip_header_t*>(message.sip_request);
  if (header == nullptr) header = reinterpret_cast<const sip_header_t*>(message.sip_status);
  for (; header != nullptr && count < kMostHeaders;
       header = reinterpret_cast<const sip_header_t*>(header->sh_succ)) {
    const std::string name = nameOf(*header);
    const auto isNamed = [&, lower = lowerCase(name)](const std::string& pattern) {
      return matches(lowerCase(pattern), lower);
    };
    if (!isToken(name) || std::ranges::none_of(names, isNamed)) continue;
    const std::string line = name + ": " + valueOf(*header);
    if (!isLine(line) || lines.size() + line.size() > kMostBytes) continue;
    addLines(lines, line);
    ++count;
  }
  return lines;
}

}  // namespace b2bua
