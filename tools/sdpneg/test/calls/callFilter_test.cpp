#include "calls/callFilter.h"

#include <gtest/gtest.h>

#include "calls/messages.h"

namespace {

using tool::Call;
using tool::CallFilter;
using tool::matchesPattern;

TEST(CallFilter, ComparesPatterns) {
  const struct {
    std::string_view text;
    std::string_view pattern;
    bool matches;
  } cases[] = {
      {"abc", "abc", true},         {"abc", "ab", false},
      {"abc", "ABC", false},        {"", "", true},
      {"abc", "*", true},           {"", "*", true},
      {"abc", "a*", true},          {"abc", "*c", true},
      {"abc", "a*c", true},         {"abc", "a*b", false},
      {"abc", "*b*", true},         {"abc", "abc*", true},
      {"aba", "ab*ba", false},      {"abba", "ab*ba", true},
      {"a-b-c-d", "a*b*c*d", true}, {"a-c-b-d", "a*b*c*d", false},
      {"a*c", "a*c", true},         {"abab", "*ab*ab", true},
      {"ab", "*ab*ab", false},      {"abc", "***", true},
      {"x@host", "x@*", true},      {"aab", "*ab", true},
      {"abcb", "a*b*b", true},      {"abc", "a*b*b", false},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(matchesPattern(one.text, one.pattern), one.matches) << one.text << " by " << one.pattern;
  }
}

/// From second 10 to second 20, between 192.0.2.1:5060 and 127.0.0.1:5062.
Call someCall() {
  Call call;
  call.legs = {{"one@host", {}, {}, 0}, {"two@host", {}, {}, 0}};
  call.from = "sip:Alice@example.org";
  call.to = "sip:+49301@example.org";
  call.start = 10000000;
  call.end = 20000000;
  tool::CallMessage message;
  message.flow = {calling::endpoint("192.0.2.1:5060"), calling::endpoint("127.0.0.1:5062")};
  call.messages.push_back(message);
  return call;
}

struct FilterCase {
  std::string name;
  CallFilter filter;
  bool matches;
};

TEST(CallFilter, AsksForAllThatIsSet) {
  const auto at = [](std::string_view text) { return tool::parseEndpoint(text).value(); };
  const std::vector<FilterCase> cases = {
      {"nothing", {}, true},
      {"first leg", {.callIds = {"one@host"}}, true},
      {"second leg", {.callIds = {"other", "two@*"}}, true},
      {"no leg", {.callIds = {"three*"}}, false},
      {"from", {.from = "alice@"}, true},
      {"not from", {.from = "bob"}, false},
      {"to", {.to = "+49301"}, true},
      {"not to", {.to = "alice"}, false},
      {"address", {.addresses = {at("192.0.2.1")}}, true},
      {"destination with port", {.addresses = {at("192.0.2.9"), at("127.0.0.1:5062")}}, true},
      {"other port", {.addresses = {at("127.0.0.1:5060")}}, false},
      {"since its end", {.since = 20000000}, true},
      {"since later", {.since = 20000001}, false},
      {"until its start", {.until = 10000000}, true},
      {"until earlier", {.until = 9999999}, false},
      {"inside", {.since = 12000000, .until = 13000000}, true},
      {"all", {{"one*"}, "ALICE", "example", {at("192.0.2.1")}, 0, 30000000}, true},
      {"all but one", {{"one*"}, "ALICE", "examples", {at("192.0.2.1")}, 0, 30000000}, false},
  };
  for (const FilterCase& one : cases) EXPECT_EQ(one.filter.matches(someCall()), one.matches) << one.name;
}

TEST(CallFilter, FindsCallsWithoutTimesInNoWindow) {
  Call call = someCall();
  call.start.reset();
  call.end.reset();
  EXPECT_TRUE(CallFilter().matches(call));
  EXPECT_FALSE(CallFilter({.since = 0}).matches(call));
  EXPECT_FALSE(CallFilter({.until = 30000000}).matches(call));
}

}  // namespace
