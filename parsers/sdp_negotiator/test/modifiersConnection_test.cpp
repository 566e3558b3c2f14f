#include <random>

#include "modifiersTestSupport.h"
#include "traceCapture.h"

// The connection address, media names and the removal of video.

namespace {

using Lines = std::vector<TraceLine>;

TraceLine unusable(const std::string& operation) {
  return {4, 3, operation + "(): The SDP buffer is null or holds no end of text. Exiting."};
}

TraceLine enteringIp(const std::string& ip) {
  return {8, 4, "Entering sdpReplaceCxIP() method. ip=[" + ip + "]"};
}
TraceLine changedIp(const std::string& ip) {
  return {8, 4, "The IP address has been changed to " + ip + ". Exiting."};
}
const TraceLine malformed{4, 3, "The new IP address is malformed. Exiting..."};
const TraceLine noConnection{4, 3, "No <cline> found. Exiting."};
const TraceLine noConnectionEnd{4, 3, "Bad termination of <cline>. Exiting."};
const TraceLine noConnectionRoom{4, 3,
                                 "sdpReplaceCxIP(): The new c-line does not fit the SDP buffer. Exiting."};

const std::string longestIp = "2001:db8:1111:2222:3333:4444:5555:6666";

struct Connection {
  const char* name;
  std::string before;
  std::string ip;
  std::string after;
};

const Connection connections[] = {
    {"same length", "v=0\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n", "192.0.2.7",
     "v=0\r\nc=IN IP4 192.0.2.7\r\nt=0 0\r\n"},
    {"shorter", "v=0\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n", "1.2.3.4", "v=0\r\nc=IN IP4 1.2.3.4\r\nt=0 0\r\n"},
    {"longer", "v=0\r\nc=IN IP4 1.2.3.4\r\nt=0 0\r\n", "192.0.2.100",
     "v=0\r\nc=IN IP4 192.0.2.100\r\nt=0 0\r\n"},
    {"IPv6", "v=0\r\nc=IN IP4 1.2.3.4\r\nt=0 0\r\n", "2001:db8::1",
     "v=0\r\nc=IN IP6 2001:db8::1\r\nt=0 0\r\n"},
    {"IPv6 to IPv4", "v=0\r\nc=IN IP6 " + longestIp + "\r\n", "0.0.0.0", "v=0\r\nc=IN IP4 0.0.0.0\r\n"},
    {"an IPv4-mapped address is IPv6", "v=0\nc=IN IP4 1.2.3.4\n", "::ffff:192.0.2.1",
     "v=0\nc=IN IP6 ::ffff:192.0.2.1\r\n"},
    {"only the first", "v=0\r\nc=IN IP4 1.2.3.4\r\nm=audio 1 x 0\r\nc=IN IP4 5.6.7.8\r\n",
     "::", "v=0\r\nc=IN IP6 ::\r\nm=audio 1 x 0\r\nc=IN IP4 5.6.7.8\r\n"},
    {"of the first medium", "v=0\r\nm=audio 1 x 0\r\nc=IN IP4 5.6.7.8\r\nm=video 1 x 0\r\nc=x\r\n", "::1",
     "v=0\r\nm=audio 1 x 0\r\nc=IN IP6 ::1\r\nm=video 1 x 0\r\nc=x\r\n"},
    {"all that stands on the line goes", "c=IN IP4 224.2.1.1/127/3 x\r\nt=0 0\r\n", "1.2.3.4",
     "c=IN IP4 1.2.3.4\r\nt=0 0\r\n"},
    {"a line of nothing else", "v=0\nc=\nt=0 0\n", "1.2.3.4", "v=0\nc=IN IP4 1.2.3.4\r\nt=0 0\n"},
    {"an overlong address", "v=0\nc=IN IP4 " + std::string(9000, '1') + "\n", "1.2.3.4",
     "v=0\nc=IN IP4 1.2.3.4\r\n"},
    // Deliberate: a c= in a value is taken for the c-line.
    {"in a value", "v=0\r\ns=abc=d\r\nc=IN IP4 5.6.7.8\r\n", "1.2.3.4",
     "v=0\r\ns=abc=IN IP4 1.2.3.4\r\nc=IN IP4 5.6.7.8\r\n"},
};

TEST(ReplaceConnection, ChangesTheFirstConnectionLine) {
  for (const Connection& each : connections) {
    EditBuffer buffer(each.before);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::sdpReplaceCxIP(buffer.data(), each.ip.c_str()), 0) << each.name;
    buffer.expect(each.after, each.name);
    EXPECT_EQ(trace.takeLines(), (Lines{enteringIp(each.ip), changedIp(each.ip)})) << each.name;
  }
}

