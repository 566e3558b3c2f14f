#ifndef SDPNEG_EXIT_STATUS_H
#define SDPNEG_EXIT_STATUS_H

namespace tool {

/// What the program ends with. The numbers above 63 are those of sysexits.h.
enum ExitStatus : int {
  exitSuccess = 0,
  exitRefused = 1,    ///< a request was refused
  exitDifferent = 1,  ///< compared bodies differ
  exitFindings = 1,   ///< an answer breaks a rule
  exitBadInput = 2,   ///< an input is missing, unreadable, no SDP, or refused by the analysis
  exitUsage = 64,     ///< the command line is wrong
  exitSoftware = 70,  ///< out of memory
  exitOutput = 74     ///< standard output or a file cannot be written
};

}  // namespace tool

#endif
