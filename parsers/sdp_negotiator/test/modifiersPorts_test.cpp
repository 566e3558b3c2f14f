#include <initializer_list>

#include "modifiersTestSupport.h"
#include "traceCapture.h"

// The ports of m-lines.

namespace {

using M = sdpModifications;
using Lines = std::vector<TraceLine>;

constexpr auto any = M::MEDIA_SECURITY_ANY;
constexpr auto plain = M::MEDIA_SECURITY_NON_SECURE;
constexpr auto secure = M::MEDIA_SECURITY_SECURE;

const TraceLine unusable{4, 3, "sdpSetMediaPort(): The SDP buffer is null or holds no end of text. Exiting."};

TraceLine entering(unsigned int port, const std::string& name, const std::string& version,
                   const std::string& security) {
  return {8, 4,
          "Entering sdpSetMediaPort(): set port=" + std::to_string(port) + " on all m=" + name +
              " lines with address type=" + version + ", which are " + security};
}
TraceLine enteringAny(unsigned int port) {
  return entering(port, "<any>", "ANY", "either secure or non-secure");
}
TraceLine exiting(unsigned int port, int count) {
  return {8, 4,
          "Exiting sdpSetMediaPort() : set port=" + std::to_string(port) + " on " + std::to_string(count) +
              " m= line(s)"};
}
TraceLine failed(unsigned int port) {
  return {4, 3, "sdpSetMediaPort(): error while trying to set media connection port " + std::to_string(port)};
}
TraceLine illegal(unsigned int port) {
  return {4, 3, "setMediaLinePort(): illegal connection port " + std::to_string(port)};
}

// One section of each kind; the session is of IPv4, the section 3 of IPv6.
const std::pair<std::string, std::string> sections[] = {
    {"m=audio 5004", " RTP/AVP 0\r\na=note:RTP/SAVP\r\n"},
    {"m=video 5006", " RTP/SAVP 96\r\n"},
    {"m=video 5008", " RTP/AVPF 96\r\nc=IN IP4 192.0.2.4\r\n"},
    {"m=video 5010", " RTP/SAVPF 96\r\nb=AS:384\r\nc=IN IP6 2001:db8::1\r\n"},
    {"m=message 5012", " TCP/MSRP *\r\n"},
    {"m=text 5014", " RTP/AVP 98\r\nc=IN X25 192.0.2.5\r\n"},  // of no version: the session's counts
    {"m=image 5016", " udptl t38\r\n"},
    {"m=application 5018", " udp wb\r\n"},
};

using Numbers = std::vector<std::size_t>;
const Numbers everySection = {0, 1, 2, 3, 4, 5, 6, 7};

/// The body with a port in the sections of some numbers.
std::string body(const Numbers& changed = {}, const std::string& port = "") {
  std::string text = session;
  for (std::size_t i = 0; i < std::size(sections); ++i) {
    const auto& [line, rest] = sections[i];
    const bool set = std::find(changed.begin(), changed.end(), i) != changed.end();
    text += (set ? line.substr(0, line.find(' ') + 1) + port : line) + rest;
  }
  return text;
}

struct Filter {
  int mediaType;
  eIPAddressVersion version;
  M::eMediaSecurityType security;
  Numbers sections;
};

const Filter filters[] = {
    {-1, IP_VERSION_UNKNOWN, any, everySection},
    {1, IP_VERSION_UNKNOWN, any, {0}},
    {2, IP_VERSION_UNKNOWN, any, {1, 2, 3}},
    {4, IP_VERSION_UNKNOWN, any, {4}},
    {8, IP_VERSION_UNKNOWN, any, {6}},
    {16, IP_VERSION_UNKNOWN, any, {7}},
    {32, IP_VERSION_UNKNOWN, any, {5}},
    {2, IP_VERSION_UNKNOWN, secure, {1, 3}},
    {2, IP_VERSION_UNKNOWN, plain, {2}},
    {1, IP_VERSION_UNKNOWN, secure, {}},
    {-1, IP_VERSION_UNKNOWN, secure, {1, 3}},
    {-1, IP_VERSION_UNKNOWN, plain, {0, 2, 4, 5, 6, 7}},
    {-1, IP_VERSION_4, any, {0, 1, 2, 4, 5, 6, 7}},
    {-1, IP_VERSION_6, any, {3}},
    {2, IP_VERSION_4, secure, {1}},
    {2, IP_VERSION_6, secure, {3}},
    {2, IP_VERSION_6, plain, {}},
};

TEST(MediaPort, IsSetOnTheLinesThatPassEachFilter) {
  const std::pair<unsigned int, std::string> ports[] = {{0, "0"}, {49170, "49170"}, {6000, "6000"}};
  for (const Filter& each : filters) {
    for (const auto& [port, digits] : ports) {
      EditBuffer buffer(body());
      EXPECT_EQ(M::sdpSetMediaPort(buffer.data(), each.mediaType, each.version, each.security, port), 0);
      buffer.expect(body(each.sections, digits), std::to_string(each.mediaType));
    }
  }
}

TEST(MediaPort, TracesFilterAndCount) {
  struct Traced {
    int mediaType;
    eIPAddressVersion version;
    M::eMediaSecurityType security;
    TraceLine first;
    int count;
  };
  const Traced cases[] = {
      {-1, IP_VERSION_UNKNOWN, any, enteringAny(0), 8},
      {2, IP_VERSION_4, plain, entering(0, "video", "IP4", "non-secure"), 1},
      {2, IP_VERSION_6, secure, entering(0, "video", "IP6", "secure"), 1},
      {16, IP_VERSION_UNKNOWN, secure, entering(0, "application", "ANY", "secure"), 0},
  };
  for (const Traced& each : cases) {
    EditBuffer buffer(body());
    TraceCapture trace;
    EXPECT_EQ(M::sdpSetMediaPort(buffer.data(), each.mediaType, each.version, each.security, 0), 0);
    EXPECT_EQ(trace.takeLines(), (Lines{each.first, exiting(0, each.count)}));
  }
}

TEST(MediaPort, NeedsAKnownMedium) {
  const std::pair<int, std::string> cases[] = {{0, "0x0"}, {3, "0x3"}, {64, "0x40"}, {-2, "0xfffffffe"}};
  for (const auto& [type, hex] : cases) {
    EditBuffer buffer(body());
    TraceCapture trace;
    EXPECT_EQ(M::sdpSetMediaPort(buffer.data(), type, IP_VERSION_UNKNOWN, any, 0), 1);
    buffer.expect(body());
    EXPECT_EQ(trace.takeLines(), (Lines{{4, 3, "mediaType=" + std::to_string(type) + " not supported"},
                                        {4, 3, "sdpSetMediaPort(): incorrect mediaType (" + hex + ")"}}));
  }
}

struct Case {
  const char* name;
  std::string before;
  unsigned int port;
  std::string after;
  int count;
  int mediaType = -1;
  eIPAddressVersion version = IP_VERSION_UNKNOWN;
  M::eMediaSecurityType security = any;
};

const std::string lf = "v=0\nc=IN IP6 ::1\n";
const std::string overlong = std::string(9000, '9');

const Case lineCases[] = {
    {"bare line feeds", lf + "m=audio 1 x 0\nm=video 2 y 0\n", 0, lf + "m=audio 0 x 0\nm=video 0 y 0\n", 2},
    {"tabs and doubled blanks", lf + "m=audio\t 1\tx 0\n", 49170, lf + "m=audio\t 49170\tx 0\n", 1},
    {"a last line without LF", lf + "m=audio 1 x 0\nm=video 2 y 0", 0, lf + "m=audio 0 x 0\nm=video 2 y 0",
     1},
    {"m-lines in values", lf + "s=m=audio 1 x 0\na=m=audio 1 x 0\n", 0,
     lf + "s=m=audio 1 x 0\na=m=audio 1 x 0\n", 0},
    {"behind a lone CR", "v=0\rm=audio 1 x 0\n", 0, "v=0\rm=audio 1 x 0\n", 0},
    {"no m-line", lf, 0, lf, 0},
    {"an empty text", "", 0, "", 0},
    {"a port with a count", lf + "m=audio 5004/2 x 0\n", 6000, lf + "m=audio 6000 x 0\n", 1},
    {"a port that is none", lf + "m=audio x x 0\nm=audio -1 x 0\nm=audio 70000 x 0\n", 6000,
     lf + "m=audio 6000 x 0\nm=audio 6000 x 0\nm=audio 6000 x 0\n", 3},
    {"an overlong port", lf + "m=audio " + overlong + " x\n", 6000, lf + "m=audio 6000 x\n", 1},
    {"an overlong name", lf + "m=" + overlong + " 1 x\n", 6000, lf + "m=" + overlong + " 6000 x\n", 1},
    {"bytes above 127", lf + "m=\xFF\x80 \xC3\xBC x\n", 6000, lf + "m=\xFF\x80 6000 x\n", 1},
    {"only what the text had", lf + "m=audio 0 x 0\na=1 2 3\n", 1024, lf + "m=audio 1024 x 0\na=1 2 3\n", 1},
    // Deliberate: a line without a port field, or whose field ends the line, stays and counts.
    {"no port", lf + "m=\nm=audio\nm=audio \r\nm=audio 5004\n", 6000,
     lf + "m=\nm=audio\nm=audio \r\nm=audio 5004\n", 4},
    // Deliberate: a port that begins with the new digits stays and counts.
    {"a longer port with the same digits", lf + "m=audio 50000 x 0\n", 5000, lf + "m=audio 50000 x 0\n", 1},
    {"a port that begins with 0", lf + "m=audio 0123 x 0\n", 0, lf + "m=audio 0123 x 0\n", 1},
    // Deliberate: ports above 65535 are written, seven digits at most.
    {"65536", lf + "m=audio 1 x 0\n", 65536, lf + "m=audio 65536 x 0\n", 1},
    {"seven digits", lf + "m=audio 1 x 0\n", 9999999, lf + "m=audio 9999999 x 0\n", 1},
    {"ten digits", lf + "m=audio 1 x 0\n", 4294967295U, lf + "m=audio 4294967 x 0\n", 1},
    // Deliberate: an m-line at the text's start is not seen, and a medium is recognised by its beginning.
    {"the first line", "m=audio 1 x 0\nm=audio 2 x 0\n", 0, "m=audio 1 x 0\nm=audio 0 x 0\n", 1},
    {"a longer media name", lf + "m=audiox 1 x 0\nm=audi 1 x 0\n", 0, lf + "m=audiox 0 x 0\nm=audi 1 x 0\n",
     1, 1},
    {"a name in another case", lf + "m=Audio 1 x 0\n", 0, lf + "m=Audio 1 x 0\n", 0, 1},
};

const Case filterCases[] = {
    // Deliberate: RTP/SAVP counts wherever it stands on the line.
    {"secure behind the formats", lf + "m=audio 1 x RTP/SAVP\n", 0, lf + "m=audio 0 x RTP/SAVP\n", 1, -1,
     IP_VERSION_UNKNOWN, secure},
    {"secure in a longer word", lf + "m=audio 1 UDP/TLS/RTP/SAVPF 0\n", 0,
     lf + "m=audio 0 UDP/TLS/RTP/SAVPF 0\n", 1, 1, IP_VERSION_UNKNOWN, secure},
    {"secure in another case", lf + "m=audio 1 rtp/savp 0\n", 0, lf + "m=audio 1 rtp/savp 0\n", 0, -1,
     IP_VERSION_UNKNOWN, secure},
    {"secure across lines", lf + "m=audio 1 RTP/\nSAVP\n", 0, lf + "m=audio 0 RTP/\nSAVP\n", 1, -1,
     IP_VERSION_UNKNOWN, plain},
    {"the session's version", lf + "m=audio 1 x 0\n", 0, lf + "m=audio 0 x 0\n", 1, -1, IP_VERSION_6},
    {"not the session's version", lf + "m=audio 1 x 0\n", 0, lf + "m=audio 1 x 0\n", 0, -1, IP_VERSION_4},
    {"no c-line at all", "v=0\nm=audio 1 x 0\n", 0, "v=0\nm=audio 1 x 0\n", 0, -1, IP_VERSION_4},
    {"the c-line of another section", "v=0\nm=audio 1 x 0\nm=video 2 x 0\nc=IN IP4 1.2.3.4\nm=text 3 x 0\n",
     0, "v=0\nm=audio 1 x 0\nm=video 0 x 0\nc=IN IP4 1.2.3.4\nm=text 3 x 0\n", 1, -1, IP_VERSION_4},
    {"a c-line in a value", lf + "m=audio 1 x 0\na=c=IN IP4\n", 0, lf + "m=audio 1 x 0\na=c=IN IP4\n", 0, -1,
     IP_VERSION_4},
    {"the first of two c-lines", lf + "m=audio 1 x 0\nc=IN IP4 1.2.3.4\nc=IN IP6 ::1\n", 0,
     lf + "m=audio 0 x 0\nc=IN IP4 1.2.3.4\nc=IN IP6 ::1\n", 1, -1, IP_VERSION_4},
    {"a c-line without LF", lf + "m=audio 1 x 0\nc=IN IP4", 0, lf + "m=audio 0 x 0\nc=IN IP4", 1, -1,
     IP_VERSION_4},
};

void expectPorts(const Case& each) {
  EditBuffer buffer(each.before);
  TraceCapture trace;
  EXPECT_EQ(M::sdpSetMediaPort(buffer.data(), each.mediaType, each.version, each.security, each.port), 0)
      << each.name;
  buffer.expect(each.after, each.name);
  ASSERT_EQ(trace.lines().size(), 2U) << each.name;
  EXPECT_EQ(trace.lines()[1], exiting(each.port, each.count)) << each.name;
}

TEST(MediaPort, IsSetOnMLinesOnly) {
  for (const Case& each : lineCases) expectPorts(each);
}

TEST(MediaPort, TakesVersionAndSecurityFromTheSection) {
  for (const Case& each : filterCases) expectPorts(each);
}

TEST(MediaPort, ReservedIsRefusedAtTheFirstLineThatPasses) {
  for (const unsigned int port : {1U, 500U, 1023U}) {
    EditBuffer buffer(body());
    TraceCapture trace;
    EXPECT_EQ(M::sdpSetMediaPort(buffer.data(), -1, IP_VERSION_UNKNOWN, any, port), 1);
    buffer.expect(body());
    EXPECT_EQ(trace.takeLines(), (Lines{enteringAny(port), illegal(port), failed(port)}));
    EXPECT_EQ(M::sdpSetMediaPort(buffer.data(), 1, IP_VERSION_6, any, port), 0);  // no line passes
    EXPECT_EQ(trace.takeLines(),
              (Lines{entering(port, "audio", "IP6", "either secure or non-secure"), exiting(port, 0)}));
  }
}

// Each change looks for its own room; the lines in front of the one that does not fit stay changed.
TEST(MediaPort, EndsAtTheFirstLineThatDoesNotFit) {
  const std::string one = "m=audio 1 x 0\r\n";
  const std::string set = "m=audio 49170 x 0\r\n";  // four characters more
  for (const std::size_t room : {0U, 3U, 4U, 5U, 7U, 8U, 9U}) {
    const std::string before = paddedTo(EditBuffer::capacity - 1 - room, session + one + one);
    const std::string rest = before.substr(session.size() + 2 * one.size());
    EditBuffer buffer(before);
    TraceCapture trace;
    const bool fits = room >= 8;
    EXPECT_EQ(M::sdpSetMediaPort(buffer.data(), 1, IP_VERSION_UNKNOWN, any, 49170), fits ? 0 : 1) << room;
    buffer.expect(session + (room >= 4 ? set : one) + (fits ? set : one) + rest, std::to_string(room));
    EXPECT_EQ(trace.takeLines(), (Lines{entering(49170, "audio", "ANY", "either secure or non-secure"),
                                        fits ? exiting(49170, 2) : failed(49170)}));
  }
}

TEST(MediaPort, AShorterOneMakesRoomForTheNext) {
  const std::string head = session + "m=audio 123456789 x 0\r\nm=audio 1 x 0\r\n";
  const std::string before = paddedTo(EditBuffer::capacity - 1, head);
  EditBuffer buffer(before);
  EXPECT_EQ(M::sdpSetMediaPort(buffer.data(), 1, IP_VERSION_UNKNOWN, any, 49170), 0);
  buffer.expect(session + "m=audio 49170 x 0\r\nm=audio 49170 x 0\r\n" + before.substr(head.size()));
}

TEST(MediaPort, NeedsAText) {
  TraceCapture trace;
  EXPECT_EQ(M::sdpSetMediaPort(nullptr, -1, IP_VERSION_4, any, 0), 1);
  EXPECT_EQ(trace.takeLines(), (Lines{entering(0, "<any>", "IP4", "either secure or non-secure"), unusable}));
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(M::sdpSetMediaPort(text.data(), -1, IP_VERSION_UNKNOWN, any, 0), 1);
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(), (Lines{enteringAny(0), unusable}));
}

