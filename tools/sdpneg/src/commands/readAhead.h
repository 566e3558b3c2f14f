#ifndef SDPNEG_READ_AHEAD_H
#define SDPNEG_READ_AHEAD_H

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "calls/callTable.h"

namespace tool {

/// Messages that another thread reads, some batches ahead of the one that takes them.
class ReadAhead {
 public:
  /// Messages in their order, and how far the inputs are read with them.
  class Batch {
   public:
    std::size_t size() const { return size_; }
    ReadMessage& operator[](std::size_t index) { return slots_[index].read; }
    std::size_t position() const { return position_; }

   private:
    friend class ReadAhead;
    static constexpr std::size_t kMost = 128;

    struct Slot {
      std::string text;
      ReadMessage read;
    };

    std::array<Slot, kMost> slots_;
    std::size_t size_ = 0;
    std::size_t bytes_ = 0;
    std::size_t position_ = 0;
  };

  struct Reading {
    std::function<bool()> step;  ///< reads a little, calls add(), and says whether there may be more
    std::function<std::size_t()> position;  ///< how far that is
  };

  ReadAhead();
  /// Ends the reading, and drops what was read.
  ~ReadAhead();
  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  /// To be called once. Both functions are called by the other thread alone.
  /// @return whether there is one
  bool begin(Reading reading);

  /// To be called by the reading alone: adds a message, whose text is copied.
  void add(const CapturedMessage& message);

  /// The next batch, which holds until another one is asked for. Waits for it.
  /// @return null behind the last one
  /// Throws what the reading has thrown.
  Batch* next();
  /// Ends the reading soon. What was read then is still to be taken.
  void stop() { isStopped_ = true; }

 private:
  void run();
  /// Has an empty batch to fill; without one where all is dropped.
  bool hasBatch();
  void passOn();

  Reading reading_;
  std::atomic<bool> isStopped_ = false;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Batch> batches_;
  std::vector<Batch*> empty_;
  std::deque<Batch*> full_;
  Batch* filled_ = nullptr;  ///< by the reading
  Batch* taken_ = nullptr;
  bool hasEnded_ = false;
  bool isDropped_ = false;
  std::exception_ptr failure_;
  std::thread thread_;
};

}  // namespace tool

#endif
