#include "changeChecker.h"

#include <algorithm>

#include "plainBody.h"
#include "promiseChecks.h"

namespace plain {
namespace {

const Words kOfFormats = {"rtpmap", "fmtp", "rtcp-fb", "imageattr", "framesize", "gpmd"};
const Words kKeys = {"crypto", "key-mgmt", "fingerprint", "setup", "tls-id"};
const Words kDirections = {"sendrecv", "sendonly", "recvonly", "inactive"};
const Words kNeverStripped = {"group", "mid", "bundle-only"};
const Words kMediaNames = {"audio", "video", "text", "application", "message", "image"};

/// Whether a list with commas, whose names may end in `*`, has a name.
bool isNamed(std::string_view name, std::string_view list) {
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    const std::string_view wanted = list.substr(0, comma);
    list.remove_prefix(std::min(comma + 1, list.size()));
    if (name == wanted) return true;
    if (wanted.back() == '*' && name.substr(0, wanted.size() - 1) == wanted.substr(0, wanted.size() - 1))
      return true;
  }
  return false;
}

class Check {
 public:
  Check(std::span<const std::string_view> words, std::string_view before, std::string_view after)
      : words_(words), name_(words[0]), before_(before), after_(after) {}

  std::vector<std::string> run() {
    if (before_.sectionCount() != after_.sectionCount()) return {"another number of sections"};
    if (name_ == "canonical") {
      checkCanonical(before_, after_, complaints_);
      return complaints_.all;
    }
    chooseSections();
    checkOtherLines();
    if (after_.blankLines() > before_.blankLines()) complain("a new blank line");
    for (std::size_t n = 1; n <= before_.sectionCount(); ++n) checkSection(n);
    const Change change{words_, before_, after_, chosen_};
    if (name_ == "anchor") checkAnchor(change, complaints_);
    if (name_ == "set-profile") checkProfile(change, complaints_);
    checkWhatShouldBeGone();
    return complaints_.all;
  }

 private:
  void complain(const std::string& text) { complaints_.add(text); }
  void complain(const std::string& text, std::size_t section) { complaints_.add(text, section); }
  bool isOfCodecs() const { return name_.ends_with("-codecs"); }

  // --- which sections and lines a request may be about ---------------------------------------------------------

  std::string_view media() const {
    if (name_ == "unbundle" || name_ == "anchor") return {};
    const bool first = name_ == "opportunistic" || name_ == "secure-only" || name_ == "disable";
    const std::size_t at = first ? 1 : 2;
    return at < words_.size() ? words_[at] : std::string_view();
  }

  bool isSelected(std::size_t n, std::string_view media) const {
    const PlainSection& section = before_.sections[n];
    if (media.empty()) return !isOfCodecs() || section.media() == "audio" || section.media() == "video";
    if (media == "all") return true;
    if (isIn(media, kMediaNames)) return section.media() == media;
    if (hasOnlyDigits(media)) {
      while (media.size() > 1 && media[0] == '0') media.remove_prefix(1);
      return media == std::to_string(n);
    }
    return !section.mid.empty() && section.mid == media.substr(4);
  }

  void chooseSections() {
    chosen_.assign(before_.sections.size(), false);
    const bool disabledToo = name_ == "direction" || name_ == "anchor";
    for (std::size_t n = 1; n < before_.sections.size(); ++n) {
      const PlainSection& section = before_.sections[n];
      chosen_[n] = section.readable && (section.alive || disabledToo) && isSelected(n, media());
    }
    sessionToo_ = media().empty() || media() == "all";
  }

  /// Whether the request may change, remove or add such a line.
  bool concerns(const PlainLine& line) const {
    const bool ofSession = line.section == 0;
    const bool ofChosen = !ofSession && chosen_[line.section];
    const bool m = isMLine(line.content);
    const std::string_view attribute = attributeName(line.content);
    if (name_ == "keep-codecs" || name_ == "drop-codecs" || name_ == "disable") {
      if (m || attribute == "bundle-only") return !ofSession;
      return (ofSession && attribute == "group") ||
             (name_ != "disable" && ofChosen && isIn(attribute, kOfFormats));
    }
    if (name_ == "order-codecs" || name_ == "opportunistic" || name_ == "secure-only") return ofChosen && m;
    if (name_ == "anchor") {
      return m || line.content.starts_with("c=") || line.content.starts_with("a=rtcp:") ||
             isIn(attribute, kWays);
    }
    if (name_ == "set-profile") {
      if (ofSession) return isIn(attribute, kKeys) && attribute != "crypto";
      return ofChosen && (m || isIn(attribute, kKeys) || attribute == "rtcp-fb" || attribute == "rtcp-rsize");
    }
    if (name_ == "unbundle") {
      if (!ofSession) return m || attribute == "bundle-only";
      return attribute == "group" && wordOf(attributeValue(line.content), 0) == "BUNDLE";
    }
    if (name_ == "strip-attributes") {
      return (ofSession ? sessionToo_ : ofChosen) && attribute.data() != nullptr &&
             !isIn(attribute, kNeverStripped) && isNamed(attribute, words_[1]);
    }
    return ofChosen && isIn(attribute, kDirections);
  }

