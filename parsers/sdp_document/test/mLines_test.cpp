#include "documentTestSupport.h"

// m-lines: their fields, and what makes a section unreadable.

namespace {

using documentTest::documentBehindHead;
using sdp::Document;

TEST(MLines, HaveFieldsThatRunsOfBlanksAndTabsSeparate) {
  for (const char* const line :
       {"m=audio 5004/2 RTP/AVP 0 8", "m=audio\t5004/2\t\tRTP/AVP \t 0\t8", "m=audio 5004/2 RTP/AVP 0 8 \t",
        "m= audio 5004/2 RTP/AVP 0 8", "m=\t \taudio 5004/2 RTP/AVP 0 8"}) {
    SCOPED_TRACE(line);
    const Document document = documentBehindHead(line);
    const sdp::Section section = document.section(1);
    ASSERT_TRUE(section.isReadable());
    EXPECT_EQ(section.media(), "audio");
    EXPECT_EQ(section.port(), 5004);
    EXPECT_EQ(section.portCount(), 2U);
    EXPECT_EQ(section.transport(), "RTP/AVP");
    std::string formats;
    for (const sdp::Format& format : section.formats()) formats.append(format.format).append(",");
    EXPECT_EQ(formats, "0,8,");
  }
}

TEST(MLines, AreSeparatedByBlanksAndTabsAlone) {
  const Document document = documentBehindHead("m=audio 1 RTP/AVP 0\v8\f9 \xc2\xa0|");
  std::string formats;
  for (const sdp::Format& format : document.section(1).formats()) formats.append(format.format).append(",");
  EXPECT_EQ(formats, "0\v8\f9,\xc2\xa0,");
}

struct Port {
  const char* text;
  std::uint16_t port;
  std::uint64_t count;
};

TEST(MLines, HavePortsUpTo65535AndCountsFrom1) {
  for (const Port& port :
       {Port{"0", 0, 1}, Port{"9", 9, 1}, Port{"65535", 65535, 1}, Port{"0065535", 65535, 1},
        Port{"5004/1", 5004, 1}, Port{"5004/02", 5004, 2}, Port{"0/3", 0, 3},
        Port{"1/4294967296", 1, 4294967296U}, Port{"1/18446744073709551615", 1, 18446744073709551615U},
        Port{"1/99999999999999999999999999", 1, 18446744073709551615U}}) {
    SCOPED_TRACE(port.text);
    const Document document = documentBehindHead("m=audio " + std::string(port.text) + " RTP/AVP 0|");
    ASSERT_TRUE(document.section(1).isReadable());
    EXPECT_EQ(document.section(1).port(), port.port);
    EXPECT_EQ(document.section(1).portCount(), port.count);
  }
}

TEST(MLines, ThatLackAFieldOrHaveAnotherPortAreUnreadable) {
  for (const char* const line : {"m=",
                                 "m=audio",
                                 "m=audio 9",
                                 "m=audio 9 RTP/AVP",
                                 "m=audio 9 RTP/AVP ",
                                 "m=audio 9 RTP/AVP \t",
                                 "m=  audio 9 RTP/AVP",
                                 "m=audio 65536 RTP/AVP 0",
                                 "m=audio 4294967296 RTP/AVP 0",
                                 "m=audio 99999999999999999999999 RTP/AVP 0",
                                 "m=audio -1 RTP/AVP 0",
                                 "m=audio +9 RTP/AVP 0",
                                 "m=audio 9x RTP/AVP 0",
                                 "m=audio 0x9 RTP/AVP 0",
                                 "m=audio / RTP/AVP 0",
                                 "m=audio /2 RTP/AVP 0",
                                 "m=audio 9/ RTP/AVP 0",
                                 "m=audio 9/0 RTP/AVP 0",
                                 "m=audio 9/00 RTP/AVP 0",
                                 "m=audio 9/-1 RTP/AVP 0",
                                 "m=audio 9/2/3 RTP/AVP 0",
                                 "m=audio 9/2x RTP/AVP 0",
                                 "m=audio RTP/AVP 9 0",
                                 "m=audio $ RTP/AVP 0"}) {
    SCOPED_TRACE(line);
    const std::string text =
        std::string("m=video 9 RTP/AVP 31\nc=IN IP4 192.0.2.1\n") + line +
        "\na=mid:1\na=sendonly\na=rtcp:9\na=crypto:1 x y\nb=AS:1\na=label:l\na=rtcp-mux\n";
    Document document = documentTest::documentOf(text);
    const sdp::Section section = document.section(2);
    EXPECT_FALSE(section.isReadable());
    EXPECT_EQ(section.index(), 2U);
    EXPECT_EQ(section.lineNumber(), 3U);
    EXPECT_EQ(section.media(), "");
    EXPECT_EQ(section.port(), 0);
    EXPECT_EQ(section.portCount(), 1U);
    EXPECT_EQ(section.transport(), "");
    EXPECT_FALSE(section.isRtp());
    EXPECT_FALSE(section.isDisabled());
    EXPECT_FALSE(section.connection());
    EXPECT_EQ(section.mid(), "");
    EXPECT_EQ(section.label(), "");
    EXPECT_FALSE(section.rtcp());
    EXPECT_FALSE(section.hasRtcpMux());
    EXPECT_TRUE(section.crypto().empty());
    EXPECT_TRUE(section.formats().empty());
    // No request changes it.
    for (const char* const request : {"keep-codecs H261 all", "drop-codecs PCMU all", "order-codecs 0 all",
                                      "set-profile RTP/AVP", "opportunistic", "secure-only", "unbundle",
                                      "strip-attributes sendonly 2", "direction recvonly 2", "disable 2"}) {
      SCOPED_TRACE(request);
      EXPECT_FALSE(perform(document, documentTest::wordsOf(request)));
      EXPECT_EQ(document.text(), text);
    }
    documentTest::expectRefusal(document.setPort(2, 9), sdp::Reason::unreadableSection, 2, 3);
    EXPECT_EQ(document.text(), text);
  }
}

TEST(MLines, OfPort0WithoutBundleOnlyAreDisabled) {
  struct Case {
    const char* text;
    bool disabled;
    bool bundleOnly;
  };
  for (const Case& c :
       {Case{"m=audio 0 RTP/AVP 0|", true, false}, Case{"m=audio 000/2 RTP/AVP 0|", true, false},
        Case{"m=audio 0 RTP/AVP 0|a=bundle-only|", false, true},
        Case{"m=audio 0 RTP/AVP 0|a=bundle-only:x|", false, true},
        Case{"m=audio 0 RTP/AVP 0|a=Bundle-Only|", true, false},
        Case{"m=audio 0 RTP/AVP 0|a=bundle-only |", true, false},
        Case{"m=audio 9 RTP/AVP 0|a=bundle-only|", false, true},
        Case{"a=bundle-only|m=audio 0 RTP/AVP 0|", true, false},
        Case{"m=audio 9 RTP/AVP 0|", false, false}}) {
    SCOPED_TRACE(c.text);
    const Document document = documentBehindHead(c.text);
    EXPECT_EQ(document.section(1).isDisabled(), c.disabled);
    EXPECT_EQ(document.section(1).isBundleOnly(), c.bundleOnly);
  }
}

TEST(MLines, AreOfRtpWhenTheTransportSaysSo) {
  for (const char* const transport :
       {"RTP/AVP", "RTP/SAVPF", "UDP/TLS/RTP/SAVPF", "TCP/RTP/AVP", "TCP/DTLS/RTP/SAVP", "X/RTP/", "RTP/"}) {
    EXPECT_TRUE(documentBehindHead("m=audio 9 " + std::string(transport) + " 0|").section(1).isRtp())
        << transport;
  }
  for (const char* const transport : {"udptl", "UDP/DTLS/SCTP", "rtp/avp", "RTP", "TCP/MSRP", "RTPx/AVP"}) {
    EXPECT_FALSE(documentBehindHead("m=audio 9 " + std::string(transport) + " 0|").section(1).isRtp())
        << transport;
  }
}

}  // namespace
