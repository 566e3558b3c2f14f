#ifndef SDP_MODIFIERS_CHANGES_H
#define SDP_MODIFIERS_CHANGES_H

#include <cstddef>
#include <string_view>

#include "text/sdpText.h"

// Changes that are all known before the first of them is made.

namespace sdpneg {

/// Changes of a text in their order, each behind the one before. There is room for as many as a usual text has.
class PlannedChanges {
 public:
  static constexpr std::size_t kMost = 256;

  /// @param inserted stays where it is until the changes are made, not in the text
  void add(Span span, std::string_view inserted) {
    if (count_ < kMost) changes_[count_] = {span, inserted.data(), inserted.size()};
    ++count_;
    taken_ += takes({span, inserted});
  }

  /// Whether there are no more than there is room for.
  bool areHeld() const { return count_ <= kMost; }
  /// Whether the text has room for each of them, in whatever order they are made.
  bool fitInto(const SdpText& text) const { return taken_ <= text.room(); }

  /// Makes them in one pass. They are held and fit.
  void makeIn(SdpText& text) const {
    SdpText::Pass pass(text);
    for (std::size_t i = 0; i < count_; ++i) {
      pass.replace(changes_[i].span, {changes_[i].inserted, changes_[i].size});
    }
    pass.finish();
  }

 private:
  /// Without a value of its own until it gets one.
  struct Held {
    Span span;
    const char* inserted;
    std::size_t size;
  };

  std::size_t count_ = 0;
  std::size_t taken_ = 0;
  Held changes_[kMost];
};

}  // namespace sdpneg

#endif
