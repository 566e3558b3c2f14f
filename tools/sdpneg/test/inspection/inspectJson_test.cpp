#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "bodies.h"
#include "process.h"
#include "sections/richBody.h"

namespace {

using nlohmann::json;

json inspectJson(std::string_view body, int status = 0) {
  const Outcome outcome = runSdpneg({"inspect", "--json", "-"}, {.input = std::string(body)});
  EXPECT_EQ(outcome.status, status);
  return json::parse(outcome.out);
}

/// The document without the sections of its bodies, which `sections` has as well.
json withoutSections(json document) {
  for (json& body : document["bodies"]) body.erase("sections");
  return document;
}

TEST(InspectJson, HoldsTheWholeOfASecureCall) {
  const json expected = json::parse(R"json({
    "format": 1,
    "bodies": [{
      "file": "(standard input)", "result": "parsed", "problem": null, "notes": [],
      "summary": {
        "origin": "o=- 1 1 IN IP6 2001:db8::17", "address": "2001:db8::17", "ipVersion": 6, "port": 40000,
        "media": ["audio", "video"],
        "audio": {
          "codecs": [{"name": "G722", "textName": "G722_64K", "value": 5, "period": null}],
          "direction": "sendonly", "echoCancellation": null, "silenceSuppression": null, "gainControl": 0},
        "video": {
          "codecs": [{"name": "H264", "value": 2}],
          "direction": "recvonly", "recvonly": true, "h264Level": "3.1", "bandwidth": 1400000},
        "t38MaxBitRate": null,
        "security": {
          "secure": true, "secureVideo": true, "sdes": true, "mikey": false, "dtlsFingerprint": false},
        "bestEffort": {"type": "secure", "reason": null},
        "ice": {"kind": "none", "candidatesMatch": false},
        "ipv6Media": true, "hold": true, "anat": false, "bandwidth": 0,
        "listedMedia": [{
          "media": "video", "label": "cam", "direction": "recvonly", "secure": true, "plain": false,
          "ip4": false, "otherAddressType": true, "bandwidth": 1400000,
          "codecs": [{"name": "H264", "value": 2, "h264Level": "3.1"}]}],
        "stored": {"form": "plain", "bytes": 387, "characters": 387}},
      "description": {
        "complete": true, "mediaCount": 2,
        "mediaLines": [
          {"line": 6, "media": "audio", "port": "40000", "active": true, "transport": "RTP/SAVP",
           "direction": "sendonly", "connection": null, "bandwidth": null, "label": null,
           "formats": [{"format": "9", "name": null}]},
          {"line": 9, "media": "video", "port": "40002", "active": true, "transport": "RTP/SAVP",
           "direction": "recvonly", "connection": null, "bandwidth": 1400000, "label": "cam",
           "formats": [{"format": "97", "name": "H264/90000"}]}]}}],
    "counts": {"inputs": 1, "parsed": 1, "refused": 0, "undecodable": 0, "unreadable": 0, "problems": 0}})json");
  EXPECT_EQ(withoutSections(inspectJson(bodies::secureCall)), expected);
}

TEST(InspectJson, HoldsARefusedBodyWithItsMediaLines) {
  const json body = inspectJson(bodies::browserOffer, 2)["bodies"][0];
  EXPECT_EQ(body["result"], "refused");
  EXPECT_EQ(body["summary"], nullptr);
  EXPECT_EQ(body["problem"], json::parse(R"json({"line": 5, "column": 9,
      "reason": "the port of m-line 1 (audio), 9, is below 1024"})json"));
  EXPECT_EQ(body["description"]["mediaLines"], json::parse(R"json([
      {"line": 5, "media": "audio", "port": "9", "active": true, "transport": "UDP/TLS/RTP/SAVPF",
       "direction": "sendrecv", "connection": {"type": "IP4", "address": "0.0.0.0"}, "bandwidth": null,
       "label": null,
       "formats": [{"format": "111", "name": "opus/48000/2"}, {"format": "0", "name": null}]}])json"));
}

TEST(InspectJson, HoldsTheSectionsOfEveryBody) {
  const std::string message = "SIP/2.0 200 OK\r\nContent-Type: application/sdp\r\n\r\n" + richBody;
  for (const std::string& input : {std::string(bodies::secureCall), std::string(bodies::browserOffer),
                                   richBody, std::string("hello\n"), message}) {
    const json inspected = json::parse(runSdpneg({"inspect", "--json"}, {.input = input}).out);
    const json listed = json::parse(runSdpneg({"sections", "--json"}, {.input = input}).out);
    EXPECT_EQ(inspected["bodies"][0]["sections"], listed["bodies"][0]["sections"]) << input;
  }
  const json none = json::parse(runSdpneg({"inspect", "--json", "/missing"}).out);
  EXPECT_EQ(none["bodies"][0].at("sections"), nullptr);
}

TEST(InspectJson, TellsPeriodsFaxAndFeatures) {
  const json audio = inspectJson(bodies::audioCall)["bodies"][0]["summary"];
  EXPECT_EQ(audio["audio"]["codecs"][1],
            json::parse(R"json({"name": "PCMU", "textName": "G711ULAW64K", "value": 3, "period": 20})json"));
  EXPECT_EQ(audio["bandwidth"], 80);
  EXPECT_EQ(inspectJson(bodies::faxCall)["bodies"][0]["summary"]["t38MaxBitRate"], 14400);
}

TEST(InspectJson, IsADocumentForEveryInput) {
  const TemporaryFolder folder;
  const std::string bad = folder.write("b.sdp", "hello\n");
  const std::string good = folder.write("a.sdp", bodies::audioCall);
  const Outcome outcome = runSdpneg({"inspect", "--json", folder.path("missing"), folder.path()});
  EXPECT_EQ(outcome.status, 2);
  const json document = json::parse(outcome.out);
  ASSERT_EQ(document["bodies"].size(), 3U);
  EXPECT_EQ(document["bodies"][0]["result"], "unreadable");
  EXPECT_EQ(document["bodies"][0]["problem"]["line"], nullptr);
  EXPECT_EQ(document["bodies"][0]["description"], nullptr);
  EXPECT_EQ(document["bodies"][1]["file"], good);
  EXPECT_EQ(document["bodies"][2]["file"], bad);
  EXPECT_EQ(document["bodies"][2]["result"], "undecodable");
  EXPECT_EQ(document["counts"], json::parse(R"json({"inputs": 3, "parsed": 1, "refused": 0, "undecodable": 1,
                                                "unreadable": 1, "problems": 2})json"));
}

TEST(InspectJson, KeepsTextThatIsNoUtf8Readable) {
  const json body = inspectJson("v=0\no=\xff\x1b 1 2 IN IP4 192.0.2.1\ns=-\nt=0 0\n")["bodies"][0];
  EXPECT_EQ(body["summary"]["origin"], "o=\xef\xbf\xbd\x1b 1 2 IN IP4 192.0.2.1");
}

}  // namespace
