#include "singleLine.h"

#include <cstring>

#include "errorText.h"
#include "lineReader.h"

// Decoding one line on its own.

namespace sdpcodec {

namespace {

Problem readLine(char letter, const LineReader& lines, ValueReader read, void* record) {
  static const char* const kMediaStart = "\"m=\"";
  static const char* const kBandwidthStart = "\"b=\"";
  const std::string_view line = lines.line();
  if (lines.loneCr() != nullptr) return expected(kLineEndWanted, lines.loneCr());
  if (line.size() < 2 || line[0] != letter || line[1] != '=') {
    return expected(letter == 'm' ? kMediaStart : kBandwidthStart, line.data());
  }
  return read(line.substr(2), lines.textEnd(), record);
}

}  // namespace

unsigned short decodeSingleLine(char letter, const char*& position, char* error, int& errorLine,
                                int& errorColumn, ValueReader read, void* record) {
  errorLine = 0;
  errorColumn = 0;
  if (position == nullptr || read == nullptr) {
    errorLine = 1;
    errorColumn = 1;
    writeError(error, {1, 1}, position == nullptr ? "a text" : "a record to decode into", {}, true);
    return 1;
  }
  // The line may be one of many: only as far as its end is looked at.
  const std::size_t length = std::strcspn(position, "\n");
  LineReader lines({position, length + (position[length] == '\n' ? 1 : 0)});
  lines.next();
  if (const Problem problem = readLine(letter, lines, read, record)) {
    const char* const lineEnd = lines.line().data() + lines.line().size();
    unsigned int column = 1;
    writeLineError(error, 1, lines.line(), problem, *lineEnd == '\0', column);
    errorLine = 1;
    errorColumn = static_cast<int>(column);
    return 1;
  }
  if (error != nullptr) error[0] = '\0';
  position = lines.position();
  return 0;
}

}  // namespace sdpcodec
