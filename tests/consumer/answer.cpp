// An answer and its judge in a few lines: what a user of the library of offers and answers alone writes.

#include <sdpAnswer.h>
#include <sdpAnswerJudge.h>

#include <cstdio>

int main() {
  sdp::Document offer;
  sdp::Document local;
  if (offer.read("v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n"
                 "m=audio 4000 RTP/AVP 18 8\r\n") ||
      local.read("v=0\r\no=- 7 7 IN IP4 192.0.2.2\r\ns=-\r\nc=IN IP4 192.0.2.2\r\nt=0 0\r\n"
                 "m=audio 5000 RTP/AVP 0 8\r\n")) {
    std::fprintf(stderr, "not read\n");
    return 1;
  }
  const sdp::Answer answer = sdp::makeAnswer(offer, local);
  const bool right = answer && answer.text ==
                                   "v=0\r\no=- 7 7 IN IP4 192.0.2.2\r\ns=-\r\nc=IN IP4 192.0.2.2\r\nt=0 0\r\n"
                                   "m=audio 5000 RTP/AVP 8\r\n";
  sdp::Document text;
  if (!right || text.read(answer.text) || !sdp::checkAnswer(offer, text).isGood()) {
    std::printf("answer: wrong\n");
    return 1;
  }
  std::printf("answer: made and judged\n");
  return 0;
}
