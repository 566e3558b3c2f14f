#include "codecs.h"
#include "core/coreTestSupport.h"

using namespace sdp::exchange;

namespace {

/// What each format of a section equals in another, by payload types: "96=100 97=102".
std::string equals(const CodecList& a, const CodecList& b, bool isRemembered) {
  Sameness sameness(a, b);
  std::string text;
  for (const Codec& x : a) {
    for (const Codec& y : b) {
      const bool same = isRemembered ? sameness.areSame(x, y) : areSame(a, x, b, y);
      if (same) text.append(text.empty() ? "" : " ").append(x.payload).append("=").append(y.payload);
    }
  }
  return text;
}

struct Equal {
  const char* what;
  const char* a;
  const char* b;
  const char* expected;
};

TEST(Sameness, OfWhatServesOthersIsThatOfWhatItServes) {
  const Equal cases[] = {
      {"rtx", "m=video 1 RTP/AVP 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|",
       "m=video 1 RTP/AVP 100 101 102 103|a=rtpmap:100 VP8/90000|a=rtpmap:101 VP9/90000|a=rtpmap:102 rtx/90000|a=fmtp:102 "
       "apt=100|a=rtpmap:103 rtx/90000|a=fmtp:103 apt=101|",
       "96=100 97=102"},
      {"rtx for nothing",
       "m=video 1 RTP/AVP 97 98|a=rtpmap:97 rtx/90000|a=rtpmap:98 rtx/90000|a=fmtp:98 apt=96|",
       "m=video 1 RTP/AVP 97 98|a=rtpmap:97 rtx/90000|a=rtpmap:98 rtx/90000|a=fmtp:98 apt=96|", ""},
      {"rtx for itself", "m=video 1 RTP/AVP 97|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=97|",
       "m=video 1 RTP/AVP 97|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=97|", ""},
      {"rtx of red", "m=video 1 RTP/AVP 96 97|a=rtpmap:96 red/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|",
       "m=video 1 RTP/AVP 98 99|a=rtpmap:98 RED/90000|a=rtpmap:99 rtx/90000|a=fmtp:99 apt=98|",
       "96=98 97=99"},
      {"red in order",
       "m=audio 1 RTP/AVP 0 8 96 97|a=rtpmap:96 red/8000|a=fmtp:96 0/8|a=rtpmap:97 red/8000|a=fmtp:97 8/0|",
       "m=audio 1 RTP/AVP 0 8 100 101|a=rtpmap:100 red/8000|a=fmtp:100 0/8/0|a=rtpmap:101 red/8000|a=fmtp:101 0/8|",
       "0=0 8=8 96=101"},
      {"red that does not tell", "m=audio 1 RTP/AVP 0 96|a=rtpmap:96 red/8000|a=fmtp:96 0/0|",
       "m=audio 1 RTP/AVP 100|a=rtpmap:100 red/8000|", "96=100"},
      {"red of itself", "m=audio 1 RTP/AVP 96|a=rtpmap:96 red/8000|a=fmtp:96 96|",
       "m=audio 1 RTP/AVP 96|a=rtpmap:96 red/8000|a=fmtp:96 96|", ""},
      {"unknown ones", "m=audio 1 RTP/AVP 96 77|", "m=audio 1 RTP/AVP 96 77|", ""}};
  for (const Equal& c : cases) {
    const sdp::Document a = coreTest::documentOf(c.a);
    const sdp::Document b = coreTest::documentOf(c.b);
    const CodecList x(a.section(1));
    const CodecList y(b.section(1));
    EXPECT_EQ(equals(x, y, false), c.expected) << c.what;
    EXPECT_EQ(equals(x, y, true), c.expected) << c.what;
  }
}

}  // namespace
