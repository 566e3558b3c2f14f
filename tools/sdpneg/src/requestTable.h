#ifndef SDPNEG_REQUEST_TABLE_H
#define SDPNEG_REQUEST_TABLE_H

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sdpNegotiator.h"

// The one table of the requests that change a body. Parsing, help, completion, the manual page and
// `sdpneg requests` are made from it.

namespace tool {

struct RequestArgument {
  std::string_view name;                          ///< "DIRECTION"
  std::string_view expects;                       ///< what it must be: "a whole number"
  std::span<const std::string_view> values = {};  ///< what it may be, in any letter case; empty for anything
  bool (*accepts)(std::string_view word) = nullptr;  ///< where there are no values: which words; null for all
  bool optional = false;                             ///< may be left out; only the last ones
  bool isFile = false;                               ///< a file with another body; one in a request
};

/// What a command line says to a request, and what the request says to it.
struct RequestInput {
  std::vector<std::string> words;
  std::optional<cSdpNegotiator> other = std::nullopt;  ///< the body of its file
  std::string refusal = {};                            ///< why it is refused, where the trace does not tell

  /// An argument; null when it was left out.
  const char* word(std::size_t index) const { return index < words.size() ? words[index].c_str() : nullptr; }
};

struct RequestRow {
  std::string_view name;
  std::span<const RequestArgument> arguments;
  std::string_view help;  ///< one line
  /// @return the library's status
  unsigned short (*run)(cSdpNegotiator& object, RequestInput& input);
  /// Whether the status of a refusal is the result of a trace call. Then a traced error tells it.
  bool refusalIsTraced = false;
};

/// A row's function for a request without arguments.
template <unsigned short (cSdpNegotiator::*operation)()>
unsigned short plainRequest(cSdpNegotiator& object, RequestInput& /*input*/) {
  return (object.*operation)();
}

// The rows of each topic, in the order of the help.
std::span<const RequestRow> originRequests();
std::span<const RequestRow> codecRequests();
std::span<const RequestRow> mediaRequests();
std::span<const RequestRow> attributeRequests();

/// All requests in the order of the help.
std::span<const RequestRow> requestTable();

/// @return null when there is none of that name
const RequestRow* findRequest(std::string_view name);

/// Whether a word can be an argument.
bool isAccepted(const RequestArgument& argument, std::string_view word);

/// "set-version N", "silence on|off"
std::string requestSynopsis(const RequestRow& request);
/// What an argument may be, in words.
std::string argumentHelp(const RequestArgument& argument);

}  // namespace tool

#endif
