#ifndef SDPNEG_SUMMARY_TABLE_H
#define SDPNEG_SUMMARY_TABLE_H

#include <string>

#include "inspection/inspection.h"
#include "output/colour.h"

namespace tool {

/// The block of lines that shows an inspection: its name, the summary of a parsed body, and the m-lines of
/// every body that is SDP. Nothing in it can control a terminal but the palette's colours.
std::string summaryTable(const std::string& name, const Inspection& inspection, const Palette& palette);

}  // namespace tool

#endif
