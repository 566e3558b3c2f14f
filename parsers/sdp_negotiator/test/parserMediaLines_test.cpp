#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "parserParseSupport.h"

// Reading and editing raw m- and c-lines.

namespace {

using P = sdpParserMessage;

/// The port of a line; nothing when it is refused, which must leave the output alone.
std::optional<int> portOfLine(const std::string& line) {
  unsigned short port = 4711;
  const int status = P::getMediaLinePort(ExactText(line), port);
  EXPECT_TRUE(status == 0 || port == 4711) << line;
  return status == 0 ? std::optional<int>(port) : std::nullopt;
}

TEST(ParserMediaLinePort, ReadsThePortOfALine) {
  EXPECT_EQ(portOfLine("m=audio 5004 RTP/AVP 0\r\n"), 5004);
  EXPECT_EQ(portOfLine("m=audio 5004 RTP/AVP 0\n"), 5004);
  EXPECT_EQ(portOfLine("m=audio 0 RTP/AVP 0\r\nm=video 9 RTP/AVP 0\r\n"), 0);
  EXPECT_EQ(portOfLine("m=audio \t 5004\tRTP/AVP 0\r\n"), 5004);
  EXPECT_EQ(portOfLine("m=audio 5004\r\n"), 5004);
  EXPECT_EQ(portOfLine("m=audio 5004\n"), 5004);
  EXPECT_EQ(portOfLine("m=audio 65535 RTP/AVP 0\r\n"), 65535);
  EXPECT_EQ(portOfLine("m=audio 0005004 RTP/AVP 0\r\n"), 5004);
}

TEST(ParserMediaLinePort, TakesATextThatBeginsWithTheLineFeedInFront) {
  EXPECT_EQ(portOfLine("\nm=audio 5004 RTP/AVP 0\r\n"), 5004);
  EXPECT_EQ(portOfLine("\nm=audio 5004 RTP/AVP 0"), std::nullopt);
}

TEST(ParserMediaLinePort, RefusesWhatIsNoPort) {
  const std::vector<std::string> lines = {"",
                                          "\n",
                                          "m",
                                          "m=",
                                          "m=\n",
                                          "m=audio\n",
                                          "m=audio \r\n",
                                          "m=audio 5004 RTP/AVP 0",
                                          "m=audio 5004",
                                          "m=audio 65536 RTP/AVP 0\r\n",
                                          "m=audio 4294967296 RTP/AVP 0\r\n",
                                          "m=audio 4294972300 RTP/AVP 0\r\n",
                                          "m=audio 5004/2 RTP/AVP 0\r\n",
                                          "m=audio 5004/ RTP/AVP 0\r\n",
                                          "m=audio 5004x RTP/AVP 0\r\n",
                                          "m=audio -1 RTP/AVP 0\r\n",
                                          "m=audio x5004 RTP/AVP 0\r\n",
                                          "m=audio " + std::string(1000, '9') + " RTP/AVP 0\r\n",
                                          "m=\x80\xFF \xFF\x80 RTP/AVP 0\r\n"};
  for (const std::string& line : lines) EXPECT_EQ(portOfLine(line), std::nullopt) << line;
  unsigned short port = 1;
  EXPECT_EQ(P::getMediaLinePort(nullptr, port), 1);
}

TEST(ParserMediaLinePort, DoesNotReadThePortOfTheNextLine) {
  EXPECT_EQ(portOfLine("m=audio\nx 5004 RTP/AVP 0\r\n"), std::nullopt);
  EXPECT_EQ(portOfLine("m=audio \n5004 RTP/AVP 0\r\n"), std::nullopt);
}

/// What setting a port does to a text in a buffer that has room for it and not one character more.
struct PortEdit {
  int status;
  std::string text;
  std::ptrdiff_t lineEnd;  ///< -1 for null
  bool operator==(const PortEdit&) const = default;
};

void PrintTo(const PortEdit& edit, std::ostream* out) {
  *out << edit.status << " at " << edit.lineEnd << ": " << edit.text;
}

PortEdit setPort(const std::string& text, unsigned int port, std::ptrdiff_t lineEnd = -1, int growth = 0) {
  std::vector<char> buffer(text.size() + 1 + static_cast<std::size_t>(growth), 'X');
  std::memcpy(buffer.data(), text.c_str(), text.size() + 1);
  char* end = lineEnd < 0 ? nullptr : buffer.data() + lineEnd;
  const int status = P::setMediaLinePort(buffer.data(), end, port);
  return {status, buffer.data(), end == nullptr ? -1 : end - buffer.data()};
}

const std::string audioLine = "m=audio 5004 RTP/AVP 0\r\na=sendrecv\r\n";

TEST(ParserSetMediaLinePort, MovesTheRestForALongerPort) {
  EXPECT_EQ(setPort(audioLine, 49170, -1, 1), (PortEdit{0, "m=audio 49170 RTP/AVP 0\r\na=sendrecv\r\n", 24}));
  EXPECT_EQ(setPort(audioLine, 49170, 23, 1), (PortEdit{0, "m=audio 49170 RTP/AVP 0\r\na=sendrecv\r\n", 24}));
}

TEST(ParserSetMediaLinePort, MovesTheRestForAShorterPort) {
  EXPECT_EQ(setPort(audioLine, 0), (PortEdit{0, "m=audio 0 RTP/AVP 0\r\na=sendrecv\r\n", 20}));
  EXPECT_EQ(setPort("m=audio 49170 RTP/AVP 0\n", 5004), (PortEdit{0, "m=audio 5004 RTP/AVP 0\n", 22}));
}

TEST(ParserSetMediaLinePort, WritesAPortOfTheSameLengthInPlace) {
  EXPECT_EQ(setPort(audioLine, 6006), (PortEdit{0, "m=audio 6006 RTP/AVP 0\r\na=sendrecv\r\n", 23}));
}

// Kept: ports above 65535 are not refused; of a longer number the first seven digits are written.
TEST(ParserSetMediaLinePort, WritesAtMostSevenDigits) {
  EXPECT_EQ(setPort(audioLine, 65536, -1, 1), (PortEdit{0, "m=audio 65536 RTP/AVP 0\r\na=sendrecv\r\n", 24}));
  const std::string line = "m=audio 0 RTP/AVP 0\r\n";
  EXPECT_EQ(setPort(line, 9999999, -1, 6), (PortEdit{0, "m=audio 9999999 RTP/AVP 0\r\n", 26}));
  EXPECT_EQ(setPort(line, 10000000, -1, 6), (PortEdit{0, "m=audio 1000000 RTP/AVP 0\r\n", 26}));
  EXPECT_EQ(setPort(line, 4294967295U, -1, 6), (PortEdit{0, "m=audio 4294967 RTP/AVP 0\r\n", 26}));
}

TEST(ParserSetMediaLinePort, TakesATextThatBeginsWithTheLineFeedInFront) {
  EXPECT_EQ(setPort("\n" + audioLine, 49170, -1, 1),
            (PortEdit{0, "\nm=audio 49170 RTP/AVP 0\r\na=sendrecv\r\n", 25}));
}

TEST(ParserSetMediaLinePort, RefusesReservedPorts) {
  for (const unsigned int port : {1U, 500U, 1023U}) {
    const TraceCapture capture;
    EXPECT_EQ(setPort(audioLine, port), (PortEdit{1, audioLine, -1}));
    EXPECT_EQ(capture.lines(),
              (TraceLines{{4, 3, "setMediaLinePort(): illegal connection port " + std::to_string(port)}}));
  }
  EXPECT_EQ(setPort(audioLine, 1024), (PortEdit{0, "m=audio 1024 RTP/AVP 0\r\na=sendrecv\r\n", 23}));
}

TEST(ParserSetMediaLinePort, RefusesALineWithoutLineFeed) {
  for (const std::string text : {"", "m", "m=audio 5004 RTP/AVP 0", "m=audio 5004 RTP/AVP 0\r"}) {
    const TraceCapture capture;
    EXPECT_EQ(setPort(text, 49170), (PortEdit{1, text, -1}));
    EXPECT_EQ(capture.lines(), (TraceLines{{4, 3, "setMediaLinePort(): Bad termination of m-line."}}));
  }
  char* end = nullptr;
  EXPECT_EQ(P::setMediaLinePort(nullptr, end, 49170), 1);
}

// Deliberate: only as many digits are compared as the new port has.
TEST(ParserSetMediaLinePort, LeavesAPortThatBeginsWithTheNewDigits) {
  const std::string line = "m=audio 50000 RTP/AVP 0\r\n";
  EXPECT_EQ(setPort(line, 5000), (PortEdit{0, line, 24}));
  EXPECT_EQ(setPort("m=audio 0123 RTP/AVP 0\r\n", 0), (PortEdit{0, "m=audio 0123 RTP/AVP 0\r\n", 23}));
  EXPECT_EQ(setPort(audioLine, 5004), (PortEdit{0, audioLine, 23}));
  EXPECT_EQ(setPort("m=audio 500 RTP/AVP 0\r\n", 5000, -1, 1),
            (PortEdit{0, "m=audio 5000 RTP/AVP 0\r\n", 23}));
}

TEST(ParserSetMediaLinePort, LeavesALineWithoutAPortField) {
  for (const std::string text : {"m=audio\nx 5004 y\n", "m=audio \nx", "m=\n", "m=audio 5004\n"}) {
    const auto lineFeed = static_cast<std::ptrdiff_t>(text.find('\n'));
    EXPECT_EQ(setPort(text, 49170), (PortEdit{0, text, lineFeed}));
  }
}

TEST(ParserSetMediaLinePort, ReplacesAFieldThatIsNoNumber) {
  EXPECT_EQ(setPort("m=audio 5004/2 RTP/AVP 0\r\n", 6000), (PortEdit{0, "m=audio 6000 RTP/AVP 0\r\n", 23}));
  EXPECT_EQ(setPort("m=a " + std::string(1000, '9') + " x\n", 1024), (PortEdit{0, "m=a 1024 x\n", 10}));
}

TEST(ParserSetMediaLinePort, TakesACallersLineEndOnlyAsFarAsTheTextGoes) {
  EXPECT_EQ(setPort(audioLine, 6006, 0), (PortEdit{0, audioLine, 0}));    // nothing in front of it
  EXPECT_EQ(setPort(audioLine, 6006, 10), (PortEdit{0, audioLine, 10}));  // inside the port
  // Behind the NUL, inside the buffer.
  std::vector<char> buffer = {'m', '=', 'a', ' ', '5', '\0', '6', ' ', '\n', '\0'};
  const std::vector<char> before = buffer;
  char* end = buffer.data() + 8;
  EXPECT_EQ(P::setMediaLinePort(buffer.data(), end, 49170), 0);
  EXPECT_EQ(buffer, before);
}

TEST(ParserSetMediaLinePort, HandsBackWhereALineEndWithoutLineFeedWent) {
  const std::string text = "m=audio 5004 RTP/AVP 0";
  const auto end = static_cast<std::ptrdiff_t>(text.size());
  EXPECT_EQ(setPort(text, 49170, end, 1), (PortEdit{0, "m=audio 49170 RTP/AVP 0", end + 1}));
}

TEST(ParserConnectionVersion, ReadsTheSessionsLine) {
  const std::vector<std::pair<std::string, eIPAddressVersion>> cases = {
      {"v=0\r\nc=IN IP4 192.0.2.1\r\nm=audio 9 RTP/AVP 0\r\n", IP_VERSION_4},
      {"v=0\r\nc=IN IP6 ::1\r\nm=audio 9 RTP/AVP 0\r\n", IP_VERSION_6},
      {"v=0\nc=IN IP6 ::1\nc=IN IP4 192.0.2.1\n", IP_VERSION_6},
      {"v=0\nc=IN IP6 IP4\n", IP_VERSION_4},  // IP4 is looked for first
      {"v=0\nc=IN IP6 ::1", IP_VERSION_6},
      {"v=0\nc=IN ip4 192.0.2.1\n", IP_VERSION_UNKNOWN},
      {"v=0\nc=IN\nb=IP4\n", IP_VERSION_UNKNOWN},
      {"v=0\nc=", IP_VERSION_UNKNOWN},
      {"v=0\nm=audio 9 RTP/AVP 0\nc=IN IP4 192.0.2.1\n", IP_VERSION_UNKNOWN},
      {"m=audio 9 RTP/AVP 0\nc=IN IP4 192.0.2.1\nm=audio 9 RTP/AVP 0\n", IP_VERSION_4},
      {"c=IN IP4 192.0.2.1\n", IP_VERSION_UNKNOWN},  // the first line is not behind a line feed
      {"v=0\ns=c=IN IP4 192.0.2.1\n", IP_VERSION_UNKNOWN},
      {"v=0\ns=m=audio\nc=IN IP4 192.0.2.1\n", IP_VERSION_4},
      {"", IP_VERSION_UNKNOWN},
      {"\n", IP_VERSION_UNKNOWN},
      {"\nc", IP_VERSION_UNKNOWN},
  };
  for (const auto& [text, version] : cases) EXPECT_EQ(P::getcLineIPVersion(ExactText(text)), version) << text;
  EXPECT_EQ(P::getcLineIPVersion(nullptr), IP_VERSION_UNKNOWN);
}

/// The offset of the m-line that is found, -1 for none.
std::ptrdiff_t found(const std::string& text, const std::string& prefix) {
  const ExactText sdp(text);
  const char* line = P::foundMyMline(static_cast<const char*>(sdp), ExactText(prefix));
  return line == nullptr ? -1 : line - static_cast<const char*>(sdp);
}

TEST(ParserFindMediaLine, FindsTheFirstOfItsName) {
  const std::string text = "v=0\r\ns=m=video\r\nm=audio 1 RTP/AVP 0\r\nm=video 2 RTP/AVP 0\nm=video 3";
  EXPECT_EQ(found(text, "audio"), static_cast<std::ptrdiff_t>(text.find("m=audio")));
  EXPECT_EQ(found(text, "video"), static_cast<std::ptrdiff_t>(text.find("m=video 2")));
  EXPECT_EQ(found(text, "video 3"), static_cast<std::ptrdiff_t>(text.find("m=video 3")));
  EXPECT_EQ(found(text, ""), static_cast<std::ptrdiff_t>(text.find("m=audio")));
  EXPECT_EQ(found(text, "image"), -1);
  EXPECT_EQ(found(text, "Audio"), -1);
  EXPECT_EQ(found("m=audio 1 RTP/AVP 0\r\n", "audio"), -1);  // not behind a line feed
  for (const std::string shortText : {"", "\n", "\nm", "\nm=", "\nm=a"}) {
    EXPECT_EQ(found(shortText, "audio"), -1) << shortText;
  }
}

TEST(ParserFindMediaLine, ToleratesNull) {
  char text[] = "\nm=audio 1";
  EXPECT_EQ(P::foundMyMline(static_cast<char*>(nullptr), "audio"), nullptr);
  EXPECT_EQ(P::foundMyMline(static_cast<const char*>(nullptr), "audio"), nullptr);
  EXPECT_EQ(P::foundMyMline(text, nullptr), nullptr);
  EXPECT_EQ(P::foundMyMline(text, "audio"), text + 1);
}

TEST(ParserDirectionLine, TellsDirections) {
  for (const char* text : {"sendonly", "recvonly", "sendrecv", "inactive", "inactive\r\na=x", "sendonlyx"}) {
    EXPECT_TRUE(P::isAline4Mode(ExactText(text))) << text;
  }
  for (const char* text :
       {"", "s", "sendonl", "Sendonly", "confrnce", "send only", " sendonly", "\xFFrecvonly"}) {
    EXPECT_FALSE(P::isAline4Mode(ExactText(text))) << text;
  }
  EXPECT_FALSE(P::isAline4Mode(nullptr));
}

}  // namespace
