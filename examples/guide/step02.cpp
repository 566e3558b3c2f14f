// Takes a good offer and refuses bad ones with the reason.

#include <kvRttLocal.h>

#include <string>

#include "guide.h"

namespace {

// A sink runs on the thread that traces, so every thread finds its own reason here.
thread_local std::string reason;

void keepFirstError(void*, const KvRttLine* line) {
  constexpr int kError = 4;
  if (line->flag != kError || !reason.empty()) return;
  const std::string_view text(line->text, line->length);
  reason = text.substr(text.find(':') + 1);  // behind "SDP_NEGOTIATOR_ERROR:"
  for (char& c : reason) {
    // It quotes the body. Nothing of that may break out of a header or a log line.
    if (c < ' ' || c > '~' || c == '"' || c == '\\') c = '?';
  }
}

bool accept(cSdpNegotiator& offer, const char* body) {
  reason.clear();
  const unsigned short status = offer.sdpParse(body, SDP_TYPE_OFFER);
  if (status == 0) {
    std::printf("taken, audio at port %u\n", offer.getParsedData().port);
    return true;
  }
  // Two refusals have no trace line: a body that is too long even when it is deflated, and one for which there is
  // no memory.
  if (reason.empty()) reason = status == 2 ? "The body is too long" : "Out of memory";
  std::printf("488, Warning: 399 engine \"%s\"\n", reason.c_str());
  return false;
}

}  // namespace

int main() {
  KvRttSetSink(keepFirstError, nullptr);
  KvRttSwitchFlag("SDP_NEGOTIATOR", "INFO", true);

  cSdpNegotiator offer;
  accept(offer, OFFER);
  accept(offer, "");
  accept(
      offer,
      "v=0\r\no=- 1 1 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\nm=audio 80 RTP/AVP 0\r\n");
  std::printf("after a refusal the object is %s\n", offer.isSdpPresent() ? "full" : "empty");
  return 0;
}
