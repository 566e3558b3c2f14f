#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>

#include "../testFiles.h"
#include "calls.h"

// What systemd learns of the engine, and the unit that starts it.

namespace {

constexpr milliseconds kLongestWait{5'000};

/// A service manager's socket, told to all programs that are started while it is there.
class NotifySocket {
 public:
  NotifySocket() : descriptor_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    const std::string name = "b2bua-test-" + std::to_string(getpid());
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    // An abstract name, behind a NUL.
    name.copy(address.sun_path + 1, sizeof address.sun_path - 1);
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    EXPECT_EQ(bind(descriptor_, reinterpret_cast<const sockaddr*>(&address), size), 0);
    setenv("NOTIFY_SOCKET", ("@" + name).c_str(), 1);
    setenv("WATCHDOG_USEC", "400000", 1);
  }
  ~NotifySocket() {
    unsetenv("NOTIFY_SOCKET");
    unsetenv("WATCHDOG_USEC");
    close(descriptor_);
  }
  NotifySocket(const NotifySocket&) = delete;
  NotifySocket& operator=(const NotifySocket&) = delete;

  /// @return the next message; empty when none came in time
  std::string next(milliseconds longest) const {
    pollfd waiting{descriptor_, POLLIN, 0};
    if (poll(&waiting, 1, static_cast<int>(longest.count())) <= 0) return "";
    std::string message(4'096, '\0');
    const ssize_t size = recv(descriptor_, message.data(), message.size(), 0);
    return message.substr(0, size > 0 ? static_cast<std::size_t>(size) : 0);
  }
  /// @return whether a message that begins like that came, behind others
  bool comes(const std::string& start) const {
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    while (std::chrono::steady_clock::now() < end) {
      if (next(milliseconds(100)).starts_with(start)) return true;
    }
    return false;
  }

 private:
  int descriptor_;
};

class ServiceManager : public Calls {
 protected:
  const NotifySocket manager_;
};

}  // namespace

TEST_F(ServiceManager, LearnsHowTheEngineIs) {
  Engine engine(folder_, "127.0.0.1", freePort());
  EXPECT_EQ(manager_.next(kLongestWait), "READY=1");
  EXPECT_TRUE(manager_.comes("STATUS=0 calls"));
  engine.process().signal(SIGHUP);
  EXPECT_TRUE(manager_.comes("RELOADING=1\nMONOTONIC_USEC="));
  EXPECT_TRUE(manager_.comes("READY=1"));
  engine.process().signal(SIGTERM);
  EXPECT_TRUE(manager_.comes("STOPPING=1"));
}

// The watchdog waits 400 ms: two signs come in this time, give or take a step of the loop.
TEST_F(ServiceManager, HearsSignsOfLifeUntilTheEngineHangs) {
  Engine engine(folder_, "127.0.0.1", freePort());
  ASSERT_TRUE(manager_.comes("WATCHDOG=1"));
  for (int i = 0; i < 3; ++i) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(manager_.comes("WATCHDOG=1"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(400));
  }
  engine.process().signal(SIGSTOP);
  while (!manager_.next(milliseconds(600)).empty()) {
  }
  EXPECT_EQ(manager_.next(milliseconds(600)), "");
  engine.process().signal(SIGCONT);
  EXPECT_TRUE(manager_.comes("WATCHDOG=1"));
}

TEST(ServiceUnit, IsUnderstood) {
  if (std::string(SYSTEMD_ANALYZE_PROGRAM).empty()) GTEST_SKIP() << "systemd-analyze is not installed";
  const TemporaryFolder folder;
  // Where the program would be installed is nothing yet.
  const std::string unit = readBytes(B2BUA_TEST_FOLDER "/../../deploy/b2bua.service");
  const std::string file = folder.write("b2bua.service", replaced(unit, "/usr/bin/b2bua", B2BUA_PROGRAM));
  Process verify(SYSTEMD_ANALYZE_PROGRAM, {"verify", "--man=no", file}, folder.path(), "verify");
  EXPECT_EQ(verify.wait(kLongestWait), 0);
  EXPECT_EQ(verify.output().find("b2bua.service:"), std::string::npos) << verify.output();
  // In tenths; 2.0 is what systemd takes for safe.
  Process security(SYSTEMD_ANALYZE_PROGRAM,
                   {"security", "--offline=true", "--threshold=20", "--no-pager", file}, folder.path(),
                   "security");
  EXPECT_EQ(security.wait(kLongestWait), 0) << security.output();
}
