#include "linePlaces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "access.h"
#include "sdpDocumentRequests.h"

// What edits move, counted: lines in the index, and tables that are made anew.

namespace {

using sdp::Document;
using sdp::core::Index;
using sdp::core::Model;
using sdp::core::Part;

Model& modelOf(Document& document) { return *sdp::DocumentAccess::changeable(document); }

std::size_t livingLines(const Model& model) {
  std::size_t count = 0;
  for (const Part& part : model.parts) {
    for (Index i = part.first; i < part.end; ++i) count += model.lines[i].gone == 0 ? 1U : 0U;
  }
  return count;
}

/// Counts the lines that lie elsewhere than before.
class Moves {
 public:
  explicit Moves(Document& document) : model_(modelOf(document)) { remember(); }

  /// To be called after each edit. Of a part that stays where it is at most `within` lines at its end are looked at.
  void count(std::size_t within) {
    for (Index n = 0; n < model_.parts.size(); ++n) {
      const Part& part = model_.parts[n];
      const Place before = before_[n];
      if (part.first != before.first) {
        moved_ += part.end - part.first;
      } else if (part.end != before.end) {
        moved_ += within;
      }
    }
    remember();
  }
  std::size_t moved() const { return moved_; }

 private:
  struct Place {
    Index first;
    Index end;
  };
  void remember() {
    before_.clear();
    for (const Part& part : model_.parts) before_.push_back({part.first, part.end});
  }

