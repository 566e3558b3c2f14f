#include "modifiersTestSupport.h"
#include "traceCapture.h"

// Directions of the session and of its media.

namespace {

using Lines = std::vector<TraceLine>;

const char* const words[] = {"sendonly", "recvonly", "sendrecv", "inactive"};  // of the modes 1 to 4

std::string line(const std::string& word) { return "a=" + word + "\r\n"; }

const std::string so = line("sendonly");
const std::string ro = line("recvonly");
const std::string sr = line("sendrecv");
const std::string ia = line("inactive");

/// What a current and a requested direction have in common; "" when nothing is to change.
std::string common(const std::string& current, const std::string& requested) {
  if (current == "sendrecv") return requested;
  if (current == "sendonly" && (requested == "recvonly" || requested == "inactive")) return "inactive";
  if (current == "recvonly" && (requested == "sendonly" || requested == "inactive")) return "inactive";
  return "";
}

const TraceLine enterChange{8, 4, "Enter changeConnectionMode"};

TraceLine entering(const std::string& word) {
  return {8, 4, "Entering sdpReplaceMode(): request to set mode to " + word};
}
TraceLine change(const std::string& from, const std::string& request, const std::string& result) {
  return {8, 4,
          "currentMode is " + from + " needs to change to " + request + ", the new mediaMode is " + result};
}
TraceLine enteringMedia(const std::string& word, const std::string& media) {
  return {8, 4,
          "Entering setMediaConnectionMode(): request to set the mode to " + word + " for all " + media +
              " media"};
}
TraceLine applied(const std::string& word, int modified, int addedLines) {
  return {8, 4,
          "sdpReplaceMode(): Applied " + word + " mode. Modified " + std::to_string(modified) +
              " session-level lines and 0 media-level lines. Added " + std::to_string(addedLines) +
              " session-level lines and 0 media-level lines."};
}

struct Case {
  const char* name;
  std::string before;
  unsigned char mode;
  int media;
  std::string after;
};

const std::string lfSession = "v=0\ns=-\n";
const std::string lfAudio = "m=audio 5004 RTP/AVP 0\n";

const Case cases[] = {
    {"no directions, sendonly", session + audio + video, 1, 0, session + so + audio + so + video + so},
    {"no directions, inactive", session + audio + video, 4, 0, session + ia + audio + ia + video + ia},
    {"no directions, recvonly adds none to the session", session + audio + video, 2, 0,
     session + audio + ro + video + ro},
    {"audio alone", session + audio + video, 1, 1, session + so + audio + so + video},
    {"video alone", session + audio + video, 1, 2, session + so + audio + video + so},
    {"mask 64 is both", session + audio + video, 2, 64, session + audio + ro + video + ro},
    {"mask 3 is both", session + audio + video, 2, 3, session + audio + ro + video + ro},
    {"a negative mask is both", session + audio + video, 2, -1, session + audio + ro + video + ro},
    {"video in front of audio", session + video + audio, 2, 0, session + video + ro + audio + ro},
    {"every section", session + audio + audio + video + sr + video, 2, 0,
     session + audio + ro + audio + ro + video + ro + video + ro},
    {"recvonly meets sendonly", session + so + audio + so + video, 2, 0,
     session + ia + audio + ia + video + ro},
    // Deliberate: a session direction that stays gets a second one beside it.
    {"sendonly beside sendonly", session + so + audio, 1, 2, session + so + so + audio},
    {"inactive beside inactive", session + ia + audio, 4, 2, session + ia + ia + audio},
    {"sendonly beside inactive", session + ia + audio, 1, 2, session + ia + so + audio},
    {"recvonly adds none beside inactive", session + ia + audio, 2, 2, session + ia + audio},
    {"the line goes in front of the first m-line", session + so + "a=tool:x\r\n" + audio, 1, 2,
     session + so + "a=tool:x\r\n" + so + audio},
    {"a session direction that stays is passed over", session + ia + sr + audio, 2, 2,
     session + ia + ro + audio},
    {"one session direction is changed", session + sr + sr + audio, 2, 2, session + ro + sr + audio},
    // Deliberate: only the first direction of a section is considered.
    {"one direction of a section is changed", session + audio + sr + sr, 2, 1, session + audio + ro + sr},
    {"a first direction that stays hides the next", session + audio + ia + sr, 2, 1,
     session + audio + ia + sr},
    {"other media are left alone",
     session + "m=message 5004 TCP/MSRP *\r\n" + sr + "m=image 5004 udptl t38\r\nm=text 5004 RTP/AVP 98\r\n",
     2, 0,
     session + "m=message 5004 TCP/MSRP *\r\n" + sr + "m=image 5004 udptl t38\r\nm=text 5004 RTP/AVP 98\r\n"},
    {"another medium ends a section", session + audio + "m=text 5004 RTP/AVP 98\r\n" + sr, 2, 0,
     session + audio + ro + "m=text 5004 RTP/AVP 98\r\n" + sr},
    // Deliberate: a medium is recognised by its beginning, and a direction by its first eight characters.
    {"a longer media name", session + "m=audiovisual 1 x 0\r\n", 2, 0,
     session + "m=audiovisual 1 x 0\r\n" + ro},
    {"a longer direction", session + "a=sendonlyx:1\r\n" + audio + "a=sendrecv:5\r\n", 2, 0,
     session + "a=inactivex:1\r\n" + audio + "a=recvonly:5\r\n"},
    {"a direction in another case is none", session + audio + "a=SENDRECV\r\n", 2, 0,
     session + audio + "a=SENDRECV\r\n" + ro},
    {"a shorter word is none", session + audio + "a=sendrec\r\n", 2, 0,
     session + audio + "a=sendrec\r\n" + ro},
    {"confrnce is none", session + audio + line("confrnce"), 2, 0, session + audio + line("confrnce") + ro},
    {"a direction within a line is none", session + "i=a=sendrecv\r\n" + audio + "a=x:a=sendrecv\r\n", 2, 0,
     session + "i=a=sendrecv\r\n" + audio + "a=x:a=sendrecv\r\n" + ro},
    {"bare line feeds", lfSession + lfAudio + "a=ptime:20\n" + "m=video 1 x 0\na=sendrecv\n", 1, 0,
     lfSession + so + lfAudio + "a=ptime:20\n" + so + "m=video 1 x 0\na=sendonly\n"},
    {"bare line feeds in place", lfSession + "a=sendrecv\n" + lfAudio + "a=recvonly\n", 4, 0,
     lfSession + "a=inactive\n" + lfAudio + "a=inactive\n"},
    // Deliberate: no line end is put in front of what is added.
    {"a last line without end", lfSession + "m=audio 5004 RTP/AVP 0", 2, 0,
     lfSession + "m=audio 5004 RTP/AVP 0a=recvonly\r\n"},
    {"a direction at the very end", lfSession + lfAudio + "a=sendrecv", 2, 0,
     lfSession + lfAudio + "a=recvonly"},
    {"a cut direction at the very end", lfSession + lfAudio + "a=sendrec", 2, 0,
     lfSession + lfAudio + "a=sendreca=recvonly\r\n"},
    {"an a-line that ends at once", lfSession + lfAudio + "a=", 2, 0,
     lfSession + lfAudio + "a=a=recvonly\r\n"},
    {"an m-line that ends at once", lfSession + "m=", 1, 0, lfSession + so + "m="},
    // Deliberate: an m-line at the text's start is not seen; what follows it belongs to the session.
    {"an m-line at the text's start", lfAudio + "a=sendrecv\n" + "m=video 1 x 0\n", 2, 0,
     lfAudio + "a=recvonly\n" + "m=video 1 x 0\n" + ro},
};

TEST(ReplaceMode, AppliesADirectionToSessionAndMedia) {
  for (const Case& each : cases) {
    EditBuffer buffer(each.before);
    EXPECT_EQ(sdpModifications::sdpReplaceMode(buffer.data(), each.mode, each.media), 0) << each.name;
    buffer.expect(each.after, each.name);
  }
}

TEST(ReplaceMode, EveryDirectionMeetsEveryRequest) {
  for (const char* const current : words) {
    for (const std::uint8_t mode : std::initializer_list<std::uint8_t>{1, 2, 4}) {
      const std::string requested = words[mode - 1];
      const std::string result = common(current, requested);
      const std::string kept = result.empty() ? current : result;
      const bool adds = result.empty() && mode != 2;
      EditBuffer buffer(session + line(current) + audio + line(current));
      EXPECT_EQ(sdpModifications::sdpReplaceMode(buffer.data(), mode, 1), 0);
      buffer.expect(session + line(kept) + (adds ? line(requested) : "") + audio + line(kept),
                    std::string(current) + " and " + requested);
    }
  }
}

TEST(ReplaceMode, TracesEachStep) {
  TraceCapture trace;
  EditBuffer buffer(session + sr + audio + video + ia);
  EXPECT_EQ(sdpModifications::sdpReplaceMode(buffer.data(), 4, 64), 0);
  buffer.expect(session + ia + audio + ia + video + ia);
  EXPECT_EQ(trace.takeLines(),
            (Lines{entering("inactive"), enterChange, change("sendrecv", "inactive", "inactive"),
                   enteringMedia("inactive", "audio"), enteringMedia("inactive", "video"), enterChange,
                   applied("inactive", 1, 0)}));

  // The session's is passed over and one is added; media lines are never counted.
  EditBuffer other(session + so + audio + ro);
  EXPECT_EQ(sdpModifications::sdpReplaceMode(other.data(), 1, 1), 0);
  other.expect(session + so + so + audio + ia);
  EXPECT_EQ(trace.takeLines(),
            (Lines{entering("sendonly"), enterChange, enteringMedia("sendonly", "audio"), enterChange,
                   change("recvonly", "sendonly", "inactive"), applied("sendonly", 0, 1)}));

  EditBuffer third(session + audio);
  EXPECT_EQ(sdpModifications::sdpReplaceMode(third.data(), 2, 2), 0);
  third.expect(session + audio);
  EXPECT_EQ(trace.takeLines(),
            (Lines{entering("recvonly"), enteringMedia("recvonly", "video"), applied("recvonly", 0, 0)}));
}

// Deliberate: sendrecv is taken for granted, whatever the text says.
TEST(ReplaceMode, SendrecvChangesNothing) {
  TraceCapture trace;
  for (const std::string& text : {session + ia + audio + so, std::string()}) {
    EditBuffer buffer(text);
    EXPECT_EQ(sdpModifications::sdpReplaceMode(buffer.data(), 3, 64), 0);
    buffer.expect(text);
    EXPECT_EQ(trace.takeLines(), (Lines{entering("sendrecv"), {8, 4, "Not valid change to sendrecv"}}));
  }
}

TEST(ReplaceMode, AnotherModeIsRefused) {
  TraceCapture trace;
  for (const std::uint8_t mode : std::initializer_list<std::uint8_t>{0, 5, 255}) {
    EditBuffer buffer(session + audio);
    EXPECT_EQ(sdpModifications::sdpReplaceMode(buffer.data(), mode, 64), 1);
    buffer.expect(session + audio);
    EXPECT_EQ(
        trace.takeLines(),
        (Lines{{4, 3, "sdpReplaceMode(): Unsupported mode (" + std::to_string(mode) + ") found. Exiting."}}));
  }
}

TEST(ReplaceMode, WithoutMediaThereIsNothingToDo) {
  TraceCapture trace;
  for (const std::string& text : {session + so, std::string(), audio, "i=m=audio\r\n" + so}) {
    EditBuffer buffer(text);
    EXPECT_EQ(sdpModifications::sdpReplaceMode(buffer.data(), 4, 64), 0);
    buffer.expect(text);
    EXPECT_EQ(trace.takeLines(),
              (Lines{entering("inactive"),
                     {8, 4, "sdpReplaceMode(): No media lines are present to the SDP message. Exiting."}}));
  }
}

TEST(ReplaceMode, NeedsAText) {
  const TraceLine unusable{4, 3,
                           "sdpReplaceMode(): The SDP buffer is null or holds no end of text. Exiting."};
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpReplaceMode(nullptr, 1, 64), 1);
  EXPECT_EQ(trace.takeLines(), (Lines{entering("sendonly"), unusable}));
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(sdpModifications::sdpReplaceMode(text.data(), 1, 64), 1);
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(), (Lines{entering("sendonly"), unusable}));
}

