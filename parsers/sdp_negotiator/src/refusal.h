#ifndef SDP_NEGOTIATOR_REFUSAL_VALUE_H
#define SDP_NEGOTIATOR_REFUSAL_VALUE_H

#include <string_view>

#include "sdpRefusal.h"

// Why something is not done, as a value. It is told at the boundary: in the public operation, in the object's request,
// or where an edit goes on in spite of it.

namespace sdpneg {

/// A reason with what its message names. Views need to live until it is told; see `keptForRefusal`.
struct Refusal {
  eSdpRefusal reason = SDP_REFUSED_NOTHING;
  const char* operation = "";  ///< the operation that a caller knows
  std::string_view what = {};
  long long number = 0;
  long long limit = 0;
  int section = 0;  ///< from 1
  eSdpRefusalField field = SDP_REFUSAL_FIELD_NONE;
  int line = 0;
  int column = 0;

  /// Whether there is one.
  explicit operator bool() const { return reason != SDP_REFUSED_NOTHING; }
};

/// Traces a refusal by the table of messages and keeps it as the thread's last one.
/// @return what the trace call returned; 0 for a reason that is not traced
[[gnu::cold]] int tell(const Refusal& refusal);

/// Tells a refusal as often as it came, to be called while nothing is traced.
[[gnu::cold]] void tellAgain(const Refusal& refusal, unsigned int times);

/// Traces a refusal and leaves the thread's last one as it is: the work goes on, or another one was its reason.
/// @return as `tell`
[[gnu::cold]] int mention(const Refusal& refusal);

/// How many refusals the thread has been told.
inline unsigned int toldSoFar() { return sdpLastRefusal().number; }

/// Tells a refusal that may follow from another: one that was told since says more, and stays the thread's last.
/// @param before what `toldSoFar` was when the work began
/// @return as `tell`
inline int tellUnlessTold(const Refusal& refusal, unsigned int before) {
  return toldSoFar() != before ? mention(refusal) : tell(refusal);
}

/// A copy of what a refusal names, for texts that are gone when it is told.
/// @return at most 255 characters, kept until the thread keeps another text
std::string_view keptForRefusal(std::string_view text);

/// Tells a refusal that is a status.
/// @return 1
inline unsigned short refuse(const Refusal& refusal) {
  tell(refusal);
  return 1;
}

/// An inner result as a status: tells a refusal.
/// @return 0 without one, else 1
inline unsigned short statusOf(const Refusal& refusal) { return refusal ? refuse(refusal) : 0; }

}  // namespace sdpneg

#endif