  std::vector<PlainLine> otherLines(const PlainBody& body) const {
    std::vector<PlainLine> lines;
    for (const PlainLine& line : body.lines) {
      if (!concerns(line)) lines.push_back(line);
    }
    return lines;
  }

  /// What a request is not about is there as before; only a last line may have got an end.
  void checkOtherLines() {
    const std::vector<PlainLine> before = otherLines(before_);
    const std::vector<PlainLine> after = otherLines(after_);
    if (before.size() != after.size()) return complain("another number of lines that are not concerned");
    for (std::size_t i = 0; i < before.size(); ++i) {
      if (before[i].section != after[i].section || before[i].content != after[i].content) {
        complain("a line that is not concerned: " + std::string(before[i].content));
      } else if (before[i].end != after[i].end && before[i].end.ends_with('\n')) {
        complain("an end of a line");
      }
    }
  }

  // --- a section ---------------------------------------------------------------------------------------------

  /// Which words of an m-line a request may write; the fourth stands for the formats.
  bool mayWrite(std::size_t n, std::size_t word) const {
    if (name_ == "keep-codecs" || name_ == "drop-codecs") return word == 1 || (word == 3 && chosen_[n]);
    if (name_ == "disable" || name_ == "anchor" || name_ == "unbundle") return word == 1;
    if (name_ == "order-codecs") return word == 3 && chosen_[n];
    return (name_ == "set-profile" || name_ == "opportunistic" || name_ == "secure-only") && word == 2 &&
           chosen_[n];
  }

  bool isSameSection(std::size_t n) const {
    const PlainSection& a = before_.sections[n];
    const PlainSection& b = after_.sections[n];
    return std::equal(before_.lines.begin() + static_cast<std::ptrdiff_t>(a.first),
                      before_.lines.begin() + static_cast<std::ptrdiff_t>(a.end),
                      after_.lines.begin() + static_cast<std::ptrdiff_t>(b.first),
                      after_.lines.begin() + static_cast<std::ptrdiff_t>(b.end),
                      [](const PlainLine& x, const PlainLine& y) { return x.content == y.content; });
  }

  void checkSection(std::size_t n) {
    const PlainSection& a = before_.sections[n];
    const PlainSection& b = after_.sections[n];
    if (!a.readable) {
      if (!isSameSection(n)) complain("it is unreadable and was changed", n);
      return;
    }
    if (!b.readable) return complain("it has become unreadable", n);
    for (std::size_t word = 0; word < 3; ++word) {
      if (a.words[word] != b.words[word] && !mayWrite(n, word))
        complain("word " + std::to_string(word) + " of its m-line", n);
    }
    checkFormats(n, a.formats(), b.formats());
    checkLife(n);
  }

  void checkFormats(std::size_t n, const Words& a, const Words& b) {
    if (a == b) return;
    if (!mayWrite(n, 3)) return complain("its formats", n);
    Words sortedBefore = a;
    Words sortedAfter = b;
    std::sort(sortedBefore.begin(), sortedBefore.end());
    std::sort(sortedAfter.begin(), sortedAfter.end());
    if (name_ == "order-codecs") {
      if (sortedBefore != sortedAfter) complain("other formats than before", n);
      return checkSeparators(n);
    }
    if (b.empty()) complain("no format", n);
    if (!isSubsequence(b, a)) complain("a new format, one twice, or another order", n);
    Words gone;
    std::set_difference(sortedBefore.begin(), sortedBefore.end(), sortedAfter.begin(), sortedAfter.end(),
                        std::back_inserter(gone));
    for (const std::string_view format : gone) {
      if (isIn(format, b)) complain("one of a format that stands twice", n);
    }
    checkOrphans(n, gone, b);
  }

  static bool isSubsequence(const Words& part, const Words& whole) {
    std::size_t found = 0;
    for (const std::string_view word : whole) {
      if (found < part.size() && part[found] == word) ++found;
    }
    return found == part.size();
  }

