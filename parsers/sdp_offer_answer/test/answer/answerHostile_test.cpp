#include <ctime>

#include "answer/answerTestSupport.h"

// Offers that are made to hurt: they are answered in a time that grows with their length. With its square it would be
// minutes.

using namespace answerTest;

namespace {

std::string times(std::size_t count, std::string_view piece) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

TEST(HostileOffers, WithThousandsOfRtxForOneRedOfALongList) {
  constexpr double kMostSeconds = 20;
  constexpr std::size_t kCount = 20'000;
  std::string formats = "127 96";
  std::string attributes = "a=rtpmap:96 VP8/90000|a=rtpmap:127 red/90000|a=fmtp:127 " + times(300'000, "x/") +
                           times(10'000, "96/") + "96|";
  for (std::size_t i = 1'000; i < 1'000 + kCount; ++i) {
    const std::string payload = std::to_string(i);
    formats.append(" ").append(payload);
    attributes.append("a=rtpmap:")
        .append(payload)
        .append(" rtx/90000|a=fmtp:")
        .append(payload)
        .append(" apt=127|");
  }
  const sdp::Document offer = documentOf(withEnds(
      std::string("v=0|m=video 4000 RTP/AVP ").append(formats).append("|").append(attributes), "\r\n"));
  // One red carries less, and the other does not tell what.
  const sdp::Document local = documentOf(withEnds(
      "v=0|m=video 5000 RTP/AVP 96 97 98 99 100|a=rtpmap:96 VP8/90000|a=rtpmap:97 red/90000|a=fmtp:97 "
      "96/96|a=rtpmap:98 rtx/90000|a=fmtp:98 apt=97|a=rtpmap:99 red/90000|a=rtpmap:100 rtx/90000|a=fmtp:100 apt=99|",
      "\r\n"));
  const std::clock_t begin = std::clock();
  const sdp::Answer answer = makeAnswer(offer, local);
  EXPECT_LT(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC, kMostSeconds);
  ASSERT_TRUE(answer);
  const std::string_view mLine(answer.text.data(), answer.text.find("\r\na=rtpmap"));
  EXPECT_TRUE(mLine.ends_with(" RTP/AVP " + formats));
}

}  // namespace
