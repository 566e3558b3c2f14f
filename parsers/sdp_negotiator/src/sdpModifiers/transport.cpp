#include "sdpModifiers/transport.h"

#include <cstdint>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "trace.h"

namespace sdpneg {

namespace {

/// The third field of a line, from behind the second blank to the next. Without that one it runs to the line's end, in
/// front of which a CR is no blank, and is none to be set.
std::optional<Span> thirdField(std::string_view text, const Line& line) {
  const std::string_view all = text.substr(0, line.lf);
  const std::size_t first = all.find_first_of(" \t", line.begin + 2);
  const std::size_t second = first == npos ? npos : all.find_first_of(" \t", first + 1);
  const std::size_t end = second == npos ? npos : all.find_first_of(" \t", second + 1);
  if (end == npos || end == second + 1) return std::nullopt;
  return Span{second + 1, end};
}

}  // namespace

TransportEdit replaceTransport(SdpText& text, const Line& mLine, std::string_view expected,
                               std::string_view transport) {
  trace::info("Entering sdpReplaceMLineTransportProtocol() method.");
  if (!contains(text.view().substr(mLine.begin, mLine.lf - mLine.begin), expected))
    return TransportEdit::notExpected;
  transport = transport.substr(0, longestTransport);
  const std::optional<Span> field = thirdField(text.view(), mLine);
  if (!field || startsWith(text.view().substr(field->begin), transport)) return TransportEdit::done;
  trace::info(" sdpReplaceMLineTransportProtocol() method. Changing transport type");
  return text.replace(*field, transport) == Edit::done ? TransportEdit::done : TransportEdit::noRoom;
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpReplaceMLineTransportProtocol(char* mLine, char* lineEnd,
                                                                  const char* expected,
                                                                  const char* newProtocol) {
  SdpText text(mLine);
  if (!adopted(text, "sdpReplaceMLineTransportProtocol")) return 1;
  const auto refuse = [](const char* reason) -> unsigned short {
    trace::error("sdpReplaceMLineTransportProtocol(): %s Exiting.", reason);
    return 1;
  };
  const std::uintptr_t length =
      reinterpret_cast<std::uintptr_t>(lineEnd) - reinterpret_cast<std::uintptr_t>(mLine);
  if (length > text.size()) return refuse("The line's end does not lie in the text.");
  if (expected == nullptr || newProtocol == nullptr) return refuse("A transport is null.");
  if (!areLineTexts({newProtocol}, "sdpReplaceMLineTransportProtocol")) return 1;
  const TransportEdit edit = replaceTransport(text, {0, length, true}, expected, newProtocol);
  if (edit == TransportEdit::noRoom) return refuse("The new transport does not fit the SDP buffer.");
  return edit == TransportEdit::done ? 0 : 1;
}