constexpr std::size_t full = EditBuffer::capacity - 1;  // characters of the longest text
constexpr std::size_t lineLength = 12;

/// A body of that many characters: the session, one audio section.
std::string bodyOf(std::size_t length) { return paddedTo(length, session + audio); }

std::string withSessionLine(std::string body) { return body.insert(session.size(), so); }

TEST(ReplaceMode, ASessionLineFitsOrIsRefused) {
  for (const std::size_t spare : {lineLength - 1, lineLength, lineLength + 1}) {
    const std::string before = bodyOf(full - spare);
    EditBuffer buffer(before);
    TraceCapture trace;
    const bool fits = spare >= lineLength;
    EXPECT_EQ(sdpModifications::sdpReplaceMode(buffer.data(), 1, 2), fits ? 0 : 1) << spare;
    buffer.expect(fits ? withSessionLine(before) : before);
    const Lines wanted =
        fits
            ? Lines{entering("sendonly"), enteringMedia("sendonly", "video"), applied("sendonly", 0, 1)}
            : Lines{
                  entering("sendonly"),
                  {8, 4,
                   "sdpReplaceMode(): Not enough room to add a=sendonly line at the session level. Exiting."}};
    EXPECT_EQ(trace.takeLines(), wanted) << spare;
  }
}

