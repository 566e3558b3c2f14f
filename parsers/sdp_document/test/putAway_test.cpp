#include "documentTestSupport.h"

// Putting sections away: their port, their groups, and who takes their port over.

namespace {

using documentTest::expectDone;
using documentTest::expectUnchanged;

TEST(Disable, SetsPortZeroAndKeepsTheRest) {
  expectDone({
      {"a section", "disable audio",
       "m=audio 5004 RTP/AVP 0 96|c=IN IP4 1.1.1.1|a=rtpmap:96 x/1|a=sendonly|m=video 9 RTP/AVP 31|",
       "m=audio 0 RTP/AVP 0 96|c=IN IP4 1.1.1.1|a=rtpmap:96 x/1|a=sendonly|m=video 9 RTP/AVP 31|"},
      {"the count goes", "disable 1", "m=audio\t5004/2  RTP/AVP 0 |", "m=audio\t0  RTP/AVP 0 |"},
      {"without RTP", "disable application", "m=application 9 UDP/DTLS/SCTP webrtc-datachannel|",
       "m=application 0 UDP/DTLS/SCTP webrtc-datachannel|"},
      {"all of them", "disable all", "m=audio 1 RTP/AVP 0|m=video 2 RTP/AVP 31|m=x 3 y z|",
       "m=audio 0 RTP/AVP 0|m=video 0 RTP/AVP 31|m=x 0 y z|"},
      {"bundled only", "disable 1", "m=audio 00 RTP/AVP 0|a=bundle-only|a=x|a=bundle-only:y|",
       "m=audio 0 RTP/AVP 0|a=x|"},
      {"bundled only with a port", "disable 1", "m=audio 9 RTP/AVP 0|a=bundle-only|", "m=audio 0 RTP/AVP 0|"},
  });
  expectUnchanged({
      {"disabled", "disable all", "a=group:BUNDLE 0|m=audio 00/2 RTP/AVP 0|a=mid:0|"},
      {"no such section", "disable 2", "m=audio 9 RTP/AVP 0|"},
      {"no section", "disable all", ""},
  });
}

TEST(Disable, TakesTheMidOutOfAllGroupsOfTheSession) {
  expectDone({
      {"with the blanks in front", "disable 2",
       "a=group:BUNDLE 0 \t1  2 |a=group:LS 1\t0|m=audio 9 RTP/AVP 0|a=mid:0|m=video 9 RTP/AVP 31|a=mid:1|",
       "a=group:BUNDLE 0  2 |a=group:LS\t0|m=audio 9 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|"},
      {"the last of one", "disable 1", "a=group:BUNDLE 0 1 |m=audio 9 RTP/AVP 0|a=mid:1|",
       "a=group:BUNDLE 0 |m=audio 0 RTP/AVP 0|a=mid:1|"},
      {"one that it empties goes", "disable 1",
       "a=group:LS 0|a=group:FID 0 1|a=x|m=audio 9 RTP/AVP 0|a=mid:0|",
       "a=group:FID 1|a=x|m=audio 0 RTP/AVP 0|a=mid:0|"},
      {"one that was empty stays", "disable 1", "a=group:LS|a=group|a=group:|m=audio 9 RTP/AVP 0|a=mid:0|",
       "a=group:LS|a=group|a=group:|m=audio 0 RTP/AVP 0|a=mid:0|"},
      {"a mid that is there twice", "disable 1", "a=group:BUNDLE 0 1 0|m=audio 9 RTP/AVP 0|a=mid:0|",
       "a=group:BUNDLE 1|m=audio 0 RTP/AVP 0|a=mid:0|"},
      {"semantics that are like the mid", "disable 1", "a=group:LS LS x|m=audio 9 RTP/AVP 0|a=mid:LS|",
       "a=group:LS x|m=audio 0 RTP/AVP 0|a=mid:LS|"},
      {"mids compare exactly", "disable 1", "a=group:BUNDLE A a aa|m=audio 9 RTP/AVP 0|a=mid:a|",
       "a=group:BUNDLE A aa|m=audio 0 RTP/AVP 0|a=mid:a|"},
      {"though another section bears it", "disable 1",
       "a=group:BUNDLE 0 1|m=audio 9 RTP/AVP 0|a=mid:0|m=audio 9 RTP/AVP 0|a=mid:0|",
       "a=group:BUNDLE 1|m=audio 0 RTP/AVP 0|a=mid:0|m=audio 9 RTP/AVP 0|a=mid:0|"},
      {"a group of a section stays", "disable 1", "m=audio 9 RTP/AVP 0|a=mid:0|a=group:BUNDLE 0|",
       "m=audio 0 RTP/AVP 0|a=mid:0|a=group:BUNDLE 0|"},
      {"the first field of the first mid", "disable 1",
       "a=group:BUNDLE 0 1 x|m=audio 9 RTP/AVP 0|a=mid: 0 x|a=mid:1|",
       "a=group:BUNDLE 1 x|m=audio 0 RTP/AVP 0|a=mid: 0 x|a=mid:1|"},
  });
}

TEST(Disable, GivesThePortToTheNextThatIsBundledOnly) {
  expectDone({
      {"the next behind", "disable 1",
       "a=group:BUNDLE 0 1 2|m=audio 9/1 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|a=bundle-only|"
       "m=video 0 RTP/AVP 31|a=mid:2|a=bundle-only|",
       "a=group:BUNDLE 1 2|m=audio 0 RTP/AVP 0|a=mid:0|m=video 9/1 RTP/AVP 31|a=mid:1|"
       "m=video 0 RTP/AVP 31|a=mid:2|a=bundle-only|"},
      {"behind in the body, not in the group", "disable 1",
       "a=group:BUNDLE 2 1 0|m=audio 9 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|a=bundle-only|"
       "m=video 0 RTP/AVP 31|a=mid:2|a=bundle-only|",
       "a=group:BUNDLE 2 1|m=audio 0 RTP/AVP 0|a=mid:0|m=video 9 RTP/AVP 31|a=mid:1|"
       "m=video 0 RTP/AVP 31|a=mid:2|a=bundle-only|"},
      {"none in front", "disable 2",
       "a=group:BUNDLE 0 1|m=video 0 RTP/AVP 31|a=mid:0|a=bundle-only|m=audio 9 RTP/AVP 0|a=mid:1|",
       "a=group:BUNDLE 0|m=video 0 RTP/AVP 31|a=mid:0|a=bundle-only|m=audio 0 RTP/AVP 0|a=mid:1|"},
      {"not while another member has a port", "disable 1",
       "a=group:BUNDLE 0 1 2|m=audio 9 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|a=bundle-only|"
       "m=video 9 RTP/AVP 31|a=mid:2|",
       "a=group:BUNDLE 1 2|m=audio 0 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|a=bundle-only|"
       "m=video 9 RTP/AVP 31|a=mid:2|"},
      {"not one that is disabled", "disable 1",
       "a=group:BUNDLE 0 1 2|m=audio 9 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|m=video 0 RTP/AVP "
       "31|a=mid:2|a=bundle-only|",
       "a=group:BUNDLE 1 2|m=audio 0 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|m=video 9 RTP/AVP "
       "31|a=mid:2|"},
      {"not of another group", "disable 1",
       "a=group:BUNDLE 0|a=group:LS 0 1|m=audio 9 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP "
       "31|a=mid:1|a=bundle-only|",
       "a=group:LS 1|m=audio 0 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|a=bundle-only|"},
      {"semantics compare exactly", "disable 1",
       "a=group:bundle 0 1|m=audio 9 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|a=bundle-only|",
       "a=group:bundle 1|m=audio 0 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|a=bundle-only|"},
      {"in each of two groups", "disable 1",
       "a=group:BUNDLE 0 2|a=group:BUNDLE 0 1|m=audio 9 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP "
       "31|a=mid:1|a=bundle-only|"
       "m=video 0 RTP/AVP 31|a=mid:2|a=bundle-only|",
       "a=group:BUNDLE 2|a=group:BUNDLE 1|m=audio 0 RTP/AVP 0|a=mid:0|m=video 9 RTP/AVP 31|a=mid:1|"
       "m=video 9 RTP/AVP 31|a=mid:2|"},
      {"one that had no port has none to give", "disable 1",
       "a=group:BUNDLE 0 1|m=audio 0 RTP/AVP 0|a=mid:0|a=bundle-only|m=video 0 RTP/AVP "
       "31|a=mid:1|a=bundle-only|",
       "a=group:BUNDLE 1|m=audio 0 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|a=bundle-only|"},
      {"an unreadable section is no member", "disable 1",
       "a=group:BUNDLE 0 1 2|m=audio 9 RTP/AVP 0|a=mid:0|m=video 0|a=mid:1|a=bundle-only|m=video 0 RTP/AVP "
       "31|a=mid:2|a=bundle-only|",
       "a=group:BUNDLE 1 2|m=audio 0 RTP/AVP 0|a=mid:0|m=video 0|a=mid:1|a=bundle-only|m=video 9 RTP/AVP "
       "31|a=mid:2|"},
  });
}

TEST(Disable, OfSeveralGoesFromOneToTheNext) {
  expectDone({
      {"the port is handed on and taken away again", "disable all",
       "a=group:BUNDLE 0 1|a=group:LS 1|m=audio 9 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP "
       "31|a=mid:1|a=bundle-only|",
       "m=audio 0 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|"},
      {"to the third", "disable video",
       "a=group:BUNDLE 0 1 2|m=video 7 RTP/AVP 31|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|a=bundle-only|m=audio "
       "0 RTP/AVP 0|"
       "a=mid:2|a=bundle-only|",
       "a=group:BUNDLE 2|m=video 0 RTP/AVP 31|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|m=audio 7 RTP/AVP "
       "0|a=mid:2|"},
      {"the second was the last with a port", "disable video",
       "a=group:BUNDLE 0 1 2|m=video 7 RTP/AVP 31|a=mid:0|m=video 8 RTP/AVP 31|a=mid:1|m=audio 0 RTP/AVP "
       "0|a=mid:2|a=bundle-only|",
       "a=group:BUNDLE 2|m=video 0 RTP/AVP 31|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|m=audio 8 RTP/AVP "
       "0|a=mid:2|"},
      {"in codec requests as well", "drop-codecs H261",
       "a=group:BUNDLE 0 1 2|m=video 7 RTP/AVP 31|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|a=bundle-only|m=audio "
       "0 RTP/AVP 0|"
       "a=mid:2|a=bundle-only|",
       "a=group:BUNDLE 2|m=video 0 RTP/AVP 31|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|m=audio 7 RTP/AVP "
       "0|a=mid:2|"},
  });
}

// --- which sections are meant ------------------------------------------------------------------------------

TEST(Selections, AreMediaNumbersAndMids) {
  const char* const body =
      "m=audio 1 RTP/AVP 0|a=mid:a|m=video 1 RTP/AVP 0|a=mid:b|m=Audio 1 RTP/AVP 0|a=mid:c|m=text 1 RTP/AVP "
      "0|"
      "m=application 1 RTP/AVP 0|m=message 1 RTP/AVP 0|m=image 1 RTP/AVP 0|a=mid:a|m=audio 1 "
      "RTP/AVP|a=mid:a|";
  struct Case {
    const char* media;
    const char* ports;  ///< of the seven readable sections
  };
  const Case cases[] = {
      {"audio", "0111111"},       {"video", "1011111"},      {"text", "1110111"},
      {"application", "1111011"}, {"message", "1111101"},    {"image", "1111110"},
      {"all", "0000000"},         {"1", "0111111"},          {"007", "1111110"},
      {"3", "1101111"},           {"0", "1111111"},          {"8", "1111111"},
      {"9", "1111111"},           {"4294967297", "1111111"}, {"18446744073709551617", "1111111"},
      {"mid=b", "1011111"},       {"mid=a", "0111110"},      {"mid=A", "1111111"},
      {"mid=", "1111111"},        {"mid=mid=a", "1111111"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.media);
    sdp::Document document = documentTest::documentBehindHead(body);
    EXPECT_FALSE(disable(document, c.media));
    std::string ports;
    for (std::uint32_t n = 1; n <= 7; ++n) ports += std::to_string(document.section(n).port());
    EXPECT_EQ(ports, c.ports);
  }
}

TEST(Selections, AreAudioAndVideoForCodecsAndAllOtherwise) {
  const char* const body =
      "m=audio 9 RTP/AVP 0 8|m=video 9 RTP/AVP 0 8|m=text 9 RTP/AVP 0 8|m=x 9 RTP/AVP 0 8|";
  expectDone({
      {"kept", "keep-codecs PCMU", body,
       "m=audio 9 RTP/AVP 0|m=video 9 RTP/AVP 0|m=text 9 RTP/AVP 0 8|m=x 9 RTP/AVP 0 8|"},
      {"dropped", "drop-codecs PCMU", body,
       "m=audio 9 RTP/AVP 8|m=video 9 RTP/AVP 8|m=text 9 RTP/AVP 0 8|m=x 9 RTP/AVP 0 8|"},
      {"ordered", "order-codecs 8", body,
       "m=audio 9 RTP/AVP 8 0|m=video 9 RTP/AVP 8 0|m=text 9 RTP/AVP 0 8|m=x 9 RTP/AVP 0 8|"},
      {"kept in all", "keep-codecs PCMU all", body,
       "m=audio 9 RTP/AVP 0|m=video 9 RTP/AVP 0|m=text 9 RTP/AVP 0|m=x 9 RTP/AVP 0|"},
      {"a profile", "set-profile RTP/AVPF", body,
       "m=audio 9 RTP/AVPF 0 8|m=video 9 RTP/AVPF 0 8|m=text 9 RTP/AVPF 0 8|m=x 9 RTP/AVPF 0 8|"},
      {"a direction", "direction inactive", "m=audio 9 RTP/AVP 0|m=x 0 y z|",
       "m=audio 9 RTP/AVP 0|a=inactive|m=x 0 y z|a=inactive|"},
  });
}

TEST(PutAway, SeveralByTheirNumbersAreAsOneAfterTheOther) {
  const char* const body =
      "a=group:BUNDLE a b c d|a=group:LS a d|m=audio 9 RTP/AVP 0|a=mid:a|m=video 0 RTP/AVP 31|a=mid:b|a=bundle-only|"
      "m=video 0 RTP/AVP 31|a=mid:c|a=bundle-only|m=text x|m=video 0 RTP/AVP 31|a=mid:d|";
  struct Case {
    std::vector<std::uint32_t> sections;
    const char* after;
  };
  const Case cases[] = {
      {{}, body},
      {{0, 6, 4, 5, 4294967295U}, body},
      {{1},
       "a=group:BUNDLE b c d|a=group:LS d|m=audio 0 RTP/AVP 0|a=mid:a|m=video 9 RTP/AVP 31|a=mid:b|"
       "m=video 0 RTP/AVP 31|a=mid:c|a=bundle-only|m=text x|m=video 0 RTP/AVP 31|a=mid:d|"},
      {{2, 1, 2},
       "a=group:BUNDLE c d|a=group:LS d|m=audio 0 RTP/AVP 0|a=mid:a|m=video 0 RTP/AVP 31|a=mid:b|"
       "m=video 9 RTP/AVP 31|a=mid:c|m=text x|m=video 0 RTP/AVP 31|a=mid:d|"},
  };
  for (const Case& c : cases) {
    sdp::Document document = documentTest::documentBehindHead(body);
    EXPECT_FALSE(disableSections(document, c.sections));
    EXPECT_EQ(document.text(), documentTest::documentBehindHead(c.after).text());
  }
}

TEST(PutAway, LeavesEachOfManyGroups) {
  std::string before = "v=0\n";
  std::string after = "v=0\n";
  for (int n = 0; n < 300; ++n) {
    before += "a=group:LS 0 1 2\n";
    after += "a=group:LS 1\n";
  }
  before += "m=audio 9 RTP/AVP 0\na=mid:0\nm=audio 9 RTP/AVP 0\na=mid:1\nm=video 9 RTP/AVP 31\na=mid:2\n";
  after += "m=audio 0 RTP/AVP 0\na=mid:0\nm=audio 9 RTP/AVP 0\na=mid:1\nm=video 0 RTP/AVP 31\na=mid:2\n";
  sdp::Document document = documentTest::documentOf(before);
  ASSERT_FALSE(sdp::disable(document, "1"));
  ASSERT_FALSE(sdp::disable(document, "video"));
  EXPECT_EQ(document.text(), after);
}

}  // namespace
