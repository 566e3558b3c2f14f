#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "parserParseSupport.h"

// Secure media and MIKEY.

namespace {

using P = sdpParserMessage;

constexpr unsigned int secure = SDP_ATTR_SECURE_RTP;
constexpr unsigned int secureVideo = SDP_ATTR_SECURE_RTP | SDP_ATTR_SECURE_VIDEO;

struct SecureCase {
  std::vector<std::string> lines;
  unsigned int bits;
  TraceLines traces;
};

TEST(ParserSecureMedia, AreToldByTransportOrAttributes) {
  const TraceLine byTransport = {2, 2, "Setting secure RTP call flag"};
  const TraceLine byLine = {2, 2, "RTP/AVP media with secure line. Setting secure RTP call flag"};
  const std::vector<SecureCase> cases = {
      {{"m=audio 5000 RTP/AVP 0"}, 0, {}},
      {{"m=audio 5000 RTP/SAVP 0"}, secure, {byTransport}},
      {{"m=video 5000 RTP/SAVP 31"}, secureVideo, {byTransport}},
      {{"m=video 5000 UDP/TLS/RTP/SAVPF 31"}, secureVideo, {byTransport}},
      {{"m=audio 0 RTP/SAVP 0"}, 0, {}},
      {{"m=audio 5000 rtp/savp 0"}, 0, {}},
      {{"m=audio 5000 RTP/AVP 0", "a=crypto:1 x"}, secure, {byLine}},
      {{"m=audio 0 RTP/AVPF 0", "a=setup:active"}, secure, {byLine}},  // whatever the port
      {{"m=video 5000 RTP/AVP 31", "a=fingerprint:x"}, secure, {byLine}},
      {{"m=audio 5000 RTP/AVP 0", "a=x", "a=key-mgmt:x"}, secure, {byLine}},
      {{"m=audio 5000 RTP/AVP 0", "a=crypto", "a=setup:"}, secure, {byLine}},  // also without values
      {{"m=audio 5000 RTP/AVP 0", "a=crypto1:x", "a=Setup:x", "a=key-mgm:x"}, 0, {}},
      {{"m=audio 5000 RTP/SAVP 0", "a=crypto:1 x"}, secure, {byTransport}},
      {{"m=audio 5000 RTP/SAVP/RTP/AVP 0", "a=crypto:1 x"}, secure, {byTransport, byLine}},
      {{"m=audio 5000 UDP 0", "a=crypto:1 x"}, 0, {}},
      {{"m=audio 5000 RTP/SAVP 0", "m=video 5002 RTP/SAVP 31"}, secureVideo, {byTransport, byTransport}},
      {{"m=audio 5000 " + std::string(5000, 'R') + "RTP/SAVP 0"}, 0, {}},  // beyond what a transport holds
  };
  for (const SecureCase& each : cases) {
    const auto description = decoded(bodyOf(each.lines));
    const TraceCapture capture;
    sSdpParsedData data = emptySummary();
    P::containsSecureMedia(data, *description, sdp_getNoOfMDs(description.get()));
    EXPECT_EQ(data.sdpAttributes, each.bits) << joined(each.lines);
    EXPECT_EQ(capture.lines(), each.traces) << joined(each.lines);
  }
}

TEST(ParserSecureMedia, StopAtTheGivenNumber) {
  const auto description = decoded(bodyOf({"m=audio 5000 RTP/AVP 0", "m=video 5002 RTP/SAVP 31"}));
  for (const int number : {-1, 0, 1}) {
    sSdpParsedData data = emptySummary();
    P::containsSecureMedia(data, *description, number);
    EXPECT_EQ(data.sdpAttributes, 0U);
  }
  sSdpParsedData data = emptySummary();
  P::containsSecureMedia(data, *description, 1000);
  EXPECT_EQ(data.sdpAttributes, secureVideo);
}

TEST(ParserSecureMedia, InheritTheSessionsFingerprint) {
  EXPECT_TRUE(parsed(bodyOf({"a=fingerprint:x", "m=audio 5000 RTP/AVP 0"})).attribute(SDP_ATTR_SECURE_RTP));
  EXPECT_FALSE(
      parsed(bodyOf({"a=fingerprint:x", "m=audio 5000 RTP/AVP 0", "a=x"})).attribute(SDP_ATTR_SECURE_RTP));
}

struct MikeyCase {
  std::vector<std::string> lines;
  std::size_t traces;  ///< 0 when there is no MIKEY
};

TEST(ParserMikey, IsToldByKeyManagementLines) {
  const std::string line = "a=key-mgmt:mikey AAA";
  const std::vector<MikeyCase> cases = {
      {{"m=audio 5000 RTP/AVP 0"}, 0},
      {{line}, 1},
      {{line, line, "m=audio 5000 RTP/AVP 0", line}, 1},  // the session's first one decides
      {{"m=audio 5000 RTP/AVP 0", line, line, "m=video 5002 RTP/AVP 31", "m=text 0 x", line}, 2},
      {{"m=audio 5000 RTP/AVP 0", "a=key-mgmtx:y"}, 1},  // the name's beginning counts
      {{"a=key-mgmt", "a=key-mgmt:", "m=audio 5000 RTP/AVP 0", "a=key-mgmt"}, 0},
      {{"a=Key-mgmt:x", "a=key-mgm:x", "a=xkey-mgmt:x"}, 0},
  };
  for (const MikeyCase& each : cases) {
    const auto description = decoded(bodyOf(each.lines));
    const TraceCapture capture;
    sSdpParsedData data = emptySummary();
    P::checkForMickey(data, *description);
    const unsigned int bits = each.traces != 0 ? unsigned{SDP_ATTR_MIKEY} : 0U;
    EXPECT_EQ(data.sdpAttributes, bits) << joined(each.lines);
    EXPECT_EQ(capture.lines(), TraceLines(each.traces, {8, 4, "Mikey attribute is found."}))
        << joined(each.lines);
  }
}

}  // namespace