TEST(ReplaceConnection, RefusesWhatIsNoAddress) {
  TraceCapture trace;
  EditBuffer buffer(session + audio);
  for (const std::string& ip :
       {std::string(), std::string("192.0.2"), std::string("192.0.2.1/24"), std::string("192.0.2.01"),
        std::string(" 192.0.2.1"), std::string("::1%eth0"), std::string("host.example"),
        std::string("%s%n%s"), std::string("1.2.3.4\r\na=x"), std::string(5000, '1')}) {
    EXPECT_EQ(sdpModifications::sdpReplaceCxIP(buffer.data(), ip.c_str()), 1) << ip;
    EXPECT_EQ(trace.takeLines(), (Lines{enteringIp(ip), malformed})) << ip;
  }
  EXPECT_EQ(sdpModifications::sdpReplaceCxIP(buffer.data(), nullptr), 1);
  EXPECT_EQ(trace.takeLines(), (Lines{enteringIp("(null)"), malformed}));
  buffer.expect(session + audio);
}

TEST(ReplaceConnection, NeedsAConnectionLineWithItsEnd) {
  const std::pair<std::string, TraceLine> cases[] = {{"", noConnection},
                                                     {"v=0\r\nC=IN IP4 1.2.3.4\r\n", noConnection},
                                                     {"v=0\r\nc", noConnection},
                                                     {"v=0\r\nc=", noConnectionEnd},
                                                     {"v=0\r\nc=IN IP4 5.6.7.8\r", noConnectionEnd}};
  for (const auto& [text, refusal] : cases) {
    EditBuffer buffer(text);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::sdpReplaceCxIP(buffer.data(), "1.2.3.4"), 1) << text;
    buffer.expect(text);
    EXPECT_EQ(trace.takeLines(), (Lines{enteringIp("1.2.3.4"), refusal})) << text;
  }
}

TEST(ReplaceConnection, FitsWithItsNulOrIsRefused) {
  const std::string line = "c=IN IP6 " + longestIp + "\r\n";
  const std::string head = "v=0\r\n";
  const std::string old = "c=IN IP4 1.2.3.4\r\n";
  for (const std::size_t length : {20478U, 20479U, 20480U}) {  // of the result
    const std::string before = paddedTo(length - line.size() + old.size(), head + old);
    EditBuffer buffer(before);
    TraceCapture trace;
    const bool fits = length < EditBuffer::capacity;
    EXPECT_EQ(sdpModifications::sdpReplaceCxIP(buffer.data(), longestIp.c_str()), fits ? 0 : 1);
    buffer.expect(fits ? head + line + before.substr(head.size() + old.size()) : before);
    EXPECT_EQ(trace.takeLines(),
              (Lines{enteringIp(longestIp), fits ? changedIp(longestIp) : noConnectionRoom}));
  }
}

TEST(ReplaceConnection, NeedsAText) {
  TraceCapture trace;
  const Lines traces{enteringIp("::"), unusable("sdpReplaceCxIP")};
  EXPECT_EQ(sdpModifications::sdpReplaceCxIP(nullptr, "::"), 1);
  EXPECT_EQ(trace.takeLines(), traces);
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(sdpModifications::sdpReplaceCxIP(text.data(), "::"), 1);
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(), traces);
}

