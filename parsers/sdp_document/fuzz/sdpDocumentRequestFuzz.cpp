// A chain of requests, which the last bytes choose, on the whole as a body. Each is judged from outside by the two texts;
// one that is refused changes nothing; and behind the chain the document is what a reading of its text is.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "../test/changeChecker.h"
#include "../test/documentDump.h"
#include "../test/requestSamples.h"
#include "sdpDocumentRequests.h"

namespace {

constexpr std::size_t kMostRequests = 6;

void require(bool holds, std::string_view what) {
  if (holds) return;
  std::fprintf(stderr, "%.*s\n", static_cast<int>(what.size()), what.data());
  std::abort();
}

/// Numbers out of bytes from the end on, so that a body stays one; zeros in front of the beginning.
class Choices {
 public:
  explicit Choices(std::string_view input) : input_(input) {}
  std::size_t take() {
    if (input_.empty()) return 0;
    const auto byte = static_cast<unsigned char>(input_.back());
    input_.remove_suffix(1);
    return byte;
  }

 private:
  std::string_view input_;
};

void perform(sdp::Document& document, const requestSamples::Request& request) {
  const std::string before(document.text());
  const sdp::Refusal refusal = sdp::perform(document, request);
  const std::string after(document.text());
  if (refusal) {
    require(!refusal.isOfArguments(), "right arguments are refused");
    require(refusal.reason != sdp::Reason::noMemory, "no memory");
    require(after == before, "a refusal changed the text");
    require(!document.explanation().empty(), "a refusal is not explained");
    return;
  }
  require(document.explanation().empty(), "what was done is explained");
  for (const std::string& complaint : plain::complaintsAbout(request, before, after))
    require(false, complaint);
  if (request[0] != "canonical") return;
  require(!sdp::canonicalise(document) && document.text() == after, "canonical is not so the second time");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view body(reinterpret_cast<const char*>(data), size);
  Choices choices(body);
  requestSamples::Request requests[kMostRequests];
  const std::size_t count = 1 + choices.take() % kMostRequests;
  for (std::size_t n = 0; n < count; ++n) {
    const std::size_t kind = choices.take();
    const std::size_t first = choices.take();
    requests[n] = requestSamples::chosen(kind, first, choices.take());
  }
  static sdp::Document document;  // used by one body after the other
  require(!document.read(body), "a body is not read");
  for (std::size_t n = 0; n < count; ++n) perform(document, requests[n]);

  sdp::Document fresh;
  require(!fresh.read(document.text()), "a text of ours is not read");
  require(documentDump::dumpOf(document) == documentDump::dumpOf(fresh),
          "a document is not what its text is");
  return 0;
}
