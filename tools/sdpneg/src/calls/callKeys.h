#ifndef SDPNEG_CALL_KEYS_H
#define SDPNEG_CALL_KEYS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>
#include <vector>

// Tables of one call. Calls have few messages as a rule, and capture files choose what the keys are.

namespace tool {

/// Numbers keys in the order in which they come. A few are compared one by one; more are kept in order.
template <typename Key, typename Order = std::less<Key>>
class NumberedKeys {
 public:
  std::size_t size() const { return keys_.size(); }
  const Key& operator[](std::size_t number) const { return keys_[number]; }
  const std::vector<Key>& keys() const { return keys_; }

  /// The number of a key; size() where it has none.
  std::size_t find(const Key& key) const {
    if (numbers_.empty()) {
      std::size_t number = 0;
      while (number < keys_.size() && !(keys_[number] == key)) ++number;
      return number;
    }
    const auto found = numbers_.find(key);
    return found == numbers_.end() ? keys_.size() : found->second;
  }

  /// The number of a key, which gets one where it has none.
  std::size_t add(const Key& key) {
    const std::size_t number = find(key);
    if (number != keys_.size()) return number;
    keys_.push_back(key);
    if (!numbers_.empty()) {
      numbers_.emplace(key, number);
    } else if (keys_.size() > kFew) {
      for (std::size_t i = 0; i < keys_.size(); ++i) numbers_.emplace(keys_[i], i);
    }
    return number;
  }

 private:
  static constexpr std::size_t kFew = 12;

  std::vector<Key> keys_;
  std::map<Key, std::size_t, Order> numbers_;  ///< empty while there are few
};

/// Numbers keys of two words in the order in which they come. Its hashes are other ones in each run.
class WordKeys {
 public:
  struct Key {
    std::uint64_t first = 0;
    std::uint64_t second = 0;

    bool operator==(const Key&) const = default;
  };

  /// @param expected keys, for which it has room
  explicit WordKeys(std::size_t expected);

  std::size_t size() const { return keys_.size(); }
  /// The number of a key; size() where it has none.
  std::size_t find(const Key& key) const { return numberAt(placeOf(key)); }
  /// The number of a key, which gets one where it has none.
  std::size_t add(const Key& key);

 private:
  std::size_t placeOf(const Key& key) const;
  std::size_t numberAt(std::size_t place) const {
    return places_[place] == 0 ? keys_.size() : places_[place] - 1;
  }
  void grow();

  std::vector<Key> keys_;
  std::vector<std::uint32_t> places_;  ///< numbers, from 1; 0 where there is none. As many as a power of two.
};

}  // namespace tool

#endif
