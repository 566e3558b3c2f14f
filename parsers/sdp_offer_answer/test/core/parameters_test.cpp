#include "parameters.h"

#include "codecs.h"
#include "core/coreTestSupport.h"
#include "parameterSets.h"

using namespace sdp::exchange;

namespace {

TEST(Parameters, AreReadByTheirNames) {
  constexpr std::string_view kText = " a=1; Bc = 2 ;d;e=;a=3;f=g=h";
  EXPECT_EQ(parameterOf(kText, "a"), "1");
  EXPECT_EQ(parameterOf(kText, "bC"), "2");
  EXPECT_EQ(parameterOf(kText, "d"), "");
  EXPECT_EQ(parameterOf(kText, "e"), "");
  EXPECT_EQ(parameterOf(kText, "f"), "g=h");
  EXPECT_EQ(parameterOf(kText, "b"), std::nullopt);
  EXPECT_EQ(parameterOf("", "a"), std::nullopt);
}

TEST(Parameters, AreSetInTheirPlaces) {
  EXPECT_EQ(withParameter("a=1; b = 2 ;c=3", "B", "77"), "a=1; b = 77 ;c=3");
  EXPECT_EQ(withParameter("a=1", "b", "2"), "a=1;b=2");
  EXPECT_EQ(withParameter("", "b", "2"), "b=2");
  EXPECT_EQ(withParameter("  ", "b", "2"), "  b=2");
  EXPECT_EQ(withParameter("a; b ;c", "b", "2"), "a; b=2 ;c");
}

TEST(Parameters, AreNumbersOfAnyLength) {
  EXPECT_EQ(readNumber("0"), 0U);
  EXPECT_EQ(readNumber("18446744073709551615"), 18446744073709551615U);
  EXPECT_EQ(readNumber("18446744073709551616"), 18446744073709551615U);
  EXPECT_EQ(readNumber("99999999999999999999999"), 18446744073709551615U);
  for (const char* const text : {"", "+1", "-1", "12a", " 1"})
    EXPECT_EQ(readNumber(text), std::nullopt) << text;
}

TEST(ParameterSets, ListTelephoneEvents) {
  const struct {
    const char* fmtp;
    const char* events;
  } cases[] = {{"0-15", "0-15"}, {"1,3, 2 ", "1-3"},   {"255", "255"},    {"0-15,66,70", "0-15,66,70"},
               {"", "0-15"},     {"256", "0-15"},      {"5-3", "0-15"},   {"0-15,", "0-15"},
               {"1,x", "0-15"},  {"1 - 4;a=b", "1-4"}, {"4,5,7", "4-5,7"}};
  for (const auto& c : cases) {
    Codec codec;
    codec.fmtp = c.fmtp;
    EXPECT_EQ(textOf(eventsOf(codec)), c.events) << c.fmtp;
  }
}

TEST(Codecs, HaveAllTheirParameters) {
  const sdp::Document document = coreTest::documentOf(
      "v=0|m=video 4000 RTP/AVP 97 96 97|a=fmtp:96 a=1|a=fmtp:97 apt=|a=rtpmap:97 rtx/90000|a=fmtp:98 x=1|a=fmtp:97 apt=96 "
      ";rtx-time=9|a=fmtp:96 a=2;b=3|");
  const CodecList list(document.section(1));
  ASSERT_EQ(list.size(), 2U);
  const Codec& rtx = list[0];
  EXPECT_EQ(rtx.payload, "97");
  EXPECT_EQ(rtx.apt(), "96");
  EXPECT_EQ(rtx.parameters(), "apt=");
  EXPECT_EQ(rtx.parameter("rtx-time"), "9");
  const Codec* const codec = list.find("96");
  ASSERT_NE(codec, nullptr);
  EXPECT_EQ(codec->parameter("a"), "1");
  EXPECT_EQ(codec->parameter("b"), "3");
  EXPECT_FALSE(codec->hasParameter("x"));
  EXPECT_EQ(list.find("98"), nullptr);
}

TEST(Codecs, CarryPayloadsOfDigits) {
  Payloads payloads("96/x/97//98");
  EXPECT_EQ(payloads.next(), "96");
  EXPECT_EQ(payloads.next(), "97");
  EXPECT_EQ(payloads.next(), "98");
  EXPECT_EQ(payloads.next(), "");
}

}  // namespace
