#ifndef B2BUA_PASSED_HEADERS_H
#define B2BUA_PASSED_HEADERS_H

#include <string>
#include <vector>

#include "sip.h"

namespace b2bua {

/// @param name  of headers that are to go on, or how such names begin, with "*" behind it
/// @return what is wrong with it, or nothing
std::string checkPassedHeader(const std::string& name);

/// @return the headers of a message that go on, as lines with CR LF between them; some of them when there are many
std::string passedHeaders(const sip_t& message, const std::vector<std::string>& names);

/// Adds lines to others.
inline void addLines(std::string& lines, const std::string& more) {
  if (!more.empty()) lines += (lines.empty() ? "" : "\r\n") + more;
}

}  // namespace b2bua

#endif
