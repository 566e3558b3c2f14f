#ifndef SDPNEG_ANONYMOUS_URI_H
#define SDPNEG_ANONYMOUS_URI_H

#include <string>
#include <string_view>

#include "calls/anonymousText.h"

// URIs and the parameters of URIs and headers.

namespace tool {

/// Writes a URI: its user, host and what else tells who it is of; ports and what the protocol has of parameters stay.
void writeUri(Replacements& replacements, std::string_view uri, std::string& out);
/// Writes a text of Care::open in which URIs may stand.
void writeOpen(Replacements& replacements, std::string_view text, std::string& out);
/// Writes "name=value", the value as its name tells, maybe in quotes; or a name alone.
void writeParameter(Replacements& replacements, std::string_view parameter, std::string& out);
/// Writes what may stand in quotes by a function that writes what is within them, with what was escaped by '\'.
template <typename Write>
void writeQuoted(std::string_view text, std::string& out, const Write& write);

/// Where a text goes on behind one of these characters that is not in quotes, or ends.
std::size_t findUnquoted(std::string_view text, std::string_view characters, std::size_t from = 0);

template <typename Write>
void writeQuoted(std::string_view text, std::string& out, const Write& write) {
  if (text.size() < 2 || text.front() != '"' || text.back() != '"') {
    write(text, out);
    return;
  }
  const std::string_view inner = text.substr(1, text.size() - 2);
  out += '"';
  if (inner.find('\\') == std::string_view::npos) {
    write(inner, out);
  } else {
    std::string plain;
    for (std::size_t at = 0; at < inner.size(); ++at) {
      if (inner[at] == '\\' && at + 1 < inner.size()) ++at;
      plain += inner[at];
    }
    std::string written;
    write(plain, written);
    for (const char c : written) {
      if (c == '"' || c == '\\') out += '\\';
      out += c;
    }
  }
  out += '"';
}

}  // namespace tool

#endif
