#include "sdpModifiers/transport.h"

#include <cstdint>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "trace.h"

// The transport of one m-line.

namespace sdpneg {

TransportEdit replaceTransport(SdpText& text, const Line& mLine, std::string_view expected,
                               std::string_view transport) {
  trace::info("Entering sdpReplaceMLineTransportProtocol() method.");
  if (!contains(text.view().substr(mLine.begin, mLine.lf - mLine.begin), expected))
    return TransportEdit::notExpected;
  transport = transport.substr(0, kLongestTransport);
  const std::optional<Span> field = transportBehindBlanks(text.view(), mLine);
  if (!field || startsWith(text.view().substr(field->begin), transport)) return TransportEdit::done;
  trace::info(" sdpReplaceMLineTransportProtocol() method. Changing transport type");
  return text.replace(*field, transport) == Edit::done ? TransportEdit::done : TransportEdit::noRoom;
}

namespace {

constexpr const char* kOperation = "sdpReplaceMLineTransportProtocol";

Refusal refusalOfTransport(std::string_view why) {
  return {.reason = SDP_REFUSED_TRANSPORT_OF_LINE, .what = why};
}

/// `sdpModifications::sdpReplaceMLineTransportProtocol`, of a text that begins with its m-line.
Refusal replaceFirstTransport(SdpText& text, std::size_t lf, const char* expected, const char* transport) {
  if (const Refusal refusal = refusalOfBuffer(text, kOperation)) return refusal;
  if (lf > text.size()) return refusalOfTransport("The line's end does not lie in the text.");
  if (expected == nullptr || transport == nullptr) return refusalOfTransport("A transport is null.");
  if (const Refusal refusal = refusalOfLineTexts({transport}, kOperation)) return refusal;
  switch (replaceTransport(text, {0, lf, true}, expected, transport)) {
    case TransportEdit::notExpected:
      return {.reason = SDP_REFUSED_TRANSPORT_NOT_NAMED};
    case TransportEdit::noRoom:
      return refusalOfTransport("The new transport does not fit the SDP buffer.");
    default:
      return {};
  }
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpReplaceMLineTransportProtocol(char* mLine, char* lineEnd,
                                                                  const char* expected,
                                                                  const char* newProtocol) {
  SdpText text(mLine);
  const std::uintptr_t length =
      reinterpret_cast<std::uintptr_t>(lineEnd) - reinterpret_cast<std::uintptr_t>(mLine);
  return statusOf(replaceFirstTransport(text, length, expected, newProtocol));
}
