#include <random>

#include "dialogTestSupport.h"
#include "sdpAnswerJudge.h"

// Two engines with a dialog each: what one sends the other receives, and both have agreed the same.

namespace {

using namespace dialogTest;
using sdp::AgreedSection;
using sdp::DtlsRole;

const std::string kPlain = ours("1", "m=audio 4000 RTP/AVP 0 8 101|a=rtpmap:101 telephone-event/8000|");
const std::string kPlainVideo = ours(
    "1",
    "m=audio 4000 RTP/AVP 96 8|a=rtpmap:96 opus/48000/2|m=video 4002 RTP/AVP 97 98|a=rtpmap:97 VP8/90000|"
    "a=rtpmap:98 H264/90000|a=fmtp:98 profile-level-id=42e01f;packetization-mode=1|");
const std::string kSecond = theirs(
    "1",
    "m=video 5002 RTP/AVP 100|a=rtpmap:100 H264/90000|a=fmtp:100 profile-level-id=42e01f;packetization-mode=1|"
    "m=audio 5000 RTP/AVP 8 111 96|a=rtpmap:111 opus/48000/2|a=rtpmap:96 telephone-event/8000|");
const std::string kSdes = ours(
    "1", "m=audio 4000 RTP/SAVP 8|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:b3Vycw|m=audio 4002 RTP/AVP 8|");
const std::string kPeersSdes = theirs(
    "1",
    "m=audio 5000 RTP/SAVP 8|a=crypto:4 AES_CM_128_HMAC_SHA1_80 inline:dGhlaXJz|m=audio 5002 RTP/AVP 8|");
const std::string kWeb = ours(
    "1",
    "a=group:BUNDLE 0 1|m=audio 9 UDP/TLS/RTP/SAVPF 111 8|c=IN IP4 0.0.0.0|a=mid:0|a=rtcp-mux|a=rtpmap:111 opus/48000/2|"
    "a=fingerprint:sha-256 AA:BB|a=setup:actpass|a=ice-ufrag:abcd|a=ice-pwd:abcdefghijklmnopqrstuv|"
    "m=video 9 UDP/TLS/RTP/SAVPF 96 97|c=IN IP4 0.0.0.0|a=mid:1|a=rtcp-mux|a=rtpmap:96 VP8/90000|a=rtcp-fb:96 nack pli|"
    "a=rtpmap:97 rtx/90000|a=fmtp:97 apt=96|a=fingerprint:sha-256 AA:BB|a=setup:actpass|"
    "a=ice-ufrag:abcd|a=ice-pwd:abcdefghijklmnopqrstuv|");
const std::string kPeersWeb = theirs(
    "1",
    "a=group:BUNDLE v a|m=video 9 UDP/TLS/RTP/SAVPF 120 121|c=IN IP4 0.0.0.0|a=mid:v|a=rtcp-mux|a=rtpmap:120 VP8/90000|"
    "a=rtcp-fb:120 nack pli|a=rtcp-fb:120 ccm fir|a=rtpmap:121 rtx/90000|a=fmtp:121 apt=120|a=fingerprint:sha-256 CC:DD|a=setup:actpass|"
    "a=ice-ufrag:efgh|a=ice-pwd:zyxwvutsrqponmlkjihgfe|m=audio 9 UDP/TLS/RTP/SAVPF 109|c=IN IP4 0.0.0.0|a=mid:a|a=rtcp-mux|"
    "a=rtpmap:109 opus/48000/2|a=fingerprint:sha-256 CC:DD|a=setup:actpass|a=ice-ufrag:efgh|a=ice-pwd:zyxwvutsrqponmlkjihgfe|");

/// One of both, with what it may want.
struct Engine {
  Dialog dialog;
  std::vector<std::string> descriptions;
};

Direction mirrored(Direction direction) {
  if (direction == Direction::sendonly) return Direction::recvonly;
  return direction == Direction::recvonly ? Direction::sendonly : direction;
}

DtlsRole mirrored(DtlsRole role) {
  if (role == DtlsRole::none) return role;
  return role == DtlsRole::client ? DtlsRole::server : DtlsRole::client;
}

void expectSameSide(const sdp::AgreedSide& a, const sdp::AgreedSide& b) {
  EXPECT_EQ(a.address, b.address);
  EXPECT_EQ(a.port, b.port);
  EXPECT_EQ(a.rtcpPort, b.rtcpPort);
  EXPECT_EQ(a.crypto, b.crypto);
  EXPECT_EQ(a.fingerprints, b.fingerprints);
  EXPECT_EQ(a.iceUfrag, b.iceUfrag);
  ASSERT_EQ(a.codecs.size(), b.codecs.size());
  for (std::size_t i = 0; i < a.codecs.size(); ++i) {
    EXPECT_EQ(a.codecs[i].payload, b.codecs[i].payload);
    EXPECT_EQ(a.codecs[i].name, b.codecs[i].name);
    EXPECT_EQ(a.codecs[i].fmtp, b.codecs[i].fmtp);
    EXPECT_EQ(a.codecs[i].feedback, b.codecs[i].feedback);
  }
}

void expectMirrored(const Dialog& one, const Dialog& other) {
  EXPECT_EQ(one.local(), other.remote());
  EXPECT_EQ(one.remote(), other.local());
  const sdp::AgreedMedia agreed = one.agreed();
  const sdp::AgreedMedia mirror = other.agreed();
  ASSERT_EQ(agreed.sections.size(), mirror.sections.size());
  for (std::size_t i = 0; i < agreed.sections.size(); ++i) {
    const AgreedSection& a = agreed.sections[i];
    const AgreedSection& b = mirror.sections[i];
    EXPECT_EQ(a.isAccepted, b.isAccepted);
    EXPECT_EQ(sdp::textOf(a.direction), sdp::textOf(mirrored(b.direction)));
    EXPECT_EQ(sdp::textOf(a.security), sdp::textOf(b.security));
    EXPECT_EQ(sdp::textOf(a.dtlsRole), sdp::textOf(mirrored(b.dtlsRole)));
    EXPECT_EQ(a.transportSection, b.transportSection);
    expectSameSide(a.local, b.remote);
    expectSameSide(a.remote, b.local);
    EXPECT_TRUE(!a.isAccepted || !a.local.codecs.empty());
  }
}

void expectGoodAnswer(std::string_view offer, std::string_view answer) {
  sdp::Document offered;
  sdp::Document answered;
  ASSERT_FALSE(offered.read(offer));
  ASSERT_FALSE(answered.read(answer));
  for (const sdp::Finding& finding : sdp::checkAnswer(offered, answered).findings) {
    ADD_FAILURE() << sdp::textOf(finding.rule) << ": " << finding.text << "\n" << offer << "\n" << answer;
  }
}

/// One offers, the other answers or refuses.
/// @return whether both agreed
bool exchange(Engine& one, Engine& other, std::minstd_rand& random) {
  const auto any = [&random](const Engine& engine) -> const std::string& {
    return engine.descriptions[random() % engine.descriptions.size()];
  };
  const std::uint32_t what = random() % 4;
  const sdp::LocalBody offer = what == 0   ? one.dialog.hold()
                               : what == 1 ? one.dialog.resume()
                                           : one.dialog.offer(any(one));
  if (!offer) {
    EXPECT_EQ(offer.failure, DialogFailure::noBody);
    return false;
  }
  const sdp::ReceivedOffer received = other.dialog.receiveOffer(offer.text);
  EXPECT_TRUE(received);
  const bool isExpected = received.origin == sdp::OriginChange::first ||
                          received.origin == sdp::OriginChange::raised ||
                          received.origin == sdp::OriginChange::refresh;
  EXPECT_TRUE(isExpected) << sdp::textOf(received.origin);
  EXPECT_EQ(offer.isRefresh, received.origin == sdp::OriginChange::refresh);
  const sdp::LocalBody answer = other.dialog.answer(any(other));
  if (!answer) {
    EXPECT_EQ(answer.failure, DialogFailure::nothingAccepted);
    EXPECT_TRUE(other.dialog.rollback());
    EXPECT_TRUE(one.dialog.rollback());
    return false;
  }
  expectGoodAnswer(offer.text, answer.text);
  EXPECT_TRUE(one.dialog.receiveAnswer(answer.text));
  return true;
}

void converse(const std::vector<std::string>& ones, const std::vector<std::string>& others,
              std::uint32_t seed) {
  std::minstd_rand random(seed);
  Engine one{{}, ones};
  Engine other{{}, others};
  int agreements = 0;
  for (int step = 0; step < 25; ++step) {
    SCOPED_TRACE(step);
    const bool isFirst = random() % 2 == 0;
    if (exchange(isFirst ? one : other, isFirst ? other : one, random)) ++agreements;
    expectMirrored(one.dialog, other.dialog);
    expectRoundTrip(one.dialog);
    if (testing::Test::HasFailure()) return;
  }
  EXPECT_GT(agreements, 5);
}

TEST(DialogPair, BothAgreeTheSameWhateverEitherOffers) {
  for (std::uint32_t seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE(seed);
    converse({kPlain, kPlainVideo}, {kSecond}, seed);
    converse({kSdes, kPlain}, {kPeersSdes}, seed);
    converse({kWeb}, {kPeersWeb}, seed);
    if (testing::Test::HasFailure()) return;
  }
}

TEST(DialogPair, RolesOfDtlsStayWhoeverOffers) {
  Engine one{{}, {kWeb}};
  Engine other{{}, {kPeersWeb}};
  const auto run = [](Engine& offerer, Engine& answerer, bool isPassive) {
    const sdp::LocalBody offer = offerer.dialog.offer(offerer.descriptions[0]);
    ASSERT_TRUE(answerer.dialog.receiveOffer(textOf(offer)));
    sdp::AnswerOptions options;
    options.isPassive = isPassive;
    ASSERT_TRUE(
        offerer.dialog.receiveAnswer(textOf(answerer.dialog.answer(answerer.descriptions[0], options))));
  };
  run(one, other, true);
  for (std::uint32_t section : {1U, 2U}) EXPECT_EQ(one.dialog.agreed(section).dtlsRole, DtlsRole::client);
  run(other, one, true);
  for (std::uint32_t section : {1U, 2U}) EXPECT_EQ(one.dialog.agreed(section).dtlsRole, DtlsRole::client);
  run(one, other, false);
  for (std::uint32_t section : {1U, 2U}) EXPECT_EQ(one.dialog.agreed(section).dtlsRole, DtlsRole::client);
}

TEST(DialogPair, AHoldOfBothEndsOneByOne) {
  Engine one{{}, {kPlain}};
  Engine other{{}, {kSecond}};
  const auto exchangeBody = [](const sdp::LocalBody& offer, Engine& offerer, Engine& answerer) {
    ASSERT_TRUE(answerer.dialog.receiveOffer(textOf(offer)));
    ASSERT_TRUE(offerer.dialog.receiveAnswer(textOf(answerer.dialog.answer(answerer.descriptions[0]))));
  };
  const auto direction = [&] { return one.dialog.agreed(1).direction; };
  exchangeBody(one.dialog.offer(kPlain), one, other);
  EXPECT_EQ(direction(), Direction::sendrecv);
  exchangeBody(one.dialog.hold(), one, other);
  EXPECT_EQ(direction(), Direction::sendonly);
  exchangeBody(other.dialog.hold(), other, one);
  EXPECT_EQ(direction(), Direction::inactive);
  exchangeBody(one.dialog.resume(), one, other);
  EXPECT_EQ(direction(), Direction::recvonly);
  exchangeBody(other.dialog.resume(), other, one);
  EXPECT_EQ(direction(), Direction::sendrecv);
}

}  // namespace
