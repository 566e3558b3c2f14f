#include "judgeTestSupport.h"

// The rules of formats.

namespace {

using judgeTest::bodyOf;
using judgeTest::Names;
using judgeTest::namesOf;
using judgeTest::RuleCase;

class FormatRules : public testing::TestWithParam<RuleCase> {};

TEST_P(FormatRules, AreToldWhenBroken) { judgeTest::expectRule(GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    Judge, FormatRules,
    testing::Values(
        RuleCase{"format",
                 "m=audio 4000 RTP/AVP 0 8\n",
                 "m=audio 5000 RTP/AVP 9\n",
                 "m=audio 5000 RTP/AVP 8\n",
                 {"1: no-format: none of its formats was offered",
                  "1: codec-not-offered: 9 G722/8000 was not offered"}},
        RuleCase{"another format beside",
                 "m=audio 4000 RTP/AVP 0 96\na=rtpmap:96 opus/48000/2\n",
                 "m=audio 5000 RTP/AVP 0 97\na=rtpmap:97 opus/48000\n",
                 "m=audio 5000 RTP/AVP 0 97\na=rtpmap:97 OPUS/48000/2\n",
                 {"1: codec-not-offered: 97 opus/48000 was not offered"}},
        RuleCase{"unknown format",
                 "m=audio 4000 RTP/AVP 0 77\n",
                 "m=audio 5000 RTP/AVP 0 78\n",
                 "m=audio 5000 RTP/AVP 0 77\n",
                 {"1: codec-not-offered: 78, of which nothing is known, was not offered"}},
        RuleCase{"number of another encoding",
                 "m=audio 4000 RTP/AVP 96 97\na=rtpmap:96 opus/48000/2\na=rtpmap:97 speex/16000\n",
                 "m=audio 5000 RTP/AVP 97\na=rtpmap:97 opus/48000/2\n",
                 "m=audio 5000 RTP/AVP 96\na=rtpmap:96 opus/48000/2\n",
                 {"1: payload-changed: 97 opus/48000/2; offered was 97 speex/16000"}},
        RuleCase{"number of another clock",
                 "m=audio 4000 RTP/AVP 0 96\na=rtpmap:96 telephone-event/8000\n",
                 "m=audio 5000 RTP/AVP 0 96\na=rtpmap:96 telephone-event/16000\n",
                 "m=audio 5000 RTP/AVP 0 96\na=rtpmap:96 Telephone-Event/8000/1\n",
                 {"1: payload-changed: 96 telephone-event/16000; offered was 96 telephone-event/8000"}},
        RuleCase{"nothing but a number of another encoding",
                 "m=audio 4000 RTP/AVP 96\na=rtpmap:96 opus/48000/2\n",
                 "m=audio 5000 RTP/AVP 96\na=rtpmap:96 speex/8000\n",
                 "m=audio 5000 RTP/AVP 97\na=rtpmap:97 opus/48000/2\n",
                 {"1: payload-changed: 96 speex/8000; offered was 96 opus/48000/2"}},
        RuleCase{"nothing but two numbers of other encodings",
                 "m=audio 4000 RTP/AVP 0 96\na=rtpmap:96 opus/48000/2\n",
                 "m=audio 5000 RTP/AVP 96 0\na=rtpmap:96 speex/8000\na=rtpmap:0 GSM/8000\n",
                 "m=audio 5000 RTP/AVP 96 0\na=rtpmap:96 opus/48000/2\n",
                 {"1: payload-changed: 96 speex/8000; offered was 96 opus/48000/2",
                  "1: payload-changed: 0 GSM/8000; offered was 0 PCMU/8000"}},
        RuleCase{"companions alone",
                 "m=audio 4000 RTP/AVP 0 13 101\na=rtpmap:101 telephone-event/8000\n",
                 "m=audio 5000 RTP/AVP 13 101\na=rtpmap:101 telephone-event/8000\n",
                 "m=audio 5000 RTP/AVP 0 13\n",
                 {"1: no-codec: codecs were offered, and it has none"}},
        RuleCase{"companions alone, as they were offered",
                 "m=audio 4000 RTP/AVP 0 101\na=rtpmap:101 telephone-event/8000\n",
                 "m=audio 5000 RTP/AVP 101\na=rtpmap:101 telephone-event/8000\n",
                 "m=audio 5000 RTP/AVP 0\n",
                 {"1: no-codec: codecs were offered, and it has none"}},
        RuleCase{"packing of AMR",
                 "m=audio 4000 RTP/AVP 96\na=rtpmap:96 AMR-WB/16000\na=fmtp:96 octet-align=1\n",
                 "m=audio 5000 RTP/AVP 96\na=rtpmap:96 AMR-WB/16000\n",
                 "m=audio 5000 RTP/AVP 96\na=rtpmap:96 AMR-WB/16000\na=fmtp:96 max-red=0; Octet-Align = 1\n",
                 {"1: codec-parameters: 96 AMR-WB/16000 has parameters that were not offered"}},
        RuleCase{"modes of AMR",
                 "m=audio 4000 RTP/AVP 96\na=rtpmap:96 AMR/8000\na=fmtp:96 mode-set=0,2,4\n",
                 "m=audio 5000 RTP/AVP 96\na=rtpmap:96 AMR/8000\na=fmtp:96 mode-set=1,7\n",
                 "m=audio 5000 RTP/AVP 96\na=rtpmap:96 AMR/8000\na=fmtp:96 mode-set=4,7\n",
                 {"1: codec-parameters: 96 AMR/8000 has parameters that were not offered"}},
        RuleCase{"profile of VP9",
                 "m=video 4000 RTP/AVP 98\na=rtpmap:98 VP9/90000\n",
                 "m=video 5000 RTP/AVP 98\na=rtpmap:98 VP9/90000\na=fmtp:98 profile-id=2\n",
                 "m=video 5000 RTP/AVP 98\na=rtpmap:98 VP9/90000\na=fmtp:98 profile-id=0\n",
                 {"1: codec-parameters: 98 VP9/90000 has parameters that were not offered"}},
        RuleCase{"tier of H265",
                 "m=video 4000 RTP/AVP 98\na=rtpmap:98 H265/90000\na=fmtp:98 profile-id=1;tx-mode=srst\n",
                 "m=video 5000 RTP/AVP 98\na=rtpmap:98 H265/90000\na=fmtp:98 tier-flag=1\n",
                 "m=video 5000 RTP/AVP 98\na=rtpmap:98 H265/90000\na=fmtp:98 tier-flag=0;level-id=186\n",
                 {"1: codec-parameters: 98 H265/90000 has parameters that were not offered"}},
        RuleCase{"profile of AV1",
                 "m=video 4000 RTP/AVP 98\na=rtpmap:98 AV1/90000\n",
                 "m=video 5000 RTP/AVP 98\na=rtpmap:98 AV1/90000\na=fmtp:98 profile=1\n",
                 "m=video 5000 RTP/AVP 98\na=rtpmap:98 AV1/90000\na=fmtp:98 level-idx=5;profile=0\n",
                 {"1: codec-parameters: 98 AV1/90000 has parameters that were not offered"}}));

INSTANTIATE_TEST_SUITE_P(
    JudgeOfH264, FormatRules,
    testing::Values(
        // 42e01f and 4d801f are both Constrained Baseline, 42001f is Baseline.
        RuleCase{"profile",
                 "m=video 4000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42e01f\n",
                 "m=video 5000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42001f\n",
                 "m=video 5000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=4D801F\n",
                 {"1: h264-profile: 97 H264/90000 has a profile that was not offered"}},
        RuleCase{"mode",
                 "m=video 4000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42e01f\n",
                 "m=video 5000 RTP/AVP 97\na=rtpmap:97 H264/90000\n"
                 "a=fmtp:97 profile-level-id=42e01f;packetization-mode=1\n",
                 "m=video 5000 RTP/AVP 97\na=rtpmap:97 H264/90000\n"
                 "a=fmtp:97 profile-level-id=42e01f;packetization-mode=0\n",
                 {"1: h264-mode: 97 H264/90000 has a packetization-mode that was not offered"}},
        RuleCase{"level",
                 "m=video 4000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42e01f\n",
                 "m=video 5000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42e020\n",
                 "m=video 5000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42e01e\n",
                 {"1: h264-level: 97 H264/90000 has a higher level than was offered"}},
        // 0b with the flag 0x10 is level 1b, which is above 1 and below 1.1.
        RuleCase{"level 1.1 to 1b",
                 "m=video 4000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42f00b\n",
                 "m=video 5000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42e00b\n",
                 "m=video 5000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42e00a\n",
                 {"1: h264-level: 97 H264/90000 has a higher level than was offered"}},
        RuleCase{"asymmetry of one side alone",
                 "m=video 4000 RTP/AVP 97\na=rtpmap:97 H264/90000\n"
                 "a=fmtp:97 profile-level-id=42e01f;level-asymmetry-allowed=1\n",
                 "m=video 5000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42e028\n",
                 "m=video 5000 RTP/AVP 97\na=rtpmap:97 H264/90000\n"
                 "a=fmtp:97 level-asymmetry-allowed=1;profile-level-id=42e028\n",
                 {"1: h264-level: 97 H264/90000 has a higher level than was offered"}},
        RuleCase{"without profile-level-id",
                 "m=video 4000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42e01f\n",
                 "m=video 5000 RTP/AVP 97\na=rtpmap:97 H264/90000\n"
                 "a=fmtp:97 profile-level-id=640028;packetization-mode=1\n",
                 "m=video 5000 RTP/AVP 97\na=rtpmap:97 H264/90000\na=fmtp:97 packetization-mode=1\n",
                 {"1: h264-profile: 97 H264/90000 has a profile that was not offered",
                  "1: h264-mode: 97 H264/90000 has a packetization-mode that was not offered"}},
        RuleCase{"all that was offered under other numbers",
                 "m=video 4000 RTP/AVP 97 98\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42e01f\n"
                 "a=rtpmap:98 H264/90000\na=fmtp:98 profile-level-id=64001f\n",
                 "m=video 5000 RTP/AVP 99\na=rtpmap:99 H264/90000\na=fmtp:99 profile-level-id=640020\n",
                 "m=video 5000 RTP/AVP 99\na=rtpmap:99 H264/90000\na=fmtp:99 profile-level-id=64001f\n",
                 {"1: h264-profile: 99 H264/90000 has a profile that was not offered"}}));

INSTANTIATE_TEST_SUITE_P(
    JudgeOfPayloadTypes, FormatRules,
    testing::Values(
        RuleCase{"twice",
                 "m=audio 4000 RTP/AVP 0 8\n",
                 "m=audio 5000 RTP/AVP 8 0 8 8\n",
                 "m=audio 5000 RTP/AVP 8 0\n",
                 {"1: payload-twice: 8 stands there again"}},
        RuleCase{"reserved, the first",
                 "m=audio 4000 RTP/AVP 63 64\na=rtcp-mux\na=rtpmap:63 opus/48000/2\na=rtpmap:64 speex/8000\n",
                 "m=audio 5000 RTP/AVP 64\na=rtcp-mux\na=rtpmap:64 speex/8000\n",
                 "m=audio 5000 RTP/AVP 63\na=rtcp-mux\na=rtpmap:63 opus/48000/2\n",
                 {"1: payload-reserved: 64 speex/8000 is taken for RTCP beside rtcp-mux"}},
        RuleCase{"reserved, the last",
                 "m=audio 4000 RTP/AVP 95\na=rtcp-mux\na=rtpmap:95 opus/48000/2\n",
                 "m=audio 5000 RTP/AVP 95\na=rtcp-mux\na=rtpmap:95 opus/48000/2\n",
                 "m=audio 5000 RTP/AVP 95\na=rtpmap:95 opus/48000/2\n",
                 {"1: payload-reserved: 95 opus/48000/2 is taken for RTCP beside rtcp-mux"}},
        RuleCase{"rtpmap",
                 "m=audio 4000 RTP/AVP 95 96\n",
                 "m=audio 5000 RTP/AVP 96\na=rtpmap:96 opus\n",
                 "m=audio 5000 RTP/AVP 95\n",
                 {"1: no-rtpmap: 96 has no rtpmap"}},
        RuleCase{
            "apt",
            "m=video 4000 RTP/AVP 96 97\na=rtpmap:96 VP8/90000\na=rtpmap:97 rtx/90000\na=fmtp:97 apt=96\n",
            "m=video 5000 RTP/AVP 96 97\na=rtpmap:96 VP8/90000\na=rtpmap:97 rtx/90000\na=fmtp:97 apt=98\n",
            "m=video 5000 RTP/AVP 96 97\na=rtpmap:96 VP8/90000\na=rtpmap:97 rtx/90000\na=fmtp:97 apt=96\n",
            {"1: rtx-without-codec: 97 rtx/90000 repairs no format of the section"}},
        RuleCase{
            "no apt",
            "m=video 4000 RTP/AVP 96 97\na=rtpmap:96 VP8/90000\na=rtpmap:97 rtx/90000\na=fmtp:97 apt=96\n",
            "m=video 5000 RTP/AVP 96 97\na=rtpmap:96 VP8/90000\na=rtpmap:97 rtx/90000\n",
            "m=video 5000 RTP/AVP 96\na=rtpmap:96 VP8/90000\n",
            {"1: rtx-without-codec: 97 rtx/90000 repairs no format of the section"}}));

TEST(Parameters, AreNotWeighedForWhatAnswersMayChange) {
  const std::string offer = bodyOf(
      "m=audio 4000 RTP/AVP 96 97 18 101\n"
      "a=rtpmap:96 iLBC/8000\na=fmtp:96 mode=20\na=rtpmap:97 opus/48000/2\na=fmtp:97 stereo=1\n"
      "a=fmtp:18 annexb=no\na=rtpmap:101 telephone-event/8000\na=fmtp:101 0-15\n");
  EXPECT_EQ(namesOf(offer, bodyOf("m=audio 5000 RTP/AVP 96 97 18 101\n"
                                  "a=rtpmap:96 iLBC/8000\na=fmtp:96 mode=30\na=rtpmap:97 opus/48000/2\n"
                                  "a=rtpmap:101 telephone-event/8000\na=fmtp:101 32-36\n")),
            Names{});
}

TEST(Parameters, OfAmrFitAnyOfferedFormatWhereTheNumberIsAnother) {
  const std::string offer = bodyOf(
      "m=audio 4000 RTP/AVP 96 97 98\n"
      "a=rtpmap:96 AMR/8000\na=fmtp:96 mode-set=0,1\n"
      "a=rtpmap:97 AMR/8000\na=fmtp:97 mode-set=6,7;octet-align=1\n"
      "a=rtpmap:98 AMR/8000\na=fmtp:98 octet-align=1;interleaving=30;crc=1;robust-sorting=1\n");
  const struct {
    const char* fmtp;
    bool isOffered;
  } cases[] = {{"mode-set=1", true},
               {"mode-set=6", false},
               {"octet-align=1;mode-set=5,6", true},
               {"octet-align=1;mode-set=0,1", false},
               {"octet-align=1", true},
               {"octet-align=1;interleaving;crc=1;robust-sorting=1;mode-set=3", true},
               {"octet-align=1;interleaving=30;crc=1", false},
               {"octet-align=1;crc=1;robust-sorting=1", false},
               {"mode-change-period=2", true}};
  for (const auto& each : cases) {
    const std::string answer = bodyOf("m=audio 5000 RTP/AVP 100\na=rtpmap:100 amr/8000\na=fmtp:100 " +
                                      std::string(each.fmtp) + "\n");
    EXPECT_EQ(namesOf(offer, answer), each.isOffered ? Names{} : Names{"1: codec-parameters"}) << each.fmtp;
  }
}

TEST(Parameters, OfAmrThatNameNoModeAllowAll) {
  const std::string body = bodyOf("m=audio 9000 RTP/AVP 96\na=rtpmap:96 AMR/8000\na=fmtp:96 mode-set=all\n");
  EXPECT_EQ(namesOf(body, body), Names{});
}

TEST(Levels, FitWhenOneOfferedFormatDoesWhereTheNumberIsAnother) {
  const std::string format = "a=rtpmap:96 H264/90000\na=rtpmap:97 H264/90000\na=rtpmap:98 H264/90000\n";
  const std::string offer = bodyOf("m=video 4000 RTP/AVP 96 97 98\n" + format +
                                   "a=fmtp:96 profile-level-id=42e01f\n"
                                   "a=fmtp:97 profile-level-id=42e028;packetization-mode=1\n"
                                   "a=fmtp:98 profile-level-id=64000b;level-asymmetry-allowed=1\n");
  const struct {
    const char* fmtp;
    Names findings;
  } cases[] = {{"profile-level-id=42e01f", {}},
               {"profile-level-id=42e028", {"1: h264-level"}},
               {"profile-level-id=42e028;packetization-mode=1", {}},
               {"profile-level-id=42e029;packetization-mode=1", {"1: h264-mode", "1: h264-level"}},
               {"profile-level-id=640028;level-asymmetry-allowed=1", {}},
               {"profile-level-id=640028", {"1: h264-profile"}},
               {"profile-level-id=xyz", {}}};
  for (const auto& each : cases) {
    const std::string answer = bodyOf("m=video 5000 RTP/AVP 100\na=rtpmap:100 H264/90000\na=fmtp:100 " +
                                      std::string(each.fmtp) + "\n");
    EXPECT_EQ(namesOf(offer, answer), each.findings) << each.fmtp;
  }
  const std::string open = bodyOf(
      "m=video 4000 RTP/AVP 96 97\na=rtpmap:96 H264/90000\na=rtpmap:97 H264/90000\n"
      "a=fmtp:96 profile-level-id=42e01f\n");
  EXPECT_EQ(namesOf(open, bodyOf("m=video 5000 RTP/AVP 100\na=rtpmap:100 H264/90000\n"
                                 "a=fmtp:100 profile-level-id=640028\n")),
            Names{});
}

TEST(PayloadTypes, AreJudgedByThemselvesWhereNoRtpWasOffered) {
  EXPECT_EQ(namesOf(bodyOf("m=audio 4000 udp 0\n"), bodyOf("m=audio 5000 RTP/AVP 96 96\n")),
            (Names{"1: transport", "1: payload-twice", "1: no-rtpmap"}));
}

}  // namespace
