#include "calls/anonymizer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "captures/sipView.h"

namespace {

using tool::Anonymizer;
using tool::HashKey;
using tool::SipView;

constexpr HashKey kKey = {1, 2};

std::string message(std::string_view header, std::string_view body = {},
                    std::string_view type = "application/sdp") {
  std::string text = "INVITE sip:127.0.0.1 SIP/2.0\r\n" + std::string(header) + "\r\n";
  if (!body.empty()) text += "Content-Type: " + std::string(type) + "\r\n";
  return text + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
}

std::string anonymous(std::string_view text) { return Anonymizer(kKey).text(text); }

/// The value of a header, replaced in a message of its own.
std::string replaced(const std::string& header) {
  const std::string text = anonymous("OPTIONS sip:127.0.0.1 SIP/2.0\r\n" + header + "\r\n\r\n");
  return text.substr(text.find("\r\n") + 2, text.size() - text.find("\r\n") - 6);
}

std::string replacedSdp(const std::string& line) {
  const std::string text = anonymous(message("Max-Forwards: 70", line + "\r\n"));
  const std::string body(SipView(text).body());
  return body.substr(0, body.size() - 2);
}

struct Place {
  std::string before;
  std::string after;
};

TEST(Anonymizer, ReplacesWhatTellsWhoSpeaksInHeaders) {
  const std::vector<Place> places = {
      {"From: \"Alice Smith\" <sip:alice@example.org;transport=udp>;tag=a7b8",
       "From: \"Name1 Name2\" <sip:name1@domain1.example;transport=udp>;tag=a7b8"},
      {"f: Alice <sips:al%69ce@EXAMPLE.org:5061>", "f: Name1 <sips:name1@domain1.example:5061>"},
      {"To: \"Al\\\"ice\" <sip:alice@[2001:470::9]:5060>",
       "To: \"Name1\\\"name2\" <sip:name3@[2001:db8::1]:5060>"},
      {"Contact: sip:alice@81.2.3.4:5070;ob, *", "Contact: sip:name1@192.0.2.1:5070;ob, *"},
      {"Via: SIP/2.0/UDP 10.9.8.7:5062;branch=z9hG4bK-10-9-8-7-x1;received=81.2.3.4;rport=55555",
       "Via: SIP/2.0/UDP 10.0.0.1:5062;branch=z9hG4bK-10-0-0-1-x1;received=192.0.2.1;rport=55555"},
      {"Via: SIP / 2.0 / TCP\r\n pbx.example.org : 4000 ;branch=z9hG4bK77",
       "Via: SIP / 2.0 / TCP\r\n pbx.domain1.example : 4000 ;branch=z9hG4bK77"},
      {"v: SIP/2.0/WSS df7jal23ls0d.invalid;branch=z9hG4bK776",
       "v: SIP/2.0/WSS name1.invalid;branch=z9hG4bK776"},
      {"Call-ID: a84b4c76e66710@pc33.example.org", "Call-ID: a84b4c76e66710@name1.domain1.example"},
      {"Call-ID: 1-4711@127.0.0.1", "Call-ID: 1-4711@127.0.0.1"},
      {"i: 0f9a1b2c-3d4e-5f60-abcd-aabbccddeeff@192.168.7.8",
       "i: 0f9a1b2c-3d4e-5f60-abcd-aabbccddeeff@192.168.0.1"},
      {"Authorization: Digest username=\"alice\", realm=\"example.org\", algorithm=MD5, uri=\"sip:example.org\"",
       "Authorization: Digest username=\"name1\", realm=\"domain1.example\", algorithm=MD5, uri=\"sip:domain1.example\""},
      {"Authorization: Basic YWxpY2U6c2VjcmV0", "Authorization: Basic xxxxxxxxxxxxxxxx"},
      {"Identity: eyJhbGciOiJFUzI1NiJ9.e30.AA;info=<https://example.org/c>;alg=ES256",
       "Identity: xxxxxxxxxxxxxxxxxxxxxxxxxxx;info=<https://domain1.example/name1>;alg=ES256"},
      {"User-Agent: Asterisk PBX 18.2 at pbx.example.org",
       "User-Agent: Asterisk PBX 18.2 at pbx.domain1.example"},
      {"Subject: About Alice", "Subject: Name1 Name2"},
      {"CSeq: 50601 INVITE", "CSeq: 50601 INVITE"},
      {"Warning: 399 pbx.example.org \"Codec missing\"",
       "Warning: 399 pbx.domain1.example \"Name1 missing\""},
      {"Refer-To: <sip:bob@example.org?Replaces=a1%4010.9.8.7%3Bto-tag%3Dxx%3Bfrom-tag%3Dyy>",
       "Refer-To: <sip:name1@domain1.example?Replaces=a1%4010.0.0.1%3Bto-tag%3Dxx%3Bfrom-tag%3Dyy>"},
      {"X-Odd: a%81.2.3.4, %41lice b%2081.2.3.4", "X-Odd: name1%192.0.2.1, Name2 name3%20192.0.2.1"},
      {"From: <sip:anonymous@anonymous.invalid>", "From: <sip:anonymous@anonymous.invalid>"},
      {"Contact: <sip:127.0.0.1>;+sip.instance=\"<urn:uuid:12345678-1234-1234-1234-123456789abc>\"",
       "Contact: <sip:127.0.0.1>;+sip.instance=\"<urn:uuid:00000000-0000-4000-8000-000000000001>\""},
  };
  for (const Place& place : places) EXPECT_EQ(replaced(place.before), place.after);
}

TEST(Anonymizer, ReplacesWhatTellsWhoSpeaksInBodies) {
  const std::vector<Place> places = {
      {"o=alice 2890844526 2890844527 IN IP4 host.example.org",
       "o=name1 2890844526 2890844527 IN IP4 host.domain1.example"},
      {"o=- 1 1 IN IP6 2001:470::9", "o=- 1 1 IN IP6 2001:db8::1"},
      {"s=-", "s=-"},
      {"s=SIP Call of Alice", "s=SIP Call of Name1"},
      {"c=IN IP4 224.2.36.42/127", "c=IN IP4 233.252.0.1/127"},
      {"c=IN IP4 0.0.0.0", "c=IN IP4 0.0.0.0"},
      {"e=alice@example.org (Alice)", "e=name1@domain1.example (Name1)"},
      {"u=http://www.example.org/alice", "u=http://www.domain1.example/name1"},
      {"m=audio 49172 RTP/AVP 0 8 101", "m=audio 49172 RTP/AVP 0 8 101"},
      {"a=candidate:1 1 udp 2130706431 192.168.1.5 49172 typ srflx raddr 172.20.1.1 rport 60000",
       "a=candidate:1 1 udp 2130706431 192.168.0.1 49172 typ srflx raddr 172.16.0.1 rport 60000"},
      {"a=candidate:0 1 UDP 2122252543 1f4712db-ea17-4bcf-a596-105139dfd8bf.local 54596 typ host",
       "a=candidate:0 1 UDP 2122252543 00000000-0000-4000-8000-000000000001.local 54596 typ host"},
      {"a=rtcp:53020 IN IP4 81.2.3.4", "a=rtcp:53020 IN IP4 192.0.2.1"},
      {"a=ssrc:1234567890 cname:alice@81.2.3.4", "a=ssrc:1234567890 cname:name1@192.0.2.1"},
      {"a=msid:alice audio", "a=msid:name1 audio"},
      {"a=tls-id:abc3de65cddef001be82", "a=tls-id:name0000000000000001"},
      {"a=rtpmap:101 telephone-event/8000", "a=rtpmap:101 telephone-event/8000"},
      {"a=path:msrp://81.2.3.4:50001/abc1;tcp", "a=path:msrp://192.0.2.1:50001/abc1;tcp"},
  };
  for (const Place& place : places) EXPECT_EQ(replacedSdp(place.before), place.after);
}

/// A message that has names, numbers, hosts and addresses of its own in as many places as there are.
std::string plantedMessage() {
  const std::string sdp =
      "v=0\r\no=kanaria 1 1 IN IP4 mediahost.canaries.org\r\ns=Sessio Kanarina\r\ni=Infokanar\r\n"
      "u=https://web.canaries.org/pathkanar\r\ne=mailkanar@canaries.org (Fullkanar)\r\np=+49 (611) 777-0001\r\n"
      "c=IN IP4 81.2.3.1\r\nt=0 0\r\na=tool:toolhost.canaries.org\r\na=X-odd:oddkanar 6117770002 81.2.3.2\r\n"
      "m=audio 50000 RTP/AVP 0\r\nc=IN IP6 2a02:26f0::1\r\na=rtcp:50001 IN IP4 81.2.3.3\r\n"
      "a=candidate:1 1 UDP 2130706431 81.2.3.4 50000 typ srflx raddr 10.66.77.88 rport 50002\r\n"
      "a=candidate:2 1 UDP 2130706431 2a02:26f0::2 50000 typ host\r\n"
      "a=candidate:3 1 UDP 2130706431 5f4712db-ea17-4bcf-a596-105139dfd8bf.local 50000 typ host\r\n"
      "a=ssrc:99 cname:cnamekanar@81.2.3.5\r\na=ssrc:99 msid:streamkanar trackkanar\r\na=tls-id:tlskanar\r\n";
  const std::string body =
      "preamblekanar 81.2.3.6\r\n--b1\r\nContent-Type: application/sdp\r\nContent-Length: " +
      std::to_string(sdp.size()) + "\r\n\r\n" + sdp +
      "\r\n--b1\r\nContent-Type: text/xml\r\nContent-ID: <idkanar@idhost.canaries.org>\r\n\r\n"
      "<location>streetkanar 81.2.3.7 6117770003</location>\r\n--b1\r\nContent-Type: message/sipfrag\r\n\r\n"
      "SIP/2.0 480 Awaykanar\r\nTo: <sip:fragkanar@fraghost.canaries.org>\r\n\r\n--b1--\r\nepiloguekanar\r\n";
  return "INVITE sip:+496117770004@ruri.canaries.org;user=phone;maddr=81.2.3.8 SIP/2.0\r\n"
         "Via: SIP/2.0/UDP viahost.canaries.org:5060;branch=z9hG4bK-81-2-3-9-6117770005;received=81.2.3.10\r\n"
         "v: SIP/2.0/TCP [2a02:26f0::3]:5060;branch=z9hG4bKrandom\r\n"
         "From: \"Vornkanar Nachkanar\" <sip:user%6Banar@FROMHOST.canaries.org;x=vkanar>;tag=81.2.3.11\r\n"
         "t:\r\n Tokanar\r\n\t<tel:+49(611)777-0006;phone-context=ctx.canaries.org;ext=77701>\r\n"
         "Call-ID: idkanar-6117770007@81.2.3.12\r\nX-Call-ID: idkanar-6117770007@81.2.3.12\r\n"
         "m: <sip:passkanar:secretkanar@[2a02:26f0::4]:5060;line=linekanar?Subject=hdr%6Banar&X=81.2.3.13>;q=0.5\r\n"
         "Diversion: <sip:006117770008@div.canaries.org>;reason=unconditional\r\n"
         "Proxy-Authorization: Digest username=\"authkanar\", realm=\"realmkanar\", uri=\"sip:auri.canaries.org\", "
         "nonce=\"81.2.3.14\"\r\nSubject: Themakanar\r\nOrganization: Firmakanar\r\n"
         "User-Agent: Phone 1.0 (userkanar, 0004f2abcdef, ua.canaries.org)\r\n"
         "X-Odd: 6117770009, \"free text of freekanar\", sip:xkanar@x.canaries.org:6000, tokanar, 81.2.3.15:8080\r\n"
         "no colon juuttikanar\r\nWarning: 399 warnkanar \"Textkanar\"\r\n"
         "Content-Type: multipart/mixed;boundary=b1\r\nContent-Length: " +
         std::to_string(body.size()) + "\r\n\r\n" + body;
}

TEST(Anonymizer, LetsNothingOutWhatIsPlanted) {
  const std::string text = tool::lowered(anonymous(plantedMessage()));
  for (const std::string_view canary :
       {"kanar", "canaries", "81.2.3", "81-2-3", "2a02", "26f0", "10.66.77", "611777", "777-0", "77701",
        "5f4712db", "0004f2", "secret", "77700"}) {
    EXPECT_EQ(text.find(canary), std::string::npos) << canary << " in\n" << text;
  }
}

TEST(Anonymizer, LeavesAMessageThatIsReadAsBefore) {
  const std::string before = plantedMessage();
  const std::string after = anonymous(before);
  const SipView view(after);
  EXPECT_EQ(view.value("Content-Length"), std::to_string(after.size() - after.find("\r\n\r\n") - 4));
  EXPECT_EQ(view.value("Call-ID"), view.value("X-Call-ID"));
  ASSERT_TRUE(view.sdp().has_value());
  EXPECT_TRUE(view.sdp()->starts_with("v=0\r\no=name"));
  EXPECT_TRUE(view.sdp()->ends_with("\r\n"));
  EXPECT_NE(view.sdp()->find("m=audio 50000 RTP/AVP 0\r\n"), std::string::npos);
  EXPECT_EQ(std::ranges::count(before, '\n'), std::ranges::count(after, '\n'));
}

/// Whether two texts differ in letters and digits alone, and by most of these.
bool isOtherSecret(std::string_view before, std::string_view after) {
  if (before.size() != after.size()) return false;
  std::size_t changed = 0;
  std::size_t digits = 0;
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (tool::isWordCharacter(before[i]) != tool::isWordCharacter(after[i])) return false;
    if (!tool::isWordCharacter(before[i]) && before[i] != after[i]) return false;
    if (tool::isWordCharacter(before[i])) ++digits;
    if (before[i] != after[i]) ++changed;
  }
  return changed * 2 > digits;
}

