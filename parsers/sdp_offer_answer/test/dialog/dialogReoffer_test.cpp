#include "dialogTestSupport.h"

// Offers after the first: places, mids, payload numbers and versions.

namespace {

using namespace dialogTest;

constexpr std::string_view kVideo = "m=video 4002 RTP/AVP 96|a=rtpmap:96 VP8/90000|";
constexpr std::string_view kPeersVideo = "m=video 5002 RTP/AVP 96|a=rtpmap:96 VP8/90000|";
constexpr std::string_view kData = "m=application 4004 UDP/DTLS/SCTP webrtc-datachannel|";

std::string join(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text.append(part);
  return text;
}

/// A dialog in which both sides have these sections, and the next description has others.
struct Reoffer {
  const char* what;
  std::string local;
  std::string remote;
  std::string wanted;
  std::string offered;
};

const Reoffer kReoffers[] = {
    {"video is added at the end", std::string(kAudio), std::string(kPeersAudio), join({kAudio, kVideo}),
     join({kAudio, kVideo})},
    {"what goes gets port 0", join({kAudio, kVideo}), join({kPeersAudio, kPeersVideo}), std::string(kAudio),
     join({kAudio, "m=video 0 RTP/AVP 96|"})},
    {"also the first", join({kAudio, kVideo}), join({kPeersAudio, kPeersVideo}), std::string(kVideo),
     join({"m=audio 0 RTP/AVP 0|", kVideo})},
    {"and all", std::string(kAudio), std::string(kPeersAudio), "", "m=audio 0 RTP/AVP 0|"},
    {"the order is that of the dialog", join({kAudio, kVideo}), join({kPeersAudio, kPeersVideo}),
     join({kVideo, kAudio}), join({kAudio, kVideo})},
    {"a place that one disabled oneself is taken", join({"m=video 0 RTP/AVP 96|", kAudio}),
     join({"m=video 0 RTP/AVP 96|", kPeersAudio}), join({kAudio, kData}), join({kData, kAudio})},
    {"and one that the peer refused", join({kVideo, kAudio}), join({"m=video 0 RTP/AVP 96|", kPeersAudio}),
     join({kAudio, kData}), join({kData, kAudio})},
    {"what was refused may be offered again", join({kAudio, kVideo}),
     join({kPeersAudio, "m=video 0 RTP/AVP 96|"}), join({kAudio, kVideo}), join({kAudio, kVideo})},
    {"what was refused is not offered again where it is not wanted", join({kAudio, kVideo}),
     join({kPeersAudio, "m=video 0 RTP/AVP 96|"}), std::string(kAudio),
     join({kAudio, "m=video 0 RTP/AVP 96|"})},
    {"a disabled place of the same media is preferred",
     join({"m=image 0 udptl t38|", "m=video 0 RTP/AVP 96|", kAudio}),
     join({"m=image 0 udptl t38|", "m=video 0 RTP/AVP 96|", kPeersAudio}), join({kAudio, kVideo}),
     join({"m=image 0 udptl t38|", kVideo, kAudio})},
    {"a disabled place that is left stays as it is", join({kAudio, "m=video 0 RTP/AVP 96|a=mid:v|a=x|"}),
     join({kPeersAudio, "m=video 0 RTP/AVP 96|a=mid:v|"}), std::string(kAudio),
     join({kAudio, "m=video 0 RTP/AVP 96|a=mid:v|a=x|"})},
    {"a section that is disabled in the description goes", join({kAudio, kVideo}),
     join({kPeersAudio, kPeersVideo}), join({kAudio, "m=video 0 RTP/AVP 96|"}),
     join({kAudio, "m=video 0 RTP/AVP 96|"})},
    {"one that is disabled there and was never offered is none", std::string(kAudio),
     std::string(kPeersAudio), join({"m=video 0 RTP/AVP 96|", kAudio}), std::string(kAudio)},
    {"a description of the dialog's shape keeps its places", join({kAudio, "m=audio 4010 RTP/AVP 8|"}),
     join({kPeersAudio, "m=audio 5010 RTP/AVP 8|"}),
     join({"m=audio 0 RTP/AVP 0|", "m=audio 4010 RTP/AVP 8|"}),
     join({"m=audio 0 RTP/AVP 0|", "m=audio 4010 RTP/AVP 8|"})},
    {"the profile may change in its place", std::string(kAudio), std::string(kPeersAudio),
     "m=audio 4000 RTP/SAVP 0|a=crypto:1 A inline:k|", "m=audio 4000 RTP/SAVP 0|a=crypto:1 A inline:k|"},
    {"what is no RTP does not take the place of RTP", std::string(kAudio), std::string(kPeersAudio),
     "m=audio 4000 TCP/MSRP *|", "m=audio 0 RTP/AVP 0|m=audio 4000 TCP/MSRP *|"},
};

TEST(DialogReoffer, SectionsKeepTheirPlaces) {
  for (const Reoffer& reoffer : kReoffers) {
    SCOPED_TRACE(reoffer.what);
    Dialog dialog = offered(ours("1", reoffer.local), theirs("1", reoffer.remote));
    const bool isSame = reoffer.local == reoffer.offered;
    expectReoffer(dialog, dialog.offer(ours("1", reoffer.wanted)), isSame ? "1" : "2", reoffer.offered);
    expectRoundTrip(dialog);
  }
}

struct Mids {
  const char* what;
  const char* local;
  const char* remote;
  const char* wanted;
  const char* offered;
};

constexpr Mids kMids[] = {
    {"sections are found by mid", "m=video 4000 RTP/AVP 96|a=mid:1|m=video 4002 RTP/AVP 96|a=mid:2|",
     "m=video 5000 RTP/AVP 96|a=mid:1|m=video 5002 RTP/AVP 96|a=mid:2|", "m=video 4002 RTP/AVP 96|a=mid:2|",
     "m=video 0 RTP/AVP 96|a=mid:1|m=video 4002 RTP/AVP 96|a=mid:2|"},
    {"a place keeps its mid, also in groups",
     "a=group:BUNDLE x y|m=audio 4000 RTP/AVP 0|a=mid:x|m=video 4000 RTP/AVP 31|a=mid:y|",
     "a=group:BUNDLE x y|m=audio 5000 RTP/AVP 0|a=mid:x|m=video 5000 RTP/AVP 31|a=mid:y|",
     "a=group:BUNDLE 0 1|a=group:LS 0 1|m=audio 4000 RTP/AVP 0|a=mid:0|m=video 4000 RTP/AVP 31|a=mid:1|",
     "a=group:BUNDLE x y|a=group:LS x y|m=audio 4000 RTP/AVP 0|a=mid:x|m=video 4000 RTP/AVP 31|a=mid:y|"},
    {"mids of another media do not count", "m=video 4002 RTP/AVP 31|a=mid:0|m=audio 4000 RTP/AVP 0|a=mid:1|",
     "m=video 5002 RTP/AVP 31|a=mid:0|m=audio 5000 RTP/AVP 0|a=mid:1|",
     "a=group:BUNDLE 0 1|m=audio 4000 RTP/AVP 0|a=mid:0|m=video 4002 RTP/AVP 31|a=mid:1|",
     "a=group:BUNDLE 1 0|m=video 4002 RTP/AVP 31|a=mid:0|m=audio 4000 RTP/AVP 0|a=mid:1|"},
    {"what goes leaves its groups",
     "a=group:BUNDLE a v|m=audio 4000 RTP/AVP 0|a=mid:a|m=video 4000 RTP/AVP 31|a=mid:v|",
     "a=group:BUNDLE a v|m=audio 5000 RTP/AVP 0|a=mid:a|m=video 5000 RTP/AVP 31|a=mid:v|",
     "a=group:BUNDLE a v|m=audio 4000 RTP/AVP 0|a=mid:a|m=video 0 RTP/AVP 31|a=mid:v|",
     "a=group:BUNDLE a|m=audio 4000 RTP/AVP 0|a=mid:a|m=video 0 RTP/AVP 31|a=mid:v|"},
    {"a section without mid has that of its place", "m=audio 4000 RTP/AVP 0|a=mid:0|",
     "m=audio 5000 RTP/AVP 0|a=mid:0|", "m=audio 4000 RTP/AVP 8|a=ptime:20|",
     "m=audio 4000 RTP/AVP 8|a=ptime:20|a=mid:0|"},
    {"an empty one gives way to it", "m=audio 4000 RTP/AVP 0|a=mid:0|", "m=audio 5000 RTP/AVP 0|a=mid:0|",
     "m=audio 4000 RTP/AVP 0|a=mid:|a=ptime:20|", "m=audio 4000 RTP/AVP 0|a=mid:0|a=ptime:20|"},
    {"a new section takes no mid that one without had", "m=audio 4000 RTP/AVP 0|a=mid:0|",
     "m=audio 5000 RTP/AVP 0|a=mid:0|", "m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|a=mid:0|",
     "m=audio 4000 RTP/AVP 0|a=mid:0|m=video 4002 RTP/AVP 31|a=mid:1|"},
    {"a new section without mid in a disabled place has none",
     "m=audio 4000 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|",
     "m=audio 5000 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|",
     "m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|",
     "m=audio 4000 RTP/AVP 0|a=mid:0|m=video 4002 RTP/AVP 31|"},
    {"a new section takes no mid that was used, the one of its disabled place included",
     "m=audio 4000 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|",
     "m=audio 5000 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|",
     "m=audio 4000 RTP/AVP 0|a=mid:0|m=application 4004 UDP/DTLS/SCTP d|a=mid:1|",
     "m=audio 4000 RTP/AVP 0|a=mid:0|m=application 4004 UDP/DTLS/SCTP d|a=mid:2|"},
};

TEST(DialogReoffer, MidsStayWithTheirPlaces) {
  for (const Mids& mids : kMids) {
    SCOPED_TRACE(mids.what);
    Dialog dialog = offered(ours("1", mids.local), theirs("1", mids.remote));
    const bool isSame = std::string_view(mids.local) == mids.offered;
    expectReoffer(dialog, dialog.offer(ours("1", mids.wanted)), isSame ? "1" : "2", mids.offered);
  }
}

/// Finished answers have what the peer offered: a CR in it ends a line for some readers.
TEST(DialogReoffer, NothingOfThePeersIsTakenOverThatARecipientMayReadAsALine) {
  const std::string sections =
      "m=audio 5000 RTP/AVP 0|a=mid:x\ra=inactive|m=vi\rdeo 0 RT\rP/AVP 3\r1|a=mid:y\ra=b|"
      "m=text 0 RTP/AVP 98|a=mid:t|a=c\rd|m=application 5002 UDP/\rDTLS webrtc|a=mid:z\r|";
  Dialog dialog = answered(theirs("1", sections), ours("1", sections));
  expectReoffer(dialog, dialog.offer(ours("1", "m=audio 4000 RTP/AVP 0|a=mid:a|")), "2",
                "m=audio 4000 RTP/AVP 0|a=mid:a|m=audio 0 RTP/AVP 0|m=text 0 RTP/AVP 98|a=mid:t|"
                "m=application 0 RTP/AVP webrtc|");
}

struct Numbers {
  const char* what;
  const char* local;
  const char* remote;
  const char* wanted;
  const char* offered;
};

constexpr Numbers kNumbers[] = {
    {"a codec keeps the number that it was answered with",
     "m=audio 4000 RTP/AVP 111|a=rtpmap:111 opus/48000/2|a=fmtp:111 useinbandfec=1|",
     "m=audio 5000 RTP/AVP 111|a=rtpmap:111 opus/48000/2|",
     "m=audio 4000 RTP/AVP 96 0|a=rtpmap:96 OPUS/48000/2|a=fmtp:96 useinbandfec=1|a=rtcp-fb:96 nack|",
     "m=audio 4000 RTP/AVP 111 0|a=rtpmap:111 OPUS/48000/2|a=fmtp:111 useinbandfec=1|a=rtcp-fb:111 nack|"},
    {"what is new takes no number that has another meaning",
     "m=audio 4000 RTP/AVP 96|a=rtpmap:96 opus/48000/2|", "m=audio 5000 RTP/AVP 96|a=rtpmap:96 opus/48000/2|",
     "m=audio 4000 RTP/AVP 96|a=rtpmap:96 iLBC/8000|", "m=audio 4000 RTP/AVP 97|a=rtpmap:97 iLBC/8000|"},
    {"nor one that the peer gave another meaning", "m=audio 4000 RTP/AVP 0|",
     "m=audio 5000 RTP/AVP 0 96 97|a=rtpmap:96 opus/48000/2|a=rtpmap:97 speex/8000|",
     "m=audio 4000 RTP/AVP 0 96|a=rtpmap:96 iLBC/8000|", "m=audio 4000 RTP/AVP 0 98|a=rtpmap:98 iLBC/8000|"},
    {"the peer's number for a codec is taken", "m=audio 4000 RTP/AVP 0|",
     "m=audio 5000 RTP/AVP 0 100|a=rtpmap:100 opus/48000/2|",
     "m=audio 4000 RTP/AVP 0 96|a=rtpmap:96 opus/48000/2|",
     "m=audio 4000 RTP/AVP 0 100|a=rtpmap:100 opus/48000/2|"},
    {"one's own number stays where the peer has another", "m=audio 4000 RTP/AVP 96|a=rtpmap:96 opus/48000/2|",
     "m=audio 5000 RTP/AVP 100|a=rtpmap:100 opus/48000/2|",
     "m=audio 4000 RTP/AVP 96|a=rtpmap:96 opus/48000/2|a=ptime:20|",
     "m=audio 4000 RTP/AVP 96|a=rtpmap:96 opus/48000/2|a=ptime:20|"},
    {"parameters that name formats follow",
     "m=video 4000 RTP/AVP 100 101|a=rtpmap:100 VP8/90000|a=rtpmap:101 rtx/90000|a=fmtp:101 apt=100|",
     "m=video 5000 RTP/AVP 100 101|a=rtpmap:100 VP8/90000|a=rtpmap:101 rtx/90000|a=fmtp:101 apt=100|",
     "m=video 4000 RTP/AVP 96 97 98|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96;rtx-time=9|"
     "a=rtpmap:98 red/90000|a=fmtp:98 96/97|a=rid:1 send pt=96,97;max-width=9|a=rtcp-fb:* nack|",
     "m=video 4000 RTP/AVP 100 101 98|a=rtpmap:100 VP8/90000|a=rtpmap:101 rtx/90000|"
     "a=fmtp:101 apt=100;rtx-time=9|a=rtpmap:98 red/90000|a=fmtp:98 100/101|"
     "a=rid:1 send pt=100,101;max-width=9|a=rtcp-fb:* nack|"},
    {"profiles of H264 are codecs of their own",
     "m=video 4000 RTP/AVP 97 96|a=rtpmap:96 H264/90000|a=fmtp:96 profile-level-id=42e01f|"
     "a=rtpmap:97 H264/90000|a=fmtp:97 profile-level-id=640c1f|",
     "m=video 5000 RTP/AVP 97|a=rtpmap:97 H264/90000|a=fmtp:97 profile-level-id=640c1f|",
     "m=video 4000 RTP/AVP 96 97|a=rtpmap:96 H264/90000|a=fmtp:96 profile-level-id=640c1f|"
     "a=rtpmap:97 H264/90000|a=fmtp:97 profile-level-id=42e01f|",
     "m=video 4000 RTP/AVP 97 96|a=rtpmap:97 H264/90000|a=fmtp:97 profile-level-id=640c1f|"
     "a=rtpmap:96 H264/90000|a=fmtp:96 profile-level-id=42e01f|"},
    {"a number of RFC 3551's table that becomes another is told by an rtpmap",
     "m=audio 4000 RTP/AVP 97|a=rtpmap:97 PCMU/8000|", "m=audio 5000 RTP/AVP 97|a=rtpmap:97 PCMU/8000|",
     "m=audio 4000 RTP/AVP 0 8|a=ptime:20|", "m=audio 4000 RTP/AVP 97 8|a=ptime:20|a=rtpmap:97 PCMU/8000|"},
    {"another media in a disabled place is another stream", "m=audio 4000 RTP/AVP 0|m=video 0 RTP/AVP 96|",
     "m=audio 5000 RTP/AVP 0|m=video 0 RTP/AVP 96|",
     "m=audio 4000 RTP/AVP 0|m=text 4002 RTP/AVP 96|a=rtpmap:96 t140/1000|",
     "m=audio 4000 RTP/AVP 0|m=text 4002 RTP/AVP 96|a=rtpmap:96 t140/1000|"},
    {"in a BUNDLE group a number has one meaning",
     "a=group:BUNDLE a|m=audio 4000 RTP/AVP 100|a=rtpmap:100 opus/48000/2|a=mid:a|",
     "a=group:BUNDLE a|m=audio 5000 RTP/AVP 100|a=rtpmap:100 opus/48000/2|a=mid:a|",
     "a=group:BUNDLE a v|m=audio 4000 RTP/AVP 96|a=rtpmap:96 opus/48000/2|a=mid:a|"
     "m=video 4000 RTP/AVP 100|a=rtpmap:100 VP8/90000|a=mid:v|",
     "a=group:BUNDLE a v|m=audio 4000 RTP/AVP 100|a=rtpmap:100 opus/48000/2|a=mid:a|"
     "m=video 4000 RTP/AVP 96|a=rtpmap:96 VP8/90000|a=mid:v|"},
    {"rtx that names nothing, too", "m=video 4000 RTP/AVP 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|",
     "m=video 5000 RTP/AVP 96|a=rtpmap:96 VP8/90000|",
     "m=video 4000 RTP/AVP 96 97 31|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|",
     "m=video 4000 RTP/AVP 96 97 31|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|"},
    {"numbers are numbers, however they are written", "m=audio 4000 RTP/AVP 096|a=rtpmap:096 PCMU/8000|",
     "m=audio 5000 RTP/AVP 096|a=rtpmap:096 PCMU/8000|", "m=audio 4000 RTP/AVP 0 96|a=rtpmap:96 AMR/8000|",
     "m=audio 4000 RTP/AVP 96 97|a=rtpmap:97 AMR/8000|a=rtpmap:96 PCMU/8000|"},
    {"the peer's zeros are not taken over", "m=audio 4000 RTP/AVP 0|",
     "m=audio 5000 RTP/AVP 0 0100|a=rtpmap:0100 opus/48000/2|",
     "m=audio 4000 RTP/AVP 0 96|a=rtpmap:96 opus/48000/2|",
     "m=audio 4000 RTP/AVP 0 100|a=rtpmap:100 opus/48000/2|"},
    {"nor hide that a number has another meaning", "m=audio 4000 RTP/AVP 0|",
     "m=audio 5000 RTP/AVP 0 0096|a=rtpmap:0096 opus/48000/2|",
     "m=audio 4000 RTP/AVP 0 96|a=rtpmap:96 iLBC/8000|", "m=audio 4000 RTP/AVP 0 97|a=rtpmap:97 iLBC/8000|"},
    {"the description's own zeros stay", "m=audio 4000 RTP/AVP 096|a=rtpmap:096 opus/48000/2|",
     "m=audio 5000 RTP/AVP 096|a=rtpmap:096 opus/48000/2|",
     "m=audio 4000 RTP/AVP 096 0|a=rtpmap:096 opus/48000/2|",
     "m=audio 4000 RTP/AVP 096 0|a=rtpmap:096 opus/48000/2|"},
    {"what is no number is not taken over", "m=audio 4000 RTP/AVP 0|",
     "m=audio 5000 RTP/AVP 0 x|a=rtpmap:x opus/48000/2|",
     "m=audio 4000 RTP/AVP 0 96|a=rtpmap:96 opus/48000/2|",
     "m=audio 4000 RTP/AVP 0 96|a=rtpmap:96 opus/48000/2|"},
    {"what nobody knows stays as it is", "m=audio 4000 RTP/AVP 96|", "m=audio 5000 RTP/AVP 96|",
     "m=audio 4000 RTP/AVP 96 0|", "m=audio 4000 RTP/AVP 96 0|"},
};

TEST(DialogReoffer, PayloadNumbersStayWithTheirCodecs) {
  for (const Numbers& numbers : kNumbers) {
    SCOPED_TRACE(numbers.what);
    Dialog dialog = answered(theirs("1", numbers.remote), ours("1", numbers.local));
    expectReoffer(dialog, dialog.offer(ours("1", numbers.wanted)), "2", numbers.offered);
  }
}

TEST(DialogReoffer, NumbersAreRememberedBeyondTheCurrentBody) {
  Dialog dialog = offered(ours("1", "m=audio 4000 RTP/AVP 96|a=rtpmap:96 opus/48000/2|"),
                          theirs("1", "m=audio 5000 RTP/AVP 96|a=rtpmap:96 opus/48000/2|"));
  ASSERT_TRUE(dialog.offer(ours("1", kAudio)));
  ASSERT_TRUE(dialog.receiveAnswer(theirs("2", kPeersAudio)));
  // opus is no longer there, and 96 is still its number; a refused offer used 97.
  expectReoffer(dialog, dialog.offer(ours("1", "m=audio 4000 RTP/AVP 0 96|a=rtpmap:96 iLBC/8000|")), "3",
                "m=audio 4000 RTP/AVP 0 97|a=rtpmap:97 iLBC/8000|");
  ASSERT_TRUE(dialog.rollback());
  expectReoffer(dialog,
                dialog.offer(ours(
                    "1", "m=audio 4000 RTP/AVP 0 96 97|a=rtpmap:96 speex/8000|a=rtpmap:97 opus/48000/2|")),
                "4", "m=audio 4000 RTP/AVP 0 98 96|a=rtpmap:98 speex/8000|a=rtpmap:96 opus/48000/2|");
}

TEST(DialogReoffer, ANumberIsRememberedOnceHoweverManyZerosAPeerWritesInFront) {
  Dialog dialog = offered(ours("1", "m=audio 4000 RTP/AVP 96|a=rtpmap:96 opus/48000/2|"),
                          theirs("1", "m=audio 5000 RTP/AVP 96|a=rtpmap:96 opus/48000/2|"));
  std::string payload = "96";
  std::size_t size = 0;
  for (int i = 0; i < 40; ++i) {
    payload.insert(0, 1, '0');
    const std::string formats = " RTP/AVP " + payload + "|a=rtpmap:" + payload + " opus/48000/2|";
    ASSERT_TRUE(dialog.receiveOffer(theirs("2", "m=audio 5000" + formats)));
    ASSERT_TRUE(dialog.answerAsIs(ours("2", "m=audio 4000" + formats)));
    // Both bodies and the last sent have the number twice each, a zero longer each time; what is remembered does not grow.
    const std::size_t now = dialog.serialise().bytes.size();
    EXPECT_EQ(now, size == 0 ? now : size + 6);
    size = now;
  }
  // 096 was the number 96.
  expectReoffer(dialog, dialog.offer(ours("1", "m=audio 4000 RTP/AVP 96|a=rtpmap:96 iLBC/8000|")), "3",
                "m=audio 4000 RTP/AVP 97|a=rtpmap:97 iLBC/8000|");
}

TEST(DialogReoffer, WhereNumbersRunOutTheyAreUsedAgain) {
  std::string before = "m=audio 4000 RTP/AVP";
  std::string maps;
  const auto add = [&](int number) {
    before.append(" ").append(std::to_string(number));
    maps.append("a=rtpmap:")
        .append(std::to_string(number))
        .append(" c")
        .append(std::to_string(number))
        .append("/8000|");
  };
  for (int number = 35; number <= 63; ++number) add(number);
  for (int number = 96; number <= 127; ++number) add(number);
  const std::string all = before + "|" + maps;
  Dialog dialog = offered(ours("1", all), theirs("1", kPeersAudio));
  expectReoffer(dialog, dialog.offer(ours("1", "m=audio 4000 RTP/AVP 120|a=rtpmap:120 opus/48000/2|")), "2",
                "m=audio 4000 RTP/AVP 96|a=rtpmap:96 opus/48000/2|");
}

/// An audio section whose formats have all numbers that may be chosen is written with others, and with one more.
TEST(DialogReoffer, WhereNumbersRunOutInABundleTheOtherSectionsMayHaveThem) {
  std::string before = "m=audio 4000 RTP/AVP";
  std::string wanted = before;
  std::string mapsBefore;
  std::string maps;
  int written = 1000;
  const auto add = [&](int number) {
    const std::string encoding = " c" + std::to_string(number) + "/8000|";
    before.append(" ").append(std::to_string(number));
    mapsBefore.append("a=rtpmap:").append(std::to_string(number)).append(encoding);
    wanted.append(" ").append(std::to_string(written));
    maps.append("a=rtpmap:").append(std::to_string(written)).append(encoding);
    ++written;
  };
  for (int number = 35; number <= 63; ++number) add(number);
  for (int number = 96; number <= 127; ++number) add(number);
  const std::string all = "a=group:BUNDLE a|" + before + "|" + mapsBefore + "a=mid:a|";
  const std::string more =
      "a=group:BUNDLE a v|" + wanted + " 96|" + maps +
      "a=rtpmap:96 new/8000|a=mid:a|m=video 4000 RTP/AVP 97|a=rtpmap:97 VP8/90000|a=mid:v|";
  Dialog dialog = offered(ours("1", all), theirs("1", all));
  expectReoffer(dialog, dialog.offer(ours("1", more)), "2", more);
}

TEST(DialogReoffer, TheVersionIsRaisedByOneExactlyWhenTheTextDiffers) {
  struct Version {
    const char* before;
    const char* after;
  };
  const std::string nines(64, '9');
  const std::string raised = "1" + std::string(64, '0');
  const Version versions[] = {{"1", "2"},
                              {"0", "1"},
                              {"9", "10"},
                              {"1099", "1100"},
                              {"007", "8"},
                              {"000", "1"},
                              {"18446744073709551615", "18446744073709551616"},
                              {nines.c_str(), raised.c_str()}};
  for (const Version& version : versions) {
    SCOPED_TRACE(version.before);
    Dialog dialog = offered(ours(version.before, kAudio), theirs("1", kPeersAudio));
    const sdp::LocalBody same = dialog.offer(ours("77", kAudio));
    EXPECT_EQ(textOf(same), ours(version.before, kAudio));
    EXPECT_TRUE(same.isRefresh);
    ASSERT_TRUE(dialog.rollback());
    const sdp::LocalBody other = dialog.offer(ours("77", "m=audio 4000 RTP/AVP 8|"));
    EXPECT_EQ(textOf(other), ours(version.after, "m=audio 4000 RTP/AVP 8|"));
    EXPECT_FALSE(other.isRefresh);
  }
}

TEST(DialogReoffer, TheOLineIsThatOfTheDialog) {
  Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  const std::string other =
      lines("v=0|o=x 123 456 IN IP6 2001:db8::1|s=call|c=IN IP4 192.0.2.2|t=0 0|m=audio 4000 RTP/AVP 0|");
  EXPECT_EQ(textOf(dialog.offer(other)),
            lines("v=0|o=a 7 2 IN IP4 192.0.2.1|s=call|c=IN IP4 192.0.2.2|t=0 0|m=audio 4000 RTP/AVP 0|"));
}

TEST(DialogReoffer, AVersionThatWasRefusedIsNotUsedForAnotherText) {
  Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  EXPECT_EQ(textOf(dialog.offer(ours("1", "m=audio 4000 RTP/AVP 8|"))), ours("2", "m=audio 4000 RTP/AVP 8|"));
  ASSERT_TRUE(dialog.rollback());
  EXPECT_EQ(textOf(dialog.offer(ours("1", "m=audio 4000 RTP/AVP 8|"))), ours("2", "m=audio 4000 RTP/AVP 8|"));
  ASSERT_TRUE(dialog.rollback());
  EXPECT_EQ(textOf(dialog.offer(ours("1", "m=audio 4000 RTP/AVP 9|"))), ours("3", "m=audio 4000 RTP/AVP 9|"));
}

TEST(DialogReoffer, TheCurrentBodyComesAgainAsItWasAfterAnOfferThatWasRefused) {
  Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  ASSERT_TRUE(dialog.offer(ours("1", "m=audio 4000 RTP/AVP 8|")));
  ASSERT_TRUE(dialog.rollback());
  const sdp::LocalBody same = dialog.offer(ours("1", kAudio));
  EXPECT_TRUE(same.isRefresh);
  EXPECT_EQ(textOf(same), ours("1", kAudio));
  expectRoundTrip(dialog);
  ASSERT_TRUE(dialog.receiveAnswer(theirs("1", kPeersAudio)));
  // Answers too.
  ASSERT_TRUE(dialog.receiveOffer(theirs("2", kPeersAudio)));
  const sdp::LocalBody answer = dialog.answer(ours("1", kAudio));
  EXPECT_TRUE(answer.isRefresh);
  EXPECT_EQ(textOf(answer), ours("1", kAudio));
  // The version of the refused offer stays used.
  EXPECT_EQ(textOf(dialog.offer(ours("1", "m=audio 4000 RTP/AVP 9|"))), ours("3", "m=audio 4000 RTP/AVP 9|"));
}

TEST(DialogReoffer, AFinishedBodyOfAnEarlierVersionThatWasRefusedDoesNotCount) {
  Dialog dialog = offered(ours("5", kAudio), theirs("1", kPeersAudio));
  ASSERT_TRUE(dialog.offerAsIs(ours("2", "m=audio 4000 RTP/AVP 8|")));
  ASSERT_TRUE(dialog.rollback());
  EXPECT_EQ(textOf(dialog.offer(ours("1", kAudio))), ours("5", kAudio));
  ASSERT_TRUE(dialog.rollback());
  EXPECT_EQ(textOf(dialog.offer(ours("1", "m=audio 4000 RTP/AVP 9|"))), ours("6", "m=audio 4000 RTP/AVP 9|"));
}

TEST(DialogReoffer, TheFirstOfferHasTheLinesOfTheDescription) {
  Dialog dialog;
  const std::string description =
      "v=0\no=a 7 1 IN IP4 192.0.2.1\n\ns=-\nt=0 0\nm=audio  4000 RTP/AVP 96 96\na=mid:a\nm=video 0 RTP/AVP 96\na=mid:a";
  EXPECT_EQ(
      textOf(dialog.offer(description)),
      lines(
          "v=0|o=a 7 1 IN IP4 192.0.2.1|s=-|t=0 0|m=audio  4000 RTP/AVP 96 96|a=mid:a|m=video 0 RTP/AVP 96|a=mid:a|"));
}

struct Refused {
  const char* what;
  std::string description;
  DialogFailure failure;
  std::uint32_t section;
};

TEST(DialogReoffer, WhatIsNoDescriptionIsRefused) {
  const Refused cases[] = {
      {"nothing", "", DialogFailure::brokenBody, 0},
      {"no line of a description", "hello\r\n", DialogFailure::brokenBody, 0},
      {"no o-line", lines("v=0|s=-|t=0 0|"), DialogFailure::noOrigin, 0},
      {"an o-line of a section", lines("v=0|s=-|t=0 0|m=audio 1 RTP/AVP 0|o=a 1 1 IN IP4 h|"),
       DialogFailure::noOrigin, 0},
      {"a version that is no number", ours("1x", kAudio), DialogFailure::noOrigin, 0},
      {"an o-line that ends early", lines("v=0|o=a 1|s=-|"), DialogFailure::noOrigin, 0},
      {"a section without formats", ours("1", "m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP|"),
       DialogFailure::unreadableSection, 2},
  };
  for (const Refused& refused : cases) {
    SCOPED_TRACE(refused.what);
    Dialog dialog;
    for (const sdp::LocalBody& body :
         {dialog.offer(refused.description), dialog.offerAsIs(refused.description)}) {
      EXPECT_EQ(sdp::textOf(body.failure), sdp::textOf(refused.failure));
      EXPECT_EQ(body.section, refused.section);
      EXPECT_EQ(body.text, "");
    }
    EXPECT_TRUE(dialog == Dialog());
  }
}

TEST(DialogReoffer, FinishedBodiesGoOutAsTheyAre) {
  Dialog dialog;
  const std::string body =
      "v=0\no=- 1 5 IN IP4 192.0.2.9\ns=-\nt=0 0\nm=audio 4000 RTP/AVP 0\nm=video 4002 RTP/AVP 31\n";
  EXPECT_EQ(textOf(dialog.offerAsIs(body)), body);
  ASSERT_TRUE(dialog.receiveAnswer(theirs("1", "m=audio 5000 RTP/AVP 0|m=video 0 RTP/AVP 31|")));
  EXPECT_EQ(dialog.offerAsIs(ours("1", kAudio)).failure, DialogFailure::sectionCount);
  const sdp::LocalBody again = dialog.offerAsIs(body);
  EXPECT_TRUE(again.isRefresh);
  EXPECT_EQ(textOf(again), body);
}

}  // namespace
