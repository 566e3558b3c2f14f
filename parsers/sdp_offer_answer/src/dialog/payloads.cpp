// Choosing payload numbers.

#include "payloads.h"

#include <algorithm>
#include <deque>

#include "bundles.h"
#include "codecs.h"
#include "parameters.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

/// The numbers that may be chosen, those that are meant for it first (RFC 3551, section 6; RFC 5761, section 4).
struct NumberRange {
  std::uint32_t first;
  std::uint32_t last;
};
constexpr NumberRange kRanges[] = {{96, 127}, {35, 63}};

/// A payload type without leading zeros: 096 and 96 are one number.
std::string_view plainNumber(std::string_view payload) {
  if (!readNumber(payload)) return payload;
  return payload.substr(std::min(payload.find_first_not_of('0'), payload.size() - 1));
}

/// Whether two formats are the same for a dialog: also where nobody knows what they are, and yet all is as it was.
/// @param areSame whether they are the same codec
bool isStill(const Codec& x, const Codec& y, bool areSame) {
  if (areSame) return true;
  return plainNumber(x.payload) == plainNumber(y.payload) && sdpneg::equalNoCase(x.name, y.name) &&
         x.clockRate == y.clockRate && x.channels == y.channels && x.parameters() == y.parameters();
}

/// What numbers stand or stood for.
class Meanings {
 public:
  /// @param wanted what is compared with it; must outlive this
  explicit Meanings(const CodecList& wanted) : sameness_(wanted, codecs_) {}
  Meanings(const Meanings&) = delete;  // it points into itself
  Meanings& operator=(const Meanings&) = delete;

  void read(const Section& section) {
    codecs_ = CodecList(section);
    for (const Codec& codec : codecs_) byNumber_.push_back({plainNumber(codec.payload), &codec});
    std::stable_sort(byNumber_.begin(), byNumber_.end(), IsLess());
  }

  const CodecList& codecs() const { return codecs_; }
  bool isStill(const Codec& wanted, const Codec& known) {
    return exchange::isStill(wanted, known, sameness_.areSame(wanted, known));
  }
  /// The first codec of a number that `willDo`, in whatever way it is written; null where there is none.
  template <typename WillDo>
  const Codec* find(std::string_view number, WillDo willDo) const {
    const auto [begin, end] =
        std::equal_range(byNumber_.begin(), byNumber_.end(), Entry{plainNumber(number), nullptr}, IsLess());
    const auto found = std::find_if(begin, end, [&](const Entry& entry) { return willDo(*entry.codec); });
    return found == end ? nullptr : found->codec;
  }
  /// Whether a number stands for something else than a format.
  bool hasOther(const Codec& wanted, std::string_view number) {
    return find(number, [&](const Codec& known) { return !isStill(wanted, known); }) != nullptr;
  }

 private:
  struct Entry {
    std::string_view number;
    const Codec* codec;
  };
  struct IsLess {
    bool operator()(const Entry& a, const Entry& b) const { return a.number < b.number; }
  };

  CodecList codecs_;
  std::vector<Entry> byNumber_;
  Sameness sameness_;
};

/// A section whose formats get numbers.
struct Sheet {
  explicit Sheet(const Section& of) : section(of.index()), wanted(of), numbers(wanted.size()) {}

  std::uint32_t section;
  CodecList wanted;
  Meanings remembered{wanted};
  Meanings current{wanted};
  Meanings peers{wanted};
  std::vector<std::string> numbers;                       ///< of what is wanted; empty while there is none
  std::map<std::string, std::size_t, std::less<>> taken;  ///< the codecs by their numbers

  void assign(std::size_t codec, std::string_view number) {
    numbers[codec] = number;
    taken.emplace(plainNumber(number), codec);
  }
  bool isTaken(std::string_view number) const { return taken.contains(plainNumber(number)); }
  /// What a number was given to; null where nothing has it.
  const Codec* holderOf(std::string_view number) const {
    const auto found = taken.find(plainNumber(number));
    return found == taken.end() ? nullptr : &wanted[found->second];
  }
};

class Numberer {
 public:
  Numberer(const Document& wanted, const Arrangement& places, const KnownPayloads& known) : bundles_(wanted) {
    for (std::size_t at = 0; at < places.size(); ++at) {
      if (places[at] == 0) continue;
      const Section section = wanted.section(places[at]);
      if (!section.isRtp() || section.isDisabled()) continue;
      const auto place = static_cast<std::uint32_t>(at + 1);
      Sheet& sheet = sheets_.emplace_back(section);
      const Section past = known.remembered.section(place);
      // Another media in a disabled place is another stream.
      if (!past.isReadable() || past.media() != section.media()) continue;
      sheet.remembered.read(past);
      read(sheet.current, known.local.section(place));
      read(sheet.peers, known.remote.section(place));
    }
  }

