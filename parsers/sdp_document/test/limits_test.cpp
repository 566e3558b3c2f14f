#include "documentTestSupport.h"

// How long a text may be.

namespace {

using documentTest::expectRefusal;
using sdp::Document;
using sdp::Reason;

/// A body of a length, with one long line in a section.
std::string bodyOf(std::size_t length) {
  std::string body = "v=0\r\nm=audio 9 RTP/AVP 0\r\na=x:";
  body.append(length - body.size() - 2, 'y');
  return body.append("\r\n");
}

TEST(DocumentLength, MayBe64MiB) {
  Document document;
  {
    const std::string body = bodyOf(Document::kMaximumLength);
    ASSERT_FALSE(document.read(body));
    EXPECT_TRUE(document.text() == body);
    EXPECT_EQ(document.lineCount(), 3U);
  }
  // An edit that would exceed it is refused, whatever it is; one that does not is done.
  const auto isAsBefore = [&document] {
    return document.text().size() == Document::kMaximumLength && document.section(1).port() == 9;
  };
  expectRefusal(document.addAttribute(1, "z"), Reason::textTooLong, 0, 0);
  EXPECT_TRUE(isAsBefore());
  EXPECT_EQ(document.explanation(), "more than 67108864 characters");
  expectRefusal(document.setPort(1, 10), Reason::textTooLong, 0, 0);
  expectRefusal(setDirection(document, sdp::Direction::inactive), Reason::textTooLong, 0, 0);
  expectRefusal(anchor(document, "::1", 2000), Reason::textTooLong, 0, 0);
  EXPECT_TRUE(isAsBefore());
  EXPECT_FALSE(document.section(1).has("inactive"));
  EXPECT_FALSE(document.setPort(1, 8));
  EXPECT_EQ(document.text().size(), Document::kMaximumLength);
  EXPECT_EQ(document.section(1).port(), 8);
  // Together they may take and give.
  EXPECT_FALSE(document.setAttribute(1, "x", "y"));
  EXPECT_EQ(document.text(), "v=0\r\nm=audio 8 RTP/AVP 0\r\na=x:y\r\n");
  EXPECT_FALSE(document.addAttribute(1, "z"));
}

TEST(DocumentLength, BeyondIsNotRead) {
  Document document = documentTest::documentBehindHead("m=audio 9 RTP/AVP 0|");
  const std::string body = bodyOf(Document::kMaximumLength + 1);
  expectRefusal(document.read(body), Reason::textTooLong, 0, 0);
  EXPECT_EQ(document.text(), "");
  EXPECT_EQ(document.sectionCount(), 0U);
  EXPECT_EQ(document.explanation(), "more than 67108864 characters");
}

}  // namespace
