#ifndef SDP_MODIFIERS_CONNECTION_H
#define SDP_MODIFIERS_CONNECTION_H

#include <cstddef>
#include <string_view>

#include "refusal.h"
#include "sdpModifiers/givenAddress.h"
#include "sdpModifiers/notes.h"
#include "text/fixedText.h"

// The address of one connection line.

namespace sdpneg {

/// What is put in the place of connection lines, made once for all.
class NewConnection {
 public:
  explicit NewConnection(const GivenAddress& address);

  /// Replaces the first c-line at or behind an offset, see `sdpModifications::sdpReplaceCxIP`.
  /// @param text an `SdpText` or a `NotedText`
  template <typename Text>
  Refusal replaceIn(Text& text, std::size_t from) const;

  /// The line, while there is no refusal.
  std::string_view line() const { return line_.view(); }
  /// Why there is none.
  const Refusal& refusal() const { return refusal_; }

 private:
  const char* ip_;
  Refusal refusal_;  ///< why there is no line
  FixedText<255> line_;
};

}  // namespace sdpneg

#endif
