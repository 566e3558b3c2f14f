#include <climits>
#include <memory>

#include "modifiersTestSupport.h"
#include "traceCapture.h"

// Lowering the H.264 levels and the bandwidths of video sections.

namespace {

using Lines = std::vector<TraceLine>;

eH264_profile_id profile(int value) { return static_cast<eH264_profile_id>(value); }

TraceLine incompatible(int id) {
  return {4, 3, "Incompatible type of H264 profile (" + std::to_string(id) + ")"};
}

TEST(LevelText, FollowsTheTable) {
  const std::pair<int, const char*> levels[] = {
      {0, "0A"},  {1, "0B"},  {2, "0B"},  {3, "0C"},  {4, "0D"},  {5, "14"},       {6, "15"},
      {7, "16"},  {8, "1E"},  {9, "1F"},  {10, "20"}, {11, "28"}, {12, "29"},      {13, "2A"},
      {14, "32"}, {15, "33"}, {16, "0A"}, {-3, "0A"}, {99, "0A"}, {INT_MAX, "0A"}, {INT_MIN, "0A"}};
  for (const auto& [id, text] : levels) {
    const auto out = std::make_unique<char[]>(3);
    TraceCapture trace;
    EXPECT_TRUE(sdpModifications::decodeProfileIntToString(out.get(), profile(id)));
    EXPECT_EQ(std::string_view(out.get(), 3), std::string_view(text, 3)) << id;
    EXPECT_EQ(trace.takeLines(), Lines{}) << id;
  }
}

TEST(LevelText, IsNotWrittenForAnIncompatibleProfile) {
  for (const int id : {-2, -1}) {
    char out[3] = {'x', 'y', 'z'};
    TraceCapture trace;
    EXPECT_FALSE(sdpModifications::decodeProfileIntToString(out, profile(id)));
    EXPECT_EQ(std::string_view(out, 3), "xyz");
    EXPECT_EQ(trace.takeLines(), Lines{incompatible(id)});
  }
  EXPECT_FALSE(sdpModifications::decodeProfileIntToString(nullptr, H264_LEVEL_1));
}

TEST(LevelText, OfAListIsWrittenWhenItHoldsH264) {
  struct Case {
    const char* name;
    std::vector<unsigned char> codecs;
    int count;
    int id;
    bool result;
    const char* out;
  };
  const Case cases[] = {
      {"H264 first", {2, 1}, 2, 8, true, "1E"},
      {"H264 last", {1, 3, 2}, 3, 15, true, "33"},
      {"H264 with an incompatible profile", {2}, 1, -2, false, "xy"},
      {"no H264", {1, 3}, 2, 8, true, "xy"},
      {"no H264 and an incompatible profile", {1, 3}, 2, -1, true, "xy"},
      {"behind a 0", {1, 0, 2}, 3, 8, true, "xy"},
      {"behind the count", {1, 2}, 1, 8, true, "xy"},
      {"count 0", {2}, 0, 8, true, "xy"},
      {"a negative count", {2}, -1, -2, true, "xy"},
  };
  for (const Case& each : cases) {
    char out[3] = {'x', 'y', '\0'};
    const auto codecs = std::make_unique<unsigned char[]>(each.codecs.size());
    std::copy(each.codecs.begin(), each.codecs.end(), codecs.get());
    EXPECT_EQ(sdpModifications::decodeProfileIntToString(out, codecs.get(), each.count, profile(each.id)),
              each.result)
        << each.name;
    EXPECT_STREQ(out, each.out) << each.name;
  }
  char out[3] = "xy";
  EXPECT_TRUE(sdpModifications::decodeProfileIntToString(out, nullptr, 3, H264_LEVEL_3));
  EXPECT_STREQ(out, "xy");
}

const std::string videoLine = "m=video 5006 RTP/AVP 96\r\n";

std::string fmtp(const std::string& value) {
  return "a=fmtp:96 packetization-mode=1;profile-level-id=" + value + "\r\n";
}

struct ProfileCase {
  const char* name;
  std::string before;
  int id;
  std::string after;
  int changed;
};

TEST(ProfileLimit, LowersLevelsAndRaisesNone) {
  const std::string head = session + videoLine;
  const ProfileCase cases[] = {
      {"level 3.1 to 3", head + fmtp("42e01f"), 8, head + fmtp("42e01E"), 1},
      {"level 3.1 and 4", head + fmtp("42e01f"), 11, head + fmtp("42e01f"), 0},
      {"level 3.1 and the same", head + fmtp("42e01f"), 9, head + fmtp("42e01f"), 0},
      {"level 5.1 to 1, main profile", head + fmtp("4D0033"), 0, head + fmtp("4D000A"), 1},
      {"level 1.1 to 1b, which has the same digits", head + fmtp("42000b"), 1, head + fmtp("42000B"), 1},
      {"level 1b and 1.1", head + fmtp("42100b"), 2, head + fmtp("42100b"), 0},
      {"another profile counts as level 1", head + fmtp("64001f"), 0, head + fmtp("64001f"), 0},
      {"an unknown level counts as level 1", head + fmtp("42e0zz"), 0, head + fmtp("42e0zz"), 0},
      {"an id above all levels", head + fmtp("42e033"), 16, head + fmtp("42e033"), 0},
      // Deliberate: such an id has the text of level 1 and is below every level.
      {"an id below all levels", head + fmtp("64001f"), -3, head + fmtp("64000A"), 1},
      {"two in a line", head + "a=x:profile-level-id=42e01f profile-level-id=42e028\r\n", 8,
       head + "a=x:profile-level-id=42e01E profile-level-id=42e01E\r\n", 2},
      {"two sections", head + fmtp("42e01f") + videoLine + fmtp("42e028"), 8,
       head + fmtp("42e01E") + videoLine + fmtp("42e01E"), 2},
      {"other sections",
       session + fmtp("42e01f") + audio + fmtp("42e01f") + videoLine + fmtp("42e01f") +
           "m=application 1 RTP/AVP 96\r\n" + fmtp("42e01f"),
       8,
       session + fmtp("42e01f") + audio + fmtp("42e01f") + videoLine + fmtp("42e01E") +
           "m=application 1 RTP/AVP 96\r\n" + fmtp("42e01f"),
       1},
      {"bare line feeds", "v=0\nm=video 1 x 96\na=fmtp:96 profile-level-id=42e01f\n", 8,
       "v=0\nm=video 1 x 96\na=fmtp:96 profile-level-id=42e01E\n", 1},
      {"the line's end may be the text's", head + "a=fmtp:96 profile-level-id=42e01f", 8,
       head + "a=fmtp:96 profile-level-id=42e01E", 1},
      {"more behind the value", head + fmtp("42e01f;x=1"), 8, head + fmtp("42e01E;x=1"), 1},
      {"five digits and the text's end", head + "a=fmtp:96 profile-level-id=42e01", 0,
       head + "a=fmtp:96 profile-level-id=42e01", 0},
      {"no digits and the text's end", head + "a=fmtp:96 profile-level-id=", 0,
       head + "a=fmtp:96 profile-level-id=", 0},
      {"five digits and a line end", head + fmtp("42e01") + fmtp("42e01f"), -3,
       head + fmtp("42e01") + fmtp("42e00A"), 1},
      {"four digits and a line end", head + fmtp("42e0") + "a=x\r\n", -3, head + fmtp("42e0") + "a=x\r\n", 0},
      {"five digits and a bare line feed", head + "a=fmtp:96 profile-level-id=42e01\n", -3,
       head + "a=fmtp:96 profile-level-id=42e01\n", 0},
      {"an m-line in the first line is not seen", videoLine + fmtp("42e01f"), 8, videoLine + fmtp("42e01f"),
       0},
      {"8-bit bytes",
       head + fmtp("42\xff\xfe"
                   "1f"),
       8,
       head + fmtp("42\xff\xfe"
                   "1E"),
       1},
      {"an empty text", "", 8, "", 0},
  };
  for (const ProfileCase& each : cases) {
    EditBuffer buffer(each.before);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::sdpModifyProfileId(buffer.data(), profile(each.id)), 0) << each.name;
    buffer.expect(each.after, each.name);
    EXPECT_EQ(trace.takeLines(),
              (Lines{{8, 4, "Entering sdpModifyProfileId() method. h264ProfileId=" + std::to_string(each.id)},
                     {2, 2,
                      "Exiting sdpModifyProfileId() method: modified profile-level-id in " +
                          std::to_string(each.changed) + " a-lines"}}))
        << each.name;
  }
}

