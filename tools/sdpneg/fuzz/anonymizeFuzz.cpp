// Any text as a message behind a header that says who speaks: it comes out the same each time, and nothing of whom it said
// comes out at all, wherever else it stands.

#include <array>
#include <cstddef>
#include <cstdint>

#include "calls/anonymizer.h"
#include "captureChecks.h"
#include "text/search.h"

namespace {

constexpr tool::HashKey kKey = {1, 2};
constexpr std::array<std::string_view, 5> kCanaries = {"kanarienq", "81.77.66.55", "2a02:26f0:77::55",
                                                       "kanarienhost", "4961177755566"};
constexpr std::string_view kFront =
    "INVITE sip:kanarienhost@81.77.66.55 SIP/2.0\r\nFrom: \"KANARIENQ\" <tel:+4961177755566>;tag=1\r\n";

/// Canaries stand where bytes of UTF-8 cannot.
std::string planted(std::string_view text) {
  std::string message(kFront);
  std::size_t next = 0;
  for (const char c : text) {
    if (c == '\xFE' || c == '\xFF') {
      message += kCanaries[next++ % kCanaries.size()];
    } else {
      message += c;
    }
  }
  return message;
}

bool goesOn(char c) { return tool::isWordCharacter(c) || c == '.' || c == ':'; }

void requireNone(std::string_view text, std::string_view canary) {
  for (std::size_t at = text.find(canary); at != std::string_view::npos; at = text.find(canary, at + 1)) {
    const std::size_t end = at + canary.size();
    const bool isPart = (at != 0 && goesOn(text[at - 1])) || (end < text.size() && goesOn(text[end]));
    fuzzing::require(isPart, "what is known comes out");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string message = planted({reinterpret_cast<const char*>(data), size});
  tool::Anonymizer anonymizer(kKey);
  const std::string text = anonymizer.text(message);
  fuzzing::require(anonymizer.text(message) == text, "a message comes out in another way");
  fuzzing::require(tool::Anonymizer(kKey).text(message) == text, "a run comes out in another way");
  const std::string small = tool::lowered(text);
  for (const std::string_view canary : kCanaries) requireNone(small, canary);
  return 0;
}
