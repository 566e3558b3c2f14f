#include "sdpModifiers/mediaReturn.h"

#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/originLine.h"
#include "sdpModifiers/removedMLines.h"
#include "trace.h"

// The return of removed m-lines as secure dummy m-lines.

namespace sdpneg {

namespace {

DummyMLine secureDummy(unsigned char code) { return {code, true}; }

}  // namespace

void returnMLines(SdpText& text, const char* removed, unsigned short& oLineEnd, bool modifyOLine) {
  constexpr const char* kOperation = "sdpReplaceTransProtocol";
  trace::progress("Entering sdpReplaceTransProtocol() method.");
  const std::string_view codes = codesOf(removed);
  if (codes.empty()) {
    tell({.reason = SDP_REFUSED_NOTHING_RECORDED});
    return;
  }
  if (modifyOLine) renewOriginLineIfThere(text, oLineEnd);
  if (adopted(text, kOperation)) statusOf(putMLinesBack(text, codes, secureDummy, kOperation));
  trace::progress("Exiting sdpReplaceTransProtocol() method.");
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpReplaceTransProtocol(char* sdp, char* removed, unsigned short& oLineEnd,
                                                         bool modifyOLine) {
  SdpText text(sdp);
  returnMLines(text, removed, oLineEnd, modifyOLine);
  return 0;
}
