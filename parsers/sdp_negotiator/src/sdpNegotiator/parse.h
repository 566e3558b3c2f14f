#ifndef SDP_NEGOTIATOR_PARSE_H
#define SDP_NEGOTIATOR_PARSE_H

#include <cstring>
#include <span>
#include <string_view>

#include "refusal.h"
#include "sdpNegotiator.h"
#include "sdpNegotiatorParser/sdpParse.h"
#include "sdpNegotiatorParser/withDescription.h"
#include "text/sdpText.h"
#include "trace.h"

// The parse of a body into an object, with whatever condenses it.

namespace sdpneg {

/// Empties an object, all of its text store included.
inline void clear(sSdpParsedData& data, char (&text)[SDP_STORED_TEXT_SIZE]) {
  data.init();
  std::memset(text, 0, sizeof text);
}

/// `cSdpNegotiator::setRawSDP` of a text whose length is known.
/// @param text ended by NUL, without one in it
unsigned short storeText(sSdpParsedData& data, char (&store)[SDP_STORED_TEXT_SIZE], std::string_view text);

/// `cSdpNegotiator::getRawSDP` of an object's own.
/// @param to     null or empty where there is no buffer
/// @param length receives that of the text
unsigned short fetchText(const sSdpParsedData& data, const char (&store)[SDP_STORED_TEXT_SIZE],
                         std::span<char> to, std::size_t& length);

/// `cSdpNegotiator::getSDP` in the same way.
unsigned short fetchSdp(const sSdpParsedData& data, const char (&store)[SDP_STORED_TEXT_SIZE],
                        std::span<char> to, std::size_t& length);

/// An object's own, for what parses into it.
struct ParseTarget {
  cSdpNegotiator& object;
  sSdpParsedData& data;
  char (&store)[SDP_STORED_TEXT_SIZE];
};

/// `cSdpNegotiator::sdpParse` of a text that is neither empty nor too long. An object whose body is refused is empty.
/// @param sdp      ended by NUL
/// @param condense gives the summary, with a status other than 0 for a body that is refused
template <typename Condense>
unsigned short parseInto(const ParseTarget& to, std::string_view sdp, Condense condense) {
  to.data.init();
  // A text that is stored as it is takes all of the store, and need not find it empty.
  if (sdp.size() >= sizeof to.store) std::memset(to.store, 0, sizeof to.store);
  trace::progress("Entering sdpParse() method: SDP length is %lu", static_cast<unsigned long>(sdp.size()));
  if (condense() != 0) {
    trace::error("Exiting sdpParse() method. Exiting...");  // behind the refusal that says why
    clear(to.data, to.store);
    return 1;
  }
  const unsigned short status = storeText(to.data, to.store, sdp);
  if (status != 0) clear(to.data, to.store);
  return status;
}

/// `cSdpNegotiator::sdpParse` of a text whose length is known.
/// @param sdp ended by NUL; without data it is a null text
unsigned short parseKnown(const ParseTarget& to, std::string_view sdp, eSdpType type);

/// Edits a text by its description, and parses what comes of it without decoding it again.
/// @param edit takes the text, a description to decode it into, and tells whether that is the edited text's
/// @return false when it is not, so that the text is still to be parsed
template <typename Edit>
bool editAndParseDecoded(const ParseTarget& to, SdpText& text, Edit edit) {
  bool parsed = false;
  withDescription([&](sDescription& description) -> unsigned short {
    edit(text, description, parsed);
    if (!parsed) return 0;
    return parseInto(to, text.view(), [&] {
      takeOriginPlace(to.data, description, text.view());
      return analyse(to.data, description, text.view());
    });
  });
  return parsed;
}

}  // namespace sdpneg

#endif