  void number() {
    for (Sheet& sheet : sheets_) keepNumbers(sheet);
    for (Sheet& sheet : sheets_) {
      for (std::size_t i = 0; i < sheet.wanted.size(); ++i) {
        const std::string_view written = sheet.wanted[i].payload;
        if (sheet.numbers[i].empty() && isFree(sheet, i, written, true)) sheet.assign(i, written);
      }
    }
    for (Sheet& sheet : sheets_) {
      for (std::size_t i = 0; i < sheet.wanted.size(); ++i) {
        if (!sheet.numbers[i].empty() || choose(sheet, i, true) || choose(sheet, i, false)) continue;
        leaveAsWritten(sheet);
        break;
      }
    }
  }

  void writeTo(std::vector<Renumbering>& result) const {
    for (const Sheet& sheet : sheets_) {
      Renumbering& numbers = result[sheet.section - 1];
      for (std::size_t i = 0; i < sheet.wanted.size(); ++i) {
        const std::string_view written = sheet.wanted[i].payload;
        if (sheet.numbers[i] != written) numbers.emplace(written, sheet.numbers[i]);
      }
    }
  }

 private:
  static void read(Meanings& meanings, const Section& section) {
    if (section.isRtp() && !section.isDisabled()) meanings.read(section);
  }

  /// Gives a format a number that stands for it.
  static bool keep(Sheet& sheet, std::size_t codec, Meanings& meanings) {
    const Codec& wanted = sheet.wanted[codec];
    const auto willDo = [&](const Codec& known) {
      return !sheet.isTaken(known.payload) && meanings.isStill(wanted, known) &&
             !sheet.remembered.hasOther(wanted, known.payload);
    };
    // As the description writes it, where that is the number.
    if (meanings.find(wanted.payload, willDo) != nullptr) {
      sheet.assign(codec, wanted.payload);
      return true;
    }
    for (const Codec& known : meanings.codecs()) {
      if (!readNumber(known.payload) || !willDo(known)) continue;
      sheet.assign(codec, plainNumber(known.payload));
      return true;
    }
    return false;
  }

  static void keepNumbers(Sheet& sheet) {
    for (std::size_t i = 0; i < sheet.wanted.size(); ++i) {
      // What nobody knows cannot be told from anything else.
      if (sheet.wanted[i].name.empty()) sheet.assign(i, sheet.wanted[i].payload);
    }
    for (Meanings* meanings : {&sheet.current, &sheet.remembered, &sheet.peers}) {
      for (std::size_t i = 0; i < sheet.wanted.size(); ++i) {
        if (sheet.numbers[i].empty()) keep(sheet, i, *meanings);
      }
    }
  }

  /// @param isNew nor may the number have stood for something else before
  bool isFree(Sheet& sheet, std::size_t codec, std::string_view number, bool isNew) const {
    if (sheet.isTaken(number)) return false;
    const Codec& wanted = sheet.wanted[codec];
    if (isNew && (sheet.remembered.hasOther(wanted, number) || sheet.peers.hasOther(wanted, number)))
      return false;
    // In a BUNDLE group a number stands for one codec in all sections (RFC 8843, section 9.1).
    for (const Sheet& other : sheets_) {
      const Codec* const present = &other == &sheet ? nullptr : other.holderOf(number);
      if (present == nullptr || !bundles_.areTogether(sheet.section, other.section)) continue;
      if (!isStill(wanted, *present, areSame(sheet.wanted, wanted, other.wanted, *present))) return false;
    }
    return true;
  }

  bool choose(Sheet& sheet, std::size_t codec, bool isNew) const {
    for (const NumberRange& range : kRanges) {
      for (std::uint32_t number = range.first; number <= range.last; ++number) {
        const std::string text = std::to_string(number);
        if (!isFree(sheet, codec, text, isNew)) continue;
        sheet.assign(codec, text);
        return true;
      }
    }
    return false;
  }

  /// There are more formats than numbers: those of the description are at least its own.
  static void leaveAsWritten(Sheet& sheet) {
    sheet.taken.clear();
    for (std::size_t i = 0; i < sheet.wanted.size(); ++i) sheet.assign(i, sheet.wanted[i].payload);
  }

  Bundles bundles_;
  std::deque<Sheet> sheets_;
};

}  // namespace

std::string_view renumbered(const Renumbering& numbers, std::string_view payload) {
  const auto found = numbers.find(payload);
  return found == numbers.end() ? payload : std::string_view(found->second);
}

std::vector<Renumbering> renumberingsOf(const Document& wanted, const Arrangement& places,
                                        const KnownPayloads& known) {
  std::vector<Renumbering> result(wanted.sectionCount());
  // The first offer is as the engine wants it.
  if (known.remembered.sectionCount() == 0) return result;
  Numberer numberer(wanted, places, known);
  numberer.number();
  numberer.writeTo(result);
  return result;
}

}  // namespace sdp::exchange
