#include "sdpModifiers/plainAndSecure.h"

#include "refusal.h"
#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/transport.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// From one m-line per medium to two, a plain and a secure one.

namespace sdpneg {

namespace {

constexpr const char* kOperation = "sdpBuild2mLineSDP";

/// Puts a copy of an m-line in front of it and makes the second of the two secure.
/// @return false, with the text unchanged, when that does not fit
bool splitMLine(SdpText& text, const Line& mLine) {
  const std::size_t length = mLine.next() - mLine.begin;
  if (text.insert(mLine.begin, text.view().substr(mLine.begin, length)) != Edit::done) return false;
  const std::size_t second = nextMAnywhereBehind(text.view(), mLine.begin);
  if (replaceTransport(text, lineAt(text.view(), second), kPlainTransport, kSecureTransport) !=
      TransportEdit::noRoom)
    return true;
  text.erase({mLine.begin, mLine.begin + length});
  return false;
}

Refusal splitMLines(SdpText& text) {
  std::size_t at = nextMAnywhere(text.view());
  while (at != npos) {
    const Line mLine = lineAt(text.view(), at);
    if (!mLine.terminated) return {};
    if (!splitMLine(text, mLine)) {
      return {.reason = SDP_REFUSED_NO_ROOM_FOR_M_LINE, .operation = kOperation};
    }
    const std::size_t second = nextMAnywhereBehind(text.view(), at);
    at = nextMAnywhereBehind(text.view(), second);
  }
  return {};
}

}  // namespace

void buildPlainAndSecure(SdpText& text) {
  trace::info("Entering sdpBuild2mLineSDP() method.");
  if (!text.isNull() && adopted(text, kOperation)) {
    if (const Refusal refusal = splitMLines(text)) tell(refusal);
  }
  trace::info("Exiting sdpBuild2mLineSDP() method.");
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpBuild2mLineSDP(char* sdp) {
  SdpText text(sdp);
  buildPlainAndSecure(text);
  return 0;
}
