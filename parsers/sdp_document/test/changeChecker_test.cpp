#include "changeChecker.h"
#include "documentTestSupport.h"

// The checker that other tests rely on does complain of what is wrong.

namespace {

using documentTest::withEnds;
using documentTest::wordsOf;

struct Judged {
  const char* what;
  const char* request;
  const char* before;
  const char* after;
  const char* complaint;  ///< part of one; null for none
};

TEST(ChangeChecker, ComplainsOfWhatARequestShouldNotHaveDone) {
  const Judged cases[] = {
      {"right", "keep-codecs PCMU", "v=0|m=audio 9 RTP/AVP 0 8|a=fmtp:8 x|", "v=0|m=audio 9 RTP/AVP 0|",
       nullptr},
      {"a payload type twice", "keep-codecs PCMU", "v=0|m=audio 9 RTP/AVP 0 8|", "v=0|m=audio 9 RTP/AVP 0 0|",
       "twice"},
      {"a new one", "keep-codecs PCMU", "v=0|m=audio 9 RTP/AVP 0 8|", "v=0|m=audio 9 RTP/AVP 0 9|",
       "new format"},
      {"one of two", "keep-codecs PCMU", "v=0|m=audio 9 RTP/AVP 0 8 0|", "v=0|m=audio 9 RTP/AVP 0 8|",
       "stands twice"},
      {"an orphaned attribute", "keep-codecs PCMU", "v=0|m=audio 9 RTP/AVP 0 8|a=gpmd:8 x|",
       "v=0|m=audio 9 RTP/AVP 0|a=gpmd:8 x|", "went"},
      {"rtx of one that went", "drop-codecs 96",
       "v=0|m=audio 9 RTP/AVP 0 96 97|a=rtpmap:97 rtx/1|a=fmtp:97 apt=96|",
       "v=0|m=audio 9 RTP/AVP 0 97|a=rtpmap:97 rtx/1|a=fmtp:97 apt=96|", "rtx"},
      {"no format", "drop-codecs 0", "v=0|m=audio 9 RTP/AVP 0|", "v=0|m=audio 9 RTP/AVP|", "unreadable"},
      {"a group that names it", "disable 1", "v=0|a=group:LS 0 1|m=audio 9 RTP/AVP 0|a=mid:0|",
       "v=0|a=group:LS 0 1|m=audio 0 RTP/AVP 0|a=mid:0|", "a group names it"},
      {"formats of one put away", "keep-codecs x", "v=0|m=audio 9 RTP/AVP 0 8|", "v=0|m=audio 0 RTP/AVP 0|",
       "lost formats"},
      {"a blank line", "strip-attributes x", "v=0|a=x|", "v=0||", "blank line"},
      {"another line", "keep-codecs PCMU", "v=0|m=audio 9 RTP/AVP 0 8|a=x|", "v=0|m=audio 9 RTP/AVP 0|a=X|",
       "not concerned"},
      {"a line that is missing", "unbundle", "v=0|a=group:LS 1|", "v=0|", "not concerned"},
      {"a line of another section", "keep-codecs PCMU 1",
       "m=audio 9 RTP/AVP 0 8|m=audio 9 RTP/AVP 0 8|a=fmtp:8 x|",
       "m=audio 9 RTP/AVP 0|m=audio 9 RTP/AVP 0 8|", "not concerned"},
      {"formats of another section", "keep-codecs PCMU 1", "m=audio 9 RTP/AVP 0|m=audio 9 RTP/AVP 0 8|",
       "m=audio 9 RTP/AVP 0|m=audio 9 RTP/AVP 0|", "its formats"},
      {"a section that is missing", "disable 1", "m=audio 9 RTP/AVP 0|m=audio 9 RTP/AVP 0|",
       "m=audio 0 RTP/AVP 0|", "number of sections"},
      {"the media", "disable 1", "m=audio 9 RTP/AVP 0|", "m=video 0 RTP/AVP 0|", "word 0"},
      {"the transport", "disable 1", "m=audio 9 RTP/AVP 0|", "m=audio 0 RTP/AVPF 0|", "word 2"},
      {"a port out of nowhere", "disable 1", "m=audio 9 RTP/AVP 0|m=audio 8 RTP/AVP 0|",
       "m=audio 0 RTP/AVP 0|m=audio 9 RTP/AVP 0|", "another port"},
      {"put away without being asked", "disable 1", "m=audio 9 RTP/AVP 0|m=audio 8 RTP/AVP 0|",
       "m=audio 0 RTP/AVP 0|m=audio 0 RTP/AVP 0|", "not selected"},
      {"not put away", "disable 1", "m=audio 9 RTP/AVP 0|", "m=audio 9 RTP/AVP 0|", "not disabled"},
      {"an unreadable section", "disable all", "m=audio 9 RTP/AVP|", "m=audio 0 RTP/AVP|", "unreadable"},
      {"a disabled section", "keep-codecs PCMU", "m=audio 0 RTP/AVP 0 8|", "m=audio 0 RTP/AVP 0|", "formats"},
      {"separators", "order-codecs 8", "m=audio 9 RTP/AVP 0\t8|", "m=audio 9 RTP/AVP 8 0|", "blanks"},
      {"an address that was forgotten", "anchor ::1 2000", "c=IN IP4 1.1.1.1|m=audio 9 RTP/AVP 0|",
       "c=IN IP4 1.1.1.1|m=audio 2000 RTP/AVP 0|", "another address"},
      {"a candidate that was forgotten", "anchor ::1 2000", "c=x|m=audio 9 RTP/AVP 0|a=candidate:x|",
       "c=IN IP6 ::1|m=audio 2000 RTP/AVP 0|a=candidate:x|", "goes round"},
      {"no address at all", "anchor ::1 2000", "m=audio 9 RTP/AVP 0|", "m=audio 2000 RTP/AVP 0|",
       "no address"},
      {"an odd port", "anchor ::1 2000", "c=x|m=audio 9 RTP/AVP 0|", "c=IN IP6 ::1|m=audio 2001 RTP/AVP 0|",
       "none of the row"},
      {"a=rtcp with the anchor's address", "anchor ::1 2000",
       "c=x|m=audio 9 RTP/AVP 0|a=rtcp:9 IN IP4 1.1.1.1|a=rtcp:10|",
       "c=IN IP6 ::1|m=audio 2000 RTP/AVP 0|a=rtcp:2001 IN IP6 ::1|a=rtcp:2001|", nullptr},
      {"an address of a=rtcp that was forgotten", "anchor ::1 2000",
       "c=x|m=audio 9 RTP/AVP 0|a=rtcp:9 IN IP4 1.1.1.1|",
       "c=IN IP6 ::1|m=audio 2000 RTP/AVP 0|a=rtcp:2001 IN IP4 1.1.1.1|", "it is not a=rtcp:2001 IN IP6 ::1"},
      {"an address of a=rtcp that went", "anchor ::1 2000",
       "c=x|m=audio 9 RTP/AVP 0|a=rtcp:9 IN IP4 1.1.1.1|", "c=IN IP6 ::1|m=audio 2000 RTP/AVP 0|a=rtcp:2001|",
       "it is not a=rtcp:2001 IN IP6 ::1"},
      {"a port of a=rtcp that was forgotten", "anchor 1.1.1.1 2000", "c=x|m=audio 9 RTP/AVP 0|a=rtcp:9|",
       "c=IN IP4 1.1.1.1|m=audio 2000 RTP/AVP 0|a=rtcp:9|", "it is not a=rtcp:2001"},
      {"a port of a=rtcp beside rtcp-mux", "anchor 1.1.1.1 2000",
       "c=x|m=audio 9 RTP/AVP 0|a=rtcp:9|a=rtcp-mux|",
       "c=IN IP4 1.1.1.1|m=audio 2000 RTP/AVP 0|a=rtcp:2001|a=rtcp-mux|", "it is not a=rtcp:2000"},
      {"a=rtcp that went", "anchor 1.1.1.1 2000", "c=x|m=audio 9 RTP/AVP 0|a=rtcp:9|",
       "c=IN IP4 1.1.1.1|m=audio 2000 RTP/AVP 0|", "another number of a=rtcp"},
      {"a=rtcp of a disabled section", "anchor 1.1.1.1 2000", "c=x|m=audio 0 RTP/AVP 0|a=rtcp:9|",
       "c=IN IP4 1.1.1.1|m=audio 0 RTP/AVP 0|a=rtcp:9|", "where no port was given"},
      {"a=rtcp of the session", "anchor 1.1.1.1 2000", "c=x|a=rtcp:9|m=audio 9 RTP/AVP 0|",
       "c=IN IP4 1.1.1.1|a=rtcp:9|m=audio 2000 RTP/AVP 0|", "where no port was given"},
      {"keys of DTLS that were forgotten", "set-profile RTP/SAVP",
       "m=audio 9 RTP/AVP 0|a=crypto:1 x y|a=setup:actpass|",
       "m=audio 9 RTP/SAVP 0|a=crypto:1 x y|a=setup:actpass|", "keys that do not go with it: setup"},
      {"an identity that was forgotten", "set-profile RTP/AVP", "m=audio 9 RTP/AVPF 0|a=tls-id:1|",
       "m=audio 9 RTP/AVP 0|a=tls-id:1|", "keys that do not go with it: tls-id"},
      {"keys of MIKEY that were forgotten", "set-profile UDP/TLS/RTP/SAVP",
       "m=audio 9 RTP/AVP 0|a=fingerprint:x|a=key-mgmt:x|",
       "m=audio 9 UDP/TLS/RTP/SAVP 0|a=fingerprint:x|a=key-mgmt:x|", "keys that do not go with it: key-mgmt"},
      {"keys of the session that were forgotten", "set-profile RTP/AVP",
       "a=setup:active|m=audio 9 RTP/AVPF 0|", "a=setup:active|m=audio 9 RTP/AVP 0|",
       "keys that do not go with it: setup"},
      {"keys of the session that go with it", "set-profile RTP/SAVP", "a=key-mgmt:x|m=audio 9 RTP/AVP 0|",
       "m=audio 9 RTP/SAVP 0|", "keys that were to stay: key-mgmt"},
      {"keys of the session without a section of RTP", "set-profile RTP/AVP",
       "a=setup:active|m=x 9 udptl t38|", "m=x 9 udptl t38|", "keys that were to stay: setup"},
      {"keys that go with it", "set-profile UDP/TLS/RTP/SAVP",
       "m=audio 9 RTP/AVP 0|a=fingerprint:x|a=setup:active|", "m=audio 9 UDP/TLS/RTP/SAVP 0|a=fingerprint:x|",
       "keys that were to stay: setup"},
      {"keys that were forgotten", "set-profile RTP/AVP", "m=audio 9 RTP/AVPF 0|a=crypto:1 x y|",
       "m=audio 9 RTP/AVP 0|a=crypto:1 x y|", "crypto"},
      {"feedback that was forgotten", "set-profile RTP/AVP", "m=audio 9 RTP/AVPF 0|a=rtcp-fb:* x|",
       "m=audio 9 RTP/AVP 0|a=rtcp-fb:* x|", "feedback"},
      {"a profile that was forgotten", "set-profile RTP/AVP", "m=audio 9 RTP/AVPF 0|",
       "m=audio 9 RTP/AVPF 0|", "another transport"},
      {"a bundle that was forgotten", "unbundle", "a=group:BUNDLE 0|m=audio 9 RTP/AVP 0|",
       "a=group:BUNDLE 0|m=audio 9 RTP/AVP 0|", "still bundled"},
      {"a name that was forgotten", "strip-attributes x", "a=x|", "a=x|", "not stripped"},
      {"two directions", "direction sendonly", "m=audio 9 RTP/AVP 0|",
       "m=audio 9 RTP/AVP 0|a=sendonly|a=sendonly|", "several"},
      {"another direction", "direction sendonly", "m=audio 9 RTP/AVP 0|", "m=audio 9 RTP/AVP 0|",
       "another direction"},
      {"an empty line", "canonical", "v=0||", "v=0||", "number of lines"},
      {"another byte", "canonical", "v=0|a=x|", "v=0|a=y|", "another line"},
      {"a value's case", "canonical", "v=0|a=MID:X|", "v=0|a=mid:x|", "another line"},
      {"a format's case", "canonical", "v=0|m=Audio 9 x Y|", "v=0|m=audio 9 x y|", "another line"},
      {"two blanks", "canonical", "v=0|m=Audio 9 x  y|", "v=0|m=audio 9 x  y|", "another line"},
  };
  for (const Judged& c : cases) {
    SCOPED_TRACE(c.what);
    const auto complaints =
        plain::complaintsAbout(wordsOf(c.request), withEnds(c.before, "\r\n"), withEnds(c.after, "\r\n"));
    std::string all;
    for (const std::string& complaint : complaints) all += complaint + "; ";
    if (c.complaint == nullptr) {
      EXPECT_EQ(all, "");
    } else {
      EXPECT_NE(all.find(c.complaint), std::string::npos) << all;
    }
  }
}

TEST(ChangeChecker, ComplainsOfEndsOfLines) {
  EXPECT_FALSE(plain::complaintsAbout(wordsOf("unbundle"), "v=0\n", "v=0\r\n").empty());
  EXPECT_FALSE(plain::complaintsAbout(wordsOf("canonical"), "v=0\n", "v=0\n").empty());
  EXPECT_FALSE(plain::complaintsAbout(wordsOf("canonical"), "v=0\na=x\ry\n", "v=0\r\na=x\ry\r\n").empty());
  EXPECT_TRUE(plain::complaintsAbout(wordsOf("direction inactive"), "m=audio 9 RTP/AVP 0",
                                     "m=audio 9 RTP/AVP 0\r\na=inactive\r\n")
                  .empty());
}

}  // namespace
