#ifndef SDP_NEGOTIATOR_STRICT_BLOCK_H
#define SDP_NEGOTIATOR_STRICT_BLOCK_H

#include <string_view>

// Which deflated texts libdeflate and zlib read alike.

namespace sdpneg {

/// Whether a stream (RFC 1950) begins with a last block of dynamic codes (RFC 1951, 3.2.7) that are complete and say no
/// more than they may. libdeflate reads some that are neither, which zlib refuses: length codes of symbols that do not
/// exist, code lengths that run over their number, and codes with words that stand for nothing. Where this is true, what
/// libdeflate takes is what zlib takes. Texts of an object are nearly all deflated into one such block.
bool isOneStrictBlock(std::string_view stream);

}  // namespace sdpneg

#endif