TEST(ProfileLimit, RefusesAnIncompatibleProfileAndWhatIsNoText) {
  const std::string before = session + videoLine + fmtp("42e01f");
  for (const int id : {-2, -1}) {
    EditBuffer buffer(before);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::sdpModifyProfileId(buffer.data(), profile(id)), 1);
    buffer.expect(before);
    EXPECT_EQ(trace.takeLines(),
              (Lines{{8, 4, "Entering sdpModifyProfileId() method. h264ProfileId=" + std::to_string(id)},
                     incompatible(id)}));
  }
  const TraceLine entering{8, 4, "Entering sdpModifyProfileId() method. h264ProfileId=8"};
  const TraceLine unusable{4, 3,
                           "sdpModifyProfileId(): The SDP buffer is null or holds no end of text. Exiting."};
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpModifyProfileId(nullptr, H264_LEVEL_3), 1);
  EXPECT_EQ(trace.takeLines(), (Lines{entering, unusable}));
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(sdpModifications::sdpModifyProfileId(text.data(), H264_LEVEL_3), 1);
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(), (Lines{entering, unusable}));
}

TEST(ProfileLimit, EditsUpToTheLastCharacterOfAFullText) {
  const std::string tail = videoLine + "a=fmtp:96 profile-level-id=";
  const std::string head = paddedTo(EditBuffer::capacity - 1 - tail.size() - 6, session + audio) + tail;
  EditBuffer buffer(head + "42e01f");
  EXPECT_EQ(sdpModifications::sdpModifyProfileId(buffer.data(), H264_LEVEL_3), 0);
  buffer.expect(head + "42e01E");
}

