// Masking of keys and credentials.

#include "calls/secrets.h"

#include <gtest/gtest.h>

#include <ctime>
#include <initializer_list>
#include <string>
#include <string_view>

#include "calls/madeCall.h"
#include "calls/secretFinder.h"

namespace {

/// A call of messages with these texts, masked.
std::vector<std::string> masked(std::initializer_list<std::string_view> texts) {
  tool::Call call;
  for (const std::string_view text : texts) {
    tool::CallMessage message;
    message.text = text;
    call.messages.push_back(message);
  }
  maskSecrets(call);
  std::vector<std::string> result;
  for (const tool::CallMessage& message : call.messages) result.push_back(message.text);
  return result;
}

std::string masked(std::string_view text) { return masked({text}).front(); }

struct MaskCase {
  std::string_view text;
  std::string_view masked;
};

TEST(Secrets, OfBodiesAreMaskedAndTheRestStays) {
  const MaskCase cases[] = {
      {"a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:S1|2^20|1:32\r\n",
       "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:[key 1]|2^20|1:32\r\n"},
      {"a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:S1|2^20|1:4;inline:S2|2^20|2:4 KDR=3 UNENCRYPTED_SRTCP\r\n",
       "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:[key 1]|2^20|1:4;inline:[key 2]|2^20|2:4 KDR=3 UNENCRYPTED_SRTCP\r\n"},
      {"a=crypto:2 F8_128_HMAC_SHA1_80 inline:S1 FEC_KEY=inline:S2 FEC_ORDER=FEC_SRTP\n",
       "a=crypto:2 F8_128_HMAC_SHA1_80 inline:[key 1] FEC_KEY=inline:[key 2] FEC_ORDER=FEC_SRTP\n"},
      {"a=key-mgmt:mikey S1S1==\r\n", "a=key-mgmt:mikey [key 1]\r\n"},
      {"a=ice-ufrag:abcd\r\na=ice-pwd:S1\r\n", "a=ice-ufrag:abcd\r\na=ice-pwd:[key 1]\r\n"},
      {"a=fingerprint:sha-256 AA:BB:CC\r\na=setup:active\r\n",
       "a=fingerprint:sha-256 [key 1]\r\na=setup:active\r\n"},
      {"k=base64:S1\r\nk=prompt\r\nk=clear:S2\n", "k=base64:[key 1]\r\nk=prompt\r\nk=clear:[key 2]\n"},
      {"a=acap:1 crypto:1 AES_CM_128_HMAC_SHA1_32 inline:S1\r\na=acap:2 key-mgmt:mikey S2\r\n",
       "a=acap:1 crypto:1 AES_CM_128_HMAC_SHA1_32 inline:[key 1]\r\na=acap:2 key-mgmt:mikey [key 2]\r\n"},
      {"a=identity:S1;x=y\r\n", "a=identity:[key 1];x=y\r\n"},
      {"a=ptime:20\r\na=rtpmap:8 PCMA/8000\r\no=- 1 1 IN IP4 192.0.2.1\r\n",
       "a=ptime:20\r\na=rtpmap:8 PCMA/8000\r\no=- 1 1 IN IP4 192.0.2.1\r\n"},
  };
  for (const MaskCase& test : cases) EXPECT_EQ(masked(test.text), test.masked);
}

TEST(Secrets, OfHeadersAreMaskedAndTheRestStays) {
  const MaskCase cases[] = {
      {"Authorization: Digest username=\"S1\", realm=\"S2\",nonce=\"S3\", uri=\"sip:b\", response=\"S4\", qop=auth, nc=1\r\n",
       "Authorization: Digest username=\"[key 1]\", realm=\"[key 2]\",nonce=\"[key 3]\", uri=\"[key 4]\", response=\"[key 5]\", "
       "qop=[key 6], nc=[key 7]\r\n"},
      {"Proxy-Authorization: Basic U1Mx==\r\n", "Proxy-Authorization: Basic [key 1]\r\n"},
      {"authorization :  bearer  S1.S2\r\n", "authorization :  bearer  [key 1]\r\n"},
      {"AUTHORIZATION: S1\r\n", "AUTHORIZATION: [key 1]\r\n"},
      {"Authorization: Own S1=\r\n", "Authorization: [key 1] [key 2]\r\n"},
      {"Authentication-Info: nextnonce=\"S1\", rspauth=\"S2\"\r\n",
       "Authentication-Info: nextnonce=\"[key 1]\", rspauth=\"[key 2]\"\r\n"},
      {"WWW-Authenticate: Digest realm=\"example.org\", nonce=\"S1\", algorithm=MD5, qop=\"auth,auth-int\", opaque=\"S2\"\r\n",
       "WWW-Authenticate: Digest realm=\"example.org\", nonce=\"[key 1]\", algorithm=MD5, qop=\"auth,auth-int\", "
       "opaque=\"[key 2]\"\r\n"},
      {"Identity: S1;info=<https://example.org/c>;alg=ES256\r\ny: S2\r\n",
       "Identity: [key 1];info=<https://example.org/c>;alg=ES256\r\ny: [key 2]\r\n"},
      {"Authorization: Digest nonce=\"a \\\"S1, b\", response=\"S2\r\nTo: <sip:b>\r\n",
       "Authorization: Digest nonce=\"[key 1]\", response=[key 2]\r\nTo: <sip:b>\r\n"},
      {"Cookie: a=S1; b=S2\r\nk: timer\r\n", "Cookie: [key 1] [key 2]\r\nk: timer\r\n"},
      {"From: <sip:a@example.org>\r\nAccept: text/plain\r\nContent-Disposition: inline\r\n",
       "From: <sip:a@example.org>\r\nAccept: text/plain\r\nContent-Disposition: inline\r\n"},
  };
  for (const MaskCase& test : cases) EXPECT_EQ(masked(test.text), test.masked);
}

TEST(Secrets, OfFoldedHeadersAreMaskedAndLinesStay) {
  EXPECT_EQ(
      masked("Authorization: Digest\r\n username=\"S1\",\r\n\tresponse=\"S2\r\n S3\"\r\nTo: <sip:b>\r\n"),
      "Authorization: Digest\r\n username=\"[key 1]\",\r\n\tresponse=\"[key 2]\r\n \"\r\nTo: <sip:b>\r\n");
}

TEST(Secrets, HaveTheSameNumberInTheWholeCall) {
  const std::vector<std::string> texts =
      masked({"a=ice-pwd:one\na=ice-pwd:two\n", "a=ice-pwd:two\na=crypto:1 A_B inline:one\n"});
  EXPECT_EQ(texts[0], "a=ice-pwd:[key 1]\na=ice-pwd:[key 2]\n");
  EXPECT_EQ(texts[1], "a=ice-pwd:[key 2]\na=crypto:1 A_B inline:[key 1]\n");
}

TEST(Secrets, StayMasked) {
  const std::string once =
      masked("Authorization: Digest nonce=\"S1\", x\r\na=crypto:1 A_B inline:S2|2^20\na=ice-pwd:S3\n");
  EXPECT_EQ(masked(once), once);
  EXPECT_EQ(masked("a=ice-pwd:[key 1]S\n"), "a=ice-pwd:[key 1]\n");
}

TEST(Secrets, AreFoundWhereverTheyStand) {
  // Each line has the secret once, as S#, among what may stand around it.
  constexpr std::string_view kLines[] = {
      "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:S#",
      "A=CRYPTO:1 aes_cm INLINE:S#|2^20",
      " a = crypto : 1 AES_CM_128_HMAC_SHA1_80 inline: S#",
      "a=crypto:1\tAES_CM_128_HMAC_SHA1_80\tinline:S#|x|y",
      "a=crypto:S#",
      "a=crypto:1 S#",
      "a=crypto:1 AES_CM_128_HMAC_SHA1_80 S#",
      "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x|2^20|1:4 inline:S#",
      "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x;inline:S#",
      "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x\r\n S#",
      "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x\rS#",
      "a=tcap:1 x inline:S#",
      "\"sdp\":\"v=0\\r\\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:S#\\r\\n\"",
      "\"sdp\":\"v=0\\r\\na=ice-pwd:S#\\r\\na=ptime:20\"",
      "\"sdp\":\"v=0\\r\\na=fingerprint:sha-1 S#\\r\\na=ptime:20\"",
      "a=key-mgmt:mikey S#",
      "a=Key-Mgmt:S#",
      "a=ice-pwd:S#",
      "a= ice-pwd :\tS#",
      "a=ICE-PWD:x S#",
      "a=fingerprint:S#",
      "a=fingerprint:sha-1 S#",
      "a=fingerprint: SHA-256  S#",
      "a=fingerprint:sha-256 AA:BB:\r\nCC:S#",
      "k=clear:S#",
      "k = base64:S#",
      "K=S#",
      "k=uri:http://S#",
      "Authorization: Digest response=\"S#\"",
      "AUTHORIZATION:Digest response=S#",
      "Proxy-authorization : Digest a=b,\r\n\tresponse = \"S#\"",
      "Proxy-Authorization: Digest a=b, \r\n  response=\r\n \"S#\"",
      "Authorization: Basic S#==",
      "Authorization: S#",
      "Authorization: Digest \"S#",
      "Authorization: Digest a=\"\\\"\", b=\"S#\"",
      "WWW-Authenticate: Digest realm=\"r\", nonce=\"S#\"",
      "Proxy-Authenticate: Digest realm=\"r\", Basic x=\"S#\"",
      "Authentication-Info: nextnonce=\"S#\"",
      "Proxy-Authentication-Info: rspauth=\"S#\"",
      "Identity: S#",
      "y:S#;info=<x>",
      "Y : \"S#\"",
      "Set-Cookie: id=S#; path=/",
  };
  constexpr std::string_view kFronts[] = {"",
                                          "INVITE sip:b SIP/2.0\r\nVia: x\r\n",
                                          "SIP/2.0 200 OK\n\nv=0\n",
                                          "v=0\rs=-\r",
                                          "x\r\n\r\n--b\r\nContent-Type: application/sdp\r\n\r\nv=0\r\n",
                                          "text:\n\n",
                                          "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:other\r\n"};
  constexpr std::string_view kBacks[] = {"", "\r\na=ptime:20\r\n", "\nt=0 0\n", "\rm=audio 1 RTP/AVP 8\r",
                                         "\r\n--b--\r\n"};
  const std::string secret = "WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVz";
  for (const std::string_view line : kLines) {
    for (const std::string_view front : kFronts) {
      for (const std::string_view back : kBacks) {
        std::string text(line);
        text.replace(text.find("S#"), 2, secret);
        text = std::string(front) + text + std::string(back);
        const std::string result = masked(text);
        EXPECT_EQ(result.find(secret), std::string::npos) << text << "\n---\n" << result;
        EXPECT_EQ(result.find(secret.substr(0, 8)), std::string::npos) << text << "\n---\n" << result;
        EXPECT_TRUE(result.starts_with(front.substr(0, 40))) << result;
        EXPECT_TRUE(result.ends_with(back)) << text << "\n---\n" << result;
      }
    }
  }
}

TEST(Secrets, AreMaskedInTextsCutWithinThem) {
  const std::string text =
      "INVITE sip:b SIP/2.0\r\nAuthorization: Digest nonce=\"NNNNNNNN\", response=\"RRRRRRRR\"\r\n"
      "Content-Type: application/sdp\r\n\r\nv=0\r\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:KKKKKKKK|2^20\r\n"
      "a=ice-pwd:PPPPPPPP\r\na=fingerprint:sha-1 FFFFFFFF\r\n";
  for (std::size_t size = 0; size <= text.size(); ++size) {
    const std::string result = masked(std::string_view(text).substr(0, size));
    for (const std::string_view secret : {"NN", "RR", "KK", "PP", "FF"}) {
      EXPECT_EQ(result.find(secret), std::string::npos) << result;
    }
  }
}

TEST(Secrets, TakeThePlacesOfBodiesAlong) {
  made::Maker maker;
  const std::string before =
      made::body("m=audio 4000 RTP/SAVP 8\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:KEY\n");
  const std::size_t index = maker.add({}, before);
  tool::CallMessage& message = maker.call.messages[index];
  const std::string_view header = "Authorization: Digest nonce=\"a-very-long-nonce\"\r\n";
  message.text.insert(message.text.find("Content-Type"), header);
  message.sdpBegin += header.size();
  message.text += "behind the body\r\n";
  maskSecrets(maker.call);
  EXPECT_EQ(message.sdp(),
            made::body("m=audio 4000 RTP/SAVP 8\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:[key 2]\n"));
}

TEST(Secrets, TakeBodiesAlongThatEndWithinThem) {
  tool::Call call;
  tool::CallMessage message;
  message.text = "v=0\na=ice-pwd:SECRETS\n";
  message.sdpBegin = 0;
  message.sdpSize = 17;  // "SEC" is the last of it
  call.messages.push_back(message);
  message.sdpBegin = 16;
  message.sdpSize = 6;
  call.messages.push_back(message);
  maskSecrets(call);
  EXPECT_EQ(call.messages[0].sdp(), "v=0\na=ice-pwd:[key 1]");
  EXPECT_EQ(call.messages[1].sdp(), "[key 1]\n");
}

/// Processor time that it takes to find the secrets of a line that comes so often.
double secondsOf(std::string_view line, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += line;
  const std::clock_t begin = std::clock();
  EXPECT_GE(tool::findSecrets(text).size(), count);
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

TEST(Secrets, AreFoundInTimeInProportion) {
  // Of these lines none has the semicolon that may end a key.
  for (const std::string_view line : {"a=crypto:1 x y\r\n", "a=identity:x\r\n", "a=ice-pwd:x\r\n",
                                      "a=fingerprint:sha-256 AB\r\n", "Authorization: x\r\n", "k=x\r\n"}) {
    const double few = secondsOf(line, 15000);
    // Eight times as many lines take 64 times as long where each one is looked for in all that follow.
    EXPECT_LT(secondsOf(line, 120000), 24 * few + 0.2) << line;
  }
}

TEST(Secrets, ArePasswordsInUris) {
  const auto texts =
      masked({"INVITE sip:bob:pass1@example.org SIP/2.0\r\nTo: <SIPS:bob:pass1@h>;tag=a\r\n"
              "Contact: sip:192.0.2.1:5060, sip:bob@h:5060, <sip:[2001:db8::1]:5060>\r\n"});
  EXPECT_EQ(texts[0],
            "INVITE sip:bob:[key 1]@example.org SIP/2.0\r\nTo: <SIPS:bob:[key 1]@h>;tag=a\r\n"
            "Contact: sip:192.0.2.1:5060, sip:bob@h:5060, <sip:[2001:db8::1]:5060>\r\n");
}

TEST(Secrets, AreMaskedInWhatIsToldOfACall) {
  const auto made = [] {
    tool::Call call;
    call.from = "sip:alice:pass1@example.org";
    call.to = "sip:bob@example.org:5060";
    tool::Leg leg;
    leg.joinDetail = "Authorization: Bearer abcdef";
    call.legs.push_back(leg);
    return call;
  };
  tool::Call whole = made();
  maskSecrets(whole);
  tool::Call told = made();
  maskSecretsTold(told);
  for (const tool::Call& call : {whole, told}) {
    EXPECT_EQ(call.from, "sip:alice:[key 1]@example.org");
    EXPECT_EQ(call.to, "sip:bob@example.org:5060");
    EXPECT_EQ(call.legs[0].joinDetail, "Authorization: Bearer [key 2]");
  }
}

}  // namespace
