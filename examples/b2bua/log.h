#ifndef B2BUA_LOG_H
#define B2BUA_LOG_H

#include <cstdio>
#include <memory>
#include <string>

struct KvRttLine;

namespace b2bua {

/// The engine's log, into which the library's trace lines go too.
class Log {
 public:
  /// @param file  appended to; empty is standard error. Throws std::runtime_error.
  /// @param trace writes the library's own lines
  Log(const std::string& file, bool trace);
  ~Log();
  Log(const Log&) = delete;
  Log& operator=(const Log&) = delete;

  void write(const std::string& line);
  /// Opens the file anew, which may have been moved away; keeps the old one when it cannot.
  void reopen();

 private:
  static void takeLine(void* context, const KvRttLine* line);

  std::string name_;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
};

/// Writes how a body changed on its way to standard output: lines that went with "-", that came with "+".
void showBodies(const std::string& title, const std::string& before, const std::string& after);

}  // namespace b2bua

#endif
