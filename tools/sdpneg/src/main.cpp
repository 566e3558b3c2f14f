#include <unistd.h>

#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "commands/commandLine.h"
#include "commands/exitStatus.h"
#include "output/streams.h"

namespace {

/// Everything is well when the reader has gone: it has seen what it wanted.
int withOutput(int status, tool::Streams streams) {
  if (streams.out.good() || streams.out.closedByReader()) return status;
  tool::writeProblem(streams.err, "", {{}, "standard output cannot be written: " + streams.out.failure()});
  return tool::exitOutput;
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe shows when it is written to
  std::signal(SIGXFSZ, SIG_IGN);  // as does a limit for the size of files
  tool::Output out(STDOUT_FILENO);
  tool::Output err(STDERR_FILENO);
  try {
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return withOutput(tool::runCommandLine(arguments, {out, err}), {out, err});
  } catch (const std::bad_alloc&) {
    err.write("sdpneg: out of memory\n");
  } catch (const std::exception& unexpected) {
    tool::writeProblem(err, "", {{}, unexpected.what()});
  }
  return tool::exitSoftware;
}
