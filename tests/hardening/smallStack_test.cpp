#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <string>

#include "sdpNegotiator.h"
#include "sessionDescription.h"

// A thread whose stack is too small for a parse, of which the description alone takes more than half a megabyte.
// Below the stack lies a guard, and below that memory of somebody else, which a large frame could reach at once.

namespace {

constexpr std::size_t kForeignSize = std::size_t{4} << 20U;
// The smallest that compilers count on, where pages may have 64 KiB.
constexpr std::size_t kGuardSize = std::size_t{64} << 10U;
constexpr unsigned char kCanary = 0xC5;

/// Foreign memory, a guard and a stack on top of it, shared with child processes.
class GuardedStack {
 public:
  explicit GuardedStack(std::size_t size) : size_(size) {
    void* const mapped = mmap(nullptr, kForeignSize + kGuardSize + size_, PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) return;
    memory_ = static_cast<unsigned char*>(mapped);
    std::fill(memory_, memory_ + kForeignSize, kCanary);
    guarded_ = mprotect(memory_ + kForeignSize, kGuardSize, PROT_NONE) == 0;
  }
  ~GuardedStack() {
    if (memory_ != nullptr) munmap(memory_, kForeignSize + kGuardSize + size_);
  }
  GuardedStack(const GuardedStack&) = delete;
  GuardedStack& operator=(const GuardedStack&) = delete;

  bool usable() const { return guarded_; }
  void* lowest() const { return memory_ + kForeignSize + kGuardSize; }
  std::size_t size() const { return size_; }
  bool foreignMemoryIsUntouched() const {
    return std::all_of(memory_, memory_ + kForeignSize, [](unsigned char byte) { return byte == kCanary; });
  }

 private:
  std::size_t size_;
  unsigned char* memory_ = nullptr;
  bool guarded_ = false;
};

void* parse(void* status) {
  cSdpNegotiator object;
  *static_cast<unsigned short*>(status) = object.sdpParse(
      "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\nm=audio 5004 RTP/AVP 0\r\n",
      SDP_TYPE_OFFER);
  return nullptr;
}

/// Parses on a thread with that stack. @return the exit status of the process: 0 when the body was taken
int parseOn(const GuardedStack& stack) {
  pthread_attr_t attributes;
  pthread_t thread;
  unsigned short status = 99;
  if (pthread_attr_init(&attributes) != 0 ||
      pthread_attr_setstack(&attributes, stack.lowest(), stack.size()) != 0 ||
      pthread_create(&thread, &attributes, parse, &status) != 0)
    return 2;
  return pthread_join(thread, nullptr) == 0 && status == 0 ? 0 : 1;
}

/// Parses on that stack as a coroutine of the main thread, which has parsed on its own before.
int parseAsCoroutine(const GuardedStack& stack) {
  static ucontext_t mainContext;
  static ucontext_t coroutine;
  static unsigned short status;
  parse(&status);
  if (status != 0 || getcontext(&coroutine) != 0) return 2;
  status = 99;
  coroutine.uc_stack.ss_sp = stack.lowest();
  coroutine.uc_stack.ss_size = stack.size();
  coroutine.uc_link = &mainContext;
  makecontext(
      &coroutine, [] { parse(&status); }, 0);
  return swapcontext(&mainContext, &coroutine) == 0 && status == 0 ? 0 : 1;
}

using Parse = int (*)(const GuardedStack&);

/// The wait status of a process that parses on that stack.
int parseInAChild(const GuardedStack& stack, Parse parseThere) {
  const pid_t child = fork();
  if (child == 0) {
    std::signal(SIGSEGV, SIG_DFL);
    _exit(parseThere(stack));
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return status;
}

void expectTheEndAtTheGuard(Parse parseThere) {
  for (const std::size_t kilobytes : {32U, 64U, 128U, 256U, 512U}) {
    const GuardedStack stack(kilobytes << 10U);
    ASSERT_TRUE(stack.usable());
    const int status = parseInAChild(stack, parseThere);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGSEGV) << kilobytes << " KB: status " << status;
    EXPECT_TRUE(stack.foreignMemoryIsUntouched()) << kilobytes << " KB";
  }
}

TEST(SmallStack, EndsAtItsGuardAndLeavesForeignMemoryUntouched) {
  if (sizeof(sDescription) > std::size_t{1} << 20U) GTEST_SKIP() << "such large descriptions are allocated";
  expectTheEndAtTheGuard(parseOn);
}

TEST(SmallStack, OfACoroutineEndsAtItsGuardAlthoughTheThreadHasRoom) {
  if (sizeof(sDescription) > std::size_t{1} << 20U) GTEST_SKIP() << "such large descriptions are allocated";
  expectTheEndAtTheGuard(parseAsCoroutine);
}

TEST(SmallStack, OfOneMegabyteIsEnough) {
  for (const Parse parseThere : {parseOn, parseAsCoroutine}) {
    const GuardedStack stack(std::size_t{1} << 20U);
    ASSERT_TRUE(stack.usable());
    const int status = parseInAChild(stack, parseThere);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_TRUE(stack.foreignMemoryIsUntouched());
  }
}

}  // namespace
