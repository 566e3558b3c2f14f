#include "commands/readAhead.h"

#include <pthread.h>

#include <csignal>
#include <system_error>
#include <utility>

namespace tool {
namespace {

constexpr std::size_t kBatches = 4;
/// Bytes of texts from which on a batch is passed on.
constexpr std::size_t kManyBytes = std::size_t{256} * 1024;
/// Steps after which one is passed on, also without a message.
constexpr std::size_t kStepsOfBatch = 1024;
/// Bytes that a text keeps for the next one in its place.
constexpr std::size_t kMostKept = std::size_t{8} * 1024;

}  // namespace

ReadAhead::ReadAhead() : batches_(kBatches) {
  for (Batch& batch : batches_) empty_.push_back(&batch);
}

/// Signals are for the first thread.
bool ReadAhead::begin(Reading reading) {
  reading_ = std::move(reading);
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  if (::pthread_sigmask(SIG_SETMASK, &all, &before) != 0) return false;
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    // All is read by the first thread then.
  }
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return thread_.joinable();
}

ReadAhead::~ReadAhead() {
  stop();
  {
    const std::lock_guard lock(mutex_);
    isDropped_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void ReadAhead::run() {
  std::exception_ptr thrown;
  try {
    for (std::size_t steps = 1; !isStopped_ && reading_.step(); ++steps) {
      // Who waits is to see how far it is, and to be able to stop it.
      if (steps % kStepsOfBatch == 0 && hasBatch()) passOn();
    }
    passOn();
  } catch (...) {
    thrown = std::current_exception();
  }
  {
    const std::lock_guard lock(mutex_);
    failure_ = thrown;
    hasEnded_ = true;
  }
  changed_.notify_all();
}

bool ReadAhead::hasBatch() {
  if (filled_ != nullptr) return true;
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return isDropped_ || !empty_.empty(); });
  if (isDropped_) return false;
  filled_ = empty_.back();
  empty_.pop_back();
  return true;
}

void ReadAhead::passOn() {
  if (filled_ == nullptr) return;
  filled_->position_ = reading_.position();
  {
    const std::lock_guard lock(mutex_);
    full_.push_back(std::exchange(filled_, nullptr));
  }
  changed_.notify_all();
}

void ReadAhead::add(const CapturedMessage& message) {
  if (!hasBatch()) return;
  Batch::Slot& slot = filled_->slots_[filled_->size_++];
  if (slot.text.capacity() > kMostKept) std::string().swap(slot.text);
  slot.text = message.text;
  CapturedMessage kept = message;
  kept.text = slot.text;
  slot.read.read(kept);
  filled_->bytes_ += kept.text.size();
  if (filled_->size_ == Batch::kMost || filled_->bytes_ >= kManyBytes) passOn();
}

ReadAhead::Batch* ReadAhead::next() {
  std::unique_lock lock(mutex_);
  if (taken_ != nullptr) {
    taken_->size_ = 0;
    taken_->bytes_ = 0;
    empty_.push_back(std::exchange(taken_, nullptr));
    changed_.notify_all();
  }
  changed_.wait(lock, [this] { return hasEnded_ || !full_.empty(); });
  if (full_.empty()) {
    if (failure_) std::rethrow_exception(failure_);
    return nullptr;
  }
  taken_ = full_.front();
  full_.pop_front();
  return taken_;
}

}  // namespace tool
