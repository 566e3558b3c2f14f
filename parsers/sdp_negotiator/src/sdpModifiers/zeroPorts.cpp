#include <optional>
#include <string_view>
#include <utility>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/transport.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorTrace.h"
#include "text/lines.h"

// Removal of m-lines of port 0.

namespace {

using namespace sdpneg;

/// Finds what goes, one span after the other, so that the text is moved once. Traces show the text as it is after
/// each removal.
class ZeroPorts {
 public:
  /// The next m-line of port 0, from the LF in front of it up to its own, or the crypto line of the last one.
  std::optional<Span> next(std::string_view text, std::size_t from) {
    if (crypto_) return std::exchange(crypto_, std::nullopt);
    for (std::size_t at = findLine(text, "m=", from); at != npos; at = findLine(text, "m=", at)) {
      if (hasZeroPort(text, at - 1)) return remove(text, at);
    }
    return std::nullopt;
  }

  unsigned short status() const { return status_; }

 private:
  bool hasZeroPort(std::string_view text, std::size_t lf) {
    unsigned short port = 0;
    cNegotTraceManager::writeTraceMsg(1, 1, "sdpRemoveMlinesZeroPort() mLine =[%s]", text.data() + lf);
    status_ = sdpParserMessage::getMediaLinePort(text.data() + lf, port);
    cNegotTraceManager::writeTraceMsg(1, 1, "sdpRemoveMlinesZeroPort() port =[%d]", port);
    return status_ == 0 && port == 0;
  }

  Span remove(std::string_view text, std::size_t at) {
    const Line mLine = lineAt(text, at);
    const std::size_t nextMLine = findLine(text, "m=", mLine.lf);
    const std::size_t end = nextMLine != npos ? nextMLine - 1 : text.size();
    cNegotTraceManager::writeTraceMsg(1, 1, "sdpRemoveMlinesZeroPort() mediaEnd =[%s]", text.data() + end);
    cNegotTraceManager::writeTraceMsg(1, 1, "sdpRemoveMlinesZeroPort() mlineEnd =[%s]",
                                      text.data() + mLine.lf);
    if (isSecure(text, mLine)) {
      crypto_ = cryptoLine(text.substr(0, end), mLine);
      traceWithoutCrypto(text, at - 1);
    }
    traceWithoutCrypto(text, mLine.lf);
    return {at - 1, mLine.lf};
  }

  /// The first crypto line from an m-line on, from where its text stands through its LF. One that stands on the
  /// m-line goes with it.
  static std::optional<Span> cryptoLine(std::string_view section, const Line& mLine) {
    const std::size_t found = findAnywhere(section, "a=crypto", mLine.begin);
    if (found == npos || found < mLine.lf) return std::nullopt;
    const Line line = lineAt(section, found);
    return line.terminated ? std::optional(Span{found, line.next()}) : std::nullopt;
  }

  /// Traces the text from an offset on as if the crypto line were gone already.
  void traceWithoutCrypto(std::string_view text, std::size_t from) const {
    const Span gone = crypto_.value_or(Span{from, from});
    cNegotTraceManager::writeTraceMsg(1, 1, "sdpRemoveMlinesZeroPort() mLine =[%.*s%s]",
                                      static_cast<int>(gone.begin - from), text.data() + from,
                                      text.data() + gone.end);
  }

  std::optional<Span> crypto_;
  unsigned short status_ = 1;
};

}  // namespace

unsigned short sdpModifications::sdpRemoveMlinesZeroPort(char* sdp) {
  cNegotTraceManager::writeTraceMsg(1, 1, "sdpRemoveMlinesZeroPort() Modifier");
  SdpText text(sdp);
  if (!adopted(text, "sdpRemoveMlinesZeroPort")) return 1;
  ZeroPorts ports;
  text.eraseEach([&](std::string_view view, std::size_t from) { return ports.next(view, from); });
  cNegotTraceManager::writeTraceMsg(1, 1, "sdpRemoveMlinesZeroPort() sdp_buffer =[%s]", text.view().data());
  cNegotTraceManager::writeTraceMsg(1, 1, "Exiting sdpRemoveMlinesZeroPort() Mofifier");
  return ports.status();
}
