#ifndef RTT_TEST_SUPPORT_H
#define RTT_TEST_SUPPORT_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "kvRttLocal.h"

/// Components are never removed: a test that needs the facility as it is at start runs in a process of
/// its own, which begins anew rather than with what earlier tests have registered.
inline void inFreshProcess(const std::function<void()>& test) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        test();
        std::_Exit(testing::Test::HasFailure() ? 1 : 0);
      },
      testing::ExitedWithCode(0), "");
}

/// Registers the component that tests share, with the flags 1 "DEBUG", 2 "INFO" and 4 "ERROR" off.
inline int registerShared() {
  int handle = -1;
  EXPECT_EQ(KvRttRegFacility(&handle, "SHARED"), 0);
  const std::pair<int, const char*> flags[] = {{1, "DEBUG"}, {2, "INFO"}, {4, "ERROR"}};
  for (const auto& [value, name] : flags) {
    EXPECT_EQ(KvRttRegFlag("SHARED", value, name), 0);
    EXPECT_EQ(KvRttSwitchFlag("SHARED", name, false), 0);
  }
  return handle;
}

/// Collects everything written to standard error during its life through a pipe, as a supervisor of the
/// process would.
class StandardErrorReader {
 public:
  StandardErrorReader() : former_(dup(STDERR_FILENO)) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(pipe(ends), 0);
    dup2(ends[1], STDERR_FILENO);
    close(ends[1]);
    reader_ = std::thread([this, from = ends[0]] { readAll(from); });
  }
  ~StandardErrorReader() { (void)finish(); }
  StandardErrorReader(const StandardErrorReader&) = delete;
  StandardErrorReader& operator=(const StandardErrorReader&) = delete;

  std::string finish() {
    if (former_ >= 0) {
      dup2(former_, STDERR_FILENO);
      close(former_);
      former_ = -1;
      reader_.join();
    }
    return text_;
  }

 private:
  void readAll(int from) {
    char block[4096];
    ssize_t count = 0;
    while ((count = read(from, block, sizeof block)) > 0)
      text_.append(block, static_cast<std::size_t>(count));
    close(from);
  }

  int former_;
  std::string text_;
  std::thread reader_;
};

inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', start)) {
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  if (start < text.size()) lines.push_back(text.substr(start));
  return lines;
}

#endif
