#include <algorithm>
#include <cctype>

#include "calls.h"
#include "rawParty.h"

// Bodies in which what the policy forbids is written so that an edit does not find it. None of them may go out.

namespace {

constexpr milliseconds kLongestWait{5'000};
constexpr milliseconds kAnswered{300};  ///< by the engine itself
constexpr milliseconds kSilence{20};
constexpr int kMostlyRefused = 30;

const std::string kHead = "v=0\r\no=- 1 1 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n";
const std::string kAudio = "m=audio 49170 RTP/AVP 8\r\n";
const std::string kKey = "AES_CM_128_HMAC_SHA1_80 inline:PS1uQCVeeCFCanVmcjkpPywjNWhcYD0mXXtxaVBR";
/// An m-line without a port of its own, which uses that of another one.
const std::string kBundled = "a=mid:1\r\na=bundle-only\r\n";
const std::string kVideo = "m=video 42000 RTP/AVP 97\r\na=rtpmap:97 H264/90000\r\n";
const std::string kCandidate = "1 1 UDP 2130706431 10.0.0.1 49170 typ host";

const std::string kPlain = "security = plain\n";
const std::string kSecure = "security = secure\n";
const std::string kNoVideo = "video = off\n";
const std::string kHigher = "video = cap 512 3.1\n";
const std::string kNoIce = "ice = remove\n";
const std::string kFour = "address-family = ipv4\n";
const std::string kAddress = "connection-address = 198.51.100.1\n";
const std::string kCodecs = "audio-codecs = PCMA\n";
const std::string kCapped = "video = cap 500 1.3\n";

struct Probe {
  const char* name;
  std::string policy;
  std::string body;
};

/// What nothing that goes out under a policy has in it, in lower case.
const std::map<std::string, std::vector<std::string>> kForbidden = {
    {kPlain, {"crypto", "inline:", "key-mgmt", "fingerprint", "zrtp", "savp", "tls", "wss", "k="}},
    {kSecure, {"49170", "udp/bfcp", "rtp/avp", "bundle-only"}},
    {kNoVideo, {"42000", "bundle-only"}},
    {kNoIce, {"ice-", "candidate"}},
    {kFour, {"2001:db8"}},
    {kAddress, {"c=in ip4 192", "10.0.0.1"}},
    {kCodecs, {"49172", "bundle-only", "rmcap", "omcap"}},
    {kHigher, {"42e033", "42e0ff"}},
    {kCapped, {"42e01f"}},
};

/// @return the first of the words that stands in a text, in any case
std::string wordIn(const std::string& text, const std::vector<std::string>& words) {
  const auto same = [](unsigned char one, unsigned char other) { return std::tolower(one) == other; };
  for (const std::string& word : words) {
    if (std::search(text.begin(), text.end(), word.begin(), word.end(), same) != text.end()) return word;
  }
  return "";
}

const Probe kProbes[] = {
    {"a key in a last line without end", kPlain, kHead + kAudio + "a=crypto:1 " + kKey},
    {"a key in upper case", kPlain, kHead + kAudio + "a=CRYPTO:1 " + kKey + "\r\n"},
    {"a key behind a blank", kPlain, kHead + kAudio + "a= crypto:1 " + kKey + "\r\n"},
    {"a key with a blank before the colon", kPlain, kHead + kAudio + "a=crypto :1 " + kKey + "\r\n"},
    {"a key behind a CR", kPlain, kHead + kAudio + "a=x\ra=crypto:1 " + kKey + "\r\n"},
    {"a key of the session", kPlain,
     "v=0\r\no=- 1 1 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\na=Crypto:1 " + kKey +
         "\r\n" + kAudio},
    {"a key in a k-line", kPlain, kHead + kAudio + "k=clear:c2VjcmV0\r\n"},
    {"a key in the session's k-line", kPlain, kHead + "k=prompt\r\n" + kAudio},
    {"a key in a capability", kPlain, kHead + kAudio + "a=acap:1 crypto:1 " + kKey + "\r\n"},
    {"a key in a capability behind a tab", kPlain, kHead + kAudio + "a=acap:1\tcrypto:1 " + kKey + "\r\n"},
    {"a secure transport to choose", kPlain, kHead + kAudio + "a=tcap:1 RTP/SAVP\r\na=pcfg:1 t=1\r\n"},
    {"a secure transport for all to choose", kPlain,
     kHead + "a=TCAP:1 RTP/AVP UDP/TLS/RTP/SAVP\r\n" + kAudio + "a=pcfg:1 t=2\r\n"},
    {"a secure section that shares a port", kPlain,
     kHead + kAudio + "m=Audio 0 rtp/savp 8\r\na=Bundle-Only\r\n"},
    {"a web socket with TLS", kPlain, kHead + kAudio + "m=application 49172 TCP/WSS/BFCP *\r\n"},
    {"a key of MIKEY in upper case", kPlain, kHead + kAudio + "a=KEY-MGMT:mikey AQAFgM0XflABAAAA\r\n"},
    {"a key in a refused section", kPlain,
     kHead + kAudio + "m=audio 0 RTP/AVP 8\r\na=Crypto:1 " + kKey + "\r\n"},
    {"a fingerprint in upper case", kPlain, kHead + kAudio + "a=FINGERPRINT:sha-256 AA:BB\r\n"},
    {"a key for ZRTP", kPlain, kHead + kAudio + "a=zrtp-hash:1.10 fe30efd02423cb054e50efd0248742ac\r\n"},
    {"a secure transport in lower case", kPlain, kHead + kAudio + "m=audio 49172 rtp/savp 8\r\n"},
    {"a secure transport in mixed case", kPlain, kHead + kAudio + "m=audio 49172 RTP/sAVPF 8\r\n"},
    {"a secure transport of other media", kPlain, kHead + kAudio + "m=message 49172 TCP/TLS/MSRP *\r\n"},
    {"a plain transport in lower case", kSecure,
     kHead + "m=audio 49172 RTP/SAVP 8\r\na=crypto:1 " + kKey + "\r\nm=audio 49170 rtp/avp 8\r\n"},
    {"a plain transport of other media", kSecure,
     kHead + "m=audio 49172 RTP/SAVP 8\r\na=crypto:1 " + kKey + "\r\nm=application 49170 UDP/BFCP *\r\n"},
    {"a plain transport that uses another section's port", kSecure,
     kHead + "a=group:BUNDLE 0 1\r\nm=audio 49172 RTP/SAVP 8\r\na=mid:0\r\na=crypto:1 " + kKey +
         "\r\nm=audio 0 rtp/avp 8\r\n" + kBundled},
    {"a plain transport to choose", kSecure,
     kHead + "m=audio 49172 RTP/SAVP 8\r\na=crypto:1 " + kKey + "\r\na=tcap:1 RTP/AVP\r\na=pcfg:1 t=1\r\n"},
    {"a plain section that shares a port", kSecure,
     kHead + "m=audio 49172 RTP/SAVP 8\r\na=crypto:1 " + kKey +
         "\r\nm=application 0 UDP/BFCP *\r\na=bundle-only\r\n"},
    {"video with a zero before its port", kNoVideo, kHead + kAudio + "m=video 042000 RTP/AVP 97\r\n"},
    {"video in upper case", kNoVideo, kHead + kAudio + "m=VIDEO 42000 RTP/AVP 97\r\n"},
    {"video behind two blanks", kNoVideo, kHead + kAudio + "m=video  42000 RTP/AVP 97\r\n"},
    {"video behind a blank", kNoVideo, kHead + kAudio + "m= video 42000 RTP/AVP 97\r\n"},
    {"video in a last line without end", kNoVideo, kHead + kAudio + "m=Video 42000 RTP/AVP 97"},
    {"video behind a CR", kNoVideo, kHead + kAudio + "a=x\rm=video 42000 RTP/AVP 97\r\n"},
    {"video with a number of ports", kNoVideo, kHead + kAudio + "m=Video 0042000/2 RTP/AVP 97\r\n"},
    {"video behind a control character", kNoVideo, kHead + kAudio + "m=video\x0b 42000 RTP/AVP 97\r\n"},
    {"video of a higher level in upper case", kHigher,
     kHead + kAudio + kVideo + "a=fmtp:97 PROFILE-LEVEL-ID=42e033\r\n"},
    {"video of a higher level behind blanks", kHigher,
     kHead + kAudio + kVideo + "a=fmtp:97 packetization-mode=1; profile-level-id = 42E033\r\n"},
    {"video of a level that is none", kHigher,
     kHead + kAudio + kVideo + "a=fmtp:97 profile-level-id=42e0ff\r\n"},
    {"a candidate in upper case", kNoIce, kHead + kAudio + "a=CANDIDATE:" + kCandidate + "\r\n"},
    {"a candidate behind a blank", kNoIce, kHead + kAudio + "a= candidate:" + kCandidate + "\r\n"},
    {"a candidate in a last line without end", kNoIce, kHead + kAudio + "a=Candidate:" + kCandidate},
    {"a candidate without a colon", kNoIce, kHead + kAudio + "a=candidate " + kCandidate + "\r\n"},
    {"a password behind a CR", kNoIce, kHead + kAudio + "a=x\ra=ice-pwd:asd88fgpdd777uzjYhagZg\r\n"},
    {"a remote candidate alone", kNoIce, kHead + kAudio + "a=Remote-Candidates:1 10.0.0.1 45664\r\n"},
    {"a session name that looks like an address", kAddress,
     "v=0\r\no=- 1 1 IN IP4 192.0.2.10\r\ns=c=\r\nc=in ip4 192.0.2.10\r\nt=0 0\r\n" + kAudio},
    {"an address behind a CR", kAddress, kHead + kAudio + "i=x\rc=IN IP4 10.0.0.1\r\n"},
    {"an address of the other family in a section", kFour,
     kHead + kAudio + "m=audio 49172 RTP/AVP 8\r\nc=IN IP6 2001:db8::10\r\n"},
    {"an address of the other family in lower case", kFour,
     kHead + kAudio + "m=audio 49172 RTP/AVP 8\r\nc=in ip6 2001:db8::10\r\n"},
    {"an address under the other family's name", kFour,
     kHead + kAudio + "m=audio 49172 RTP/AVP 8\r\nc=IN IP4 2001:db8::10\r\n"},
    {"a candidate of the other family", kFour,
     kHead + kAudio + "a=Candidate:1 1 UDP 1 2001:db8::10 49170 typ host\r\n"},
    {"a candidate in brackets", kFour,
     kHead + kAudio + "a=Candidate:1 1 UDP 1 [2001:db8::10] 49170 typ host\r\n"},
    {"an address of the other family with a zone", kFour,
     kHead + kAudio + "m=audio 49172 RTP/AVP 8\r\nc=IN IP4 2001:db8::10%eth0\r\n"},
    {"an alternative address of the other family", kFour,
     kHead + kAudio + "a=altc:1 IP6 2001:db8::10 45678\r\n"},
    {"an address of the other family to choose", kFour,
     kHead + kAudio + "a=ccap:1 IN IP6 2001:db8::10\r\na=pcfg:1 c=1\r\n"},
    {"RTCP at the other family", kFour, kHead + kAudio + "a=rtcp:53020 IN IP6 2001:db8::10\r\n"},
    {"a codec of a second section in upper case", kCodecs, kHead + kAudio + "m=AUDIO 49172 RTP/AVP 0\r\n"},
    {"a codec that uses another section's port", kCodecs,
     kHead + "a=group:BUNDLE 0 1\r\n" + kAudio + "a=mid:0\r\nm=audio 0 RTP/AVP 0\r\n" + kBundled},
    {"a codec to choose in upper case", kCodecs, kHead + kAudio + "a=RMCAP:1 PCMU/8000\r\na=pcfg:1 m=1\r\n"},
    {"a codec for all to choose behind a blank", kCodecs, kHead + "a= omcap:2 opus\r\n" + kAudio},
    {"a codec behind a control character", kCodecs, kHead + kAudio + "m=audio\x0b 49172 RTP/AVP 0\r\n"},
    {"a codec under a number with a zero in front", kCodecs,
     kHead + "m=audio 49172 RTP/AVP 8\r\na=rtpmap:08 G722/8000\r\n"},
    {"a level in upper case", kCapped,
     kHead + kAudio +
         "m=video 42000 RTP/AVP 97\r\na=RTPMAP:97 H264/90000\r\na=FMTP:97 PROFILE-LEVEL-ID = 42E01F\r\n"},
    {"a level of video in upper case", kCapped,
     kHead + kAudio +
         "m=VIDEO 42000 RTP/AVP 97\r\na=rtpmap:97 H264/90000\r\na=fmtp:97 profile-level-id=42e01f\r\n"},
    {"a codec that shares a port", kCodecs,
     kHead + kAudio + "m=AUDIO 0 RTP/AVP 0\r\na=bundle-only\r\na=x:49172\r\n"},
    {"a section without an allowed codec", kCodecs, kHead + kAudio + "m=audio 49172 RTP/AVP 0\r\n"},
};

/// Bodies that come near, and are allowed.
const Probe kAllowed[] = {
    {"a name with the words", kPlain,
     "v=0\r\no=- 1 1 IN IP4 192.0.2.10\r\ns=k=a=crypto:1\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n" + kAudio},
    {"a refused secure section", kPlain, kHead + kAudio + "m=audio 0 RTP/SAVP 8\r\n"},
    {"a connection of TCP", kPlain, kHead + kAudio + "m=message 49172 TCP/MSRP *\r\na=setup:active\r\n"},
    {"refused video", kNoVideo, kHead + kAudio + "m=video 0 RTP/AVP 97\r\n"},
    {"refused video with two zeros", kNoVideo, kHead + kAudio + "m=video 00 RTP/AVP 97\r\n"},
    {"video", kNoVideo, kHead + kAudio + "m=video 42000 RTP/AVP 97\r\n"},
    {"video that uses another section's port", kNoVideo,
     kHead + "a=group:BUNDLE 0 1\r\n" + kAudio + "a=mid:0\r\nm=video 0 RTP/AVP 97\r\n" + kBundled},
    {"video of a higher level", kHigher,
     kHead + kAudio + kVideo + "a=fmtp:97 profile-level-id=42e033;packetization-mode=1\r\n"},
    {"video of the level", kHigher,
     kHead + kAudio + kVideo + "a=fmtp:97 Profile-Level-Id=42e01F;packetization-mode=1\r\n"},
    {"video of another encoding with levels", kHigher,
     kHead + kAudio +
         "m=video 42000 RTP/AVP 98\r\na=rtpmap:98 MP4V-ES/90000\r\na=fmtp:98 PROFILE-LEVEL-ID=245\r\n"},
    {"ICE", kNoIce,
     kHead + kAudio + "a=candidate:" + kCandidate +
         "\r\na=ice-ufrag:abcd\r\na=ice-pwd:asd88fgpdd777uzjYhagZg\r\na=end-of-candidates\r\n"},
    {"video that is inactive", kNoVideo, kHead + kAudio + "m=video 42000 RTP/AVP 97\r\na=inactive\r\n"},
    {"video that shares a port", kNoVideo,
     kHead + "a=group:BUNDLE 1 2\r\n" + kAudio +
         "a=mid:1\r\nm=video 0 RTP/AVP 97\r\na=mid:2\r\na=bundle-only\r\n"},
    {"a level that is lowered", kCapped,
     kHead + kAudio +
         "m=video 42000 RTP/AVP 97\r\na=rtpmap:97 H264/90000\r\na=fmtp:97 profile-level-id=42e01f\r\n"},
    {"level 1b", kCapped,
     kHead + kAudio +
         "m=video 42000 RTP/AVP 97\r\na=rtpmap:97 H264/90000\r\na=fmtp:97 profile-level-id=42f00b\r\n"},
    {"a profile of another codec", kCapped,
     kHead + kAudio +
         "m=video 42000 RTP/AVP 97\r\na=rtpmap:97 MP4V-ES/90000\r\na=fmtp:97 profile-level-id=245\r\n"},
    {"candidates of both families", kFour,
     kHead + kAudio + "a=candidate:" + kCandidate +
         "\r\na=candidate:2 1 UDP 1 2001:db8::10 49170 typ host\r\n"},
    {"a section on hold", kAddress, kHead + kAudio + "c=IN IP4 0.0.0.0\r\n"},
    {"an inactive section", kAddress, kHead + kAudio + "a=inactive\r\n"},
    {"the later form of ICE", kNoIce, kHead + "a=ice-pacing:50\r\n" + kAudio},
    {"an answer that tells of another address than that of ICE", kNoIce,
     kHead + kAudio + "a=ice-mismatch\r\n"},
    {"an address in each section", kAddress,
     kHead + kAudio + "c=IN IP4 10.0.0.1\r\nm=audio 49172 RTP/AVP 8\r\nc=IN IP4 10.0.0.2\r\n"},
    {"a refused section of the other family", kFour,
     kHead + kAudio + "m=audio 0 RTP/AVP 8\r\nc=IN IP6 2001:db8::10\r\n"},
    {"codecs to choose", kCodecs,
     kHead + "a=rmcap:1 PCMU/8000\r\n" + kAudio + "a=omcap:2 opus\r\na=pcfg:1 m=1\r\n"},
    {"a refused section of another codec", kCodecs, kHead + kAudio + "m=audio 0 RTP/AVP 0\r\n"},
    {"codecs that need no map", kCodecs, kHead + "m=audio 49170 RTP/AVP 0 8 13\r\n"},
};

/// What of an allowed body does not go out; a refused section may be of any kind.
std::vector<std::string> goesIn(const Probe& probe) {
  const bool whole = probe.body.find("m=audio 0 ") != std::string::npos || probe.policy == kPlain;
  return whole ? std::vector<std::string>() : kForbidden.at(probe.policy);
}

class Forbidden : public Calls {
 protected:
  /// @return the engine with a policy, started when it is wanted first
  Engine& engineWith(const std::string& policy) {
    std::unique_ptr<Engine>& engine = engines_[policy];
    const std::string name = "engine" + std::to_string(engines_.size());
    if (!engine)
      engine = std::make_unique<Engine>(
          folder_, "127.0.0.1", target_.port(),
          std::vector<std::string>{"--policy", folder_.write(name + ".policy", policy)}, "0", name);
    return *engine;
  }

  const RawParty caller_;
  const RawParty target_;
  std::map<std::string, std::unique_ptr<Engine>> engines_;
};

}  // namespace

// Most of them are refused; a few an edit does find.
TEST_F(Forbidden, OffersDoNotGoOut) {
  int number = 0;
  int refused = 0;
  for (const Probe& probe : kProbes) {
    SCOPED_TRACE(probe.name);
    Engine& engine = engineWith(probe.policy);
    caller_.request(engine.address(), {.call = ++number, .body = probe.body});
    const std::string response =
        caller_.receive("SIP/2.0 488 ", "\r\nCall-ID: " + std::to_string(number) + "@", kAnswered);
    const std::string invited = target_.receive("INVITE ", "", response.empty() ? kLongestWait : kSilence);
    EXPECT_EQ(response.empty(), !invited.empty());
    if (response.empty()) {
      EXPECT_EQ(wordIn(invited, kForbidden.at(probe.policy)), "") << invited;
      target_.respond(engine.address(), invited, "486 Busy Here");
      continue;
    }
    ++refused;
    EXPECT_TRUE(headerOf(response, "Warning").starts_with("399 ")) << response;
    EXPECT_EQ(response.find("inline:"), std::string::npos) << response;
    EXPECT_NE(engine.log().find(" body refused: "), std::string::npos) << engine.log();
    EXPECT_EQ(engine.counters().at("active"), 0);
  }
  EXPECT_GE(refused, kMostlyRefused);
}

TEST_F(Forbidden, IsNotWhatIsAllowed) {
  int number = 0;
  for (const Probe& probe : kAllowed) {
    SCOPED_TRACE(probe.name);
    Engine& engine = engineWith(probe.policy);
    caller_.request(engine.address(), {.call = ++number, .body = probe.body});
    const std::string invited = target_.receive("INVITE ", "", kLongestWait);
    ASSERT_NE(invited, "") << engine.log();
    EXPECT_EQ(wordIn(invited, goesIn(probe)), "") << invited;
    // Nothing of this call comes again, and is taken for the next one.
    target_.respond(engine.address(), invited, "486 Busy Here");
  }
}

// An answer that goes back on what was offered.
TEST_F(Forbidden, AnswersDoNotComeBack) {
  const Probe answers[] = {
      {"keys", kPlain, kHead + kAudio + "a=crypto:1 " + kKey + "\r\n"},
      {"a secure m-line", kPlain, kHead + "m=audio 49170 rtp/savp 8\r\n"},
      {"ICE", kNoIce, kHead + kAudio + "a= candidate:" + kCandidate + "\r\n"},
      {"the other family", kFour, kHead + kAudio + "c=in ip6 2001:db8::20\r\n"},
      {"a codec", kCodecs, kHead + "m=AUDIO 49170 RTP/AVP 0\r\n"},
  };
  int number = 0;
  for (const Probe& answer : answers) {
    SCOPED_TRACE(answer.name);
    Engine& engine = engineWith(answer.policy);
    caller_.request(engine.address(), {.call = ++number, .body = kHead + kAudio});
    const std::string invited = target_.receive("INVITE ", "", kLongestWait);
    target_.respond(engine.address(), invited, "200 OK", answer.body);
    EXPECT_NE(caller_.receive("SIP/2.0 488 ", "", kLongestWait), "");
    EXPECT_NE(target_.receive("BYE ", "", kLongestWait), "");
    EXPECT_NE(engine.log().find(" body refused: "), std::string::npos) << engine.log();
  }
}

// Its keys were the condition for taking a plain offer as a secure one.
TEST_F(Forbidden, ABestEffortOfferIsNotAnsweredWithoutKeysWhereSecureIsWanted) {
  Engine& engine = engineWith(kSecure);
  caller_.request(engine.address(), {.body = kHead + kAudio + "a=crypto:1 " + kKey + "\r\n"});
  const std::string invited = target_.receive("INVITE ", "", kLongestWait);
  EXPECT_NE(invited.find(" RTP/SAVP 8"), std::string::npos) << invited;
  target_.respond(engine.address(), invited, "200 OK", kHead + "m=audio 30000 RTP/SAVP 8\r\n");
  EXPECT_NE(caller_.receive("SIP/2.0 488 ", "", kLongestWait), "");
}

TEST_F(Forbidden, APlainDummyOfferDoesNotGoOutWhereSecureIsWanted) {
  Engine& engine = engineWith(kSecure);
  EXPECT_EQ(statusOf(caller_.ask(engine.address(), {}, kLongestWait)), 488);
  EXPECT_EQ(target_.receive("INVITE ", "", kSilence), "");
}
