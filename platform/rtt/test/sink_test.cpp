#include <cerrno>
#include <climits>
#include <stdexcept>

#include "rttTestSupport.h"

namespace {

struct Seen {
  std::string component;
  int flag;
  int type;
  int level;
  std::string text;
};

using Record = std::vector<Seen>;

void recordLine(void* context, const KvRttLine* line) {
  EXPECT_EQ(line->text[line->length], '\0');
  static_cast<Record*>(context)->push_back(
      {line->component, line->flag, line->type, line->level, std::string(line->text, line->length)});
}

class Sink : public testing::Test {
 protected:
  void TearDown() override { KvRttSetSink(nullptr, nullptr); }
  const int handle = registerShared();
  Record record;
};

TEST_F(Sink, ReceivesTheLineAndItsNumbers) {
  KvRttSetSink(recordLine, &record);
  EXPECT_EQ(pvxTraceRtt(handle, 8, 7200, 4, "Entering."), 0);
  ASSERT_EQ(record.size(), 1u);
  EXPECT_EQ(record[0].component, "SHARED");
  EXPECT_EQ(record[0].flag, 8);
  EXPECT_EQ(record[0].type, 7200);
  EXPECT_EQ(record[0].level, 4);
  EXPECT_EQ(record[0].text, "Entering.");
}

TEST_F(Sink, ReceivesConversionsAsText) {
  KvRttSetSink(recordLine, &record);
  EXPECT_EQ(pvxTraceRtt(handle, 2, 7200, 2, "s=%s%n%d%%"), 0);
  ASSERT_EQ(record.size(), 1u);
  EXPECT_EQ(record[0].text, "s=%s%n%d%%");
}

TEST_F(Sink, ReceivesControlCharactersAsTheyAre) {
  KvRttSetSink(recordLine, &record);
  EXPECT_EQ(pvxTraceRtt(handle, 2, 7200, 2, "v=0\r\no=\x1B[2J\t\x7F\xC2\x9B"), 0);
  ASSERT_EQ(record.size(), 1u);
  EXPECT_EQ(record[0].text, "v=0\r\no=\x1B[2J\t\x7F\xC2\x9B");
}

TEST_F(Sink, ReceivesAnEmptyTextForNull) {
  KvRttSetSink(recordLine, &record);
  EXPECT_EQ(pvxTraceRtt(handle, 2, 7200, 2, nullptr), 0);
  ASSERT_EQ(record.size(), 1u);
  EXPECT_EQ(record[0].text, "");
}

TEST_F(Sink, ReceivesLinesOfAnyLength) {
  const std::string line(100000, 'y');
  KvRttSetSink(recordLine, &record);
  EXPECT_EQ(pvxTraceRtt(handle, 2, 7200, 2, line.c_str()), 0);
  ASSERT_EQ(record.size(), 1u);
  EXPECT_EQ(record[0].text, line);
}

TEST_F(Sink, ReceivesNothingForAnUnknownHandle) {
  KvRttSetSink(recordLine, &record);
  for (int other : {-1, 0, handle + 1, kvRttMaxComponents, kvRttMaxComponents + 1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(pvxTraceRtt(other, 2, 7200, 2, "lost"), kvRttUnknownHandle) << other;
  }
  EXPECT_TRUE(record.empty());
}

TEST_F(Sink, IsNotAskedAboutFlags) {
  KvRttSetSink(recordLine, &record);
  for (int flag : {2, 8, 0, -1, INT_MIN}) EXPECT_EQ(pvxTraceRtt(handle, flag, 0, 0, "line"), 0);
  EXPECT_EQ(record.size(), 5u);
}

TEST_F(Sink, IsNotCalledOnceReplaced) {
  Record later;
  KvRttSetSink(recordLine, &record);
  KvRttSetSink(recordLine, &later);
  EXPECT_EQ(pvxTraceRtt(handle, 2, 7200, 2, "line"), 0);
  EXPECT_TRUE(record.empty());
  EXPECT_EQ(later.size(), 1u);
}

struct Tracer {
  int handle;
  int calls;
  int innerResult;
};

void traceFromInside(void* context, const KvRttLine*) {
  auto& tracer = *static_cast<Tracer*>(context);
  ++tracer.calls;
  tracer.innerResult = pvxTraceRtt(tracer.handle, 2, 7200, 2, "from inside");
}

TEST_F(Sink, DropsWhatItTracesItselfWithoutAnError) {
  Tracer tracer{handle, 0, -1};
  KvRttSetSink(traceFromInside, &tracer);
  EXPECT_EQ(pvxTraceRtt(handle, 2, 7200, 2, "line"), 0);
  EXPECT_EQ(tracer.calls, 1);
  EXPECT_EQ(tracer.innerResult, 0);
  EXPECT_EQ(pvxTraceRtt(handle, 2, 7200, 2, "line"), 0);
  EXPECT_EQ(tracer.calls, 2);
}

TEST_F(Sink, MaySetAnotherSinkAndSwitchFlags) {
  KvRttSetSink(
      [](void* context, const KvRttLine*) {
        EXPECT_EQ(KvRttSwitchFlag("SHARED", "ERROR", true), 0);
        KvRttSetSink(recordLine, context);
      },
      &record);
  EXPECT_EQ(pvxTraceRtt(handle, 2, 7200, 2, "first"), 0);
  EXPECT_EQ(pvxTraceRtt(handle, 2, 7200, 2, "second"), 0);
  ASSERT_EQ(record.size(), 1u);
  EXPECT_EQ(record[0].text, "second");
  EXPECT_EQ(KvRttTstFlag(handle, 4), 1);
  EXPECT_EQ(KvRttSwitchFlag("SHARED", "ERROR", false), 0);
}

TEST_F(Sink, MayThrowWithoutHarmToTheTracingComponent) {
  KvRttSetSink([](void*, const KvRttLine*) { throw std::runtime_error("full"); }, nullptr);
  EXPECT_EQ(pvxTraceRtt(handle, 2, 7200, 2, "line"), 0);
  KvRttSetSink(recordLine, &record);
  EXPECT_EQ(pvxTraceRtt(handle, 2, 7200, 2, "line"), 0);
  EXPECT_EQ(record.size(), 1u);
}

TEST_F(Sink, LeavesTheErrorNumberAsItWas) {
  KvRttSetSink([](void*, const KvRttLine*) { errno = EPIPE; }, nullptr);
  errno = ENOENT;
  pvxTraceRtt(handle, 2, 7200, 2, "line");
  EXPECT_EQ(errno, ENOENT);
}

}  // namespace
