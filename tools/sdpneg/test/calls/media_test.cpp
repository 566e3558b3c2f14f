// What bodies say in short, and what calls agreed on.

#include "calls/media.h"

#include <gtest/gtest.h>

#include "calls/madeCall.h"

namespace {

using made::body;
using made::kAudio;
using tool::shortForm;
using Strings = std::vector<std::string>;

TEST(ShortForm, TellsEachSection) {
  EXPECT_EQ(shortForm(body("m=audio 4000 RTP/AVP 8 0 101\na=rtpmap:101 telephone-event/8000\n"
                           "m=video 0 RTP/AVP 34\n")),
            "audio PCMA,PCMU,telephone-event sendrecv 192.0.2.1:4000 plain; video refused");
}

TEST(ShortForm, TellsKeysIceAndDirection) {
  EXPECT_EQ(shortForm(body("m=audio 9 UDP/TLS/RTP/SAVPF 111 110 126\nc=IN IP6 2001:db8::1\na=ice-ufrag:abcd\n"
                           "a=fingerprint:sha-1 AA\na=sendonly\na=rtpmap:111 opus/48000/2\n"
                           "a=rtpmap:110 telephone-event/48000\na=rtpmap:126 telephone-event/8000\n")),
            "audio opus,telephone-event sendonly [2001:db8::1]:9 dtls ice");
  EXPECT_EQ(shortForm(body("m=audio 4000 RTP/SAVP 0\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:secret\n")),
            "audio PCMU sendrecv 192.0.2.1:4000 sdes");
}

TEST(ShortForm, ShowsHoldOfOldAndOtherMedia) {
  EXPECT_EQ(shortForm(body(kAudio, "1", "0.0.0.0")), "audio PCMA sendrecv 0.0.0.0:4000 plain held");
  EXPECT_EQ(shortForm(body("m=image 5000 udptl t38\n")), "image t38 192.0.2.1:5000 plain");
  EXPECT_EQ(shortForm("v=0\r\ns=-\r\n"), "no media");
  EXPECT_EQ(shortForm(""), "");
  EXPECT_EQ(shortForm("m=audio\r\n"), "unreadable");
}

TEST(ShortForm, IsShortAndPrintableForAnyText) {
  std::string many;
  for (int i = 0; i < 100; ++i) many += "m=audio 4000 RTP/AVP 8\n";
  const std::string shown = shortForm(body(many));
  EXPECT_TRUE(shown.ends_with("; 94 more")) << shown;
  const std::string odd =
      shortForm("m=au\x1b[2Jdio 4000 RTP/AVP 96\nc=IN IP4 \x07\xff\na=rtpmap:96 \xe2\x80\xae/1\n");
  EXPECT_EQ(odd, "au\\x1B[2Jdio \\xE2\\x80\\xAE sendrecv \\x07\\xFF:4000 plain");
  std::string wide = "m=audio 4000 RTP/AVP";
  for (int i = 0; i < 5000; ++i) wide += " " + std::to_string(i);
  EXPECT_LT(shortForm(wide).size(), 500U);
}

TEST(DescribeMedia, TellsWhatBothHaveInTheOrderOfTheAnswer) {
  made::Maker maker;
  maker.begin(
      body("m=audio 4000 RTP/AVP 9 0 8 13 101\na=rtpmap:101 telephone-event/8000\n"
           "m=video 4002 RTP/AVP 34\n"),
      body("m=audio 5000 RTP/AVP 8 0 18 101\na=rtpmap:101 telephone-event/8000\nm=video 5002 RTP/AVP 34\n"));
  describeMedia(maker.call);
  EXPECT_EQ(maker.call.codecs, (Strings{"PCMA", "PCMU", "H263"}));
  EXPECT_EQ(maker.call.security, "plain");
}

TEST(DescribeMedia, TakesTheLastExchangeThatWasNotRefused) {
  made::Maker maker;
  maker.begin(body("m=audio 4000 RTP/AVP 0 8\n"), body("m=audio 4000 RTP/AVP 0\n"));
  maker.again(2, body("m=audio 4000 RTP/AVP 0 8\n", "2"), body("m=audio 4000 RTP/AVP 8\n", "2"));
  maker.again(3, body("m=audio 4000 RTP/AVP 9\n", "3"), body("m=audio 4000 RTP/AVP 9\n", "3"));
  maker.call.exchanges.back().finalStatus = 488;
  describeMedia(maker.call);
  EXPECT_EQ(maker.call.codecs, (Strings{"PCMA"}));
}

TEST(DescribeMedia, TellsBothSidesOfAHopThatTranscodes) {
  made::Maker maker;
  const std::string secure =
      "m=audio 4000 UDP/TLS/RTP/SAVPF 111\na=fingerprint:sha-1 AA\na=rtpmap:111 opus/48000/2\n";
  const std::size_t first = maker.add({made::kAlice, made::kProxy}, body(secure));
  made::Line second{made::kProxy, made::kBob};
  second.leg = 1;
  const std::size_t passed = maker.add(second, body(kAudio));
  const std::size_t answered = maker.add(made::Maker::accept(second), body(kAudio));
  const std::size_t back = maker.add(made::Maker::accept({made::kAlice, made::kProxy}), body(secure));
  maker.exchange(first, back);
  maker.exchange(passed, answered);
  describeMedia(maker.call);
  EXPECT_EQ(maker.call.codecs, (Strings{"opus", "PCMA"}));
  EXPECT_EQ(maker.call.security, "dtls/plain");
}

TEST(DescribeMedia, TellsNothingOfCallsThatWereRefused) {
  made::Maker maker;
  maker.begin(body(kAudio), body(kAudio));
  maker.call.exchanges.back().finalStatus = 486;
  maker.exchange(0, std::nullopt, 200);
  maker.call.codecs = {"old"};
  maker.call.security = "old";
  describeMedia(maker.call);
  EXPECT_TRUE(maker.call.codecs.empty());
  EXPECT_EQ(maker.call.security, "");
}

struct SecurityCase {
  std::string_view offer;
  std::string_view answer;
  std::string_view security;
};

TEST(DescribeMedia, CallsAnAnswerThatDropsKeysKeyless) {
  constexpr std::string_view kSdes = "m=audio 4000 RTP/SAVP 8\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x\n";
  constexpr std::string_view kKeyless = "m=audio 4000 RTP/SAVP 8\n";
  constexpr std::string_view kBeside =
      "m=audio 4000 RTP/AVP 8\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x\n";
  const SecurityCase cases[] = {
      {kSdes, kSdes, "sdes"},       {kSdes, kAudio, "keyless"},   {kAudio, kSdes, "keyless"},
      {kSdes, kKeyless, "keyless"}, {kKeyless, kSdes, "keyless"}, {kBeside, kBeside, "sdes"},
      {kBeside, kAudio, "plain"},   {kAudio, kBeside, "plain"},
  };
  for (const SecurityCase& test : cases) {
    made::Maker maker;
    maker.begin(body(test.offer), body(test.answer));
    describeMedia(maker.call);
    EXPECT_EQ(maker.call.security, test.security) << test.offer << test.answer;
  }
}

}  // namespace
