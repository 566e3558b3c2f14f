#ifndef SDPNEG_PAGE_PARTS_H
#define SDPNEG_PAGE_PARTS_H

#include <span>
#include <string_view>

// What is the same in all pages. The build makes its source of page.html, the style and the script.

namespace tool {

/// Pieces of the page up to where the calls are.
std::span<const std::string_view> pageBegin();
/// Pieces of the page behind them.
std::span<const std::string_view> pageEnd();

}  // namespace tool

#endif
