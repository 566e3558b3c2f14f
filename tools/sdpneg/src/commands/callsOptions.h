#ifndef SDPNEG_CALLS_OPTIONS_H
#define SDPNEG_CALLS_OPTIONS_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "calls/callFilter.h"
#include "calls/callTable.h"
#include "commands/commandTable.h"
#include "input/inputFiles.h"
#include "report/names.h"

namespace tool {

/// What the command line asks of `calls`.
struct CallsOptions {
  std::vector<Input> inputs;
  std::string packetFilter;
  bool isFollowed = false;

  CallOptions table;
  CallFilter filter;
  bool isAnonymous = false;

  bool asJson = false;
  bool troublesOnly = false;
  bool showsKeys = false;
  bool withBodies = false;
  std::optional<std::size_t> call;  ///< the one whose ladder is drawn
  Names names;
  std::string page;     ///< the file for it; empty for none
  std::string capture;  ///< the file for an anonymised one; empty for none
};

/// @throws UsageError
CallsOptions callsOptions(const Arguments& arguments);

}  // namespace tool

#endif
