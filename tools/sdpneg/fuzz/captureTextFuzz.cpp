// Any text as a log or an export: it gives the same messages however it is cut.

#include <cstddef>
#include <cstdint>

#include "captureChecks.h"
#include "captures/textExport.h"

namespace {

std::vector<std::string> readIn(std::string_view text, std::size_t piece) {
  fuzzing::Delivered delivered;
  tool::TextExport reader(delivered.output);
  for (std::size_t at = 0; at < text.size(); at += piece) {
    reader.take(text.substr(at, piece));
    fuzzing::require(reader.size() <= text.size(), "more is kept than there is");
  }
  reader.flush();
  fuzzing::require(reader.size() == 0, "something is kept behind the end");
  return delivered.texts;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::vector<std::string> whole = readIn(text, size + 1);
  fuzzing::require(readIn(text, 1) == whole && readIn(text, 13) == whole, "a text is read in another way");
  return 0;
}
