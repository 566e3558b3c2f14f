#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "parserParseSupport.h"

// Bodies of the shapes that have crashed other programs. Each ends in a status, with a summary whose lists
// and bits are within their limits; the sanitizers watch the rest.

namespace {

using Codecs = std::vector<int>;

void expectSound(const Parsed& result) {
  EXPECT_LT(result.data.mediaType, 64U);
  for (const std::uint8_t codec : result.data.audioCodec) EXPECT_LE(codec, 38);
  EXPECT_GE(result.data.h264Profile, H264_PROFILE_NOT_PRESENT);
  EXPECT_LE(result.data.h264Profile, H264_LEVEL_5_1);
  EXPECT_LE(result.data.oLineStart, result.data.oLineEnd);
}

Parsed soundly(const std::string& body) {
  Parsed result = parsed(body);
  expectSound(result);
  return result;
}

const std::vector<std::string> everything = {"a=ice-ufrag:x",
                                             "a=key-mgmt:mikey A",
                                             "m=audio 5004 RTP/AVP 0 8 18 97 101",
                                             "c=IN IP4 192.0.2.2",
                                             "b=AS:64",
                                             "a=rtpmap:97 iLBC/8000",
                                             "a=rtpmap:101 telephone-event/8000",
                                             "a=fmtp:18 annexb:no",
                                             "a=ptime:20",
                                             "a=mptime:20 20 20 20 20",
                                             "a=ecan:on",
                                             "a=silenceSupp:off",
                                             "a=gpmd:0 vbd=yes",
                                             "a=candidate:1 1 UDP 1 192.0.2.1 5004 typ host",
                                             "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x",
                                             "m=video 5006 RTP/SAVP 97",
                                             "a=rtpmap:97 H264/90000",
                                             "a=fmtp:97 profile-level-id=42e01f",
                                             "a=label:1",
                                             "m=image 5008 udptl t38",
                                             "a=T38MaxBitRate:14400",
                                             "m=application 5010 RTP/AVP 99"};

TEST(ParserHostile, EveryPrefixOfABody) {
  const std::string body = bodyOf(everything);
  EXPECT_EQ(soundly(body).status, 0);
  for (std::size_t size = 0; size < body.size(); ++size) soundly(body.substr(0, size));
}

TEST(ParserHostile, ANulAndEveryByteInEveryPlace) {
  const std::string body = bodyOf(everything);
  for (const char byte : {'\0', '\x7F', '\x80', '\xFF', '%', '\r', '\n', ' ', '\t', ':', '='}) {
    for (std::size_t at = 0; at < body.size(); ++at) {
      std::string changed = body;
      changed[at] = byte;
      soundly(changed);
    }
  }
}

TEST(ParserHostile, LineEndsOfAllKinds) {
  const std::vector<std::string> lines = {"v=0",   "o=- 1 2 IN IP4 192.0.2.9", "s=-",
                                          "t=0 0", "m=audio 5004 RTP/AVP 0",   "a=sendonly"};
  for (const char* lineEnd : {"\n", "\n\r\n", "\r\n\r\n", "\n\n\n"}) {
    const Parsed result = soundly(joined(lines, lineEnd));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.data.sessionMode, CONNECTION_MODE_SENDONLY);
  }
  for (const char* lineEnd : {"\r\n ", "\r", "\n\r", "\r\r\n"})
    EXPECT_NE(soundly(joined(lines, lineEnd)).status, 0);
}

TEST(ParserHostile, OverlongWords) {
  for (const std::size_t length : {32U, 33U, 64U, 127U, 350U, 8000U, 60000U}) {
    const std::string word(length, '7');
    EXPECT_EQ(soundly(bodyOf({"m=" + word + " 5004 RTP/AVP 0"})).status, 0);
    EXPECT_EQ(soundly(bodyOf({"m=audio 5004 " + word + " 0"})).status, 0);
    EXPECT_EQ(codecsOf(soundly(bodyOf({"m=audio 5004 RTP/AVP " + word + " 0"})).data), (Codecs{3}));
    EXPECT_EQ(soundly(bodyOf({"m=audio " + word + " RTP/AVP 0"})).status, 1);
    EXPECT_EQ(soundly(bodyOf({"m=audio 5004 RTP/AVP 0", "c=IN IP4 " + word})).status, 1);
    EXPECT_EQ(soundly(bodyOf({"m=audio 5004 RTP/AVP 0", "c=" + word + " IP4 192.0.2.1"})).status, 0);
    EXPECT_EQ(soundly(bodyOf({"m=audio 5004 RTP/AVP 0", "a=" + word})).status, 0);
    EXPECT_EQ(soundly(bodyOf({"m=audio 5004 RTP/AVP 0", "b=AS:" + word})).status, 0);
    for (const std::string name :
         {"candidate", "candidate:1 1 UDP 1 192.0.2.1", "ssrc:1 cname", "rtpmap", "rtpmap:97", "fmtp:97",
          "fmtp:18", "ptime", "gpmd:0", "crypto", "label", "key-mgmt", "fingerprint", "setup"}) {
      const std::string line = "a=" + name + ":" + word;
      EXPECT_EQ(
          soundly(bodyOf({line, "m=audio 5004 RTP/AVP 97 18", line, "m=video 5006 RTP/AVP 97", line})).status,
          0)
          << name;
    }
  }
}

