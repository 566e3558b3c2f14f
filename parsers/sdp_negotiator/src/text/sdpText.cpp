#include "text/sdpText.h"

#include <algorithm>
#include <bitset>
#include <cstring>
#include <functional>

// Insertion, replacement and removal in a text of fixed capacity.

namespace sdpneg {

bool SdpText::holds(std::string_view text) const {
  const std::less<const char*> before;
  return !text.empty() && before(text.data(), text_ + capacity_) && before(text_, text.data() + text.size());
}

Edit SdpText::replace(Span span, std::string_view inserted) {
  if (!usable() || span.begin > span.end || span.end > length_) return Edit::noRoom;
  const std::size_t kept = length_ - (span.end - span.begin);
  if (inserted.size() > capacity_ - 1 - kept) return Edit::noRoom;
  if (holds(inserted)) return putAside(span, inserted);
  put(span, inserted);
  return Edit::done;
}

void SdpText::put(Span span, std::string_view inserted) {
  char* const place = text_ + span.begin;
  if (inserted.size() != span.end - span.begin) {
    std::memmove(place + inserted.size(), text_ + span.end, length_ - span.end + 1);
  }
  if (!inserted.empty()) std::memcpy(place, inserted.data(), inserted.size());
  length_ = length_ - (span.end - span.begin) + inserted.size();
}

void SdpText::moveDown(std::size_t to, std::size_t from, std::size_t count) {
  if (to != from && count != 0) std::memmove(text_ + to, text_ + from, count);
}

void SdpText::end(std::size_t length) {
  length_ = length;
  text_[length] = '\0';
}

// Makes the gap wide enough for `size` characters in front of what is left from `from` on, which there is room for. From
// the second time on it gets some more, so that what is left is not moved for every edit.
void SdpText::Pass::makeRoom(std::size_t size, std::size_t from) {
  constexpr std::size_t kMore = 512;
  const std::size_t gap = from + shift_ - kept_;
  if (size <= gap) return;
  const std::size_t room = text_.capacity_ - 1 - text_.length_ - shift_;
  const std::size_t wider = std::min(size - gap + (shift_ != 0 ? kMore : 0), room);
  char* const left = text_.text_ + from + shift_;
  std::memmove(left + wider, left, text_.length_ - from);
  shift_ += wider;
}

Edit SdpText::Pass::replace(Span span, std::string_view inserted) {
  if (!text_.usable() || span.begin < rest_ || span.begin > span.end || span.end > text_.length_) {
    return Edit::noRoom;
  }
  const std::size_t front = span.begin - rest_;
  const std::size_t left = text_.length_ - span.end;
  if (kept_ + front + inserted.size() + left >= text_.capacity_) return Edit::noRoom;
  text_.moveDown(kept_, rest_ + shift_, front);
  kept_ += front;
  makeRoom(inserted.size(), span.end);
  if (!inserted.empty()) std::memcpy(text_.text_ + kept_, inserted.data(), inserted.size());
  kept_ += inserted.size();
  rest_ = span.end;
  return Edit::done;
}

void SdpText::Pass::finish() {
  if (!hasBegun()) return;
  const std::size_t left = text_.length_ - rest_;
  text_.moveDown(kept_, rest_ + shift_, left);
  text_.end(kept_ + left);
  kept_ = rest_ = shift_ = 0;
}

// The inserted text would move or be overwritten under the edit, so it is taken aside first.
Edit SdpText::putAside(Span span, std::string_view inserted) {
  char aside[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (inserted.size() > sizeof aside) return Edit::noRoom;
  std::memcpy(aside, inserted.data(), inserted.size());
  put(span, {aside, inserted.size()});
  return Edit::done;
}

// A text in two pieces while lines go: what is kept so far, up to `kept`, and what is still to be looked at,
// from `rest` on. Each piece is moved once.
class SdpText::Removal {
 public:
  Removal(char* text, std::size_t length, std::span<const std::string_view> prefixes)
      : text_(text), length_(length), kept_(length), rest_(length) {
    for (const std::string_view prefix : prefixes) {
      for (std::size_t i = 1; i < prefix.size(); ++i) inPrefixes_.set(numberOf(prefix[i - 1], prefix[i]));
    }
  }

  // Removes the lines of prefixes[index]; none of the prefixes before it occurs when this begins.
  // Returns false when a matched line has no LF.
  bool run(std::span<const std::string_view> prefixes, std::size_t index) {
    while (true) {
      const std::size_t match = findPiece(remaining(), prefixes[index]);
      keep(match == npos ? length_ - rest_ : match);
      if (match == npos) return true;
      if (!dropLine(kept_)) return false;
      while (const std::size_t overlap = seamMatch(prefixes.first(index + 1))) {
        if (!dropLine(kept_ - overlap)) return false;
      }
    }
  }

  void finish() { keep(length_ - rest_); }
  std::size_t length() const { return kept_; }
  std::size_t removed() const { return removed_; }

  // Looks at the text from its start again, all of which is kept so far.
  void rewind() {
    length_ = kept_;
    kept_ = 0;
    rest_ = 0;
  }

 private:
  static constexpr std::size_t kNumbers = 4096;

  // A number of two characters in a row, which few others share.
  static std::size_t numberOf(char first, char second) {
    return (static_cast<unsigned char>(first) * 31U + static_cast<unsigned char>(second)) % kNumbers;
  }

  std::string_view remaining() const { return {text_ + rest_, length_ - rest_}; }

  void keep(std::size_t count) {
    if (kept_ != rest_) std::memmove(text_ + kept_, text_ + rest_, count);
    kept_ += count;
    rest_ += count;
  }

  // Looks at the last of what is kept again: a prefix may hold an LF itself, which ends the line then.
  void giveBack(std::size_t count) {
    kept_ -= count;
    rest_ -= count;
    if (kept_ != rest_) std::memmove(text_ + rest_, text_ + kept_, count);
  }

  // Drops what is kept from `from` on, and what remains, through the first LF in it.
  bool dropLine(std::size_t from) {
    giveBack(kept_ - from);
    const std::size_t lf = remaining().find('\n');
    if (lf == npos) return false;
    rest_ += lf + 1;
    ++removed_;
    return true;
  }

  // How many kept characters begin a match that goes on in the rest, for the first prefix that has one and
  // its first place; 0 when there is none.
  std::size_t seamMatch(std::span<const std::string_view> prefixes) const {
    if (kept_ == 0) return 0;
    const char last = text_[kept_ - 1];
    if (rest_ == length_ || !inPrefixes_.test(numberOf(last, text_[rest_]))) return 0;
    for (const std::string_view prefix : prefixes) {
      for (std::size_t overlap = std::min(prefix.size() - 1, kept_); overlap != 0; --overlap) {
        if (prefix[overlap - 1] != last) continue;
        const std::string_view kept(text_ + kept_ - overlap, overlap);
        if (startsWith(prefix, kept) && startsWith(remaining(), prefix.substr(overlap))) return overlap;
      }
    }
    return 0;
  }

  char* text_;
  std::size_t length_;
  std::size_t kept_;
  std::size_t rest_;
  std::size_t removed_ = 0;
  std::bitset<kNumbers> inPrefixes_;  ///< pairs of characters that stand in a prefix, as few do at a seam
};

std::size_t SdpText::removeLines(std::span<const std::string_view> prefixes) {
  if (!usable()) return 0;
  Removal removal(text_, length_, prefixes);
  for (std::size_t index = 0; index < prefixes.size(); ++index) {
    removal.rewind();
    if (!removal.run(prefixes, index)) break;
  }
  removal.finish();
  end(removal.length());
  return removal.removed();
}

}  // namespace sdpneg