// Deliberate: a media line that does not fit is left out without a word.
TEST(ReplaceMode, AMediaLineFitsOrIsLeftOut) {
  for (const std::size_t spare : {lineLength - 1, lineLength, lineLength + 1}) {
    const std::string before = bodyOf(full - spare);
    EditBuffer buffer(before);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::sdpReplaceMode(buffer.data(), 2, 1), 0) << spare;
    buffer.expect(spare >= lineLength ? before + ro : before);
    EXPECT_EQ(trace.takeLines(),
              (Lines{entering("recvonly"), enteringMedia("recvonly", "audio"), applied("recvonly", 0, 0)}));
  }
}

TEST(ReplaceMode, WhatFitsBehindASessionLineIsAdded) {
  for (const std::size_t spare : {2 * lineLength - 1, 2 * lineLength, 2 * lineLength + 1}) {
    const std::string before = bodyOf(full - spare);
    EditBuffer buffer(before);
    EXPECT_EQ(sdpModifications::sdpReplaceMode(buffer.data(), 1, 1), 0) << spare;
    buffer.expect(withSessionLine(before) + (spare >= 2 * lineLength ? so : ""));
  }
}

TEST(ReplaceMode, AFullTextIsChangedInPlace) {
  const std::string before = paddedTo(full, session + sr + audio + sr);
  std::string after = before;
  after.replace(session.size(), so.size(), so);
  after.replace(session.size() + so.size() + audio.size(), so.size(), so);
  EditBuffer buffer(before);
  EXPECT_EQ(sdpModifications::sdpReplaceMode(buffer.data(), 1, 1), 0);
  buffer.expect(after);
}

