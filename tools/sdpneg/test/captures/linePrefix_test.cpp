#include "captures/linePrefix.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using tool::findStartLine;
using tool::samePrefix;

constexpr std::optional<std::size_t> kNone;

TEST(LinePrefix, StandsInFrontOfAStartLine) {
  for (const std::string prefix :
       {"", "SIP> ", "SIP>", "2024-01-02 10:11:12.123 SIP> ", "   ", "[123] INFO: ", "\xEF\xBB\xBF"}) {
    EXPECT_EQ(findStartLine(prefix + "INVITE sip:bob@example.com SIP/2.0"), prefix.size()) << prefix;
    EXPECT_EQ(findStartLine(prefix + "SIP/2.0 200 OK"), prefix.size()) << prefix;
  }
}

TEST(LinePrefix, IsNoneWithoutAStartLine) {
  for (const std::string line : {"", "SIP/2.0", "Via: SIP/2.0/UDP 192.0.2.1", " SIP/2.0", "sip:bob SIP/2.0",
                                 "x bob SIP/2.0", "INVITE sip:bob SIP/2.0 sent", "SIP/2.0 OK"}) {
    EXPECT_EQ(findStartLine(line), kNone) << line;
  }
  EXPECT_EQ(findStartLine(std::string(512, '>') + "SIP/2.0 200 OK"), 512U);
  EXPECT_EQ(findStartLine(std::string(513, '>') + "SIP/2.0 200 OK"), kNone);
}

TEST(LinePrefix, IsTheSameButForItsNumbers) {
  const std::string prefix = "2024-01-02 10:11:12.123 SIP> ";
  EXPECT_EQ(samePrefix(prefix, "2024-01-02 10:11:12.124 SIP> Via: x"), prefix.size());
  EXPECT_EQ(samePrefix(prefix, "2024-01-02 10:11:12.99999 SIP> Via: x"), prefix.size() + 2);
  EXPECT_EQ(samePrefix(prefix, "2024-01-02 10:11:12.123 SIP> "), prefix.size());
  EXPECT_EQ(samePrefix(prefix, "2024-01-02 10:11:12.123 SIP>"), prefix.size() - 1);
  EXPECT_EQ(samePrefix(prefix, "2024-01-02 10:11:12.123 SIP"), kNone);
  EXPECT_EQ(samePrefix(prefix, "2024-01-02 10:11:12.123 ERR> x"), kNone);
  EXPECT_EQ(samePrefix(prefix, "2024-01-02 10:11:12.x SIP> Via: x"), kNone);
  EXPECT_EQ(samePrefix("", "anything"), 0U);
  EXPECT_EQ(samePrefix("9 ", "10 x"), 3U);
}

}  // namespace