TEST(DisablePort, SetsEachMediumOfTheMaskTo0) {
  const std::pair<int, Numbers> masks[] = {{0, {}},      {1, {0}}, {2, {1, 2, 3}},     {3, {0, 1, 2, 3}},
                                           {4, {4}},     {8, {6}}, {16, {7}},          {32, {5}},
                                           {40, {5, 6}}, {64, {}}, {63, everySection}, {-1, everySection}};
  for (const auto& [mask, changed] : masks) {
    EditBuffer buffer(body());
    EXPECT_EQ(M::sdpDisablePort(buffer.data(), mask, IP_VERSION_UNKNOWN), 0);
    buffer.expect(body(changed, "0"), std::to_string(mask));
  }
}

TEST(DisablePort, OfAnAddressVersion) {
  EditBuffer buffer(body());
  EXPECT_EQ(M::sdpDisablePort(buffer.data(), 3, IP_VERSION_6), 0);
  buffer.expect(body({3}, "0"));
  EXPECT_EQ(M::sdpDisablePort(buffer.data(), 3, IP_VERSION_4), 0);
  buffer.expect(body({0, 1, 2, 3}, "0"));
}

TEST(DisablePort, TakesTheMediaInItsOrder) {
  EditBuffer buffer(body());
  TraceCapture trace;
  EXPECT_EQ(M::sdpDisablePort(buffer.data(), 63, IP_VERSION_UNKNOWN), 0);
  const std::pair<std::string, int> steps[] = {{"audio", 1}, {"video", 3}, {"message", 1},
                                               {"text", 1},  {"image", 1}, {"application", 1}};
  Lines traces;
  for (const auto& [name, count] : steps) {
    traces.push_back(entering(0, name, "ANY", "either secure or non-secure"));
    traces.push_back(exiting(0, count));
  }
  EXPECT_EQ(trace.takeLines(), traces);
}

TEST(DisablePort, FailsWithAnyOfItsSteps) {
  std::vector<char> text = unterminatedBuffer();
  for (const int mask : {1, 3, 63}) {
    EXPECT_EQ(M::sdpDisablePort(text.data(), mask, IP_VERSION_UNKNOWN), 1);
    EXPECT_EQ(M::sdpDisablePort(nullptr, mask, IP_VERSION_4), 1);
  }
  EXPECT_EQ(M::sdpDisablePort(nullptr, 0, IP_VERSION_4), 0);  // no step
  EXPECT_EQ(text, unterminatedBuffer());
}

}  // namespace
