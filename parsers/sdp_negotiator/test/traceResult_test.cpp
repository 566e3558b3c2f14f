#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "sdpNegotiator.h"
#include "traceFakeFacility.h"

// Requests whose status is what the facility gave for a line.

namespace {

class TraceResult : public testing::Test {
 protected:
  void SetUp() override {
    fake.reset();
    fake.traceResult = 7;
  }
  void TearDown() override { fake.reset(); }

  FakeFacility& fake = fakeFacility();
};

// Deliberate: 0 while tracing is off, though nothing was done.
TEST_F(TraceResult, IsTheStatusOfARefusedOriginLine) {
  cSdpNegotiator object;
  object.sdpParse("", SDP_TYPE_OFFER);
  EXPECT_EQ(object.sdpModifyOLine(nullptr, "1"), 0);
  EXPECT_EQ(object.sdpModifyOLine("1", nullptr, "192.0.2.1"), 0);
  fake.flagsOn = 2;
  EXPECT_EQ(object.sdpModifyOLine(nullptr, "1"), 7);
  EXPECT_EQ(object.sdpModifyOLine("1", nullptr, "192.0.2.1"), 7);
  fake.traceResult = 0;
  EXPECT_EQ(object.sdpModifyOLine(nullptr, "1"), 0);
}

struct TracedRequest {
  std::function<unsigned short(cSdpNegotiator&)> request;
  const char* lastLine;  ///< the line whose result is the request's
};

eNonSupportedSecurity security(int kind) { return static_cast<eNonSupportedSecurity>(kind); }

const TracedRequest tracedRequests[] = {
    {[](cSdpNegotiator& o) { return o.sdpReplaceMode(1); },
     "Request to set the connection mode to:1 to all types of media (AUDIO and VIDEO)"},
    {[](cSdpNegotiator& o) { return o.sdpLimitVideoMediaBandwidth(0, H264_LEVEL_1); },
     "Request to update the profile level id while H264 codec is not present. Ignoring."},
    {[](cSdpNegotiator& o) { return o.sdpReplaceTransportProtocol(nullptr, true); },
     "The request to restore the RTP/SAVP is invalid."},
    {[](cSdpNegotiator& o) { return o.sdpReInsertANAT(nullptr, true); },
     "The Request to re-insert the ANAT is invalid."},
    {[](cSdpNegotiator& o) { return o.sdpDisableSRTPMedia(nullptr, security(1)); },
     "No MIKEY security in SDP. There is nothing to remove."},
    {[](cSdpNegotiator& o) { return o.sdpDisableSRTPMedia(nullptr, security(2)); },
     "No SDES security in SDP. There is nothing to remove."},
    {[](cSdpNegotiator& o) { return o.sdpRemoveANAT(static_cast<eIPAddressVersion>(0), nullptr, true); },
     "removeAddrVersion(=0) is not IP4 or IP6. exiting sdpRemoveANAT."},
    {[](cSdpNegotiator& o) { return o.sdpRemoveANAT(static_cast<eIPAddressVersion>(2), nullptr, true); },
     "group ANAT attribute is not present, nothing to remove."},
};

const char* const body =
    "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\nm=audio 5004 RTP/AVP 0\r\n";

/// The request returns the facility's result for its last line, and no other's, and 0 while tracing is off.
void expectTracedResult(FakeFacility& fake, const TracedRequest& each, const std::string& text) {
  cSdpNegotiator object;
  object.sdpParse(text.c_str(), SDP_TYPE_OFFER);
  fake.flagsOn = 0;
  EXPECT_EQ(each.request(object), 0) << each.lastLine;
  object.sdpParse(text.c_str(), SDP_TYPE_OFFER);
  fake.flagsOn = 2;
  fake.numbersLines = true;
  fake.lines.clear();
  const unsigned short result = each.request(object);
  EXPECT_EQ(result, fake.lines.size()) << each.lastLine;
  ASSERT_GE(fake.lines.size(), 2U);
  const std::string last = fake.lines.back().text;
  EXPECT_EQ(last.substr(last.find(':') + 1), each.lastLine);
  fake.flagsOn = 0;
}

// Deliberate, like the one above: the number says nothing of what was done.
TEST_F(TraceResult, IsTheStatusOfRequestsThatEndWithALine) {
  for (const TracedRequest& each : tracedRequests) expectTracedResult(fake, each, body);
}

TEST_F(TraceResult, IsTheStatusOfAnAnatRemoval) {
  const TracedRequest request = {[](cSdpNegotiator& o) {
                                   char removed[26];
                                   return o.sdpRemoveANAT(static_cast<eIPAddressVersion>(10), removed, true);
                                 },
                                 "sdpRemoveANAT output is [2]"};
  const std::string anat = std::string(body) + "c=IN IP4 192.0.2.1\r\na=group:ANAT 1 2\r\n" +
                           "m=audio 5006 RTP/AVP 0\r\nc=IN IP6 2001:db8::1\r\n";
  expectTracedResult(fake, request, anat);
}

}  // namespace
