#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "bodies.h"
#include "process.h"
#include "sections/richBody.h"

namespace {

using nlohmann::json;

json sectionsJson(const std::string& body, int status = 0) {
  const Outcome outcome = runSdpneg({"sections", "--json"}, {.input = body});
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, status);
  return json::parse(outcome.out);
}

const json emptySession =
    json::parse(R"json({"address": null, "addressType": null, "direction": null, "groups": [],
                                              "iceLite": false, "bandwidth": {}})json");

TEST(SectionsJson, HoldAllOfABodyThatNoObjectTakes) {
  const json expected = json::parse(R"json({
    "format": 1,
    "bodies": [{
      "file": "(standard input)", "lines": 44,
      "session": {
        "address": "relay.example.com", "addressType": "IP4", "direction": "recvonly",
        "groups": [{"semantics": "BUNDLE", "mids": ["a", "v"]}, {"semantics": "LS", "mids": ["a", "v"]}],
        "iceLite": true, "bandwidth": {"AS": 256, "X-y": null}},
      "sections": [
        {"index": 1, "line": 15, "readable": true, "media": "audio", "port": 9, "portCount": 2,
         "transport": "UDP/TLS/RTP/SAVPF", "address": "2001:db8::7/3", "addressType": "IP6",
         "direction": "sendonly", "disabled": false, "mid": "a", "label": "first", "bundle": 0,
         "bundleOnly": false, "rtcp": {"port": 53021, "address": "192.0.2.9"}, "rtcpMux": true,
         "security": "dtls", "crypto": [], "fingerprint": "sha-256", "setup": "actpass",
         "ice": {"ufrag": true, "candidates": 2, "trickle": true}, "bandwidth": {"TIAS": 64000},
         "formats": [
           {"format": "111", "name": "opus", "clock": 48000, "channels": 2,
            "fmtp": "minptime=10; useinbandfec=1", "feedback": ["transport-cc", "nack  pli"], "apt": null},
           {"format": "0", "name": "PCMU", "clock": 8000, "channels": 1, "fmtp": null,
            "feedback": ["nack  pli"], "apt": null},
           {"format": "63", "name": "red", "clock": 48000, "channels": 2, "fmtp": null,
            "feedback": ["nack  pli"], "apt": null},
           {"format": "110", "name": "telephone-event", "clock": 8000, "channels": 1, "fmtp": null,
            "feedback": ["nack  pli"], "apt": null},
           {"format": "96", "name": null, "clock": null, "channels": null, "fmtp": null,
            "feedback": ["nack  pli"], "apt": null}]},
        {"index": 2, "line": 34, "readable": true, "media": "video", "port": 0, "portCount": 1,
         "transport": "RTP/AVP", "address": "relay.example.com", "addressType": "IP4",
         "direction": "recvonly", "disabled": false, "mid": "v", "label": null, "bundle": 0,
         "bundleOnly": true, "rtcp": {"port": null, "address": null}, "rtcpMux": false, "security": "osrtp",
         "crypto": [{"tag": 1, "suite": "AES_CM_128_HMAC_SHA1_80"}], "fingerprint": null, "setup": "actpass",
         "ice": {"ufrag": false, "candidates": 0, "trickle": true}, "bandwidth": {},
         "formats": [{"format": "97", "name": "rtx", "clock": 90000, "channels": 1,
                      "fmtp": "rtx-time=1;apt=96", "feedback": [], "apt": 96}]},
        {"index": 3, "line": 41, "readable": false, "media": null, "port": null, "portCount": null,
         "transport": null, "address": null, "addressType": null, "direction": null, "disabled": null,
         "mid": null, "label": null, "bundle": null, "bundleOnly": null, "rtcp": null, "rtcpMux": null,
         "security": null, "crypto": [], "fingerprint": null, "setup": null,
         "ice": {"ufrag": null, "candidates": null, "trickle": null}, "bandwidth": {}, "formats": []},
        {"index": 4, "line": 43, "readable": true, "media": "application", "port": 0, "portCount": 1,
         "transport": "UDP/DTLS/SCTP", "address": "relay.example.com", "addressType": "IP4",
         "direction": "recvonly", "disabled": true, "mid": "d\ufffd", "label": null, "bundle": null,
         "bundleOnly": false, "rtcp": null, "rtcpMux": false, "security": "dtls", "crypto": [],
         "fingerprint": null, "setup": "actpass",
         "ice": {"ufrag": false, "candidates": 0, "trickle": true}, "bandwidth": {},
         "formats": [{"format": "webrtc-datachannel", "name": null, "clock": null, "channels": null,
                      "fmtp": null, "feedback": null, "apt": null}]}]}]})json");
  EXPECT_EQ(sectionsJson(richBody), expected);
}

