#include "sdpModifiers/codecText.h"

#include <cstdlib>
#include <memory>

#include "sessionDescription.h"

// Between a text and its description.

namespace sdpneg {

namespace {

/// The number behind a word of the codec's "line N, column M: ..."; 0 without one.
int numberBehind(std::string_view error, std::string_view word) {
  const std::size_t at = error.find(word);
  return at != npos ? numberOrZero<int>(error.substr(at + word.size())) : 0;
}

}  // namespace

unsigned short decodeText(sDescription& description, const char* text) {
  unsigned short start = 0;
  unsigned short end = 0;
  return sdp_decodeOpt_r(&description, text, SDP_TYPE_UNKNOWN, nullptr, false, start, end);
}

Refusal decode(sDescription& description, std::string_view text) {
  char error[SDP_ERROR_TEXT_SIZE] = "";
  unsigned short start = 0;
  unsigned short end = 0;
  if (sdp_decodeOpt_r(&description, text.data(), SDP_TYPE_UNKNOWN, error, false, start, end) == 0) return {};
  return {.reason = SDP_REFUSED_BODY,
          .what = keptForRefusal(error),
          .line = numberBehind(error, "line "),
          .column = numberBehind(error, "column ")};
}

Refusal replaceByEncoded(SdpText& text, const sDescription& description, const char* operation,
                         const char* what) {
  char* written = nullptr;
  int length = 0;
  int size = 0;
  const unsigned short status = sdp_encode_r(&description, SDP_TYPE_UNKNOWN, written, length, size);
  const std::unique_ptr<char, decltype(&std::free)> owned(written, &std::free);
  if (status != 0) return {.reason = SDP_REFUSED_NOT_ENCODED, .operation = operation};
  return text.replace({0, text.size()}, written) == Edit::done ? Refusal() : refusalOfRoom(operation, what);
}

}  // namespace sdpneg
