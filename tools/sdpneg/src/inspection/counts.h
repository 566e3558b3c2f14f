#ifndef SDPNEG_COUNTS_H
#define SDPNEG_COUNTS_H

#include <cstddef>

#include "inspection/inspection.h"

namespace tool {

/// How many inputs had which result.
struct Counts {
  std::size_t inputs = 0;
  std::size_t parsed = 0;
  std::size_t refused = 0;
  std::size_t undecodable = 0;
  std::size_t unreadable = 0;
  std::size_t problems = 0;  ///< inputs that something is wrong with, parsed ones included

  void add(const Inspection& inspection) {
    ++inputs;
    ++of(inspection.result);
    if (inspection.problem) ++problems;
  }

 private:
  std::size_t& of(Result result) {
    switch (result) {
      case Result::parsed:
        return parsed;
      case Result::refused:
        return refused;
      case Result::undecodable:
        return undecodable;
      default:
        return unreadable;
    }
  }
};

}  // namespace tool

#endif
