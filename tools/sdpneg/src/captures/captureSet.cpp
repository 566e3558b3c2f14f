#include "captures/captureSet.h"

#include <algorithm>

namespace tool {

CaptureSet::CaptureSet(const std::vector<Input>& inputs, const CaptureOptions& options, MessageSink sink)
    : sink_(std::move(sink)) {
  const bool isAlone = inputs.size() == 1;
  for (const Input& input : inputs) {
    parts_.push_back(std::make_unique<Part>());
    Part& part = *parts_.back();
    part.name = input.name;
    part.output = std::make_unique<CaptureOutput>([this, &part, isAlone](const CapturedMessage& message) {
      if (isAlone) {
        deliver(message);
      } else {
        hold(part, message);
      }
    });
    part.capture = std::make_unique<Capture>(input, options, *part.output);
  }
}

CaptureSet::~CaptureSet() = default;

void CaptureSet::deliver(CapturedMessage message) {
  message.number = ++messages_;
  sink_(message);
}

/// A message whose time is not known, or goes back, counts as sent with the one in front of it.
void CaptureSet::hold(Part& part, const CapturedMessage& message) {
  Held held{message, std::string(message.text)};
  part.held.push_back(std::move(held));
}

void CaptureSet::deliverFirst() {
  Part* first = nullptr;
  for (const std::unique_ptr<Part>& part : parts_) {
    if (part->held.empty()) continue;
    part->time = std::max(part->time, part->held.front().message.time.value_or(part->time));
    if (first == nullptr || part->time < first->time) first = part.get();
  }
  if (first == nullptr) return;
  Held& held = first->held.front();
  held.message.text = held.text;
  deliver(held.message);
  first->held.pop_front();
}

bool CaptureSet::step() {
  bool isMore = false;
  bool isWaiting = false;
  for (const std::unique_ptr<Part>& part : parts_) {
    if (!part->isDone && part->held.empty()) {
      part->isDone = !part->capture->step();
      isWaiting = isWaiting || (!part->isDone && part->held.empty());
    }
    isMore = isMore || !part->isDone || !part->held.empty();
  }
  if (!isWaiting) deliverFirst();
  return isMore;
}

void CaptureSet::finish() {
  for (const std::unique_ptr<Part>& part : parts_) {
    part->capture->finish();
    part->isDone = true;
  }
  while (std::ranges::any_of(parts_, [](const std::unique_ptr<Part>& part) { return !part->held.empty(); }))
    deliverFirst();
}

std::size_t CaptureSet::position() const {
  std::size_t position = 0;
  for (const std::unique_ptr<Part>& part : parts_) position += part->capture->position();
  return position;
}

std::size_t CaptureSet::count(CaptureTrouble trouble) const {
  std::size_t count = 0;
  for (const std::unique_ptr<Part>& part : parts_) count += part->output->count(trouble);
  return count;
}

std::vector<std::pair<std::string, Problem>> CaptureSet::problems() const {
  std::vector<std::pair<std::string, Problem>> problems;
  for (const std::unique_ptr<Part>& part : parts_) {
    if (const std::optional<Problem> problem = part->capture->problem())
      problems.emplace_back(part->name, *problem);
  }
  return problems;
}

}  // namespace tool