struct BandwidthCase {
  const char* name;
  std::string before;
  unsigned int max;
  std::string after;
  int found;
  int modified;
};

TEST(BandwidthLimit, CapsTheLinesOfVideoSections) {
  const std::string head = session + videoLine;
  const std::string digits(40, '9');
  const std::string longType(60, 'X');
  const BandwidthCase cases[] = {
      {"above", head + "b=AS:512\r\n", 384, head + "b=AS:384\r\n", 1, 1},
      {"equal", head + "b=AS:384\r\n", 384, head + "b=AS:384\r\n", 1, 0},
      {"below", head + "b=AS:64\n", 384, head + "b=AS:64\n", 1, 0},
      {"shorter", head + "b=AS:1000\r\na=x\r\n", 9, head + "b=AS:9\r\na=x\r\n", 1, 1},
      {"to nothing", head + "b=AS:512\r\n", 0, head + "b=AS:0\r\n", 1, 1},
      {"every modifier and unit", head + "b=TIAS:512000\r\nb=CT:385\r\nb=X-y:400\r\na=x\r\n", 384,
       head + "b=TIAS:384\r\nb=CT:384\r\nb=X-y:384\r\na=x\r\n", 3, 3},
      {"in an audio section", session + audio + "b=AS:512\r\n" + videoLine, 384,
       session + audio + "b=AS:512\r\n" + videoLine, 0, 0},
      {"in the session and behind the video", session + "b=AS:512\r\n" + videoLine + audio + "b=AS:512\r\n",
       384, session + "b=AS:512\r\n" + videoLine + audio + "b=AS:512\r\n", 0, 0},
      {"two sections", head + "b=AS:512\r\n" + audio + "b=AS:512\r\n" + videoLine + "b=AS:1000\r\nb=AS:1\r\n",
       384, head + "b=AS:384\r\n" + audio + "b=AS:512\r\n" + videoLine + "b=AS:384\r\nb=AS:1\r\n", 3, 2},
      {"a bare line feed gets its CR", head + "b=AS:512\na=x\n", 384, head + "b=AS:384\r\na=x\n", 1, 1},
      {"without line end", head + "b=AS:512", 384, head + "b=AS:512", 1, 0},
      {"blanks around the number", head + "b=AS: 512 \r\n", 384, head + "b=AS:384\r\n", 1, 1},
      {"what is no b-line is found", head + "b=AS\r\nb=:5\r\nb=AS:-1\r\nb=AS:x\r\nb=\r\nb=AS:512\r\n", 384,
       head + "b=AS\r\nb=:5\r\nb=AS:-1\r\nb=AS:x\r\nb=\r\nb=AS:384\r\n", 6, 1},
      {"a number beyond 32 bits", head + "b=AS:4294967296\r\n", UINT_MAX - 1, head + "b=AS:4294967294\r\n", 1,
       1},
      {"a number beyond 32 bits counts as the largest", head + "b=AS:4294967296\r\n", UINT_MAX,
       head + "b=AS:4294967296\r\n", 1, 0},
      {"a number of 40 digits", head + "b=AS:" + digits + "\r\n", 384, head + "b=AS:384\r\n", 1, 1},
      {"the longest new line, 55 characters", head + "b=" + longType.substr(0, 47) + ":1000\r\n", 384,
       head + "b=" + longType.substr(0, 47) + ":384\r\n", 1, 1},
      {"a new line of 56 characters", head + "b=" + longType.substr(0, 48) + ":1000\r\n", 384,
       head + "b=" + longType.substr(0, 48) + ":1000\r\n", 1, 0},
      {"an overlong modifier", head + "b=" + longType + longType + ":1000\r\n", 384,
       head + "b=" + longType + longType + ":1000\r\n", 1, 0},
      // Deliberate: "m=video" begins a section wherever it stands, and "m=" ends one.
      {"video in a value", session + "i=m=video\r\nb=AS:512\r\n" + audio, 384,
       session + "i=m=video\r\nb=AS:384\r\n" + audio, 1, 1},
      {"a value that ends the section", head + "a=x:m=1\r\nb=AS:512\r\n", 384,
       head + "a=x:m=1\r\nb=AS:512\r\n", 0, 0},
      {"a section that ends in the b-line", head + "b=ASm=:5\r\nb=AS:512\r\n", 4,
       head + "b=ASm=:4\r\nb=AS:512\r\n", 1, 1},
      {"a long b-line with the section's end", head + "b=m=XXXXXXXXXXXX:999999\r\nb=AS:512\r\n", 4,
       head + "b=m=XXXXXXXXXXXX:4\r\nb=AS:512\r\n", 1, 1},
      {"a b-line with the section's end that is longer than the text in front of it",
       head + "b=ASm=:" + std::string(1000, ' ') + "999999\r\nb=AS:512\r\n" + audio + "b=AS:512\r\n", 4,
       head + "b=ASm=:4\r\nb=AS:512\r\n" + audio + "b=AS:512\r\n", 1, 1},
      {"video in the first line", videoLine + "b=AS:512\r\n", 384, videoLine + "b=AS:384\r\n", 1, 1},
      {"no video", session + audio, 384, session + audio, 0, 0},
      {"an empty text", "", 384, "", 0, 0},
  };
  for (const BandwidthCase& each : cases) {
    EditBuffer buffer(each.before);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::sdpApplyBLine(buffer.data(), each.max), 0) << each.name;
    buffer.expect(each.after, each.name);
    EXPECT_EQ(trace.takeLines(),
              (Lines{{8, 4, "Entering sdpApplyBLine method: max bandwidth=" + std::to_string(each.max)},
                     {2, 2,
                      "Exiting sdpApplyBLine method: Found total " + std::to_string(each.found) +
                          " b-lines, modified " + std::to_string(each.modified) + " of them"}}))
        << each.name;
  }
}

