#include <algorithm>

#include "answer/answerTestSupport.h"

// Characters of an offer at which some reader ends a line: a bare CR, and NUL. `~` stands for each of them.

using namespace answerTest;

namespace {

std::string withMark(std::string_view text, char mark) {
  std::string result = withEnds(text, "\r\n");
  std::replace(result.begin(), result.end(), '~', mark);
  return result;
}

void expectMarkedAnswers(std::initializer_list<Answered> cases) {
  for (const Answered& c : cases) {
    for (const char mark : {'\r', '\0'}) {
      SCOPED_TRACE(std::string(c.what) + (mark == '\r' ? ", CR" : ", NUL"));
      const sdp::Document offer = documentOf(withMark(withHead(kOfferHead, c.offer), mark));
      const sdp::Document local = documentOf(withMark(withHead(kLocalHead, c.local), mark));
      const sdp::Answer answer = makeAnswer(offer, local);
      EXPECT_EQ(textOf(answer.failure), "");
      EXPECT_EQ(answer.text, withEnds(withHead(kAnswerHead, c.answer), "\r\n"));
      EXPECT_EQ(complaints(offer, answer.text), "");
    }
  }
}

constexpr const char* kAudio = "m=audio 5000 RTP/AVP 0|";

TEST(LineEnds, OfTheSessionMakeNoLinesOfOurs) {
  expectMarkedAnswers(
      {{"a time alone", "v=0|t=0 0~c=IN IP4 192.0.2.66~m=audio 666 RTP/AVP 0|m=audio 4000 RTP/AVP 0|", kAudio,
        kAudio},
       {"a time beside another", "v=0|t=1 2~a=x|t=3 4|m=audio 4000 RTP/AVP 0|", kAudio,
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=3 4|m=audio 5000 RTP/AVP 0|"},
       {"of ours are left out", "m=audio 4000 RTP/AVP 0|", "m=audio 5000 RTP/AVP 0|a=label:1~a=inactive|",
        "m=audio 5000 RTP/AVP 0|a=label:1a=inactive|"}});
}

TEST(LineEnds, OfAMidMakeItNone) {
  expectMarkedAnswers(
      {{"of an accepted section", "m=audio 4000 RTP/AVP 0|a=mid:0~a=inactive~b=AS:1|", kAudio, kAudio},
       {"also where the local one has a mid", "m=audio 4000 RTP/AVP 0|a=mid:0~a=inactive|",
        "m=audio 5000 RTP/AVP 0|a=mid:x|a=ptime:20|", "m=audio 5000 RTP/AVP 0|a=ptime:20|"},
       {"of a refused section", "m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|a=mid:0~a=inactive|", kAudio,
        "m=audio 5000 RTP/AVP 0|m=video 0 RTP/AVP 31|"},
       {"of a group",
        "a=group:BUNDLE 0~a=inactive 1|m=audio 4000 RTP/AVP 0|a=mid:0~a=inactive|a=rtcp-mux|m=video 4000 RTP/AVP "
        "31|a=mid:1|a=rtcp-mux|",
        "a=group:BUNDLE x y|m=audio 5000 RTP/AVP 0|a=mid:x|a=rtcp-mux|m=video 5002 RTP/AVP 31|a=mid:y|a=rtcp-mux|",
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=group:BUNDLE 1|m=audio 5000 RTP/AVP "
        "0|a=rtcp-mux|m=video 5002 RTP/AVP 31|a=mid:1|a=rtcp-mux|"}});
}

TEST(LineEnds, OfARefusedSectionMakeItsFieldsTheUsualOnes) {
  expectMarkedAnswers({{"all", "m=audio 4000 RTP/AVP 0|m=vi~a=x 1 RTP~a=y 9~a=z|", kAudio,
                        "m=audio 5000 RTP/AVP 0|m=audio 0 RTP/AVP 0|"},
                       {"its transport, whose profile is known",
                        "m=audio 4000 x~a=inactive~RTP/AVP 0|m=audio 4002 RTP/AVP 0|", kAudio,
                        "m=audio 0 RTP/AVP 0|m=audio 5000 RTP/AVP 0|"}});
}

TEST(LineEnds, OfFormatsDoNotGetIntoTheAnswer) {
  expectMarkedAnswers(
      {{"a payload type", "m=audio 4000 RTP/AVP 98~a=inactive 0|a=rtpmap:98~a=inactive PCMU/8000|", kAudio,
        kAudio},
       {"modes of AMR",
        "m=audio 4000 RTP/AVP 96|a=rtpmap:96 AMR/8000|a=fmtp:96 mode-set=0,2~m=audio 666 RTP/AVP 0,5|",
        "m=audio 5000 RTP/AVP 97|a=rtpmap:97 AMR/8000|a=fmtp:97 octet-align=0|",
        "m=audio 5000 RTP/AVP 96|a=rtpmap:96 AMR/8000|a=fmtp:96 octet-align=0;mode-set=0,5|"},
       {"no mode of AMR",
        "m=audio 4000 RTP/AVP 96|a=rtpmap:96 AMR/8000|a=fmtp:96 mode-set=0~m=audio 666 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 97|a=rtpmap:97 AMR/8000|a=fmtp:97 octet-align=0|",
        "m=audio 5000 RTP/AVP 96|a=rtpmap:96 AMR/8000|a=fmtp:96 octet-align=0|"},
       {"what red carries", "m=audio 4000 RTP/AVP 0 63|a=rtpmap:63 red/8000|a=fmtp:63 0/~a=inactive/0|",
        "m=audio 5000 RTP/AVP 0 96|a=rtpmap:96 red/8000|a=fmtp:96 0/0|",
        "m=audio 5000 RTP/AVP 0 63|a=rtpmap:63 red/8000|a=fmtp:63 0/0|"}});
}

}  // namespace
