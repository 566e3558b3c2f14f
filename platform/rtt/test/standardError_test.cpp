#include <fcntl.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <ctime>

#include "rttTestSupport.h"

namespace {

using namespace std::string_literals;

/// Has standard error go to another file for a while.
class RedirectedStandardError {
 public:
  explicit RedirectedStandardError(int to) : former_(dup(STDERR_FILENO)) { dup2(to, STDERR_FILENO); }
  ~RedirectedStandardError() {
    dup2(former_, STDERR_FILENO);
    close(former_);
  }
  RedirectedStandardError(const RedirectedStandardError&) = delete;
  RedirectedStandardError& operator=(const RedirectedStandardError&) = delete;

 private:
  int former_;
};

int traceTo(int file, int handle, const char* text) {
  const RedirectedStandardError redirected(file);
  return pvxTraceRtt(handle, 2, 7200, 2, text);
}

/// What standard error receives of a line, from the text on.
std::string shown(const std::string& text) {
  const int handle = registerShared();
  StandardErrorReader reader;
  EXPECT_EQ(pvxTraceRtt(handle, 2, 7200, 2, text.c_str()), 0);
  const std::string line = reader.finish();
  const auto head = line.find(": ");
  EXPECT_NE(head, std::string::npos) << line;
  return head == std::string::npos ? "" : line.substr(head + 2);
}

/// The text with each digit of its first `length` characters replaced by '0'.
std::string shapeOf(std::string text, std::size_t length) {
  for (std::size_t i = 0; i < length && i < text.size(); ++i) {
    if (text[i] >= '0' && text[i] <= '9') text[i] = '0';
  }
  return text;
}

TEST(StandardError, ReceivesOneLineWithATime) {
  const int handle = registerShared();
  StandardErrorReader reader;
  EXPECT_EQ(pvxTraceRtt(handle, 8, 7200, 4, "Entering 100%s."), 0);
  const std::string time = "0000-00-00T00:00:00.000000Z";
  EXPECT_EQ(shapeOf(reader.finish(), time.size()), time + " SHARED flag 8 level 4: Entering 100%s.\n");
}

TEST(StandardError, ReceivesExtremeNumbersInFull) {
  const int handle = registerShared();
  StandardErrorReader reader;
  EXPECT_EQ(pvxTraceRtt(handle, INT_MIN, 0, INT_MAX, ""), 0);
  const std::string text = reader.finish();
  EXPECT_NE(text.find("Z SHARED flag -2147483648 level 2147483647: \n"), std::string::npos) << text;
}

TEST(StandardError, ShowsControlCharactersInPrint) {
  const struct {
    std::string text;
    std::string shown;
  } cases[] = {
      {"v=0\r\ns=-\r\n", "v=0\\r\\ns=-\\r\\n"},
      {"a\nb", "a\\nb"},
      {"a\rb", "a\\rb"},
      {"a\tb", "a\tb"},
      {"\x01\x1F\x20\x7E\x7F", "\\x01\\x1F ~\\x7F"},
      {"s=\x1B[2J", "s=\\x1B[2J"},
      {"s=M\xC3\xBCller \xE2\x9B\xB5", "s=M\xC3\xBCller \xE2\x9B\xB5"},  // UTF-8 text stays readable
      {"\xC2\x80\xC2\x9B\xC2\x9F", "\\xC2\\x80\\xC2\\x9B\\xC2\\x9F"},    // but not the controls in it
      {"\xC2\xA0\xC3\x9B", "\xC2\xA0\xC3\x9B"},
      {"\xC2", "\xC2"},
      {"%s%n\\n", "%s%n\\n"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(shown(text), expected + "\n");
}

TEST(StandardError, ReceivesTheLongestLineInFullWhateverItHolds) {
  std::string expected;
  for (int i = 0; i < 20479; ++i) expected += "\\x1B";
  EXPECT_EQ(shown(std::string(20479, '\x1B')), expected + "\n");
}

TEST(StandardError, CutsLongerLines) {
  EXPECT_EQ(shown(std::string(kvRttMaxShownLength, 'y')), std::string(kvRttMaxShownLength, 'y') + "\n");
  EXPECT_EQ(shown(std::string(kvRttMaxShownLength + 1, 'y')), std::string(kvRttMaxShownLength, 'y') + "\n");
}

TEST(StandardError, IsNotGivenHalfAControlCharacter) {
  const std::string fitting(kvRttMaxShownLength - 3, 'y');
  EXPECT_EQ(shown(fitting + "\x1B"), fitting + "\n");
  EXPECT_EQ(shown(fitting.substr(1) + "\x1B"), fitting.substr(1) + "\\x1B\n");
}

TEST(StandardError, IsWrittenOnceForEachLine) {
  const int handle = registerShared();
  const std::string controls(2000, '\n');
  std::array<int, 2> ends{-1, -1};
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_DGRAM, 0, ends.data()), 0);  // keeps the writes apart
  EXPECT_EQ(traceTo(ends[1], handle, "one"), 0);
  EXPECT_EQ(traceTo(ends[1], handle, controls.c_str()), 0);
  EXPECT_EQ(traceTo(ends[1], handle, "two"), 0);
  std::string shownControls = ": ";
  for (std::size_t i = 0; i < controls.size(); ++i) shownControls += "\\n";
  for (const std::string& expected : {": one\n"s, shownControls + "\n", ": two\n"s}) {
    std::array<char, 8192> block;
    const ssize_t count = recv(ends[0], block.data(), block.size(), MSG_DONTWAIT);
    ASSERT_GT(count, 0);
    const std::string line(block.data(), static_cast<std::size_t>(count));
    EXPECT_TRUE(line.ends_with(expected)) << line;
    EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
  }
  close(ends[0]);
  close(ends[1]);
}

TEST(StandardError, MayBeClosed) {
  inFreshProcess([] {
    const int traced = registerShared();
    const int former = dup(STDERR_FILENO);
    close(STDERR_FILENO);
    EXPECT_EQ(pvxTraceRtt(traced, 2, 7200, 2, "lost"), 0);
    dup2(former, STDERR_FILENO);
  });
}

/// A pipe whose reader has gone.
int brokenPipe() {
  std::array<int, 2> ends{-1, -1};
  EXPECT_EQ(pipe(ends.data()), 0);
  close(ends[0]);
  return ends[1];
}

/// Gives SIGPIPE the action that ends the program and lets it through, or not. Returns the set of it.
sigset_t setBrokenPipeSignal(int how) {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGPIPE);
  EXPECT_NE(std::signal(SIGPIPE, SIG_DFL), SIG_ERR);
  EXPECT_EQ(pthread_sigmask(how, &set, nullptr), 0);
  return set;
}

