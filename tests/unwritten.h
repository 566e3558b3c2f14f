#ifndef SDP_UNWRITTEN_H
#define SDP_UNWRITTEN_H

#if defined(__has_feature)
#if __has_feature(memory_sanitizer)
#include <sanitizer/msan_interface.h>
#define SDP_TEST_MEMORY_SANITIZER 1
#endif
#endif

/// Makes the bytes of a record count as never written, so that the memory sanitizer tells who reads them.
template <typename Record>
void makeUnwritten([[maybe_unused]] Record& record) {
#ifdef SDP_TEST_MEMORY_SANITIZER
  __msan_poison(&record, sizeof record);
#endif
}

#endif
