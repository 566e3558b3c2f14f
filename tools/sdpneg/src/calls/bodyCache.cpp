#include "calls/bodyCache.h"

#include <algorithm>

namespace tool {
namespace {

/// Bytes of bodies that are gone through for each one of the call, and beside these.
constexpr std::size_t kCostOfByte = 16;
constexpr std::size_t kCostOfCall = std::size_t{16} * 1024 * 1024;

std::size_t budgetOf(const Call& call) {
  std::size_t size = 0;
  for (const CallMessage& message : call.messages) size += message.text.size();
  return kCostOfCall + kCostOfByte * size;
}

}  // namespace

void BodyCache::begin(const Call& call) {
  call_ = &call;
  for (Slot& slot : slots_) slot.text = {};
  shapes_.makeRoom();
  shapesOfMessages_.assign(call.messages.size(), std::nullopt);
  shapesOfTexts_.clear();
  left_ = budgetOf(call);
  isSpent_ = false;
}

bool BodyCache::spend(std::size_t bytes) {
  isSpent_ = isSpent_ || bytes > left_;
  left_ -= std::min(bytes, left_);
  return !isSpent_;
}

const sdp::Document* BodyCache::of(std::size_t message) {
  Slot* const slot = slotOf(message);
  return slot == nullptr ? nullptr : read(*slot);
}

const sdp::Document* BodyCache::ofAny(std::size_t message) { return read(*slotOfAny(message)); }

bool BodyCache::passOver(std::size_t first, std::size_t second) {
  const bool hasFirst = slotOf(first) != nullptr;
  return slotOf(second) != nullptr && hasFirst;
}

void BodyCache::passOverAny(std::size_t first, std::size_t second) {
  slotOfAny(first);
  slotOfAny(second);
}

ShapeFacts& BodyCache::factsOf(std::size_t first, std::size_t second) {
  const BodyShapes::Shape shape = shapeOf(first);
  return shapes_.factsOf(shape, shapeOf(second));
}

BodyShapes::Shape BodyCache::shapeOf(std::size_t message) {
  std::optional<BodyShapes::Shape>& shape = shapesOfMessages_[message];
  if (!shape) shape = shapeOfText(call_->messages[message].sdp());
  return *shape;
}

BodyShapes::Shape BodyCache::shapeOfText(std::string_view text) {
  constexpr std::size_t kMostTexts = 8;
  const auto known =
      std::ranges::find(shapesOfTexts_, text, &std::pair<std::string_view, BodyShapes::Shape>::first);
  if (known != shapesOfTexts_.end()) return known->second;
  const BodyShapes::Shape shape = shapes_.of(text);
  if (shapesOfTexts_.size() == kMostTexts) shapesOfTexts_.erase(shapesOfTexts_.begin());
  shapesOfTexts_.emplace_back(text, shape);
  return shape;
}

BodyCache::Slot* BodyCache::find(std::size_t message) {
  const auto take = [&](Slot& slot) {
    slot.message = message;
    slot.used = ++clock_;
    return &slot;
  };
  for (Slot& slot : slots_) {
    if (!slot.text.empty() && slot.message == message) return take(slot);
  }
  const std::string_view text = call_->messages[message].sdp();
  for (Slot& slot : slots_) {
    if (!slot.text.empty() && slot.text == text) return take(slot);
  }
  return nullptr;
}

BodyCache::Slot* BodyCache::slotOf(std::size_t message) {
  if (Slot* const slot = find(message); slot != nullptr) return slot;
  return spend(call_->messages[message].sdpSize + 1) ? slotOfAny(message) : nullptr;
}

BodyCache::Slot* BodyCache::slotOfAny(std::size_t message) {
  if (Slot* const slot = find(message); slot != nullptr) return slot;
  Slot& slot = *std::ranges::min_element(slots_, {}, &Slot::used);
  slot.text = call_->messages[message].sdp();
  slot.isRead = false;
  slot.message = message;
  slot.used = ++clock_;
  return &slot;
}

const sdp::Document* BodyCache::read(Slot& slot) {
  if (!slot.isRead && slot.body.read(slot.text)) {
    slot.text = {};
    return nullptr;
  }
  slot.isRead = true;
  return &slot.body;
}

}  // namespace tool
