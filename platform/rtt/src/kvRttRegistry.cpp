#include "kvRttRegistry.h"

#include <algorithm>
#include <bit>
#include <cstring>

// The components that trace, their flags, and which of these are on.

namespace kvrtt {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Takes the part up to a separator off the front of a text.
std::string_view takeUntil(std::string_view& text, char separator) {
  const auto end = std::min(text.find(separator), text.size());
  const auto part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return trimmed(part);
}

bool isSingleBit(int value) { return value > 0 && std::has_single_bit(static_cast<unsigned>(value)); }

Flag* findFlag(Component& component, std::string_view name) {
  const auto end = component.flags.begin() + component.flagCount;
  const auto found =
      std::find_if(component.flags.begin(), end, [&](const Flag& flag) { return flag.name == name; });
  return found == end ? nullptr : &*found;
}

bool isBitDeclared(const Component& component, unsigned bit) {
  const auto end = component.flags.begin() + component.flagCount;
  return std::any_of(component.flags.begin(), end, [&](const Flag& flag) { return flag.bit == bit; });
}

void switchBit(Component& component, unsigned bit, bool on) {
  if (on) {
    component.switchedOn.fetch_or(bit, std::memory_order_relaxed);
  } else {
    component.switchedOn.fetch_and(~bit, std::memory_order_relaxed);
  }
}

}  // namespace

constinit Registry registry;

bool Name::isUsable(std::string_view text) {
  return !text.empty() && text.size() <= kvRttMaxNameLength &&
         text.find_first_of(" \t\r\n=,;") == std::string_view::npos;
}

void Name::set(std::string_view text) { text_[text.copy(text_.data(), text_.size() - 1)] = '\0'; }

std::string_view nameView(const char* text) {
  return text == nullptr ? std::string_view() : std::string_view(text, strnlen(text, kvRttMaxNameLength + 1));
}

bool settingNames(std::string_view setting, std::string_view component, std::string_view flag) {
  while (!setting.empty()) {
    auto entry = takeUntil(setting, ';');
    if (takeUntil(entry, '=') != component) continue;
    while (!entry.empty()) {
      if (takeUntil(entry, ',') == flag) return true;
    }
  }
  return false;
}

Component* Registry::find(std::string_view name) {
  const auto end = components_.begin() + count_.load(std::memory_order_relaxed);
  const auto found = std::find_if(components_.begin(), end,
                                  [&](const Component& component) { return component.name == name; });
  return found == end ? nullptr : &*found;
}

int Registry::addComponent(std::string_view name, int& handle) {
  if (!Name::isUsable(name)) return kvRttBadName;
  const std::lock_guard lock(change_);
  if (const Component* known = find(name)) {
    handle = static_cast<int>(known - components_.data()) + 1;
    return kvRttSuccess;
  }
  const int next = count_.load(std::memory_order_relaxed);
  if (next == kvRttMaxComponents) return kvRttComponentsFull;
  components_[static_cast<std::size_t>(next)].name.set(name);
  count_.store(next + 1, std::memory_order_release);  // the name stands before anyone may read it
  handle = next + 1;
  return kvRttSuccess;
}

int Registry::addFlag(std::string_view component, int value, std::string_view name, bool on) {
  if (!Name::isUsable(name)) return kvRttBadName;
  if (!isSingleBit(value)) return kvRttBadFlag;
  const auto bit = static_cast<unsigned>(value);
  const std::lock_guard lock(change_);
  Component* owner = find(component);
  if (owner == nullptr) return kvRttUnknownComponent;
  if (const Flag* known = findFlag(*owner, name)) return known->bit == bit ? kvRttSuccess : kvRttFlagTaken;
  if (isBitDeclared(*owner, bit)) return kvRttFlagTaken;
  if (owner->flagCount == owner->flags.size()) return kvRttFlagsFull;
  Flag& flag = owner->flags[owner->flagCount++];
  flag.bit = bit;
  flag.name.set(name);
  switchBit(*owner, bit, on);
  return kvRttSuccess;
}

int Registry::switchFlag(std::string_view component, std::string_view name, bool on) {
  const std::lock_guard lock(change_);
  Component* owner = find(component);
  if (owner == nullptr) return kvRttUnknownComponent;
  const Flag* flag = findFlag(*owner, name);
  if (flag == nullptr) return kvRttUnknownFlag;
  switchBit(*owner, flag->bit, on);
  return kvRttSuccess;
}

bool Registry::isOn(int handle, int flag) const {
  if (handle < 1 || handle > kvRttMaxComponents) return false;
  const Component& component = components_[static_cast<std::size_t>(handle) - 1];
  const auto on = component.switchedOn.load(std::memory_order_relaxed);
  return (on & static_cast<unsigned>(flag)) != 0 && isSingleBit(flag);
}

const char* Registry::componentName(int handle) const {
  if (handle < 1 || handle > count_.load(std::memory_order_acquire)) return nullptr;
  return components_[static_cast<std::size_t>(handle) - 1].name.text();
}

}  // namespace kvrtt
