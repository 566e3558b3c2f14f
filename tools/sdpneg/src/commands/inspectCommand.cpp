#include "commands/inspectCommand.h"

#include "commands/exitStatus.h"
#include "input/inputFiles.h"
#include "inspection/bodyInput.h"
#include "inspection/counts.h"
#include "inspection/summaryJson.h"
#include "inspection/summaryTable.h"
#include "output/colour.h"
#include "output/printable.h"
#include "output/progress.h"

namespace tool {
namespace {

/// What a run shows, in one of the two forms.
class Report {
 public:
  virtual ~Report() = default;
  virtual std::string begin() const { return {}; }
  virtual void writeBody(Output& out, const std::string& name, const Inspection& inspection,
                         bool first) const = 0;
  virtual std::string end(const Counts& counts) const = 0;
};

class TableReport : public Report {
 public:
  TableReport(Palette palette, bool counted) : palette_(palette), counted_(counted) {}

  void writeBody(Output& out, const std::string& name, const Inspection& inspection,
                 bool first) const override {
    out.write((first ? "" : "\n") + summaryTable(name, inspection, palette_));
  }

  std::string end(const Counts& counts) const override {
    if (!counted_) return {};
    const auto part = [](std::size_t count, const char* what) { return ", " + std::to_string(count) + what; };
    return "\n" + std::to_string(counts.inputs) + (counts.inputs == 1 ? " input: " : " inputs: ") +
           std::to_string(counts.parsed) + " parsed" + part(counts.refused, " refused") +
           part(counts.undecodable, " undecodable") + part(counts.unreadable, " unreadable") + "\n";
  }

 private:
  Palette palette_;
  bool counted_;
};

class JsonReport : public Report {
 public:
  std::string begin() const override { return jsonBegin(); }
  void writeBody(Output& out, const std::string& name, const Inspection& inspection,
                 bool first) const override {
    BufferedOutput buffered(out);
    writeJsonBody(buffered, name, inspection, first);
  }
  std::string end(const Counts& counts) const override { return jsonEnd(counts); }
};

void writeTrace(Output& err, const std::string& name, const Inspection& inspection, bool several) {
  if (several) err.write("==> " + printable(name) + " <==\n");
  writeTraceLines(err, inspection.trace);
}

class Run {
 public:
  Run(const Report& report, bool traced, Streams streams)
      : report_(report), traced_(traced), streams_(streams) {}

  /// Goes through the inputs until standard output takes no more.
  Counts over(const InputList& list) {
    Counts counts;
    Progress progress(streams_.err, list.inputs.size());
    streams_.out.write(report_.begin());
    for (const Input& input : list.inputs) {
      if (!streams_.out.good()) return counts;
      const Inspection inspection = readBody(input, Detail::all).inspection;
      if (inspection.problem || !inspection.notes.empty() || traced_ || streams_.out.isTerminal())
        progress.hide();
      if (traced_) writeTrace(streams_.err, input.name, inspection, list.several);
      writeProblems(streams_.err, input.name, inspection);
      report_.writeBody(streams_.out, input.name, inspection, counts.inputs == 0);
      counts.add(inspection);
      progress.show(counts.inputs);
    }
    progress.hide();
    streams_.out.write(report_.end(counts));
    return counts;
  }

 private:
  const Report& report_;
  bool traced_;
  Streams streams_;
};

}  // namespace

int runInspect(const Arguments& arguments, Streams streams) {
  const InputList list = listInputs(arguments.operands());
  const TableReport table(paletteFor(arguments.value("--color"), streams.out), list.several);
  const JsonReport json;
  const Report& report = arguments.has("--json") ? static_cast<const Report&>(json) : table;
  const Counts counts = Run(report, arguments.has("--trace"), streams).over(list);
  return counts.problems == 0 ? exitSuccess : exitBadInput;
}

}  // namespace tool
