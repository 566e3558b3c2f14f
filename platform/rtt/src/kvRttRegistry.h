#ifndef KV_RTT_REGISTRY_H
#define KV_RTT_REGISTRY_H

#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <string_view>
#include <type_traits>

#include "kvRttLocal.h"

// The components that trace, their flags, and which of these are on.

namespace kvrtt {

/// A component's or flag's name; empty while unset.
class Name {
 public:
  static bool isUsable(std::string_view text);
  void set(std::string_view text);
  const char* text() const { return text_.data(); }
  bool operator==(std::string_view other) const { return std::string_view(text_.data()) == other; }

 private:
  std::array<char, kvRttMaxNameLength + 1> text_{};
};

/// A view over a caller's name that reads no further than a usable name may reach; null gives an empty
/// one.
std::string_view nameView(const char* text);

/// Whether a setting such as "SDP_NEGOTIATOR=INFO,ERROR;OTHER=DEBUG" names a component's flag.
bool settingNames(std::string_view setting, std::string_view component, std::string_view flag);

struct Flag {
  unsigned bit = 0;
  Name name;
};

struct Component {
  std::atomic<unsigned> switchedOn{0};
  Name name;
  std::array<Flag, kvRttMaxFlags> flags{};
  std::size_t flagCount = 0;
};

/// The components and their flags. Changes take a lock; the questions asked for each trace line do not.
class Registry {
 public:
  constexpr Registry() = default;

  int addComponent(std::string_view name, int& handle);
  int addFlag(std::string_view component, int value, std::string_view name, bool on);
  int switchFlag(std::string_view component, std::string_view name, bool on);

  bool isOn(int handle, int flag) const;
  /// Null for an unknown handle. Handles begin with 1, so that 0, which a variable holds before its
  /// initialiser has run, is nobody's.
  const char* componentName(int handle) const;

 private:
  Component* find(std::string_view name);

  std::array<Component, kvRttMaxComponents> components_{};
  std::atomic<int> count_{0};
  std::mutex change_;
};

// Usable before any initialiser has run and after every destructor.
static_assert(std::is_trivially_destructible_v<Registry>);
extern constinit Registry registry;

}  // namespace kvrtt

#endif
