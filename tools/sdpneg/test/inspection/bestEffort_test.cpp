#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "bodies.h"
#include "process.h"
#include "sdpNegotiator.h"

// The best-effort form of a body as `inspect` tells it.

namespace {

using nlohmann::json;

const std::string session = "v=0\no=ann 17 18 IN IP4 192.0.2.10\ns=-\nc=IN IP4 192.0.2.10\nt=0 0\n";
const std::string crypto =
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:MDEyMzQ1Njc4OWFiY2RlZjAxMjM0NTY3ODlhYmNk\n";
const std::string fingerprint = "a=fingerprint:sha-1 AB:CD\n";
const std::string plainAudio = "m=audio 49170 RTP/AVP 0\n";
const std::string secureAudio = "m=audio 49170 RTP/SAVP 0\n" + crypto;

/// The body with lines of an unknown attribute behind it, so long that it has so many characters.
std::string paddedTo(std::size_t size, std::string body) {
  constexpr std::size_t kLine = 100;
  while (body.size() + 2 * kLine < size) body += "a=" + std::string(kLine - 3, 'x') + "\n";
  return body + "a=" + std::string(size - body.size() - 3, 'x') + "\n";
}

struct Case {
  const char* name;
  std::string body;
  std::string row;
  std::string type;
  std::string reason = {};
};

std::ostream& operator<<(std::ostream& out, const Case& each) { return out << each.name; }

class InspectBestEffort : public testing::TestWithParam<Case> {};

TEST_P(InspectBestEffort, isARowOfTheTable) {
  const Outcome outcome = runSdpneg({"inspect"}, {.input = GetParam().body});
  const std::string row = "\n  best effort       " + GetParam().row + "\n";
  EXPECT_NE(outcome.out.find(row), std::string::npos) << outcome.out;
}

TEST_P(InspectBestEffort, isInTheJson) {
  const Outcome outcome = runSdpneg({"inspect", "--json"}, {.input = GetParam().body});
  const json told = json::parse(outcome.out)["bodies"][0]["summary"]["bestEffort"];
  EXPECT_EQ(told["type"], GetParam().type);
  EXPECT_EQ(told["reason"], GetParam().reason.empty() ? json(nullptr) : json(GetParam().reason));
}

/// What the library answers to an engine that asks for the type.
eSecurityType answerFor(const Case& each) {
  if (!each.reason.empty()) return SRTP_UKNOWN;
  if (each.type == "plain") return SECURITY_RTP_ONLY;
  if (each.type == "secure") return SECURITY_SRTP_ONLY;
  return each.type == "oneMLine" ? BE_SRTP_1m_LINE : BE_SRTP_2m_LINE;
}

TEST_P(InspectBestEffort, isWhatTheObjectAnswers) {
  cSdpNegotiator object;
  ASSERT_EQ(object.sdpParse(GetParam().body.c_str(), SDP_TYPE_OFFER), 0);
  EXPECT_EQ(object.getSdpBestEffortSrtpType(), answerFor(GetParam()));
}

Case opportunistic(const char* name, std::string body, const std::string& reason) {
  return {name, std::move(body), "opportunistic: RTP/AVP with keys", "opportunistic", reason};
}

Case unknown(const char* name, std::string body, const std::string& reason) {
  return {name, std::move(body), "unknown: " + reason, "unknown", reason};
}

const Case cases[] = {
    {"twoMLines", session + plainAudio + secureAudio, "two m-lines per medium", "twoMLines"},
    {"twoMLinesSecureFirst", session + secureAudio + plainAudio, "two m-lines per medium", "twoMLines"},
    // A body with "a=crypto" counts as plain and secure, and is asked for two m-lines per medium only.
    {"oneMLine", session + plainAudio + replaced(crypto, "crypto", "Crypto"), "one m-line per medium",
     "oneMLine"},
    {"plain", session + plainAudio, "no: plain RTP only", "plain"},
    {"secure", session + secureAudio, "no: secure RTP only", "secure"},
    unknown("differentMedia", session + plainAudio + "m=video 49172 RTP/SAVP 31\n" + crypto,
            "two m-lines of a pair are of different media types"),
    unknown("oddNumber", session + plainAudio + secureAudio + plainAudio, "odd number of m-lines"),
    unknown("differentCodecs", session + plainAudio + replaced(secureAudio, "SAVP 0", "SAVP 8"),
            "two m-lines of a pair have different codecs"),
    // The second pair is the third and fourth m-line; their third formats are compared.
    unknown(
        "differentThirdFormatsOfTheSecondPair",
        session + plainAudio + secureAudio + "m=audio 49172 RTP/AVP 0 8 3\nm=audio 49172 RTP/SAVP 0 8 9\n",
        "two m-lines of a pair have different codecs"),
    {"otherFirstFormatsOfTheSecondPair",
     session + plainAudio + secureAudio + "m=audio 49172 RTP/AVP 0\nm=audio 49172 RTP/SAVP 8\n",
     "two m-lines per medium", "twoMLines"},
    unknown("noCrypto", session + plainAudio + "m=audio 49170 RTP/SAVP 0\n",
            "no crypto line in the secure m-line of the first pair"),
    unknown("twoSecure", session + secureAudio + secureAudio + plainAudio + plainAudio,
            "the transports of two m-lines do not pair: one plain, one secure"),
    unknown("otherTransport",
            session + "m=audio 49170 udp 0\nm=audio 49170 udp 0\n" + plainAudio + secureAudio,
            "a pair begins with neither RTP/AVP nor RTP/SAVP"),
    unknown("smallLetters",
            session + plainAudio + secureAudio + "m=audio 49172 rtp/avp 0\nm=audio 49172 rtp/savp 0\n",
            "a pair begins with neither RTP/AVP nor RTP/SAVP"),
    // It is parsed, but requests do not take it.
    unknown("bodyOf20480Characters", paddedTo(20480, session + plainAudio + secureAudio),
            "the m-lines cannot be read"),
    // What RFC 8643 offers. The library counts "a=crypto" as secure beside plain, and looks for pairs.
    opportunistic("oneMLineInTheUsualSpelling", session + plainAudio + crypto, "odd number of m-lines"),
    opportunistic("onlyOneOfTwoWithKeys", session + plainAudio + crypto + plainAudio,
                  "the transports of two m-lines do not pair: one plain, one secure"),
    opportunistic("besideAnotherTransport", session + "m=audio 49170 udp 0\n" + plainAudio + crypto,
                  "a pair begins with neither RTP/AVP nor RTP/SAVP"),
    opportunistic("withFeedback", session + "m=audio 49170 RTP/AVPF 0\n" + crypto, "odd number of m-lines"),
    opportunistic("withAFingerprint", session + plainAudio + fingerprint, "odd number of m-lines"),
    opportunistic("withTheSessionsFingerprint", session + fingerprint + plainAudio, "odd number of m-lines"),
    unknown("keysOfWhatIsNotInUse", session + plainAudio + "m=video 0 RTP/AVP 31\n" + fingerprint,
            "two m-lines of a pair are of different media types"),
    unknown("noRtp", std::string(bodies::faxCall), "neither RTP/AVP nor RTP/SAVP"),
    unknown("secureWithoutKeys", session + "m=audio 49170 RTP/SAVP 0\n", "secure without SDES")};

INSTANTIATE_TEST_SUITE_P(Bodies, InspectBestEffort, testing::ValuesIn(cases),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(InspectBestEffortTrace, isLeftOut) {
  const Outcome outcome = runSdpneg({"inspect", "--trace"}, {.input = session + plainAudio + secureAudio});
  EXPECT_NE(outcome.err.find("Entering sdpParse() method"), std::string::npos);
  EXPECT_EQ(outcome.err.find("BestEffort"), std::string::npos);
  EXPECT_EQ(outcome.err.find("TestTrace"), std::string::npos);
}

TEST(InspectBestEffortJson, isNullForARefusedBody) {
  const Outcome outcome = runSdpneg({"inspect", "--json"}, {.input = std::string(bodies::browserOffer)});
  EXPECT_EQ(json::parse(outcome.out)["bodies"][0]["summary"], nullptr);
}

}  // namespace
