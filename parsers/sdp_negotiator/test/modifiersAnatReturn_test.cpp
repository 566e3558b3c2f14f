#include <random>

#include "modifiersAnatSupport.h"

// Alternative network address types (RFC 4091): return of removed sections.

namespace {

using namespace anat;

const TraceLine noRoomForDummy{4, 3,
                               "sdpReInsertAnat(): The SDP buffer has no room for another m-line. Exiting."};

TraceLine returnBegin(const std::string& codes) {
  return {8, 4, "Entering sdpReInsertAnat() method. input is [" + codes + "]"};
}

unsigned short reInsert(char* sdp, const std::vector<char>& record) {
  unsigned short oLineEnd = 4711;
  const unsigned short status = M::sdpReInsertAnat(sdp, record.data(), oLineEnd, false);
  EXPECT_EQ(oLineEnd, 4711);
  return status;
}

const std::string dummyAudio = "m=audio 0 RTP/AVP 0\r\n";
const std::string dummyVideo = "m=video 0 RTP/AVP 31\r\n";
const std::string dummyApplication = "m=application 0 RTP/AVP 0\r\n";
const std::string dummyImage = "m=image 0 RTP/AVP 0\r\n";
const std::string dummySecureAudio = "m=audio 0 RTP/SAVP 0\r\n";
const std::string dummySecureImage = "m=image 0 RTP/SAVP 0\r\n";

struct ReturnCase {
  const char* name;
  std::string before;
  std::vector<int> codes;
  std::string shown;
  std::string after;
};

const ReturnCase returns[] = {
    {"the first and the third",
     head + audio6 + video6,
     {1, 28},
     "1,28",
     head + group(" 2 4") + dummyAudio + mid(1) + audio6 + mid(2) + dummyVideo + mid(3) + video6 + mid(4)},
    {"a secure one",
     head + audio6,
     {129},
     "129",
     head + group(" 2") + dummySecureAudio + mid(1) + audio6 + mid(2)},
    {"each media kind in front of the first",
     head + audio6,
     {1, 26, 51, 76},
     "1,26,51,76",
     head + group(" 5") + dummyImage + mid(1) + dummyApplication + mid(2) + dummyVideo + mid(3) + dummyAudio +
         mid(4) + audio6 + mid(5)},
    {"none", head + audio6, {}, "", head + group(" 1") + audio6 + mid(1)},
    {"behind the last", head + audio6, {2}, "2", head + group(" 1") + audio6 + mid(1) + dummyAudio + mid(2)},
    // The first whose position is missing takes all behind it to the end.
    {"one too far",
     head + audio6,
     {30, 1},
     "30,1",
     head + group(" 1") + audio6 + mid(1) + dummyVideo + mid(2) + dummyAudio + mid(3)},
    {"not in ascending order",
     head + audio6 + video6,
     {27, 1, 2},
     "27,1,2",
     head + group(" 3 5") + dummyAudio + mid(1) + dummyAudio + mid(2) + audio6 + mid(3) + dummyVideo +
         mid(4) + video6 + mid(5)},
    // Deliberate: "m=" counts wherever it stands, and the dummy goes there.
    {"m= in a value",
     head + "a=x:m=\r\n" + audio6,
     {1},
     "1",
     head + "a=x:m=audio 0 RTP/AVP 0\r\n" + group(" 1 2") + "m=\r\n" + mid(1) + audio6 + mid(2)},
    {"no m-line",
     head + time0,
     {1, 27},
     "1,27",
     head + time0 + group("") + dummyAudio + mid(1) + dummyVideo + mid(2)},
    {"no m-line and no LF", "v=0", {1}, "1", "v=0\r\n" + group("") + dummyAudio + mid(1)},
    // The first line is no m-line to the grouping.
    {"an empty text", "", {1, 27}, "1,27", dummyAudio + group("") + dummyVideo + mid(1)},
    {"the last line without LF",
     head + "m=audio 5004 RTP/AVP 0",
     {2},
     "2",
     head + group(" 1") + audio + mid(1) + dummyAudio + mid(2)},
    // A secure mark without a position has no place and reads as audio.
    {"a mark alone",
     head + audio6,
     {1, 128},
     "1,128",
     head + group(" 2") + dummyAudio + mid(1) + audio6 + mid(2) + dummySecureAudio + mid(3)},
    {"a mark in front of a code",
     head + audio6,
     {128, 1},
     "128,1",
     head + group(" 1") + audio6 + mid(1) + dummySecureAudio + mid(2) + dummyAudio + mid(3)},
    {"the record ends at a zero",
     head + audio6,
     {1, 0, 1},
     "1",
     head + group(" 2") + dummyAudio + mid(1) + audio6 + mid(2)},
    {"LF only",
     "v=0\nm=a 1\n",
     {1, 3},
     "1,3",
     "v=0\n" + group(" 2") + dummyAudio + mid(1) + "m=a 1\na=mid:2\r\n" + dummyAudio + mid(3)},
};

TEST(ReInsertAnat, PutsDummiesInTheirPlacesAndGroupsAll) {
  for (const ReturnCase& each : returns) {
    SCOPED_TRACE(each.name);
    TraceCapture trace;
    expectEdit(
        each.before, [&](char* sdp) { return reInsert(sdp, recordOf(each.codes)); }, 0, each.after);
    EXPECT_EQ(trace.takeLines(), Traces{returnBegin(each.shown)});
  }
}

// Codes above all ranges match the position that is 75 less.
TEST(ReInsertAnat, TakesACodeAboveAllRangesToItsPosition) {
  std::string sections;
  for (int i = 1; i <= 25; ++i) sections += audio6 + mid(i);
  std::string numbers;
  for (int i = 1; i <= 27; ++i) numbers += i == 26 ? "" : " " + std::to_string(i);
  expectEdit(
      head + sections + video6, [](char* sdp) { return reInsert(sdp, recordOf({101})); }, 0,
      head + group(numbers) + sections + dummyImage + mid(26) + video6 + mid(27));
}

TEST(ReInsertAnat, ReadsTwentyFiveCodesWithoutAZero) {
  const std::vector<char> record(25, '\xff');
  std::string shown = "255";
  std::string dummies;
  for (int i = 0; i < 25; ++i) {
    if (i > 0) shown += ",255";
    dummies += dummySecureImage + mid(i + 2);
  }
  TraceCapture trace;
  expectEdit(
      head + audio6, [&](char* sdp) { return reInsert(sdp, record); }, 0,
      head + group(" 1") + audio6 + mid(1) + dummies);
  EXPECT_EQ(trace.takeLines(), Traces{returnBegin(shown)});
}

TEST(ReInsertAnat, RebuildsTheOLineFirst) {
  EditBuffer buffer(head + audio6);
  unsigned short oLineEnd = 0;
  TraceCapture trace;
  EXPECT_EQ(M::sdpReInsertAnat(buffer.data(), recordOf({1}).data(), oLineEnd, true), 0);
  expectRebuiltOrigin(buffer, "v=0\r\n", oLineEnd,
                      "s=-\r\n" + group(" 2") + dummyAudio + mid(1) + audio6 + mid(2));
  const Traces lines = trace.takeLines();
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0], returnBegin("1"));
  EXPECT_EQ(lines[2], (TraceLine{2, 2, "The o-line has been changed. Exiting..."}));
}

