#ifndef SDPNEG_PIECES_H
#define SDPNEG_PIECES_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "captures/capturedMessage.h"

// Pieces of something larger that come in any order: fragments of a packet, segments of a stream.

namespace tool {

/// Keeps pieces by their places. Where two overlap, what came first stays.
class Pieces {
 public:
  struct Piece {
    std::string bytes;
    CaptureTime time;
  };

  /// Keeps what of a piece is not there yet.
  void add(std::int64_t place, std::string_view bytes, CaptureTime time);

  bool empty() const { return pieces_.empty(); }
  std::size_t count() const { return pieces_.size(); }
  /// Bytes that are kept.
  std::size_t size() const { return size_; }
  /// What keeping them takes, about.
  std::size_t memory() const { return size_ + pieces_.size() * kOverhead; }
  /// The first place of which there is a piece.
  std::int64_t begin() const { return pieces_.begin()->first; }
  /// Takes out the first piece.
  Piece takeFirst();
  /// All bytes from `place` on that join each other.
  std::string joined(std::int64_t place) const;
  void clear();

 private:
  static constexpr std::size_t kOverhead = 128;

  std::map<std::int64_t, Piece> pieces_;
  std::size_t size_ = 0;
};

}  // namespace tool

#endif
