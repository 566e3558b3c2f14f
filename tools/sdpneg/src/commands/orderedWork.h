#ifndef SDPNEG_ORDERED_WORK_H
#define SDPNEG_ORDERED_WORK_H

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

namespace tool {

/// Work in pieces, that a second thread shares where there is a processor for it. What pieces come to is put out in their
/// order, one at a time.
class OrderedWork {
 public:
  static constexpr std::size_t kThreads = 2;

  struct Piece {
    /// Called at any time, beside what is done to other pieces.
    /// @param thread less than kThreads, another one for each of the threads that call at one time
    std::function<void(std::size_t thread)> prepare;
    std::function<void()> putOut;
  };

  OrderedWork() = default;
  ~OrderedWork();
  OrderedWork(const OrderedWork&) = delete;
  OrderedWork& operator=(const OrderedWork&) = delete;

  /// Leaves a piece to the other thread. Where much waits, this thread does some of it.
  void add(Piece piece);
  /// Ends when all pieces are put out. Throws what one of them has thrown.
  void finish();

 private:
  using Lock = std::unique_lock<std::mutex>;

  void startThread();
  void runThread();
  /// Does the next piece. It must not be called without one.
  void doNext(Lock& lock, std::size_t thread);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Piece> waiting_;
  std::size_t begun_ = 0;   ///< pieces that were taken
  std::size_t putOut_ = 0;  ///< and that are done
  bool isEnding_ = false;
  std::exception_ptr failure_;
  std::thread thread_;
};

}  // namespace tool

#endif