TEST(ParserHostile, AttributesWithoutAValue) {
  std::vector<std::string> lines = {"m=audio 5004 RTP/AVP 97 0"};
  std::vector<std::string> video = {"m=video 5006 RTP/AVP 97"};
  for (const std::string name : {"rtpmap", "fmtp", "crypto", "fingerprint", "setup", "key-mgmt", "candidate",
                                 "ptime", "mptime", "gpmd", "ecan", "label", "T38MaxBitRate", ""}) {
    for (const std::string& line : {"a=" + name, "a=" + name + ":", "a=" + name + ": "}) {
      EXPECT_EQ(soundly(bodyOf({line, lines[0], line, video[0], line})).status, 0) << line;
    }
  }
}

TEST(ParserHostile, NumbersBeyondTheirTypes) {
  for (const std::string number : {"4294967296", "18446744073709551616", "99999999999999999999999999"}) {
    EXPECT_EQ(soundly(bodyOf({"m=audio 17000 RTP/AVP " + number})).status, 0);
    EXPECT_EQ(soundly(bodyOf({"m=audio " + number + " RTP/AVP 0"})).status, 1);
    EXPECT_EQ(soundly(bodyOf({"m=audio 5004/" + number + " RTP/AVP 0"})).status, 0);
    const Parsed video = soundly(bodyOf({"m=video 5004 RTP/AVP 31", "b=AS:" + number}));
    EXPECT_EQ(video.data.videoBandwidth, 4294967295U);
    soundly(bodyOf({"m=audio 5004 RTP/AVP 0", "a=ptime:" + number}));
    soundly(bodyOf({"m=audio 5004 RTP/AVP 0", "a=ptime:" + number + "-" + number}));
    soundly(bodyOf({"m=audio 5004 RTP/AVP 97", "a=rtpmap:" + number + " iLBC/8000"}));
  }
}

TEST(ParserHostile, MediaLinesThatAreNone) {
  for (const std::string line : {"m=", "m=audio", "m=audio ", "m=audio 5004", "m=audio -1 RTP/AVP 0",
                                 "m=audio x RTP/AVP 0", "m=audio RTP/AVP 0", "m= 5004 RTP/AVP 0", "b=AS",
                                 "b=AS:-1", "b=AS:x", "c=IN IP4", "c=IN", "c=", "c=IN IP4 192.0.2.1 x"}) {
    const Parsed result = soundly(bodyOf({"m=audio 5004 RTP/AVP 0", line}));
    EXPECT_EQ(result.status, 1) << line;
    EXPECT_EQ(result.traces.size(), 1U) << line;  // the decoder's, and nothing is analysed
    EXPECT_EQ(result.data.mediaType, 0U) << line;
  }
  const Parsed blanks = soundly(bodyOf({"m=audio \t 5004/  RTP/AVP\t\t0   8  "}));
  EXPECT_EQ(blanks.status, 0);
  EXPECT_EQ(codecsOf(blanks.data), (Codecs{3, 1}));
}

TEST(ParserHostile, AddressesThatAreNone) {
  for (const std::string address : {"2001:db8::1%eth0", "192.0.2", "192.0.2.1.1", "::1::", "host.example"}) {
    EXPECT_EQ(soundly(bodyOf({"m=audio 5004 RTP/AVP 0", "c=IN X " + address})).status, 1) << address;
  }
  EXPECT_EQ(soundly(bodyOf({"m=audio 5004 RTP/AVP 0", "c=IN IP4 224.2.1.1/127/3"})).status, 0);
  EXPECT_EQ(soundly(bodyOf({"m=audio 5004 RTP/AVP 0", "c=IN IP4 192.0.2.1", "c=IN IP6 x"})).status, 0);
}