  /// Nothing speaks of a format that went.
  void checkOrphans(std::size_t n, const Words& gone, const Words& left) {
    const PlainSection& section = after_.sections[n];
    for (std::size_t i = section.first; i < section.end; ++i) {
      const std::string_view line = after_.lines[i].content;
      if (isIn(attributeName(line), kOfFormats) && isIn(wordOf(attributeValue(line), 0), gone)) {
        complain("an attribute of a format that went: " + std::string(line), n);
      }
    }
    for (const auto& [rtx, repaired] : after_.repairs(n)) {
      if (isIn(rtx, left) && isIn(repaired, gone)) complain("rtx of a format that went", n);
    }
  }

  /// Where formats changed places, what separates them has not.
  void checkSeparators(std::size_t n) {
    std::string shapes[2];
    for (int side = 0; side < 2; ++side) {
      const PlainBody& body = side == 0 ? before_ : after_;
      bool inWord = false;
      for (const char c : body.lines[body.sections[n].first].content) {
        const bool blank = c == ' ' || c == '\t';
        if (blank) shapes[side] += c;
        if (!blank && !inWord) shapes[side] += 'w';
        inWord = !blank;
      }
    }
    if (shapes[0] != shapes[1]) complain("other blanks in its m-line", n);
  }

  /// Who is put away, and who comes to life.
  void checkLife(std::size_t n) {
    const PlainSection& a = before_.sections[n];
    const PlainSection& b = after_.sections[n];
    const bool putsAway = name_ == "keep-codecs" || name_ == "drop-codecs" || name_ == "disable";
    if (!putsAway) {
      if (a.alive != b.alive && name_ != "unbundle") complain("it has come or gone", n);
      return;
    }
    if (!a.alive && !isSameSection(n)) complain("it was disabled and was changed", n);
    if (a.alive && !b.alive) {
      if (!chosen_[n]) complain("it was not selected and was put away", n);
      if (b.port() != "0") complain("another port than 0", n);
      if (!a.mid.empty() && isIn(a.mid, after_.groupedMids()))
        complain("a group names it though it was put away", n);
      if (a.formats() != b.formats()) complain("it was put away and lost formats", n);
    }
    // A port that changes otherwise is one that another gave up.
    if (b.alive && a.port() != b.port() &&
        (!a.zero || !a.bundleOnly || b.bundleOnly || !wasGivenUp(b.port()))) {
      complain("another port", n);
    }
  }

  bool wasGivenUp(std::string_view port) const {
    for (std::size_t n = 1; n < before_.sections.size(); ++n) {
      if (before_.sections[n].port() == port && !after_.sections[n].alive) return true;
    }
    return false;
  }

  // --- what requests promise ---------------------------------------------------------------------------------

  void checkWhatShouldBeGone() {
    for (const PlainLine& line : after_.lines) {
      const bool readable = line.section == 0 || before_.sections[line.section].readable;
      if (name_ == "strip-attributes" && concerns(line))
        complain("not stripped: " + std::string(line.content));
      if (name_ == "unbundle" && readable && !isMLine(line.content) && concerns(line) &&
          (line.section == 0 || attributeName(line.content) == "bundle-only")) {
        complain("still bundled: " + std::string(line.content));
      }
    }
    for (std::size_t n = 1; n < after_.sections.size(); ++n) {
      if (!chosen_[n]) continue;
      if (name_ == "disable" && after_.sections[n].alive) complain("not disabled", n);
      if (name_ == "direction") checkDirection(n);
    }
  }

  void checkDirection(std::size_t n) {
    Words own;
    Words ofSession;
    for (const PlainLine& line : after_.lines) {
      if (line.section != 0 && line.section != n) continue;
      const std::string_view name = attributeName(line.content);
      if (isIn(name, kDirections)) (line.section == 0 ? ofSession : own).push_back(name);
    }
    if (own.size() > 1) complain("several directions", n);
    const std::string_view holds = !own.empty() ? own[0] : !ofSession.empty() ? ofSession[0] : "sendrecv";
    if (holds != words_[1]) complain("another direction", n);
  }

  std::span<const std::string_view> words_;
  std::string_view name_;
  PlainBody before_;
  PlainBody after_;
  std::vector<bool> chosen_;
  bool sessionToo_ = false;
  Complaints complaints_;
};

}  // namespace

std::vector<std::string> complaintsAbout(std::span<const std::string_view> words, std::string_view before,
                                         std::string_view after) {
  return Check(words, before, after).run();
}

}  // namespace plain
