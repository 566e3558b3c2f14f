#include "singleLine.h"

#include "errorText.h"
#include "lineReader.h"

namespace sdp {

namespace {

Problem readLine(char letter, std::string_view line, ValueReader read, void* record) {
  static const char* const kMediaStart = "\"m=\"";
  static const char* const kBandwidthStart = "\"b=\"";
  if (line.size() < 2 || line[0] != letter || line[1] != '=') {
    return expected(letter == 'm' ? kMediaStart : kBandwidthStart, line.data());
  }
  return read(line.substr(2), record);
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
  const std::string_view text(position, std::strcspn(position, "\r\n"));
  if (const Problem problem = readLine(letter, text, read, record)) {
    unsigned int column = 1;
    writeLineError(error, 1, text, problem, position[text.size()] == '\0', column);
    errorLine = 1;
    errorColumn = static_cast<int>(column);
    return 1;
  }
  if (error != nullptr) error[0] = '\0';
  const char* end = position + text.size();
  position = end + lineEndLength({end, strnlen(end, 2)});
  return 0;
}

}  // namespace sdp
