#include "dialogTestSupport.h"

// What was agreed, as a media stack needs it.

namespace {

using namespace dialogTest;
using sdp::AgreedCodec;
using sdp::AgreedSection;
using sdp::AgreedSide;
using sdp::DtlsRole;
using sdp::Security;

/// "111 opus/48000/2 useinbandfec=1"; companions in brackets, feedback in braces.
std::string textOf(const std::vector<AgreedCodec>& codecs) {
  std::string text;
  for (const AgreedCodec& codec : codecs) {
    if (!text.empty()) text.append(", ");
    std::string one = codec.payload;
    if (!codec.name.empty())
      one.append(" ").append(codec.name).append("/").append(std::to_string(codec.clockRate));
    if (codec.channels != 1) one.append("/").append(std::to_string(codec.channels));
    if (!codec.fmtp.empty()) one.append(" ").append(codec.fmtp);
    for (const std::string& feedback : codec.feedback) one.append(" {").append(feedback).append("}");
    text.append(codec.isCompanion ? "[" + one + "]" : one);
  }
  return text;
}

AgreedSection only(const Dialog& dialog) {
  const sdp::AgreedMedia media = dialog.agreed();
  EXPECT_TRUE(media);
  EXPECT_EQ(media.sections.size(), 1U);
  return media.sections.empty() ? AgreedSection() : media.sections[0];
}

struct Codecs {
  const char* what;
  const char* local;
  const char* remote;
  const char* received;
  const char* sent;
};

constexpr Codecs kCodecs[] = {
    {"each side has its own numbers and order",
     "m=audio 4000 RTP/AVP 96 0 101|a=rtpmap:96 opus/48000/2|a=fmtp:96 stereo=1|a=rtpmap:101 telephone-event/8000|",
     "m=audio 5000 RTP/AVP 0 111 100|a=rtpmap:111 OPUS/48000/2|a=fmtp:111 useinbandfec=1|a=rtpmap:100 telephone-event/8000|"
     "a=fmtp:100 0-15|",
     "96 opus/48000/2 stereo=1, 0 PCMU/8000, [101 telephone-event/8000]",
     "0 PCMU/8000, 111 OPUS/48000/2 useinbandfec=1, [100 telephone-event/8000 0-15]"},
    {"what only one has is not agreed", "m=audio 4000 RTP/AVP 0 8|", "m=audio 5000 RTP/AVP 8 9|",
     "8 PCMA/8000", "8 PCMA/8000"},
    {"a number with two meanings is two codecs",
     "m=audio 4000 RTP/AVP 96 97|a=rtpmap:96 opus/48000/2|a=rtpmap:97 iLBC/8000|",
     "m=audio 5000 RTP/AVP 96 97|a=rtpmap:96 iLBC/8000|a=rtpmap:97 opus/48000/2|",
     "96 opus/48000/2, 97 iLBC/8000", "96 iLBC/8000, 97 opus/48000/2"},
    {"companions name the numbers of their side",
     "m=video 4000 RTP/AVP 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|",
     "m=video 5000 RTP/AVP 100 101|a=rtpmap:100 VP8/90000|a=rtpmap:101 rtx/90000|a=fmtp:101 apt=100|",
     "96 VP8/90000, [97 rtx/90000 apt=96]", "100 VP8/90000, [101 rtx/90000 apt=100]"},
    {"feedback is what both have, in the order of its side",
     "m=video 4000 RTP/AVPF 96|a=rtpmap:96 VP8/90000|a=rtcp-fb:96 nack|a=rtcp-fb:96 nack pli|a=rtcp-fb:96 ccm fir|",
     "m=video 5000 RTP/AVPF 100|a=rtpmap:100 VP8/90000|a=rtcp-fb:* nack pli|a=rtcp-fb:100 nack|",
     "96 VP8/90000 {nack} {nack pli}", "100 VP8/90000 {nack pli} {nack}"},
    {"feedback for all formats is that of each, and what stands there twice is told once",
     "m=video 4000 RTP/AVPF 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 VP9/90000|a=rtcp-fb:97 nack|"
     "a=rtcp-fb:* ccm fir|a=rtcp-fb:96 ccm fir|a=rtcp-fb:96 nack pli|",
     "m=video 5000 RTP/AVPF 100 101|a=rtpmap:100 VP8/90000|a=rtpmap:101 VP9/90000|a=rtcp-fb:* nack pli|"
     "a=rtcp-fb:* ccm fir|a=rtcp-fb:101 nack|a=rtcp-fb:101 transport-cc|a=rtcp-fb:102 nack|",
     "96 VP8/90000 {ccm fir} {nack pli}, 97 VP9/90000 {nack} {ccm fir}",
     "100 VP8/90000 {nack pli} {ccm fir}, 101 VP9/90000 {ccm fir} {nack}"},
    {"another packetization-mode under the same number is for the judge",
     "m=video 4000 RTP/AVP 96|a=rtpmap:96 H264/90000|a=fmtp:96 packetization-mode=1|",
     "m=video 5000 RTP/AVP 96|a=rtpmap:96 H264/90000|", "96 H264/90000 packetization-mode=1",
     "96 H264/90000"},
    {"so are channels", "m=audio 4000 RTP/AVP 111|a=rtpmap:111 opus/48000/2|",
     "m=audio 5000 RTP/AVP 111|a=rtpmap:111 OPUS/48000|", "111 opus/48000/2", "111 OPUS/48000"},
    {"a number without rtpmap is what the other side says", "m=audio 4000 RTP/AVP 96|a=rtpmap:96 iLBC/8000|",
     "m=audio 5000 RTP/AVP 96|a=fmtp:96 mode=30|", "96 iLBC/8000", "96 iLBC/8000 mode=30"},
    {"rtx goes with what it serves",
     "m=video 4000 RTP/AVP 96 97|a=rtpmap:96 H264/90000|a=fmtp:96 packetization-mode=1|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|",
     "m=video 5000 RTP/AVP 96 97|a=rtpmap:96 H264/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|",
     "96 H264/90000 packetization-mode=1, [97 rtx/90000 apt=96]", "96 H264/90000, [97 rtx/90000 apt=96]"},
    {"rtx of something else does not",
     "m=video 4000 RTP/AVP 96 97 98|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=98|a=rtpmap:98 H264/90000|",
     "m=video 5000 RTP/AVP 96 97|a=rtpmap:96 VP8/90000|a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|",
     "96 VP8/90000", "96 VP8/90000"},
    {"another encoding under the same number is not agreed",
     "m=audio 4000 RTP/AVP 0 96|a=rtpmap:96 iLBC/8000|", "m=audio 5000 RTP/AVP 0 96|a=rtpmap:96 speex/8000|",
     "0 PCMU/8000", "0 PCMU/8000"},
    {"a number whose format is the same under another number counts there alone",
     "m=video 4000 RTP/AVP 96 97|a=rtpmap:96 H264/90000|a=fmtp:96 packetization-mode=1|a=rtpmap:97 H264/90000|",
     "m=video 5000 RTP/AVP 97|a=rtpmap:97 H264/90000|a=fmtp:97 packetization-mode=1|",
     "96 H264/90000 packetization-mode=1", "97 H264/90000 packetization-mode=1"},
    {"formats without RTP are words", "m=application 4000 UDP/DTLS/SCTP webrtc-datachannel|",
     "m=application 5000 UDP/DTLS/SCTP WebRTC-datachannel|", "webrtc-datachannel", "WebRTC-datachannel"},
};

TEST(DialogAgreed, CodecsAreThoseOfBothWithTheNumbersOfWhoReceives) {
  for (const Codecs& codecs : kCodecs) {
    SCOPED_TRACE(codecs.what);
    for (const bool isOfferLocal : {true, false}) {
      const AgreedSection agreed =
          only(isOfferLocal ? offered(ours("1", codecs.local), theirs("1", codecs.remote))
                            : answered(theirs("1", codecs.remote), ours("1", codecs.local)));
      EXPECT_TRUE(agreed.isAccepted);
      EXPECT_EQ(textOf(agreed.local.codecs), codecs.received);
      EXPECT_EQ(textOf(agreed.remote.codecs), codecs.sent);
    }
  }
}

TEST(DialogAgreed, ThousandsOfFormatsThatAreOneAreAllTold) {
  std::string formats = "m=video 5000 RTP/AVPF";
  std::string attributes;
  constexpr int kFirst = 1000;
  constexpr int kCount = 8000;
  for (int number = kFirst; number < kFirst + kCount; ++number) {
    formats.append(" ").append(std::to_string(number));
    attributes.append("a=rtpmap:").append(std::to_string(number)).append(" VP8/90000|a=rtcp-fb:* x");
    attributes.append(std::to_string(number)).append("|");
  }
  const AgreedSection agreed = only(offered(
      ours("1", "m=video 4000 RTP/AVPF 96|a=rtpmap:96 VP8/90000|a=rtcp-fb:96 nack|a=rtcp-fb:96 x2000|"),
      theirs("1", formats + "|" + attributes)));
  EXPECT_EQ(textOf(agreed.local.codecs), "96 VP8/90000 {x2000}");
  ASSERT_EQ(agreed.remote.codecs.size(), std::size_t{kCount});
  EXPECT_EQ(textOf({agreed.remote.codecs.back()}), "8999 VP8/90000 {x2000}");
}

struct Directions {
  const char* local;
  const char* remote;
  Direction direction;
};

TEST(DialogAgreed, DirectionsAreSeenFromOnesOwnSide) {
  const Directions cases[] = {
      {"a=sendrecv|", "a=sendrecv|", Direction::sendrecv},
      {"a=sendrecv|", "a=recvonly|", Direction::sendonly},
      {"a=sendonly|", "a=recvonly|", Direction::sendonly},
      {"a=sendrecv|", "a=sendonly|", Direction::recvonly},
      {"a=recvonly|", "a=sendonly|", Direction::recvonly},
      {"a=sendonly|", "a=sendonly|", Direction::inactive},
      {"a=inactive|", "a=sendrecv|", Direction::inactive},
      {"a=recvonly|", "a=recvonly|", Direction::inactive},
      {"", "c=IN IP4 0.0.0.0|", Direction::recvonly},
      {"c=IN IP4 0.0.0.0|", "", Direction::sendonly},
  };
  for (const Directions& directions : cases) {
    SCOPED_TRACE(std::string(directions.local) + directions.remote);
    const AgreedSection agreed = only(offered(ours("1", std::string(kAudio) + directions.local),
                                              theirs("1", std::string(kPeersAudio) + directions.remote)));
    EXPECT_EQ(sdp::textOf(agreed.direction), sdp::textOf(directions.direction));
  }
}

TEST(DialogAgreed, AddressesPortsAndTimes) {
  const AgreedSection agreed = only(offered(
      ours("1", "m=audio 4000 RTP/AVP 0|c=IN IP6 2001:db8::1|a=rtcp:4100|a=ptime:20|a=maxptime:60|a=mid:x|"),
      theirs("1", "m=audio 5000 RTP/AVP 0|a=rtcp:5100 IN IP4 198.51.100.9|a=ptime:30|a=mid:x|")));
  EXPECT_EQ(agreed.index, 1U);
  EXPECT_EQ(agreed.media, "audio");
  EXPECT_EQ(agreed.transport, "RTP/AVP");
  EXPECT_EQ(agreed.mid, "x");
  EXPECT_EQ(agreed.transportSection, 1U);
  EXPECT_FALSE(agreed.usesRtcpMux);
  EXPECT_EQ(agreed.local.address, "2001:db8::1");
  EXPECT_EQ(agreed.local.addressType, "IP6");
  EXPECT_EQ(agreed.local.port, 4000);
  EXPECT_EQ(agreed.local.rtcpPort, 4100);
  EXPECT_EQ(agreed.local.rtcpAddress, "2001:db8::1");
  EXPECT_EQ(agreed.local.ptime, 20U);
  EXPECT_EQ(agreed.local.maxptime, 60U);
  EXPECT_EQ(agreed.remote.address, "198.51.100.1");
  EXPECT_EQ(agreed.remote.port, 5000);
  EXPECT_EQ(agreed.remote.rtcpPort, 5100);
  EXPECT_EQ(agreed.remote.rtcpAddress, "198.51.100.9");
  EXPECT_EQ(agreed.remote.ptime, 30U);
  EXPECT_EQ(agreed.remote.maxptime, 0U);
}

struct RtcpPort {
  const char* what;
  const char* local;
  const char* remote;
  std::uint16_t localPort;
  std::uint16_t remotePort;
};

TEST(DialogAgreed, RtcpGoesWhereBothSay) {
  const RtcpPort cases[] = {
      {"the next port", "m=audio 4000 RTP/AVP 0|", "m=audio 5000 RTP/AVP 0|", 4001, 5001},
      {"mux of both", "m=audio 4000 RTP/AVP 0|a=rtcp-mux|a=rtcp:4001|", "m=audio 5000 RTP/AVP 0|a=rtcp-mux|",
       4000, 5000},
      {"mux of one", "m=audio 4000 RTP/AVP 0|a=rtcp-mux|", "m=audio 5000 RTP/AVP 0|", 4001, 5001},
      {"behind the last port", "m=audio 65535 RTP/AVP 0|", "m=audio 65534 RTP/AVP 0|", 0, 65535},
      {"a port that is none", "m=audio 4000 RTP/AVP 0|a=rtcp:65536|", "m=audio 5000 RTP/AVP 0|a=rtcp:65535|",
       4001, 65535},
  };
  for (const RtcpPort& rtcp : cases) {
    SCOPED_TRACE(rtcp.what);
    const AgreedSection agreed = only(offered(ours("1", rtcp.local), theirs("1", rtcp.remote)));
    EXPECT_EQ(agreed.local.rtcpPort, rtcp.localPort);
    EXPECT_EQ(agreed.remote.rtcpPort, rtcp.remotePort);
  }
  const AgreedSection image =
      only(offered(ours("1", "m=image 4000 udptl t38|"), theirs("1", "m=image 5000 udptl t38|")));
  EXPECT_EQ(image.local.rtcpPort, 0);
}

TEST(DialogAgreed, ABundleHasTheTransportOfItsFirstSection) {
  const std::string local =
      "a=group:BUNDLE v a|m=audio 4000 RTP/AVP 0|c=IN IP4 192.0.2.5|a=mid:a|a=rtcp-mux|"
      "m=video 4002 RTP/AVP 31|a=mid:v|a=rtcp-mux|a=ice-ufrag:ours|a=ice-pwd:secret|a=candidate:1 x|m=text 4004 RTP/AVP 98|a=mid:t|";
  const std::string remote =
      "a=group:BUNDLE v a|m=audio 0 RTP/AVP 0|a=bundle-only|a=mid:a|a=rtcp-mux|"
      "m=video 5002 RTP/AVP 31|a=mid:v|a=rtcp-mux|a=ice-ufrag:theirs|a=ice-pwd:hidden|m=text 5004 RTP/AVP 98|a=mid:t|";
  const Dialog dialog = answered(theirs("1", remote), ours("1", local));
  const AgreedSection audio = dialog.agreed(1);
  EXPECT_TRUE(audio.isAccepted);
  EXPECT_EQ(audio.transportSection, 2U);
  EXPECT_EQ(audio.local.address, "192.0.2.1");
  EXPECT_EQ(audio.local.port, 4002);
  EXPECT_EQ(audio.remote.port, 5002);
  EXPECT_TRUE(audio.usesIce);
  EXPECT_EQ(audio.local.iceUfrag, "ours");
  EXPECT_EQ(audio.local.candidates, std::vector<std::string>{"1 x"});
  EXPECT_EQ(audio.remote.icePwd, "hidden");
  EXPECT_EQ(textOf(audio.local.codecs), "0 PCMU/8000");
  EXPECT_EQ(dialog.agreed(2).transportSection, 2U);
  const AgreedSection text = dialog.agreed(3);
  EXPECT_EQ(text.transportSection, 3U);
  EXPECT_EQ(text.remote.port, 5004);
  EXPECT_FALSE(text.usesIce);
}

TEST(DialogAgreed, OfCryptoTheLinesOfTheAnsweredTag) {
  const char* const offer =
      "m=audio 4000 RTP/SAVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:one|a=crypto:2 AES_CM_128_HMAC_SHA1_32 inline:two|";
  const char* const answer = "m=audio 5000 RTP/SAVP 0|a=crypto:2 AES_CM_128_HMAC_SHA1_32 inline:peer|";
  const AgreedSection agreed = only(offered(ours("1", offer), theirs("1", answer)));
  EXPECT_EQ(agreed.security, Security::sdes);
  EXPECT_EQ(agreed.local.crypto, "2 AES_CM_128_HMAC_SHA1_32 inline:two");
  EXPECT_EQ(agreed.remote.crypto, "2 AES_CM_128_HMAC_SHA1_32 inline:peer");
  EXPECT_EQ(agreed.dtlsRole, DtlsRole::none);
  const AgreedSection reversed = only(answered(theirs("1", offer), ours("1", answer)));
  EXPECT_EQ(reversed.local.crypto, "2 AES_CM_128_HMAC_SHA1_32 inline:peer");
  EXPECT_EQ(reversed.remote.crypto, "2 AES_CM_128_HMAC_SHA1_32 inline:two");
  const AgreedSection other =
      only(offered(ours("1", offer), theirs("1", "m=audio 5000 RTP/SAVP 0|a=crypto:3 X inline:peer|")));
  EXPECT_EQ(other.security, Security::keyless);
  EXPECT_EQ(other.local.crypto, "");
}

struct Secured {
  const char* what;
  const char* local;
  const char* remote;
  Security security;
};

TEST(DialogAgreed, WhatProtectsTheMedia) {
  const Secured cases[] = {
      {"nothing", "RTP/AVP 0|", "RTP/AVP 0|", Security::plain},
      {"fingerprints", "UDP/TLS/RTP/SAVPF 0|a=fingerprint:sha-256 A|",
       "UDP/TLS/RTP/SAVPF 0|a=fingerprint:sha-256 B|", Security::dtls},
      {"one alone", "UDP/TLS/RTP/SAVPF 0|a=fingerprint:sha-256 A|", "UDP/TLS/RTP/SAVPF 0|",
       Security::keyless},
      {"crypto does not count there", "UDP/TLS/RTP/SAVPF 0|a=crypto:1 A inline:k|",
       "UDP/TLS/RTP/SAVPF 0|a=crypto:1 A inline:k|", Security::keyless},
      {"crypto beside a plain profile", "RTP/AVP 0|a=crypto:1 A inline:k|",
       "RTP/AVP 0|a=crypto:1 A inline:k|", Security::sdes},
      {"and fingerprints", "RTP/AVP 0|a=fingerprint:sha-256 A|", "RTP/AVP 0|a=fingerprint:sha-256 B|",
       Security::dtls},
      {"offered and not answered", "RTP/AVP 0|a=crypto:1 A inline:k|a=fingerprint:sha-256 A|", "RTP/AVP 0|",
       Security::plain},
      {"MIKEY", "RTP/SAVP 0|a=key-mgmt:mikey X|", "RTP/SAVP 0|a=key-mgmt:mikey Y|", Security::mikey},
      {"an answer that drops the keys of a secure offer", "RTP/SAVP 0|a=crypto:1 A inline:k|", "RTP/AVP 0|",
       Security::keyless},
      {"and those of DTLS", "UDP/TLS/RTP/SAVPF 0|a=fingerprint:sha-256 A|", "RTP/AVPF 0|", Security::keyless},
      {"an answer that asks for keys", "RTP/AVP 0|", "RTP/SAVP 0|a=crypto:1 A inline:k|", Security::keyless},
      {"keys of both are told whatever the profile", "RTP/SAVP 0|a=crypto:1 A inline:k|",
       "RTP/AVP 0|a=crypto:1 A inline:l|", Security::sdes},
      {"MSRP of which one side drops TLS", "TCP/TLS/MSRP *|", "TCP/MSRP *|", Security::keyless},
      {"or adds it", "TCP/MSRP *|", "TCP/TLS/MSRP *|", Security::keyless},
      {"a secure profile without keys", "RTP/SAVP 0|", "RTP/SAVP 0|", Security::keyless},
      {"MSRP over TLS", "TCP/TLS/MSRP *|", "TCP/TLS/MSRP *|", Security::dtls},
      {"MSRP", "TCP/MSRP *|", "TCP/MSRP *|", Security::plain},
  };
  for (const Secured& secured : cases) {
    SCOPED_TRACE(secured.what);
    const AgreedSection agreed = only(offered(ours("1", std::string("m=audio 4000 ") + secured.local),
                                              theirs("1", std::string("m=audio 5000 ") + secured.remote)));
    EXPECT_EQ(sdp::textOf(agreed.security), sdp::textOf(secured.security));
    const AgreedSection reversed = only(answered(theirs("1", std::string("m=audio 5000 ") + secured.remote),
                                                 ours("1", std::string("m=audio 4000 ") + secured.local)));
    EXPECT_EQ(sdp::textOf(reversed.security), sdp::textOf(secured.security));
  }
}

struct Role {
  const char* offer;
  const char* answer;
  DtlsRole offerer;
};

TEST(DialogAgreed, TheRoleInDtlsIsThatOfTheAnswer) {
  const Role roles[] = {
      {"actpass", "active", DtlsRole::server}, {"actpass", "passive", DtlsRole::client},
      {"active", "passive", DtlsRole::client}, {"passive", "active", DtlsRole::server},
      {"actpass", "", DtlsRole::client},       {"passive", "", DtlsRole::server},
      {"", "passive", DtlsRole::client},       {"", "", DtlsRole::client},
  };
  for (const Role& role : roles) {
    SCOPED_TRACE(std::string(role.offer) + " " + role.answer);
    const auto section = [](std::string_view port, std::string_view setup) {
      std::string text = "m=audio " + std::string(port) + " UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-256 A|";
      if (!setup.empty()) text.append("a=setup:").append(setup).append("|");
      return text;
    };
    const AgreedSection offerer =
        only(offered(ours("1", section("4000", role.offer)), theirs("1", section("5000", role.answer))));
    EXPECT_EQ(sdp::textOf(offerer.dtlsRole), sdp::textOf(role.offerer));
    EXPECT_EQ(offerer.local.setup, role.offer);
    EXPECT_EQ(offerer.local.fingerprints, std::vector<std::string>{"sha-256 A"});
    const AgreedSection answerer =
        only(answered(theirs("1", section("5000", role.offer)), ours("1", section("4000", role.answer))));
    const DtlsRole opposite = role.offerer == DtlsRole::client ? DtlsRole::server : DtlsRole::client;
    EXPECT_EQ(sdp::textOf(answerer.dtlsRole), sdp::textOf(opposite));
  }
}

TEST(DialogAgreed, SectionsThatOneSideDisabledAreNotAccepted) {
  const Dialog dialog =
      offered(ours("1", "m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|a=mid:v|m=text 0 RTP/AVP 98|"),
              theirs("1", "m=audio|m=video 0 RTP/AVP 31|m=text 5004 RTP/AVP 98|"));
  const sdp::AgreedMedia agreed = dialog.agreed();
  ASSERT_EQ(agreed.sections.size(), 3U);
  for (const AgreedSection& section : agreed.sections) {
    EXPECT_FALSE(section.isAccepted);
    EXPECT_TRUE(section.local.codecs.empty());
    EXPECT_EQ(section.direction, Direction::inactive);
  }
  EXPECT_EQ(agreed.sections[1].media, "video");
  EXPECT_EQ(agreed.sections[1].mid, "v");
}

TEST(DialogAgreed, NothingIsAgreedBeforeAnAnswerNorByAnOffer) {
  Dialog dialog;
  EXPECT_TRUE(dialog.agreed().sections.empty());
  ASSERT_TRUE(dialog.offer(ours("1", kAudio)));
  EXPECT_TRUE(dialog.agreed().sections.empty());
  EXPECT_EQ(dialog.agreed(1).failure, DialogFailure::noSection);
  ASSERT_TRUE(dialog.receiveAnswer(theirs("1", kPeersAudio)));
  ASSERT_TRUE(dialog.receiveOffer(theirs("2", "m=audio 7000 RTP/AVP 8|")));
  EXPECT_EQ(dialog.agreed(1).remote.port, 5000);
  EXPECT_EQ(dialog.agreed(0).failure, DialogFailure::noSection);
  EXPECT_EQ(dialog.agreed(2).failure, DialogFailure::noSection);
}

}  // namespace
