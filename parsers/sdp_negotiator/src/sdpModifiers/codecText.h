#ifndef SDP_MODIFIERS_CODEC_TEXT_H
#define SDP_MODIFIERS_CODEC_TEXT_H

#include <cstdlib>
#include <memory>

#include "sdpDataDefinitions.h"
#include "sessionDescription.h"
#include "text/sdpText.h"

// Between a text and its description.

namespace sdpneg {

/// @return the codec's status
inline unsigned short decodeText(sDescription& description, const char* text) {
  unsigned short start = 0;
  unsigned short end = 0;
  return sdp_decodeOpt_r(&description, text, SDP_TYPE_UNKNOWN, nullptr, false, start, end);
}

/// Puts a description, as the codec writes it, in the place of a whole text.
/// @return noRoom also when there is no memory for it
inline Edit replaceByEncoded(SdpText& text, const sDescription& description) {
  char* written = nullptr;
  int length = 0;
  int size = 0;
  const unsigned short status = sdp_encode_r(&description, SDP_TYPE_UNKNOWN, written, length, size);
  const std::unique_ptr<char, decltype(&std::free)> owned(written, &std::free);
  return status == 0 ? text.replace({0, text.size()}, written) : Edit::noRoom;
}

}  // namespace sdpneg

#endif
