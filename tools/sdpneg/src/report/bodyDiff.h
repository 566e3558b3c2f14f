#ifndef SDPNEG_BODY_DIFF_H
#define SDPNEG_BODY_DIFF_H

#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// What differs between two bodies in the session or in a section.
struct SectionDiff {
  std::string section;  ///< "session", "1 audio", "2 audio -> video"
  /// All lines of the section: ' ', '-' or '+' and the line, each ended by LF. CRs at line ends stay where some lines of
  /// the section lack them. What lines have is not made printable.
  std::string lines;
};

/// The sections that differ. They are matched by position; those that only one body has are all '-' or '+'.
std::vector<SectionDiff> bodyDiff(std::string_view before, std::string_view after);

}  // namespace tool

#endif
