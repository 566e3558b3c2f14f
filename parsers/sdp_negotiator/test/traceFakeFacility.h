#ifndef TRACE_FAKE_FACILITY_H
#define TRACE_FAKE_FACILITY_H

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

/// A trace facility that writes down what it is asked. This program defines the platform's operations
/// with it, in place of those of the library that the negotiator is linked with.
struct FakeFacility {
  enum class Operation { init, registerFacility, registerFlag, log };

  struct Call {
    Operation operation;
    int* handleAddress;
    int handleBefore;
    int flag;
    std::string text;  ///< the component of a registration, "component/name" of a flag
  };

  struct Line {
    int handle;
    int flag;
    int type;
    int level;
    std::string text;
  };

  struct LogEntry {
    std::string file;
    int line;
    int kind;
    int severity;
    int code;
    std::string format;
    std::string message;
  };

  /// What the operations do next.
  int initResult = 0;
  int initHandle = -1;
  int registerResult = 0;
  int registerHandle = 5;
  std::atomic<unsigned> flagsOn{0};
  std::atomic<int> traceResult{0};
  std::atomic<bool> numbersLines{false};  ///< the result of a line is its number, from 1

  /// What they were asked.
  std::mutex change;
  std::vector<Call> calls;
  std::vector<Line> lines;
  std::vector<LogEntry> log;
  std::vector<std::string> statusTexts;
  std::vector<std::pair<int, int>> flagTests;

  /// The calls made before main began.
  std::vector<Call> callsAtLoad;
  int logEntriesAtLoad = 0;

  /// Forgets the calls and behaves as at load again.
  void reset();
};

/// The one facility; it exists from the first call on, since libraries register before this program's own
/// objects are built.
FakeFacility& fakeFacility();

#endif
