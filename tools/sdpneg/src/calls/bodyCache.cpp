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
  left_ = budgetOf(call);
  isSpent_ = false;
}

bool BodyCache::spend(std::size_t bytes) {
  isSpent_ = isSpent_ || bytes > left_;
  left_ -= std::min(bytes, left_);
  return !isSpent_;
}

const sdp::Document* BodyCache::of(std::size_t message) {
  if (const Slot* const slot = find(message); slot != nullptr) return &slot->body;
  return spend(call_->messages[message].sdpSize + 1) ? read(message) : nullptr;
}

const sdp::Document* BodyCache::ofAny(std::size_t message) {
  const Slot* const slot = find(message);
  return slot != nullptr ? &slot->body : read(message);
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

const sdp::Document* BodyCache::read(std::size_t message) {
  Slot& slot = *std::ranges::min_element(slots_, {}, &Slot::used);
  slot.text = {};
  const std::string_view text = call_->messages[message].sdp();
  if (slot.body.read(text)) return nullptr;
  slot.text = text;
  slot.message = message;
  slot.used = ++clock_;
  return &slot.body;
}

}  // namespace tool
