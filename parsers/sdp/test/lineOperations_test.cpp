#include "codecTestSupport.h"

// One m-line or b-line alone.

namespace {

struct Line {
  std::string text;
  std::size_t consumed;
};

TEST(SingleMediaLine, IsReadAndThePositionMovedBehindItsEnd) {
  const Line cases[] = {
      {"m=audio 5004/2 RTP/AVP 0 8\r\na=x\r\n", 28}, {"m=audio 5004/2 RTP/AVP 0 8\na=x\r\n", 27},
      {"m=audio 5004/2 RTP/AVP 0 8\r\na=x\ry", 28},  {"m=audio 5004/2 RTP/AVP 0 8", 26},
      {"m=audio 5004/2 RTP/AVP 0 8\r", 27},          {"m=audio 5004/2 RTP/AVP 0 8\r\n", 28}};
  for (const Line& one : cases) {
    m_line m;
    const char* position = one.text.c_str();
    char error[SDP_ERROR_TEXT_SIZE];
    int line = 9;
    int column = 9;
    ASSERT_EQ(sdp_Mdecode_r(&m, position, error, line, column), 0) << one.text;
    EXPECT_EQ(position, one.text.c_str() + one.consumed) << one.text;
    EXPECT_EQ(line, 0);
    EXPECT_EQ(column, 0);
    EXPECT_EQ(m.mediaType, MEDIA_AUDIO);
    EXPECT_STREQ(sdp_MgetPort(&m), "5004");
    EXPECT_STREQ(m.portSuffix, "/2");
    EXPECT_EQ(sdp_MgetNoOfFormats(&m), 2);
  }
}

TEST(SingleMediaLine, SaysWhetherItHoldsTheWholeLine) {
  const struct {
    std::string text;
    int incomplete;
  } cases[] = {{"m=audio 1 RTP/AVP " + std::string(31, '7'), 0},
               {"m=audio 1 RTP/AVP " + std::string(32, '7'), 1},
               {"m=audio 1 RTP/AVP 4294967296", 0},
               {"m=" + std::string(60000, 'x') + " 1 RTP/AVP 0", 1}};
  for (const auto& one : cases) {
    m_line m;
    const char* position = one.text.c_str();
    char error[SDP_ERROR_TEXT_SIZE] = "old";
    int line = 9;
    int column = 9;
    ASSERT_EQ(sdp_Mdecode_r(&m, position, error, line, column), 0);
    EXPECT_EQ(m.incomplete, one.incomplete);
    EXPECT_STREQ(error, "");
    EXPECT_EQ(position, one.text.c_str() + one.text.size());
  }
}

TEST(SingleBandwidthLine, SaysWhetherItHoldsTheWholeLine) {
  for (const std::size_t length : {63U, 64U, 60000U}) {
    const std::string text = "b=" + std::string(length, 'X') + ":1";
    b_line b;
    const char* position = text.c_str();
    int line = 9;
    int column = 9;
    ASSERT_EQ(sdp_Bdecode_r(&b, position, nullptr, line, column), 0);
    EXPECT_EQ(b.incomplete, length > 63 ? 1 : 0);
  }
}

TEST(SingleMediaLine, FailuresSayWhereAndChangeNothing) {
  const struct {
    const char* text;
    int column;
    const char* error;
  } cases[] = {
      {"", 1, "line 1, column 1: expected \"m=\", found the end of the text"},
      {"\r\nm=audio 1 x", 1, "line 1, column 1: expected \"m=\", found the end of the line"},
      {"\nm=audio 5004 RTP/AVP", 1, "line 1, column 1: expected \"m=\", found the end of the line"},
      {"b=AS:64", 1, "line 1, column 1: expected \"m=\", found \"b=AS:64\""},
      {"m", 1, "line 1, column 1: expected \"m=\", found \"m\""},
      {"m=audio\r\n5004 RTP/AVP 0", 8, "line 1, column 8: expected a port, found the end of the line"},
      {"m=audio 5004", 13, "line 1, column 13: expected a transport, found the end of the text"},
      {"m=audio 5004 RTP/AVP 0\ra=x\r\n", 23,
       "line 1, column 23: expected CR LF or LF at the line's end, found \"?a=x\""},
      {"m=audio 5004 RTP/AVP 0\r\r", 23,
       "line 1, column 23: expected CR LF or LF at the line's end, found \"?\""},
      {"\rm=audio 5004 RTP/AVP 0", 1,
       "line 1, column 1: expected CR LF or LF at the line's end, found \"?m=audio 5004 RTP/AVP 0\""},
  };
  for (const auto& one : cases) {
    m_line m{};
    m.formatCount = 1;
    const char* position = one.text;
    char error[SDP_ERROR_TEXT_SIZE];
    int line = 9;
    int column = 9;
    EXPECT_EQ(sdp_Mdecode_r(&m, position, error, line, column), 1) << one.text;
    EXPECT_EQ(position, one.text);
    EXPECT_EQ(line, 1);
    EXPECT_EQ(column, one.column);
    EXPECT_STREQ(error, one.error);
    EXPECT_EQ(m.formatCount, 1);
    EXPECT_STREQ(m.media, "");
    EXPECT_EQ(sdp_Mdecode_r(&m, position, nullptr, line, column), 1);
  }
}

TEST(SingleMediaLine, NullArgumentsAreRefused) {
  char error[SDP_ERROR_TEXT_SIZE];
  int line = 0;
  int column = 0;
  m_line* none = nullptr;
  const char* text = "m=audio 1 x";
  EXPECT_EQ(sdp_Mdecode_r(none, text, error, line, column), 1);
  EXPECT_STREQ(error, "line 1, column 1: expected a record to decode into, found the end of the text");
  m_line m;
  const char* nothing = nullptr;
  EXPECT_EQ(sdp_Mdecode_r(&m, nothing, error, line, column), 1);
  EXPECT_EQ(nothing, nullptr);
}

TEST(SingleBandwidthLine, IsReadAsTheOnlyEntry) {
  const std::string text = "b=TIAS:0256000\r\nb=AS:1\r\n";
  const char* position = text.c_str();
  b_line b;
  b.count = 8;  // whatever the record held before
  char error[SDP_ERROR_TEXT_SIZE];
  int line = 9;
  int column = 9;
  ASSERT_EQ(sdp_Bdecode_r(&b, position, error, line, column), 0);
  EXPECT_EQ(position, text.c_str() + 16);
  EXPECT_EQ(b.count, 1);
  EXPECT_STREQ(b.entries[0].type, "TIAS");
  EXPECT_EQ(sdp_BgetBandwidthValue(&b), 256000U);
}

TEST(SingleBandwidthLine, FailureLeavesTheRecord) {
  b_line b;
  b.count = 1;
  b.entries[0].value = 7;
  const char* text = "b=AS:x\r\n";
  const char* position = text;
  char error[SDP_ERROR_TEXT_SIZE];
  int line = 0;
  int column = 0;
  EXPECT_EQ(sdp_Bdecode_r(&b, position, error, line, column), 1);
  EXPECT_EQ(column, 6);
  EXPECT_STREQ(error, "line 1, column 6: expected a bandwidth in digits, found \"x\"");
  EXPECT_EQ(position, text);
  EXPECT_EQ(sdp_BgetBandwidthValue(&b), 7U);
}

TEST(SingleBandwidthLine, IsWrittenIntoATextThatIsUsedAgain) {
  b_line b;
  const char* position = "b=AS:0064";
  char error[SDP_ERROR_TEXT_SIZE];
  int first = 0;
  int second = 0;
  ASSERT_EQ(sdp_Bdecode_r(&b, position, error, first, second), 0);
  char* text = nullptr;
  int length = 0;
  int size = 0;
  ASSERT_EQ(sdp_Bencode_r(&b, text, length, size), 0);
  EXPECT_STREQ(text, "b=AS:0064\r\n");
  EXPECT_EQ(length, 11);
  const char* const allocated = text;
  b.entries[0].value = 32;
  ASSERT_EQ(sdp_Bencode_r(&b, text, length, size), 0);
  EXPECT_STREQ(text, "b=AS:32\r\n");
  EXPECT_EQ(text, allocated);
  EXPECT_EQ(length, 9);
  b.count = 0;
  ASSERT_EQ(sdp_Bencode_r(&b, text, length, size), 0);
  EXPECT_STREQ(text, "");
  EXPECT_EQ(sdp_Bencode_r(nullptr, text, length, size), 1);
  std::free(text);
}

}  // namespace
