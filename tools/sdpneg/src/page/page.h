#ifndef SDPNEG_PAGE_H
#define SDPNEG_PAGE_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "calls/call.h"
#include "output/bufferedOutput.h"
#include "output/json.h"
#include "report/callJson.h"

// Calls as one HTML page that needs nothing beside it.

namespace tool {

/// What the page tells of all calls.
struct PageSummary {
  std::string title;  ///< what the captures are called; may be empty
  CallTotals totals;
  std::vector<std::string> notes;            ///< what could not be read, for people
  std::map<std::string, std::string> rules;  ///< what the rules of troubles mean
};

/// A document as it may stand in a script element: nothing of it ends the element or begins a comment, and it has no line
/// ends that only some readers know.
std::string scriptJson(const Json& json);

/// Writes the page, each call when it is given, so that none is held. Their keys are masked already.
class Page {
 public:
  Page(BufferedOutput& out, Names names);
  void add(const Call& call);
  /// Is to be called behind the last.
  void end(const PageSummary& summary);

 private:
  void writeScript(std::string_view attributes, const Json& json);

  BufferedOutput& out_;
  CallJsonOptions options_;
};

}  // namespace tool

#endif
