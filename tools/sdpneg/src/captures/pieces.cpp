#include "captures/pieces.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tool {
namespace {

std::int64_t endOf(std::int64_t place, std::string_view bytes) {
  return place + static_cast<std::int64_t>(bytes.size());
}

}  // namespace

void Pieces::add(std::int64_t place, std::string_view bytes, CaptureTime time) {
  const std::int64_t end = endOf(place, bytes);
  std::int64_t from = place;
  auto next = pieces_.upper_bound(place);
  if (next != pieces_.begin()) {
    const auto& before = *std::prev(next);
    from = std::max(from, endOf(before.first, before.second.bytes));
  }
  while (from < end) {
    const std::int64_t to = next == pieces_.end() ? end : std::min(end, next->first);
    if (from < to) {
      const std::string_view missing =
          bytes.substr(static_cast<std::size_t>(from - place), static_cast<std::size_t>(to - from));
      pieces_.emplace_hint(next, from, Piece{std::string(missing), time});
      size_ += missing.size();
    }
    if (next == pieces_.end()) break;
    from = std::max(from, endOf(next->first, next->second.bytes));
    ++next;
  }
}

Pieces::Piece Pieces::takeFirst() {
  Piece first = std::move(pieces_.begin()->second);
  size_ -= first.bytes.size();
  pieces_.erase(pieces_.begin());
  return first;
}

std::string Pieces::joined(std::int64_t place) const {
  std::string bytes;
  for (auto piece = pieces_.find(place); piece != pieces_.end() && piece->first == place; ++piece) {
    bytes += piece->second.bytes;
    place = endOf(place, piece->second.bytes);
  }
  return bytes;
}

void Pieces::clear() {
  pieces_.clear();
  size_ = 0;
}

}  // namespace tool