  Model& model_;
  std::vector<Place> before_;
  std::size_t moved_ = 0;
};

std::string sections(std::uint32_t count, std::uint32_t lines) {
  std::string text = "v=0\r\n";
  for (std::uint32_t n = 0; n < count; ++n) {
    text += "m=audio 9 RTP/AVP 0\r\na=mid:" + std::to_string(n) + "\r\n";
    for (std::uint32_t i = 2; i < lines; ++i) text += "a=x\r\n";
  }
  return text;
}

TEST(LinePlaces, OfOneSectionAloneChangeWithItsEdits) {
  constexpr std::uint32_t kSections = 1000;
  constexpr std::uint32_t kLines = 5;
  Document document;
  ASSERT_FALSE(document.read(sections(kSections, kLines)));
  Moves moves(document);
  for (std::uint32_t n = kSections; n > 0; --n) {
    ASSERT_FALSE(document.addAttribute(n, "y"));
    moves.count(kLines);
    ASSERT_FALSE(document.setPort(n, 5004));
    ASSERT_TRUE(document.section(n).attribute("y"));
    moves.count(kLines);
    ASSERT_FALSE(document.setConnection(n, "::1"));
    moves.count(kLines);
    ASSERT_FALSE(document.setDirection(n, sdp::Direction::inactive));
    moves.count(kLines);
  }
  EXPECT_GE(moves.moved(), kSections * kLines);  // all had to move
  EXPECT_LE(moves.moved(), kSections * 3 * (kLines + 3) * 3);
}

TEST(LinePlaces, OfALongSectionChangeAFewTimes) {
  constexpr std::uint32_t kLines = 5000;
  Document document;
  ASSERT_FALSE(document.read(sections(1, kLines)));
  Moves moves(document);
  for (std::uint32_t n = 0; n < 2 * kLines; ++n) {
    ASSERT_FALSE(document.addAttribute(1, "y"));
    ASSERT_FALSE(document.setPort(1, 5004));
    moves.count(1);
  }
  // Each time by half as many more: after 5000, 7500, 11250 lines, and once more each where all are moved together.
  EXPECT_GE(moves.moved(), 2 * kLines);
  EXPECT_LE(moves.moved(), 10 * 3 * kLines);
}

TEST(LinePlaces, OfALongSectionAreNoHindranceForShortOnes) {
  constexpr std::uint32_t kSections = 1000;
  Document document;
  std::string body = sections(kSections, 2) + "m=video 9 RTP/AVP 31\r\n";
  for (std::uint32_t n = 0; n < 2 * kSections; ++n) body += "a=x\r\n";
  ASSERT_FALSE(document.read(body));
  Moves moves(document);
  for (std::uint32_t n = 1; n <= kSections; ++n) {
    for (const std::uint32_t section : {n, kSections + 1}) {
      ASSERT_FALSE(document.addAttribute(section, "y"));
      moves.count(1);
    }
  }
  EXPECT_LE(moves.moved(), 20 * 4 * kSections);
}

TEST(LinePlaces, AreWonBack) {
  Document document;
  ASSERT_FALSE(document.read(sections(100, 5)));
  for (std::uint32_t n = 0; n < 20000; ++n) {
    const std::uint32_t section = 1 + n * 7 % 100;
    ASSERT_FALSE(document.addAttribute(section, "y"));
    if (n >= 300) {
      ASSERT_FALSE(document.removeAttributes(1 + (n - 300) * 7 % 100, "y"));
    }
    // At most as much is unused as is in use, and of that at most half is room; lines that are gone stay for a while.
    const Model& model = modelOf(document);
    ASSERT_LE(model.lines.size(), 6 * (livingLines(model) + 100)) << n;
  }
  const std::string_view text = document.text();
  EXPECT_EQ(livingLines(modelOf(document)),
            static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
}

TEST(LinePlaces, OfAllLinesAreInTheOrderOfTheTextWhenItIsPutTogether) {
  Document document;
  ASSERT_FALSE(document.read(sections(10, 5)));
  const std::string text(200000, 'z');
  ASSERT_FALSE(document.addAttribute(5, "y"));
  ASSERT_FALSE(document.setAttribute(3, "x", text));
  ASSERT_FALSE(document.setAttribute(3, "x", text.substr(1)));  // outgrows the text
  const Model& model = modelOf(document);
  EXPECT_EQ(model.arena.taken(), 0U);
  EXPECT_EQ(model.unused, 0U);
  const char* at = model.text.data();
  for (const Part& part : model.parts) {
    for (Index i = part.first; i < part.end; ++i) {
      EXPECT_TRUE(model.lines[i].begin == at);
      at += model.lines[i].whole().size();
    }
  }
  EXPECT_EQ(static_cast<std::size_t>(at - model.text.data()), document.text().size());
}

// --- tables ----------------------------------------------------------------------------------------------

/// Marks the table of groups, so that it shows whether it was read anew.
class Mark {
 public:
  explicit Mark(Document& document) : model_(modelOf(document)) {
    (void)document.section(1).bundle();
    set();
  }
  /// Whether it was read anew since.
  bool isGone() { return model_.groups.mids.front().leader != kMarked; }
  void set() { model_.groups.mids.front().leader = kMarked; }

 private:
  static constexpr Index kMarked = 12345;
  Model& model_;
};

TEST(TablesOfGroups, OutliveWhatIsNotOfThem) {
  Document document;
  ASSERT_FALSE(document.read("v=0\r\na=group:BUNDLE 0 1\r\na=x\r\n" + sections(3, 3).substr(5)));
  Mark mark(document);
  ASSERT_FALSE(document.setPort(1, 5004));
  ASSERT_FALSE(document.addAttribute(2, "group", "BUNDLE 2"));
  ASSERT_FALSE(document.setAttribute(3, "mid", "1"));
  ASSERT_FALSE(document.addAttribute(0, "y"));
  ASSERT_FALSE(document.setConnection(0, "::1"));
  ASSERT_FALSE(document.removeAttributes(0, "x"));
  ASSERT_TRUE(document.setTransport(1, ""));
  EXPECT_EQ(document.section(3).bundle(), 0U);
  EXPECT_FALSE(mark.isGone());
  ASSERT_FALSE(document.setAttribute(0, "group", "BUNDLE 2"));
  EXPECT_EQ(document.section(1).bundle(), std::nullopt);
  EXPECT_TRUE(mark.isGone());
}

TEST(TablesOfGroups, KnowSectionsByTheMidsThatTheyHaveNow) {
  Document document;
  const std::string media = "m=audio 9 RTP/AVP 0\r\na=mid:";
  ASSERT_FALSE(document.read("v=0\r\na=group:BUNDLE 0 1\r\n" + media + "0\r\n" + media + "5\r\n"));
  ASSERT_FALSE(sdp::setProfile(document, "RTP/AVP", "1"));
  ASSERT_FALSE(document.setAttribute(2, "mid", "1"));
  EXPECT_EQ(sdp::setProfile(document, "RTP/AVPF", "1").reason, sdp::Reason::differentTransports);
  ASSERT_FALSE(document.removeAttributes(2, "mid"));
  EXPECT_FALSE(sdp::setProfile(document, "RTP/AVPF", "1"));
  ASSERT_FALSE(sdp::setProfile(document, "RTP/AVP", "1"));
  ASSERT_FALSE(document.addAttribute(2, "mid", "1"));
  EXPECT_EQ(sdp::setProfile(document, "RTP/AVPF", "1").reason, sdp::Reason::differentTransports);
}

TEST(TablesOfGroups, TakeFurtherGroupsInOneByOne) {
  Document document;
  ASSERT_FALSE(document.read("v=0\r\na=group:BUNDLE 0\r\n" + sections(200, 2).substr(5)));
  Mark mark(document);
  std::size_t readAnew = 0;
  for (std::uint32_t n = 1; n < 200; ++n) {
    const std::uint32_t section = n + 1;
    ASSERT_EQ(document.section(section).bundle(), std::nullopt);
    ASSERT_FALSE(document.addAttribute(0, "group", "BUNDLE " + std::to_string(n)));
    ASSERT_EQ(document.section(section).bundle(), n);
    readAnew += mark.isGone() ? 1U : 0U;
    mark.set();
  }
  EXPECT_LE(readAnew, 10U);  // each time when there are twice as many
  EXPECT_FALSE(sdp::unbundle(document));
  EXPECT_EQ(document.text(), sections(200, 2));
}

}  // namespace
