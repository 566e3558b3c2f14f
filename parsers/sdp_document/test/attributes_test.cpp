#include "documentTestSupport.h"

// unbundle, strip-attributes and direction.

namespace {

using documentTest::documentOf;
using documentTest::expectDone;
using documentTest::expectUnchanged;

TEST(Unbundle, DissolvesBundlesAndGivesTheirPort) {
  expectDone({
      {"the first member with a port", "unbundle",
       "a=group:BUNDLE 2 0 1|a=group:LS 0 1|m=video 0 RTP/AVP 31|a=mid:0|a=bundle-only|m=audio 9/1 RTP/AVP "
       "0|a=mid:1|m=audio 7 RTP/AVP 0|a=mid:2|",
       "a=group:LS 0 1|m=video 9/1 RTP/AVP 31|a=mid:0|m=audio 9/1 RTP/AVP 0|a=mid:1|m=audio 7 RTP/AVP "
       "0|a=mid:2|"},
      {"a port of its own stays", "unbundle",
       "a=group:BUNDLE 0 1|m=audio 9 RTP/AVP 0|a=mid:0|m=audio 7 RTP/AVP 0|a=mid:1|a=bundle-only|",
       "m=audio 9 RTP/AVP 0|a=mid:0|m=audio 7 RTP/AVP 0|a=mid:1|"},
      {"without a member with a port it keeps its own", "unbundle",
       "a=group:BUNDLE 0 1|m=audio 0 RTP/AVP 0|a=mid:0|m=audio 000 RTP/AVP 0|a=mid:1|a=bundle-only|m=audio 7 "
       "RTP/AVP 0|a=mid:2|",
       "m=audio 0 RTP/AVP 0|a=mid:0|m=audio 000 RTP/AVP 0|a=mid:1|m=audio 7 RTP/AVP 0|a=mid:2|"},
      {"without a group", "unbundle",
       "m=audio 0 RTP/AVP 0|a=bundle-only|a=x|a=bundle-only:y|m=audio 7 RTP/AVP 0|",
       "m=audio 0 RTP/AVP 0|a=x|m=audio 7 RTP/AVP 0|"},
      {"of several groups the first with a port", "unbundle",
       "a=group:BUNDLE 1 2|a=group:BUNDLE 1 3|m=audio 0 RTP/AVP 0|a=mid:2|m=audio 7 RTP/AVP "
       "0|a=mid:3|m=audio 0 RTP/AVP 0|a=mid:1|a=bundle-only|",
       "m=audio 0 RTP/AVP 0|a=mid:2|m=audio 7 RTP/AVP 0|a=mid:3|m=audio 7 RTP/AVP 0|a=mid:1|"},
      {"of another kind of group none", "unbundle",
       "a=group:LS 0 1|m=audio 7 RTP/AVP 0|a=mid:0|m=audio 0 RTP/AVP 0|a=mid:1|a=bundle-only|",
       "a=group:LS 0 1|m=audio 7 RTP/AVP 0|a=mid:0|m=audio 0 RTP/AVP 0|a=mid:1|"},
      {"empty ones go", "unbundle",
       "a=group:BUNDLE|a=group:BUNDLE |a=group:bundle 0|a=group: BUNDLE x|a=group:BUNDLE2 x|m=audio 7 "
       "RTP/AVP 0|",
       "a=group:bundle 0|a=group:BUNDLE2 x|m=audio 7 RTP/AVP 0|"},
      {"one that has got its port gives it to nobody", "unbundle",
       "a=group:BUNDLE 0 1|a=group:BUNDLE 1 2|m=audio 7 RTP/AVP 0|a=mid:0|m=audio 0 RTP/AVP "
       "0|a=mid:1|a=bundle-only|m=audio 0 RTP/AVP 0|a=mid:2|a=bundle-only|",
       "m=audio 7 RTP/AVP 0|a=mid:0|m=audio 7 RTP/AVP 0|a=mid:1|m=audio 0 RTP/AVP 0|a=mid:2|"},
  });
  expectUnchanged({
      {"bundle-only of the session", "unbundle", "a=bundle-only|m=audio 7 RTP/AVP 0|"},
      {"a group of a section", "unbundle", "m=audio 7 RTP/AVP 0|a=group:BUNDLE 0|"},
      {"an unreadable section", "unbundle", "m=audio 0 RTP/AVP|a=bundle-only|"},
      {"nothing", "unbundle", ""},
  });
}

TEST(StripAttributes, TakesThoseOfTheNames) {
  expectDone({
      {"of session and sections", "strip-attributes x", "a=x|b=x|m=audio 9 RTP/AVP 0|a=x:1|a=xy|a=X|a=y|a=x|",
       "b=x|m=audio 9 RTP/AVP 0|a=xy|a=X|a=y|"},
      {"several", "strip-attributes x,y,z", "a=z:1|a=w|a=x|a=y:2|", "a=w|"},
      {"beginnings", "strip-attributes ice-*,y",
       "a=ice-lite|m=audio 9 RTP/AVP 0|a=ice-ufrag:x|a=ice-|a=ice|a=icex|a=y|",
       "m=audio 9 RTP/AVP 0|a=ice|a=icex|"},
      {"all but those that hold a body together", "strip-attributes *",
       "a=group:BUNDLE 0|a=x|m=audio 9 RTP/AVP 0 96|c=x|a=mid:0|a=bundle-only|a=rtpmap:96 "
       "x/1|a=fingerprint:x|a=sendonly|a=|a=:y|",
       "a=group:BUNDLE 0|m=audio 9 RTP/AVP 0 96|c=x|a=mid:0|a=bundle-only|"},
      {"those that hold a body together by their names", "strip-attributes group,mid,bundle-only,m*,x",
       "a=group:BUNDLE 0|m=audio 9 RTP/AVP 0|a=mid:0|a=bundle-only|a=msid:x|a=x|",
       "a=group:BUNDLE 0|m=audio 9 RTP/AVP 0|a=mid:0|a=bundle-only|"},
      {"of a selection alone", "strip-attributes x audio",
       "a=x|m=audio 9 RTP/AVP 0|a=x|m=video 9 RTP/AVP 31|a=x|",
       "a=x|m=audio 9 RTP/AVP 0|m=video 9 RTP/AVP 31|a=x|"},
      {"all are the session's as well", "strip-attributes x all", "a=x|m=audio 9 RTP/AVP 0|a=x|",
       "m=audio 9 RTP/AVP 0|"},
      {"not of disabled sections", "strip-attributes x",
       "a=x|m=audio 0 RTP/AVP 0|a=x|m=video 0 RTP/AVP 31|a=x|a=bundle-only|",
       "m=audio 0 RTP/AVP 0|a=x|m=video 0 RTP/AVP 31|a=bundle-only|"},
      {"without sections", "strip-attributes x", "a=x|a=y|", "a=y|"},
  });
}

TEST(SetDirectionOfSections, GivesEachSelectedThis) {
  expectDone({
      {"the first is replaced, further ones go", "direction inactive",
       "m=audio 9 RTP/AVP 0|a=sendonly|a=x|a=recvonly|a=inactive|", "m=audio 9 RTP/AVP 0|a=inactive|a=x|"},
      {"one that is right stays", "direction sendonly", "m=audio 9 RTP/AVP 0|a=sendonly|a=x|a=recvonly|",
       "m=audio 9 RTP/AVP 0|a=sendonly|a=x|"},
      {"one with a value becomes the word", "direction sendonly", "m=audio 9 RTP/AVP 0|a=sendonly:x|",
       "m=audio 9 RTP/AVP 0|a=sendonly|"},
      {"without one a line is added", "direction recvonly", "m=audio 9 RTP/AVP 0|a=x|||m=video 9 RTP/AVP 31|",
       "m=audio 9 RTP/AVP 0|a=x|a=recvonly|||m=video 9 RTP/AVP 31|a=recvonly|"},
      {"the session's is the others'", "direction recvonly 1",
       "a=sendonly|m=audio 9 RTP/AVP 0|m=video 9 RTP/AVP 31|",
       "a=sendonly|m=audio 9 RTP/AVP 0|a=recvonly|m=video 9 RTP/AVP 31|"},
      {"back to the default", "direction sendrecv", "a=sendonly|m=audio 9 RTP/AVP 0|",
       "a=sendonly|m=audio 9 RTP/AVP 0|a=sendrecv|"},
      {"disabled ones as well", "direction inactive", "m=audio 0 RTP/AVP 0|a=sendrecv|",
       "m=audio 0 RTP/AVP 0|a=inactive|"},
      {"without RTP as well", "direction inactive application", "m=application 9 UDP/DTLS/SCTP x|",
       "m=application 9 UDP/DTLS/SCTP x|a=inactive|"},
  });
  expectUnchanged({
      {"it is so by default", "direction sendrecv", "m=audio 9 RTP/AVP 0|"},
      {"it is so by the session", "direction sendonly", "a=sendonly|m=audio 9 RTP/AVP 0|"},
      {"none of the kind", "direction inactive video", "m=audio 9 RTP/AVP 0|"},
      {"without sections", "direction inactive", "a=sendrecv|"},
  });
}

TEST(SetDirectionOfSections, AddsLinesWithTheEndOfTheLineInFront) {
  sdp::Document document =
      documentOf("v=0\nm=audio 9 RTP/AVP 0\r\n\nm=audio 9 RTP/AVP 0\na=x\nm=audio 9 RTP/AVP 0\na=y\r");
  EXPECT_FALSE(setDirection(document, sdp::Direction::inactive));
  EXPECT_EQ(document.text(),
            "v=0\nm=audio 9 RTP/AVP 0\r\na=inactive\r\n\nm=audio 9 RTP/AVP 0\na=x\na=inactive\nm=audio 9 "
            "RTP/AVP 0\na=y\r\na=inactive\r\n");
}

}  // namespace
