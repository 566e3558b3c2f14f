#include "commands/sectionsCommand.h"

#include <new>

#include "commands/exitStatus.h"
#include "input/bodyText.h"
#include "inspection/bodyInput.h"
#include "output/printable.h"
#include "sections/sectionsJson.h"
#include "sections/sectionsTable.h"

namespace tool {
namespace {

class JsonReport {
 public:
  explicit JsonReport(Output& out)
      : out_(out), bodies_(out_, {{"format", 1}, {"bodies", Json::array()}}, "") {}

  void add(const BodyText& input, const sdp::Document& document) {
    const Json body = {{"file", input.name},
                       {"lines", document.lineCount()},
                       {"session", sessionJson(document)},
                       {"sections", Json::array()}};
    JsonList sections(out_, body, bodies_.begin());
    writeSections(out_, sections, document, input.firstLine());
    sections.end();
  }

  void end() {
    bodies_.end();
    out_.write("\n");
  }

 private:
  BufferedOutput out_;
  JsonList bodies_;
};

std::string block(const BodyText& input, const sdp::Document& document, const Palette& palette) {
  return palette.paint(Style::heading, printable(input.name)) + "\n" +
         (input.problem ? "  " + palette.paint(Style::bad, printable(input.problem->reason)) + "\n"
                        : sectionsTable(document, input.firstLine(), palette));
}

/// Reads one input after the other into a document, until standard output takes no more.
/// @param show is given each
/// @return the exit status
template <typename Show>
int forEachBody(const std::vector<Input>& inputs, Streams streams, Show show) {
  int status = exitSuccess;
  sdp::Document document;
  for (const Input& input : inputs) {
    if (!streams.out.good()) break;
    const BodyText body = readBodyText(input);
    writeProblems(streams.err, body.name, body.body.notes, body.problem);
    if (body.problem) status = exitBadInput;
    // No input is longer than a document may be.
    if (document.read(body.problem ? std::string_view() : body.text())) throw std::bad_alloc();
    show(body, document);
  }
  return status;
}

}  // namespace

int runSections(const Arguments& arguments, Streams streams) {
  const InputList list = listInputs(arguments.operands());
  if (arguments.has("--json")) {
    JsonReport report(streams.out);
    const int status = forEachBody(
        list.inputs, streams,
        [&](const BodyText& input, const sdp::Document& document) { report.add(input, document); });
    report.end();
    return status;
  }
  const Palette palette = paletteFor(arguments.value("--color"), streams.out);
  bool isFirst = true;
  return forEachBody(list.inputs, streams, [&](const BodyText& input, const sdp::Document& document) {
    if (!isFirst) streams.out.write("\n");
    isFirst = false;
    streams.out.write(block(input, document, palette));
  });
}

}  // namespace tool
