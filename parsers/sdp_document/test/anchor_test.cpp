#include "documentTestSupport.h"

// anchor: media by way of one address, from a port on.

namespace {

using documentTest::expectDone;
using documentTest::expectRefused;
using documentTest::expectUnchanged;
using sdp::Reason;

TEST(Anchor, LeadsABrowsersOfferByWayOfARelay) {
  expectDone(
      {{"one port for the group, and no trace of ICE", "anchor 192.0.2.250 40000",
        "a=group:BUNDLE 0 1 2|a=ice-lite|a=ice-options:trickle|a=msid-semantic: WMS|m=audio 9 "
        "UDP/TLS/RTP/SAVPF 111|"
        "c=IN IP4 0.0.0.0|a=rtcp:9 IN IP4 0.0.0.0|a=ice-ufrag:x|a=ice-pwd:y|a=candidate:1 1 udp 1 10.0.0.1 5 "
        "typ host|"
        "a=end-of-candidates|a=fingerprint:sha-256 AA|a=mid:0|a=rtcp-mux|m=video 9 UDP/TLS/RTP/SAVPF 96|c=IN "
        "IP4 0.0.0.0|"
        "a=rtcp:9 IN IP4 0.0.0.0|a=ice-ufrag:x|a=mid:1|a=rtcp-mux|m=application 9 UDP/DTLS/SCTP "
        "webrtc-datachannel|"
        "c=IN IP4 0.0.0.0|a=mid:2|",
        "a=group:BUNDLE 0 1 2|a=msid-semantic: WMS|m=audio 40000 UDP/TLS/RTP/SAVPF 111|"
        "c=IN IP4 192.0.2.250|a=rtcp:40000 IN IP4 192.0.2.250|"
        "a=fingerprint:sha-256 AA|a=mid:0|a=rtcp-mux|m=video 40000 UDP/TLS/RTP/SAVPF 96|c=IN IP4 192.0.2.250|"
        "a=rtcp:40000 IN IP4 192.0.2.250|a=mid:1|a=rtcp-mux|m=application 40000 UDP/DTLS/SCTP "
        "webrtc-datachannel|"
        "c=IN IP4 192.0.2.250|a=mid:2|"}});
}

TEST(Anchor, ReplacesTheContentOfEachConnection) {
  expectDone({
      {"session and sections, each of several", "anchor 192.0.2.9 2000",
       "c=IN IP4 1.1.1.1/127|c=x|m=audio 5004 RTP/AVP 0|c=IN IP6 ::1|c=IN  IP4 host.example |m=video 0 "
       "RTP/AVP 31|c=|",
       "c=IN IP4 192.0.2.9|c=IN IP4 192.0.2.9|m=audio 2000 RTP/AVP 0|c=IN IP4 192.0.2.9|c=IN IP4 192.0.2.9|"
       "m=video 0 RTP/AVP 31|c=IN IP4 192.0.2.9|"},
      {"the other family", "anchor 2001:DB8::9 2000", "c=IN IP4 1.1.1.1|m=audio 5004 RTP/AVP 0|",
       "c=IN IP6 2001:DB8::9|m=audio 2000 RTP/AVP 0|"},
      {"one is added where none holds", "anchor 192.0.2.9 2000",
       "m=audio 5004 RTP/AVP 0|i=x|i=y|b=AS:1|i=z|m=video 0 RTP/AVP 31|m=audio 5006 RTP/AVP 0|a=bundle-only|",
       "m=audio 2000 RTP/AVP 0|i=x|i=y|c=IN IP4 192.0.2.9|b=AS:1|i=z|m=video 0 RTP/AVP 31|c=IN IP4 192.0.2.9|"
       "m=audio 2002 RTP/AVP 0|c=IN IP4 192.0.2.9|a=bundle-only|"},
      {"none is added where the session has one", "anchor 192.0.2.9 2000",
       "c=IN IP4 1.1.1.1|m=audio 5004 RTP/AVP 0|a=x|", "c=IN IP4 192.0.2.9|m=audio 2000 RTP/AVP 0|a=x|"},
      {"without sections", "anchor 192.0.2.9 2000", "c=IN IP4 1.1.1.1|", "c=IN IP4 192.0.2.9|"},
      {"the o-line stays", "anchor 192.0.2.9 2000", "o=- 1 1 IN IP4 3.3.3.3|c=IN IP4 1.1.1.1|",
       "o=- 1 1 IN IP4 3.3.3.3|c=IN IP4 192.0.2.9|"},
      {"to an unspecified address", "anchor 0.0.0.0 2000", "c=IN IP4 1.1.1.1|m=audio 5004 RTP/AVP 0|",
       "c=IN IP4 0.0.0.0|m=audio 2000 RTP/AVP 0|"},
  });
}

TEST(Anchor, LeavesTheUnspecifiedAddressOfHold) {
  expectDone({
      {"of a section", "anchor 192.0.2.9 2000", "m=audio 5004 RTP/AVP 0|c=IN IP4 0.0.0.0|",
       "m=audio 2000 RTP/AVP 0|c=IN IP4 0.0.0.0|"},
      {"of version 6, as it stands", "anchor 192.0.2.9 2000", "m=audio 5004 RTP/AVP 0|c=IN  IP6 :: x|",
       "m=audio 2000 RTP/AVP 0|c=IN  IP6 :: x|"},
      {"of the session", "anchor 192.0.2.9 2000",
       "c=IN IP4 0.0.0.0|m=audio 5004 RTP/AVP 0|m=video 9 RTP/AVP 31|c=IN IP4 0.0.0.0|",
       "c=IN IP4 0.0.0.0|m=audio 2000 RTP/AVP 0|m=video 2002 RTP/AVP 31|c=IN IP4 192.0.2.9|"},
      {"not with port 9", "anchor 192.0.2.9 2000", "m=audio 09 RTP/AVP 0|c=IN IP4 0.0.0.0|",
       "m=audio 2000 RTP/AVP 0|c=IN IP4 192.0.2.9|"},
      {"not with ICE of its own", "anchor 192.0.2.9 2000",
       "m=audio 5004 RTP/AVP 0|c=IN IP4 0.0.0.0|a=ice-ufrag:x|",
       "m=audio 2000 RTP/AVP 0|c=IN IP4 192.0.2.9|"},
      {"not with ICE of the session", "anchor 192.0.2.9 2000",
       "a=ice-ufrag:x|m=audio 5004 RTP/AVP 0|c=IN IP4 0.0.0.0|",
       "m=audio 2000 RTP/AVP 0|c=IN IP4 192.0.2.9|"},
      {"candidates alone are no ICE", "anchor 192.0.2.9 2000",
       "m=audio 5004 RTP/AVP 0|c=IN IP4 0.0.0.0|a=candidate:x|", "m=audio 2000 RTP/AVP 0|c=IN IP4 0.0.0.0|"},
      {"in a disabled section with ICE", "anchor 192.0.2.9 2000",
       "m=audio 0 RTP/AVP 0|c=IN IP4 0.0.0.0|a=ice-ufrag:x|", "m=audio 0 RTP/AVP 0|c=IN IP4 0.0.0.0|"},
      {"not where one of those for which it holds has port 9", "anchor 192.0.2.9 2000",
       "c=IN IP4 0.0.0.0|m=audio 5004 RTP/AVP 0|m=video 9 RTP/AVP 31|",
       "c=IN IP4 192.0.2.9|m=audio 2000 RTP/AVP 0|m=video 2002 RTP/AVP 31|"},
      {"a section with a c-line of its own does not count", "anchor 192.0.2.9 2000",
       "c=IN IP4 0.0.0.0|m=audio 5004 RTP/AVP 0|m=video 9 RTP/AVP 31|c=IN IP4 1.1.1.1|",
       "c=IN IP4 0.0.0.0|m=audio 2000 RTP/AVP 0|m=video 2002 RTP/AVP 31|c=IN IP4 192.0.2.9|"},
      {"bundled only with ICE is not disabled", "anchor 192.0.2.9 2000",
       "m=audio 0 RTP/AVP 0|c=IN IP4 0.0.0.0|a=bundle-only|a=ice-ufrag:x|",
       "m=audio 0 RTP/AVP 0|c=IN IP4 192.0.2.9|a=bundle-only|"},
      {"other spellings are replaced", "anchor 192.0.2.9 2000",
       "m=audio 5004 RTP/AVP 0|c=IN IP4 0.0.0.0/127|c=IN IP6 0:0::0|c=IN IP4 00.0.0.0|",
       "m=audio 2000 RTP/AVP 0|c=IN IP4 192.0.2.9|c=IN IP4 192.0.2.9|c=IN IP4 192.0.2.9|"},
      {"with no section at all", "anchor 192.0.2.9 2000", "c=IN IP4 0.0.0.0|", "c=IN IP4 0.0.0.0|"},
      {"TCP with port 9", "anchor 192.0.2.9 2000", "m=message 9 TCP/MSRP *|c=IN IP4 0.0.0.0|",
       "m=message 9 TCP/MSRP *|c=IN IP4 192.0.2.9|"},
  });
}

TEST(Anchor, GivesPortsInARow) {
  expectDone({
      {"by two", "anchor 192.0.2.9 1024", "c=x|m=audio 5004 RTP/AVP 0|m=x 7 y z|m=video 1 RTP/AVP 31|",
       "c=IN IP4 192.0.2.9|m=audio 1024 RTP/AVP 0|m=x 1026 y z|m=video 1028 RTP/AVP 31|"},
      {"two times count on", "anchor 192.0.2.9 2000",
       "c=x|m=audio 5004/03 RTP/AVP 0|m=audio 7/1 RTP/AVP 0|m=audio 8 RTP/AVP 0|",
       "c=IN IP4 192.0.2.9|m=audio 2000/03 RTP/AVP 0|m=audio 2006/1 RTP/AVP 0|m=audio 2008 RTP/AVP 0|"},
      {"disabled and bundled only take none", "anchor 192.0.2.9 2000",
       "c=x|m=audio 0 RTP/AVP 0|m=audio 00/2 RTP/AVP 0|a=bundle-only|m=audio 8 RTP/AVP 0|",
       "c=IN IP4 192.0.2.9|m=audio 0 RTP/AVP 0|m=audio 00/2 RTP/AVP 0|a=bundle-only|m=audio 2000 RTP/AVP 0|"},
      {"bundled only with a port takes one", "anchor 192.0.2.9 2000",
       "c=x|m=audio 8 RTP/AVP 0|a=bundle-only|", "c=IN IP4 192.0.2.9|m=audio 2000 RTP/AVP 0|a=bundle-only|"},
      {"TCP keeps port 9 and no other", "anchor 192.0.2.9 2000",
       "c=x|m=message 9 TCP/MSRP *|m=message 09/2 TCP/MSRP *|m=message 10 TCP/MSRP *|m=message 0 TCP/MSRP "
       "*|m=audio 9 RTP/AVP 0|"
       "m=x 9 tcp y|",
       "c=IN IP4 192.0.2.9|m=message 9 TCP/MSRP *|m=message 09/2 TCP/MSRP *|m=message 2000 TCP/MSRP "
       "*|m=message 0 TCP/MSRP *|"
       "m=audio 2002 RTP/AVP 0|m=x 2004 tcp y|"},
      {"up to 65534", "anchor 192.0.2.9 65532", "c=x|m=audio 1 RTP/AVP 0|m=audio 1 RTP/AVP 0|",
       "c=IN IP4 192.0.2.9|m=audio 65532 RTP/AVP 0|m=audio 65534 RTP/AVP 0|"},
      {"a count up to 65534", "anchor 192.0.2.9 65532", "c=x|m=audio 1/2 RTP/AVP 0|",
       "c=IN IP4 192.0.2.9|m=audio 65532/2 RTP/AVP 0|"},
  });
}

TEST(Anchor, FollowsASectionIntoAllOfItsGroups) {
  std::string groups;
  for (int n = 0; n < 40; ++n) groups += "a=group:BUNDLE 0|";
  groups += "a=group:BUNDLE 0 1|";
  const std::string session = "c=IN IP4 192.0.2.9|" + groups;
  const std::string shared = session + "m=audio 9 RTP/AVP 0|a=mid:0|m=video 9 RTP/AVP 31|a=mid:1|";
  const std::string led = session + "m=audio 2000 RTP/AVP 0|a=mid:0|m=video 2000 RTP/AVP 31|a=mid:1|";
  // Of sections that share a mid, the first is followed into all groups and the others into sixteen.
  const std::string twice =
      session + "m=text 7 RTP/AVP 0|a=mid:0|m=audio 9 RTP/AVP 0|a=mid:0|m=video 9 RTP/AVP 31|a=mid:1|";
  const std::string ledTwice =
      session +
      "m=text 2000 RTP/AVP 0|a=mid:0|m=audio 2002 RTP/AVP 0|a=mid:0|m=video 2004 RTP/AVP 31|a=mid:1|";
  expectDone({
      {"the group behind forty others", "anchor 192.0.2.9 2000", shared.c_str(), led.c_str()},
      {"a mid of two sections", "anchor 192.0.2.9 2000", twice.c_str(), ledTwice.c_str()},
  });
}

TEST(Anchor, GivesMembersOfABundleWithOnePortOnePort) {
  expectDone({
      {"those with the same", "anchor 192.0.2.9 2000",
       "c=x|a=group:BUNDLE 0 1 2|m=audio 9 RTP/AVP 0|a=mid:0|m=audio 7 RTP/AVP 0|a=mid:1|m=audio 9 RTP/AVP "
       "0|a=mid:2|",
       "c=IN IP4 192.0.2.9|a=group:BUNDLE 0 1 2|m=audio 2000 RTP/AVP 0|a=mid:0|m=audio 2002 RTP/AVP "
       "0|a=mid:1|"
       "m=audio 2000 RTP/AVP 0|a=mid:2|"},
      {"as texts", "anchor 192.0.2.9 2000",
       "c=x|a=group:BUNDLE 0 1 2|m=audio 9 RTP/AVP 0|a=mid:0|m=audio 09 RTP/AVP 0|a=mid:1|m=audio 9/1 "
       "RTP/AVP 0|a=mid:2|",
       "c=IN IP4 192.0.2.9|a=group:BUNDLE 0 1 2|m=audio 2000 RTP/AVP 0|a=mid:0|m=audio 2002 RTP/AVP "
       "0|a=mid:1|"
       "m=audio 2004/1 RTP/AVP 0|a=mid:2|"},
      {"with their count", "anchor 192.0.2.9 2000",
       "c=x|a=group:BUNDLE 0 1|m=audio 9/2 RTP/AVP 0|a=mid:0|m=audio 9/2 RTP/AVP 0|a=mid:1|m=audio 9 RTP/AVP "
       "0|",
       "c=IN IP4 192.0.2.9|a=group:BUNDLE 0 1|m=audio 2000/2 RTP/AVP 0|a=mid:0|m=audio 2000/2 RTP/AVP "
       "0|a=mid:1|"
       "m=audio 2004 RTP/AVP 0|"},
      {"not of other groups", "anchor 192.0.2.9 2000",
       "c=x|a=group:BUNDLE 0|a=group:BUNDLE 1|a=group:LS 0 1|m=audio 9 RTP/AVP 0|a=mid:0|m=audio 9 RTP/AVP "
       "0|a=mid:1|m=audio 9 RTP/AVP 0|",
       "c=IN IP4 192.0.2.9|a=group:BUNDLE 0|a=group:BUNDLE 1|a=group:LS 0 1|m=audio 2000 RTP/AVP 0|a=mid:0|"
       "m=audio 2002 RTP/AVP 0|a=mid:1|m=audio 2004 RTP/AVP 0|"},
      {"a TCP member that keeps port 9 leads nobody", "anchor 192.0.2.9 2000",
       "c=x|a=group:BUNDLE 0 1 2|m=audio 9 TCP/RTP/AVP 0|a=mid:0|m=audio 9 RTP/AVP 0|a=mid:1|m=audio 9 "
       "RTP/AVP 0|a=mid:2|",
       "c=IN IP4 192.0.2.9|a=group:BUNDLE 0 1 2|m=audio 9 TCP/RTP/AVP 0|a=mid:0|m=audio 2000 RTP/AVP "
       "0|a=mid:1|"
       "m=audio 2000 RTP/AVP 0|a=mid:2|"},
      {"two sections of one mid", "anchor 192.0.2.9 2000",
       "c=x|a=group:BUNDLE 0|m=audio 9 RTP/AVP 0|a=mid:0|m=audio 9 RTP/AVP 0|a=mid:0|",
       "c=IN IP4 192.0.2.9|a=group:BUNDLE 0|m=audio 2000 RTP/AVP 0|a=mid:0|m=audio 2000 RTP/AVP 0|a=mid:0|"},
  });
}

TEST(Anchor, TellsThePortOfRtcp) {
  expectDone({
      {"one above", "anchor 192.0.2.9 2000", "c=x|m=audio 1 RTP/AVP 0|a=rtcp:2|",
       "c=IN IP4 192.0.2.9|m=audio 2000 RTP/AVP 0|a=rtcp:2001|"},
      {"with the address", "anchor ::9 2000", "c=x|m=audio 1 RTP/AVP 0|a=rtcp: 2\tIN  IP4 1.1.1.1 |",
       "c=IN IP6 ::9|m=audio 2000 RTP/AVP 0|a=rtcp:2001 IN IP6 ::9|"},
      {"less than four fields tell no address", "anchor 192.0.2.9 2000",
       "c=x|m=audio 1 RTP/AVP 0|a=rtcp:2 1.1.1.1|a=rtcp:2 IN IP4|a=rtcp:|",
       "c=IN IP4 192.0.2.9|m=audio 2000 RTP/AVP 0|a=rtcp:2001|a=rtcp:2001|a=rtcp:2001|"},
      {"the same with rtcp-mux", "anchor 192.0.2.9 2000", "c=x|m=audio 1 RTP/AVP 0|a=rtcp:2|a=rtcp-mux|",
       "c=IN IP4 192.0.2.9|m=audio 2000 RTP/AVP 0|a=rtcp:2000|a=rtcp-mux|"},
      {"the session's rtcp-mux does not count", "anchor 192.0.2.9 2000",
       "c=x|a=rtcp-mux|m=audio 1 RTP/AVP 0|a=rtcp:2|a=rtcp-mux-only|",
       "c=IN IP4 192.0.2.9|a=rtcp-mux|m=audio 2000 RTP/AVP 0|a=rtcp:2001|a=rtcp-mux-only|"},
      {"of the first port of several", "anchor 192.0.2.9 2000", "c=x|m=audio 1/3 RTP/AVP 0|a=rtcp:2|",
       "c=IN IP4 192.0.2.9|m=audio 2000/3 RTP/AVP 0|a=rtcp:2001|"},
      {"it goes where no port is given, and from the session", "anchor 192.0.2.9 2000",
       "c=x|a=rtcp:1|m=audio 0 RTP/AVP 0|a=rtcp:2|m=audio 0 RTP/AVP 0|a=bundle-only|a=rtcp:2|m=audio 9 "
       "TCP/RTP/AVP 0|a=rtcp:2|",
       "c=IN IP4 192.0.2.9|m=audio 0 RTP/AVP 0|m=audio 0 RTP/AVP 0|a=bundle-only|m=audio 9 TCP/RTP/AVP 0|"},
      {"without a colon it tells nothing and stays", "anchor 192.0.2.9 2000",
       "c=x|a=rtcp|m=audio 1 RTP/AVP 0|a=rtcp|", "c=IN IP4 192.0.2.9|a=rtcp|m=audio 2000 RTP/AVP 0|a=rtcp|"},
      {"without RTP as well", "anchor 192.0.2.9 2000", "c=x|m=x 1 y z|a=rtcp:2|",
       "c=IN IP4 192.0.2.9|m=x 2000 y z|a=rtcp:2001|"},
  });
}

TEST(Anchor, TakesAllThatTellsOtherWays) {
  for (const char* const name :
       {"candidate", "remote-candidates", "end-of-candidates", "ice-ufrag", "ice-pwd", "ice-options",
        "ice-lite", "ice-mismatch", "ice-pacing", "altc", "alt", "ccap", "source-filter"}) {
    SCOPED_TRACE(name);
    const std::string line = std::string("a=") + name;
    const std::string before = "c=x|" + line + ":y|m=audio 5 RTP/AVP 0|" + line + "|a=z|" + line +
                               ":x y|m=audio 0 RTP/AVP 0|" + line + ":|" + line + "x:1|";
    const std::string after =
        "c=IN IP4 192.0.2.9|m=audio 2000 RTP/AVP 0|a=z|m=audio 0 RTP/AVP 0|" + line + "x:1|";
    expectDone({{"it goes", "anchor 192.0.2.9 2000", before.c_str(), after.c_str()}});
  }
}

TEST(Anchor, IsRefusedWhereItCannotBeDone) {
  expectRefused({
      {"a port above 65534", "anchor 192.0.2.9 65534", "m=audio 1 RTP/AVP 0|m=video 1 RTP/AVP 31|",
       Reason::noPortLeft, 2, 6, "section 2 (video): no port left up to 65534"},
      {"a count that does not fit", "anchor 192.0.2.9 65532", "m=audio 1/3 RTP/AVP 0|", Reason::noPortLeft, 1,
       5, "section 1 (audio): no port left up to 65534"},
      {"a count beyond all numbers", "anchor 192.0.2.9 1024", "m=audio 1/18446744073709551616 RTP/AVP 0|",
       Reason::noPortLeft, 1, 5, "section 1 (audio): no port left up to 65534"},
      {"a count that would go round", "anchor 192.0.2.9 1024", "m=audio 1/9223372036854775809 RTP/AVP 0|",
       Reason::noPortLeft, 1, 5, "section 1 (audio): no port left up to 65534"},
      {"an unreadable section", "anchor 192.0.2.9 2000", "m=audio 1 RTP/AVP 0|m=video 0|",
       Reason::unreadableSection, 2, 6, "section 2 (video): unreadable m-line"},
      {"a path", "anchor 192.0.2.9 2000", "m=audio 1 RTP/AVP 0|m=message 9 TCP/MSRP *|a=path:msrp://x|",
       Reason::pathAttribute, 2, 6, "section 2 (message): a=path may tell an address"},
      {"a path without a value", "anchor 192.0.2.9 2000", "m=message 0 TCP/MSRP *|a=bundle-only|a=path|",
       Reason::pathAttribute, 1, 5, "section 1 (message): a=path may tell an address"},
  });
  expectDone({
      {"a path of a disabled section", "anchor 192.0.2.9 2000", "m=message 0 TCP/MSRP *|c=x|a=path:y|",
       "m=message 0 TCP/MSRP *|c=IN IP4 192.0.2.9|a=path:y|"},
      {"a path of the session", "anchor 192.0.2.9 2000", "a=path:y|m=audio 7 RTP/AVP 0|c=x|",
       "a=path:y|m=audio 2000 RTP/AVP 0|c=IN IP4 192.0.2.9|"},
  });
}

TEST(Anchor, OfATextWithoutLinesChangesNothing) {
  sdp::Document document;
  EXPECT_FALSE(anchor(document, "192.0.2.9", 2000));
  EXPECT_EQ(document.text(), "");
}

TEST(Anchor, AddsAConnectionWithTheEndOfTheLineInFront) {
  sdp::Document document = documentTest::documentOf("v=0\nm=audio 7 RTP/AVP 0\r\na=x\nm=audio 7 RTP/AVP 0");
  EXPECT_FALSE(anchor(document, "::9", 2000));
  EXPECT_EQ(document.text(),
            "v=0\nm=audio 2000 RTP/AVP 0\r\nc=IN IP6 ::9\r\na=x\nm=audio 2002 RTP/AVP 0\r\nc=IN IP6 ::9\r\n");
}

TEST(Anchor, FindsItsWorkDoneTheSecondTime) {
  expectUnchanged({{"nothing to do", "anchor 192.0.2.9 2000",
                    "a=group:BUNDLE 0 1|m=audio 2000 RTP/AVP 0|c=IN IP4 "
                    "192.0.2.9|a=rtcp:2001|a=mid:0|m=audio 2000 RTP/AVP 0|"
                    "c=IN IP4 192.0.2.9|a=mid:1|m=video 0 RTP/AVP 31|c=IN IP4 0.0.0.0|"}});
}

}  // namespace
