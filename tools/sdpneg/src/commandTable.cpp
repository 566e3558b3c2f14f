#include "commandTable.h"

#include "inspectCommand.h"

namespace tool {
namespace {

constexpr std::string_view colourValues[] = {"auto", "always", "never"};

constexpr OptionRow inspectOptions[] = {
    {"--json", "", {}, "", "Write a JSON document instead of tables."},
    {"--trace", "", {}, "", "Write the library's own trace lines to standard error."},
    {"--color", "WHEN", colourValues, "auto", "Use colours: on a terminal, always or never."}};

constexpr OperandRow inspectOperands[] = {
    {"FILE", "Bodies, SIP messages, folders of *.sdp, or - for standard input.", true, false, true}};

constexpr CommandRow commands[] = {
    {"inspect", "Show what SDP bodies say",
     "Parses SDP bodies and shows the summary of each: address and port, codecs, directions, security, ICE, "
     "hold state, video, fax, and the m-lines. An input is a bare body or a whole SIP message, of which the "
     "part application/sdp is taken. Without FILE, standard input is read. What is wrong with an input is "
     "said on standard error in one line with file, line and column, and the others are still shown. A body "
     "that is SDP but is refused by the analysis is shown as a table of its m-lines.",
     inspectOptions, inspectOperands, runInspect}};

}  // namespace

std::string_view Arguments::value(std::string_view option) const {
  const auto found = values_.find(option);
  return found != values_.end() ? std::string_view(found->second) : std::string_view();
}

std::span<const CommandRow> commandTable() { return commands; }

}  // namespace tool
