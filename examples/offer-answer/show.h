// What the examples share: showing bodies.

#ifndef SHOW_H
#define SHOW_H

#include <iostream>
#include <string_view>

/// Prints a body, each line without its CR.
inline void show(std::string_view body) {
  for (const char c : body) {
    if (c != '\r') std::cout << c;
  }
}

/// The first line of a body that begins so: "o=" finds the o-line.
inline std::string_view lineOf(std::string_view body, std::string_view start) {
  while (!body.empty()) {
    const std::string_view line = body.substr(0, body.find_first_of("\r\n"));
    if (line.substr(0, start.size()) == start) return line;
    const std::size_t end = body.find('\n');
    body.remove_prefix(end == std::string_view::npos ? body.size() : end + 1);
  }
  return {};
}

#endif
