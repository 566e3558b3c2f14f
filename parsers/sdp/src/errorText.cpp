#include "errorText.h"

#include <cstdio>

#include "sdpCapacities.h"

// What is wrong with a text, in one sentence with its line and column.

namespace sdpcodec {

namespace {

constexpr std::size_t kShown = 40;  // characters of the offending text in a message

// A quotation that shows every byte as a printable character.
struct Quotation {
  char text[kShown + 6];

  explicit Quotation(std::string_view found) {
    char* out = text;
    *out++ = '"';
    for (const char c : found.substr(0, kShown)) *out++ = c >= ' ' && c <= '~' ? c : '?';
    *out++ = '"';
    if (found.size() > kShown) {
      for (int i = 0; i < 3; ++i) *out++ = '.';
    }
    *out = '\0';
  }
};

}  // namespace

void writeError(char* error, Place place, const char* expected, std::string_view found, bool textEnds) {
  if (error == nullptr) return;
  const Quotation quotation(found);
  const char* shown = !found.empty() ? quotation.text
                      : textEnds     ? "the end of the text"
                                     : "the end of the line";
  std::snprintf(error, SDP_ERROR_TEXT_SIZE, "line %u, column %u: expected %s, found %s", place.line,
                place.column, expected, shown);
}

void writeLineError(char* error, unsigned int lineNumber, std::string_view line, Problem problem,
                    bool textEnds, unsigned int& column) {
  const auto offset = static_cast<std::size_t>(problem.at - line.data());
  column = static_cast<unsigned int>(offset + 1);
  writeError(error, {lineNumber, column}, problem.expected, line.substr(offset), textEnds);
}

}  // namespace sdpcodec
