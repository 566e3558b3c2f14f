#ifndef SDP_TEXT_OCCURRENCES_H
#define SDP_TEXT_OCCURRENCES_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "text/find.h"
#include "text/search.h"

// Searches that go on where they stopped: however often they are asked, the text is gone over once.

namespace sdpneg {

/// Where a piece stands that is asked for from one offset after the other.
class NextPlace {
 public:
  /// @param text  must not change
  NextPlace(std::string_view text, const Sought& sought) : text_(text), sought_(sought) {}

  /// The first place at or behind an offset, which is not less than those that were asked for before.
  std::size_t from(std::size_t at) {
    if (!asked_ || (found_ != npos && found_ < at)) found_ = findSought(text_, sought_, at);
    asked_ = true;
    return found_;
  }

 private:
  std::string_view text_;
  Sought sought_;
  std::size_t found_ = npos;
  bool asked_ = false;
};

/// The same for letters in either case, in a time that does not grow with the piece: the algorithm of Knuth, Morris and
/// Pratt goes over the text once, whatever nearly matches in it.
class OccurrencesNoCase {
 public:
  OccurrencesNoCase(std::string_view text, std::string_view piece) : text_(text), piece_(piece) {
    if (!isLong()) findBorders();
  }

  /// The first place at or behind `begin`, which never falls from call to call.
  /// @return npos when there is none
  std::size_t from(std::size_t begin) {
    if (piece_.empty() || isLong()) return findNoCase(text_, piece_, begin);
    if (at_ < begin) {
      at_ = begin;
      matched_ = 0;
    }
    while (place_ == kUnknown || (place_ != npos && place_ < begin)) place_ = next();
    return place_;
  }

 private:
  /// Longer pieces have no table; they are compared place by place.
  static constexpr std::size_t kLongest = 255;
  static constexpr std::size_t kUnknown = npos - 1;

  bool isLong() const { return piece_.size() > kLongest; }
  char wanted(std::size_t at) const { return lower(piece_[at]); }

  /// How much of the piece matches when a character is put behind what matched before.
  std::size_t matchedWith(char c, std::size_t matched) const {
    while (matched != 0 && wanted(matched) != c) matched = borders_[matched - 1];
    return wanted(matched) == c ? matched + 1 : matched;
  }

  /// For each beginning of the piece the length of the longest one that it ends in, other than itself.
  void findBorders() {
    std::size_t matched = 0;
    for (std::size_t at = 0; at < piece_.size(); ++at) {
      if (at != 0) matched = matchedWith(wanted(at), matched);
      borders_[at] = static_cast<std::uint8_t>(matched);
    }
  }

  /// The first place of a character, in lower case where it is a letter, at or behind `at`; the text's end when there is none.
  std::size_t placeOf(char c, std::size_t at) const {
    using namespace blocks;
    const bool isLetter = c >= 'a' && c <= 'z';
    for (; at + kSize <= text_.size(); at += kSize) {
      const Block block = blocks::at(text_.data() + at);
      const unsigned int places = bitsOf(where(isLetter ? block | of(' ') : block, c));
      if (places != 0) return at + firstOf(places);
    }
    while (at < text_.size() && lower(text_[at]) != c) ++at;
    return at;
  }

  std::size_t next() {
    if (matched_ == piece_.size()) matched_ = borders_[matched_ - 1];
    const char first = wanted(0);
    while (at_ < text_.size()) {
      if (matched_ == 0) at_ = placeOf(first, at_);
      if (at_ == text_.size()) break;
      const char c = lower(text_[at_++]);
      matched_ = matchedWith(c, matched_);
      if (matched_ == piece_.size()) return at_ - matched_;
    }
    return npos;
  }

  std::string_view text_;
  std::string_view piece_;
  std::size_t place_ = kUnknown;
  std::size_t at_ = 0;       ///< behind what has been looked at
  std::size_t matched_ = 0;  ///< of the piece, in front of `at_`
  std::uint8_t borders_[kLongest];
};

}  // namespace sdpneg

#endif