TEST(MediaName, IsThatOfABit) {
  const std::pair<int, std::string> names[] = {{1, "audio"}, {2, "video"},        {4, "message"},
                                               {8, "image"}, {16, "application"}, {32, "text"}};
  for (const auto& [type, name] : names) {
    for (const std::size_t size :
         {std::size_t{1}, std::size_t{4}, name.size(), name.size() + 1, name.size() + 9}) {
      std::string out(size + 4, '#');  // guards behind
      EXPECT_EQ(sdpModifications::getMediaName(type, out.data(), static_cast<int>(size)), 0);
      EXPECT_STREQ(out.c_str(), name.substr(0, size - 1).c_str());
      EXPECT_EQ(out.substr(size), "####");
    }
  }
}

TEST(MediaName, WithoutRoomIsNotWritten) {
  char out = '#';
  for (const int size : {0, -1, -2147483647}) EXPECT_EQ(sdpModifications::getMediaName(1, &out, size), 0);
  EXPECT_EQ(out, '#');
  EXPECT_EQ(sdpModifications::getMediaName(1, nullptr, 24), 0);
}

TEST(MediaName, OfAnotherValueIsUnknown) {
  for (const int type : {0, -1, 3, 63, 64, 2147483647}) {
    std::string out = "####";
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::getMediaName(type, out.data(), 4), 1);
    EXPECT_EQ(out, "####");
    EXPECT_EQ(trace.takeLines(), (Lines{{4, 3, "mediaType=" + std::to_string(type) + " not supported"}}));
  }
}

Lines removal(bool allMedia, int count) {
  return {
      {8, 4, std::string("Entering sdpRemoveVideoMedia(AllMedia=") + (allMedia ? "Yes" : "No") + ") method."},
      {8, 4, "Found " + std::to_string(count) + " m=video lines: port(s) disabled and line(s) removed"}};
}

const std::string vid = "m=video 5006 RTP/AVP 96\r\n";
const std::string off = "m=video 0 RTP/AVP 96\r\n";
const std::string c = "c=IN IP4 192.0.2.9\r\n";  // 20 characters
const std::string attributes = "b=AS:384\r\na=rtpmap:96 VP8/90000\r\na=fmtp:96 m=1\r\n";

struct Removal {
  const char* name;
  std::string before;
  std::string disabled;  ///< what becomes of it
  std::string removed;   ///< what becomes of it when the sections' other lines go
  int count;
};