TEST(ParserHostile, OriginLinesOfAllShapes) {
  const std::string digits(40, '9');
  for (const std::string origin : {"- 1", "- 1 2 IN IP4 192.0.2.9 x y", "", "- - - - - -"}) {
    soundly("v=0\r\no=" + origin + "\r\ns=-\r\nt=0 0\r\nm=audio 5004 RTP/AVP 0\r\n");
  }
  for (const std::string& version : {digits, std::string("18446744073709551615"), std::string(60000, '1')}) {
    const std::string origin = "o=- 1 " + version + " IN IP4 192.0.2.9\r\n";
    const Parsed result = soundly("v=0\r\n" + origin + "s=-\r\nt=0 0\r\nm=audio 5004 RTP/AVP 0\r\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.data.oLineStart, 5);
    EXPECT_EQ(result.data.oLineEnd, 5 + origin.size());
  }
  // Behind what an offset can tell.
  const Parsed far = soundly("v=0\r\ns=" + std::string(66000, 's') + "\r\no=- 1 2 IN IP4 192.0.2.9\r\n");
  EXPECT_EQ(far.status, 0);
  EXPECT_EQ(far.data.oLineStart, 0);
  EXPECT_EQ(far.data.oLineEnd, 0);
}

TEST(ParserHostile, MoreTimesAndCryptoLinesThanAreHeld) {
  std::vector<std::string> lines(300, "t=1 2");
  lines.insert(lines.end(), 300, "r=7d 1h 0 25h");
  std::string adjustments = "z=1 2";
  for (int i = 0; i < 1000; ++i) adjustments += " 2882844526 -1h";
  lines.push_back(adjustments);
  lines.push_back("m=audio 5004 RTP/SAVP 0");
  lines.push_back("a=crypto:1");
  lines.push_back("a=crypto:1AES_CM_128_HMAC_SHA1_80");
  lines.push_back("a=crypto:1 " + std::string(500, 'A') + " inline:x");
  lines.insert(lines.end(), 300, "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x");
  const Parsed result = soundly(bodyOf(lines));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(codecsOf(result.data), (Codecs{3}));
  EXPECT_TRUE(result.attribute(SDP_ATTR_SECURE_RTP));
}

TEST(ParserHostile, ConversionsReachTheTraceAsTheyAre) {
  const std::string text = "%s%n%d%x%999999999d%*c";
  const Parsed address = soundly(bodyOf({"m=audio 5004 RTP/AVP 0", "c=IN IP4 " + text}));
  EXPECT_TRUE(address.has(4, 3, "Invalid ip address (" + text + ") found in c-line"));
  const Parsed decoder = soundly(bodyOf({text}));
  ASSERT_EQ(decoder.traces.size(), 1U);
  EXPECT_NE(decoder.traces[0].text.find('%'), std::string::npos);
  std::vector<std::string> lines = {"i=" + text, "a=" + text + ":" + text, "m=audio 5004 RTP/AVP 0 " + text};
  EXPECT_EQ(soundly(bodyOf(lines)).status, 0);
}

TEST(ParserHostile, PrefixesOfLinesInsideOtherLines) {
  const std::vector<std::string> session = {"v=0",
                                            "o=- 1 2 IN IP4 192.0.2.9",
                                            "s=m=audio 0 RTP/AVP 0",
                                            "i=(o=IN IP4 192.168.1.100) c=IN IP6 ::1 a=sendonly",
                                            "c=IN IP4 192.0.2.1",
                                            "t=0 0",
                                            "m=audio 5004 RTP/AVP 0",
                                            "a=crypto:1 x inline:m=video 5006 RTP/AVP 31 a=inactive m=="};
  const Parsed result = soundly(joined(session));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.data.mediaType, static_cast<unsigned>(MEDIA_AUDIO));
  EXPECT_EQ(result.data.sessionMode, CONNECTION_MODE_SENDRECV);
  EXPECT_EQ(addressOf(result.data), "192.0.2.1");
}

TEST(ParserHostile, MoreThanTheCapacities) {
  for (const std::size_t count : {25U, 26U, 60U, 300U}) {
    const std::vector<std::string> media(count, "m=audio 5004 RTP/AVP 0");
    EXPECT_EQ(soundly(bodyOf(media)).status, count <= 25 ? 0 : 1);
  }
  for (const std::size_t count : {40U, 41U, 1000U}) {
    std::vector<std::string> lines(count, "a=rtpmap:97 iLBC/8000");
    lines.push_back("m=audio 5004 RTP/AVP 97");
    EXPECT_EQ(codecsOf(soundly(bodyOf(lines)).data), (Codecs{26}));
    lines.insert(lines.end(), count, "a=candidate:192.0.2.1");
    EXPECT_EQ(soundly(bodyOf(lines)).status, 0);
  }
  std::string formats = "m=video 5004 RTP/AVP";
  for (int i = 0; i < 1000; ++i) formats += " 31";
  EXPECT_EQ(soundly(bodyOf({formats})).status, 0);
}

}  // namespace
