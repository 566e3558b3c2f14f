#ifndef SDPNEG_REQUEST_TABLE_H
#define SDPNEG_REQUEST_TABLE_H

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "requests/sideEffects.h"
#include "sdpModifiers.h"
#include "sdpNegotiator.h"

// The one table of the requests that change a body. Parsing, help, completion, the manual page and
// `sdpneg requests` are made from it. Most are asked of an object, which must be able to read the body; those of the
// document layer take any text.

namespace tool {

struct RequestArgument {
  std::string_view name;                          ///< "DIRECTION"
  std::string_view expects;                       ///< what it must be: "a whole number"
  std::span<const std::string_view> values = {};  ///< what it may be, in any letter case; empty for anything
  /// Which words it may be; null for the values alone, or for all where there are none. The values are then words to
  /// offer.
  bool (*accepts)(std::string_view word) = nullptr;
  bool optional = false;                          ///< may be left out; only the last ones
  bool isFile = false;                            ///< a file with another body; one in a request
  std::vector<std::string> (*names)() = nullptr;  ///< the names that a word may hold, where they are many
};

/// What a command line says to a request, and what the request says to it.
struct RequestInput {
  std::vector<std::string> words;
  std::optional<cSdpNegotiator> other = std::nullopt;  ///< the body of its file
  std::string refusal = {};  ///< why it is refused, where the library does not tell it
  std::string idle = {};     ///< why there was nothing to do, where the body stays as it was
  std::string failure = {};  ///< why it could not do what there was to do, where the body stays as it was
  std::string removed = {};  ///< the record of m-lines that it removed

  /// An argument; null when it was left out.
  const char* word(std::size_t index) const { return index < words.size() ? words[index].c_str() : nullptr; }
};

struct RequestRow {
  std::string_view name;
  std::span<const RequestArgument> arguments;
  std::string_view help;  ///< one line
  /// @return the library's status. Null for a request of the document layer, which has it under the same name.
  unsigned short (*run)(cSdpNegotiator& object, RequestInput& input);
  /// The operations of the library that it reaches, of `cSdpNegotiator` where no class is named; blanks between them.
  std::string_view operations;
  /// Whether the status does not tell every refusal: it is the result of a trace call, there is none, or an edit
  /// that ran out of room counts as done. Then the thread's last refusal tells it.
  bool refusalIsKept = false;
  /// What it is meant to take out of the body.
  Takes takes = Takes::nothing;

  /// Whether it is of the document layer.
  bool isOfDocument() const { return run == nullptr; }
};

/// A request with the words of its arguments.
struct RequestCall {
  const RequestRow* row;
  RequestInput input;
};

/// A row's function for a request without arguments.
template <unsigned short (cSdpNegotiator::*Operation)()>
unsigned short plainRequest(cSdpNegotiator& object, RequestInput& /*input*/) {
  return (object.*Operation)();
}

/// Edits the text of a body and parses what comes of it, as the requests of the library do.
/// @return the first status that is not 0
template <typename Edit>
unsigned short editText(cSdpNegotiator& object, Edit edit) {
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  unsigned short status = object.getSDP(text, sizeof text);
  if (status == 0) status = edit(text);
  return status != 0 ? status : object.sdpParse(text, SDP_TYPE_UNKNOWN);
}

/// A row's function for an edit of a text without arguments.
template <unsigned short (*Operation)(char*)>
unsigned short textRequest(cSdpNegotiator& object, RequestInput& /*input*/) {
  return editText(object, Operation);
}

// The rows of each topic, in the order of the help.
std::span<const RequestRow> originRequests();
std::span<const RequestRow> codecRequests();
std::span<const RequestRow> mediaRequests();
std::span<const RequestRow> attributeRequests();
std::span<const RequestRow> securityRequests();
std::span<const RequestRow> bodyRequests();
std::span<const RequestRow> documentRequests();

/// All requests in the order of the help.
std::span<const RequestRow> requestTable();

/// @return null when there is none of that name
const RequestRow* findRequest(std::string_view name);

/// Whether a word can be an argument.
bool isAccepted(const RequestArgument& argument, std::string_view word);

/// "set-version N", "silence on|off"
std::string requestSynopsis(const RequestRow& request);
/// Whether the synopsis has the argument's values in place of its name.
bool standsAsValues(const RequestArgument& argument);
/// What an argument may be, in words.
std::string argumentHelp(const RequestArgument& argument);

}  // namespace tool

#endif
