#ifndef SDPNEG_COMPLETION_H
#define SDPNEG_COMPLETION_H

#include <string>
#include <vector>

namespace tool {

/// What may follow the words of an unfinished command line, one word a line; "<file>" stands for the names of
/// files.
/// @param words those before the one at the cursor, without the program's name; a shell that splits
///              "--color=never" at the equals sign gives that as a word
std::string completions(const std::vector<std::string>& words);

}  // namespace tool

#endif
