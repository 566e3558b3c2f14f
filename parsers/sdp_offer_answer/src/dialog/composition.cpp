// Composing offers of descriptions.

#include "composition.h"

#include <set>

#include "plainText.h"
#include "renumbering.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

constexpr std::string_view kMid = "a=mid:";
constexpr std::string_view kGroup = "a=group:";

void addLine(std::string& text, std::string_view line) { text.append(line).append("\r\n"); }

/// The mids of an offer.
class Mids {
 public:
  Mids(const Document& wanted, const Arrangement& places, const KnownPayloads& known) {
    for (const Document* body : {&known.local, &known.remote}) {
      for (const Section& section : body->sections()) {
        if (!section.mid().empty()) used_.emplace(section.mid());
      }
    }
    of_.resize(std::size_t{wanted.sectionCount()} + 1);
    if (known.local.sectionCount() == 0) {  // all is new
      for (const Section& section : wanted.sections()) set(section, section.mid());
      return;
    }
    for (const Section& section : wanted.sections()) {
      if (!section.mid().empty()) old_.emplace(section.mid(), std::string());
    }
    // Those that go on first, so that what is new takes none of theirs.
    for (std::size_t at = 0; at < places.size(); ++at) {
      const Section place = known.local.section(static_cast<std::uint32_t>(at + 1));
      const Section section = wanted.section(places[at]);
      // Where the description tells none, the peer knows the section by its mid all the same.
      if (places[at] == 0 || !goesOn(section, place, known)) continue;
      set(section, place.mid());
    }
    for (const std::uint32_t index : places) {
      const Section section = wanted.section(index);
      if (section.mid().empty() || !of_[index].empty()) continue;
      set(section, used_.contains(section.mid()) ? fresh() : section.mid());
    }
  }

  std::string_view of(std::uint32_t section) const { return of_[section]; }

  /// A group line with the mids of the offer; empty when no member is left.
  std::string group(std::string_view line) const {
    std::string_view rest = line.substr(kGroup.size());
    std::string text(kGroup);
    text.append(Fields::takeField(rest));
    bool isEmpty = Fields(rest).begin() != Fields::end();
    for (const std::string_view mid : Fields(rest)) {
      const auto found = old_.find(mid);
      const std::string_view now = found == old_.end() ? mid : std::string_view(found->second);
      if (now.empty()) continue;
      text.append(" ").append(now);
      isEmpty = false;
    }
    return isEmpty ? std::string() : text;
  }

 private:
  /// A section goes on where its medium was; what takes a disabled place is another one, unless it
  /// is of its media and has its mid.
  static bool goesOn(const Section& section, const Section& place, const KnownPayloads& known) {
    if (plainOrEmpty(place.mid()).empty()) return false;
    const Section theirs = known.remote.section(place.index());
    const bool isDisabled = place.isDisabled() || theirs.isDisabled() || !theirs.isReadable();
    return !isDisabled || (section.mid() == place.mid() && section.media() == place.media());
  }

  void set(const Section& section, std::string_view mid) {
    of_[section.index()] = mid;
    used_.emplace(mid);
    if (!section.mid().empty()) old_[section.mid()] = mid;
  }

  std::string fresh() {
    while (used_.contains(std::to_string(next_))) ++next_;
    return std::to_string(next_);
  }

  std::set<std::string, std::less<>> used_;
  std::vector<std::string> of_;  ///< by section of the description
  std::map<std::string_view, std::string> old_;
  std::uint32_t next_ = 0;
};

class Composer {
 public:
  Composer(const Document& wanted, const Arrangement& places, const KnownPayloads& known)
      : wanted_(wanted),
        places_(places),
        known_(known),
        mids_(wanted, places, known),
        numbers_(renumberingsOf(wanted, places, known)) {}

  std::string compose() {
    for (const Line& line : wanted_.session().lines()) {
      if (line.content.empty()) continue;
      const bool isGroup = sdpneg::startsWith(line.content, kGroup);
      const std::string group = isGroup ? mids_.group(line.content) : std::string();
      if (!isGroup || !group.empty()) addLine(text_, isGroup ? group : line.content);
    }
    for (std::size_t at = 0; at < places_.size(); ++at) {
      if (places_[at] != 0) {
        addSection(wanted_.section(places_[at]));
      } else {
        addDisabled(known_.local.section(static_cast<std::uint32_t>(at + 1)));
      }
    }
    return std::move(text_);
  }

 private:
  void addSection(const Section& section) {
    const RenumberedSection writer(section, numbers_[section.index() - 1]);
    const std::string_view mid = mids_.of(section.index());
    bool hasMid = mid.empty();
    for (const Line& line : section.lines()) {
      if (line.content.empty()) continue;
      if (!sdpneg::startsWith(line.content, kMid) || mid.empty()) {
        addLine(text_, writer.written(line.content));
        continue;
      }
      if (!hasMid) addMid(mid);
      hasMid = true;
    }
    text_.append(writer.addedMaps());
    if (!hasMid) addMid(mid);
  }

  static bool areLinesPlain(const Section& section) {
    for (const Line& line : section.lines()) {
      if (!isPlain(line.content)) return false;
    }
    return true;
  }

  void addDisabled(const Section& section) {
    if (section.isDisabled() && areLinesPlain(section)) {
      for (const Line& line : section.lines()) {
        if (!line.content.empty()) addLine(text_, line.content);
      }
      return;
    }
    // What a finished body took over of the peer's may be no text of one line.
    const auto plainOr = [](std::string_view text, std::string_view otherwise) {
      return isPlain(text) ? text : otherwise;
    };
    text_.append("m=").append(plainOr(section.media(), "audio")).append(" 0 ");
    text_.append(plainOr(section.transport(), "RTP/AVP")).append(" ");
    addLine(text_, plainOr(section.formats().begin()->format, "0"));
    if (const std::string_view mid = plainOrEmpty(section.mid()); !mid.empty()) addMid(mid);
  }

  void addMid(std::string_view mid) { addLine(text_, std::string(kMid).append(mid)); }

  const Document& wanted_;
  const Arrangement& places_;
  const KnownPayloads& known_;
  Mids mids_;
  std::vector<Renumbering> numbers_;
  std::string text_;
};

}  // namespace

std::string composed(const Document& wanted, const Arrangement& places, const KnownPayloads& known) {
  return Composer(wanted, places, known).compose();
}

}  // namespace sdp::exchange
