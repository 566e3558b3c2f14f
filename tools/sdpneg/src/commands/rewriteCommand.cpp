#include "commands/rewriteCommand.h"

#include <algorithm>

#include "commands/exitStatus.h"
#include "commands/requestLine.h"
#include "input/bodyText.h"
#include "inspection/bodyInput.h"
#include "output/fileReplacement.h"
#include "output/lineDiff.h"
#include "output/messageEdit.h"
#include "requests/rewriting.h"

namespace tool {
namespace {

/// The argument that names a file; null when there is none.
const std::string* fileOf(const RequestCall& call) {
  for (std::size_t i = 0; i < call.input.words.size(); ++i) {
    if (call.row->arguments[i].isFile) return &call.input.words[i];
  }
  return nullptr;
}

void checkStandardInput(const RequestLine& line, bool inPlace) {
  if (inPlace && line.file == "-") throw UsageError{"--in-place wants a FILE"};
  const auto uses = std::count_if(line.calls.begin(), line.calls.end(), [](const RequestCall& call) {
    const std::string* file = fileOf(call);
    return file != nullptr && *file == "-";
  });
  if (uses + (line.file == "-" ? 1 : 0) > 1) throw UsageError{"standard input can be read only once"};
}

/// Reads the bodies that requests take from files.
bool readOthers(RequestLine& line, Streams streams) {
  bool usable = true;
  for (RequestCall& call : line.calls) {
    const std::string* file = fileOf(call);
    if (file == nullptr) continue;
    const BodyInput other = readBodyFor(*file, streams);
    usable = usable && other.usable();
    call.input.other = other.inspection.object;
  }
  return usable;
}

/// Says which requests had nothing to do.
void writeIdle(Output& err, const std::string& name, const Rewritten& rewritten) {
  for (const Idle& each : rewritten.idle) {
    const std::string why = each.why.empty() ? each.why : ": " + each.why;
    writeProblem(err, name, {{}, "note: " + each.request + " had nothing to do" + why});
  }
}

/// An input as it was.
struct Original {
  const std::string& name;
  const std::string& bytes;
};

/// Gives the new text to whoever is to have it.
int deliver(const Original& input, const std::string& text, const Arguments& arguments, Streams streams) {
  if (arguments.has("--in-place") && text != input.bytes) {
    if (const auto problem = replaceFile(input.name, text)) {
      writeProblem(streams.err, input.name, *problem);
      return exitOutput;
    }
  }
  if (arguments.has("--diff")) {
    const Palette palette = paletteFor(arguments.value("--color"), streams.out);
    const std::string rewrittenName = input.name + " (rewritten)";
    streams.out.write(unifiedDiff({input.name, input.bytes}, {rewrittenName, text}, palette));
  } else if (!arguments.has("--in-place")) {
    writeText(streams.out, text);
  }
  return exitSuccess;
}

/// Says what requests made of an input, and delivers it.
int finish(const Original& input, const Rewritten& rewritten, const Arguments& arguments, Streams streams) {
  if (arguments.has("--trace")) writeTraceLines(streams.err, rewritten.trace);
  if (rewritten.refusal) {
    writeProblem(streams.err, input.name, *rewritten.refusal);
    return exitRefused;
  }
  if (arguments.has("--verbose")) writeIdle(streams.err, input.name, rewritten);
  for (const Removed& each : rewritten.removed) {
    streams.err.write(std::string(each.request).append(" removed ").append(each.record).append("\n"));
  }
  for (const SideEffect& each : rewritten.effects) {
    writeProblem(streams.err, "", {{}, "note: " + std::string(each.request) + " " + each.what});
  }
  const std::string text = withBody(input.bytes, findSdpBody(input.bytes), rewritten.text);
  return deliver(input, text, arguments, streams);
}

bool hasDocumentRequest(const RequestLine& line) {
  return std::any_of(line.calls.begin(), line.calls.end(),
                     [](const RequestCall& call) { return call.row->isOfDocument(); });
}

/// Requests of the document layer take any text, so nothing reads it in front of them.
int rewriteText(RequestLine& line, const Arguments& arguments, Streams streams) {
  const BodyText input = readBodyText(inputOf(line.file));
  writeProblems(streams.err, input.name, input.body.notes, input.problem);
  const bool othersUsable = readOthers(line, streams);
  if (input.problem || !othersUsable) return exitBadInput;
  return finish({input.name, input.bytes}, rewrite(input.text(), input.firstLine(), line.calls), arguments,
                streams);
}

/// The requests with the operations of the library behind them, one a line.
std::string operationList() {
  std::string out;
  for (const RequestRow& row : requestTable()) {
    out.append(row.name).append(" ").append(row.operations).append("\n");
  }
  return out;
}

}  // namespace

int runRewrite(const Arguments& arguments, Streams streams) {
  RequestLine line = readRequestLine(arguments.operands());
  checkStandardInput(line, arguments.has("--in-place"));
  if (hasDocumentRequest(line)) return rewriteText(line, arguments, streams);
  const BodyInput input = readBody(inputOf(line.file), Detail::object);
  if (arguments.has("--trace")) writeTraceLines(streams.err, input.inspection.trace);
  writeProblems(streams.err, input.name, input.inspection);
  const bool othersUsable = readOthers(line, streams);
  if (!input.usable() || !othersUsable) return exitBadInput;
  return finish({input.name, input.bytes}, rewrite(*input.inspection.object, line.calls), arguments, streams);
}

std::string requestList() {
  std::size_t width = 0;
  for (const RequestRow& row : requestTable()) width = std::max(width, requestSynopsis(row).size() + 2);
  std::string out;
  for (const RequestRow& row : requestTable()) {
    std::string line = requestSynopsis(row);
    line.resize(width, ' ');
    out.append(line).append(row.help).append("\n");
  }
  return out;
}

int runRequests(const Arguments& arguments, Streams streams) {
  streams.out.write(arguments.has("--operations") ? operationList() : requestList());
  return exitSuccess;
}

}  // namespace tool
