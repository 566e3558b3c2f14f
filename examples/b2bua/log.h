#ifndef B2BUA_LOG_H
#define B2BUA_LOG_H

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct KvRttLine;

namespace b2bua {

enum class LogFormat { text, json };
enum class LogLevel { trace, info, warning };

/// What belongs to an event: a name, in a line of text one that joins it to the event, and a value.
using Members = std::vector<std::pair<std::string_view, std::string>>;

/// The engine's log, into which the library's trace lines go too. No key of a body gets into it.
class Log {
 public:
  /// @param file  appended to; empty is standard error. Throws std::runtime_error.
  /// @param trace writes the library's own lines
  Log(const std::string& file, bool trace, LogFormat format = LogFormat::text);
  ~Log();
  Log(const Log&) = delete;
  Log& operator=(const Log&) = delete;

  /// Writes one line.
  /// @param call  ID of the call that the event belongs to; empty for none
  void write(std::string_view event, const Members& members = {}, LogLevel level = LogLevel::info,
             const std::string& call = "");
  /// Opens the file anew, which may have been moved away; keeps the old one when it cannot.
  void reopen();

 private:
  static void takeLine(void* context, const KvRttLine* line);

  std::string name_;
  LogFormat format_;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
};

/// Writes how a body changed on its way to standard output: lines that went with "-", that came with "+".
/// Keys are cut off.
void showBodies(const std::string& title, const std::string& before, const std::string& after);

}  // namespace b2bua

#endif
