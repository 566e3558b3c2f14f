#ifndef SDP_DOCUMENT_FIELDS_H
#define SDP_DOCUMENT_FIELDS_H

#include <cstddef>
#include <iterator>
#include <string_view>

// The fields of a value.

namespace sdp {

/// The fields of a text, which runs of blanks and tabs separate; blanks in front of the first and behind the last
/// belong to none. A range of std::string_view, which are views into that text and live as long as it does.
class Fields {
 public:
  /// Goes from field to field.
  class Iterator {
   public:
    /// @cond What every iterator has.
    using value_type = std::string_view;
    using difference_type = std::ptrdiff_t;

    Iterator() noexcept = default;
    explicit Iterator(std::string_view text) noexcept : rest_(text) { ++*this; }
    /// @endcond

    /// The field; empty behind the last.
    std::string_view operator*() const noexcept { return field_; }
    /// What stands behind the field, with the blanks there.
    std::string_view rest() const noexcept { return rest_; }

    /// @cond What every iterator has.
    Iterator& operator++() noexcept {
      field_ = takeField(rest_);
      return *this;
    }
    Iterator operator++(int) noexcept {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    bool operator==(std::default_sentinel_t) const noexcept { return field_.empty(); }
    bool operator==(const Iterator& other) const noexcept {
      return field_.data() == other.field_.data() && field_.size() == other.field_.size();
    }
    /// @endcond

   private:
    std::string_view rest_;
    std::string_view field_;
  };

  /// Takes the first field of a text away from it, with the blanks in front.
  /// @return the field; empty when there is none
  static std::string_view takeField(std::string_view& text) noexcept {
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end && isBlank(*at)) ++at;
    const char* const begin = at;
    while (at != end && !isBlank(*at)) ++at;
    text.remove_prefix(static_cast<std::size_t>(at - text.data()));
    return {begin, static_cast<std::size_t>(at - begin)};
  }
  /// Whether a character separates fields: a blank or a tab.
  static bool isBlank(char c) noexcept { return c == ' ' || c == '\t'; }

  Fields() noexcept = default;
  /// Of any text, for example of a value that an attribute has.
  explicit Fields(std::string_view text) noexcept : text_(text) {}
  /// The first field; equal to end() where there is none.
  Iterator begin() const noexcept { return Iterator(text_); }
  /// Behind the last field.
  static std::default_sentinel_t end() noexcept { return {}; }
  /// The nth field, from 0; empty when there are fewer. It is searched from the first on each time, so who wants many
  /// goes through them.
  std::string_view operator[](std::size_t n) const noexcept {
    Iterator field = begin();
    for (; n != 0 && field != end(); --n) ++field;
    return *field;
  }

 private:
  std::string_view text_;
};

}  // namespace sdp

#endif
