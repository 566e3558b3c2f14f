#ifndef PROMISE_CHECKS_H
#define PROMISE_CHECKS_H

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "plainBody.h"

// What single requests promise of the text that they leave. Parts of the checker of changes.

namespace plain {

/// The attributes that tell ways beside the c-line.
inline const Words kWays = {
    "candidate",    "remote-candidates", "end-of-candidates", "ice-ufrag", "ice-pwd", "ice-options",
    "ice-lite",     "ice-mismatch",      "ice-pacing",        "altc",      "alt",     "ccap",
    "source-filter"};

inline bool isMLine(std::string_view line) { return line.substr(0, 2) == "m="; }

struct Complaints {
  std::vector<std::string> all;

  void add(const std::string& text) { all.push_back(text); }
  void add(const std::string& text, std::size_t section) {
    all.push_back("section " + std::to_string(section) + ": " + text);
  }
};

/// A body on which a request was done.
struct Change {
  std::span<const std::string_view> words;
  const PlainBody& before;
  const PlainBody& after;           ///< with the same sections
  const std::vector<bool>& chosen;  ///< the sections that the request is about
};

void checkAnchor(const Change& change, Complaints& complaints);
void checkProfile(const Change& change, Complaints& complaints);
void checkCanonical(const PlainBody& before, const PlainBody& after, Complaints& complaints);

}  // namespace plain

#endif
