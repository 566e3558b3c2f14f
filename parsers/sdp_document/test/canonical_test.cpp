#include "documentTestSupport.h"

// canonical: the form on which all readers agree.

namespace {

using documentTest::documentOf;
using documentTest::expectRefusal;
using sdp::Document;
using sdp::Reason;

struct Canonical {
  const char* what;
  std::string_view before;
  std::string_view after;
};

void expectCanonical(std::initializer_list<Canonical> cases) {
  for (const Canonical& c : cases) {
    SCOPED_TRACE(c.what);
    Document document = documentOf(c.before);
    EXPECT_FALSE(canonicalise(document));
    EXPECT_EQ(document.text(), c.after);
    EXPECT_FALSE(canonicalise(document));
    EXPECT_EQ(document.text(), c.after) << "the second time";
    Document again = documentOf(c.after);
    EXPECT_FALSE(canonicalise(again));
    EXPECT_EQ(again.text(), c.after) << "read anew";
  }
}

TEST(Canonical, EndsLinesWithCrLfAndTakesEmptyOnes) {
  expectCanonical({
      {"LF", "v=0\ns=-\nm=audio 9 RTP/AVP 0\na=x\n", "v=0\r\ns=-\r\nm=audio 9 RTP/AVP 0\r\na=x\r\n"},
      {"both", "v=0\r\ns=-\na=x\r\n", "v=0\r\ns=-\r\na=x\r\n"},
      {"none at the end", "v=0\ns=-", "v=0\r\ns=-\r\n"},
      {"a CR at the end", "v=0\ns=-\r", "v=0\r\ns=-\r\n"},
      {"empty lines", "v=0\n\n\r\ns=-\n\nm=audio 9 RTP/AVP 0\n\n\n", "v=0\r\ns=-\r\nm=audio 9 RTP/AVP 0\r\n"},
      {"an empty line without LF", "v=0\n\r", "v=0\r\n"},
      {"the v-line alone", "v=0", "v=0\r\n"},
      {"a v-line with nothing", "v=", "v=\r\n"},
      {"blanks within stay", "v=0 \ns= a  b\t \na=x : y \n", "v=0 \r\ns= a  b\t \r\na=x : y \r\n"},
  });
}

TEST(Canonical, StraightensMLines) {
  expectCanonical({
      {"blanks and tabs", "v=0\nm= \taudio\t\t9  RTP/AVP \t0  8\t9 \t\n",
       "v=0\r\nm=audio 9 RTP/AVP 0 8 9\r\n"},
      {"leading zeros", "v=0\nm=audio 0005004/002 RTP/AVP 0\nm=audio 000 RTP/AVP 00\nm=audio 0/1 RTP/AVP 0\n",
       "v=0\r\nm=audio 5004/2 RTP/AVP 0\r\nm=audio 0 RTP/AVP 00\r\nm=audio 0/1 RTP/AVP 0\r\n"},
      {"a long count", "v=0\nm=audio 9/0099999999999999999999 RTP/AVP 0\n",
       "v=0\r\nm=audio 9/99999999999999999999 RTP/AVP 0\r\n"},
      {"unknown words stay", "v=0\nm=Foo 9 Rtp/Foo WebRTC-DataChannel\n",
       "v=0\r\nm=Foo 9 Rtp/Foo WebRTC-DataChannel\r\n"},
      {"other white space is none", "v=0\nm=audio\v 9 RTP/AVP\f 0\n", "v=0\r\nm=audio\v 9 RTP/AVP\f 0\r\n"},
  });
}

TEST(Canonical, SpellsMediaAndTransports) {
  for (const std::string media : {"audio", "video", "text", "application", "message", "image"}) {
    std::string upper = media;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const std::string before = "v=0\nm=" + upper + " 9 x y\n";
    const std::string after = "v=0\r\nm=" + media + " 9 x y\r\n";
    expectCanonical({{media.c_str(), before, after}});
  }
  for (const std::string transport : {"RTP/AVP",
                                      "RTP/AVPF",
                                      "RTP/SAVP",
                                      "RTP/SAVPF",
                                      "UDP/TLS/RTP/SAVP",
                                      "UDP/TLS/RTP/SAVPF",
                                      "TCP/RTP/AVP",
                                      "TCP/RTP/AVPF",
                                      "TCP/RTP/SAVP",
                                      "TCP/RTP/SAVPF",
                                      "TCP/UDP/TLS/RTP/SAVP",
                                      "TCP/UDP/TLS/RTP/SAVPF",
                                      "udptl",
                                      "UDP/DTLS/SCTP",
                                      "TCP/DTLS/SCTP",
                                      "TCP/MSRP",
                                      "TCP/TLS/MSRP",
                                      "UDP/BFCP",
                                      "TCP/BFCP",
                                      "TCP/TLS/BFCP"}) {
    std::string other = transport;
    for (char& c : other)
      c = static_cast<char>(std::isupper(static_cast<unsigned char>(c))   ? c + 32
                            : std::isalpha(static_cast<unsigned char>(c)) ? c - 32
                                                                          : c);
    const std::string before = "v=0\nm=x 9 " + other + " y\n";
    const std::string after = "v=0\r\nm=x 9 " + transport + " y\r\n";
    expectCanonical({{transport.c_str(), before, after}});
  }
  for (const std::string transport :
       {"tcp/tls/rtp/savp", "rtp/avpx", "tcp/udptl", "tls/rtp/savp", "dtls/sctp"}) {
    const std::string before = "v=0\nm=x 9 " + transport + " y\n";
    const std::string after = "v=0\r\nm=x 9 " + transport + " y\r\n";
    expectCanonical({{transport.c_str(), before, after}});
  }
}

TEST(Canonical, SpellsTheAttributesThatRequestsKnow) {
  for (const std::string name : {"rtpmap",
                                 "fmtp",
                                 "rtcp-fb",
                                 "imageattr",
                                 "framesize",
                                 "gpmd",
                                 "candidate",
                                 "remote-candidates",
                                 "end-of-candidates",
                                 "ice-ufrag",
                                 "ice-pwd",
                                 "ice-options",
                                 "ice-lite",
                                 "ice-mismatch",
                                 "ice-pacing",
                                 "altc",
                                 "alt",
                                 "ccap",
                                 "source-filter",
                                 "group",
                                 "mid",
                                 "bundle-only",
                                 "crypto",
                                 "key-mgmt",
                                 "fingerprint",
                                 "setup",
                                 "tls-id",
                                 "rtcp",
                                 "rtcp-mux",
                                 "rtcp-rsize",
                                 "path",
                                 "label",
                                 "sendrecv",
                                 "sendonly",
                                 "recvonly",
                                 "inactive"}) {
    std::string upper = name;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const std::string lines = upper + "\na=" + upper + ":Some VALUE : x \n";
    const std::string spelt = name + "\r\na=" + name + ":Some VALUE : x \r\n";
    const std::string before = "v=0\na=" + lines + "m=audio 9 RTP/AVP 0\na=" + lines;
    const std::string after = "v=0\r\na=" + spelt + "m=audio 9 RTP/AVP 0\r\na=" + spelt;
    expectCanonical({{name.c_str(), before, after}});
  }
  expectCanonical({
      {"others stay", "v=0\na=PTIME:20\na=X-Foo\na=SSRC:1\na=Extmap:1\na=MSID:x\na=RTPMAPS:1\n",
       "v=0\r\na=PTIME:20\r\na=X-Foo\r\na=SSRC:1\r\na=Extmap:1\r\na=MSID:x\r\na=RTPMAPS:1\r\n"},
      {"blanks make another name", "v=0\na=SENDONLY \na= MID:1\na=MID :1\n",
       "v=0\r\na=SENDONLY \r\na= MID:1\r\na=MID :1\r\n"},
  });
}

TEST(Canonical, LetsLaterRequestsSeeWhatItHasSpelt) {
  Document document = documentOf("v=0\na=GROUP:BUNDLE 0\nm=Audio 09 rtp/avp 0 8\na=MID:0\na=SendOnly");
  EXPECT_EQ(document.section(1).isRtp(), false);
  EXPECT_FALSE(canonicalise(document));
  EXPECT_TRUE(document.section(1).isRtp());
  EXPECT_EQ(document.section(1).mid(), "0");
  EXPECT_EQ(document.section(1).bundle(), 0U);
  EXPECT_EQ(document.section(1).direction(), sdp::Direction::sendonly);
  EXPECT_FALSE(keepCodecs(document, "PCMU", "audio"));
  EXPECT_FALSE(setDirection(document, sdp::Direction::inactive));
  EXPECT_EQ(document.text(), "v=0\r\na=group:BUNDLE 0\r\nm=audio 9 RTP/AVP 0\r\na=mid:0\r\na=inactive\r\n");
}

struct Refused {
  const char* what;
  std::string_view text;
  Reason reason;
  std::uint32_t section;
  std::size_t line;
  const char* explanation;
};

TEST(Canonical, RefusesWhatReadersTakeForDifferentThings) {
  using namespace std::string_view_literals;
  const Refused cases[] = {
      {"a NUL", "v=0\ns=\0\n"sv, Reason::nulCharacter, 0, 2, "a NUL"},
      {"a NUL as the last", "v=0\nm=audio 9 RTP/AVP 0\n\0"sv, Reason::nulCharacter, 1, 3,
       "section 1 (audio): a NUL"},
      {"a CR within", "v=0\ns=a\rb\n", Reason::loneCarriageReturn, 0, 2, "a CR that ends no line"},
      {"two CRs", "v=0\r\r\n", Reason::loneCarriageReturn, 0, 1, "a CR that ends no line"},
      {"two CRs at the end", "v=0\r\r", Reason::loneCarriageReturn, 0, 1, "a CR that ends no line"},
      {"LF CR", "v=0\n\rs=-\n", Reason::loneCarriageReturn, 0, 2, "a CR that ends no line"},
      {"a blank line", "v=0\n \ns=-\n", Reason::noLine, 0, 2, "not a lower-case letter and \"=\""},
      {"an upper-case letter", "v=0\nS=-\n", Reason::noLine, 0, 2, "not a lower-case letter and \"=\""},
      {"no equals sign", "v=0\ns\n", Reason::noLine, 0, 2, "not a lower-case letter and \"=\""},
      {"a blank in front", "v=0\nm=audio 9 RTP/AVP 0\nm=video 9 RTP/AVP 31\n a=x\n", Reason::noLine, 2, 4,
       "section 2 (video): not a lower-case letter and \"=\""},
      {"a letter above ASCII", "v=0\n\xe4=x\n", Reason::noLine, 0, 2, "not a lower-case letter and \"=\""},
      {"no v-line", "o=-\nv=0\n", Reason::noVersionLine, 0, 1, "the first line is no v-line"},
      {"an empty line in front", "\nv=0\n", Reason::noVersionLine, 0, 1, "the first line is no v-line"},
      {"nothing", "", Reason::noVersionLine, 0, 1, "the first line is no v-line"},
      {"a section at the beginning", "m=audio 9 RTP/AVP 0\n", Reason::noVersionLine, 1, 1,
       "section 1 (audio): the first line is no v-line"},
      {"an unreadable section", "v=0\nm=audio 9 RTP/AVP 0\nm=video 9 RTP/AVP\n", Reason::unreadableSection, 2,
       3, "section 2 (video): unreadable m-line"},
      {"an m-line without fields", "v=0\nm=\n", Reason::unreadableSection, 1, 2,
       "section 1: unreadable m-line"},
  };
  for (const Refused& c : cases) {
    SCOPED_TRACE(c.what);
    Document document = documentOf(c.text);
    expectRefusal(canonicalise(document), c.reason, c.section, c.line);
    EXPECT_EQ(document.text(), c.text);
    EXPECT_EQ(document.explanation(), c.explanation);
  }
}

TEST(Canonical, CountsLinesAsTheTextWasRead) {
  Document document = documentOf("v=0\na=x\nm=audio 9 RTP/AVP 0\nB=x\n");
  ASSERT_FALSE(stripAttributes(document, "x"));
  ASSERT_FALSE(document.setConnection(1, "::1"));
  ASSERT_EQ(document.text(), "v=0\nm=audio 9 RTP/AVP 0\nc=IN IP6 ::1\nB=x\n");
  expectRefusal(canonicalise(document), Reason::noLine, 1, 4);
}

}  // namespace
