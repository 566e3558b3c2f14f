#include "captures/fragments.h"

#include <iterator>
#include <string>
#include <utility>

namespace tool {
namespace {

constexpr std::size_t kMaxPacket = 65535;

}  // namespace

std::size_t Fragments::KeyHash::operator()(const Key& key) const {
  Flow flow = key.flow;
  flow.source.port = static_cast<std::uint16_t>(key.id ^ key.protocol);
  flow.destination.port = static_cast<std::uint16_t>(key.id >> 16U);
  return hashOf(flow);
}

void Fragments::take(const IpPacket& packet, CaptureTime time) {
  giveUpOld(time);
  const FragmentPlace& fragment = *packet.fragment;
  const std::size_t end = fragment.offset + packet.payloadSize;
  if (packet.payload.empty() || end > kMaxPacket) {
    output_->note(CaptureTrouble::badPacket);
    return;
  }
  const Place place = placeOf(packet, time);
  Waiting& waiting = *place;
  const std::size_t before = waiting.pieces.memory();
  waiting.pieces.add(static_cast<std::int64_t>(fragment.offset), packet.payload, time);
  size_ += waiting.pieces.memory() - before;
  waiting.last = time;
  if (fragment.isLast && waiting.end == 0) waiting.end = end;
  if (waiting.end != 0 && waiting.pieces.size() >= waiting.end) {
    finish(place);
  } else if (waiting.pieces.count() > kMaxFragmentsOfPacket) {
    giveUp(place, CaptureTrouble::fragmentsDropped);
  }
  while (waiting_.size() > kMaxFragmentedPackets || size_ > kMaxFragmentBytes) {
    giveUp(waiting_.begin(), CaptureTrouble::fragmentsDropped);
  }
}

void Fragments::flush() {
  while (!waiting_.empty()) giveUp(waiting_.begin(), CaptureTrouble::fragmentsMissing);
}

Fragments::Place Fragments::placeOf(const IpPacket& packet, CaptureTime time) {
  const Key key{{{packet.source, 0}, {packet.destination, 0}}, packet.fragment->id, packet.protocol};
  const auto found = places_.find(key);
  if (found != places_.end()) return found->second;
  waiting_.push_back({key, time, time, {}, 0});
  return places_[key] = std::prev(waiting_.end());
}

void Fragments::giveUp(Place place, CaptureTrouble trouble) {
  output_->note(trouble);
  finish(place);
}

void Fragments::giveUpOld(CaptureTime now) {
  while (now && !waiting_.empty() && waiting_.front().since &&
         *now - *waiting_.front().since > kFragmentPatience) {
    giveUp(waiting_.begin(), CaptureTrouble::fragmentsMissing);
  }
}

/// Hands on what joins the packet's front.
void Fragments::finish(Place place) {
  const Waiting done = std::move(*place);
  places_.erase(done.key);
  waiting_.erase(place);
  size_ -= done.pieces.memory();
  const std::string bytes = done.pieces.joined(0);
  if (bytes.empty()) return;
  IpPacket packet;
  packet.source = done.key.flow.source.address;
  packet.destination = done.key.flow.destination.address;
  packet.protocol = done.key.protocol;
  packet.payloadSize = done.end == 0 ? bytes.size() + 1 : done.end;
  packet.payload = std::string_view(bytes).substr(0, packet.payloadSize);
  done_(packet, done.last);
}

}  // namespace tool
