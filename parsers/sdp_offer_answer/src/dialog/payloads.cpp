// Choosing payload numbers.

#include "payloads.h"

#include <algorithm>
#include <unordered_set>

#include "bundles.h"
#include "codecs.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

/// The numbers that may be chosen, those that are meant for it first (RFC 3551, section 6; RFC 5761, section 4).
struct NumberRange {
  std::uint32_t first;
  std::uint32_t last;
};
constexpr NumberRange kRanges[] = {{96, 127}, {35, 63}};

/// Whether two formats are the same for a dialog: also where nobody knows what they are, and yet all is as it was.
bool isStill(const CodecList& a, const Codec& x, const CodecList& b, const Codec& y) {
  if (areSame(a, x, b, y)) return true;
  return x.payload == y.payload && sdpneg::equalNoCase(x.name, y.name) && x.clockRate == y.clockRate &&
         x.channels == y.channels && x.parameters() == y.parameters();
}

/// A section whose formats get numbers.
struct Sheet {
  std::uint32_t section = 0;
  CodecList wanted;
  CodecList remembered;
  CodecList current;
  CodecList peers;
  std::vector<std::string> numbers;  ///< of what is wanted; empty while there is none
  std::unordered_set<std::string> taken;

  void assign(std::size_t codec, std::string_view number) {
    numbers[codec] = number;
    taken.insert(numbers[codec]);
  }
  bool isTaken(std::string_view number) const { return taken.contains(std::string(number)); }
  /// Whether a number stands for something else in a list.
  bool isOther(std::size_t codec, const CodecList& list, std::string_view number) const {
    const Codec* const present = list.find(number);
    return present != nullptr && !isStill(wanted, wanted[codec], list, *present);
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
      Sheet sheet;
      sheet.section = places[at];
      sheet.wanted = CodecList(section);
      const Section past = known.remembered.section(place);
      // Another media in a disabled place is another stream.
      if (past.isReadable() && past.media() == section.media()) {
        sheet.remembered = CodecList(past);
        sheet.current = listOf(known.local.section(place));
        sheet.peers = listOf(known.remote.section(place));
      }
      sheet.numbers.resize(sheet.wanted.size());
      sheets_.push_back(std::move(sheet));
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
  static CodecList listOf(const Section& section) {
    return section.isRtp() && !section.isDisabled() ? CodecList(section) : CodecList();
  }

  /// Gives a format a number that stands for it in a list.
  static bool keep(Sheet& sheet, std::size_t codec, const CodecList& list) {
    const Codec& wanted = sheet.wanted[codec];
    const Codec* const written = list.find(wanted.payload);
    const auto willDo = [&](const Codec& known) {
      return !sheet.isTaken(known.payload) && isStill(sheet.wanted, wanted, list, known) &&
             !sheet.isOther(codec, sheet.remembered, known.payload);
    };
    if (written != nullptr && willDo(*written)) {
      sheet.assign(codec, written->payload);
      return true;
    }
    for (const Codec& known : list) {
      if (!willDo(known)) continue;
      sheet.assign(codec, known.payload);
      return true;
    }
    return false;
  }

  static void keepNumbers(Sheet& sheet) {
    for (std::size_t i = 0; i < sheet.wanted.size(); ++i) {
      // What nobody knows cannot be told from anything else.
      if (sheet.wanted[i].name.empty()) sheet.assign(i, sheet.wanted[i].payload);
    }
    for (const CodecList* list : {&sheet.current, &sheet.remembered, &sheet.peers}) {
      for (std::size_t i = 0; i < sheet.wanted.size(); ++i) {
        if (sheet.numbers[i].empty()) keep(sheet, i, *list);
      }
    }
  }

  /// @param isNew nor may the number have stood for something else before
  bool isFree(const Sheet& sheet, std::size_t codec, std::string_view number, bool isNew) const {
    if (sheet.isTaken(number)) return false;
    if (isNew &&
        (sheet.isOther(codec, sheet.remembered, number) || sheet.isOther(codec, sheet.peers, number))) {
      return false;
    }
    // In a BUNDLE group a number stands for one codec in all sections (RFC 8843, section 9.1).
    for (const Sheet& other : sheets_) {
      if (&other == &sheet || !other.isTaken(number) || !bundles_.areTogether(sheet.section, other.section))
        continue;
      const auto at = std::find(other.numbers.begin(), other.numbers.end(), number) - other.numbers.begin();
      const Codec& present = other.wanted[static_cast<std::size_t>(at)];
      if (!isStill(sheet.wanted, sheet.wanted[codec], other.wanted, present)) return false;
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
    for (std::size_t i = 0; i < sheet.wanted.size(); ++i) sheet.assign(i, sheet.wanted[i].payload);
  }

  Bundles bundles_;
  std::vector<Sheet> sheets_;
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