const Removal removals[] = {
    {"connection right behind", session + audio + vid + c + attributes,
     session + audio + off + c + attributes, session + audio + off + c, 1},
    {"audio behind", session + vid + c + attributes + audio, session + off + c + attributes + audio,
     session + off + c + audio, 1},
    {"only a connection", session + vid + c + audio, session + off + c + audio, session + off + c + audio, 1},
    {"two sections", session + vid + c + attributes + vid + c + "a=x\r\n",
     session + off + c + attributes + off + c + "a=x\r\n", session + off + c + off + c, 2},
    {"bare line feeds", "v=0\nm=video 5 x 6\nc=x\na=y\nm=audio 7 x 8\na=z\n",
     "v=0\nm=video 0 x 6\nc=x\na=y\nm=audio 7 x 8\na=z\n", "v=0\nm=video 0 x 6\nc=x\nm=audio 7 x 8\na=z\n",
     1},
    {"a port of 0", session + off + c + attributes, session + off + c + attributes, session + off + c, 1},
    {"no video", session + audio + attributes, session + audio + attributes, session + audio + attributes, 0},
    {"video in a value and in another case", "v=0\r\ns=m=video 1 x 0\r\nm=Video 1 x 0\r\na=x\r\n",
     "v=0\r\ns=m=video 1 x 0\r\nm=Video 1 x 0\r\na=x\r\n",
     "v=0\r\ns=m=video 1 x 0\r\nm=Video 1 x 0\r\na=x\r\n", 0},
    {"an m-line without LF", session + vid + c + "m=video 5006 RTP/AVP 96",
     session + off + c + "m=video 5006 RTP/AVP 96", session + off + c + "m=video 5006 RTP/AVP 96", 1},
    {"an m-line that ends the text", session + vid, session + off, session + off, 1},
    {"an empty text", "", "", "", 0},
    // Without a later c-line there is nothing to copy, and the rest of the section can go.
    {"no connection", session + vid + attributes, session + off + attributes, session + off, 1},
    {"no connection, audio behind", session + vid + attributes + audio, session + off + attributes + audio,
     session + off + audio, 1},
    {"a connection without LF", session + vid + "a=x\r\nc=IN IP4 192.0.2.9",
     session + off + "a=x\r\nc=IN IP4 192.0.2.9", session + off, 1},
    {"a c= in a value", session + vid + "i=c=x\r\n", session + off + "i=c=x\r\n", session + off, 1},
    // Deliberate: the next c-line is copied over whatever follows the m-line, and stays where it stood as well.
    {"a line of its length in between", session + vid + "a=rtpmap:96 VP8/90\r\n" + c + attributes,
     session + off + c + c + attributes, session + off + c, 1},
    {"a shorter line in between", session + vid + "a=x\r\n" + c + "a=y\r\n" + audio,
     session + off + c + "2.9\r\na=y\r\n" + audio, session + off + c + audio, 1},
    {"a longer line in between", session + vid + "a=0123456789abcdefghijklmnopq\r\n" + c + audio,
     session + off + c + "ijklmnopq\r\n" + c + audio, session + off + c + audio, 1},
    {"the connection of a later section", session + vid + "a=x\r\nm=audio 7 RTP/AVP 0\r\n" + c,
     session + off + c + "VP 0\r\n" + c, session + off + c, 1},
    {"of a later section behind a third",
     session + vid + "a=x\r\nm=audio 7 RTP/AVP 0\r\n" + c + "m=text 9 x 0\r\na=z\r\n",
     session + off + c + "VP 0\r\n" + c + "m=text 9 x 0\r\na=z\r\n",
     session + off + c + "m=text 9 x 0\r\na=z\r\n", 1},
    {"the connection of a second video section", session + vid + vid + c, session + off + c + " 96\r\n" + c,
     session + off + c, 1},
    {"a video section that begins where the copy ends",
     "v=0\nm=video 5 x 0\nxxxxxxxxm=video 7 x 0\na=y\nc=12345\na=z\n",
     "v=0\nm=video 0 x 0\nc=12345\nm=video 0 x 0\nc=12345\n345\na=z\n",
     "v=0\nm=video 0 x 0\nc=12345\nm=video 0 x 0\nc=12345\n", 2},
    {"one connection for all",
     "v=0\nm=video 5 x 0\na=111\nm=video 6 x 0\na=222\nm=audio 7 x 0\nc=456\nm=video 8 x 0\n",
     "v=0\nm=video 0 x 0\nc=456\nm=video 0 x 0\nc=456\nm=audio 7 x 0\nc=456\nm=video 0 x 0\n",
     "v=0\nm=video 0 x 0\nc=456\nm=video 0 x 0\nc=456\nm=audio 7 x 0\nc=456\nm=video 0 x 0\n", 3},
    // Deliberate: a medium is recognised by its beginning, a first line is not seen, and a port that begins with
    // the new one stays.
    {"a longer media name", session + "m=videoconf 5 x 0\r\na=y\r\n",
     session + "m=videoconf 0 x 0\r\na=y\r\n", session + "m=videoconf 0 x 0\r\n", 1},
    {"video at the text's start", vid + "a=y\r\n" + vid + "a=z\r\n", vid + "a=y\r\n" + off + "a=z\r\n",
     vid + "a=y\r\n" + off, 1},
    {"a port that begins with 0", session + "m=video 0123 x 0\r\n", session + "m=video 0123 x 0\r\n",
     session + "m=video 0123 x 0\r\n", 1},
    {"no port", session + "m=video\r\na=y\r\n", session + "m=video\r\na=y\r\n", session + "m=video\r\n", 1},
};

