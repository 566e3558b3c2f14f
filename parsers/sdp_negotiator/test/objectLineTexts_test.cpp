#include <functional>
#include <string>

#include "modifiersTestSupport.h"
#include "sdpNegotiator.h"

// Values with control characters, which would make lines of their own, leave an object as it is.

namespace {

const std::string body = session + audio + video;

struct Argument {
  const char* name;
  std::string value;  ///< one that is taken
  std::function<unsigned short(cSdpNegotiator& object, const char* value)> request;
  unsigned short refusal = 1;
};

void PrintTo(const Argument& argument, std::ostream* out) { *out << argument.name; }

const Argument arguments[] = {
    {"SessionId", "77", [](cSdpNegotiator& o, const char* v) { return o.sdpModifyOLine(v, "1"); }},
    {"SessionVersion", "77", [](cSdpNegotiator& o, const char* v) { return o.sdpModifyOLine("1", v); }},
    {"OriginAddress", "192.0.2.7",
     [](cSdpNegotiator& o, const char* v) { return o.sdpModifyOLine("1", "2", v); }},
    {"ConnectionAddress", "192.0.2.7", [](cSdpNegotiator& o, const char* v) { return o.sdpReplaceCxIP(v); }},
    {"DummyAddress", "192.0.2.7",
     [](cSdpNegotiator& o, const char* v) { return o.createDummyAnswer(true, v, 5004); }},
    {"AckAddress", "192.0.2.7",
     [](cSdpNegotiator& o, const char* v) { return o.createDummyAck(true, v, 5004, "PCMU"); }},
    // It has no status.
    {"Transport", "RTP/SAVP",
     [](cSdpNegotiator& o, const char* v) -> unsigned short {
       o.sdpModifyTransportTypes("RTP/AVP", v);
       return 0;
     },
     0},
};

class LineTextOfARequest : public testing::TestWithParam<Argument> {};

TEST_P(LineTextOfARequest, WithAControlCharacterIsRefused) {
  const Argument& argument = GetParam();
  for (const char* const piece : {"\n", "\r", "\r\na=injected", "\t", "\x01", "\x1F", "\x7F"}) {
    for (const std::string& value : {argument.value + piece, piece + argument.value}) {
      cSdpNegotiator object = parsedObject(body);
      EXPECT_EQ(argument.request(object, value.c_str()), argument.refusal);
      EXPECT_TRUE(sameBytes(object, parsedObject(body)));
    }
  }
  cSdpNegotiator object = parsedObject(body);
  EXPECT_EQ(argument.request(object, argument.value.c_str()), 0);
  EXPECT_NE(textOf(object).find(argument.value), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Arguments, LineTextOfARequest, testing::ValuesIn(arguments),
                         [](const auto& each) { return each.param.name; });

TEST(LineTextOfARequest, AMessageIsNotWrittenForAnAddressWithOne) {
  for (const char* const ip : {"192.0.2.7\r\na=injected", "192.0.2.7\n", "\r192.0.2.7"}) {
    EditBuffer out("before");
    EXPECT_EQ(cSdpNegotiator::sdpCreateMessage(out.data(), ip, 5004, "PCMU", false), 1);
    out.expect("before");
  }
}

}  // namespace
