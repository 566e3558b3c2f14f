#include <array>
#include <span>
#include <string_view>

#include "sdpModifiers/codecText.h"
#include "sdpModifiers/mediaReturn.h"
#include "sdpModifiers/mediaTransport.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/parse.h"
#include "sdpNegotiator/request.h"
#include "sdpNegotiatorParser/descriptionView.h"
#include "text/sections.h"
#include "trace.h"

// The transports of m-lines: another one for all media, and the secure one for m-lines that were removed.

namespace sdpneg {
namespace {

/// Changes the transport of all m-lines, of each medium that a description names.
void changeTransports(SdpText& text, const sDescription& description, const char* from, const char* to) {
  std::array<std::string_view, SDP_MEDIA_CAPACITY> names;
  std::size_t count = 0;
  const bool tracing = isTracing();
  for (const mDescription& media : mediaOf(description)) {
    names[count++] = media.mLine.media;
    if (!tracing) continue;
    trace::debug("sdpModifyTransportTypes():Request to modify transport type for all m = %s",
                 media.mLine.media);
  }
  setMediaTransport(text, from, to, std::span<const std::string_view>(names).first(count));
}

/// Whether a text is the one that a store holds as it is.
bool isIn(const char (&store)[SDP_STORED_TEXT_SIZE], std::string_view text) {
  return text.size() < sizeof store && std::string_view(store, text.size()) == text &&
         store[text.size()] == '\0';
}

/// Reads the m-lines of a text anew into the description of what it was before.
/// @return whether that is now the text's
bool readMLinesAnew(std::string_view text, sDescription& description) {
  if (!sdp_isComplete(&description)) return false;
  std::size_t at = 0;
  for (mDescription& media : mediaOf(description)) {
    at = nextMLine(text, at);
    if (at == npos) return false;
    const char* position = text.data() + at;
    int line = 0;
    int column = 0;
    if (sdp_Mdecode_r(&media.mLine, position, nullptr, line, column) != 0) return false;
    if (media.mLine.incomplete != 0) return false;
  }
  return nextMLine(text, at) == npos;
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

void cSdpNegotiator::sdpModifyTransportTypes(const char* fromTransport, const char* toTransport) {
  trace::debug("sdpModifyTransportTypes():Request to modify transport type for all m-lines");
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  std::size_t length = 0;
  if (fetchSdp(parsedData, rawSdp, buffer, length) == 0) {
    SdpText text = SdpText::ofLength(buffer, length);
    const unsigned int before = toldSoFar();
    bool changed = false;
    const auto edit = [&](SdpText& body, sDescription& description, bool& describes) {
      changed = statusOf(decode(description, body.view())) == 0;
      if (!changed) return;
      changeTransports(body, description, fromTransport, toTransport);
      // What is deflated is no text, but may look like one.
      const bool same =
          parsedData.storedSdpLength == 0 && sdp_isComplete(&description) && isIn(rawSdp, body.view());
      describes = same || readMLinesAnew(body.view(), description);
    };
    const bool parsed = editAndParseDecoded({*this, parsedData, rawSdp}, text, edit);
    if (!changed) {
      tellUnlessTold({.reason = SDP_REFUSED_STORED_NOT_DECODED}, before);
    } else if (!parsed) {
      sdpParse(buffer, SDP_TYPE_UNKNOWN);
    }
  }
  // The text that ends this request names another one.
  trace::debug("Exiting sdpRemoveMlinesZeroPort()");
}

unsigned short cSdpNegotiator::sdpReplaceTransportProtocol(char* removed, bool flag) {
  trace::progress("Request to restore the RTP/SAVP.");
  if (removed == nullptr) return asStatus(tell({.reason = SDP_REFUSED_NO_SECURE_RECORD}));
  return editWithOLineAndParse(
      *this, [&](SdpText& text, unsigned short& oLineEnd) { returnMLines(text, removed, oLineEnd, flag); });
}
