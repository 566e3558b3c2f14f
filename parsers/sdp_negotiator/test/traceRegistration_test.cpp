#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "sdpNegotiatorTrace.h"
#include "traceFakeFacility.h"

namespace {

using Operation = FakeFacility::Operation;

/// The manager holds nothing but its handle, so both have the same address.
static_assert(std::is_standard_layout_v<cNegotTraceManager> && sizeof(cNegotTraceManager) == sizeof(int));

int handleOf(const cNegotTraceManager& manager) {
  int handle = 0;
  std::memcpy(&handle, static_cast<const void*>(&manager), sizeof handle);
  return handle;
}

class TraceRegistration : public testing::Test {
 protected:
  void SetUp() override { fake.reset(); }
  void TearDown() override { fake.reset(); }
  FakeFacility& fake = fakeFacility();
};

void expectRegistration(const std::vector<FakeFacility::Call>& calls, const cNegotTraceManager& manager) {
  const struct {
    Operation operation;
    int flag;
    const char* text;
  } expected[] = {
      {Operation::init, 0, ""},
      {Operation::registerFacility, 0, "SDP_NEGOTIATOR"},
      {Operation::registerFlag, 1, "SDP_NEGOTIATOR/DEBUG"},
      {Operation::registerFlag, 2, "SDP_NEGOTIATOR/INFO"},
      {Operation::registerFlag, 4, "SDP_NEGOTIATOR/ERROR"},
  };
  ASSERT_EQ(calls.size(), std::size(expected));
  for (std::size_t i = 0; i < calls.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(calls[i].operation, expected[i].operation);
    EXPECT_EQ(calls[i].flag, expected[i].flag);
    EXPECT_EQ(calls[i].text, expected[i].text);
  }
  for (std::size_t i : {0u, 1u}) {
    EXPECT_EQ(static_cast<const void*>(calls[i].handleAddress), static_cast<const void*>(&manager));
    EXPECT_EQ(calls[i].handleBefore, -1);
  }
}

TEST_F(TraceRegistration, HappensAtLoadInOrder) {
  expectRegistration(fake.callsAtLoad, negotTrcManager);
  EXPECT_EQ(fake.logEntriesAtLoad, 0);
  EXPECT_EQ(handleOf(negotTrcManager), 5);
}

TEST_F(TraceRegistration, HappensForEachManager) {
  const cNegotTraceManager manager;
  expectRegistration(fake.calls, manager);
  EXPECT_TRUE(fake.log.empty());
  EXPECT_EQ(handleOf(manager), 5);
}

TEST_F(TraceRegistration, IsNotUndoneByDestruction) {
  { const cNegotTraceManager manager; }
  EXPECT_EQ(fake.calls.size(), 5u);
  EXPECT_TRUE(fake.flagTests.empty());
  EXPECT_TRUE(fake.log.empty());
}

TEST_F(TraceRegistration, StopsWhenTheFacilityCannotBePrepared) {
  fake.initResult = 3;
  const cNegotTraceManager manager;
  ASSERT_EQ(fake.calls.size(), 1u);
  EXPECT_EQ(fake.calls[0].operation, Operation::init);
  EXPECT_TRUE(fake.log.empty());
  EXPECT_EQ(handleOf(manager), -1);
}

TEST_F(TraceRegistration, KeepsTheHandleThatAFailedPreparationLeft) {
  fake.initResult = -1;
  fake.initHandle = 77;
  const cNegotTraceManager manager;
  EXPECT_EQ(fake.calls.size(), 1u);
  EXPECT_EQ(handleOf(manager), 77);
}

TEST_F(TraceRegistration, ReportsARefusalToTheLogOnce) {
  fake.registerResult = 9;
  fake.registerHandle = 33;
  const cNegotTraceManager manager;
  EXPECT_EQ(handleOf(manager), -1);

  ASSERT_EQ(fake.calls.size(), 3u);
  EXPECT_EQ(fake.calls[1].operation, Operation::registerFacility);
  EXPECT_EQ(fake.calls[2].operation, Operation::log);
  ASSERT_EQ(fake.log.size(), 1u);
  EXPECT_EQ(fake.log[0].file, "src/sdpNegotiatorTrace");
  EXPECT_EQ(fake.log[0].line, 61);
  EXPECT_EQ(fake.log[0].kind, 0);
  EXPECT_EQ(fake.log[0].severity, 4);
  EXPECT_EQ(fake.log[0].code, 0x390001);
  EXPECT_EQ(fake.log[0].format, "SDP_NEGOTIATOR failed to register with kvrtt. Registration status = %s");
  EXPECT_EQ(fake.log[0].message,
            "SDP_NEGOTIATOR failed to register with kvrtt. Registration status = status text 9");
}

TEST_F(TraceRegistration, TakesAnyStatusButZeroForARefusal) {
  for (int status : {-1, 1, 0x10000}) {
    fake.reset();
    fake.registerResult = status;
    const cNegotTraceManager manager;
    EXPECT_EQ(handleOf(manager), -1) << status;
    EXPECT_EQ(fake.log.size(), 1u) << status;
  }
}

}  // namespace
