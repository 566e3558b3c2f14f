#ifndef SDPNEG_SIDE_EFFECTS_H
#define SDPNEG_SIDE_EFFECTS_H

#include <string>
#include <string_view>
#include <vector>

// What a request did to a body beside what it was asked for, told by the body before and after it.

namespace tool {

/// The sections that a request is meant to take out. What else goes is lost.
enum class Takes : unsigned char { nothing, video, any };

/// Each thing in words that follow the request's name: "leaves an empty line, line 12". What stood in the body before
/// is none.
/// - an m-line without a format
/// - a format that stands in an m-line more than once
/// - an empty line
/// - a section that is gone
/// - a BUNDLE group that names a section that is gone
std::vector<std::string> sideEffects(std::string_view before, std::string_view after, Takes takes);

}  // namespace tool

#endif
