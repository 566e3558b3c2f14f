#include "judgeTestSupport.h"

// The rules of groups and mids.

namespace {

using judgeTest::bodyOf;
using judgeTest::Names;
using judgeTest::namesOf;
using judgeTest::RuleCase;

class GroupRules : public testing::TestWithParam<RuleCase> {};

TEST_P(GroupRules, AreToldWhenBroken) { judgeTest::expectRule(GetParam()); }

constexpr const char* kBundled =
    "a=group:BUNDLE 1 2\n"
    "m=audio 4000 RTP/AVP 0\na=mid:1\na=rtcp-mux\n"
    "m=video 4000 RTP/AVP 34\na=mid:2\na=rtcp-mux\n";

constexpr const char* kBundledAnswer =
    "a=group:BUNDLE 1 2\n"
    "m=audio 5000 RTP/AVP 0\na=mid:1\na=rtcp-mux\n"
    "m=video 5000 RTP/AVP 34\na=mid:2\na=rtcp-mux\n";

INSTANTIATE_TEST_SUITE_P(
    Judge, GroupRules,
    testing::Values(
        RuleCase{"semantics",
                 kBundled,
                 "a=group:LS 1 2\n"
                 "m=audio 5000 RTP/AVP 0\na=mid:1\na=rtcp-mux\n"
                 "m=video 5002 RTP/AVP 34\na=mid:2\na=rtcp-mux\n",
                 "m=audio 5000 RTP/AVP 0\na=mid:1\na=rtcp-mux\n"
                 "m=video 5002 RTP/AVP 34\na=mid:2\na=rtcp-mux\n",
                 {"0: group-not-offered: LS 1 2: no such group of the offer has all these members"}},
        RuleCase{"members of two groups",
                 "a=group:BUNDLE 1\na=group:BUNDLE 2\n"
                 "m=audio 4000 RTP/AVP 0\na=mid:1\nm=video 4002 RTP/AVP 34\na=mid:2\n",
                 "a=group:BUNDLE 1 2\n"
                 "m=audio 5000 RTP/AVP 0\na=mid:1\nm=video 5000 RTP/AVP 34\na=mid:2\n",
                 "a=group:BUNDLE 1\na=group:BUNDLE 2\n"
                 "m=audio 5000 RTP/AVP 0\na=mid:1\nm=video 5002 RTP/AVP 34\na=mid:2\n",
                 {"0: group-not-offered: BUNDLE 1 2: no such group of the offer has all these members"}},
        RuleCase{"member without a section",
                 kBundled,
                 "a=group:BUNDLE 1 2 2\n"
                 "m=audio 5000 RTP/AVP 0\na=mid:1\na=rtcp-mux\n"
                 "m=video 0 RTP/AVP 34\n",
                 "a=group:BUNDLE 1\n"
                 "m=audio 5000 RTP/AVP 0\na=mid:1\na=rtcp-mux\n"
                 "m=video 0 RTP/AVP 34\n",
                 {"0: group-without-section: the group BUNDLE names 2, which no section has",
                  "2: mid-missing: a group names 2, and it has no mid"}},
        RuleCase{"refused member",
                 kBundled,
                 "a=group:BUNDLE 1 2\n"
                 "m=audio 5000 RTP/AVP 0\na=mid:1\na=rtcp-mux\n"
                 "m=video 0 RTP/AVP 34\na=mid:2\n",
                 "a=group:BUNDLE 1\n"
                 "m=audio 5000 RTP/AVP 0\na=mid:1\na=rtcp-mux\n"
                 "m=video 0 RTP/AVP 34\na=mid:2\n",
                 {"2: refused-in-group: a group names 2, which is refused"}},
        RuleCase{"refused member that is bundle-only",
                 kBundled,
                 "a=group:BUNDLE 1 2\n"
                 "m=audio 5000 RTP/AVP 0\na=mid:1\na=rtcp-mux\n"
                 "m=video 0 RTP/AVP 34\na=mid:2\na=bundle-only\n",
                 kBundledAnswer,
                 {"2: refused-in-group: a group names 2, which is refused"}},
        RuleCase{
            "bundle-only outside of the group",
            "a=group:BUNDLE 1 2\n"
            "m=audio 4000 RTP/AVP 0\na=mid:1\nm=video 0 RTP/AVP 34\na=mid:2\na=bundle-only\n",
            "a=group:BUNDLE 1\n"
            "m=audio 5000 RTP/AVP 0\na=mid:1\nm=video 5002 RTP/AVP 34\na=mid:2\n",
            "a=group:BUNDLE 1 2\n"
            "m=audio 5000 RTP/AVP 0\na=mid:1\nm=video 5000 RTP/AVP 34\na=mid:2\n",
            {"2: bundle-only-alone: it was offered bundle-only, and nothing that it is bundled with has a port"}},
        RuleCase{
            "bundle-only with others of its kind",
            "a=group:BUNDLE 1 2 3\n"
            "m=audio 4000 RTP/AVP 0\na=mid:1\nm=video 0 RTP/AVP 34\na=mid:2\na=bundle-only\n"
            "m=video 0 RTP/AVP 34\na=mid:3\na=bundle-only\n",
            "a=group:BUNDLE 2 3\n"
            "m=audio 0 RTP/AVP 0\na=mid:1\nm=video 5000 RTP/AVP 34\na=mid:2\n"
            "m=video 5000 RTP/AVP 34\na=mid:3\n",
            "a=group:BUNDLE 1 2 3\n"
            "m=audio 5000 RTP/AVP 0\na=mid:1\nm=video 5000 RTP/AVP 34\na=mid:2\n"
            "m=video 5000 RTP/AVP 34\na=mid:3\n",
            {"2: bundle-only-alone: it was offered bundle-only, and nothing that it is bundled with has a port",
             "3: bundle-only-alone: it was offered bundle-only, and nothing that it is bundled with has a port"}},
        RuleCase{"another mid",
                 "m=audio 4000 RTP/AVP 0\na=mid:1\n",
                 "m=audio 5000 RTP/AVP 0\na=mid:one\n",
                 "m=audio 5000 RTP/AVP 0\na=mid:1 and more\n",
                 {"1: mid-not-offered: one; offered was 1"}},
        RuleCase{"a mid of a refused section",
                 "m=audio 4000 RTP/AVP 0\n",
                 "m=audio 0 RTP/AVP 0\na=mid:1\n",
                 "m=audio 0 RTP/AVP 0\n",
                 {"1: mid-not-offered: 1; offered was none"}},
        RuleCase{"rtcp-mux of a bundled section",
                 kBundled,
                 "a=group:BUNDLE 1 2\n"
                 "m=audio 5000 RTP/AVP 0\na=mid:1\na=rtcp-mux\n"
                 "m=video 5000 RTP/AVP 34\na=mid:2\n",
                 "a=group:BUNDLE 1\n"
                 "m=audio 5000 RTP/AVP 0\na=mid:1\na=rtcp-mux\n"
                 "m=video 5002 RTP/AVP 34\na=mid:2\n",
                 {"2: mux-missing: it is bundled, and has no rtcp-mux"}}));

TEST(Groups, OfTheAnswerMayHaveFewerMembersInAnotherOrder) {
  const std::string offer = bodyOf(
      "a=group:LS 1 2\na=group:LS 3 2 1\n"
      "m=audio 4000 RTP/AVP 0\na=mid:1\nm=audio 4002 RTP/AVP 0\na=mid:2\nm=audio 4004 RTP/AVP 0\na=mid:3\n");
  const std::string sections =
      "m=audio 5000 RTP/AVP 0\na=mid:1\nm=audio 5002 RTP/AVP 0\na=mid:2\nm=audio 5004 RTP/AVP 0\na=mid:3\n";
  for (const char* group : {"LS 1 3", "LS 3 1 2", "LS 2", "LS", "LS 2 2"}) {
    EXPECT_EQ(namesOf(offer, bodyOf("a=group:" + std::string(group) + "\n" + sections)), Names{}) << group;
  }
  for (const char* group : {"FID 1 2", "ls 1 2", "", "FID"}) {
    EXPECT_EQ(namesOf(offer, bodyOf("a=group:" + std::string(group) + "\n" + sections)),
              Names{"0: group-not-offered"})
        << group;
  }
}

TEST(Groups, AreToldOnceForEachLineAndMid) {
  EXPECT_EQ(namesOf(bodyOf("m=audio 4000 RTP/AVP 0\n"),
                    bodyOf("a=group:BUNDLE a b a\na=group:LS a\nm=audio 5000 RTP/AVP 0\n")),
            (Names{"0: group-not-offered", "0: group-not-offered", "0: group-without-section",
                   "0: group-without-section", "0: group-without-section"}));
}

TEST(Mids, MayBeLeftOutWhereNoGroupNamesThem) {
  EXPECT_EQ(
      namesOf(bodyOf(kBundled), bodyOf("m=audio 5000 RTP/AVP 0\na=rtcp-mux\nm=video 5002 RTP/AVP 34\n")),
      Names{});
}

}  // namespace
