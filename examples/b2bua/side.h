#ifndef B2BUA_SIDE_H
#define B2BUA_SIDE_H

#include <cstddef>

namespace b2bua {

enum Side : std::size_t { kCaller = 0, kTarget = 1 };

inline Side otherOf(Side side) { return side == kCaller ? kTarget : kCaller; }

inline const char* nameOf(Side side) { return side == kCaller ? "caller" : "target"; }

}  // namespace b2bua

#endif