TEST(ReInsertAnat, WithoutARecordOnlyGroups) {
  unsigned short oLineEnd = 4711;
  TraceCapture trace;
  expectEdit(
      head + audio6, [&](char* sdp) { return M::sdpReInsertAnat(sdp, nullptr, oLineEnd, false); }, 0,
      head + group(" 1") + audio6 + mid(1));
  EXPECT_EQ(trace.takeLines(), Traces{returnBegin("")});
}

TEST(ReInsertAnat, RefusesABufferWithoutText) {
  unsigned short oLineEnd = 4711;
  const std::vector<char> record = recordOf({1});
  TraceCapture trace;
  EXPECT_EQ(M::sdpReInsertAnat(nullptr, record.data(), oLineEnd, false), 0);
  EXPECT_EQ(trace.takeLines(), Traces{returnBegin("1")});
  EXPECT_EQ(M::sdpReInsertAnat(nullptr, record.data(), oLineEnd, true), 0);
  EXPECT_TRUE(trace.has(2, 2, "The raw sdp buffer is empty. Exiting..."));
  trace.takeLines();
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(M::sdpReInsertAnat(text.data(), record.data(), oLineEnd, false), 0);
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(),
            (Traces{returnBegin("1"), unusable("sdpReInsertAnat"), unusable("sdpApplyAnatAttributes")}));
  EXPECT_EQ(oLineEnd, 4711);
}

