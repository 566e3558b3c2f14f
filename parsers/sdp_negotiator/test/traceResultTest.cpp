#include <gtest/gtest.h>

#include "sdpNegotiator.h"
#include "traceFakeFacility.h"

// Requests whose status is what the facility gave for a line.

namespace {

class TraceResult : public testing::Test {
 protected:
  void SetUp() override {
    fake.reset();
    fake.traceResult = 7;
  }
  void TearDown() override { fake.reset(); }

  FakeFacility& fake = fakeFacility();
};

// Deliberate: 0 while tracing is off, though nothing was done.
TEST_F(TraceResult, IsTheStatusOfARefusedOriginLine) {
  cSdpNegotiator object;
  object.sdpParse("", SDP_TYPE_OFFER);
  EXPECT_EQ(object.sdpModifyOLine(nullptr, "1"), 0);
  EXPECT_EQ(object.sdpModifyOLine("1", nullptr, "192.0.2.1"), 0);
  fake.flagsOn = 2;
  EXPECT_EQ(object.sdpModifyOLine(nullptr, "1"), 7);
  EXPECT_EQ(object.sdpModifyOLine("1", nullptr, "192.0.2.1"), 7);
  fake.traceResult = 0;
  EXPECT_EQ(object.sdpModifyOLine(nullptr, "1"), 0);
}

}  // namespace
