#ifndef B2BUA_TEST_PROCESSES_H
#define B2BUA_TEST_PROCESSES_H

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// Starts the programs of a call, and ends them whatever happens.

using std::chrono::milliseconds;

/// A program that runs in a folder, with its output in a file there. It ends with this object, and with the test
/// itself if that is killed.
class Process {
 public:
  /// @param name  of the output's file, without its ".out"
  Process(const std::string& program, const std::vector<std::string>& arguments, const std::string& folder,
          const std::string& name);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  /// @return the exit status, or 128 and the signal's number; none when the time is over
  std::optional<int> wait(milliseconds longest);
  void signal(int number) const;
  bool isRunning();
  std::string output() const;
  /// Resident memory in kB.
  long residentMemory() const;

 private:
  pid_t child_ = -1;
  std::optional<int> status_;
  std::string outputFile_;
};

/// Asks again and again.
/// @return what it said last
bool waitUntil(const std::function<bool()>& condition, milliseconds longest);

/// A port of the loopback interfaces that nobody has, as text.
std::string freePort();

/// One of UDP and TCP whose next one is free too, as text.
std::string freePortPair();

/// Whether a program listens there by now.
bool isTaken(const std::string& port);

#endif