TEST(ReplaceMode, ManySectionsFillTheText) {
  std::string before = lfSession;
  const std::string section = "m=audio\n";
  while (before.size() + section.size() <= 20000) before += section;
  // The lines go to the first sections, as many as there is room for.
  const std::size_t fitting = (full - before.size()) / lineLength;
  std::string after = lfSession;
  for (std::size_t i = 0; i < (before.size() - lfSession.size()) / section.size(); ++i) {
    after += section + (i < fitting ? ro : "");
  }
  EditBuffer buffer(before);
  EXPECT_EQ(sdpModifications::sdpReplaceMode(buffer.data(), 2, 64), 0);
  buffer.expect(after);
}

TEST(ChangeMode, IsWhatCurrentAndRequestHaveInCommon) {
  std::vector<std::string> all(std::begin(words), std::end(words));
  all.insert(all.end(), {"", "confrnce", "send", "SENDRECV", "xxxxxxxxxxxx"});
  for (const std::string& current : all) {
    for (const std::string& requested : all) {
      char newMode[12];
      std::memset(newMode, '#', sizeof newMode);
      TraceCapture trace;
      const std::string what = current + " and " + requested;
      const bool any = current == "sendrecv";
      const std::string result = any ? requested.substr(0, 9) : common(current, requested);
      const bool due = any || !result.empty();
      EXPECT_EQ(sdpModifications::changeConnectionMode(current.c_str(), requested.c_str(), newMode),
                due ? 1 : 0)
          << what;
      if (due) {
        EXPECT_EQ(newMode, result) << what;
        EXPECT_EQ(trace.lines().size(), 2U) << what;
      } else {
        EXPECT_EQ(newMode[0], '#') << what;
        EXPECT_EQ(trace.lines().size(), 1U) << what;
      }
      EXPECT_EQ(trace.lines().front(), enterChange);
      EXPECT_EQ(newMode[10], '#');
    }
  }
}

