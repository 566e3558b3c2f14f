#include "codecTestSupport.h"

// Line ends, empty lines, and the o-line's offsets in the text.

namespace {

struct Offsets {
  const char* name;
  std::string text;
  unsigned short start;
  unsigned short end;
};

class OriginOffsets : public testing::TestWithParam<Offsets> {};

TEST_P(OriginOffsets, AreTheLinesWithItsEnd) {
  const Decoded d(GetParam().text);
  ASSERT_EQ(d.status, 0) << d.error;
  EXPECT_EQ(d.oLineStart, GetParam().start);
  EXPECT_EQ(d.oLineEnd, GetParam().end);
}

// "o=- 1 1 IN IP4 x" has 16 characters.
INSTANTIATE_TEST_SUITE_P(
    LineEnds, OriginOffsets,
    testing::Values(Offsets{"crLf", "v=0\r\no=- 1 1 IN IP4 x\r\ns=-\r\n", 5, 23},
                    Offsets{"lf", "v=0\no=- 1 1 IN IP4 x\ns=-\n", 4, 21},
                    Offsets{"mixed", "v=0\no=- 1 1 IN IP4 x\r\ns=-", 4, 22},
                    Offsets{"endOfText", "v=0\r\no=- 1 1 IN IP4 x", 5, 21},
                    Offsets{"crAtEndOfText", "v=0\r\no=- 1 1 IN IP4 x\r", 5, 22},
                    Offsets{"crBehindEmptyLine", "v=0\r\no=- 1 1 IN IP4 x\r\n\r", 5, 23},
                    Offsets{"emptyLinesBefore", "\r\n\n\nv=0\r\n\r\no=- 1 1 IN IP4 x\r\n\r\n", 11, 29},
                    Offsets{"behindOthers", "v=0\r\ns=-\r\nt=0 0\r\no=- 1 1 IN IP4 x\r\n", 17, 35},
                    Offsets{"behindMedia", "v=0\r\nm=audio 1 RTP/AVP 0\r\no=- 1 1 IN IP4 x\r\n", 26, 44},
                    Offsets{"theFirstOfTwo", "v=0\r\no=- 1 1 IN IP4 x\r\no=- 2 2 IN IP4 y\r\n", 5, 23},
                    Offsets{"inAnotherLine", "v=0\r\ni=(o=- 1 1 IN IP4 x)\r\n", 0, 0},
                    Offsets{"none", "v=0\r\ns=-\r\n", 0, 0}),
    [](const auto& tested) { return tested.param.name; });

TEST(OriginOffsets, FarBehindTheTextsStartTheyCannotBeSaid) {
  const std::string filler = "v=0\r\ni=" + std::string(65535 - 5 - 2 - 2 - 18, 'x') + "\r\n";
  const Decoded last(filler + "o=- 1 1 IN IP4 x\r\n");
  ASSERT_EQ(last.status, 0);
  EXPECT_EQ(last.oLineStart, 65535 - 18);
  EXPECT_EQ(last.oLineEnd, 65535);
  const Decoded beyond(filler + "\no=- 1 1 IN IP4 x\r\n");
  ASSERT_EQ(beyond.status, 0);
  EXPECT_EQ(beyond.oLineStart, 0);
  EXPECT_EQ(beyond.oLineEnd, 0);
  EXPECT_STREQ(sdp_OgetUserName(&beyond->oLine), "-");
}

TEST(LineEnds, AllFormsGiveTheSameDescription) {
  const std::string wanted = kHead + "m=audio 5004 RTP/AVP 0\r\na=x\r\n";
  for (const std::string end : {"\r\n", "\n", "\n\n\n", "\r\n\r\n", "\n\r\n"}) {
    std::string text;
    for (const char* line : {"v=0", "o=- 1 1 IN IP4 192.0.2.1", "s=-", "m=audio 5004 RTP/AVP 0", "a=x"})
      text += line + end;
    const Decoded d(text);
    ASSERT_EQ(d.status, 0) << d.error;
    EXPECT_EQ(encoded(*d), wanted);
    const Decoded unterminated(text.substr(0, text.size() - end.size()));
    ASSERT_EQ(unterminated.status, 0);
    EXPECT_EQ(encoded(*unterminated), wanted);
    const Decoded endsInCr(text.substr(0, text.size() - end.size()) + "\r");
    ASSERT_EQ(endsInCr.status, 0);
    EXPECT_EQ(encoded(*endsInCr), wanted);
  }
}

struct LoneCr {
  const char* name;
  std::string text;
  unsigned int line;
  unsigned int column;
  const char* found;
};

class LoneCarriageReturn : public testing::TestWithParam<LoneCr> {};

TEST_P(LoneCarriageReturn, IsRefusedWithItsPlace) {
  const LoneCr& each = GetParam();
  const Decoded d(each.text);
  EXPECT_EQ(d.status, 1);
  EXPECT_EQ(d.error, "line " + std::to_string(each.line) + ", column " + std::to_string(each.column) +
                         ": expected CR LF or LF at the line's end, found \"" + each.found + "\"");
  EXPECT_EQ(d->noOfMDs, 0);
  EXPECT_EQ(d.oLineStart, 0);
  EXPECT_EQ(d.oLineEnd, 0);
}

// A quotation shows a CR as "?".
INSTANTIATE_TEST_SUITE_P(
    Places, LoneCarriageReturn,
    testing::Values(LoneCr{"inTheFirstLine", "v=0\rs=-\r\n", 1, 4, "?s=-"},
                    LoneCr{"inALaterLine", kHead + "i=a\rb\r\n", 4, 4, "?b"},
                    LoneCr{"inFrontOfAnAttribute", kHead + "i=x\ra=crypto:1\n", 4, 4, "?a=crypto:1"},
                    LoneCr{"inFrontOfAnMLine", kHead + "a=x\rm=video 5004 RTP/AVP 34\r\n", 4, 4,
                           "?m=video 5004 RTP/AVP 34"},
                    LoneCr{"atALinesStart", kHead + "\rs=-\r\n", 4, 1, "?s=-"},
                    LoneCr{"twiceInFrontOfLf", kHead + "i=a\r\r\n", 4, 4, "?"},
                    LoneCr{"twiceAtTheTextsEnd", kHead + "i=a\r\r", 4, 4, "?"},
                    LoneCr{"theFirstOfTwo", kHead + "i=a\rb\rc\n", 4, 4, "?b?c"},
                    LoneCr{"inFrontOfLfInAnotherLine", kHead + "i=a\rb\ni=c\r\n", 4, 4, "?b"},
                    LoneCr{"behindAnLf", kHead + "i=a\n\ri=b\n", 5, 1, "?i=b"},
                    LoneCr{"inTheLastLineWithoutEnd", kHead + "i=a\rb", 4, 4, "?b"},
                    LoneCr{"behindWhatIsWrongToo", kHead + "i:a\rb", 4, 4, "?b"},
                    LoneCr{"inEachLine", "v=0\ro=- 1 1 IN IP4 x\rs=-\r", 1, 4, "?o=- 1 1 IN IP4 x?s=-"},
                    LoneCr{"inATextOfTwo", "\r\r", 1, 1, "?"}),
    [](const auto& tested) { return tested.param.name; });

// Far more lines than a search for each of them from the start could take.
TEST(LineEnds, ALoneCrFarBehindIsFoundOnce) {
  std::string text = kHead;
  for (int i = 0; i < 200000; ++i) text += "a=x\n";
  EXPECT_EQ(Decoded(text).status, 0);
  EXPECT_EQ(Decoded(text + "a=y\rz").error,
            "line 200004, column 4: expected CR LF or LF at the line's end, found \"?z\"");
}

}  // namespace
