#include "commands/transferCommands.h"

#include <memory>
#include <new>

#include "commands/exitStatus.h"
#include "inspection/bodyInput.h"
#include "inspection/refusal.h"
#include "output/fileReplacement.h"

namespace tool {
namespace {

std::string fileOf(const Arguments& arguments) {
  return arguments.operands().empty() ? "-" : arguments.operands().front();
}

constexpr std::string_view kStandardOutput = "-";

/// Writes into the file that an option names, or to standard output.
int writeTo(std::string_view name, std::string_view bytes, Streams streams) {
  if (name == kStandardOutput) {
    writeText(streams.out, bytes);
    return exitSuccess;
  }
  const auto problem = replaceFile(std::string(name), bytes);
  if (!problem) return exitSuccess;
  writeProblem(streams.err, name, *problem);
  return exitOutput;
}

std::string transferForm(const cSdpNegotiator& object) {
  unsigned char* bytes = nullptr;
  unsigned int size = 0;
  if (object.compressObject(&bytes, size) != 0) throw std::bad_alloc();
  const std::unique_ptr<unsigned char[]> owned(bytes);
  return {bytes, bytes + size};
}

/// The body of a transfer form, or what is wrong with that.
struct Unpacked {
  std::string text;
  std::optional<Problem> problem;
};

Problem damaged(const std::string& why) { return {{}, "is no transfer form: " + why}; }

Unpacked unpack(const std::string& bytes) {
  if (bytes.size() > sizeof(cSdpNegotiator)) {
    return {{}, damaged("it is longer than " + std::to_string(sizeof(cSdpNegotiator)) + " bytes")};
  }
  const RefusalWatch watch;
  cSdpNegotiator object{};
  const unsigned short status = object.uncompressObject(reinterpret_cast<const unsigned char*>(bytes.data()),
                                                        static_cast<unsigned int>(bytes.size()));
  if (status != 0) return {{}, damaged(explainRefusedRequest(watch, status))};
  if (!object.isSdpPresent()) return {{}, damaged("it holds no body")};
  std::string text = bodyText(object);
  if (text.empty()) return {{}, damaged("its deflated text is damaged")};
  return {std::move(text), std::nullopt};
}

/// Whether a text came out that is SDP; what is no transfer form may look like one to the library.
std::optional<Problem> contentProblem(const std::string& text) {
  const Inspection inspection = inspect(text, Detail::object);
  if (inspection.isSdp()) return std::nullopt;
  return damaged("its text is no SDP: " + inspection.problem.value_or(Problem{}).reason);
}

}  // namespace

int runPack(const Arguments& arguments, Streams streams) {
  if (arguments.value("--output") == kStandardOutput && streams.out.isTerminal()) {
    throw UsageError{"a transfer form is not written to a terminal"};
  }
  const BodyInput input = readBodyFor(fileOf(arguments), streams);
  if (!input.usable()) return exitBadInput;
  return writeTo(arguments.value("--output"), transferForm(*input.inspection.object), streams);
}

int runUnpack(const Arguments& arguments, Streams streams) {
  const Input input = inputOf(fileOf(arguments));
  InputBytes read = readInput(input);
  Unpacked unpacked;
  if (!read.problem) unpacked = unpack(read.bytes);
  std::optional<Problem> problem = read.problem ? read.problem : unpacked.problem;
  if (!problem) problem = contentProblem(unpacked.text);
  if (problem) {
    writeProblem(streams.err, input.name, *problem);
    return exitBadInput;
  }
  return writeTo(arguments.value("--output"), unpacked.text, streams);
}

}  // namespace tool
