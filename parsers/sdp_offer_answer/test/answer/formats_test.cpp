#include "answer/answerTestSupport.h"

// Which formats are answered, in which order and under which numbers.

using namespace answerTest;

namespace {

constexpr const char* kPhone =
    "m=audio 5000 RTP/AVP 8 0 101|a=rtpmap:101 telephone-event/8000|a=fmtp:101 0-15|";

TEST(Formats, StandInTheOrderOfTheOfferUnderItsNumbers) {
  expectAnswers(
      {{"some of them", "m=audio 4000 RTP/AVP 0 9 8 96|a=rtpmap:96 telephone-event/8000|", kPhone,
        "m=audio 5000 RTP/AVP 0 8 96|a=rtpmap:96 telephone-event/8000|a=fmtp:96 0-15|"},
       {"a number twice", "m=audio 4000 RTP/AVP 0 0 8 0|", kPhone, "m=audio 5000 RTP/AVP 0 8|"},
       {"two numbers for one codec", "m=audio 4000 RTP/AVP 0 96|a=rtpmap:96 PCMU/8000|",
        "m=audio 5000 RTP/AVP 0|a=rtpmap:0 PCMU/8000|a=ptime:20|",
        "m=audio 5000 RTP/AVP 0 96|a=rtpmap:0 PCMU/8000|a=rtpmap:96 PCMU/8000|a=ptime:20|"},
       {"of equal ones of ours the first counts", "m=video 4000 RTP/AVP 99|a=rtpmap:99 VP8/90000|",
        "m=video 5000 RTP/AVP 96 97|a=rtpmap:96 VP8/90000|a=fmtp:96 max-fr=30|a=rtpmap:97 VP8/90000|a=fmtp:97 "
        "max-fr=15|",
        "m=video 5000 RTP/AVP 99|a=rtpmap:99 VP8/90000|a=fmtp:99 max-fr=30|"},
       {"a number that needs words", "m=audio 4000 RTP/AVP 97|a=rtpmap:97 PCMU/8000|", kPhone,
        "m=audio 5000 RTP/AVP 97|a=rtpmap:97 PCMU/8000|"},
       {"attributes of formats go with them", "m=video 4000 RTP/AVP 34|",
        "m=video 5000 RTP/AVP 31 34|a=framesize:34 176-144|a=framesize:31 352-288|a=imageattr:34 send *|a=imageattr:* "
        "recv *|a=gpmd:31 x|a=fmtp:99 y|",
        "m=video 5000 RTP/AVP 34|a=framesize:34 176-144|a=imageattr:34 send *|a=imageattr:* recv *|"}});
}

TEST(Formats, StandInTheLocalOrderOnWish) {
  sdp::AnswerOptions options;
  options.prefersLocal = true;
  expectAnswers({{"companions included", "m=audio 4000 RTP/AVP 96 0 9 8|a=rtpmap:96 telephone-event/8000|",
                  kPhone, "m=audio 5000 RTP/AVP 8 0 96|a=rtpmap:96 telephone-event/8000|a=fmtp:96 0-15|"},
                 {"words", "m=application 4000 udp b a|", "m=application 5000 UDP A B|",
                  "m=application 5000 udp a b|"}},
                options);
}

TEST(Formats, AreOneCodecOnWish) {
  sdp::AnswerOptions options;
  options.isSingle = true;
  const char* const local =
      "m=audio 5000 RTP/AVP 8 0 9 13 100 101|a=rtpmap:100 opus/48000/2|a=rtpmap:101 telephone-event/8000|";
  expectAnswers(
      {{"the first of the offer", "m=audio 4000 RTP/AVP 0 8 13 101|a=rtpmap:101 telephone-event/8000|", local,
        "m=audio 5000 RTP/AVP 0 13 101|a=rtpmap:101 telephone-event/8000|"},
       {"what does not serve it goes", "m=audio 4000 RTP/AVP 96 8 13|a=rtpmap:96 opus/48000/2|", local,
        "m=audio 5000 RTP/AVP 96|a=rtpmap:96 opus/48000/2|"}},
      options);
  options.prefersLocal = true;
  expectAnswers({{"our first", "m=audio 4000 RTP/AVP 0 8 13|", local, "m=audio 5000 RTP/AVP 8 13|"}},
                options);
}

TEST(Companions, StayWithWhatTheyServe) {
  expectAnswers(
      {{"rtx, whose numbers are those of the offer",
        "m=video 4000 RTP/AVP 100 101 102|a=rtpmap:100 VP8/90000|a=rtpmap:101 rtx/90000|a=fmtp:101 apt=100|a=rtpmap:102 "
        "rtx/90000|a=fmtp:102 apt=99|",
        "m=video 5000 RTP/AVP 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96;rtx-time=200|",
        "m=video 5000 RTP/AVP 100 101|a=rtpmap:100 VP8/90000|a=rtpmap:101 rtx/90000|a=fmtp:101 apt=100;rtx-time=200|"},
       {"rtx of what we do not have",
        "m=video 4000 RTP/AVP 100 101 102 103|a=rtpmap:100 VP8/90000|a=rtpmap:101 rtx/90000|a=fmtp:101 "
        "apt=100|a=rtpmap:102 VP9/90000|a=rtpmap:103 rtx/90000|a=fmtp:103 apt=102|",
        "m=video 5000 RTP/AVP 96 97|a=rtpmap:96 VP9/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|",
        "m=video 5000 RTP/AVP 102 103|a=rtpmap:102 VP9/90000|a=rtpmap:103 rtx/90000|a=fmtp:103 apt=102|"},
       {"red with all that it carries",
        "m=audio 4000 RTP/AVP 111 63|a=rtpmap:111 opus/48000/2|a=rtpmap:63 red/48000/2|a=fmtp:63 111/111|",
        "m=audio 5000 RTP/AVP 96 97|a=rtpmap:96 opus/48000/2|a=rtpmap:97 red/48000/2|a=fmtp:97 96/96|",
        "m=audio 5000 RTP/AVP 111 63|a=rtpmap:111 opus/48000/2|a=rtpmap:63 red/48000/2|a=fmtp:63 111/111|"},
       {"red that carries something else",
        "m=audio 4000 RTP/AVP 111 0 63|a=rtpmap:111 opus/48000/2|a=rtpmap:63 red/48000/2|a=fmtp:63 111/0|",
        "m=audio 5000 RTP/AVP 96 0 97|a=rtpmap:96 opus/48000/2|a=rtpmap:97 red/48000/2|a=fmtp:97 96/96|",
        "m=audio 5000 RTP/AVP 111 0|a=rtpmap:111 opus/48000/2|"},
       {"red that only we tell the contents of",
        "m=video 4000 RTP/AVP 100 101 102|a=rtpmap:100 VP8/90000|a=rtpmap:101 red/90000|a=rtpmap:102 ulpfec/90000|",
        "m=video 5000 RTP/AVP 96 97 98|a=rtpmap:96 VP8/90000|a=rtpmap:97 red/90000|a=fmtp:97 96/98|a=rtpmap:98 "
        "ulpfec/90000|",
        "m=video 5000 RTP/AVP 100 101 102|a=rtpmap:100 VP8/90000|a=rtpmap:101 red/90000|a=fmtp:101 "
        "100/102|a=rtpmap:102 ulpfec/90000|"},
       {"rtx of red",
        "m=video 4000 RTP/AVP 100 101 102|a=rtpmap:100 VP8/90000|a=rtpmap:101 red/90000|a=rtpmap:102 "
        "rtx/90000|a=fmtp:102 apt=101|",
        "m=video 5000 RTP/AVP 96 97 98|a=rtpmap:96 VP8/90000|a=rtpmap:97 red/90000|a=rtpmap:98 rtx/90000|a=fmtp:98 "
        "apt=97|",
        "m=video 5000 RTP/AVP 100 101 102|a=rtpmap:100 VP8/90000|a=rtpmap:101 red/90000|a=rtpmap:102 "
        "rtx/90000|a=fmtp:102 apt=101|"}});
}

TEST(Companions, HaveTheClockOfACodec) {
  const char* const local =
      "m=audio 5000 RTP/AVP 0 13 98 101 102|a=rtpmap:98 CN/16000|a=rtpmap:101 telephone-event/8000|a=rtpmap:102 "
      "telephone-event/16000|";
  expectAnswers(
      {{"comfort noise and events",
        "m=audio 4000 RTP/AVP 0 13 98 101 102|a=rtpmap:98 CN/16000|a=rtpmap:101 "
        "telephone-event/8000|a=rtpmap:102 telephone-event/16000|",
        local, "m=audio 5000 RTP/AVP 0 13 101|a=rtpmap:101 telephone-event/8000|"},
       {"events of 8000 Hz for those who know no other",
        "m=audio 4000 RTP/AVP 9 101|a=rtpmap:9 opus/48000/2|a=rtpmap:101 telephone-event/8000|",
        "m=audio 5000 RTP/AVP 96 97|a=rtpmap:96 opus/48000/2|a=rtpmap:97 telephone-event/8000|",
        "m=audio 5000 RTP/AVP 9 101|a=rtpmap:9 opus/48000/2|a=rtpmap:101 telephone-event/8000|"},
       {"events of another clock where there are no others",
        "m=audio 4000 RTP/AVP 0 102|a=rtpmap:102 telephone-event/16000|", local,
        "m=audio 5000 RTP/AVP 0 102|a=rtpmap:102 telephone-event/16000|"},
       {"no codec is offered",
        "m=audio 4000 RTP/AVP 98 102|a=rtpmap:98 CN/16000|a=rtpmap:102 telephone-event/16000|", local,
        "m=audio 5000 RTP/AVP 98 102|a=rtpmap:98 CN/16000|a=rtpmap:102 telephone-event/16000|"}});
  expectRefusals({{"companions alone are in common",
                   "m=audio 4000 RTP/AVP 18 101|a=rtpmap:101 telephone-event/8000|",
                   local,
                   {sdp::SectionOutcome::noCommonFormat}}});
}

TEST(Feedback, IsWhatBothHave) {
  expectAnswers(
      {{"by format",
        "m=video 4000 RTP/AVPF 100|a=rtpmap:100 VP8/90000|a=rtcp-fb:100 nack|a=rtcp-fb:100 ccm fir|",
        "m=video 5000 RTP/AVPF 96|a=rtpmap:96 VP8/90000|a=rtcp-fb:96 nack pli|a=rtcp-fb:96  ccm  fir|a=rtcp-fb:96 nack|",
        "m=video 5000 RTP/AVPF 100|a=rtpmap:100 VP8/90000|a=rtcp-fb:100  ccm  fir|a=rtcp-fb:100 nack|"},
       {"for all", "m=video 4000 RTP/AVPF 100|a=rtpmap:100 VP8/90000|a=rtcp-fb:* nack|a=rtcp-fb:100 ccm fir|",
        "m=video 5000 RTP/AVP 96|a=rtpmap:96 VP8/90000|a=rtcp-fb:* ccm fir|a=rtcp-fb:* nack|a=rtcp-fb:96 ccm fir|",
        "m=video 5000 RTP/AVPF 100|a=rtpmap:100 VP8/90000|a=rtcp-fb:100 ccm fir|a=rtcp-fb:* nack|"},
       {"offered for all", "m=video 4000 RTP/AVPF 100|a=rtpmap:100 VP8/90000|a=rtcp-fb:* nack|",
        "m=video 5000 RTP/AVPF 96|a=rtpmap:96 VP8/90000|a=rtcp-fb:96 nack|",
        "m=video 5000 RTP/AVPF 100|a=rtpmap:100 VP8/90000|a=rtcp-fb:100 nack|"}});
}

}  // namespace
