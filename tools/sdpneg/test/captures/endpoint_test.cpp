#include "captures/endpoint.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_view_literals;
using tool::parseEndpoint;

TEST(Endpoint, IsReadAsItIsWritten) {
  for (const std::string_view text :
       {"192.0.2.1:5060"sv, "192.0.2.1"sv, "[2001:db8::1]:5060"sv, "2001:db8::1"sv, "0.0.0.0:65535"sv}) {
    const auto endpoint = parseEndpoint(text);
    ASSERT_TRUE(endpoint) << text;
    EXPECT_EQ(endpoint->text(), text);
  }
  EXPECT_EQ(parseEndpoint("[192.0.2.1]:5060")->text(), "192.0.2.1:5060");
  EXPECT_EQ(parseEndpoint("[2001:db8::1]")->text(), "2001:db8::1");
}

TEST(Endpoint, IsNothingElse) {
  for (const std::string_view text :
       {""sv, ":"sv, "5060"sv, "192.0.2.1:"sv, "192.0.2.1:65536"sv, "192.0.2.1:4294972356"sv,
        "192.0.2.1:-1"sv, "192.0.2.1:5060x"sv, "192.0.2:5060"sv, "example.com:5060"sv, "[2001:db8::1"sv,
        "[2001:db8::1]5060"sv, "[2001:db8::1]x5060"sv, "[]:5060"sv, "192.0.2.1\0:5060"sv}) {
    EXPECT_FALSE(parseEndpoint(text)) << text;
  }
  EXPECT_FALSE(parseEndpoint(std::string(1000, '1')));
}

TEST(Endpoint, IsUnknownWithoutAnAddress) {
  EXPECT_EQ(tool::Endpoint().text(), "unknown");
  EXPECT_EQ(tool::addressOfBytes("abc").text(), "unknown");
  EXPECT_EQ(tool::addressOfBytes("\x7F\0\0\1"sv).text(), "127.0.0.1");
}

TEST(Endpoint, HashesByAllOfAFlow) {
  const tool::Flow flow{*parseEndpoint("192.0.2.1:1"), *parseEndpoint("192.0.2.2:2")};
  tool::Flow other = flow;
  EXPECT_EQ(hashOf(other), hashOf(flow));
  other.source.port = 3;
  EXPECT_NE(hashOf(other), hashOf(flow));
  EXPECT_NE(hashOf(tool::Flow{flow.destination, flow.source}), hashOf(flow));
}

}  // namespace