void expectRemoval(const std::string& before, bool allMedia, const std::string& after, int count,
                   const std::string& name) {
  EditBuffer buffer(before);
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpRemoveVideoMedia(buffer.data(), allMedia), 0) << name;
  buffer.expect(after, name);
  EXPECT_EQ(trace.takeLines(), removal(allMedia, count)) << name;
}

TEST(RemoveVideo, DisablesEachVideoLineAndTakesTheOtherLinesOut) {
  for (const Removal& each : removals) {
    expectRemoval(each.before, false, each.disabled, each.count, each.name);
    expectRemoval(each.before, true, each.removed, each.count, each.name);
  }
}

TEST(RemoveVideo, OfAFullBuffer) {
  const std::string before = paddedTo(EditBuffer::capacity - 1, session + vid + c);
  expectRemoval(before, false, session + off + before.substr(session.size() + vid.size()), 1, "disabled");
  expectRemoval(before, true, session + off + c, 1, "removed");
  // A c-line at the very end is copied as far up as it is long, and no further.
  const std::string last = "c=" + std::string(8000, 'x') + "\n";
  const std::string behind = paddedTo(EditBuffer::capacity - 1 - last.size(), session + vid) + last;
  const std::string rest = behind.substr(session.size() + vid.size() + last.size());
  expectRemoval(behind, false, session + off + last + rest, 1, "disabled");
  expectRemoval(behind, true, session + off + last, 1, "removed");
}

/// What becomes of a text whose video m-lines all have a port of one digit.
std::string modelOfRemoval(std::string text, bool allMedia, int& count) {
  count = 0;
  for (std::size_t at = text.find("\nm=video"); at != std::string::npos;
       at = text.find("\nm=video", at + 1)) {
    const std::size_t lf = text.find('\n', at + 1);
    if (lf == std::string::npos) break;
    text[at + 9] = '0';
    std::size_t begin = lf + 1;
    const std::size_t found = text.find("\nc=", lf);
    const std::size_t end = found == std::string::npos ? found : text.find('\n', found + 1);
    if (end != std::string::npos) {
      const std::string line = text.substr(found + 1, end - found);
      text.replace(begin, line.size(), line);
      begin += line.size();
    }
    const std::size_t next = text.find("\nm=", begin - 1);
    if (allMedia) text.erase(begin, next == std::string::npos ? next : next + 1 - begin);
    ++count;
  }
  return text;
}

TEST(RemoveVideo, OfRandomTextsStaysInsideTheText) {
  const std::string pieces[] = {"m=video 5 x\n",
                                "\nm=video 5 x\r\n",
                                "m=audio 7 y\n",
                                "c=IN IP4 1\r\n",
                                "c=\n",
                                "\nc=abcdefghijklmnopqrstuvwxyz\n",
                                "a=x\n",
                                "\n",
                                "\r",
                                "c=",
                                "m=",
                                "a=m=",
                                "\xFF\n"};
  std::mt19937 random(4566);
  for (int round = 0; round < 2000; ++round) {
    std::string before;
    for (std::size_t i = random() % 14; i != 0; --i) before += pieces[random() % std::size(pieces)];
    for (const bool allMedia : {false, true}) {
      int count = 0;
      const std::string after = modelOfRemoval(before, allMedia, count);
      expectRemoval(before, allMedia, after, count, before);
    }
    if (HasFailure()) return;
  }
}

TEST(RemoveVideo, WithoutATextFindsNone) {
  TraceCapture trace;
  for (const bool allMedia : {false, true}) {
    Lines traces = removal(allMedia, 0);
    traces.insert(traces.begin() + 1, unusable("sdpRemoveVideoMedia"));
    EXPECT_EQ(sdpModifications::sdpRemoveVideoMedia(nullptr, allMedia), 0);
    EXPECT_EQ(trace.takeLines(), traces);
    std::vector<char> text = unterminatedBuffer();
    EXPECT_EQ(sdpModifications::sdpRemoveVideoMedia(text.data(), allMedia), 0);
    EXPECT_EQ(text, unterminatedBuffer());
    EXPECT_EQ(trace.takeLines(), traces);
  }
}

}  // namespace
