#include <new>
#include <optional>
#include <string>
#include <vector>

#include "sdpModifiers/bestEffort.h"
#include "sdpModifiers/mediaReturn.h"
#include "sdpModifiers/mediaTransport.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// The transports of m-lines: another one for all media, and the secure one for m-lines that were removed.

namespace sdpneg {
namespace {

/// The media names of a text's m-lines.
/// @return nothing when they cannot be told
std::optional<std::vector<std::string>> mediaNames(const SdpText& text) {
  try {
    std::vector<mDescription> mLines;
    const unsigned int before = toldSoFar();
    if (readMLines(text, mLines) != 0) {
      tellUnlessTold({.reason = SDP_REFUSED_STORED_NOT_DECODED}, before);
      return std::nullopt;
    }
    std::vector<std::string> names;
    for (const mDescription& media : mLines) {
      names.emplace_back(media.mLine.media);
      trace::debug("sdpModifyTransportTypes():Request to modify transport type for all m = %s",
                   media.mLine.media);
    }
    return names;
  } catch (const std::bad_alloc&) {
    tell({.reason = SDP_REFUSED_NO_MEMORY_FOR_TRANSPORTS});
    return std::nullopt;
  }
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

void cSdpNegotiator::sdpModifyTransportTypes(const char* fromTransport, const char* toTransport) {
  trace::debug("sdpModifyTransportTypes():Request to modify transport type for all m-lines");
  editAndKeep(*this, kParsed, [&](SdpText& text) -> unsigned short {
    const auto names = mediaNames(text);
    if (!names) return 1;
    setMediaTransport(text, fromTransport, toTransport, *names);
    return 0;
  });
  // The text that ends this request names another one.
  trace::debug("Exiting sdpRemoveMlinesZeroPort()");
}

unsigned short cSdpNegotiator::sdpReplaceTransportProtocol(char* removed, bool flag) {
  trace::progress("Request to restore the RTP/SAVP.");
  if (removed == nullptr) return asStatus(tell({.reason = SDP_REFUSED_NO_SECURE_RECORD}));
  return editWithOLineAndParse(
      *this, [&](SdpText& text, unsigned short& oLineEnd) { returnMLines(text, removed, oLineEnd, flag); });
}
