#include "sdpModifiers/zeroPorts.h"

#include <optional>
#include <string_view>
#include <utility>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/mLineFields.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// Removal of m-lines of port 0.

namespace sdpneg {

namespace {

/// Finds what goes, one span after the other, so that the text is moved once. Traces show the text as it is after
/// each removal.
class ZeroPorts {
 public:
  explicit ZeroPorts(std::string_view text) : next_(nextMLine(text)) {}

  /// The next m-line of port 0, from the LF in front of it up to its own, or the crypto line of the last one.
  std::optional<Span> next(std::string_view text) {
    if (crypto_) return std::exchange(crypto_, std::nullopt);
    while (next_ != npos) {
      const Line mLine = lineAt(text, next_);
      next_ = nextMLine(text, next_);
      if (hasZeroPort(text, mLine)) return remove(text, mLine);
    }
    return std::nullopt;
  }

  /// Whether the last m-line has a port that can be read, or why none has.
  const Refusal& refusal() const { return refusal_; }

 private:
  bool hasZeroPort(std::string_view text, const Line& mLine) {
    const std::size_t lf = mLine.begin - 1;
    const std::optional<unsigned short> port = portAt(text, lf);
    refusal_.reason = port ? SDP_REFUSED_NOTHING : SDP_REFUSED_PORT_NOT_READ;
    if (tracing_) {
      trace::debug("sdpRemoveMlinesZeroPort() mLine =[%s]", text.data() + lf);
      trace::debug("sdpRemoveMlinesZeroPort() port =[%d]", port.value_or(0));
    }
    return port == 0;
  }

  Span remove(std::string_view text, const Line& mLine) {
    const Span gone{mLine.begin - 1, mLine.lf};
    const std::size_t end = next_ != npos ? next_ - 1 : text.size();
    const bool secure = isSecure(text, mLine);
    if (secure) crypto_ = cryptoLine(text.substr(0, end), mLine);
    if (tracing_) traceRemoval(text, gone, end, secure);
    return gone;
  }

  void traceRemoval(std::string_view text, const Span& mLine, std::size_t sectionEnd, bool secure) const {
    trace::debug("sdpRemoveMlinesZeroPort() mediaEnd =[%s]", text.data() + sectionEnd);
    trace::debug("sdpRemoveMlinesZeroPort() mlineEnd =[%s]", text.data() + mLine.end);
    if (secure) traceWithoutCrypto(text, mLine.begin);
    traceWithoutCrypto(text, mLine.end);
  }

  /// The first crypto line from an m-line on, from where its text stands through its LF. One that stands on the
  /// m-line goes with it.
  static std::optional<Span> cryptoLine(std::string_view section, const Line& mLine) {
    const std::size_t found = findAnywhere(section, kAnyCrypto, mLine.begin);
    if (found == npos || found < mLine.lf) return std::nullopt;
    const Line line = lineAt(section, found);
    return line.terminated ? std::optional(Span{found, line.next()}) : std::nullopt;
  }

  /// Traces the text from an offset on as if the crypto line were gone already.
  void traceWithoutCrypto(std::string_view text, std::size_t from) const {
    const Span gone = crypto_.value_or(Span{from, from});
    trace::debug("sdpRemoveMlinesZeroPort() mLine =[%.*s%s]", static_cast<int>(gone.begin - from),
                 text.data() + from, text.data() + gone.end);
  }

  bool tracing_ = isTracing();  ///< asked once, for there are several lines for each m-line
  std::size_t next_;            ///< the m-line to look at next, which no removal reaches
  std::optional<Span> crypto_;
  Refusal refusal_ = {.reason = SDP_REFUSED_NO_M_LINE};
};

}  // namespace

Refusal removeZeroPorts(SdpText& text) {
  trace::debug("sdpRemoveMlinesZeroPort() Modifier");
  if (const Refusal refusal = refusalOfBuffer(text, "sdpRemoveMlinesZeroPort")) return refusal;
  ZeroPorts ports(text.view());
  text.eraseEach([&](std::string_view view, std::size_t /*from*/) { return ports.next(view); });
  trace::debug("sdpRemoveMlinesZeroPort() sdp_buffer =[%s]", text.view().data());
  trace::debug("Exiting sdpRemoveMlinesZeroPort() Mofifier");
  return ports.refusal();
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpRemoveMlinesZeroPort(char* sdp) {
  SdpText text(sdp);
  return statusOf(removeZeroPorts(text));
}
