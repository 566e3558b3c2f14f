#include "commands/offerCommands.h"

#include <algorithm>

#include "commands/exitStatus.h"
#include "inspection/bodyInput.h"
#include "inspection/refusal.h"
#include "requests/originFields.h"

// Commands that compare a body with those that came before it.

namespace tool {
namespace {

/// The bodies that a command is given, in their order.
class Offers {
 public:
  /// Reads them, and says what is wrong with each.
  Offers(const Arguments& arguments, Streams streams) {
    const std::vector<std::string>& names = arguments.operands();
    if (std::count(names.begin(), names.end(), "-") > 1)
      throw UsageError{"standard input can be read only once"};
    for (const std::string& name : names) {
      inputs_.push_back(readBodyFor(name, streams));
      noteObstacle(inputs_.back(), streams);
    }
  }

  bool usable() const { return usable_; }
  cSdpNegotiator& operator[](std::size_t index) { return *inputs_[index].inspection.object; }
  const std::string& name(std::size_t index) const { return inputs_[index].name; }

 private:
  void noteObstacle(const BodyInput& input, Streams streams) {
    const auto obstacle = input.usable() ? requestObstacle(*input.inspection.object) : std::nullopt;
    if (obstacle) writeProblem(streams.err, input.name, {{}, *obstacle});
    usable_ = usable_ && input.usable() && !obstacle;
  }

  std::vector<BodyInput> inputs_;
  bool usable_ = true;
};

/// What came of a request.
struct Done {
  bool done;
  unsigned short status;
};

/// Writes the body that a request left in one of the offers, or why the request was refused.
int finish(Offers& offers, std::size_t own, Done result, const RefusalWatch& watch, Streams streams) {
  if (result.done) {
    writeText(streams.out, bodyText(offers[own]));
    return exitSuccess;
  }
  writeProblem(streams.err, offers.name(own), {{}, explainRefusedRequest(watch, result.status)});
  return exitRefused;
}

void showTrace(const Arguments& arguments, const TraceLines& trace, Streams streams) {
  if (arguments.has("--trace")) writeTraceLines(streams.err, trace.lines());
}

}  // namespace

int runUpdateAnswer(const Arguments& arguments, Streams streams) {
  Offers offers(arguments, streams);
  if (!offers.usable()) return exitBadInput;
  const TraceLines trace;
  const RefusalWatch watch;
  const unsigned short status = offers[0].sdpUpdateAnswer(&offers[1], &offers[2]);
  showTrace(arguments, trace, streams);
  return finish(offers, 0, {status == 0, status}, watch, streams);
}

int runVersionIncreased(const Arguments& arguments, Streams streams) {
  Offers offers(arguments, streams);
  if (!offers.usable()) return exitBadInput;
  const TraceLines trace;
  const bool increased = offers[1].isSdpVersionIncreased(&offers[0]) == 1;
  showTrace(arguments, trace, streams);
  streams.out.write(increased ? "yes\n" : "no\n");
  return increased ? exitSuccess : exitDifferent;
}

int runAlign(const Arguments& arguments, Streams streams) {
  Offers offers(arguments, streams);
  if (!offers.usable()) return exitBadInput;
  if (const auto obstacle = setObstacle(offers[0])) {
    writeProblem(streams.err, offers.name(0), {{}, *obstacle});
    return exitRefused;
  }
  const TraceLines trace;
  const RefusalWatch watch;
  const unsigned short status = offers[1].sdpModifyVersionAndMlines(&offers[0], false);
  showTrace(arguments, trace, streams);
  // Fewer m-lines before leave those of the new body as they are.
  const bool done = status == 0 || watch.saw(SDP_REFUSED_FEWER_M_LINES);
  return finish(offers, 1, {done, status}, watch, streams);
}

}  // namespace tool
