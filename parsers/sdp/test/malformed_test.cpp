#include "codecTestSupport.h"

// What is no SDP, and how that is said.

namespace {

struct Malformed {
  const char* text;
  const char* error;
};

class MalformedText : public testing::TestWithParam<Malformed> {};

TEST_P(MalformedText, IsRefusedWithItsPlace) {
  const Decoded d(GetParam().text);
  EXPECT_EQ(d.status, 1);
  EXPECT_EQ(d.error, GetParam().error);
  EXPECT_EQ(d.oLineStart, 0);
  EXPECT_EQ(d.oLineEnd, 0);
  EXPECT_EQ(d->noOfMDs, 0);
  EXPECT_EQ(sdp_OgetUserName(&d->oLine), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    FirstLine, MalformedText,
    testing::Values(
        Malformed{"", "line 1, column 1: expected a first line \"v=\", found the end of the text"},
        Malformed{"\r\n", "line 2, column 1: expected a first line \"v=\", found the end of the text"},
        Malformed{"\r\n\n\r", "line 4, column 1: expected a first line \"v=\", found the end of the text"},
        Malformed{"V=0\r\n", "line 1, column 1: expected a first line \"v=\", found \"V=0\""},
        Malformed{"v", "line 1, column 1: expected a first line \"v=\", found \"v\""},
        Malformed{"\no=- 1 1 IN IP4 x\n",
                  "line 2, column 1: expected a first line \"v=\", found \"o=- 1 1 IN IP4 x\""},
        Malformed{
            "INVITE sip:bob@biloxi.example SIP/2.0 and so on, much longer\r\n",
            "line 1, column 1: expected a first line \"v=\", found \"INVITE sip:bob@biloxi.example SIP/2.0 an\"..."}));

INSTANTIATE_TEST_SUITE_P(
    AnyLine, MalformedText,
    testing::Values(
        Malformed{"v=0\r\n1=4\r\n",
                  "line 2, column 1: expected a line of a letter, an equals sign and a value, found \"1=4\""},
        Malformed{
            "v=0\r\n s=-\r\n",
            "line 2, column 1: expected a line of a letter, an equals sign and a value, found \" s=-\""},
        Malformed{"v=0\n\xe4=1\n",
                  "line 2, column 1: expected a line of a letter, an equals sign and a value, found \"?=1\""},
        Malformed{"v=0\r\n\r\ns\r\nt=0 0\r\n",
                  "line 3, column 2: expected an equals sign behind the letter, found the end of the line"},
        Malformed{"v=0\r\ns",
                  "line 2, column 2: expected an equals sign behind the letter, found the end of the text"},
        Malformed{"v=0\r\ns = x\r\n",
                  "line 2, column 2: expected an equals sign behind the letter, found \" = x\""},
        Malformed{"v=0\ns:x\r",
                  "line 2, column 2: expected an equals sign behind the letter, found \":x\""}));

INSTANTIATE_TEST_SUITE_P(
    OriginLine, MalformedText,
    testing::Values(
        Malformed{"v=0\no=\n", "line 2, column 3: expected a user name, found the end of the line"},
        Malformed{"v=0\no=user\n", "line 2, column 7: expected a session id, found the end of the line"},
        Malformed{"v=0\no=- 1\n", "line 2, column 6: expected a session version, found the end of the line"},
        Malformed{"v=0\no=- 1 2\n", "line 2, column 8: expected a network type, found the end of the line"},
        Malformed{"v=0\no=- 1 2 IN\n",
                  "line 2, column 11: expected an address type, found the end of the line"},
        Malformed{"v=0\no=- 1 2 IN IP4 \n",
                  "line 2, column 16: expected an address, found the end of the line"},
        Malformed{"v=0\no=- 1 2 IN IP4",
                  "line 2, column 15: expected an address, found the end of the text"}));

INSTANTIATE_TEST_SUITE_P(
    ConnectionLine, MalformedText,
    testing::Values(
        Malformed{"v=0\nc=\n", "line 2, column 3: expected a network type, found the end of the line"},
        Malformed{"v=0\nc=IN \n", "line 2, column 6: expected an address type, found the end of the line"},
        Malformed{"v=0\nc=IN IP4", "line 2, column 9: expected an address, found the end of the text"},
        Malformed{"v=0\nc=IN IP4 /127\n", "line 2, column 10: expected an address, found \"/127\""},
        Malformed{"v=0\nc=IN IP4 192.0.2.1 x\n",
                  "line 2, column 20: expected the end of the line, found \"x\""}));

INSTANTIATE_TEST_SUITE_P(
    MediaLine, MalformedText,
    testing::Values(
        Malformed{"v=0\nm=\n", "line 2, column 3: expected a media name, found the end of the line"},
        Malformed{"v=0\nm=audio\n", "line 2, column 8: expected a port, found the end of the line"},
        Malformed{"v=0\nm=audio -1 RTP/AVP 0\n", "line 2, column 9: expected a port, found \"-1 RTP/AVP 0\""},
        Malformed{"v=0\nm=audio RTP/AVP 0\n", "line 2, column 9: expected a port, found \"RTP/AVP 0\""},
        Malformed{"v=0\nm=audio +5 RTP/AVP 0\n", "line 2, column 9: expected a port, found \"+5 RTP/AVP 0\""},
        Malformed{"v=0\nm=audio 5004 \n",
                  "line 2, column 14: expected a transport, found the end of the line"},
        Malformed{"v=0\nm=audio 5004",
                  "line 2, column 13: expected a transport, found the end of the text"}));

INSTANTIATE_TEST_SUITE_P(
    BandwidthLine, MalformedText,
    testing::Values(
        Malformed{"v=0\nb=\n", "line 2, column 3: expected a bandwidth type, found the end of the line"},
        Malformed{"v=0\nb=:64\n", "line 2, column 3: expected a bandwidth type, found \":64\""},
        Malformed{"v=0\nb=AS\n",
                  "line 2, column 5: expected a colon behind the bandwidth type, found the end of the line"},
        Malformed{"v=0\nb= AS:64\n", "line 2, column 3: expected a bandwidth type, found \" AS:64\""},
        Malformed{"v=0\nb=AS :64\n",
                  "line 2, column 5: expected a colon behind the bandwidth type, found \" :64\""},
        Malformed{"v=0\nb=AS:\n",
                  "line 2, column 6: expected a bandwidth in digits, found the end of the line"},
        Malformed{"v=0\nb=AS:-1\n", "line 2, column 6: expected a bandwidth in digits, found \"-1\""},
        Malformed{"v=0\nb=AS:x\n", "line 2, column 6: expected a bandwidth in digits, found \"x\""},
        Malformed{"v=0\nb=AS:64k\n", "line 2, column 8: expected the end of the line, found \"k\""}));

INSTANTIATE_TEST_SUITE_P(
    LaterLines, MalformedText,
    testing::Values(
        Malformed{"v=0\nm=audio 5004 RTP/AVP 0\nb=AS\n",
                  "line 3, column 5: expected a colon behind the bandwidth type, found the end of the line"},
        Malformed{
            "v=0\n%s%n=%x\n",
            "line 2, column 1: expected a line of a letter, an equals sign and a value, found \"%s%n=%x\""}));

TEST(Malformed, NullTextAndNullRecord) {
  sDescription* none = nullptr;
  char error[SDP_ERROR_TEXT_SIZE] = "";
  unsigned short start = 7;
  unsigned short end = 7;
  EXPECT_EQ(sdp_decodeOpt_r(none, "v=0\r\n", SDP_TYPE_UNKNOWN, error, false, start, end), 1);
  EXPECT_STREQ(error, "line 1, column 1: expected a record to decode into, found the end of the text");
  const auto description = std::make_unique<sDescription>();
  EXPECT_EQ(sdp_decodeOpt_r(description.get(), nullptr, SDP_TYPE_UNKNOWN, error, false, start, end), 1);
  EXPECT_STREQ(error, "line 1, column 1: expected a first line \"v=\", found the end of the text");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(end, 0);
}

TEST(Malformed, AnErrorBufferIsNotNeeded) {
  const auto description = std::make_unique<sDescription>();
  unsigned short start = 7;
  unsigned short end = 7;
  EXPECT_EQ(sdp_decodeOpt_r(description.get(), "x", SDP_TYPE_UNKNOWN, nullptr, false, start, end), 1);
  EXPECT_EQ(sdp_decodeOpt_r(description.get(), "v=0", SDP_TYPE_UNKNOWN, nullptr, true, start, end), 0);
}

TEST(Malformed, MessagesStayWithinTheErrorBuffer) {
  const Decoded d("v=0\r\nm=audio " + std::string(20000, 'x'));
  EXPECT_EQ(d.status, 1);
  EXPECT_EQ(d.error, "line 2, column 9: expected a port, found \"" + std::string(40, 'x') + "\"...");
}

TEST(Malformed, MediaBeyondTheCapacityAreCheckedToo) {
  std::string body = "v=0\r\n";
  for (int i = 0; i < 26; ++i) body += "m=audio 5004 RTP/AVP 0\r\n";
  EXPECT_EQ(Decoded(body + "c=IN IP4\r\n").error,
            "line 28, column 9: expected an address, found the end of the line");
  EXPECT_EQ(Decoded(body + "b=AS\r\n").status, 1);
  EXPECT_EQ(Decoded(body + "m=audio\r\n").status, 1);
  EXPECT_EQ(Decoded(body + "c=IN IP4 192.0.2.1\r\nb=AS:1\r\na=x\r\n").status, 0);
}

}  // namespace
