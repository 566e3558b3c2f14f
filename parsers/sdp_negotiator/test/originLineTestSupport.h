#ifndef ORIGIN_LINE_TEST_SUPPORT_H
#define ORIGIN_LINE_TEST_SUPPORT_H

#include <memory>
#include <string>

#include "objectTestSupport.h"
#include "traceCapture.h"

inline const std::string originLine = "o=alice 10 20 IN IP4 192.0.2.9";
/// Where the o-line of `bodyWith` starts with CR LF, behind "v=0\r\n".
inline constexpr unsigned int lineStart = 5;

/// A body with the given o-line, all of whose lines end alike.
inline std::string bodyWith(const std::string& line, const std::string& end = "\r\n") {
  return "v=0" + end + line + end + "s=-" + end + "c=IN IP4 192.0.2.1" + end + "t=0 0" + end +
         "m=audio 5004 RTP/AVP 0 8" + end;
}

/// An object whose o-line is by its summary what stands from `start` to `end`.
inline cSdpNegotiator objectWithOffsets(const std::string& text, unsigned int start, unsigned int end) {
  Record record(objectWithText(text));
  record.data.oLineStart = static_cast<std::uint16_t>(start);
  record.data.oLineEnd = static_cast<std::uint16_t>(end);
  return record.object();
}

/// An object with an o-line that a parse might refuse.
inline cSdpNegotiator objectWithLine(const std::string& line) {
  return objectWithOffsets(bodyWith(line), lineStart, lineStart + static_cast<unsigned int>(line.size()) + 2);
}

/// The o-line as it is handed out, in an array of its own.
inline std::string lineOf(const cSdpNegotiator& object) {
  char* line = nullptr;
  int length = -1;
  EXPECT_EQ(object.getOLine(line, length), 0);
  const std::unique_ptr<char[]> owned(line);
  if (line == nullptr) {
    ADD_FAILURE() << "no array";
    return {};
  }
  const std::string text(line);
  EXPECT_EQ(static_cast<std::size_t>(length), text.size());
  return text;
}

inline unsigned int endOf(const cSdpNegotiator& object) { return object.getParsedData().oLineEnd; }

/// Whether two objects have the same summary but for the end of the o-line and the form of the text.
inline bool sameSummaryButForTheEnd(const cSdpNegotiator& a, const cSdpNegotiator& b) {
  sSdpParsedData first = a.getParsedData();
  first.oLineEnd = b.getParsedData().oLineEnd;
  first.storedSdpLength = b.getParsedData().storedSdpLength;
  return std::memcmp(&first, &b.getParsedData(), sizeof first) == 0;
}

inline const TraceLine emptyLineTrace{4, 3, "The object is empty. Returning an empty o-line."};
inline const TraceLine buildingTrace{8, 4, "Building raw SDP buffer."};
inline const TraceLine noTextTrace{4, 3, "The raw SDP buffer is empty."};

using Traces = std::vector<TraceLine>;

#endif
