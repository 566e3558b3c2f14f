#include <atomic>

#include "rttTestSupport.h"

namespace {

constexpr int threadCount = 4;

template <class Work>
void onThreads(Work work) {
  std::vector<std::thread> threads;
  threads.reserve(threadCount);
  for (int i = 0; i < threadCount; ++i) threads.emplace_back(work, i);
  for (auto& thread : threads) thread.join();
}

TEST(Threads, RegisteringOneComponentGetTheSameHandle) {
  inFreshProcess([] {
    std::atomic<int> handles[threadCount];
    onThreads([&](int i) {
      int handle = -1;
      EXPECT_EQ(KvRttRegFacility(&handle, "TOGETHER"), 0);
      EXPECT_EQ(KvRttRegFlag("TOGETHER", 2, "INFO"), 0);
      handles[i] = handle;
    });
    for (int i = 1; i < threadCount; ++i) EXPECT_EQ(handles[i], handles[0]);
    EXPECT_EQ(KvRttSwitchFlag("TOGETHER", "INFO", true), 0);
    EXPECT_EQ(KvRttTstFlag(handles[0], 2), 1);
  });
}

TEST(Threads, WriteLinesToStandardErrorThatNeverInterleave) {
  // Longer than what a pipe takes in one piece (PIPE_BUF, 4096 on Linux).
  constexpr std::size_t length = 9000;
  constexpr int linesOfEach = 100;
  const int handle = registerShared();
  StandardErrorReader reader;
  onThreads([&](int i) {
    const std::string line(length, static_cast<char>('a' + i));
    for (int n = 0; n < linesOfEach; ++n) pvxTraceRtt(handle, 2, 7200, i, line.c_str());
  });
  const auto lines = linesOf(reader.finish());

  ASSERT_EQ(lines.size(), static_cast<std::size_t>(threadCount * linesOfEach));
  int seen[threadCount] = {};
  for (const auto& line : lines) {
    const auto text = line.find(": ");
    ASSERT_NE(text, std::string::npos);
    const int level = line[text - 1] - '0';
    ASSERT_TRUE(level >= 0 && level < threadCount) << line.substr(0, text);
    ASSERT_EQ(line.substr(text + 2), std::string(length, static_cast<char>('a' + level)));
    ++seen[level];
  }
  for (int count : seen) EXPECT_EQ(count, linesOfEach);
}

struct Target {
  std::atomic<bool> isCurrent{false};
  std::atomic<int> inside{0};
  std::atomic<int> lines{0};
  std::atomic<int> wrongCalls{0};
};

void countLine(void* context, const KvRttLine*) {
  auto& target = *static_cast<Target*>(context);
  if (!target.isCurrent || target.inside.fetch_add(1) != 0) ++target.wrongCalls;
  ++target.lines;
  --target.inside;
}

TEST(Threads, NeverCallAReplacedSinkNorOneTwiceAtATime) {
  const int handle = registerShared();
  Target targets[2];
  targets[0].isCurrent = true;
  KvRttSetSink(countLine, &targets[0]);

  std::atomic<bool> stop{false};
  std::atomic<int> traced{0};
  std::vector<std::thread> tracers;
  tracers.reserve(threadCount);
  for (int i = 0; i < threadCount; ++i) {
    tracers.emplace_back([&] {
      while (!stop) traced += pvxTraceRtt(handle, 2, 7200, 2, "line") == 0 ? 1 : 0;
    });
  }
  for (int n = 1; n <= 500 || traced == 0; ++n) {
    Target& next = targets[n % 2];
    next.isCurrent = true;
    KvRttSetSink(countLine, &next);
    targets[(n + 1) % 2].isCurrent = false;
    std::this_thread::yield();
  }
  stop = true;
  for (auto& thread : tracers) thread.join();
  KvRttSetSink(nullptr, nullptr);

  EXPECT_EQ(targets[0].wrongCalls, 0);
  EXPECT_EQ(targets[1].wrongCalls, 0);
  EXPECT_EQ(targets[0].lines + targets[1].lines, traced);
}

TEST(Threads, SeeFlagsSwitchedWhileTheyTrace) {
  const int handle = registerShared();
  Target target;
  target.isCurrent = true;
  KvRttSetSink(countLine, &target);
  std::atomic<bool> stop{false};
  std::thread tracer([&] {
    while (!stop) {
      if (KvRttTstFlag(handle, 2) != 0) pvxTraceRtt(handle, 2, 7200, 2, "line");
    }
  });
  std::thread other([&] {
    while (!stop) KvRttSwitchFlag("SHARED", "ERROR", KvRttTstFlag(handle, 4) == 0);
  });
  KvRttSwitchFlag("SHARED", "INFO", true);
  while (target.lines == 0) std::this_thread::yield();
  for (int n = 0; n < 500; ++n) KvRttSwitchFlag("SHARED", "INFO", n % 2 == 0);
  EXPECT_EQ(KvRttTstFlag(handle, 2), 0);
  stop = true;
  tracer.join();
  other.join();
  KvRttSetSink(nullptr, nullptr);
  EXPECT_EQ(target.wrongCalls, 0);
  registerShared();
}

}  // namespace
