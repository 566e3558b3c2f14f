#include <set>

#include "judgeTestSupport.h"

// What findings are: their names, order and texts.

namespace {

using judgeTest::bodyOf;
using judgeTest::linesOf;
using judgeTest::Names;
using judgeTest::namesOf;
using sdp::AnswerRule;
using sdp::Severity;

TEST(Rules, HaveStableNames) {
  const Names expected{"section-count",
                       "section-media",
                       "transport",
                       "no-format",
                       "direction",
                       "no-address",
                       "no-port",
                       "disabled-accepted",
                       "refused-in-group",
                       "codec-not-offered",
                       "payload-changed",
                       "no-codec",
                       "codec-parameters",
                       "h264-profile",
                       "h264-mode",
                       "h264-level",
                       "group-not-offered",
                       "group-without-section",
                       "bundle-only-alone",
                       "mid-not-offered",
                       "mid-missing",
                       "mux-missing",
                       "rtcp-mux-not-offered",
                       "extmap-not-offered",
                       "ice-not-offered",
                       "ice-short",
                       "payload-twice",
                       "payload-reserved",
                       "no-rtpmap",
                       "rtx-without-codec",
                       "crypto-tag",
                       "crypto-suite",
                       "crypto-count",
                       "no-key",
                       "no-fingerprint",
                       "no-setup",
                       "setup-not-offered",
                       "setup-actpass",
                       "setup-role"};
  Names names;
  for (int rule = 0; rule <= static_cast<int>(AnswerRule::setupRole); ++rule) {
    names.emplace_back(textOf(static_cast<AnswerRule>(rule)));
  }
  EXPECT_EQ(names, expected);
  EXPECT_EQ(textOf(static_cast<AnswerRule>(names.size())), "");
}

TEST(Rules, AreErrorsButForTwo) {
  std::set<std::string> warnings;
  for (int rule = 0; rule <= static_cast<int>(AnswerRule::setupRole); ++rule) {
    const auto which = static_cast<AnswerRule>(rule);
    if (severityOf(which) == Severity::warning) warnings.emplace(textOf(which));
  }
  EXPECT_EQ(warnings, (std::set<std::string>{"codec-not-offered", "payload-reserved"}));
  EXPECT_EQ(textOf(Severity::error), "error");
  EXPECT_EQ(textOf(Severity::warning), "warning");
}

TEST(Findings, AreInTheOrderOfSectionsAndRules) {
  EXPECT_EQ(namesOf(bodyOf("m=audio 4000 RTP/AVP 0\na=sendonly\nm=video 4002 RTP/AVP 34\n"),
                    bodyOf("a=ice-lite\na=group:BUNDLE a\n"
                           "m=audio 5000 RTP/AVPF 96\na=rtcp-mux\n"
                           "m=audio 5002 RTP/AVP 34 96 34\na=mid:a\na=setup:actpass\n"
                           "m=text 0 RTP/AVP 98\n")),
            (Names{"0: section-count", "0: group-not-offered", "0: ice-not-offered", "1: transport",
                   "1: no-format", "1: direction", "1: codec-not-offered", "1: rtcp-mux-not-offered",
                   "1: no-rtpmap", "2: section-media", "2: codec-not-offered", "2: mid-not-offered",
                   "2: payload-twice", "2: no-rtpmap", "2: setup-not-offered", "2: setup-actpass"}));
}

TEST(Findings, ShowWhatCannotBeShownAsEscapes) {
  const std::string media = "\x1b[2J\t\xc3\xa4\xff\xc2\x85\xe2\x80\xae\xed\xa0\x80\xf0\x9f\x98\x80\xe2\x82";
  const Names expected{
      "1: section-media: \\x1b[2J answers x",
  };
  // The tab ends the field.
  EXPECT_EQ(linesOf(bodyOf("m=x 0 y z\n"), bodyOf("m=" + media + " 0 y z\n")).front(), expected.front());
  const std::string transport = media.substr(media.find('\t') + 1);
  EXPECT_EQ(
      linesOf(bodyOf("m=x 0 y z\n"), bodyOf("m=x 0 " + transport + " z\n")),
      Names{"1: transport: \xc3\xa4\\xff\\xc2\\x85\\xe2\\x80\\xae\\xed\\xa0\\x80\xf0\x9f\x98\x80\\xe2\\x82"
            " answers y"});
  EXPECT_EQ(linesOf(bodyOf("m=x 0 y z\n"), bodyOf("m=x 0 y\x7f\x0d\x01 z\n")),
            Names{"1: transport: y\\x7f\\x0d\\x01 answers y"});
}

TEST(Findings, CutWhatIsLong) {
  const std::string most(64, 'n');
  EXPECT_EQ(linesOf(bodyOf("m=x 0 y z\n"), bodyOf("m=" + most + " 0 y z\n")),
            Names{"1: section-media: " + most + " answers x"});
  EXPECT_EQ(linesOf(bodyOf("m=x 0 y z\n"), bodyOf("m=" + most + "n 0 y z\n")),
            Names{"1: section-media: " + most + "... answers x"});
  // A character is not cut in two.
  EXPECT_EQ(linesOf(bodyOf("m=x 0 y z\n"), bodyOf("m=" + most.substr(1) + "\xc3\xa4 0 y z\n")),
            Names{"1: section-media: " + most.substr(1) + "\xc3\xa4 answers x"});
}

TEST(Findings, HaveNoKeys) {
  const std::string secret = "c2VjcmV0c2VjcmV0c2VjcmV0c2VjcmV0c2VjcmV0";
  const std::string offer = bodyOf(
      "m=audio 4000 RTP/SAVP 0\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x\n"
      "a=ice-ufrag:abcd\na=ice-pwd:0123456789012345678901\n");
  const std::string answers[] = {"a=crypto:" + secret + "\n",
                                 "a=crypto:inline:" + secret + "\n",
                                 "a=crypto:1 inline:" + secret + "\n",
                                 "a=crypto:1 " + secret + "\n",
                                 "a=crypto:2 AES_CM_128_HMAC_SHA1_80 inline:" + secret + "\n",
                                 "a=crypto:1 " + secret + "_x inline:" + secret + "\n",
                                 "a=crypto:1 AES_CM_128_HMAC_SHA1_32 inline:" + secret + "\n"};
  for (const std::string& lines : answers) {
    const Names findings = linesOf(offer, bodyOf("m=audio 5000 RTP/SAVP 0\n" + lines));
    ASSERT_EQ(findings.size(), 1U) << lines;
    EXPECT_EQ(findings.front().find(secret), std::string::npos) << findings.front();
  }
  EXPECT_EQ(linesOf(offer, bodyOf("m=audio 5000 RTP/SAVP 0\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x\n"
                                  "a=ice-ufrag:oh!\na=ice-pwd:psst\n")),
            (Names{"1: ice-short: ice-ufrag has 3 characters, not 4",
                   "1: ice-short: ice-pwd has 4 characters, not 22"}));
}

struct Many {
  std::size_t unreadable;  ///< sections of an answer, each of which breaks one rule; the last breaks another
  std::size_t told;
  bool hasMore;
};

TEST(Findings, AreAThousandAtMostAndTheFirstOfEachOtherRule) {
  for (const Many& each : {Many{999, 1000, false}, Many{1000, 1001, false}, Many{1001, 1001, true}}) {
    std::string lines;
    for (std::size_t n = 0; n < each.unreadable; ++n) lines += "m=\n";
    sdp::Document offer;
    sdp::Document answer;
    ASSERT_FALSE(offer.read(bodyOf(lines + "m=audio 4000 RTP/AVP 0\na=sendonly\n")));
    ASSERT_FALSE(answer.read(bodyOf(lines + "m=audio 5000 RTP/AVP 0\n")));
    const sdp::Judgement judgement = sdp::checkAnswer(offer, answer);
    EXPECT_EQ(judgement.findings.size(), each.told) << each.unreadable;
    EXPECT_EQ(judgement.hasMore, each.hasMore) << each.unreadable;
    EXPECT_EQ(judgement.findings.back().rule, AnswerRule::direction);
    EXPECT_EQ(judgement.findings.back().section, each.unreadable + 1);
    EXPECT_EQ(judgement.findings[each.told - 2].section, each.told - 1);
  }
}

TEST(Judgements, OfOneDocumentByItselfAreThoseOfTwo) {
  const std::string body = bodyOf(
      "m=audio 4000 RTP/AVP 0 96\na=rtpmap:96 opus/48000/2\na=sendonly\n"
      "m=video 4002 RTP/AVP 97\na=rtpmap:97 VP8/90000\n");
  sdp::Document document;
  ASSERT_FALSE(document.read(body));
  const sdp::Judgement judgement = sdp::checkAnswer(document, document);
  ASSERT_EQ(judgement.findings.size(), 1U);
  EXPECT_EQ(judgement.findings.front().rule, AnswerRule::direction);
  EXPECT_FALSE(judgement.isGood());
  EXPECT_EQ(namesOf(body, body), Names{"1: direction"});
}

}  // namespace