TEST(ChangeMode, LooksAtTheFirstEightCharacters) {
  char newMode[10] = "unchanged";
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::changeConnectionMode("sendonly\r\nm=x", "recvonly\r\n", newMode), 1);
  EXPECT_STREQ(newMode, "inactive");
  EXPECT_EQ(trace.takeLines(), (Lines{enterChange, change("sendonly", "recvonly", "inactive")}));
  EXPECT_EQ(sdpModifications::changeConnectionMode("sendrec", "recvonly", newMode), 0);
  EXPECT_STREQ(newMode, "inactive");
  EXPECT_EQ(trace.takeLines(), Lines{enterChange});
}

// Deliberate: behind sendrecv nine characters of the request are handed on.
TEST(ChangeMode, NineCharactersOfARequestAreHandedOn) {
  char newMode[10] = "unchanged";
  EXPECT_EQ(sdpModifications::changeConnectionMode("sendrecvonly", "inactive\r\n", newMode), 1);
  EXPECT_STREQ(newMode, "inactive\r");
}

TEST(ChangeMode, NullTextsAskForNothing) {
  char newMode[10] = "unchanged";
  EXPECT_EQ(sdpModifications::changeConnectionMode(nullptr, "inactive", newMode), 0);
  EXPECT_EQ(sdpModifications::changeConnectionMode("sendonly", nullptr, newMode), 0);
  EXPECT_EQ(sdpModifications::changeConnectionMode("sendrecv", nullptr, newMode), 0);
  EXPECT_EQ(sdpModifications::changeConnectionMode("sendrecv", "inactive", nullptr), 0);
  EXPECT_STREQ(newMode, "unchanged");
}

/// Applies a direction from the LF at `from` on.
unsigned short setMode(EditBuffer& buffer, std::size_t from, const char* media, const char* mode) {
  char saved[1] = {};
  return sdpModifications::setMediaConnectionMode(buffer.data(), saved, buffer.data() + from, media, mode);
}

