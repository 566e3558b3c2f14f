#ifndef SDP_MODIFIERS_CODEC_TEXT_H
#define SDP_MODIFIERS_CODEC_TEXT_H

#include <cstdlib>
#include <memory>

#include "sdpDataDefinitions.h"
#include "sessionDescription.h"
#include "text/sdpText.h"
#include "trace.h"

// Between a text and its description.

namespace sdpneg {

/// @return the codec's status
inline unsigned short decodeText(sDescription& description, const char* text) {
  unsigned short start = 0;
  unsigned short end = 0;
  return sdp_decodeOpt_r(&description, text, SDP_TYPE_UNKNOWN, nullptr, false, start, end);
}

/// @param operation,what named in the trace, `what` as the new text
inline void traceNoRoom(const char* operation, const char* what) {
  trace::error("%s(): The %s does not fit the SDP buffer. Exiting.", operation, what);
}

/// Puts a description, as the codec writes it, in the place of a whole text, or traces why it stays.
/// @param operation,what see `traceNoRoom`
/// @return whether it was done; it is not without room, nor when the codec fails, as ours does without memory
inline bool replaceByEncoded(SdpText& text, const sDescription& description, const char* operation,
                             const char* what) {
  char* written = nullptr;
  int length = 0;
  int size = 0;
  const unsigned short status = sdp_encode_r(&description, SDP_TYPE_UNKNOWN, written, length, size);
  const std::unique_ptr<char, decltype(&std::free)> owned(written, &std::free);
  if (status != 0) {
    trace::error("%s(): The codec cannot encode the SDP. Exiting.", operation);
    return false;
  }
  if (text.replace({0, text.size()}, written) == Edit::done) return true;
  traceNoRoom(operation, what);
  return false;
}

}  // namespace sdpneg

#endif