TEST(Anonymizer, ReplacesKeysByOthersOfTheirKind) {
  struct Secret {
    std::string front;
    std::string secret;
    std::string behind;
  };
  const std::string base64 = "WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVz";
  const std::vector<Secret> lines = {
      {"a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:", base64, "|2^20|1:4 FEC_ORDER=FEC_SRTP"},
      {"a=crypto:1 AES_CM_128_HMAC_SHA1_32 inline:", base64, ""},
      {"a=key-mgmt:mikey ", "AQAFgM0XflABAAAAAAAAAAAAAAsAyO==", ""},
      {"a=ice-pwd:", "asd88fgpdd777uzjYhagZg", ""},
      {"a=fingerprint:sha-1 ", "4A:AD:B9:B1:3F:82:18:3B:54:02:12:DF:3E:5D:49:6B:19:E5:7C:AB", ""},
      {"k=base64", ":c2VjcmV0a2V5MTI=", ""},
  };
  for (const auto& [front, secret, behind] : lines) {
    const std::string after = replacedSdp(front + secret + behind);
    ASSERT_EQ(after.size(), front.size() + secret.size() + behind.size());
    EXPECT_TRUE(after.starts_with(front) && after.ends_with(behind)) << after;
    EXPECT_TRUE(isOtherSecret(secret, after.substr(front.size(), secret.size()))) << after;
    EXPECT_EQ(replacedSdp(front + secret + behind), after);
  }
  const std::string two =
      replacedSdp("a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:" + base64 + ";inline:" + base64);
  EXPECT_EQ(two.substr(42, 40), two.substr(90, 40));
  const std::string fingerprint = replacedSdp(lines[4].front + lines[4].secret).substr(lines[4].front.size());
  EXPECT_EQ(fingerprint.find_first_not_of("0123456789ABCDEF:"), std::string::npos);
  for (const std::string name : {"nonce", "cnonce", "response", "opaque"}) {
    const std::string secret = "dcd98b7102dd2f0e8b11d0f600bfb0c0";
    const std::string front = "Authorization: Digest qop=auth, " + name + "=\"";
    const std::string after = replaced(front + secret + "\"");
    EXPECT_TRUE(after.starts_with(front)) << after;
    EXPECT_TRUE(isOtherSecret(secret, after.substr(front.size(), secret.size()))) << after;
    EXPECT_EQ(after.find_first_not_of("0123456789abcdef", front.size()), after.size() - 1);
  }
}