// A dummy audio m-line has 21 characters. Its grouping, which comes behind, has no room either.
TEST(ReInsertAnat, LeavesOutTheFirstDummyThatDoesNotFitAndAllBehind) {
  ASSERT_EQ(dummyAudio.size(), 21U);
  const std::string front = head + audio6;
  struct Room {
    std::size_t left;
    std::vector<int> codes;
    std::string dummies;  ///< in front of the m-line
    bool full;
  };
  const Room cases[] = {
      {21, {1}, dummyAudio, false},
      {20, {1}, "", true},
      {0, {1}, "", true},
      {42, {1, 1}, dummyAudio + dummyAudio, false},
      {41, {1, 1}, dummyAudio, true},
      {43, {1, 26, 1}, dummyVideo + dummyAudio, true},
      {42, {1, 26, 1}, dummyAudio, true},  // the shorter one behind it would have fitted
  };
  for (const Room& each : cases) {
    const std::string before = filledTo(kLongestBody - each.left, front);
    const std::string behind = before.substr(head.size());
    TraceCapture trace;
    SdpBuffer buffer(before);
    EXPECT_EQ(reInsert(buffer.data(), recordOf(each.codes)), 0);
    buffer.expectText(head + each.dummies + behind);
    Traces lines = trace.takeLines();
    ASSERT_FALSE(lines.empty());
    lines.erase(lines.begin());
    EXPECT_EQ(lines, each.full ? (Traces{noRoomForDummy, noRoomForAttributes}) : Traces{noRoomForAttributes});
  }
}

TEST(ReInsertAnat, AppendsNothingThatDoesNotFit) {
  for (const bool ended : {true, false}) {
    const std::size_t needed = dummyAudio.size() + (ended ? 0 : 2);
    for (const bool fits : {true, false}) {
      std::string before = filledTo(kLongestBody - needed + (fits ? 0 : 1) + (ended ? 0 : 2), head);
      if (!ended) before.resize(before.size() - 2);
      SdpBuffer buffer(before);
      TraceCapture trace;
      EXPECT_EQ(reInsert(buffer.data(), recordOf({1})), 0);
      buffer.expectText(fits ? before + (ended ? "" : "\r\n") + dummyAudio : before);
      EXPECT_EQ(trace.has(4, 3, noRoomForDummy.text), !fits);
    }
  }
}

/// Removal and return

struct Section {
  int kind;  ///< audio, video, application, image
  bool secure;
  bool removed;
};

std::string mLineOf(const Section& section, const char* port) {
  const char* const names[] = {"audio", "video", "application", "image"};
  return std::string("m=") + names[section.kind] + " " + port + " RTP/" + (section.secure ? "SAVP" : "AVP") +
         (section.kind == 1 ? " 31\r\n" : " 0\r\n");
}

/// Removes the IPv4 sections of a body and puts dummies back: every section is in its old place then.
void expectThereAndBack(const std::vector<Section>& sections) {
  std::string before = head;
  std::string reduced = head;
  std::string numbers;
  std::string returned;
  std::vector<int> codes;
  for (std::size_t i = 0; i < sections.size(); ++i) {
    const Section& each = sections[i];
    const int number = static_cast<int>(i) + 1;
    const std::string whole = mLineOf(each, "5004") + (each.removed ? connection4 : connection6);
    before += whole;
    if (each.removed) {
      codes.push_back(number + 25 * each.kind + (each.secure ? 128 : 0));
      returned += mLineOf(each, "0") + mid(number);
    } else {
      reduced += whole;
      numbers += " " + std::to_string(number);
      returned += whole + mid(number);
    }
  }
  EditBuffer buffer(before);
  std::vector<char> record(25, '\0');
  unsigned short oLineEnd = 0;
  ASSERT_EQ(M::sdpRemoveAnat(buffer.data(), v4, record.data(), oLineEnd, false), 0);
  ASSERT_EQ(buffer.text(), reduced);
  ASSERT_EQ(record, recordOf(codes));
  ASSERT_EQ(reInsert(buffer.data(), record), 0);
  ASSERT_EQ(buffer.text(), head + group(numbers) + returned);
}

Section sectionOf(unsigned int bits) {
  return {static_cast<int>(bits & 3U), (bits & 4U) != 0, (bits & 8U) != 0};
}

TEST(AnatThereAndBack, RestoresThePlacesOfUpToThreeSectionsOfAnyKind) {
  for (unsigned int all = 0; all < 16 * 16 * 16; ++all) {
    const std::vector<Section> sections{sectionOf(all), sectionOf(all >> 4U), sectionOf(all >> 8U)};
    expectThereAndBack(sections);
    if (all < 16 * 16) expectThereAndBack({sections[0], sections[1]});
    if (all < 16) expectThereAndBack({sections[0]});
    if (HasFatalFailure()) return;
  }
}

TEST(AnatThereAndBack, RestoresThePlacesOfUpToTwentyFiveSections) {
  std::mt19937 random(1);  // the same bodies every time
  for (std::size_t count = 4; count <= 25; ++count) {
    for (int i = 0; i < 50; ++i) {
      std::vector<Section> sections;
      while (sections.size() < count) sections.push_back(sectionOf(static_cast<unsigned int>(random())));
      expectThereAndBack(sections);
      for (Section& each : sections) each.removed = true;
      expectThereAndBack(sections);
      if (HasFatalFailure()) return;
    }
  }
}

}  // namespace
