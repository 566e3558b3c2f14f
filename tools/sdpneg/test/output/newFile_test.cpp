#include "output/newFile.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "process.h"

// What becomes of the file that is to take another's place when the process ends.

namespace {

/// Makes a file in a process of its own, which a signal ends.
/// @param disposition of the signal before
/// @return the status of the process, which is 1 when there was no file and 0 when it went on
int endBySignal(const std::string& target, int signal, void (*disposition)(int)) {
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child == 0) {
    std::signal(signal, disposition);
    tool::NewFile file(target);
    if (file.number() < 0 || access(file.path().c_str(), F_OK) != 0) _exit(1);
    std::raise(signal);
    _exit(access(file.path().c_str(), F_OK) == 0 ? 0 : 2);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

class NewFileBySignal : public testing::TestWithParam<int> {
 protected:
  TemporaryFolder folder;
};

TEST_P(NewFileBySignal, IsRemovedAndTheSignalEndsTheProcess) {
  const int status = endBySignal(folder.path("call.sdp"), GetParam(), SIG_DFL);
  ASSERT_TRUE(WIFSIGNALED(status)) << status;
  EXPECT_EQ(WTERMSIG(status), GetParam());
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_P(NewFileBySignal, StaysWhenTheSignalIsIgnored) {
  const int status = endBySignal(folder.path("call.sdp"), GetParam(), SIG_IGN);
  ASSERT_TRUE(WIFEXITED(status)) << status;
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_P(NewFileBySignal, AllThatThereAreAreRemoved) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const tool::NewFile first(folder.path("first"));
    const tool::NewFile second(folder.path("second"));
    { const tool::NewFile third(folder.path("third")); }
    const tool::NewFile fourth(folder.path("fourth"));
    if (std::distance(std::filesystem::directory_iterator(folder.path()), {}) != 3) _exit(1);
    std::raise(GetParam());
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status)) << status;
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

INSTANTIATE_TEST_SUITE_P(Ending, NewFileBySignal, testing::Values(SIGINT, SIGTERM, SIGHUP),
                         [](const auto& each) { return "signal" + std::to_string(each.param); });

TEST(NewFile, ThatTookTheOthersPlaceSurvivesASignal) {
  const TemporaryFolder folder;
  const std::string target = folder.path("call.sdp");
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    tool::NewFile file(target);
    if (!file.close() || !file.takePlaceOf(target)) _exit(1);
    std::raise(SIGTERM);
    _exit(2);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status)) << status;
  EXPECT_TRUE(std::filesystem::is_regular_file(target));
}

TEST(NewFile, GoesAwayUnlessItTakesTheOthersPlace) {
  const TemporaryFolder folder;
  {
    const tool::NewFile file(folder.path("call.sdp"));
    EXPECT_GE(file.number(), 0);
    EXPECT_FALSE(std::filesystem::is_empty(folder.path()));
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

}  // namespace
