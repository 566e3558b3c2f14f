#include "documentTestSupport.h"

// Formats: what a payload type stands for, and what attributes say of it.

namespace {

using documentTest::documentBehindHead;
using sdp::Document;

/// "PCMU/8000/1", or "-" for a format without an encoding.
std::string encodingOf(const sdp::Format& format) {
  if (!format.encoding) return "-";
  return std::string(format.encoding->name) + "/" + std::to_string(format.encoding->clockRate) + "/" +
         std::to_string(format.encoding->channels);
}

struct StaticFormat {
  const char* payload;
  const char* encoding;
};

TEST(Formats, WithoutRtpmapAreOfTheTableOfStaticPayloadTypes) {
  const StaticFormat formats[] = {{"0", "PCMU/8000/1"},
                                  {"1", "-"},
                                  {"2", "-"},
                                  {"3", "GSM/8000/1"},
                                  {"4", "G723/8000/1"},
                                  {"5", "DVI4/8000/1"},
                                  {"6", "DVI4/16000/1"},
                                  {"7", "LPC/8000/1"},
                                  {"8", "PCMA/8000/1"},
                                  {"9", "G722/8000/1"},
                                  {"10", "L16/44100/2"},
                                  {"11", "L16/44100/1"},
                                  {"12", "QCELP/8000/1"},
                                  {"13", "CN/8000/1"},
                                  {"14", "MPA/90000/1"},
                                  {"15", "G728/8000/1"},
                                  {"16", "DVI4/11025/1"},
                                  {"17", "DVI4/22050/1"},
                                  {"18", "G729/8000/1"},
                                  {"19", "-"},
                                  {"24", "-"},
                                  {"25", "CelB/90000/1"},
                                  {"26", "JPEG/90000/1"},
                                  {"27", "-"},
                                  {"28", "nv/90000/1"},
                                  {"29", "-"},
                                  {"30", "-"},
                                  {"31", "H261/90000/1"},
                                  {"32", "MPV/90000/1"},
                                  {"33", "MP2T/90000/1"},
                                  {"34", "H263/90000/1"},
                                  {"35", "-"},
                                  {"96", "-"},
                                  {"00", "-"},
                                  {"08", "-"},
                                  {"4294967296", "-"},
                                  {"*", "-"},
                                  {"opus", "-"}};
  for (const StaticFormat& format : formats) {
    const Document document = documentBehindHead("m=audio 9 RTP/AVP " + std::string(format.payload) + "|");
    const auto found = document.section(1).format(format.payload);
    ASSERT_TRUE(found) << format.payload;
    EXPECT_EQ(encodingOf(*found), format.encoding) << format.payload;
  }
}

struct Rtpmap {
  const char* what;
  const char* lines;
  const char* payload;
  const char* encoding;
};

TEST(Formats, AreWhatTheirFirstRightRtpmapSays) {
  const Rtpmap cases[] = {
      {"channels", "a=rtpmap:96 opus/48000/2|", "96", "opus/48000/2"},
      {"no channels", "a=rtpmap:96 VP8/90000|", "96", "VP8/90000/1"},
      {"a static one is named anew", "a=rtpmap:0 opus/48000|", "0", "opus/48000/1"},
      {"the first of two", "a=rtpmap:96 VP8/90000|a=rtpmap:96 VP9/90000|", "96", "VP8/90000/1"},
      {"runs of blanks and tabs", "a=rtpmap: \t96\t VP8/90000 more|", "96", "VP8/90000/1"},
      {"no clock", "a=rtpmap:96 AppleLossless|", "96", "-"},
      {"no clock on a static one", "a=rtpmap:31 LPC|", "31", "H261/90000/1"},
      {"one too many", "a=rtpmap:98 AMR/0/0/0|", "98", "-"},
      {"no name", "a=rtpmap:96 /8000|", "96", "-"},
      {"a clock that is no number", "a=rtpmap:96 VP8/9x|", "96", "-"},
      {"an empty clock", "a=rtpmap:96 VP8/|", "96", "-"},
      {"empty channels", "a=rtpmap:96 opus/48000/|", "96", "-"},
      {"channels that are no number", "a=rtpmap:96 opus/48000/x|", "96", "-"},
      {"a wrong one in front of a right one", "a=rtpmap:96 VP8|a=rtpmap:96 VP9/90000|", "96", "VP9/90000/1"},
      {"no value", "a=rtpmap|a=rtpmap:|a=rtpmap:96|", "96", "-"},
      {"a text that is alike", "a=rtpmap:096 VP8/90000|", "96", "-"},
      {"another name of attribute", "a=RTPMAP:96 VP8/90000|", "96", "-"},
      {"beyond 32 bits", "a=rtpmap:96 x/4294967296/99999999999999999999|", "96", "x/4294967295/4294967295"},
      {"the largest", "a=rtpmap:96 x/4294967295|", "96", "x/4294967295/1"},
      {"zero", "a=rtpmap:96 x/0/0|", "96", "x/0/0"},
  };
  for (const Rtpmap& c : cases) {
    SCOPED_TRACE(c.what);
    const Document document =
        documentBehindHead("m=audio 9 RTP/AVP 0 31 96 98|" + std::string(c.lines) + "m=video 9 RTP/AVP 96|");
    const auto format = document.section(1).format(c.payload);
    ASSERT_TRUE(format);
    EXPECT_EQ(encodingOf(*format), c.encoding);
    // What stands in one section says nothing of another.
    EXPECT_EQ(encodingOf(*document.section(2).format("96")), "-");
  }
}

TEST(Formats, OfCompanionsAreTold) {
  for (const char* const name :
       {"rtx", "red", "ulpfec", "flexfec", "flexfec-03", "parityfec", "1d-interleaved-parityfec", "raptorfec",
        "rtploopback", "encaprtp", "CN", "tone", "telephone-event", "RTX", "Red", "cn", "TELEPHONE-EVENT"}) {
    const Document document =
        documentBehindHead("m=audio 9 RTP/AVP 96|a=rtpmap:96 " + std::string(name) + "/8000|");
    EXPECT_TRUE(document.section(1).format("96")->isCompanion) << name;
  }
  for (const char* const name :
       {"opus", "VP8", "telephone-events", "rtx2", "flexfec-04", "re", "x-unknown"}) {
    const Document document =
        documentBehindHead("m=audio 9 RTP/AVP 96|a=rtpmap:96 " + std::string(name) + "/8000|");
    EXPECT_FALSE(document.section(1).format("96")->isCompanion) << name;
  }
  const Document document = documentBehindHead("m=audio 9 RTP/AVP 13 96|");
  EXPECT_TRUE(document.section(1).format("13")->isCompanion);
  EXPECT_FALSE(document.section(1).format("96")->isCompanion) << "without an encoding";
}

TEST(Formats, HaveTheFirstFmtpOfTheirPayloadType) {
  const Document document = documentBehindHead(
      "m=video 9 RTP/AVP 96 97 98 99|a=fmtp:96  a=1;b=2 c \t|a=fmtp:96 other|a=fmtp:97|a=fmtp:098 x|a=fmtp: "
      "99\tx y|"
      "a=fmtp|a=fmtp:|");
  const sdp::Section section = document.section(1);
  EXPECT_EQ(section.format("96")->fmtp, "a=1;b=2 c");
  EXPECT_EQ(section.format("97")->fmtp, "");
  EXPECT_EQ(section.format("98")->fmtp, std::nullopt);
  EXPECT_EQ(section.format("99")->fmtp, "x y");
  EXPECT_FALSE(section.format("100"));
  EXPECT_FALSE(section.format(""));
}

struct Apt {
  const char* lines;
  std::optional<std::uint64_t> apt;
};

TEST(Formats, HaveTheFirstAptOfTheirFmtps) {
  const Apt cases[] = {
      {"a=fmtp:97 apt=96|", 96},
      {"a=fmtp:97 rtx-time=3000;apt=96|", 96},
      {"a=fmtp:97 rtx-time=3000; APT = 96 x;y|", 96},
      {"a=fmtp:97 x|a=fmtp:97 apt=98|a=fmtp:97 apt=99|", 98},
      {"a=fmtp:97 apt=x;apt=95|", 95},
      {"a=fmtp:97 apt=095|", 95},
      {"a=fmtp:97 apt=|", std::nullopt},
      {"a=fmtp:97 apt|", std::nullopt},
      {"a=fmtp:97 apt=-1|", std::nullopt},
      {"a=fmtp:97 apt=9x|", std::nullopt},
      {"a=fmtp:97 xapt=96|", std::nullopt},
      {"a=fmtp:97 x apt=96|", std::nullopt},
      {"a=fmtp:97 apt==96|", std::nullopt},
      {"a=fmtp:98 apt=96|", std::nullopt},
      {"a=fmtp:97 ;;;=;apt=1;|", 1},
      {"a=fmtp:97 apt=99999999999999999999999|", 18446744073709551615U},
  };
  for (const Apt& c : cases) {
    SCOPED_TRACE(c.lines);
    const Document document = documentBehindHead("m=video 9 RTP/AVP 96 97|" + std::string(c.lines));
    EXPECT_EQ(document.section(1).format("97")->apt, c.apt);
  }
}

TEST(Formats, HaveFeedbackOfTheirOwnAndOfAllInTheOrderOfLines) {
  const Document document = documentBehindHead(
      "m=video 9 RTP/AVPF 96 97|a=rtcp-fb:* nack|a=rtcp-fb:96 ccm  fir \t|a=rtcp-fb:97 goog-remb|a=rtcp-fb:* "
      " trr-int 5|"
      "a=rtcp-fb:96|a=rtcp-fb:95 x|a=rtcp-fb|");
  const auto feedbackOf = [&document](std::string_view payload) {
    std::string text;
    for (const std::string_view value : document.section(1).format(payload)->feedback()) {
      text.append(value).append(",");
    }
    return text;
  };
  EXPECT_EQ(feedbackOf("96"), "nack,ccm  fir,trr-int 5,,");
  EXPECT_EQ(feedbackOf("97"), "nack,goog-remb,trr-int 5,");
  EXPECT_EQ(document.section(1).format("96")->feedback().size(), 4U);
}

TEST(Formats, OfOneSectionAreToldWhileThoseOfAnotherAreAsked) {
  const Document document = documentBehindHead(
      "m=audio 9 RTP/AVP 96 97|a=rtpmap:96 opus/48000/2|a=rtpmap:97 speex/8000|a=rtcp-fb:96 a|a=rtcp-fb:97 b|"
      "m=video 9 RTP/AVP 97 96|a=rtpmap:96 VP8/90000|a=rtpmap:97 VP9/90000|a=rtcp-fb:96 c|a=rtcp-fb:97 d|");
  std::string text;
  for (const sdp::Format& audio : document.section(1).formats()) {
    for (const sdp::Format& video : document.section(2).formats()) {
      text.append(audio.encoding->name).append(*audio.feedback().begin()).append("+");
      text.append(video.encoding->name).append(*video.feedback().begin()).append(" ");
    }
  }
  EXPECT_EQ(text, "opusa+VP9d opusa+VP8c speexb+VP9d speexb+VP8c ");
}

TEST(Formats, OfSectionsThatWereAskedInTurnAreFoundByRequests) {
  // Payload types of up to three digits, and longer ones.
  Document document = documentBehindHead(
      "m=video 9 RTP/AVP 96 97 1000 1001|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|"
      "a=rtpmap:1000 H264/90000|a=rtpmap:1001 rtx/90000|a=fmtp:1001 apt=1000|"
      "m=video 9 RTP/AVP 97 96 2000|a=rtpmap:97 H264/90000|a=rtpmap:96 rtx/90000|a=fmtp:96 apt=97|"
      "a=rtpmap:2000 VP8/90000|"
      "m=video 9 RTP/AVP 1001 96|a=rtpmap:96 H264/90000|a=rtpmap:1001 rtx/90000|a=fmtp:1001 apt=1000|");
  std::size_t same = 0;
  for (const sdp::Section& one : document.sections()) {
    for (const sdp::Format& format : one.formats()) {
      for (const sdp::Section& other : document.sections()) {
        for (const sdp::Format& also : other.formats())
          same += encodingOf(format) == encodingOf(also) ? 1U : 0U;
      }
    }
  }
  EXPECT_EQ(same, 2U * 2 + 3 * 3 + 4 * 4);  // VP8, H264, rtx
  EXPECT_FALSE(keepCodecs(document, "H264"));
  EXPECT_EQ(document.text(),
            documentBehindHead(
                "m=video 9 RTP/AVP 1000 1001|a=rtpmap:1000 H264/90000|a=rtpmap:1001 rtx/90000|"
                "a=fmtp:1001 apt=1000|"
                "m=video 9 RTP/AVP 97 96|a=rtpmap:97 H264/90000|a=rtpmap:96 rtx/90000|a=fmtp:96 apt=97|"
                "m=video 9 RTP/AVP 96|a=rtpmap:96 H264/90000|")
                .text());
}

TEST(Formats, ThatAreTwiceInAnMLineAreToldTwice) {
  const Document document = documentBehindHead("m=audio 9 RTP/AVP 0 96 0|a=rtpmap:96 opus/48000/2|");
  std::string text;
  for (const sdp::Format& format : document.section(1).formats()) text += encodingOf(format) + " ";
  EXPECT_EQ(text, "PCMU/8000/1 opus/48000/2 PCMU/8000/1 ");
}

TEST(Formats, OfSectionsWithoutRtpAreTextsAlone) {
  const Document document = documentBehindHead(
      "m=application 9 UDP/DTLS/SCTP webrtc-datachannel 0|a=rtpmap:0 x/1|a=fmtp:0 apt=1|a=rtcp-fb:* y|");
  const auto format = document.section(1).format("0");
  ASSERT_TRUE(format);
  EXPECT_FALSE(format->encoding);
  EXPECT_FALSE(format->fmtp);
  EXPECT_FALSE(format->apt);
  EXPECT_TRUE(format->feedback().empty());
  EXPECT_FALSE(format->isCompanion);
  EXPECT_EQ(document.section(1).formats().size(), 2U);
  EXPECT_EQ(document.section(1).formats().begin()->format, "webrtc-datachannel");
}

TEST(Formats, AreAskedAnewAfterAnEdit) {
  Document document = documentBehindHead("m=audio 9 RTP/AVP 96|a=rtpmap:96 opus/48000/2|");
  EXPECT_EQ(encodingOf(*document.section(1).format("96")), "opus/48000/2");
  ASSERT_FALSE(document.setAttribute(1, "rtpmap", "96 speex/8000"));
  EXPECT_EQ(encodingOf(*document.section(1).format("96")), "speex/8000/1");
  ASSERT_FALSE(document.setFormats(1, "96 0"));
  EXPECT_EQ(encodingOf(*document.section(1).format("0")), "PCMU/8000/1");
  ASSERT_FALSE(document.removeAttributes(1, "rtpmap"));
  EXPECT_EQ(encodingOf(*document.section(1).format("96")), "-");
}

}  // namespace
