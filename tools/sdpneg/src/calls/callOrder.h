#ifndef SDPNEG_CALL_ORDER_H
#define SDPNEG_CALL_ORDER_H

#include <cstddef>
#include <map>

#include "calls/callTable.h"

namespace tool {

/// Calls in the order in which they begin, though they end in another one, with numbers from 1 on that leave none out. A
/// call waits for those that began before it and are open; where too much waits, the first that does goes on.
class CallOrder {
 public:
  /// @param mostWaiting bytes of calls that may wait, about; with 0 none does
  CallOrder(CallSink sink, std::size_t mostWaiting);

  void add(Call&& call);
  /// Passes on what waits for no call below `lowestOpen`, a number of the table.
  void release(std::size_t lowestOpen);
  /// Passes on everything.
  void finish();

 private:
  void passFirst();

  CallSink sink_;
  std::size_t mostWaiting_;
  std::map<std::size_t, Call> waiting_;
  std::size_t bytes_ = 0;
  std::size_t passed_ = 0;
};

}  // namespace tool

#endif
