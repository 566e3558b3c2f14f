#include "commands/callsOptions.h"

#include <algorithm>

#include "requests/wholeNumber.h"

namespace tool {
namespace {

void refuse(bool isWrong, const std::string& mistake) {
  if (isWrong) throw UsageError{mistake};
}

std::size_t callNumber(std::string_view text) {
  const std::size_t number = wholeNumber<std::size_t>(text).value_or(0);
  refuse(number == 0, "--call wants the number of a call, not '" + std::string(text) + "'");
  return number;
}

CaptureTime timeOf(const Arguments& arguments, std::string_view option) {
  const std::string_view text = arguments.value(option);
  if (text.empty()) return std::nullopt;
  const CaptureTime time = parseTime(text);
  refuse(!time, std::string(option) + " wants a time such as '2026-11-22 10:00:00', not '" +
                    std::string(text) + "'");
  return time;
}

CallFilter filterOf(const Arguments& arguments) {
  CallFilter filter;
  filter.callIds = arguments.values("--call-id");
  filter.from = arguments.value("--from");
  filter.to = arguments.value("--to");
  for (const std::string& text : arguments.values("--address")) {
    const std::optional<Endpoint> endpoint = parseEndpoint(text);
    refuse(!endpoint, "--address wants an IP address, or one with a port, not '" + text + "'");
    filter.addresses.push_back(*endpoint);
  }
  filter.since = timeOf(arguments, "--since");
  filter.until = timeOf(arguments, "--until");
  return filter;
}

std::vector<Input> inputsOf(const Arguments& arguments) {
  std::vector<Input> inputs;
  for (const std::string& operand : arguments.operands()) inputs.push_back(inputOf(operand));
  if (inputs.empty()) inputs.push_back(inputOf("-"));
  const auto standardInputs = std::ranges::count_if(inputs, &Input::standardInput);
  refuse(standardInputs > 1, "standard input can be read only once");
  return inputs;
}

/// What does not go together.
void checkTogether(const CallsOptions& options) {
  const int outputs = (options.asJson ? 1 : 0) + (options.call ? 1 : 0);
  refuse(outputs > 1, "--json and --call do not go together");
  refuse(options.troublesOnly && options.call.has_value(), "--check and --call do not go together");
  refuse(options.withBodies && !options.call && !options.asJson, "--bodies wants --call or --json");
  refuse(options.isFollowed && options.inputs.size() > 1, "--follow wants one input");
  refuse(!options.capture.empty() && !options.isAnonymous,
         "--write wants --anonymize: only anonymised captures are written");
  refuse(options.showsKeys && !options.page.empty(), "--show-keys is for a terminal, and pages show no keys");
}

}  // namespace

CallsOptions callsOptions(const Arguments& arguments) {
  CallsOptions options;
  options.inputs = inputsOf(arguments);
  options.packetFilter = arguments.value("--filter");
  options.isFollowed = arguments.has("--follow");
  options.table.joinHeaders = arguments.values("--join-header");
  options.filter = filterOf(arguments);
  options.isAnonymous = arguments.has("--anonymize");
  options.asJson = arguments.has("--json");
  options.troublesOnly = arguments.has("--check");
  options.showsKeys = arguments.has("--show-keys");
  options.withBodies = arguments.has("--bodies");
  if (!arguments.value("--call").empty()) options.call = callNumber(arguments.value("--call"));
  for (const std::string& name : arguments.values("--name"))
    refuse(!addName(options.names, name), "--name wants ADDRESS=NAME, not '" + name + "'");
  options.page = arguments.value("--html");
  options.capture = arguments.value("--write");
  checkTogether(options);
  return options;
}

}  // namespace tool