TEST(Anonymizer, FindsWhatItKnowsInEveryPlaceFromThenOn) {
  Anonymizer anonymizer(kKey);
  // In front of the place that it is learned from, too.
  const std::string first = anonymizer.text(
      "OPTIONS sip:127.0.0.1 SIP/2.0\r\nEvent: kanar7\r\nFrom: \"kanar7\" <sip:4711@127.0.0.1>\r\n\r\n");
  EXPECT_EQ(first.find("kanar7"), std::string::npos);
  const std::string later = anonymizer.text(
      "OPTIONS sip:127.0.0.1 SIP/2.0\r\nVia: SIP/2.0/UDP 127.0.0.1;branch=z9hG4bK.KANAR7;x=4711\r\nKanar7: 1\r\n"
      "CSeq: 4711 kanar7\r\nServer: x/kanar7\r\n\r\n");
  EXPECT_EQ(later, "OPTIONS sip:127.0.0.1 SIP/2.0\r\nVia: SIP/2.0/UDP 127.0.0.1;branch=z9hG4bK.NAME1;x=" +
                       first.substr(first.find("sip:", 20) + 4, 4) +
                       "\r\nName1: 1\r\nCSeq: 4711 name1\r\nServer: x/name1\r\n\r\n");
}

TEST(Anonymizer, GivesEqualValuesTheSameAndOthersAnother) {
  Anonymizer anonymizer(kKey);
  const auto endpoint = [](std::string_view text) { return *tool::parseEndpoint(text); };
  const tool::Flow flow = anonymizer.flow({endpoint("81.2.3.4:5060"), endpoint("81.2.3.5:5070")});
  EXPECT_EQ(flow.source.text(), "192.0.2.1:5060");
  EXPECT_EQ(flow.destination.text(), "192.0.2.2:5070");
  const std::string text =
      anonymizer.text("ACK sip:81.2.3.5:5070 SIP/2.0\r\nVia: SIP/2.0/UDP 81.2.3.4\r\n\r\n");
  EXPECT_EQ(text, "ACK sip:192.0.2.2:5070 SIP/2.0\r\nVia: SIP/2.0/UDP 192.0.2.1\r\n\r\n");
  EXPECT_EQ(anonymizer.text("ACK sip:81.2.3.5:5070 SIP/2.0\r\nVia: SIP/2.0/UDP 81.2.3.4\r\n\r\n"), text);
  EXPECT_FALSE(anonymizer.flow({}).source.isKnown());
}

