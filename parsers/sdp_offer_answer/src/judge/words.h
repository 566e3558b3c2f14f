#ifndef SDP_OFFER_ANSWER_JUDGE_WORDS_H
#define SDP_OFFER_ANSWER_JUDGE_WORDS_H

// Sets of words of a body. They are sorted, not hashed: peers choose words, and may choose those of one hash.

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace sdp::exchange {

class Words {
 public:
  Words() = default;
  /// Takes each of them once.
  explicit Words(std::vector<std::string_view> words) : words_(std::move(words)) {
    std::sort(words_.begin(), words_.end());
    words_.erase(std::unique(words_.begin(), words_.end()), words_.end());
  }

  bool has(std::string_view word) const { return std::binary_search(words_.begin(), words_.end(), word); }
  /// The place of a word that is there, in the order of `all`.
  std::size_t placeOf(std::string_view word) const {
    return static_cast<std::size_t>(std::lower_bound(words_.begin(), words_.end(), word) - words_.begin());
  }
  const std::vector<std::string_view>& all() const { return words_; }

 private:
  std::vector<std::string_view> words_;  ///< ascending, each once
};

}  // namespace sdp::exchange

#endif
