#ifndef SDP_READS_BEHIND_NUL_H
#define SDP_READS_BEHIND_NUL_H

// Words of fields that are read whole, whatever stands behind the NUL.

namespace sdpneg {

/// Whether words are read from fields in which the NUL may stand in front of the word's end. What stands behind it changes
/// no result. The memory sanitizer is to see who lets it, so with it no more is read than there is.
#if defined(__has_feature)
#if __has_feature(memory_sanitizer)
#define SDP_READS_UP_TO_NUL 1
#endif
#endif
#ifdef SDP_READS_UP_TO_NUL
inline constexpr bool kReadsBehindNul = false;
#else
inline constexpr bool kReadsBehindNul = true;
#endif

}  // namespace sdpneg

#endif