// A bare line feed becomes CR LF, which takes one character more.
// An "m=" counts wherever it stands, in a b-line's type too: what follows such a line belongs to its medium.
TEST(BandwidthLimit, AnMInABLineBeginsASection) {
  const auto cap = [](char* sdp) { return sdpModifications::sdpApplyBLine(sdp, 5); };
  expectEdit(session + "m=video 2 x 0\r\nb=m=video:99\r\nb=AS:9\r\n", cap, 0,
             session + "m=video 2 x 0\r\nb=m=video:5\r\nb=AS:5\r\n");
  expectEdit(session + "m=video 2 x 0\r\nb=m=audio:99\r\nb=AS:9\r\nm=video 3 x 0\r\nb=AS:9\r\n", cap, 0,
             session + "m=video 2 x 0\r\nb=m=audio:5\r\nb=AS:9\r\nm=video 3 x 0\r\nb=AS:5\r\n");
  expectEdit(session + "m=video 2 x 0\r\nb=m=video:1\r\nb=AS:9\r\n", cap, 0,
             session + "m=video 2 x 0\r\nb=m=video:1\r\nb=AS:5\r\n");
}

TEST(ProfileLimit, NeedsSixCharactersInFrontOfTheLinesEnd) {
  const auto limit = [](char* sdp) { return sdpModifications::sdpModifyProfileId(sdp, H264_LEVEL_1); };
  const std::string head = session + "m=video 2 x 0\r\na=fmtp:9 profile-level-id=";
  for (const char* const end : {"\r\n", "\n", "", "\r", ";x\r\n", "\r\r\n"}) {
    expectEdit(head + "42e01f" + end, limit, 0, head + "42e00A" + end);
  }
  for (const char* const kept : {"42e01", "42e01\r", "42e01\n", "42e01\r\n", "42e0\r\n1f", "42e01\n1f\r\n"}) {
    expectUntouched(head + kept, limit, 0);
  }
}

