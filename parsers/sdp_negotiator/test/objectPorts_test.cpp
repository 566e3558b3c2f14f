#include "requestTestSupport.h"

// Requests that change ports, the connection address and the number of m-lines.

namespace {

using M = sdpModifications;
using Ports = std::vector<std::string>;

/// A body of five m-lines. In what video brings along only the c-line is left when all of it is removed.
std::string body(const Ports& ports, bool wholeVideo = true) {
  return session + "m=audio " + ports[0] + " RTP/AVP 0 8\r\n" +                        //
         "m=audio " + ports[1] + " RTP/SAVP 0\r\na=ptime:20\r\n" +                     //
         "m=video " + ports[2] + " RTP/AVP 31\r\nc=IN IP4 192.0.2.3\r\n" +             //
         (wholeVideo ? "a=recvonly\r\nb=AS:384\r\n" : "") +                            //
         "m=application " + ports[3] + " RTP/AVP 100\r\na=rtpmap:100 H224/4800\r\n" +  //
         "m=video " + ports[4] + " RTP/SAVP 31\r\n" + (wholeVideo ? "a=label:2\r\n" : "");
}

const Ports all = {"5004", "5006", "5008", "5010", "5012"};
const Ports withoutVideo = {"5004", "5006", "0", "5010", "0"};
const Ports withoutSecure = {"5004", "0", "5008", "5010", "0"};
const Ports onlySecure = {"0", "5006", "0", "0", "5012"};
const Ports onlyAudio = {"5004", "5006", "0", "0", "0"};

const TraceLine withApplication{1, 1,
                                "Request to disable video media: application media will also be disabled"};

TextEdit setPorts(M::eMediaSecurityType security) {
  return [security](char* text) { return M::sdpSetMediaPort(text, -1, IP_VERSION_UNKNOWN, security, 0); };
}

RequestCase disablePort(const std::string& name, unsigned int mask, unsigned int editMask,
                        const std::string& after, const Traces& entry) {
  return {name,
          [mask](cSdpNegotiator& o) { return o.sdpDisablePort(mask); },
          [editMask](char* text) {
            return M::sdpDisablePort(text, static_cast<int>(editMask), IP_VERSION_UNKNOWN);
          },
          body(all),
          after,
          entry};
}

RequestCase replaceAddress(const std::string& name, const std::string& ip, const std::string& line) {
  std::string after = body(all);
  const std::string own = "c=IN IP4 192.0.2.1";
  after.replace(after.find(own), own.size(), line);
  return {name,
          [ip](cSdpNegotiator& o) { return o.sdpReplaceCxIP(ip.c_str()); },
          [ip](char* text) { return M::sdpReplaceCxIP(text, ip.c_str()); },
          body(all),
          after,
          {{8, 4, "Request to replace the IP to:" + ip + "."}}};
}

std::vector<RequestCase> requests() {
  return {
      {"DisableSecure",
       [](cSdpNegotiator& o) { return o.sdpDisableSAVPPorts(); },
       setPorts(M::MEDIA_SECURITY_SECURE),
       body(all),
       body(withoutSecure),
       {{8, 4, "Request to disable the secure media ports."}}},
      {"DisableNonSecure",
       [](cSdpNegotiator& o) { return o.sdpDisableAVPPorts(); },
       setPorts(M::MEDIA_SECURITY_NON_SECURE),
       body(all),
       body(onlySecure),
       {{8, 4, "Request to disable the non-secure media ports."}}},
      disablePort("DisableVideo", 2, 0x12, body(onlyAudio),
                  {{1, 1, "Request to disable the port of (2) media type."},
                   withApplication,
                   {1, 1, "Request to disable the port of media type (0x12)"}}),
      disablePort("DisableVideoAndApplication", 18, 0x12, body(onlyAudio),
                  {{1, 1, "Request to disable the port of (18) media type."},
                   withApplication,
                   {1, 1, "Request to disable the port of media type (0x12)"}}),
      disablePort("DisableApplication", 16, 0x10, body({"5004", "5006", "5008", "0", "5012"}),
                  {{1, 1, "Request to disable the port of (16) media type."},
                   {1, 1, "Request to disable the port of media type (0x10)"}}),
      disablePort("DisableNothing", 0, 0, body(all),
                  {{1, 1, "Request to disable the port of (0) media type."},
                   {1, 1, "Request to disable the port of media type (0x0)"}}),
      disablePort("DisableEveryBitButAudio", 0xfffffffe, 0xfffffffe, body(onlyAudio),
                  {{1, 1, "Request to disable the port of (-2) media type."},
                   withApplication,
                   {1, 1, "Request to disable the port of media type (0xfffffffe)"}}),
      {"RemoveVideo",
       [](cSdpNegotiator& o) { return o.sdpRemoveVideoMedia(); },
       [](char* text) { return M::sdpRemoveVideoMedia(text, false); },
       body(all),
       body(withoutVideo),
       {{1, 1, "Request to remove video media."}}},
      {"RemoveAllVideo",
       [](cSdpNegotiator& o) { return o.sdpRemoveAllVideoMedia(); },
       [](char* text) { return M::sdpRemoveVideoMedia(text, true); },
       body(all),
       body(withoutVideo, false),
       {{1, 1, "Request to remove ALL video media."}}},
      replaceAddress("ReplaceAddress", "192.0.2.77", "c=IN IP4 192.0.2.77"),
      replaceAddress("ReplaceAddressByIPv6", "2001:db8::7", "c=IN IP6 2001:db8::7"),
      {"DoubleMLines",
       [](cSdpNegotiator& o) { return o.sdpBuild2mLineSDP(); },
       [](char* text) { return M::sdpBuild2mLineSDP(text); },
       session + "m=audio 5004 RTP/AVP 0\r\na=ptime:20\r\nm=video 5006 RTP/AVP 31\r\n",
       session + "m=audio 5004 RTP/AVP 0\r\nm=audio 5004 RTP/SAVP 0\r\na=ptime:20\r\n"
                 "m=video 5006 RTP/AVP 31\r\nm=video 5006 RTP/SAVP 31\r\n",
       {{1, 1, "Request to build 2mLine SDP."}}},
  };
}

class PortRequest : public testing::TestWithParam<RequestCase> {};

TEST_P(PortRequest, EditsTheTextAndParsesItAgain) { expectEditedAndParsed(GetParam()); }
TEST_P(PortRequest, FailsWithoutATextThatCanBeRead) { expectFailsWithoutText(GetParam()); }
TEST_P(PortRequest, LeavesTheObjectEmptyWhenTheTextCannotBeStored) { expectEmptiedWhenNotStored(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Requests, PortRequest, testing::ValuesIn(requests()), caseName);

// The other edits have no text that they refuse.
TEST(PortRequestRefusal, LeavesTheObjectAsItWas) {
  RequestCase noConnection = replaceAddress("NoConnection", "192.0.2.77", "");
  noConnection.before = "v=0\r\ns=-\r\nm=audio 5004 RTP/AVP 0\r\n";
  expectFailedEdit(noConnection);
  expectFailedEdit(replaceAddress("Malformed", "192.0.2.256", ""));
}

TEST(PortRequestRefusal, ANullAddressIsAnEmptyOneAndMalformed) {
  const cSdpNegotiator before = parsedObject(body(all));
  cSdpNegotiator object = before;
  const Traces traces = tracesOf([&] { EXPECT_EQ(object.sdpReplaceCxIP(nullptr), 1); });
  EXPECT_EQ(traces.front(), (TraceLine{8, 4, "Request to replace the IP to:."}));
  EXPECT_EQ(traces.back(), (TraceLine{4, 3, "The new IP address is malformed. Exiting..."}));
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(PortRequestRefusal, ATextWithoutRoomStaysAsItIs) {
  const cSdpNegotiator before = parsedObject(paddedTo(20479));
  cSdpNegotiator object = before;
  EXPECT_EQ(object.sdpReplaceCxIP("192.0.2.177"), 1);
  EXPECT_TRUE(sameBytes(object, before));
}

// Deliberate: an edit that fails does not stop this one request, which parses what there is.
TEST(PortRequestRefusal, MLinesThatCannotBeDoubledAreParsedAsTheyAre) {
  const cSdpNegotiator before = parsedObject(paddedTo(20479));
  cSdpNegotiator object = before;
  object.setBandwidth(64);
  EXPECT_EQ(object.sdpBuild2mLineSDP(), 0);
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(PortRequest, ATextThatDoesNotParseLeavesTheObjectEmpty) {
  for (const RequestCase& each : requests()) {
    if (each.name.find("Address") != std::string::npos) continue;
    cSdpNegotiator object = objectWithText("no body\r\nm=audio 5004 RTP/AVP 0\r\n");
    EXPECT_EQ(each.request(object), 1) << each.name;
    EXPECT_TRUE(sameBytes(object, emptyObject())) << each.name;
  }
}

// Deliberate: also when the edit changed nothing, the text is parsed again.
TEST(PortRequest, WithNothingToChangeRebuildsTheSummary) {
  cSdpNegotiator object = parsedObject(audioBody());
  object.setBandwidth(64);
  EXPECT_EQ(object.sdpDisableSAVPPorts(), 0);
  EXPECT_TRUE(sameBytes(object, parsedObject(audioBody())));
}

}  // namespace
