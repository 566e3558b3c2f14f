// Any text: it comes back as it was, everything may be asked of it, and a copy tells the same.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "../test/documentDump.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  static sdp::Document used;  // by one text after the other
  require(!used.read(text));
  require(used.text() == text);
  const std::string dump = documentDump::dumpOf(used);
  require(documentDump::dumpOf(used) == dump);

  sdp::Document fresh;
  require(!fresh.read(text));
  require(documentDump::dumpOf(fresh) == dump);
  require(fresh.lineCount() == used.lineCount());
  const sdp::Document copy(fresh);
  require(copy.text() == text);

  // Its lines are the text, and sections begin where their line says.
  std::string joined;
  std::size_t lines = 0;
  const auto join = [&](const auto& part) {
    for (const sdp::Line& line : part.lines()) {
      joined.append(line.content).append(line.end);
      ++lines;
    }
  };
  join(used.session());
  for (const sdp::Section& section : used.sections()) {
    require(section.lineNumber() == lines + 1);
    join(section);
  }
  require(joined == text);
  require(lines == used.lineCount());
  return 0;
}