TEST(BandwidthLimit, ALineThatWouldNotFitStays) {
  for (const int spare : {-1, 0, 1}) {
    const std::string tail = videoLine + "b=AS:512\n";
    const std::string head =
        paddedTo(static_cast<std::size_t>(20478 - spare) - tail.size(), session + audio) + videoLine;
    EditBuffer buffer(head + "b=AS:512\n");
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::sdpApplyBLine(buffer.data(), 384), 0);
    buffer.expect(spare >= 0 ? head + "b=AS:384\r\n" : head + "b=AS:512\n");
    EXPECT_TRUE(trace.has(2, 2,
                          std::string("Exiting sdpApplyBLine method: Found total 1 b-lines, modified ") +
                              (spare >= 0 ? "1" : "0") + " of them"))
        << spare;
  }
}

TEST(BandwidthLimit, WithoutATextThereIsNothingToCap) {
  const Lines traces{{8, 4, "Entering sdpApplyBLine method: max bandwidth=5"},
                     {4, 3, "sdpApplyBLine(): The SDP buffer is null or holds no end of text. Exiting."},
                     {2, 2, "Exiting sdpApplyBLine method: Found total 0 b-lines, modified 0 of them"}};
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpApplyBLine(nullptr, 5), 0);
  EXPECT_EQ(trace.takeLines(), traces);
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(sdpModifications::sdpApplyBLine(text.data(), 5), 0);
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(), traces);
}

}  // namespace
