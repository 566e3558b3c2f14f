#ifndef SDPNEG_SUMMARY_JSON_H
#define SDPNEG_SUMMARY_JSON_H

#include <string>

#include "inspection/counts.h"
#include "inspection/inspection.h"
#include "output/bufferedOutput.h"

// The JSON document of `sdpneg inspect --json`, in pieces. Its field names are described in docs/tool.md and
// do not change while "format" stays 1.

namespace tool {

std::string jsonBegin();
/// @param first whether it is the document's first body
void writeJsonBody(BufferedOutput& out, const std::string& name, const Inspection& inspection, bool first);
std::string jsonEnd(const Counts& counts);

}  // namespace tool

#endif
