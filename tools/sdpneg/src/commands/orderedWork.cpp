#include "commands/orderedWork.h"

#include <pthread.h>

#include <csignal>
#include <system_error>
#include <utility>

namespace tool {
namespace {

/// Pieces that wait for the other thread at most.
constexpr std::size_t kMostWaiting = 8;

}  // namespace

OrderedWork::~OrderedWork() {
  {
    const Lock lock(mutex_);
    isEnding_ = true;
    waiting_.clear();
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void OrderedWork::add(Piece piece) {
  Lock lock(mutex_);
  if (failure_) return;
  waiting_.push_back(std::move(piece));
  // A single piece is done sooner than a thread has begun.
  if (!thread_.joinable() && waiting_.size() > 1) startThread();
  changed_.notify_all();
  while (!failure_ && waiting_.size() > (thread_.joinable() ? kMostWaiting : 1)) doNext(lock, 0);
}

void OrderedWork::finish() {
  Lock lock(mutex_);
  while (!failure_ && !waiting_.empty()) doNext(lock, 0);
  changed_.wait(lock, [this] { return failure_ || putOut_ == begun_; });
  if (failure_) std::rethrow_exception(failure_);
}

/// Signals are for the first thread, which waits for input.
void OrderedWork::startThread() {
  if (std::thread::hardware_concurrency() == 1) return;
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  if (::pthread_sigmask(SIG_SETMASK, &all, &before) != 0) return;
  try {
    thread_ = std::thread([this] { runThread(); });
  } catch (const std::system_error&) {
    // All is done by the first thread then.
  }
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void OrderedWork::runThread() {
  Lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
    if (isEnding_) return;
    doNext(lock, 1);
  }
}

void OrderedWork::doNext(Lock& lock, std::size_t thread) {
  const std::size_t turn = begun_++;
  const Piece piece = std::move(waiting_.front());
  waiting_.pop_front();
  lock.unlock();
  std::exception_ptr thrown;
  try {
    piece.prepare(thread);
  } catch (...) {
    thrown = std::current_exception();
  }
  lock.lock();
  changed_.wait(lock, [&] { return failure_ || putOut_ == turn; });
  if (!failure_ && !thrown) {
    lock.unlock();
    try {
      piece.putOut();
    } catch (...) {
      thrown = std::current_exception();
    }
    lock.lock();
  }
  if (thrown && !failure_) {
    failure_ = thrown;
    waiting_.clear();
  }
  ++putOut_;
  changed_.notify_all();
}

}  // namespace tool