TEST(SectionsJson, AreWrittenInTheOrderOfTheirKeys) {
  EXPECT_EQ(runSdpneg({"sections", "--json"}, {.input = "v=0\nm=image 30010 udptl t38\n"}).out,
            R"json({
  "format": 1,
  "bodies": [
    {
      "file": "(standard input)",
      "lines": 2,
      "session": {
        "address": null,
        "addressType": null,
        "direction": null,
        "groups": [],
        "iceLite": false,
        "bandwidth": {}
      },
      "sections": [
        {
          "index": 1,
          "line": 2,
          "readable": true,
          "media": "image",
          "port": 30010,
          "portCount": 1,
          "transport": "udptl",
          "address": null,
          "addressType": null,
          "direction": "sendrecv",
          "disabled": false,
          "mid": null,
          "label": null,
          "bundle": null,
          "bundleOnly": false,
          "rtcp": null,
          "rtcpMux": false,
          "security": "plain",
          "crypto": [],
          "fingerprint": null,
          "setup": null,
          "ice": {
            "ufrag": false,
            "candidates": 0,
            "trickle": false
          },
          "bandwidth": {},
          "formats": [
            {
              "format": "t38",
              "name": null,
              "clock": null,
              "channels": null,
              "fmtp": null,
              "feedback": null,
              "apt": null
            }
          ]
        }
      ]
    }
  ]
}
)json");
}

TEST(SectionsJson, AreNoneInATextWithout) {
  for (const auto& [text, lines] : {std::pair<std::string, int>{"", 0}, {"hello", 1}, {"v=0\r\n\r\nx", 3}}) {
    const json body = sectionsJson(text)["bodies"][0];
    EXPECT_EQ(body, (json{{"file", "(standard input)"},
                          {"lines", lines},
                          {"session", emptySession},
                          {"sections", json::array()}}));
  }
}

TEST(SectionsJson, KeepHostileTextsApart) {
  const std::string body =
      "v=0\nb=A\xff:1\nb=A\xfe:2\nb=\"\\:3\nb=:4\nb=none\nb=AS:-1\n"
      "m=audio 9 RTP/AVP 0\na=mid:\x1b[2J\na=label:\xe2\x80\xae\n";
  const Outcome outcome = runSdpneg({"sections", "--json"}, {.input = body});
  EXPECT_EQ(outcome.out.find('\x1b'), std::string::npos);
  EXPECT_EQ(outcome.out.find("\xe2\x80\xae"), std::string::npos);
  const json read = json::parse(outcome.out)["bodies"][0];
  EXPECT_EQ(read["session"]["bandwidth"],
            (json{{"A\ufffd", 1}, {"\"\\", 3}, {"", 4}, {"none", nullptr}, {"AS", nullptr}}));
  EXPECT_EQ(read["sections"][0]["mid"], "\x1b[2J");
  EXPECT_EQ(read["sections"][0]["label"], "\xe2\x80\xae");
}

TEST(SectionsJson, AreADocumentForEveryInput) {
  const TemporaryFolder folder;
  const std::string body = folder.write("b.sdp", bodies::browserOffer);
  const std::string message = folder.write(
      "a.sdp", "SIP/2.0 200 OK\r\nContent-Type: application/sdp\r\n\r\n" + std::string(bodies::faxCall));
  const Outcome outcome = runSdpneg({"sections", "--json", folder.path(), folder.path("missing")});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err,
            "sdpneg: " + folder.path("missing") + ": cannot be read: No such file or directory\n");
  const json read = json::parse(outcome.out)["bodies"];
  ASSERT_EQ(read.size(), 3U);
  EXPECT_EQ(read[0]["file"], message);
  EXPECT_EQ(read[0]["lines"], 7);
  EXPECT_EQ(read[0]["sections"][0]["line"], 9);  // of the input
  EXPECT_EQ(read[1]["file"], body);
  EXPECT_EQ(read[1]["sections"][0]["formats"][0]["name"], "opus");
  EXPECT_EQ(read[2], (json{{"file", folder.path("missing")},
                           {"lines", 0},
                           {"session", emptySession},
                           {"sections", json::array()}}));
}

TEST(SectionsJson, HaveNoLimit) {
  std::string body = "v=0\n";
  constexpr int kSections = 10'000;
  for (int i = 0; i < kSections; ++i) {
    body +=
        "m=audio 9 RTP/AVP 0\na=mid:m" + std::to_string(i) + "\na=x-filler:" + std::string(120, 'x') + "\n";
  }
  ASSERT_GT(body.size(), std::size_t{1024} * 1024);
  const json read = sectionsJson(body)["bodies"][0];
  EXPECT_EQ(read["lines"], 3 * kSections + 1);
  ASSERT_EQ(read["sections"].size(), static_cast<std::size_t>(kSections));
  EXPECT_EQ(read["sections"].back()["mid"], "m9999");
  EXPECT_EQ(read["sections"].back()["line"], 3 * kSections - 1);
}

}  // namespace