TEST(Anonymizer, TellsTheWritingsOfANumberByItsEnd) {
  Anonymizer anonymizer(kKey);
  const auto number = [&](const std::string& user) {
    const std::string text = anonymizer.text("ACK tel:" + user + " SIP/2.0\r\n\r\n");
    return text.substr(8, text.find(' ', 8) - 8);
  };
  const std::string plain = number("+496117770001");
  ASSERT_EQ(plain.size(), 13U);
  EXPECT_EQ(plain[0], '+');
  EXPECT_EQ(number("+49-(611)-777.0001"), plain.substr(0, 3) + "-(" + plain.substr(3, 3) + ")-" +
                                              plain.substr(6, 3) + "." + plain.substr(9));
  EXPECT_EQ(number("00496117770001"), "00" + plain.substr(1));
  EXPECT_EQ(number("06117770001").substr(2), plain.substr(4));
  EXPECT_EQ(number("06117770001")[0], '0');
}

TEST(Anonymizer, LeavesLengthsAsWrongAsTheyWere) {
  struct Case {
    std::string_view before;
    std::string_view after;
  };
  // The body of 9 bytes becomes one of 11.
  const std::vector<Case> cases = {
      {"l: 9\r\n\r\nc=1.2.3.4", "l: 11\r\n\r\nc=192.0.2.1"},
      {"l: 0\r\n\r\nc=1.2.3.4", "l: 0\r\n\r\nxxxxxxxxx"},
      {"l: 2\r\n\r\nc=1.2.3.4", "l: 2\r\n\r\nc=xxxxxxx"},
      {"l: 19\r\n\r\nc=1.2.3.4", "l: 21\r\n\r\nc=192.0.2.1"},
      {"l: 9\r\nl: 7\r\n\r\nc=1.2.3.4", "l: 11\r\nl: 9\r\n\r\nc=192.0.2.1"},
      {"l: x\r\n\r\nc=1.2.3.4", "l: x\r\n\r\nc=192.0.2.1"},
      {"l: 18446744073709551615\r\n\r\nc=1.2.3.4", "l: 18446744073709551615\r\n\r\nc=192.0.2.1"},
  };
  for (const auto& [before, after] : cases) {
    const std::string front = "SIP/2.0 200 OK\r\nc: application/sdp\r\n";
    EXPECT_EQ(anonymous(front + std::string(before)), front + std::string(after));
  }
}

TEST(Anonymizer, ReplacesKeysInOtherPlaces) {
  for (const std::string& line :
       {std::string("k=MDEyMzQ1Njc4OWFiY2RlZg"),
        std::string("a=acap:1 crypto:1 AES_CM_128_HMAC_SHA1_80 inline:MDEyMzQ1Njc4OWFiY2RlZg"),
        std::string("a=acap:2 key-mgmt:mikey MDEyMzQ1Njc4OWFiY2RlZg")}) {
    const std::string text = replacedSdp(line);
    EXPECT_EQ(text.size(), line.size()) << text;
    const std::size_t key = line.size() - 22;
    EXPECT_EQ(text.substr(0, key), line.substr(0, key));
    EXPECT_NE(text.substr(key), line.substr(key));
  }
  EXPECT_EQ(replacedSdp("k=prompt"), "k=prompt");
}

}  // namespace
