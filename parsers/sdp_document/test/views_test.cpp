#include "documentTestSupport.h"

// What is asked of the session and of sections: attributes, and what stands for a section because of its own lines or the
// session's.

namespace {

using documentTest::documentBehindHead;
using sdp::Direction;
using sdp::Document;

std::string namesOf(const sdp::Range<sdp::AttributeCursor>& attributes) {
  std::string text;
  for (const sdp::Attribute& attribute : attributes) {
    text.append(attribute.name)
        .append(attribute.value ? "=" : "")
        .append(attribute.value.value_or(""))
        .append(",");
  }
  return text;
}

TEST(Attributes, HaveANameUpToTheFirstColonAndAValueBehind) {
  const Document document =
      documentBehindHead("a=one|a=two:|a=three: 3 : x |a=|a=:four|A=five|a =six| a=seven|a|");
  EXPECT_EQ(namesOf(document.session().attributes()), "one,two=,three= 3 : x ,,=four,");
  EXPECT_EQ(namesOf(document.session().attributes("three")), "three= 3 : x ,");
  EXPECT_EQ(namesOf(document.session().attributes("")), ",=four,");
  EXPECT_EQ(namesOf(document.session().attributes("Three")), "");
  EXPECT_EQ(document.session().attribute("two")->value, "");
  EXPECT_EQ(document.session().attribute("one")->value, std::nullopt);
  EXPECT_FALSE(document.session().attribute("five"));
  EXPECT_TRUE(document.session().has("one"));
  EXPECT_FALSE(document.session().has("three "));
}

TEST(Attributes, AreFoundByNamesThatTheLibraryKnowsAndByOthers) {
  const Document document = documentBehindHead(
      "m=audio 9 RTP/AVP 0|a=mid:0|a=ssrc:1 cname:x|a=mid:1|a=ssrc:2|a=mide|a=mi|m=audio 9 RTP/AVP "
      "0|a=ssrc:3|");
  const sdp::Section section = document.section(1);
  EXPECT_EQ(namesOf(section.attributes("mid")), "mid=0,mid=1,");
  EXPECT_EQ(namesOf(section.attributes("ssrc")), "ssrc=1 cname:x,ssrc=2,");
  EXPECT_EQ(namesOf(section.attributes("mi")), "mi,");
  EXPECT_EQ(namesOf(section.attributes("extmap")), "");
  EXPECT_TRUE(section.attributes("extmap").empty());
  EXPECT_EQ(section.attributes().size(), 6U);
  EXPECT_EQ(section.attribute("mid")->value, "0");
  EXPECT_FALSE(document.session().has("mid"));
  EXPECT_FALSE(document.section(2).has("mid"));
  EXPECT_TRUE(document.section(2).has("ssrc"));
}

TEST(Attributes, HaveFieldsThatBlanksAtTheEndsAreNoPartOf) {
  const Document document = documentBehindHead("a=x: one\ttwo  three \t|a=y|");
  std::string text;
  for (const std::string_view field : document.session().attribute("x")->fields())
    text.append(field).append(",");
  EXPECT_EQ(text, "one,two,three,");
  EXPECT_EQ(document.session().attribute("x")->fields()[1], "two");
  EXPECT_EQ(document.session().attribute("x")->fields()[3], "");
  EXPECT_EQ(document.session().attribute("y")->fields()[0], "");
}

TEST(Attributes, OfLongNamesAreFoundWhole) {
  const std::string longName(70000, 'n');
  const Document document =
      documentTest::documentOf("a=" + longName + ":v\na=" + longName + "\na=" + longName + "x:w\n");
  EXPECT_EQ(document.session().attributes(longName).size(), 2U);
  EXPECT_EQ(document.session().attribute(longName)->value, "v");
  EXPECT_EQ(document.session().attribute(longName + "x")->value, "w");
  EXPECT_FALSE(document.session().has(longName + "y"));
}

// --- direction and address ---------------------------------------------------------------------------------

struct DirectionCase {
  const char* text;
  Direction direction;
  std::optional<Direction> ofSession;
};

TEST(Directions, AreTheSectionsFirstOrTheSessionsOrBothWays) {
  const DirectionCase cases[] = {
      {"m=audio 9 RTP/AVP 0|", Direction::sendrecv, std::nullopt},
      {"m=audio 9 RTP/AVP 0|a=sendonly|a=recvonly|", Direction::sendonly, std::nullopt},
      {"a=recvonly|a=inactive|m=audio 9 RTP/AVP 0|", Direction::recvonly, Direction::recvonly},
      {"a=inactive|m=audio 9 RTP/AVP 0|a=sendrecv|", Direction::sendrecv, Direction::inactive},
      {"m=audio 9 RTP/AVP 0|a=inactive:x|", Direction::inactive, std::nullopt},
      {"m=audio 9 RTP/AVP 0|a=Inactive|a=sendonly |a= sendonly|", Direction::sendrecv, std::nullopt},
      {"m=audio 9 RTP/AVP 0|m=video 9 RTP/AVP 31|a=sendonly|", Direction::sendrecv, std::nullopt},
      {"m=audio 9 RTP/AVP 0|a=sendonly\r", Direction::sendonly, std::nullopt},
  };
  for (const DirectionCase& c : cases) {
    SCOPED_TRACE(c.text);
    const Document document = documentBehindHead(c.text);
    EXPECT_EQ(document.section(1).direction(), c.direction);
    EXPECT_EQ(document.session().direction(), c.ofSession);
  }
}

TEST(Directions, AreWords) {
  for (const std::string_view word : {"sendrecv", "sendonly", "recvonly", "inactive"}) {
    ASSERT_TRUE(sdp::directionOf(word));
    EXPECT_EQ(textOf(*sdp::directionOf(word)), word);
  }
  for (const std::string_view word : {"", "SendRecv", "sendonly ", "both"})
    EXPECT_FALSE(sdp::directionOf(word));
}

struct ConnectionCase {
  const char* text;
  const char* connection;  ///< null for none
};

TEST(Connections, AreTheSectionsFirstOrTheSessions) {
  const ConnectionCase cases[] = {
      {"m=audio 9 RTP/AVP 0|", nullptr},
      {"c=IN IP4 1.1.1.1|m=audio 9 RTP/AVP 0|", "IP4,1.1.1.1"},
      {"c=IN IP4 1.1.1.1|m=audio 9 RTP/AVP 0|c=IN IP6 ::1|c=IN IP4 2.2.2.2|", "IP6,::1"},
      {"m=audio 9 RTP/AVP 0|c=IN IP4 224.2.1.1/127/3|", "IP4,224.2.1.1/127/3"},
      {"m=audio 9 RTP/AVP 0|c=IN  IP4\thost.example \t|", "IP4,host.example"},
      {"c=IN IP4 1.1.1.1|m=audio 9 RTP/AVP 0|c=IN IP4|", "IP4,"},
      {"c=IN IP4 1.1.1.1|m=audio 9 RTP/AVP 0|c=|", ","},
      {"c=IN IP4 1.1.1.1|m=audio 9 RTP/AVP 0|C=IN IP4 2.2.2.2|", "IP4,1.1.1.1"},
      {"m=audio 9 RTP/AVP 0|m=audio 9 RTP/AVP 0|c=IN IP4 1.1.1.1|", nullptr},
  };
  for (const ConnectionCase& c : cases) {
    SCOPED_TRACE(c.text);
    const Document document = documentBehindHead(c.text);
    const auto connection = document.section(1).connection();
    ASSERT_EQ(connection.has_value(), c.connection != nullptr);
    if (!connection) continue;
    EXPECT_EQ(std::string(connection->addressType) + "," + std::string(connection->address), c.connection);
  }
  EXPECT_EQ(documentBehindHead("c=IN IP6 ::1|m=audio 9 RTP/AVP 0|").session().connection()->address, "::1");
}

// --- keys and security -------------------------------------------------------------------------------------

struct SecurityCase {
  const char* transport;
  const char* session;
  const char* section;
  const char* security;
};

TEST(Securities, FollowFromTransportAndKeys) {
  const SecurityCase cases[] = {
      {"RTP/AVP", "", "", "plain"},
      {"RTP/AVPF", "", "", "plain"},
      {"RTP/AVP", "", "a=crypto:1 x y|", "osrtp"},
      {"RTP/AVP", "", "a=key-mgmt:mikey x|", "osrtp"},
      {"RTP/AVPF", "", "a=fingerprint:x y|", "osrtp"},
      {"RTP/AVP", "a=fingerprint:x y|", "", "osrtp"},
      {"RTP/AVP", "a=key-mgmt:mikey x|", "", "plain"},
      {"RTP/AVP", "a=crypto:1 x y|", "", "plain"},
      {"RTP/AVP", "a=setup:active|", "a=setup:active|a=tls-id:x|", "plain"},
      {"RTP/SAVP", "", "", "keyless"},
      {"RTP/SAVP", "a=crypto:1 x y|", "", "keyless"},
      {"RTP/SAVP", "", "a=crypto:1 x y|a=key-mgmt:mikey x|a=fingerprint:x|", "sdes"},
      {"RTP/SAVPF", "a=fingerprint:x|", "a=key-mgmt:mikey x|", "mikey"},
      {"RTP/SAVPF", "a=key-mgmt:mikey x|", "a=fingerprint:x|", "mikey"},
      {"RTP/SAVP", "", "a=fingerprint:x|", "dtls"},
      {"RTP/SAVP", "a=fingerprint:x|", "", "dtls"},
      {"UDP/TLS/RTP/SAVPF", "", "a=fingerprint:x|", "dtls"},
      {"UDP/TLS/RTP/SAVPF", "a=fingerprint:x|", "a=crypto:1 x y|", "dtls"},
      {"UDP/TLS/RTP/SAVP", "", "a=crypto:1 x y|a=key-mgmt:mikey x|", "keyless"},
      {"TCP/DTLS/RTP/SAVP", "", "a=fingerprint:x|", "dtls"},
      {"TCP/DTLS/RTP/SAVP", "", "", "keyless"},
      {"TCP/RTP/AVP", "", "a=crypto:1 x y|", "osrtp"},
      {"UDP/DTLS/SCTP", "", "", "dtls"},
      {"TCP/TLS/MSRP", "", "", "dtls"},
      {"UDP/TLS/UDPTL", "", "", "dtls"},
      {"udptl", "a=fingerprint:x|", "a=crypto:1 x y|", "plain"},
      {"TCP/MSRP", "", "a=fingerprint:x|", "plain"},
      {"UDP/tls/RTP/savpf", "", "a=fingerprint:x|", "osrtp"},
  };
  for (const SecurityCase& c : cases) {
    SCOPED_TRACE(std::string(c.session) + c.transport + " " + c.section);
    const Document document =
        documentBehindHead(std::string(c.session) + "m=audio 9 " + c.transport + " 0|" + c.section);
    EXPECT_EQ(textOf(document.section(1).security()), c.security);
  }
}

TEST(Keys, AreOfTheSectionOrTheSession) {
  const Document document = documentBehindHead(
      "a=fingerprint: sha-1 AA|a=setup:actpass x|a=ice-ufrag:u|a=ice-options:a trickle|m=audio 9 RTP/AVP 0|"
      "m=audio 9 RTP/AVP 0|a=fingerprint:sha-256 BB|a=setup: active|m=audio 9 RTP/AVP "
      "0|a=fingerprint|a=setup:|");
  EXPECT_EQ(document.section(1).fingerprintHash(), "sha-1");
  EXPECT_EQ(document.section(1).setup(), "actpass");
  EXPECT_TRUE(document.section(1).hasIce());
  EXPECT_TRUE(document.section(1).usesTrickleIce());
  EXPECT_EQ(document.section(2).fingerprintHash(), "sha-256");
  EXPECT_EQ(document.section(2).setup(), "active");
  EXPECT_EQ(document.section(3).fingerprintHash(), "");
  EXPECT_EQ(document.section(3).setup(), "");
}

TEST(Keys, OfCryptoAreTheSectionsOwn) {
  const Document document = documentBehindHead(
      "a=crypto:9 session x|m=audio 9 RTP/SAVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x|a=crypto:02  "
      "B|a=crypto:x C|"
      "a=crypto|a=crypto:|a=crypto:99999999999999999999|m=audio 9 RTP/AVP 0|");
  std::string text;
  for (const sdp::Crypto& crypto : document.section(1).crypto()) {
    text.append(crypto.tag ? std::to_string(*crypto.tag) : "-").append(" ").append(crypto.suite).append(",");
  }
  EXPECT_EQ(text, "1 AES_CM_128_HMAC_SHA1_80,2 B,- C,- ,- ,18446744073709551615 ,");
  EXPECT_TRUE(document.section(2).crypto().empty());
}

TEST(Keys, AreNotToldWhereTheSuiteIsMissing) {
  const Document document = documentBehindHead("m=audio 9 RTP/SAVP 0|a=crypto:1 inline:SECRET|");
  for (const sdp::Crypto& crypto : document.section(1).crypto()) EXPECT_EQ(crypto.suite, "");
  EXPECT_EQ(document.section(1).crypto().size(), 1U);
}

// --- ICE, RTCP, bandwidth and what else is told ---------------------------------------------------------------

TEST(Ice, IsOfTheSectionButForItsUfragAndOptions) {
  const Document document = documentBehindHead(
      "a=candidate:0|m=audio 9 RTP/AVP "
      "0|a=ice-ufrag:x|a=candidate:1|a=candidate:2|a=ice-options:ice2|a=ice-options:x "
      "trickle|m=audio 9 RTP/AVP 0|a=ice-options:trickle2 Trickle|");
  EXPECT_TRUE(document.section(1).hasIce());
  EXPECT_EQ(document.section(1).candidateCount(), 2U);
  EXPECT_TRUE(document.section(1).usesTrickleIce());
  EXPECT_FALSE(document.section(2).hasIce());
  EXPECT_EQ(document.section(2).candidateCount(), 0U);
  EXPECT_FALSE(document.section(2).usesTrickleIce());
}

TEST(Ice, OfTheSessionIsAskedAnewAfterAnEdit) {
  Document document = documentBehindHead("a=ice-options:trickle|m=audio 9 RTP/AVP 0|");
  EXPECT_TRUE(document.section(1).usesTrickleIce());
  ASSERT_FALSE(document.removeAttributes(0, "ice-options"));
  EXPECT_FALSE(document.section(1).usesTrickleIce());
  ASSERT_FALSE(document.addAttribute(0, "ice-options", "trickle"));
  EXPECT_TRUE(document.section(1).usesTrickleIce());
}

struct RtcpCase {
  const char* line;
  std::optional<std::uint64_t> port;
  const char* address;
};

TEST(Rtcp, IsThePortAndTheFourthField) {
  const RtcpCase cases[] = {
      {"a=rtcp:5005", 5005, ""},
      {"a=rtcp:5005 IN IP4 1.1.1.1", 5005, "1.1.1.1"},
      {"a=rtcp: 5005\tIN  IP6 ::1 x", 5005, "::1"},
      {"a=rtcp:5005 1.1.1.1", 5005, ""},
      {"a=rtcp:x IN IP4 1.1.1.1", std::nullopt, "1.1.1.1"},
      {"a=rtcp:-1", std::nullopt, ""},
      {"a=rtcp:", std::nullopt, ""},
      {"a=rtcp", std::nullopt, ""},
      {"a=rtcp:70000", 70000, ""},
  };
  for (const RtcpCase& c : cases) {
    SCOPED_TRACE(c.line);
    const Document document =
        documentBehindHead("a=rtcp:1|m=audio 9 RTP/AVP 0|" + std::string(c.line) + "|a=rtcp:2|");
    ASSERT_TRUE(document.section(1).rtcp());
    EXPECT_EQ(document.section(1).rtcp()->port, c.port);
    EXPECT_EQ(document.section(1).rtcp()->address, c.address);
  }
  const Document document =
      documentBehindHead("a=rtcp:1|a=rtcp-mux|m=audio 9 RTP/AVP 0|m=audio 9 RTP/AVP 0|a=rtcp-mux|");
  EXPECT_FALSE(document.section(1).rtcp());
  EXPECT_FALSE(document.section(1).hasRtcpMux());
  EXPECT_TRUE(document.section(2).hasRtcpMux());
}

TEST(Bandwidths, AreToldInTheirOrder) {
  const Document document = documentBehindHead(
      "b=AS:64|b=TIAS:64000 \t|b=AS:12x|b=AS: 1|b=AS|b=CT |b=|b=X-y:-1|b=AS:18446744073709551616|B=AS:1|"
      "m=audio 9 RTP/AVP 0|b=RR:0|");
  std::string text;
  for (const sdp::Bandwidth& bandwidth : document.session().bandwidths()) {
    text.append(bandwidth.type).append("=");
    text.append(bandwidth.value ? std::to_string(*bandwidth.value) : "-").append(",");
  }
  EXPECT_EQ(text, "AS=64,TIAS=64000,AS=-,AS=-,AS=-,CT=-,=-,X-y=-,AS=18446744073709551615,");
  EXPECT_EQ(document.section(1).bandwidths().begin()->type, "RR");
  EXPECT_EQ(document.section(1).bandwidths().begin()->value, 0U);
}

TEST(Mids, AreTheFirstFieldOfTheFirst) {
  const Document document = documentBehindHead(
      "a=mid:s|m=audio 9 RTP/AVP 0|a=mid: 0 x|a=mid:1|a=label: l m|m=audio 9 RTP/AVP 0|a=mid|a=mid:2|m=audio "
      "9 RTP/AVP "
      "0|a=mid:|m=audio 9 RTP/AVP 0|");
  EXPECT_EQ(document.section(1).mid(), "0");
  EXPECT_EQ(document.section(1).label(), "l");
  EXPECT_EQ(document.section(2).mid(), "");
  EXPECT_EQ(document.section(3).mid(), "");
  EXPECT_EQ(document.section(4).mid(), "");
  EXPECT_EQ(document.section(4).label(), "");
}

TEST(Groups, AreTheSessions) {
  const Document document = documentBehindHead(
      "a=group:BUNDLE 0  1\t2 |a=group:LS|a=group|a=group: FID 1|m=audio 9 RTP/AVP 0|a=group:BUNDLE x|");
  std::string text;
  for (const sdp::Group& group : document.session().groups()) {
    text.append(group.semantics).append(":");
    for (const std::string_view mid : group.mids) text.append(mid).append(",");
    text.append(" ");
  }
  EXPECT_EQ(text, "BUNDLE:0,1,2, LS: : FID:1, ");
  EXPECT_EQ(document.session().groups().size(), 4U);
}

TEST(Groups, OfASectionAreTheFirstBundleWithItsMid) {
  const Document document = documentBehindHead(
      "a=group:LS 0 1|a=group:BUNDLE 1|a=group:BUNDLE 0 1|a=group:bundle 2|m=audio 9 RTP/AVP 0|a=mid:0|"
      "m=audio 9 RTP/AVP 0|a=mid:1|m=audio 9 RTP/AVP 0|a=mid:2|m=audio 9 RTP/AVP 0|m=audio 9 RTP/AVP "
      "0|a=mid:0|");
  EXPECT_EQ(document.section(1).bundle(), 2U);
  EXPECT_EQ(document.section(2).bundle(), 1U);
  EXPECT_EQ(document.section(3).bundle(), std::nullopt);
  EXPECT_EQ(document.section(4).bundle(), std::nullopt);
  EXPECT_EQ(document.section(5).bundle(), 2U);
}

TEST(Groups, AreAskedAnewAfterAnEdit) {
  Document document = documentBehindHead("a=group:BUNDLE 0|m=audio 9 RTP/AVP 0|a=mid:0|");
  EXPECT_EQ(document.section(1).bundle(), 0U);
  ASSERT_FALSE(document.setAttribute(0, "group", "BUNDLE 1"));
  EXPECT_EQ(document.section(1).bundle(), std::nullopt);
  ASSERT_FALSE(document.setAttribute(1, "mid", "1"));
  EXPECT_EQ(document.section(1).bundle(), 0U);
}

}  // namespace
