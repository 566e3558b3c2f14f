// A session without a line has no place for another, and says so.

#include <gtest/gtest.h>

#include "sdpDocument.h"

namespace {

using sdp::Reason;

TEST(DocumentEmptySession, RefusesWhatWouldBeItsFirstLine) {
  for (const std::string_view text :
       {"", "\r\n", "\n\nm=audio 5000 RTP/AVP 0\r\n", "m=audio 5000 RTP/AVP 0\r\n"}) {
    sdp::Document document;
    ASSERT_FALSE(document.read(text));
    EXPECT_EQ(document.addAttribute(0, "ice-lite"), (sdp::Refusal{Reason::noSuchSection})) << text;
    EXPECT_EQ(document.setAttribute(0, "ice-lite"), (sdp::Refusal{Reason::noSuchSection})) << text;
    EXPECT_EQ(document.setConnection(0, "192.0.2.1"), (sdp::Refusal{Reason::noSuchSection})) << text;
    EXPECT_EQ(document.explanation(), "no such section") << text;
    EXPECT_EQ(document.text(), text);
  }
}

TEST(DocumentEmptySession, TakesAnAttributeBehindItsOnlyLine) {
  sdp::Document document;
  ASSERT_FALSE(document.read("v=0\n\nm=audio 5000 RTP/AVP 0\n"));
  ASSERT_FALSE(document.addAttribute(0, "ice-lite"));
  EXPECT_EQ(document.text(), "v=0\na=ice-lite\n\nm=audio 5000 RTP/AVP 0\n");
}

}  // namespace