TEST(MediaMode, IsAppliedFromTheFirstMLineOn) {
  const std::string before = session + audio + sr + video + audio + sr + audio;
  TraceCapture trace;
  EditBuffer buffer(before);
  EXPECT_EQ(setMode(buffer, session.size() - 1, "audio", "recvonly"), 0);
  buffer.expect(session + audio + ro + video + audio + ro + audio + ro);
  EXPECT_EQ(trace.takeLines(), (Lines{enteringMedia("recvonly", "audio"), enterChange,
                                      change("sendrecv", "recvonly", "recvonly"), enterChange,
                                      change("sendrecv", "recvonly", "recvonly")}));

  EditBuffer later(before);  // at the m-line itself: its LF is not seen any more
  EXPECT_EQ(setMode(later, session.size(), "audio", "recvonly"), 0);
  later.expect(session + audio + sr + video + audio + ro + audio + ro);

  EditBuffer behind(before);
  EXPECT_EQ(setMode(behind, before.size(), "audio", "recvonly"), 0);
  behind.expect(before);
}

TEST(MediaMode, EveryWordIsAddedWhereThereIsNone) {
  for (const char* const word : words) {
    EditBuffer buffer(session + audio + video);
    EXPECT_EQ(setMode(buffer, session.size() - 1, "audio", word), 0);
    buffer.expect(session + audio + line(word) + video);
  }
}

TEST(MediaMode, AnyMediaNameWillDo) {
  const std::string text = "m=text 5004 RTP/AVP 98\r\n";
  EditBuffer buffer(session + audio + text + sr);
  EXPECT_EQ(setMode(buffer, session.size() - 1, "text", "inactive"), 0);
  buffer.expect(session + audio + text + ia);
}

TEST(MediaMode, ALongMediaNameIsComparedWhole) {
  const std::string name(70, 'n');
  const std::string other = name.substr(0, 69) + "x";
  const std::string before =
      session + "m=" + other + " 1 x 0\r\n" + "m=" + name + " 1 x 0\r\n" + "m=" + name.substr(0, 65) + "\r\n";
  EditBuffer buffer(before);
  EXPECT_EQ(setMode(buffer, session.size() - 1, name.c_str(), "inactive"), 0);
  buffer.expect(session + "m=" + other + " 1 x 0\r\n" + "m=" + name + " 1 x 0\r\n" + ia +
                "m=" + name.substr(0, 65) + "\r\n");
}

TEST(MediaMode, ALineThatDoesNotFitIsLeftOut) {
  for (const std::size_t spare : {lineLength - 1, lineLength, lineLength + 1}) {
    const std::string before = bodyOf(full - spare);
    EditBuffer buffer(before);
    EXPECT_EQ(setMode(buffer, session.size() - 1, "audio", "inactive"), 0) << spare;
    buffer.expect(spare >= lineLength ? before + ia : before);
  }
}

TEST(MediaMode, WrongArgumentsAreRefused) {
  const std::string before = session + audio + sr;
  EditBuffer buffer(before);
  char saved[1] = {};
  char* const text = buffer.data();
  EXPECT_EQ(sdpModifications::setMediaConnectionMode(nullptr, saved, text, "audio", "inactive"), 1);
  EXPECT_EQ(sdpModifications::setMediaConnectionMode(text, saved, nullptr, "audio", "inactive"), 1);
  EXPECT_EQ(sdpModifications::setMediaConnectionMode(text, saved, text, nullptr, "inactive"), 1);
  EXPECT_EQ(sdpModifications::setMediaConnectionMode(text, saved, text, "audio", nullptr), 1);
  EXPECT_EQ(setMode(buffer, before.size() + 1, "audio", "inactive"), 1);
  EXPECT_EQ(sdpModifications::setMediaConnectionMode(text + 10, saved, text, "audio", "inactive"), 1);
  buffer.expect(before);
  EXPECT_EQ(sdpModifications::setMediaConnectionMode(text, nullptr, text, "audio", "inactive"), 0);
  buffer.expect(session + audio + ia);
  std::vector<char> unterminated = unterminatedBuffer();
  EXPECT_EQ(sdpModifications::setMediaConnectionMode(unterminated.data(), saved, unterminated.data(), "audio",
                                                     "inactive"),
            1);
  EXPECT_EQ(unterminated, unterminatedBuffer());
}

}  // namespace
