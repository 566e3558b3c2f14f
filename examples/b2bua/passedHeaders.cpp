#include "passedHeaders.h"

#include <fnmatch.h>
#include <sofia-sip/bnf.h>

#include <algorithm>
#include <sstream>
#include <utility>

namespace b2bua {

namespace {

constexpr std::size_t kMostHeaders = 32;
constexpr std::size_t kMostBytes = 8'192;

/// What the engine says by itself to each party, or the stack.
constexpr const char* kOwnNames =
    "accept allow call-id contact content-disposition content-encoding content-language content-length content-type "
    "cseq from max-forwards mime-version min-se proxy-require rack record-route require retry-after route rseq "
    "session-expires supported timestamp to unsupported via warning";

bool isToken(const std::string& text) {
  return !text.empty() && std::cmp_equal(span_token(text.c_str()), text.size());
}

/// @param pattern  a name, or its beginning and "*"; of a name, no other character would mean something
bool matches(const std::string& pattern, const std::string& name) {
  return fnmatch(pattern.c_str(), name.c_str(), FNM_CASEFOLD) == 0;
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
  const std::size_t star = name.find('*');
  if (!isToken(name) || star == 0 || star < name.size() - 1) return "no name of a header: " + name;
  // A single letter may be the short form of any of these.
  bool own = name.size() == 1;
  std::istringstream words(kOwnNames);
  for (std::string word; words >> word;) own = own || matches(name, word);
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
    const auto isNamed = [&](const std::string& pattern) { return matches(pattern, name); };
    if (!isToken(name) || std::ranges::none_of(names, isNamed)) continue;
    const std::string line = name + ": " + valueOf(*header);
    if (!isLine(line) || lines.size() + line.size() > kMostBytes) continue;
    addLines(lines, line);
    ++count;
  }
  return lines;
}

}  // namespace b2bua
