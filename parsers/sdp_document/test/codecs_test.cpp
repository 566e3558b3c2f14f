#include "documentTestSupport.h"

// keep-codecs, drop-codecs and order-codecs: which formats stay, what they take along, and what order they have.

namespace {

using documentTest::expectDone;
using documentTest::expectRefused;
using documentTest::expectUnchanged;
using sdp::Reason;

/// A browser's audio: opus, red, G722, PCMU, PCMA, CN and telephone-event of two clock rates.
constexpr const char* kBrowserAudio =
    "m=audio 9 UDP/TLS/RTP/SAVPF 111 63 9 0 8 13 110 126|a=rtpmap:111 opus/48000/2|a=rtcp-fb:111 "
    "transport-cc|"
    "a=fmtp:111 minptime=10;useinbandfec=1|a=rtpmap:63 red/48000/2|a=fmtp:63 111/111|a=rtpmap:9 G722/8000|"
    "a=rtpmap:0 PCMU/8000|a=rtpmap:8 PCMA/8000|a=rtpmap:13 CN/8000|a=rtpmap:110 telephone-event/48000|"
    "a=rtpmap:126 telephone-event/8000|a=ssrc:1 cname:x|";

TEST(KeepCodecs, LeavesOfABrowsersAudioWhatIsNamed) {
  expectDone({
      {"one of 8000", "keep-codecs PCMA,telephone-event", kBrowserAudio,
       "m=audio 9 UDP/TLS/RTP/SAVPF 8 126|a=rtpmap:8 PCMA/8000|a=rtpmap:126 telephone-event/8000|a=ssrc:1 "
       "cname:x|"},
      {"one of 48000", "keep-codecs opus,telephone-event", kBrowserAudio,
       "m=audio 9 UDP/TLS/RTP/SAVPF 111 110 126|a=rtpmap:111 opus/48000/2|a=rtcp-fb:111 transport-cc|"
       "a=fmtp:111 minptime=10;useinbandfec=1|a=rtpmap:110 telephone-event/48000|a=rtpmap:126 "
       "telephone-event/8000|"
       "a=ssrc:1 cname:x|"},
      {"red with what it carries, and no CN of another clock rate", "keep-codecs opus,red,CN", kBrowserAudio,
       "m=audio 9 UDP/TLS/RTP/SAVPF 111 63|a=rtpmap:111 opus/48000/2|a=rtcp-fb:111 transport-cc|"
       "a=fmtp:111 minptime=10;useinbandfec=1|a=rtpmap:63 red/48000/2|a=fmtp:63 111/111|a=ssrc:1 cname:x|"},
      {"no red without what it carries", "keep-codecs red,G722,CN", kBrowserAudio,
       "m=audio 9 UDP/TLS/RTP/SAVPF 9 13|a=rtpmap:9 G722/8000|a=rtpmap:13 CN/8000|a=ssrc:1 cname:x|"},
      {"payload types", "keep-codecs 0,13,110", kBrowserAudio,
       "m=audio 9 UDP/TLS/RTP/SAVPF 0 13 110|a=rtpmap:0 PCMU/8000|a=rtpmap:13 CN/8000|"
       "a=rtpmap:110 telephone-event/48000|a=ssrc:1 cname:x|"},
  });
}

TEST(KeepCodecs, RefusesABodyThatHasNoneOfThem) {
  expectRefused({
      {"telephone-event alone is no common codec", "keep-codecs PCMU,telephone-event",
       "m=audio 5004 RTP/AVP 97 101|a=rtpmap:97 AMR/8000|a=rtpmap:101 telephone-event/8000|",
       Reason::noCommonCodec, 1, 5,
       "section 1 (audio): no common codec: it has AMR; kept would be PCMU,telephone-event"},
      {"several", "keep-codecs PCMA",
       "m=audio 9 RTP/AVP 96 9 0 101|a=rtpmap:96 opus/48000/2|a=rtpmap:101 telephone-event/8000|",
       Reason::noCommonCodec, 1, 5,
       "section 1 (audio): no common codec: it has opus, G722, PCMU; kept would be PCMA"},
      {"one that is unknown is named by its payload type", "keep-codecs PCMA", "m=audio 9 RTP/AVP 96|",
       Reason::noCommonCodec, 1, 5, "section 1 (audio): no common codec: it has 96; kept would be PCMA"},
      {"companions alone", "keep-codecs PCMA", "m=audio 9 RTP/AVP 101|a=rtpmap:101 telephone-event/8000|",
       Reason::noCommonCodec, 1, 5,
       "section 1 (audio): no common codec: it has no codec; kept would be PCMA"},
      {"the first that is put away is told", "keep-codecs PCMA",
       "m=audio 0 RTP/AVP 8|m=video 9 RTP/AVP 31|m=audio 9 RTP/AVP 0|", Reason::noCommonCodec, 2, 6,
       "section 2 (video): no common codec: it has H261; kept would be PCMA"},
      {"a section of bundled only has no port of its own", "keep-codecs PCMA video",
       "m=video 9 RTP/AVP 31|m=audio 0 RTP/AVP 8|a=bundle-only|", Reason::noCommonCodec, 1, 5,
       "section 1 (video): no common codec: it has H261; kept would be PCMA"},
      {"an unreadable section has no port", "keep-codecs PCMA", "m=audio 9 RTP/AVP 0|m=video 9|",
       Reason::noCommonCodec, 1, 5, "section 1 (audio): no common codec: it has PCMU; kept would be PCMA"},
      {"bytes that are no text are shown as numbers", "keep-codecs PCMA all",
       "m=a\x01\x1f 9 RTP/AVP 96|a=rtpmap:96 b\x7f/1|", Reason::noCommonCodec, 1, 5,
       "section 1 (a\\x01\\x1f): no common codec: it has b\\x7f; kept would be PCMA"},
      {"a body cannot turn what is written round", "keep-codecs PCMA all",
       "m=\xe2\x80\xae"
       "a\xc2\x85 9 RTP/AVP 96|a=rtpmap:96 \xe2\x81\xa7"
       "b\xfe/1|",
       Reason::noCommonCodec, 1, 5,
       "section 1 (\\xe2\\x80\\xaea\\xc2\\x85): no common codec: it has \\xe2\\x81\\xa7b\\xfe; kept would be PCMA"},
  });
}

TEST(KeepCodecs, TakesWhatSpeaksOfAFormatAlong) {
  expectDone({
      {"six attributes, and no other", "keep-codecs VP8",
       "m=video 9 RTP/AVPF 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 H264/90000|a=fmtp:97 x|a=fmtp: 97 "
       "y|a=rtcp-fb:97 nack|"
       "a=imageattr:97 send *|a=framesize:97 1-2|a=gpmd:97 x|a=rtcp-fb:* nack|a=imageattr:* send "
       "*|a=extmap:97 x|"
       "a=sqn:97|a=rtpmap:98 H263/90000|a=fmtp:970 x|a=fmtp|a=RTPMAP:97 x/1|b=97|",
       "m=video 9 RTP/AVPF 96|a=rtpmap:96 VP8/90000|a=rtcp-fb:* nack|a=imageattr:* send *|a=extmap:97 x|"
       "a=sqn:97|a=rtpmap:98 H263/90000|a=fmtp:970 x|a=fmtp|a=RTPMAP:97 x/1|b=97|"},
      {"rtpmaps that are none go as well", "keep-codecs PCMU",
       "m=audio 9 RTP/AVP 0 96|a=rtpmap:96 AppleLossless|a=rtpmap:96|", "m=audio 9 RTP/AVP 0|"},
      {"not in other sections", "keep-codecs PCMU 1",
       "m=audio 9 RTP/AVP 0 8|a=fmtp:8 x|m=audio 9 RTP/AVP 0 8|a=fmtp:8 x|",
       "m=audio 9 RTP/AVP 0|m=audio 9 RTP/AVP 0 8|a=fmtp:8 x|"},
      {"not in the session", "keep-codecs PCMU", "a=fmtp:8 x|m=audio 9 RTP/AVP 0 8|",
       "a=fmtp:8 x|m=audio 9 RTP/AVP 0|"},
  });
}

TEST(KeepCodecs, TakesASeparatorWithEachFormat) {
  expectDone({
      {"the last", "keep-codecs PCMU", "m=audio  9\tRTP/AVP \t0\t\t8 |", "m=audio  9\tRTP/AVP \t0 |"},
      {"the first", "keep-codecs PCMA", "m=audio 9 RTP/AVP \t0\t\t8 |", "m=audio 9 RTP/AVP\t\t8 |"},
      {"one between", "keep-codecs PCMU,G722", "m=audio 9 RTP/AVP 0  8\t9|", "m=audio 9 RTP/AVP 0\t9|"},
      {"one that is there twice", "keep-codecs PCMU", "m=audio 9 RTP/AVP 8 0  8\t0|",
       "m=audio 9 RTP/AVP 0\t0|"},
  });
}

TEST(KeepCodecs, ReadsNamesWithoutRegardToCaseAndPayloadTypesAsTexts) {
  const char* const body =
      "m=audio 9 RTP/AVP 96 97 98 0 8|a=rtpmap:96 opus/48000/2|a=rtpmap:97 OPUS/48000|a=rtpmap:98 "
      "opus/16000/2|";
  expectDone({
      {"any clock rate and channels", "keep-codecs Opus", body,
       "m=audio 9 RTP/AVP 96 97 98|a=rtpmap:96 opus/48000/2|a=rtpmap:97 OPUS/48000|a=rtpmap:98 "
       "opus/16000/2|"},
      {"a clock rate", "keep-codecs opus/48000", body,
       "m=audio 9 RTP/AVP 96 97|a=rtpmap:96 opus/48000/2|a=rtpmap:97 OPUS/48000|"},
      {"a clock rate as a number", "keep-codecs opus/048000", body,
       "m=audio 9 RTP/AVP 96 97|a=rtpmap:96 opus/48000/2|a=rtpmap:97 OPUS/48000|"},
      {"channels", "keep-codecs opus/48000/2", body, "m=audio 9 RTP/AVP 96|a=rtpmap:96 opus/48000/2|"},
      {"one channel where none are told", "keep-codecs opus/48000/1", body,
       "m=audio 9 RTP/AVP 97|a=rtpmap:97 OPUS/48000|"},
      {"static ones without rtpmap", "keep-codecs pcmu/8000/1,Pcma", body, "m=audio 9 RTP/AVP 0 8|"},
      {"payload types", "keep-codecs 97,0", body, "m=audio 9 RTP/AVP 97 0|a=rtpmap:97 OPUS/48000|"},
      {"a payload type as another text", "keep-codecs 097,8", body, "m=audio 9 RTP/AVP 8|"},
      {"a static one that is named anew", "keep-codecs PCMU",
       "m=audio 9 RTP/AVP 0 8|a=rtpmap:0 opus/48000|a=rtpmap:8 PCMU/8000|",
       "m=audio 9 RTP/AVP 8|a=rtpmap:8 PCMU/8000|"},
  });
}

TEST(KeepCodecs, KeepsRtxOfAPayloadThatStays) {
  const char* const video =
      "m=video 9 RTP/AVPF 96 97 98 99|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|"
      "a=rtpmap:98 VP9/90000|a=rtpmap:99 rtx/90000|a=fmtp:99 apt=98|";
  expectDone({
      {"its own", "keep-codecs VP8", video,
       "m=video 9 RTP/AVPF 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|"},
      {"also when it is named", "keep-codecs VP9,rtx,97", video,
       "m=video 9 RTP/AVPF 98 99|a=rtpmap:98 VP9/90000|a=rtpmap:99 rtx/90000|a=fmtp:99 apt=98|"},
      {"in front of what it serves", "keep-codecs VP8",
       "m=video 9 RTP/AVP 97 96|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|a=rtpmap:96 VP8/90000|",
       "m=video 9 RTP/AVP 97 96|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|a=rtpmap:96 VP8/90000|"},
      {"of rtx, of red", "keep-codecs VP8,red",
       "m=video 9 RTP/AVP 96 97 98 99 100|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|"
       "a=rtpmap:98 rtx/90000|a=fmtp:98 apt=97|a=rtpmap:99 red/90000|a=rtpmap:100 rtx/90000|a=fmtp:100 "
       "apt=99|",
       "m=video 9 RTP/AVP 96 97 98 99 100|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|"
       "a=rtpmap:98 rtx/90000|a=fmtp:98 apt=97|a=rtpmap:99 red/90000|a=rtpmap:100 rtx/90000|a=fmtp:100 "
       "apt=99|"},
      {"not of red that goes", "keep-codecs VP8",
       "m=video 9 RTP/AVP 96 99 100|a=rtpmap:96 VP8/90000|a=rtpmap:99 red/90000|a=rtpmap:100 "
       "rtx/90000|a=fmtp:100 apt=99|",
       "m=video 9 RTP/AVP 96|a=rtpmap:96 VP8/90000|"},
      {"none of its own", "keep-codecs VP8",
       "m=video 9 RTP/AVP 96 97 98 99|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=rtpmap:98 "
       "rtx/90000|a=fmtp:98 apt=95|"
       "a=rtpmap:99 rtx/90000|a=fmtp:99 apt=096|",
       "m=video 9 RTP/AVP 96|a=rtpmap:96 VP8/90000|"},
      {"of itself", "keep-codecs VP8,rtx,97",
       "m=video 9 RTP/AVP 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=97|",
       "m=video 9 RTP/AVP 96|a=rtpmap:96 VP8/90000|"},
      {"in a circle", "keep-codecs VP8,rtx",
       "m=video 9 RTP/AVP 96 97 98|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=98|a=rtpmap:98 "
       "rtx/90000|"
       "a=fmtp:98 apt=97|",
       "m=video 9 RTP/AVP 96|a=rtpmap:96 VP8/90000|"},
      {"the first apt of several fmtps", "keep-codecs VP8",
       "m=video 9 RTP/AVP 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 x|a=fmtp:97 "
       "rtx-time=1; APT = 96|",
       "m=video 9 RTP/AVP 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 x|a=fmtp:97 "
       "rtx-time=1; APT = 96|"},
      {"of one that stands twice", "keep-codecs VP8",
       "m=video 9 RTP/AVP 96 97 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|",
       "m=video 9 RTP/AVP 96 97 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|"},
  });
}

TEST(KeepCodecs, KeepsRedWithAllThatItCarries) {
  expectDone({
      {"without fmtp, when it is named", "keep-codecs VP8,red",
       "m=video 9 RTP/AVP 96 99|a=rtpmap:96 VP8/90000|a=rtpmap:99 red/90000|",
       "m=video 9 RTP/AVP 96 99|a=rtpmap:96 VP8/90000|a=rtpmap:99 red/90000|"},
      {"not when it is not named", "keep-codecs VP8",
       "m=video 9 RTP/AVP 96 99|a=rtpmap:96 VP8/90000|a=rtpmap:99 red/90000|",
       "m=video 9 RTP/AVP 96|a=rtpmap:96 VP8/90000|"},
      {"not when one of several goes", "keep-codecs PCMU,red",
       "m=audio 9 RTP/AVP 0 8 99|a=rtpmap:99 red/8000|a=fmtp:99 0/8|", "m=audio 9 RTP/AVP 0|"},
      {"not when the m-line lacks one", "keep-codecs PCMU,red",
       "m=audio 9 RTP/AVP 0 99|a=rtpmap:99 red/8000|a=fmtp:99 0/100|", "m=audio 9 RTP/AVP 0|"},
      {"one that is carried several times", "keep-codecs PCMU,red",
       "m=audio 9 RTP/AVP 0 99|a=rtpmap:99 red/8000|a=fmtp:99 0/0/0;x=8|",
       "m=audio 9 RTP/AVP 0 99|a=rtpmap:99 red/8000|a=fmtp:99 0/0/0;x=8|"},
      {"a fmtp without payload types asks nothing", "keep-codecs PCMU,red",
       "m=audio 9 RTP/AVP 0 99|a=rtpmap:99 red/8000|a=fmtp:99 x=8|",
       "m=audio 9 RTP/AVP 0 99|a=rtpmap:99 red/8000|a=fmtp:99 x=8|"},
      {"the first fmtp, and of it the first field", "keep-codecs PCMU,red",
       "m=audio 9 RTP/AVP 0 99|a=rtpmap:99 red/8000|a=fmtp:99  0/0 8/8|a=fmtp:99 8/8|",
       "m=audio 9 RTP/AVP 0 99|a=rtpmap:99 red/8000|a=fmtp:99  0/0 8/8|a=fmtp:99 8/8|"},
      {"itself", "keep-codecs PCMU,red", "m=audio 9 RTP/AVP 0 99|a=rtpmap:99 red/8000|a=fmtp:99 0/99|",
       "m=audio 9 RTP/AVP 0|"},
      {"in a circle with rtx", "keep-codecs PCMU,red,rtx",
       "m=audio 9 RTP/AVP 0 98 99|a=rtpmap:98 rtx/8000|a=fmtp:98 apt=99|a=rtpmap:99 red/8000|a=fmtp:99 0/98|",
       "m=audio 9 RTP/AVP 0|"},
  });
}

TEST(KeepCodecs, KeepsComfortNoiseOfAClockRateThatStays) {
  expectDone({
      {"of that of a codec", "keep-codecs PCMU,CN", "m=audio 9 RTP/AVP 0 13 96|a=rtpmap:96 CN/16000|",
       "m=audio 9 RTP/AVP 0 13|"},
      {"none of 8000 beside 48000", "keep-codecs opus,CN",
       "m=audio 9 RTP/AVP 96 13|a=rtpmap:96 opus/48000/2|", "m=audio 9 RTP/AVP 96|a=rtpmap:96 opus/48000/2|"},
      {"not when it is not named", "keep-codecs PCMU", "m=audio 9 RTP/AVP 0 13|", "m=audio 9 RTP/AVP 0|"},
      {"none beside a codec of no known clock rate", "keep-codecs 96,CN", "m=audio 9 RTP/AVP 96 13|",
       "m=audio 9 RTP/AVP 96|"},
  });
}

TEST(KeepCodecs, LeavesTelephoneEventOfAClockThatIsLeft) {
  const char* const body =
      "m=audio 9 RTP/AVP 96 101 102 103|a=rtpmap:96 opus/48000/2|a=rtpmap:101 telephone-event/8000|"
      "a=rtpmap:102 telephone-event/48000|a=rtpmap:103 telephone-event/16000|";
  expectDone({
      {"that of the codec, and 8000", "keep-codecs opus,telephone-event", body,
       "m=audio 9 RTP/AVP 96 101 102|a=rtpmap:96 opus/48000/2|a=rtpmap:101 telephone-event/8000|a=rtpmap:102 "
       "telephone-event/48000|"},
      {"those that are named", "keep-codecs opus,telephone-event/48000", body,
       "m=audio 9 RTP/AVP 96 102|a=rtpmap:96 opus/48000/2|a=rtpmap:102 telephone-event/48000|"},
      {"all that are named when none of them fits", "keep-codecs opus,telephone-event/16000", body,
       "m=audio 9 RTP/AVP 96 103|a=rtpmap:96 opus/48000/2|a=rtpmap:103 telephone-event/16000|"},
      {"none when it is not named", "keep-codecs opus", body,
       "m=audio 9 RTP/AVP 96|a=rtpmap:96 opus/48000/2|"},
      {"each section for itself", "keep-codecs opus,PCMU,telephone-event",
       "m=audio 9 RTP/AVP 0 103|a=rtpmap:103 telephone-event/16000|m=audio 9 RTP/AVP 0 101 103|a=rtpmap:101 "
       "telephone-event/8000|"
       "a=rtpmap:103 telephone-event/16000|",
       "m=audio 9 RTP/AVP 0 103|a=rtpmap:103 telephone-event/16000|m=audio 9 RTP/AVP 0 101|a=rtpmap:101 "
       "telephone-event/8000|"},
  });
  expectUnchanged({{"a section of it alone lives on", "keep-codecs PCMU,telephone-event",
                    "m=audio 9 RTP/AVP 101|a=rtpmap:101 telephone-event/16000|"}});
}

TEST(KeepCodecs, KeepsOtherCompanionsThatAreNamed) {
  expectDone({
      {"named", "keep-codecs VP8,ulpfec,flexfec-03",
       "m=video 9 RTP/AVP 96 97 98 99|a=rtpmap:96 VP8/90000|a=rtpmap:97 ulpfec/90000|a=rtpmap:98 "
       "flexfec-03/90000|a=rtpmap:99 tone/8000|",
       "m=video 9 RTP/AVP 96 97 98|a=rtpmap:96 VP8/90000|a=rtpmap:97 ulpfec/90000|a=rtpmap:98 "
       "flexfec-03/90000|"},
      {"they are no codec", "keep-codecs ulpfec,PCMU video",
       "m=video 9 RTP/AVP 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 ulpfec/90000|m=audio 9 RTP/AVP 0|",
       "m=video 0 RTP/AVP 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 ulpfec/90000|m=audio 9 RTP/AVP 0|"},
  });
}

TEST(KeepCodecs, PutsASectionWithoutCodecAwayWithItsFormats) {
  expectDone({
      {"beside another that stays", "keep-codecs PCMU",
       "m=audio 9 RTP/AVP 0 8|m=video 9/2 RTP/AVP 31 96|a=rtpmap:96 VP8/90000|",
       "m=audio 9 RTP/AVP 0|m=video 0 RTP/AVP 31 96|a=rtpmap:96 VP8/90000|"},
      {"a section without RTP is enough", "keep-codecs VP8", "m=audio 9 RTP/AVP 0|m=image 9 udptl t38|",
       "m=audio 0 RTP/AVP 0|m=image 9 udptl t38|"},
      {"one that was not selected is enough", "keep-codecs VP8 audio",
       "m=audio 9 RTP/AVP 0|m=video 9 RTP/AVP 31|", "m=audio 0 RTP/AVP 0|m=video 9 RTP/AVP 31|"},
      {"one that its group gives the port is enough", "keep-codecs VP8",
       "a=group:BUNDLE 0 1|m=audio 9/1 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP "
       "96|a=mid:1|a=bundle-only|a=rtpmap:96 VP8/90000|",
       "a=group:BUNDLE 1|m=audio 0 RTP/AVP 0|a=mid:0|m=video 9/1 RTP/AVP 96|a=mid:1|a=rtpmap:96 VP8/90000|"},
      {"companions alone, of which none stays", "keep-codecs VP8",
       "m=audio 9 RTP/AVP 101|a=rtpmap:101 telephone-event/8000|m=image 9 udptl t38|",
       "m=audio 0 RTP/AVP 101|a=rtpmap:101 telephone-event/8000|m=image 9 udptl t38|"},
  });
}

TEST(KeepCodecs, LeavesWhatItIsNotAbout) {
  expectUnchanged({
      {"no RTP", "keep-codecs PCMU all", "m=audio 9 udptl 8|a=rtpmap:8 PCMA/8000|"},
      {"disabled", "keep-codecs PCMU", "m=audio 0 RTP/AVP 8|"},
      {"no section", "keep-codecs PCMU", ""},
      {"text is neither audio nor video", "keep-codecs PCMU", "m=text 9 RTP/AVP 98|a=rtpmap:98 t140/1000|"},
      {"all stays", "keep-codecs PCMU,PCMA", "m=audio 9 RTP/AVP  8\t0 |a=fmtp:9 x|"},
  });
  expectDone({{"bundled only is not disabled", "keep-codecs PCMU", "m=audio 0 RTP/AVP 0 8|a=bundle-only|",
               "m=audio 0 RTP/AVP 0|a=bundle-only|"}});
}

// --- drop-codecs -------------------------------------------------------------------------------------------

TEST(DropCodecs, TakesWhatIsNamedAndWhatServedIt) {
  const char* const video =
      "m=video 9 RTP/AVPF 96 97 98 99 100|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|"
      "a=rtpmap:98 VP9/90000|a=rtpmap:99 rtx/90000|a=fmtp:99 apt=98|a=rtpmap:100 red/90000|a=fmtp:100 98/96|";
  expectDone({
      {"with its rtx, and red that carries it", "drop-codecs vp8", video,
       "m=video 9 RTP/AVPF 98 99|a=rtpmap:98 VP9/90000|a=rtpmap:99 rtx/90000|a=fmtp:99 apt=98|"},
      {"rtx by its name", "drop-codecs rtx", video,
       "m=video 9 RTP/AVPF 96 98 100|a=rtpmap:96 VP8/90000|a=rtpmap:98 VP9/90000|a=rtpmap:100 "
       "red/90000|a=fmtp:100 98/96|"},
      {"rtx by its payload type", "drop-codecs 99,100", video,
       "m=video 9 RTP/AVPF 96 97 98|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|a=rtpmap:98 "
       "VP9/90000|"},
      {"rtx of rtx", "drop-codecs 96",
       "m=video 9 RTP/AVP 31 98 97 96|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 "
       "apt=96|a=rtpmap:98 rtx/90000|a=fmtp:98 apt=97|",
       "m=video 9 RTP/AVP 31|"},
      {"rtx in a circle with one that is named", "drop-codecs 97",
       "m=video 9 RTP/AVP 31 97 98 99|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=98|a=rtpmap:98 rtx/90000|a=fmtp:98 "
       "apt=99|"
       "a=rtpmap:99 rtx/90000|a=fmtp:99 apt=97|",
       "m=video 9 RTP/AVP 31|"},
      {"CN and telephone-event stay whatever clock rate is left", "drop-codecs PCMU",
       "m=audio 9 RTP/AVP 0 13 96 101|a=rtpmap:96 opus/48000/2|a=rtpmap:101 telephone-event/8000|",
       "m=audio 9 RTP/AVP 13 96 101|a=rtpmap:96 opus/48000/2|a=rtpmap:101 telephone-event/8000|"},
      {"all of a payload type that stands twice", "drop-codecs 0", "m=audio 9 RTP/AVP 0 8  0\t9|a=fmtp:0 x|",
       "m=audio 9 RTP/AVP 8\t9|"},
  });
  expectUnchanged({
      {"rtx that serves nothing", "drop-codecs VP9",
       "m=video 9 RTP/AVP 31 97 98|a=rtpmap:97 rtx/90000|a=rtpmap:98 rtx/90000|a=fmtp:98 apt=95|"},
      {"a circle of which nobody goes", "drop-codecs VP9",
       "m=video 9 RTP/AVP 31 97 98|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=98|a=rtpmap:98 rtx/90000|a=fmtp:98 "
       "apt=97|"},
      {"nothing of the name", "drop-codecs nosuch,95,PCMU/16000,PCMU/8000/2", "m=audio 9 RTP/AVP 0|"},
      {"red that carries what the m-line lacks", "drop-codecs VP9",
       "m=audio 9 RTP/AVP 0 99|a=rtpmap:99 red/8000|a=fmtp:99 95/95|"},
      {"companions alone stay while there is one", "drop-codecs PCMU",
       "m=audio 9 RTP/AVP 101|a=rtpmap:101 telephone-event/8000|"},
      {"disabled", "drop-codecs PCMU", "m=audio 0 RTP/AVP 0|"},
      {"no RTP", "drop-codecs PCMU,0 all", "m=audio 9 udptl 0|"},
  });
}

TEST(DropCodecs, PutsASectionWithoutCodecAway) {
  expectDone({
      {"companions are no codec", "drop-codecs PCMU",
       "m=audio 9 RTP/AVP 0 101|a=rtpmap:101 telephone-event/8000|m=image 9 udptl t38|",
       "m=audio 0 RTP/AVP 0 101|a=rtpmap:101 telephone-event/8000|m=image 9 udptl t38|"},
      {"nothing is left", "drop-codecs 101",
       "m=audio 9 RTP/AVP 101|a=rtpmap:101 telephone-event/8000|m=image 9 udptl t38|",
       "m=audio 0 RTP/AVP 101|a=rtpmap:101 telephone-event/8000|m=image 9 udptl t38|"},
  });
  expectRefused({{"the only one", "drop-codecs PCMU,8", "m=audio 9 RTP/AVP 0 8|", Reason::noCommonCodec, 1, 5,
                  "section 1 (audio): no common codec: it has PCMU, PCMA; dropped would be PCMU,8"}});
}

// --- order-codecs ------------------------------------------------------------------------------------------

TEST(OrderCodecs, PutsWhatIsNamedInFront) {
  expectDone({
      {"in the list's order", "order-codecs G722,PCMA", "m=audio 9 RTP/AVP 0 8 9 18|a=x|",
       "m=audio 9 RTP/AVP 9 8 0 18|a=x|"},
      {"the separators stay where they are", "order-codecs 8,PCMU", "m=audio 9 RTP/AVP 18\t0  8 |",
       "m=audio 9 RTP/AVP 8\t0  18 |"},
      {"those of one entry as they stand", "order-codecs opus,0",
       "m=audio 9 RTP/AVP 0 97 8 96|a=rtpmap:96 opus/48000|a=rtpmap:97 opus/48000/2|",
       "m=audio 9 RTP/AVP 97 96 0 8|a=rtpmap:96 opus/48000|a=rtpmap:97 opus/48000/2|"},
      {"the first of several entries counts", "order-codecs 8,PCMU,PCMA,0", "m=audio 9 RTP/AVP 0 8|",
       "m=audio 9 RTP/AVP 8 0|"},
      {"one that stands twice", "order-codecs 8", "m=audio 9 RTP/AVP 0 8 9 8|", "m=audio 9 RTP/AVP 8 8 0 9|"},
      {"formats of several lengths", "order-codecs 126", "m=audio 9 RTP/AVP 0 8 126|",
       "m=audio 9 RTP/AVP 126 0 8|"},
      {"rtx does not follow what it serves", "order-codecs VP9",
       "m=video 9 RTP/AVP 96 97 98|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|a=rtpmap:98 "
       "VP9/90000|",
       "m=video 9 RTP/AVP 98 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|a=rtpmap:98 "
       "VP9/90000|"},
      {"each section", "order-codecs PCMA", "m=audio 9 RTP/AVP 0 8|m=audio 9 RTP/AVP 9 8|",
       "m=audio 9 RTP/AVP 8 0|m=audio 9 RTP/AVP 8 9|"},
  });
  expectUnchanged({
      {"they are in front already", "order-codecs PCMU,PCMA", "m=audio 9 RTP/AVP 0  8\t9|"},
      {"nothing of the name", "order-codecs opus", "m=audio 9 RTP/AVP 0 8|"},
      {"disabled", "order-codecs 8", "m=audio 0 RTP/AVP 0 8|"},
      {"no RTP", "order-codecs 8 all", "m=image 9 udptl 0 8|"},
      {"text", "order-codecs 8", "m=text 9 RTP/AVP 0 8|"},
  });
}

TEST(KeepCodecs, NamesEachCodecOnceWhereNoneIsCommon) {
  sdp::Document document = documentTest::documentOf(
      "v=0\nm=video 9 RTP/AVP 96 97 98 99\na=rtpmap:96 H264/90000\na=rtpmap:97 h264/90000\na=rtpmap:98 AV1/90000\n");
  EXPECT_EQ(sdp::keepCodecs(document, "VP8").reason, Reason::noCommonCodec);
  EXPECT_EQ(document.explanation(),
            "section 1 (video): no common codec: it has H264, AV1, 99; kept would be VP8");
}

}  // namespace
