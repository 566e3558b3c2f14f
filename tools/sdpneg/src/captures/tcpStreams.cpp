#include "captures/tcpStreams.h"

#include <algorithm>
#include <iterator>

namespace tool {
namespace {

/// So far away from what was taken last, a segment is of another connection whose beginning was not captured.
constexpr std::int64_t kLargestWindow = std::int64_t{1024} * 1024;

bool isFarApart(std::int64_t a, std::int64_t b) { return a - b > kLargestWindow || b - a > kLargestWindow; }

bool isLongerThan(CaptureTime from, CaptureTime to, std::int64_t patience) {
  return from && to && *to - *from > patience;
}

/// The place of a sequence number next to another place: numbers go around.
std::int64_t placeNextTo(std::int64_t place, std::uint32_t origin, std::uint32_t sequence) {
  const std::uint32_t there = origin + static_cast<std::uint32_t>(place);
  return place + static_cast<std::int32_t>(sequence - there);
}

}  // namespace

void TcpStreams::take(const TcpSegment& segment) {
  if (segment.payloadSize == 0 && !segment.isSyn && !places_.contains(segment.flow)) return;
  forgetSilent(segment.time);
  Stream& stream = streamOf(segment);
  const std::size_t before = stream.size();
  stream.last = segment.time;
  if (segment.isSyn) takeSyn(stream, segment);
  // A SYN takes a number of its own.
  const std::uint32_t sequence = segment.sequence + (segment.isSyn ? 1 : 0);
  std::int64_t place = placeNextTo(stream.next, stream.origin, sequence);
  if (stream.isStarted && isFarApart(place, stream.next)) {
    output_->note(CaptureTrouble::bytesMissing);
    restart(stream, sequence);
    place = 0;
  }
  if (!stream.hasEnd && (segment.isFin || segment.isReset)) {
    stream.hasEnd = true;
    stream.end = place + static_cast<std::int64_t>(segment.payloadSize);
  }
  if (segment.payloadSize != 0) takeBytes(stream, segment, place);
  if (segment.isReset) passGaps(stream);
  endAtItsPlace(stream, segment.time);
  size_ += stream.size() - before;
  while (streams_.size() > 1 && (streams_.size() > kMaxStreams || size_ > kMaxStreamBytes)) {
    output_->note(CaptureTrouble::streamsDropped);
    forgetOldest();
  }
}

void TcpStreams::flush() {
  while (!streams_.empty()) forgetOldest();
}

TcpStreams::Stream& TcpStreams::streamOf(const TcpSegment& segment) {
  const auto found = places_.find(segment.flow);
  if (found != places_.end()) {
    streams_.splice(streams_.end(), streams_, found->second);
    return *found->second;
  }
  Stream& stream = streams_.emplace_back(segment.flow, *output_);
  places_[segment.flow] = std::prev(streams_.end());
  stream.origin = segment.sequence;
  size_ += stream.size();
  return stream;
}

/// A SYN begins a stream, unless it comes again or after what it should be in front of.
void TcpStreams::takeSyn(Stream& stream, const TcpSegment& segment) {
  const std::int64_t first = placeNextTo(stream.next, stream.origin, segment.sequence + 1);
  if (stream.isStarted) {
    if (first <= stream.begin && !isFarApart(first, stream.begin)) return;
    restart(stream, segment.sequence + 1);
  } else if (!stream.pending.empty() && first <= stream.pending.begin() &&
             !isFarApart(first, stream.pending.begin())) {
    stream.begin = stream.next = first;
  } else {
    restart(stream, segment.sequence + 1);
  }
  stream.isStarted = true;
  takePending(stream);
}

/// @param place of the segment's first byte
void TcpStreams::takeBytes(Stream& stream, const TcpSegment& segment, std::int64_t place) {
  if (!stream.isStarted && StreamContent::isBeginning(segment.payload)) {
    stream.isStarted = true;
    stream.begin = stream.next = place;
  }
  const std::int64_t end = place + static_cast<std::int64_t>(segment.payloadSize);
  if (stream.isStarted && end <= stream.begin) return takeEarlier(stream, segment, place);
  if (stream.isStarted && place <= stream.next) return takeJoining(stream, segment, place);
  if (stream.pending.empty()) stream.pendingSince = segment.time;
  stream.pending.add(place, segment.payload, segment.time);
  if (stream.pending.size() > kMaxPendingBytes || stream.pending.count() > kMaxPendingPieces ||
      isLongerThan(stream.pendingSince, segment.time, kGapPatience)) {
    passGap(stream);
  }
}

/// A segment that joins what was taken, in part or as a whole.
void TcpStreams::takeJoining(Stream& stream, const TcpSegment& segment, std::int64_t place) {
  const auto known = static_cast<std::size_t>(stream.next - place);
  if (known < segment.payload.size() && stream.pending.empty()) {
    takeNext(stream, segment.payload.substr(known), segment.time);
  } else if (known < segment.payload.size()) {
    stream.pending.add(stream.next, segment.payload.substr(known), segment.time);
    takePending(stream);
  }
  const std::int64_t end = place + static_cast<std::int64_t>(segment.payloadSize);
  if (segment.payload.size() < segment.payloadSize && stream.next < end) takeCut(stream, end, segment.time);
  takePending(stream);
}

/// Of a stream whose beginning was not captured, an earlier part may come behind a later one. What is whole in it is
/// taken by itself.
void TcpStreams::takeEarlier(Stream& stream, const TcpSegment& segment, std::int64_t place) {
  if (segment.payload.size() < segment.payloadSize || !StreamContent::isBeginning(segment.payload)) return;
  stream.begin = place;
  StreamContent(stream.flow, *output_).take(segment.payload, segment.time);
}

void TcpStreams::takeNext(Stream& stream, std::string_view bytes, CaptureTime time) {
  stream.content.take(bytes, time);
  stream.next += static_cast<std::int64_t>(bytes.size());
}

/// The rest of a segment of which the capture keeps the front alone.
void TcpStreams::takeCut(Stream& stream, std::int64_t end, CaptureTime time) {
  output_->note(CaptureTrouble::bytesMissing);
  stream.content.breakOff(time);
  stream.next = end;
}

void TcpStreams::takePending(Stream& stream) {
  while (!stream.pending.empty() && stream.pending.begin() <= stream.next) {
    const auto known = static_cast<std::size_t>(stream.next - stream.pending.begin());
    const Pieces::Piece piece = stream.pending.takeFirst();
    if (known < piece.bytes.size()) {
      takeNext(stream, std::string_view(piece.bytes).substr(known), piece.time);
    }
    stream.pendingSince = stream.last;  // of what may still be missing
  }
}

/// Goes on behind the bytes that are missing.
void TcpStreams::passGap(Stream& stream) {
  if (stream.isStarted) {
    output_->note(CaptureTrouble::bytesMissing);
    stream.content.breakOff(stream.last);
  } else {
    stream.begin = stream.pending.begin();
  }
  stream.isStarted = true;
  stream.next = stream.pending.begin();
  takePending(stream);
}

void TcpStreams::passGaps(Stream& stream) {
  while (!stream.pending.empty()) passGap(stream);
}

void TcpStreams::endAtItsPlace(Stream& stream, CaptureTime time) {
  if (!stream.hasEnd || !stream.isStarted || stream.next < stream.end) return;
  stream.content.breakOff(time);
}

/// Begins anew where another connection has the same addresses and ports.
void TcpStreams::restart(Stream& stream, std::uint32_t origin) {
  passGaps(stream);
  stream.content.breakOff(stream.last);
  stream.content = StreamContent(stream.flow, *output_);
  stream.origin = origin;
  stream.begin = stream.next = stream.end = 0;
  stream.isStarted = stream.hasEnd = false;
}

void TcpStreams::forgetOldest() {
  Stream& oldest = streams_.front();
  size_ -= oldest.size();
  passGaps(oldest);
  oldest.content.breakOff(oldest.last);
  places_.erase(oldest.flow);
  streams_.pop_front();
}

void TcpStreams::forgetSilent(CaptureTime now) {
  while (!streams_.empty() && isLongerThan(streams_.front().last, now, kStreamPatience)) forgetOldest();
}

}  // namespace tool
