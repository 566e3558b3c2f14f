#include <csignal>
#include <iostream>

#include "baresip.h"
#include "rtpengineProcess.h"

// Media that really flow: by way of rtpengine, between clients that people use and parties that the test plays.

namespace {

constexpr milliseconds kLongestWait{5'000};

const std::string kHost = "127.0.0.1";
const std::vector<std::string> kSecureModules = {"srtp", "dtls_srtp", "ice"};

std::string bodyIn(const std::string& message) { return message.substr(message.find("\r\n\r\n") + 4); }

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

/// A relay, and an engine between two clients.
class RelayedMedia : public Calls {
 protected:
  void start(const BaresipSetup& alice, const BaresipSetup& bob, std::vector<std::string> options = {}) {
    bob_ = std::make_unique<Baresip>(folder_, "bob", std::vector<std::string>{}, bob);
    startEngine(bob_->port(), std::move(options));
    const std::vector<std::string> dial = {"-e", "/dial sip:bob@" + engine_->address()};
    alice_ = std::make_unique<Baresip>(folder_, "alice", dial, alice);
    ASSERT_TRUE(waitUntil([&] { return engine_->counters().at("established") == 1; }, kLongestCall));
  }

  void startEngine(const std::string& target, std::vector<std::string> options) {
    const std::vector<std::string> media = relay_->options();
    options.insert(options.end(), media.begin(), media.end());
    options.insert(options.end(),
                   {"--policy", folder_.write("policy", "audio-codecs = PCMA, PCMU, telephone-event\n")});
    engine_ = std::make_unique<Engine>(folder_, kHost, target, options);
    ASSERT_FALSE(engine_->address().empty());
  }

  void TearDown() override {
    if (HasFailure() && alice_) std::cout << alice_->process().output() << bob_->process().output();
    if (HasFailure()) std::cout << relay_->process().output();
    Calls::TearDown();
  }

  std::unique_ptr<RtpengineProcess> relay_ = std::make_unique<RtpengineProcess>(folder_);
  std::unique_ptr<Engine> engine_;
  std::unique_ptr<Baresip> bob_;
  std::unique_ptr<Baresip> alice_;
};

/// A party whose SIP and whose media the test plays.
struct Party {
  RawParty sip;
  RawParty media;

  std::string body(int version, const std::string& formats) const {
    return "v=0\r\no=raw 21 " + std::to_string(version) +
           " IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\nm=audio " + media.port() +
           " RTP/AVP " + formats + "\r\n";
  }
};

/// The port of the first m-line.
std::string mediaPort(const std::string& body) {
  const std::size_t media = body.find("m=audio ") + 8;
  return body.substr(media, body.find(' ', media) - media);
}

std::string rtp(int payload, int sequence) {
  std::string packet = {
      '\x80', static_cast<char>(payload), 0, static_cast<char>(sequence), 0, 0, 0, 0, 1, 2, 3, 4};
  packet[7] = static_cast<char>(sequence);
  return packet + std::string(160, '\x55');
}

/// Sends until something of the payload arrives at the other side.
bool flows(const Party& from, const std::string& body, const Party& to, int payload) {
  const std::string start = {'\x80', static_cast<char>(payload)};
  for (int sequence = 1; sequence < 50; ++sequence) {
    from.media.send(kHost + ":" + mediaPort(body), rtp(payload, sequence));
    if (!to.media.receive(start, "", milliseconds{50}).empty()) return true;
  }
  return false;
}

/// What a browser of today offers for a call with a picture.
const std::string kBrowserOffer =
    "v=0\r\no=- 6310542285512403021 2 IN IP4 127.0.0.1\r\ns=-\r\nt=0 0\r\na=group:BUNDLE 0 1\r\n"
    "a=extmap-allow-mixed\r\na=msid-semantic: WMS stream\r\n"
    "m=audio 9 UDP/TLS/RTP/SAVPF 111 63 9 0 8 13 126\r\nc=IN IP4 0.0.0.0\r\na=rtcp:9 IN IP4 0.0.0.0\r\n"
    "a=ice-ufrag:Qv1c\r\na=ice-pwd:k2LJyA0cXvMt5GhWbEn3sRdP\r\na=ice-options:trickle\r\n"
    "a=fingerprint:sha-256 "
    "6A:1C:55:0E:98:B7:23:FD:41:8C:02:9E:77:D3:5B:60:AF:14:C9:3E:82:F6:0B:D7:49:A5:31:EC:78:06:BD:92\r\n"
    "a=setup:actpass\r\na=mid:0\r\na=extmap:1 urn:ietf:params:rtp-hdrext:ssrc-audio-level\r\n"
    "a=extmap:4 urn:ietf:params:rtp-hdrext:sdes:mid\r\na=sendrecv\r\na=msid:stream track0\r\na=rtcp-mux\r\n"
    "a=rtpmap:111 opus/48000/2\r\na=rtcp-fb:111 transport-cc\r\na=fmtp:111 minptime=10;useinbandfec=1\r\n"
    "a=rtpmap:63 red/48000/2\r\na=fmtp:63 111/111\r\na=rtpmap:9 G722/8000\r\na=rtpmap:0 PCMU/8000\r\n"
    "a=rtpmap:8 PCMA/8000\r\na=rtpmap:13 CN/8000\r\na=rtpmap:126 telephone-event/8000\r\n"
    "a=ssrc:2271360021 cname:Zb0\r\na=candidate:1 1 udp 2122260223 127.0.0.1 50404 typ host generation 0\r\n"
    "m=video 9 UDP/TLS/RTP/SAVPF 96 97\r\nc=IN IP4 0.0.0.0\r\na=rtcp:9 IN IP4 0.0.0.0\r\n"
    "a=ice-ufrag:Qv1c\r\na=ice-pwd:k2LJyA0cXvMt5GhWbEn3sRdP\r\na=ice-options:trickle\r\n"
    "a=fingerprint:sha-256 "
    "6A:1C:55:0E:98:B7:23:FD:41:8C:02:9E:77:D3:5B:60:AF:14:C9:3E:82:F6:0B:D7:49:A5:31:EC:78:06:BD:92\r\n"
    "a=setup:actpass\r\na=mid:1\r\na=sendrecv\r\na=msid:stream track1\r\na=rtcp-mux\r\na=rtcp-rsize\r\n"
    "a=rtpmap:96 VP8/90000\r\na=rtcp-fb:96 nack pli\r\na=rtpmap:97 rtx/90000\r\na=fmtp:97 apt=96\r\n"
    "a=ssrc-group:FID 991 992\r\na=ssrc:991 cname:Zb0\r\na=ssrc:992 cname:Zb0\r\n";

}  // namespace

// Both clients prefer PCMU, the policy wants PCMA first.
TEST_F(RelayedMedia, FlowsBothWaysWithTheAgreedCodecAndStopsOnHold) {
  start(talking(), talking());
  ASSERT_TRUE(relay_->hasFlow());
  EXPECT_EQ(relay_->side("-c").codec, "PCMA/8000");
  EXPECT_EQ(relay_->side("-t").codec, "PCMA/8000");

  alice_->command("hold");
  ASSERT_TRUE(waitUntil([&] { return has(bob_->process().output(), "a=sendonly"); }, kLongestCall));
  EXPECT_TRUE(relay_->isSilent("-t"));
  alice_->command("resume");
  EXPECT_TRUE(relay_->hasFlow());

  alice_->process().signal(SIGINT);
  EXPECT_EQ(alice_->process().wait(kLongestStart), 0);
  EXPECT_TRUE(waitUntil([&] { return relay_->calls() == 0; }, kLongestCall));
  const Counters counters = engine_->stop();
  EXPECT_EQ(counters.at("ended"), 1);
  EXPECT_EQ(counters.at("reoffers"), 2);
  EXPECT_EQ(counters.at("media_requests"), 6);
  EXPECT_EQ(counters.at("media_failures"), 0);
}

TEST_F(RelayedMedia, FlowsFromSrtpWithKeysInTheBodyToPlainRtp) {
  start(talking(";mediaenc=srtp-mand", {"srtp"}), talking(),
        {"--media-caller", "srtp", "--media-target", "rtp"});
  ASSERT_TRUE(relay_->hasFlow());
  EXPECT_EQ(relay_->side("-c").crypto, "AES_CM_128_HMAC_SHA1_80");
  EXPECT_EQ(relay_->side("-t").crypto, "");
  EXPECT_TRUE(has(alice_->process().output(), "SRTP is Enabled"));
  EXPECT_TRUE(has(bob_->body("\nINVITE sip:"), " RTP/AVP "));
  EXPECT_FALSE(has(bob_->body("\nINVITE sip:"), "a=crypto"));
}

TEST_F(RelayedMedia, FlowsFromPlainRtpToSrtpWithKeysInTheBody) {
  start(talking(), talking(";mediaenc=srtp-mand", {"srtp"}),
        {"--media-caller", "rtp", "--media-target", "srtp"});
  ASSERT_TRUE(relay_->hasFlow());
  EXPECT_EQ(relay_->side("-c").crypto, "");
  EXPECT_NE(relay_->side("-t").crypto, "");
  EXPECT_TRUE(has(bob_->process().output(), "SRTP is Enabled"));
}

// This client tells the address that ICE has found in a re-INVITE.
TEST_F(RelayedMedia, FlowsFromDtlsAndIceToPlainRtp) {
  start(talking(";mediaenc=dtls_srtp;medianat=ice", kSecureModules), talking(),
        {"--media-caller", "webrtc", "--media-target", "rtp"});
  ASSERT_TRUE(relay_->hasFlow());
  EXPECT_NE(relay_->side("-c").crypto, "");
  EXPECT_EQ(relay_->side("-t").crypto, "");
  EXPECT_EQ(relay_->side("-t").codec, "PCMA/8000");
  EXPECT_TRUE(has(alice_->process().output(), "DTLS-SRTP complete (audio/RTP)"));
  EXPECT_TRUE(has(alice_->process().output(), "connectivity check is complete"));
  const std::string offer = bob_->body("\nINVITE sip:");
  EXPECT_TRUE(has(offer, " RTP/AVP "));
  for (const char* const unwanted : {"fingerprint", "setup", "ice-", "candidate"})
    EXPECT_FALSE(has(offer, unwanted));
}

TEST_F(RelayedMedia, FlowsFromPlainRtpToDtlsAndIce) {
  start(talking(), talking(";mediaenc=dtls_srtp;medianat=ice", kSecureModules),
        {"--media-caller", "rtp", "--media-target", "webrtc"});
  ASSERT_TRUE(relay_->hasFlow());
  EXPECT_EQ(relay_->side("-c").crypto, "");
  EXPECT_NE(relay_->side("-t").crypto, "");
  EXPECT_TRUE(has(bob_->process().output(), "DTLS-SRTP complete (audio/RTP)"));
}

TEST_F(RelayedMedia, APhoneCanAnswerABrowser) {
  const Party browser;
  const Party phone;
  startEngine(phone.sip.port(), {"--media-caller", "webrtc", "--media-target", "rtp"});
  browser.sip.request(engine_->address(), {.body = kBrowserOffer});
  const std::string invited = phone.sip.receive("INVITE ", "", kLongestWait);
  const std::string offer = bodyIn(invited);
  EXPECT_TRUE(has(offer, " RTP/AVP 8 0 126 13\r\n")) << offer;
  EXPECT_TRUE(has(offer, "c=IN IP4 127.0.0.1\r\n")) << offer;
  for (const char* const unwanted :
       {"fingerprint", "setup", "ice-", "candidate", "BUNDLE", "rtcp-mux", "extmap:", "SAVPF", " 9 "})
    EXPECT_FALSE(has(offer, unwanted)) << unwanted << "\n" << offer;

  std::string answer =
      phone.body(1, "8 126") + "a=rtpmap:126 telephone-event/8000\r\nm=video 0 RTP/AVP 96\r\n";
  phone.sip.respond(engine_->address(), invited, "200 OK", answer);
  const std::string response = browser.sip.receive("SIP/2.0 200 ", "", kLongestWait);
  answer = bodyIn(response);
  EXPECT_TRUE(has(answer, " UDP/TLS/RTP/SAVPF 8 126\r\n")) << answer;
  EXPECT_TRUE(has(answer, "\r\nm=video 0 ")) << answer;
  for (const char* const wanted :
       {"\r\na=fingerprint:sha-256 ", "\r\na=setup:", "\r\na=ice-ufrag:", "\r\na=ice-pwd:",
        "\r\na=candidate:", "\r\na=rtcp-mux\r\n", "\r\na=mid:0\r\n"})
    EXPECT_TRUE(has(answer, wanted)) << wanted << "\n" << answer;
  EXPECT_FALSE(has(engine_->log(), "(error)")) << engine_->log();
}

TEST_F(RelayedMedia, ABodyKeepsBytesThatAreNoUtf8) {
  const Party caller;
  const Party target;
  startEngine(target.sip.port(), {});
  const std::string name =
      "\r\ns=Gr\xFC\xDF"
      "e\r\n";
  caller.sip.request(engine_->address(), {.body = replaced(caller.body(1, "0 8"), "\r\ns=-\r\n", name)});
  const std::string invited = target.sip.receive("INVITE ", "", kLongestWait);
  EXPECT_TRUE(has(bodyIn(invited), name)) << invited;
  target.sip.respond(engine_->address(), invited, "200 OK",
                     replaced(target.body(1, "8"), "\r\ns=-\r\n", name));
  const std::string response = caller.sip.receive("SIP/2.0 200 ", "", kLongestWait);
  EXPECT_TRUE(has(bodyIn(response), name)) << response;
}

// It takes no such number of layers.
TEST_F(RelayedMedia, ABodyThatItCannotReadIsNotAcceptable) {
  const Party caller;
  startEngine(freePort(), {});
  const std::string body = replaced(caller.body(1, "0 8"), " RTP/AVP", "/200 RTP/AVP");
  const std::string response = caller.sip.ask(engine_->address(), {.body = body}, kLongestWait);
  EXPECT_EQ(statusOf(response), 488);
  EXPECT_TRUE(has(engine_->log(), "media relay refused a body: Failed to parse SDP")) << engine_->log();
}

TEST_F(RelayedMedia, ACodecCanChangeWithinACall) {
  const Party caller;
  const Party target;
  startEngine(target.sip.port(), {});
  caller.sip.request(engine_->address(), {.body = caller.body(1, "0 8")});
  std::string invited = target.sip.receive("INVITE ", "", kLongestWait);
  target.sip.respond(engine_->address(), invited, "200 OK", target.body(1, "0"));
  std::string response = caller.sip.receive("SIP/2.0 200 ", "", kLongestWait);
  const std::string tag = toTagOf(response);
  caller.sip.request(engine_->address(), {.method = "ACK", .toTag = tag});
  EXPECT_TRUE(flows(caller, bodyIn(response), target, 0));
  EXPECT_TRUE(flows(target, bodyIn(invited), caller, 0));
  EXPECT_EQ(relay_->side("-c").codec, "PCMU/8000");

  caller.sip.request(engine_->address(), {.cseq = 2, .toTag = tag, .body = caller.body(2, "8")});
  invited = target.sip.receive("INVITE ", "", kLongestWait);
  EXPECT_TRUE(has(bodyIn(invited), " RTP/AVP 8\r\n")) << invited;
  target.sip.respond(engine_->address(), invited, "200 OK", target.body(2, "8"));
  response = caller.sip.receive("SIP/2.0 200 ", "CSeq: 2 INVITE", kLongestWait);
  caller.sip.request(engine_->address(), {.method = "ACK", .cseq = 2, .toTag = tag});
  EXPECT_TRUE(flows(caller, bodyIn(response), target, 8));
  EXPECT_TRUE(flows(target, bodyIn(invited), caller, 8));
  EXPECT_EQ(relay_->side("-c").codec, "PCMA/8000");
  EXPECT_EQ(relay_->side("-t").codec, "PCMA/8000");
}

TEST_F(RelayedMedia, ARelayThatIsStartedAnewHasItsCallsBackWithTheirNextReInvite) {
  start(talking(), talking());
  ASSERT_TRUE(relay_->hasFlow());
  relay_->process().signal(SIGKILL);
  EXPECT_EQ(relay_->process().wait(kLongestStart), 128 + SIGKILL);
  ASSERT_TRUE(waitUntil([&] { return engine_->counters().at("media_gone") == 1; }, kLongestWait));
  const RawParty other;
  const std::string response = other.ask(engine_->address(), {.body = "v=0\r\n"}, kLongestWait);
  EXPECT_EQ(statusOf(response), 503);
  EXPECT_EQ(headerOf(response, "Warning"), "399 " + engine_->address() + " \"the media relay is gone\"");
  EXPECT_EQ(engine_->counters().at("active"), 1);

  relay_ = std::make_unique<RtpengineProcess>(folder_, relay_->port());
  ASSERT_TRUE(waitUntil([&] { return has(engine_->log(), "media relay is back"); }, kLongestWait));
  EXPECT_EQ(relay_->calls(), 0U);
  alice_->command("hold");
  EXPECT_TRUE(waitUntil([&] { return has(bob_->process().output(), "a=sendonly"); }, kLongestCall));
  alice_->command("resume");
  EXPECT_TRUE(relay_->hasFlow());
}
