#include "judgeTestSupport.h"

// The rules of sections.

namespace {

using judgeTest::bodyOf;
using judgeTest::Names;
using judgeTest::namesOf;
using judgeTest::RuleCase;

class SectionRules : public testing::TestWithParam<RuleCase> {};

TEST_P(SectionRules, AreToldWhenBroken) { judgeTest::expectRule(GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    Judge, SectionRules,
    testing::Values(RuleCase{"one section less",
                             "m=audio 4000 RTP/AVP 0\nm=video 4002 RTP/AVP 34\n",
                             "m=audio 5000 RTP/AVP 0\n",
                             "m=audio 5000 RTP/AVP 0\nm=video 0 RTP/AVP 34\n",
                             {"0: section-count: the answer has 1 section, the offer 2"}},
                    RuleCase{"one section more",
                             "m=audio 4000 RTP/AVP 0\n",
                             "m=audio 5000 RTP/AVP 0\nm=video 5002 RTP/AVP 34\n",
                             "m=audio 5000 RTP/AVP 0\n",
                             {"0: section-count: the answer has 2 sections, the offer 1"}},
                    RuleCase{"media",
                             "m=audio 4000 RTP/AVP 0\n",
                             "m=Audio 5000 RTP/AVP 0\n",
                             "m=audio 5000 RTP/AVP 0\n",
                             {"1: section-media: Audio answers audio"}},
                    RuleCase{"media of a refused section",
                             "m=audio 4000 RTP/AVP 0\nm=video 4002 RTP/AVP 34\n",
                             "m=audio 5000 RTP/AVP 0\nm=text 0 RTP/AVP 34\n",
                             "m=audio 5000 RTP/AVP 0\nm=video 0 RTP/AVP 34\n",
                             {"2: section-media: text answers video"}},
                    RuleCase{"transport of RTP",
                             "m=audio 4000 RTP/AVPF 0\n",
                             "m=audio 5000 RTP/AVP 0\n",
                             "m=audio 5000 RTP/AVPF 0\n",
                             {"1: transport: RTP/AVP answers RTP/AVPF"}},
                    RuleCase{"transport of RTP in other letters",
                             "m=audio 4000 RTP/AVP 0\n",
                             "m=audio 0 rtp/avp 0\n",
                             "m=audio 0 RTP/AVP 0\n",
                             {"1: transport: rtp/avp answers RTP/AVP"}},
                    RuleCase{"transport without RTP",
                             "m=image 4000 udptl t38\n",
                             "m=image 5000 TCP t38\n",
                             "m=image 5000 UDPTL t38\n",
                             {"1: transport: TCP answers udptl"}},
                    RuleCase{"format without RTP",
                             "m=application 4000 UDP/BFCP *\n",
                             "m=application 5000 UDP/BFCP bfcp\n",
                             "m=application 5000 UDP/BFCP * bfcp\n",
                             {"1: no-format: none of its formats was offered"}},
                    RuleCase{"direction to sendonly",
                             "m=audio 4000 RTP/AVP 0\na=sendonly\n",
                             "m=audio 5000 RTP/AVP 0\n",
                             "m=audio 5000 RTP/AVP 0\na=recvonly\n",
                             {"1: direction: sendrecv answers sendonly"}},
                    RuleCase{"direction to recvonly",
                             "m=audio 4000 RTP/AVP 0\na=recvonly\n",
                             "m=audio 5000 RTP/AVP 0\na=recvonly\n",
                             "m=audio 5000 RTP/AVP 0\na=sendonly\n",
                             {"1: direction: recvonly answers recvonly"}},
                    RuleCase{"direction to inactive, of the session",
                             "a=inactive\nm=audio 4000 RTP/AVP 0\n",
                             "m=audio 5000 RTP/AVP 0\na=sendonly\n",
                             "a=inactive\nm=audio 5000 RTP/AVP 0\n",
                             {"1: direction: sendonly answers inactive"}},
                    RuleCase{"unreadable port",
                             "m=audio 4000 RTP/AVP 0\n",
                             "m=audio 65536 RTP/AVP 0\n",
                             "m=audio 65535 RTP/AVP 0\n",
                             {"1: no-port: its m-line cannot be read"}},
                    RuleCase{"no format in the m-line",
                             "m=audio 4000 RTP/AVP 0\n",
                             "m=audio 5000 RTP/AVP\na=sendonly\n",
                             "m=audio 5000 RTP/AVP 0\n",
                             {"1: no-port: its m-line cannot be read"}},
                    RuleCase{"a disabled section",
                             "m=audio 4000 RTP/AVP 0\nm=video 0 RTP/AVP 34\n",
                             "m=audio 5000 RTP/AVP 0\nm=video 5002 RTP/AVP 96\n",
                             "m=audio 5000 RTP/AVP 0\nm=video 0 RTP/AVP 96\n",
                             {"2: disabled-accepted: port 5002 answers a section that is disabled"}},
                    RuleCase{"an unreadable section",
                             "m=audio 4000 RTP/AVP 0\nm=video\n",
                             "m=audio 5000 RTP/AVP 0\nm=video 5002 RTP/AVP 34\n",
                             "m=audio 5000 RTP/AVP 0\nm=video 0 RTP/AVP 0\n",
                             {"2: disabled-accepted: port 5002 answers a section that cannot be read"}}));

TEST(SectionRulesOfRefusedSections, AreNoneOfWhatItHas) {
  const std::string offer =
      bodyOf("m=audio 4000 RTP/SAVP 0\na=sendonly\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x\n");
  EXPECT_EQ(namesOf(offer, bodyOf("m=audio 0 RTP/SAVP 96 96\na=sendonly\na=rtcp-mux\na=setup:actpass\n")),
            Names{});
}

TEST(SectionCount, LeavesThoseThatBothHave) {
  EXPECT_EQ(namesOf(bodyOf("m=audio 4000 RTP/AVP 0\na=inactive\nm=audio 4002 RTP/AVP 0\n"),
                    bodyOf("m=audio 5000 RTP/AVP 0\n")),
            (Names{"0: section-count", "1: direction"}));
}

TEST(Direction, TakesAllFromWhoHoldsAndNothingElse) {
  const char* const words[] = {"sendrecv", "sendonly", "recvonly", "inactive"};
  // By offer, then by answer.
  const bool fits[4][4] = {{true, true, true, true},
                           {false, false, true, true},
                           {false, true, false, true},
                           {false, false, false, true}};
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 4; ++j) {
      const auto body = [&words](int which) {
        return bodyOf("m=audio 9000 RTP/AVP 0\na=" + std::string(words[which]) + "\n");
      };
      EXPECT_EQ(namesOf(body(i), body(j)), fits[i][j] ? Names{} : Names{"1: direction"})
          << words[j] << " to " << words[i];
    }
  }
}