bool isPending(int signal) {
  sigset_t pending;
  sigemptyset(&pending);
  sigpending(&pending);
  return sigismember(&pending, signal) == 1;
}

bool isBlocked(int signal) {
  sigset_t blocked;
  sigemptyset(&blocked);
  pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
  return sigismember(&blocked, signal) == 1;
}

TEST(StandardError, MayBeAPipeThatNobodyReads) {
  inFreshProcess([] {
    setBrokenPipeSignal(SIG_UNBLOCK);
    const int handle = registerShared();
    const int file = brokenPipe();
    for (int i = 0; i < 2; ++i) EXPECT_EQ(traceTo(file, handle, "lost"), 0);
    EXPECT_FALSE(isPending(SIGPIPE));
    EXPECT_FALSE(isBlocked(SIGPIPE));
  });
}

TEST(StandardError, LeavesNoSignalToAProgramThatBlocksIt) {
  inFreshProcess([] {
    setBrokenPipeSignal(SIG_BLOCK);
    const int handle = registerShared();
    EXPECT_EQ(traceTo(brokenPipe(), handle, "lost"), 0);
    EXPECT_FALSE(isPending(SIGPIPE));
    EXPECT_TRUE(isBlocked(SIGPIPE));
  });
}

TEST(StandardError, LeavesASignalThatWasPendingBefore) {
  inFreshProcess([] {
    const sigset_t set = setBrokenPipeSignal(SIG_BLOCK);
    const int handle = registerShared();
    EXPECT_EQ(pthread_kill(pthread_self(), SIGPIPE), 0);
    EXPECT_EQ(traceTo(brokenPipe(), handle, "lost"), 0);
    const timespec noTime{};
    EXPECT_EQ(sigtimedwait(&set, nullptr, &noTime), SIGPIPE);
    EXPECT_FALSE(isPending(SIGPIPE));
  });
}

