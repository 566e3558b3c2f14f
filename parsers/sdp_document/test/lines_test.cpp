#include "documentTestSupport.h"

// The text and its lines: where they end, what they belong to, and that all of them come back.

namespace {

using documentTest::documentBehindHead;
using documentTest::documentOf;
using sdp::Document;

struct Cut {
  const char* what;
  std::string_view text;
  std::vector<sdp::Line> lines;
};

void expectLines(const sdp::Range<sdp::LineCursor>& lines, const std::vector<sdp::Line>& expected) {
  std::size_t n = 0;
  for (const sdp::Line& line : lines) {
    ASSERT_LT(n, expected.size());
    EXPECT_EQ(line.content, expected[n].content);
    EXPECT_EQ(line.end, expected[n].end);
    ++n;
  }
  EXPECT_EQ(n, expected.size());
}

TEST(DocumentLines, EndWithLfAndOneCrInFrontOfIt) {
  const Cut cuts[] = {
      {"nothing", "", {}},
      {"no end", "v=0", {{"v=0", ""}}},
      {"LF", "v=0\ns=-\n", {{"v=0", "\n"}, {"s=-", "\n"}}},
      {"CR LF", "v=0\r\ns=-\r\n", {{"v=0", "\r\n"}, {"s=-", "\r\n"}}},
      {"both, and no end behind the last",
       "v=0\r\ns=-\nt=0 0",
       {{"v=0", "\r\n"}, {"s=-", "\n"}, {"t=0 0", ""}}},
      {"one CR alone is the end's", "a=x\r\r\n", {{"a=x\r", "\r\n"}}},
      {"LF CR", "a=x\n\ra=y\n", {{"a=x", "\n"}, {"\ra=y", "\n"}}},
      {"a CR within", "a=x\ra=y\n", {{"a=x\ra=y", "\n"}}},
      {"a CR at the text's end", "a=x\r", {{"a=x", "\r"}}},
      {"a CR alone", "\r", {{"", "\r"}}},
      {"two CRs at the text's end", "a=x\r\r", {{"a=x\r", "\r"}}},
      {"empty lines", "\n\r\n\n", {{"", "\n"}, {"", "\r\n"}, {"", "\n"}}},
      {"a NUL", std::string_view("a=x\0y\n", 6), {{std::string_view("a=x\0y", 5), "\n"}}},
      {"bytes above ASCII", "s=\xff\x80\n", {{"s=\xff\x80", "\n"}}},
      {"other ends of lines are none", "s=a\vb\fc\xc2\x85\n", {{"s=a\vb\fc\xc2\x85", "\n"}}},
  };
  for (const Cut& cut : cuts) {
    SCOPED_TRACE(cut.what);
    const Document document = documentOf(cut.text);
    EXPECT_EQ(document.lineCount(), cut.lines.size());
    EXPECT_EQ(document.sectionCount(), 0U);
    expectLines(document.session().lines(), cut.lines);
  }
}

TEST(DocumentLines, BelongToTheSectionOfTheMLineInFront) {
  const Document document =
      documentOf("v=0\nm=audio 1 RTP/AVP 0\r\n\na=x\nm=\n m=video 2 RTP/AVP 31\nM=x\nm=video");
  expectLines(document.session().lines(), {{"v=0", "\n"}});
  ASSERT_EQ(document.sectionCount(), 3U);
  expectLines(document.section(1).lines(), {{"m=audio 1 RTP/AVP 0", "\r\n"}, {"", "\n"}, {"a=x", "\n"}});
  expectLines(document.section(2).lines(), {{"m=", "\n"}, {" m=video 2 RTP/AVP 31", "\n"}, {"M=x", "\n"}});
  expectLines(document.section(3).lines(), {{"m=video", ""}});
  EXPECT_EQ(document.section(1).lineNumber(), 2U);
  EXPECT_EQ(document.section(2).lineNumber(), 5U);
  EXPECT_EQ(document.section(3).lineNumber(), 8U);
  EXPECT_EQ(document.lineCount(), 8U);
}

TEST(DocumentLines, MayBeginWithASection) {
  const Document document = documentOf("m=audio 1 RTP/AVP 0\n");
  EXPECT_TRUE(document.session().lines().empty());
  ASSERT_EQ(document.sectionCount(), 1U);
  EXPECT_EQ(document.section(1).lineNumber(), 1U);
  EXPECT_EQ(document.section(1).media(), "audio");
}

TEST(DocumentLines, ThatHoldAnMLineInTheirMiddleBeginNoSection) {
  const Document document = documentBehindHead("i=m=audio 1 RTP/AVP 0|a=x:m=video|k=clear:m=|");
  EXPECT_EQ(document.sectionCount(), 0U);
}

TEST(DocumentLines, AreCountedAsTheTextWasRead) {
  Document document = documentBehindHead("a=x|m=audio 1 RTP/AVP 0|m=video 2 RTP/AVP 31|");
  ASSERT_FALSE(stripAttributes(document, "x"));
  ASSERT_FALSE(document.addAttribute(1, "y"));
  ASSERT_FALSE(document.addAttribute(1, "z"));
  EXPECT_EQ(document.lineCount(), 7U);
  EXPECT_EQ(document.section(1).lineNumber(), 6U);
  EXPECT_EQ(document.section(2).lineNumber(), 7U);
  EXPECT_EQ(document.sectionCount(), 2U);
}

TEST(DocumentSections, AreAskedByTheirNumber) {
  const Document document = documentBehindHead("m=audio 1 RTP/AVP 0|m=video 2 RTP/AVP 31|");
  EXPECT_EQ(document.section(1).index(), 1U);
  EXPECT_EQ(document.section(2).index(), 2U);
  EXPECT_EQ(document.section(2).media(), "video");
  for (const std::uint32_t other : {0U, 3U, 4294967295U}) {
    const sdp::Section none = document.section(other);
    EXPECT_EQ(none.index(), 0U);
    EXPECT_EQ(none.lineNumber(), 0U);
    EXPECT_FALSE(none.isReadable());
    EXPECT_TRUE(none.lines().empty());
    EXPECT_TRUE(none.formats().empty());
    EXPECT_FALSE(none.connection());
  }
  std::string media;
  for (const sdp::Section& section : document.sections()) media.append(section.media()).append(" ");
  EXPECT_EQ(media, "audio video ");
}

TEST(Documents, AreEmptyAsConstructed) {
  const Document document;
  EXPECT_EQ(document.text(), "");
  EXPECT_EQ(document.lineCount(), 0U);
  EXPECT_EQ(document.sectionCount(), 0U);
  EXPECT_EQ(document.explanation(), "");
  EXPECT_TRUE(document.session().lines().empty());
  EXPECT_TRUE(document.session().groups().empty());
  EXPECT_FALSE(document.session().connection());
  EXPECT_FALSE(document.session().direction());
  EXPECT_TRUE(document.sections().empty());
}

TEST(Documents, GoOnAfterAnotherTextWasRead) {
  Document document = documentBehindHead("m=audio 1 RTP/AVP 0|a=x|");
  EXPECT_TRUE(keepCodecs(document, "opus"));
  EXPECT_NE(document.explanation(), "");
  ASSERT_FALSE(document.read("v=0\nm=video 2 RTP/AVP 31\n"));
  EXPECT_EQ(document.explanation(), "");
  EXPECT_EQ(document.text(), "v=0\nm=video 2 RTP/AVP 31\n");
  EXPECT_EQ(document.section(1).media(), "video");
  EXPECT_FALSE(document.section(1).has("x"));
  EXPECT_EQ(document.lineCount(), 2U);
}

TEST(Documents, TakeTheirOwnText) {
  Document document = documentBehindHead("m=audio 1 RTP/AVP 0|");
  ASSERT_FALSE(document.addAttribute(1, "x"));
  const std::string expected(document.text());
  ASSERT_FALSE(document.read(document.text()));
  EXPECT_EQ(document.text(), expected);
  EXPECT_TRUE(document.section(1).has("x"));
  ASSERT_FALSE(document.read(document.text().substr(4)));
  EXPECT_EQ(document.text(), expected.substr(4));
}

TEST(Documents, AreCopiedWithTheirEdits) {
  Document document = documentBehindHead("m=audio 1 RTP/AVP 0|");
  ASSERT_FALSE(document.setPort(1, 7));
  const Document copy(document);
  Document assigned = documentOf("v=0\n");
  assigned = document;
  ASSERT_FALSE(document.setPort(1, 8));
  EXPECT_EQ(copy.text(),
            documentTest::withEnds("v=0|o=- 1 1 IN IP4 192.0.2.1|s=-|t=0 0|m=audio 7 RTP/AVP 0|", "\n"));
  EXPECT_EQ(assigned.text(), copy.text());
  EXPECT_EQ(copy.section(1).port(), 7);
  EXPECT_EQ(document.section(1).port(), 8);
}

TEST(Documents, StayAsTheyAreWhenTheyAreCopiedToThemselves) {
  Document document = documentBehindHead("m=audio 1 RTP/AVP 0|");
  const std::string text(document.text());
  const Document& same = document;
  document = same;
  EXPECT_EQ(document.text(), text);
}

TEST(Documents, AreEmptyAndOfUseOnceMovedFrom) {
  Document document = documentBehindHead("m=audio 1 RTP/AVP 0|");
  const std::string text(document.text());
  Document moved(std::move(document));
  EXPECT_EQ(moved.text(), text);
  // NOLINTBEGIN(bugprone-use-after-move): what is left then is what this is about
  EXPECT_EQ(document.text(), "");
  EXPECT_EQ(document.sectionCount(), 0U);
  documentTest::expectRefusal(document.setPort(1, 2), sdp::Reason::noSuchSection, 0, 0);
  document = std::move(moved);
  EXPECT_EQ(document.text(), text);
  EXPECT_EQ(moved.text(), "");
  EXPECT_FALSE(anchor(moved, "192.0.2.9", 2000));
  EXPECT_EQ(moved.text(), "");
  ASSERT_FALSE(moved.read("v=0\n"));
  EXPECT_EQ(moved.text(), "v=0\n");
  // NOLINTEND(bugprone-use-after-move)
}

}  // namespace
