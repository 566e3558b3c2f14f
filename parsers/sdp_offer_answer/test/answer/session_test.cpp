#include "answer/answerTestSupport.h"

// The session of answers.

using namespace answerTest;

namespace {

constexpr const char* kOffer =
    "v=0|o=- 1 1 IN IP4 192.0.2.1|s=x|t=1 2|r=1 1 0|t=3 4|m=audio 4000 RTP/AVP 0|c=IN IP4 192.0.2.1|";

TEST(AnswerSession, HasTheLinesOfTheLocalOneAndTheTimesOfTheOffer) {
  expectAnswers(
      {{"in their order", kOffer,
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|e=a@example.org|p=+1 555|e=b@example.org|u=http://example.org|i=info|b=AS:1|"
        "c=IN IP4 192.0.2.2|t=9 9|z=0 0|k=x|b=CT:2|a=tool:t|m=audio 5000 RTP/AVP 0|b=AS:64|",
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=1 2|t=3 4|a=tool:t|m=audio 5000 RTP/AVP 0|b=AS:64|"},
       {"t=0 0 where none is offered", "v=0|m=audio 4000 RTP/AVP 0|", "m=audio 5000 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|"},
       {"the address of the first section that has one", kOffer,
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|m=video 5002 RTP/AVP 31|m=audio 5000 RTP/AVP 0|c=IN IP4 192.0.2.5|",
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.5|t=1 2|t=3 4|m=audio 5000 RTP/AVP 0|c=IN IP4 192.0.2.5|"},
       {"something where the local one has nothing", kOffer, "v=0|c=IN IP4 192.0.2.2|m=audio 5000 RTP/AVP 0|",
        "v=0|o=- 0 0 IN IP4 0.0.0.0|s=-|c=IN IP4 192.0.2.2|t=1 2|t=3 4|m=audio 5000 RTP/AVP 0|"},
       {"attributes that hold for all", kOffer,
        "a=tool:t|a=sendrecv|a=group:LS 1 2|a=ice-lite|a=msid-semantic:WMS *|a=rtpmap:0 PCMU/8000|a=setup:actpass|a=tls-id:"
        "x|a=cname:c|m=audio 5000 RTP/AVP 0|",
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=1 2|t=3 4|a=tool:t|a=msid-semantic:WMS *|a=cname:c|m=audio "
        "5000 RTP/AVP 0|"}});
}

struct Next {
  const char* what;
  const char* previous;
  const char* local;   ///< its o-line
  const char* origin;  ///< that of the answer
};

TEST(AnswerSession, GoesOnFromTheAnswerBefore) {
  constexpr std::string_view kRest = "|s=us|c=IN IP4 192.0.2.2|t=0 0|m=audio 5000 RTP/AVP 0|";
  const Next cases[] = {
      {"the same", "o=me 7 3 IN IP4 192.0.2.2", "o=me 9 1 IN IP4 192.0.2.2", "o=me 7 3 IN IP4 192.0.2.2"},
      {"the same but for the o-line", "o=- 7 0041 IN IP4 192.0.2.9", "o=me  9 1  IN IP4 192.0.2.2",
       "o=me  7 41  IN IP4 192.0.2.2"},
      {"no number", "o=me id x IN IP4 192.0.2.2", "o=me 9 1 IN IP4 192.0.2.2", "o=me id 1 IN IP4 192.0.2.2"},
      {"too short", "o=me 7", "o=me 9 1 IN IP4 192.0.2.2", "o=me 9 1 IN IP4 192.0.2.2"},
      {"too short of ours", "o=me 7 3 IN IP4 192.0.2.2", "o=me 9", "o=me 9"}};
  for (const Next& c : cases) {
    SCOPED_TRACE(c.what);
    const sdp::Document previous =
        documentOf(withEnds(std::string("v=0|").append(c.previous).append(kRest), "\n"));
    sdp::AnswerOptions options;
    options.previous = &previous;
    const std::string local = std::string("v=0|").append(c.local).append(kRest);
    const std::string answer = std::string("v=0|").append(c.origin).append(kRest);
    expectAnswers({{c.what, "m=audio 4000 RTP/AVP 0|", local.c_str(), answer.c_str()}}, options);
  }
}

TEST(AnswerSession, RaisesItsVersionWhenSomethingDiffers) {
  const Next cases[] = {
      {"by one", "o=me 7 3 IN IP4 192.0.2.2", "", "o=me 7 4 IN IP4 192.0.2.2"},
      {"past all nines", "o=me 7 0999 IN IP4 192.0.2.2", "", "o=me 7 1000 IN IP4 192.0.2.2"},
      {"past 63 bits", "o=me 7 9223372036854775807 IN IP4 192.0.2.2", "",
       "o=me 7 9223372036854775808 IN IP4 192.0.2.2"},
      {"past 64 bits", "o=me 7 18446744073709551615 IN IP4 192.0.2.2", "",
       "o=me 7 18446744073709551616 IN IP4 192.0.2.2"}};
  for (const Next& c : cases) {
    const sdp::Document previous =
        documentOf(std::string("v=0\r\n")
                       .append(c.previous)
                       .append("\r\ns=us\r\nc=IN IP4 192.0.2.2\r\nt=0 0\r\nm=audio 5000 RTP/AVP 8\r\n"));
    sdp::AnswerOptions options;
    options.previous = &previous;
    const std::string answer =
        std::string("v=0|").append(c.origin).append("|s=us|c=IN IP4 192.0.2.2|t=0 0|m=audio 5000 RTP/AVP 0|");
    expectAnswers({{c.what, "m=audio 4000 RTP/AVP 0|", "m=audio 5000 RTP/AVP 0|", answer.c_str()}}, options);
  }
}

TEST(AnswerSession, TellsFailuresAndOutcomesInWords) {
  EXPECT_EQ(textOf(sdp::AnswerFailure::none), "");
  EXPECT_EQ(textOf(sdp::AnswerFailure::brokenOffer), "the offer is no session description");
  EXPECT_EQ(textOf(sdp::AnswerFailure::noLocalSection), "the local description has no section");
  EXPECT_EQ(textOf(sdp::SectionOutcome::noCommonFormat), "no codec in common");
  EXPECT_EQ(textOf(sdp::SectionOutcome::notProtected), "only one side is protected");
  const sdp::Document offer = documentOf("m=video 4002 RTP/AVP 31\nm=audio 4000 RTP/AVP 0\n");
  const sdp::Document local = documentOf("m=text 5004 RTP/AVP 98\nm=audio 5000 RTP/AVP 0\n");
  const sdp::Answer answer = makeAnswer(offer, local);
  ASSERT_TRUE(answer);
  ASSERT_EQ(answer.sections.size(), 2U);
  EXPECT_EQ(answer.sections[0].outcome, sdp::SectionOutcome::noLocalSection);
  EXPECT_EQ(answer.sections[0].local, 0U);
  EXPECT_EQ(answer.sections[1].outcome, sdp::SectionOutcome::accepted);
  EXPECT_EQ(answer.sections[1].local, 2U);
}

}  // namespace
