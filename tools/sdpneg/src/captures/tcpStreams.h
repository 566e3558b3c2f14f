#ifndef SDPNEG_TCP_STREAMS_H
#define SDPNEG_TCP_STREAMS_H

#include <cstddef>
#include <cstdint>
#include <list>
#include <string_view>
#include <unordered_map>

#include "captures/capturedMessage.h"
#include "captures/pieces.h"
#include "captures/streamContent.h"

// TCP streams, each way by itself, whose segments may come in any order, several times, or not at all.

namespace tool {

inline constexpr std::size_t kMaxStreams = 32768;
/// Bytes that all streams together keep for what is not there yet.
inline constexpr std::size_t kMaxStreamBytes = std::size_t{64} * 1024 * 1024;
/// What a stream keeps behind a gap before it is taken as one.
inline constexpr std::size_t kMaxPendingBytes = std::size_t{64} * 1024;
inline constexpr std::size_t kMaxPendingPieces = 256;
/// Microseconds of the capture for which missing bytes are waited for, and after which a silent stream is forgotten.
inline constexpr std::int64_t kGapPatience = 5 * 1000000LL;
inline constexpr std::int64_t kStreamPatience = 120 * 1000000LL;

struct TcpSegment {
  Flow flow;
  std::uint32_t sequence = 0;
  bool isSyn = false;
  bool isFin = false;
  bool isReset = false;
  std::string_view payload;     ///< what was captured of it
  std::size_t payloadSize = 0;  ///< what there was on the wire
  CaptureTime time;
};

class TcpStreams {
 public:
  explicit TcpStreams(CaptureOutput& output) : output_(&output) {}

  void take(const TcpSegment& segment);
  /// Nothing follows: takes what stands behind gaps and gives up what is not complete.
  void flush();

  std::size_t count() const { return streams_.size(); }
  /// Bytes that are kept.
  std::size_t size() const { return size_; }

 private:
  struct Stream {
    Stream(const Flow& ofFlow, CaptureOutput& output) : flow(ofFlow), content(ofFlow, output) {}

    Flow flow;
    bool isStarted = false;  ///< `next` is known
    bool hasEnd = false;
    std::uint32_t origin = 0;  ///< the sequence number of place 0
    std::int64_t begin = 0;    ///< the first place that was taken
    std::int64_t next = 0;     ///< the place that is taken next
    std::int64_t end = 0;
    Pieces pending;
    CaptureTime pendingSince;
    CaptureTime last;
    StreamContent content;

    std::size_t size() const { return pending.memory() + content.size(); }
  };
  struct FlowHash {
    std::size_t operator()(const Flow& flow) const { return hashOf(flow); }
  };

  Stream& streamOf(const TcpSegment& segment);
  void takeSyn(Stream& stream, const TcpSegment& segment);
  void takeBytes(Stream& stream, const TcpSegment& segment, std::int64_t place);
  void takeJoining(Stream& stream, const TcpSegment& segment, std::int64_t place);
  void takeEarlier(Stream& stream, const TcpSegment& segment, std::int64_t place);
  void takeNext(Stream& stream, std::string_view bytes, CaptureTime time);
  void takeCut(Stream& stream, std::int64_t end, CaptureTime time);
  void takePending(Stream& stream);
  void passGap(Stream& stream);
  void passGaps(Stream& stream);
  void endAtItsPlace(Stream& stream, CaptureTime time);
  void restart(Stream& stream, std::uint32_t origin);
  void forgetOldest();
  void forgetSilent(CaptureTime now);

  CaptureOutput* output_;
  std::list<Stream> streams_;  ///< the one that was silent for longest first
  std::unordered_map<Flow, std::list<Stream>::iterator, FlowHash> places_;
  std::size_t size_ = 0;
};

}  // namespace tool

#endif