TEST(Direction, DoesNotKnowHoldOfOld) {
  std::string offer = bodyOf("m=audio 4000 RTP/AVP 0\n");
  offer.replace(offer.find("c=IN IP4 192.0.2.7"), 18, "c=IN IP4 0.0.0.0");
  EXPECT_EQ(namesOf(offer, bodyOf("m=audio 5000 RTP/AVP 0\na=sendonly\n")), Names{});
  EXPECT_EQ(namesOf(offer, bodyOf("m=audio 5000 RTP/AVP 0\n")), Names{});
}

TEST(Address, IsThatOfSectionSessionOrBundle) {
  const std::string offer =
      bodyOf("a=group:BUNDLE 1 2\nm=audio 4000 RTP/AVP 0\na=mid:1\nm=video 4000 RTP/AVP 34\na=mid:2\n");
  const std::string start = "v=0\no=- 1 1 IN IP4 192.0.2.9\ns=-\nt=0 0\n";
  const std::string audio = "m=audio 9 RTP/AVP 0\na=mid:1\n";
  const std::string video = "m=video 9 RTP/AVP 34\na=mid:2\n";
  const std::string address = "c=IN IP4 192.0.2.9\n";
  const std::string group = "a=group:BUNDLE 1 2\n";
  EXPECT_EQ(namesOf(offer, start + audio + video), (Names{"1: no-address", "2: no-address"}));
  EXPECT_EQ(namesOf(offer, start + audio + address + video), Names{"2: no-address"});
  EXPECT_EQ(namesOf(offer, start + audio + address + video + address), Names{});
  EXPECT_EQ(namesOf(offer, start + address + audio + video), Names{});
  EXPECT_EQ(namesOf(offer, start + group + audio + address + video), Names{});
  EXPECT_EQ(namesOf(offer, start + group + audio + video), (Names{"1: no-address", "2: no-address"}));
  EXPECT_EQ(namesOf(offer, start + address + audio + "c=IN IP4\n" + video), Names{"1: no-address"});
}

TEST(Port, MayBeThatOfBrowsers) {
  EXPECT_EQ(namesOf(bodyOf("m=audio 9 RTP/AVP 0\n"), bodyOf("m=audio 9 RTP/AVP 0\n")), Names{});
}

TEST(UnreadableSections, AreToldOnceWithTheirMedia) {
  EXPECT_EQ(
      namesOf(bodyOf("m=audio 4000 RTP/AVP 0\n"), bodyOf("m=video x RTP/SAVP\na=crypto:9 X inline:y\n")),
      (Names{"1: section-media", "1: no-port"}));
  EXPECT_EQ(namesOf(bodyOf("m=\n"), bodyOf("m=audio 0 RTP/AVP 0\n")), Names{});
}

TEST(Texts, WithoutSectionsHaveNothingWrong) {
  for (const char* text : {"", "hello\n", "v=0\r\n"}) {
    EXPECT_EQ(namesOf(text, ""), Names{}) << text;
    EXPECT_EQ(namesOf("", text), Names{}) << text;
  }
}

}  // namespace
