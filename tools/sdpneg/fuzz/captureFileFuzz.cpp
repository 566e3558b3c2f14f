// Any bytes as an input: a capture, a text, gzip of these or anything else. Read twice, they give the same.

#include <cstddef>
#include <cstdint>

#include "captureChecks.h"
#include "captures/capture.h"

namespace {

std::vector<std::string> readOnce(std::string_view bytes) {
  fuzzing::Delivered delivered;
  tool::Capture capture(tool::sourceOf(bytes), {}, delivered.output);
  while (capture.step()) {
  }
  const auto problem = capture.problem();
  fuzzing::require(!problem || !problem->reason.empty(), "a problem has no words");
  fuzzing::require(capture.position() <= bytes.size(), "more was read than there is");
  return delivered.texts;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  fuzzing::require(readOnce(input) == readOnce(input), "a second reading gives something else");
  return 0;
}
