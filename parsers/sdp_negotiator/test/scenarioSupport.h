#ifndef SCENARIO_SUPPORT_H
#define SCENARIO_SUPPORT_H

#include "requestTestSupport.h"

// Bodies of calls as engines see them, and what holds between two requests.

namespace scenario {

/// The session lines of the one side, whose o-line has this version.
inline std::string alice(const std::string& version = "1", const std::string& address = "192.0.2.10") {
  return "v=0\r\no=alice 100 " + version + " IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 " + address +
         "\r\nt=0 0\r\n";
}

/// Those of the other side.
inline std::string bob() {
  return "v=0\r\no=bob 200 1 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 192.0.2.20\r\nt=0 0\r\n";
}

/// The body is this text, and the summary tells of it.
inline void expectBody(const cSdpNegotiator& object, const std::string& text) {
  EXPECT_EQ(textOf(object), text);
  EXPECT_TRUE(sameBytes(object, parsedObject(textOf(object)))) << "the summary is not that of the text";
}

/// The body is this text with an o-line that was made by the time of day, with the unspecified address or another one,
/// and the summary tells of it.
inline void expectTimedBody(const cSdpNegotiator& object, const std::string& text,
                            const std::string& address = "IP4 0.0.0.0") {
  expectBody(object, withTimedOLine(text, textOf(object), address));
}

inline std::vector<unsigned char> codecsOf(const cSdpNegotiator& object) {
  const auto& slots = object.getParsedData().audioCodec;
  return {std::begin(slots), std::find(std::begin(slots), std::end(slots), SDP_NO_CODEC)};
}

using Codecs = std::vector<unsigned char>;

}  // namespace scenario

#endif
