// Arguments may be views into the document that they change, and what is refused leaves nothing behind.

#include <gtest/gtest.h>
#include <malloc.h>

#include <string>

#include "sdpDocumentRequests.h"

namespace {

TEST(DocumentOwnText, AnAttributeTakesTheValueOfAnotherHoweverManyEditsCameBefore) {
  sdp::Document document;
  ASSERT_FALSE(document.read("v=0\r\nm=audio 5000 RTP/AVP 0\r\nm=video 6000 RTP/AVP 31\r\n"));
  const std::string value = "0123456789" + std::string(400, 'x');
  ASSERT_FALSE(document.setAttribute(1, "x-note", value));
  for (int i = 0; i < 1000; ++i) {
    const std::string_view own = *document.section(1).attribute("x-note")->value;
    ASSERT_FALSE(document.setAttribute(2, "x-copied-note", own));
    ASSERT_EQ(*document.section(2).attribute("x-copied-note")->value, value) << i;
  }
}

TEST(DocumentOwnText, ADocumentReadsAPartOfItself) {
  sdp::Document document;
  ASSERT_FALSE(document.read("v=0\r\nm=audio 5000 RTP/AVP 0\r\nm=video 6000 RTP/AVP 31\r\n"));
  ASSERT_FALSE(document.setPort(1, 7000));
  ASSERT_FALSE(document.read(document.text().substr(0, 29)));
  EXPECT_EQ(document.text(), "v=0\r\nm=audio 7000 RTP/AVP 0\r\n");
}

TEST(DocumentOwnText, RefusedRequestsTakeNoMoreMemoryTheMoreTheyAre) {
  sdp::Document document;
  ASSERT_FALSE(document.read("v=0\r\nm=audio 5000 RTP/AVP 96\r\na=rtpmap:96 AMR/8000\r\n"));
  ASSERT_TRUE(sdp::keepCodecs(document, "PCMA"));
  const std::size_t before = mallinfo2().uordblks;
  for (int i = 0; i < 50'000; ++i) ASSERT_TRUE(sdp::keepCodecs(document, "PCMA"));
  EXPECT_LT(mallinfo2().uordblks, before + 100'000);
}

}  // namespace