/// A pipe of one page that takes what it has room for and does not wait.
class NarrowPipe {
 public:
  NarrowPipe() {
    EXPECT_EQ(pipe2(ends_.data(), O_NONBLOCK), 0);
    EXPECT_GT(fcntl(ends_[1], F_SETPIPE_SZ, 4096), 0);
  }
  ~NarrowPipe() {
    for (int end : ends_) close(end);
  }
  NarrowPipe(const NarrowPipe&) = delete;
  NarrowPipe& operator=(const NarrowPipe&) = delete;

  int input() const { return ends_[1]; }

  void fill() const {
    const std::string filler(4096, 'f');
    ssize_t count = 0;
    while (count >= 0) count = write(ends_[1], filler.data(), filler.size());
    EXPECT_EQ(errno, EAGAIN);
  }

  std::string drain() const {
    std::string text;
    std::array<char, 4096> block;
    ssize_t count = 0;
    while ((count = read(ends_[0], block.data(), block.size())) > 0) {
      text.append(block.data(), static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  std::array<int, 2> ends_{-1, -1};
};

TEST(StandardError, BeginsALineOfItsOwnAfterOneThatWasCut) {
  inFreshProcess([] {
    const int handle = registerShared();
    const NarrowPipe pipe;
    EXPECT_EQ(traceTo(pipe.input(), handle, std::string(9000, 'y').c_str()), 0);
    const std::string cut = pipe.drain();
    EXPECT_GT(cut.size(), 1000u);
    EXPECT_LT(cut.size(), 9000u);
    EXPECT_TRUE(cut.ends_with("yyy"));

    EXPECT_EQ(traceTo(pipe.input(), handle, "next"), 0);
    EXPECT_EQ(traceTo(pipe.input(), handle, "last"), 0);
    const auto lines = linesOf(pipe.drain());
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "");  // the end of the one that was cut
    EXPECT_TRUE(lines[1].ends_with("SHARED flag 2 level 2: next")) << lines[1];
    EXPECT_TRUE(lines[2].ends_with("SHARED flag 2 level 2: last")) << lines[2];
  });
}

TEST(StandardError, RemembersACutLineWhileItTakesNothing) {
  inFreshProcess([] {
    const int handle = registerShared();
    const NarrowPipe pipe;
    EXPECT_EQ(traceTo(pipe.input(), handle, std::string(9000, 'y').c_str()), 0);
    EXPECT_EQ(traceTo(pipe.input(), handle, "lost"), 0);
    EXPECT_TRUE(pipe.drain().ends_with("yyy"));
    EXPECT_EQ(traceTo(pipe.input(), handle, "next"), 0);
    EXPECT_TRUE(pipe.drain().starts_with("\n"));
  });
}

TEST(StandardError, ReceivesNoEmptyLineForOneThatWasLostWhole) {
  inFreshProcess([] {
    const int handle = registerShared();
    const NarrowPipe pipe;
    pipe.fill();
    EXPECT_EQ(traceTo(pipe.input(), handle, "lost"), 0);
    EXPECT_TRUE(pipe.drain().ends_with("fff"));
    EXPECT_EQ(traceTo(pipe.input(), handle, "next"), 0);
    const auto lines = linesOf(pipe.drain());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].ends_with("SHARED flag 2 level 2: next")) << lines[0];
  });
}

}  // namespace
