#include <gtest/gtest.h>

#include "process.h"

// What is refused is told without the keys that stand there.

namespace {

/// Chains of both kinds of requests on a body whose line with a key cannot be read, and a chain that begins with the
/// object's.
TEST(Refusals, NeverTellKeys) {
  const std::string readable =
      "v=0\no=- 1 1 IN IP4 192.0.2.1\ns=-\nc=IN IP4 192.0.2.1\nt=0 0\nm=audio 5004 RTP/SAVP 0\n";
  const char* const lines[] = {
      "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:s3cret\rs3cret",
      "a crypto:1 AES_CM_128_HMAC_SHA1_80 inline:s3cret",
      "a=x\ra=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:s3cret",
      "a=Crypto:1 AES_CM_128_HMAC_SHA1_80 INLINE:s3cret\r\r",
      "a=ice-pwd:s3cret\rs3cret",
      "a ice-pwd:s3cret",
      "a=key-mgmt:mikey s3cret\rs3cret",
      "k=base64:s3cret\rs3cret",
      "k base64:s3cret",
      "Authorization: Digest username=\"a\", response=\"s3cret\"",
      "Proxy-Authorization: Digest response=\"s3cret\"",
  };
  const std::vector<std::string> chains[] = {
      {"increase-version", "--", "direction", "sendonly"},
      {"direction", "sendonly", "--", "increase-version"},
      {"canonical", "--", "increase-version"},
      {"set-profile", "UDP/TLS/RTP/SAVP", "--", "increase-version"},
      {"keep-codecs", "opus"},
      {"increase-version"},
  };
  for (const char* const line : lines) {
    for (const std::vector<std::string>& chain : chains) {
      std::vector<std::string> words{"rewrite"};
      words.insert(words.end(), chain.begin(), chain.end());
      SCOPED_TRACE(std::string(line) + ": " + testing::PrintToString(words));
      const Outcome outcome = runSdpneg(words, {.input = readable + line + "\n"});
      EXPECT_NE(outcome.status, 0);
      EXPECT_NE(outcome.err, "");
      EXPECT_EQ(outcome.err.find("s3cret"), std::string::npos) << outcome.err;
      EXPECT_EQ(outcome.out, "");
    }
    const Outcome outcome = runSdpneg({"inspect"}, {.input = readable + line + "\n"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err.find("s3cret"), std::string::npos) << outcome.err;
  }
}

}  // namespace
