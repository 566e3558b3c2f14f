#ifndef CHANGE_CHECKER_H
#define CHANGE_CHECKER_H

#include <span>
#include <string>
#include <string_view>
#include <vector>

// Judges what a request made of a body, from the two texts alone.

namespace plain {

/// What a request has done to a body that it should not have.
/// @param words the request's name and its arguments, which are right
/// @param before the body that it was given
/// @param after what it left
/// @return complaints in words; empty when all is well
std::vector<std::string> complaintsAbout(std::span<const std::string_view> words, std::string_view before,
                                         std::string_view after);

}  // namespace plain

#endif
