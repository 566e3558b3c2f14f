// Edits, requests and questions, which the last bytes choose, on the whole as a body. Each is judged by the text; and the
// document, which is used by one body after the other, is at each step what a reading of its text is.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "../test/editSteps.h"

namespace {

constexpr std::size_t kMostSteps = 12;
constexpr std::size_t kMostText = 8000;
constexpr std::size_t kDumpEach = 3;

/// Takes a number from the end, so that a body stays one; zero in front of the beginning.
std::size_t takeNumber(std::string_view& input) {
  if (input.empty()) return 0;
  const auto byte = static_cast<unsigned char>(input.back());
  input.remove_suffix(1);
  return byte;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view body(reinterpret_cast<const char*>(data), size);
  static sdp::Document document;
  plain::EditSteps steps(document, body, kDumpEach);
  std::string_view choices = body;
  const std::size_t count = 1 + takeNumber(choices) % kMostSteps;
  for (std::size_t n = 0; n < count && steps.text().size() < kMostText; ++n) {
    const std::size_t kind = takeNumber(choices);
    const std::size_t a = takeNumber(choices);
    const std::size_t b = takeNumber(choices);
    const std::string complaint = steps.step(kind, a, b, takeNumber(choices));
    if (complaint.empty()) continue;
    std::fprintf(stderr, "%s\n", complaint.c_str());
    std::abort();
  }
  return 0;
}
