#ifndef B2BUA_BODY_DIFF_H
#define B2BUA_BODY_DIFF_H

#include <string>

namespace b2bua {

/// Writes how a body changed on its way to standard output: lines that went with "-", that came with "+".
void showBodies(const std::string& title, const std::string& before, const std::string& after);

}  // namespace b2bua

#endif
