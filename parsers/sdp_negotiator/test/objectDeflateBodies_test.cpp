#include <random>

#include "deflateTestSupport.h"
#include "objectTestSupport.h"
#include "testFiles.h"

// Long bodies, generated ones and those of a collection: what is stored is read by zlib, what zlib deflated is read by
// the object, and whatever zlib makes small enough is stored.

namespace {

using sdpneg::Deflated;
using sdpneg::Inflated;
using sdpneg::TextStreams;
using sdpneg::ZlibStreams;

/// A body of exactly this length with lines as engines and browsers write them. The longer it is, the more of its lines
/// are repetitions, so that many bodies are stored and some are not.
std::string generatedBody(std::size_t length, std::mt19937& random) {
  const auto number = [&random](unsigned int limit) { return std::to_string(random() % limit); };
  std::vector<std::string> lines;
  std::string body = audioBody();
  while (body.size() + 13 < length) {
    std::string line;
    switch (random() % 6) {
      case 0:
        line = "a=rtpmap:" + number(128) + " opus/48000/2";
        break;
      case 1:
        line = "a=fmtp:" + number(128) + " profile-level-id=42e01f;packetization-mode=" + number(2);
        break;
      case 2:
        line = "a=candidate:" + number(4000000000U) + " 1 udp " + number(2122260223U) + " 192.0.2." +
               number(256) + " " + number(65536) + " typ host generation 0";
        break;
      case 3:
        line = "a=ssrc:" + number(4000000000U) + " cname:" + number(1000000000U);
        break;
      case 4:
        line = "a=extmap:" + number(15) + " urn:ietf:params:rtp-hdrext:sdes:mid";
        break;
      default:
        line = lines.empty() ? "a=sendrecv" : lines[random() % lines.size()];
        break;
    }
    if (lines.size() > 40 && random() % 20 != 0) line = lines[random() % lines.size()];
    if (body.size() + line.size() + 2 + 12 > length) break;
    lines.push_back(line);
    body += line + "\r\n";
  }
  return paddedTo(length, body);
}

std::vector<std::string> longBodies() {
  std::mt19937 random(17);
  std::vector<std::string> bodies;
  for (const std::size_t length : {2560U, 2561U, 20478U, 20479U})
    bodies.push_back(generatedBody(length, random));
  for (int i = 0; i < 200; ++i) bodies.push_back(generatedBody(2560 + random() % 17920, random));
  for (std::size_t length = 3000; length < 3800; length += 25) bodies.push_back(incompressibleBody(length));
  if (corpusFolder().empty()) return bodies;
  for (const auto& file : sdpFilesBelow(corpusFolder())) {
    const std::string body = readBytes(file);
    const bool isText = body.find('\0') == std::string::npos;
    if (isText && body.size() >= SDP_STORED_TEXT_SIZE && body.size() < MAX_SDP_PROTOCOL_DATA_SIZE)
      bodies.push_back(body);
  }
  return bodies;
}

TEST(LongBodies, WhatIsStoredIsReadByZlibAndByTheObject) {
  int stored = 0;
  int refused = 0;
  for (const std::string& body : longBodies()) {
    cSdpNegotiator object = emptyObject();
    const unsigned short status = object.setRawSDP(body.c_str());
    const std::string expected = bytesToStore(body);
    ASSERT_EQ(status, expected.empty() ? 2 : 0) << body;
    ++(status == 0 ? stored : refused);
    if (status != 0) continue;
    const Record record(object);
    const std::string bytes(record.raw, record.data.storedSdpLength);
    ASSERT_EQ(bytes, expected);
    ASSERT_EQ(inflatedByZlib(bytes), withNul(body));
    ASSERT_EQ(textOf(object), body);
  }
  EXPECT_GT(stored, 100);
  EXPECT_GT(refused, 5);
}

/// A body of nothing but what codecs take as feedback, of which libdeflate makes a fifth more than zlib.
std::string feedbackBody(std::size_t length, std::mt19937& random) {
  const char* const kinds[] = {"goog-remb", "transport-cc", "ccm fir", "nack", "nack pli", "ccm tmmbr"};
  std::string body = audioBody();
  while (true) {
    const std::string line =
        "a=rtcp-fb:" + std::to_string(random() % 128) + " " + kinds[random() % 6] + "\r\n";
    if (body.size() + line.size() + 12 > length) return paddedTo(length, body);
    body += line;
  }
}

/// The longest text of whole lines of a body that zlib makes small enough.
std::string atTheLimit(const std::string& body) {
  std::size_t end = body.size();
  while (freshlyDeflated(body.substr(0, end)).empty()) end = body.rfind('\n', end - 2) + 1;
  return body.substr(0, end);
}

TEST(LongBodies, WhatZlibMakesSmallEnoughIsStored) {
  std::vector<std::string> bodies = longBodies();
  std::mt19937 random(5);
  for (int i = 0; i < 30; ++i) bodies.push_back(atTheLimit(generatedBody(12000 + random() % 8000, random)));
  for (int i = 0; i < 10; ++i) bodies.push_back(feedbackBody(19000 + random() % 1000, random));
  int byZlib = 0;
  for (const std::string& body : bodies) {
    const std::string bytes = freshlyDeflated(body);
    if (bytes.empty()) continue;
    cSdpNegotiator object = emptyObject();
    ASSERT_EQ(object.setRawSDP(body.c_str()), 0) << body;
    ASSERT_EQ(textOf(object), body);
    const Record record(object);
    if (std::string_view(record.raw, record.data.storedSdpLength) == bytes) ++byZlib;
  }
  EXPECT_GT(byZlib, 5);  // with libdeflate those that it does not make small enough itself
}

TEST(LongBodies, WhatZlibDeflatedIsReadAtEveryLevel) {
  int read = 0;
  for (const std::string& body : longBodies()) {
    for (const int level : {1, 6, 9}) {
      const std::string bytes = freshlyDeflated(body, level);
      if (bytes.empty()) continue;
      Record record(objectWithText(paddedTo(2600)));
      std::memset(record.raw, 0, sizeof record.raw);
      bytes.copy(record.raw, sizeof record.raw);
      record.data.storedSdpLength = static_cast<std::uint16_t>(bytes.size());
      ASSERT_EQ(textOf(record.object()), body);
      ++read;
    }
  }
  EXPECT_GT(read, 300);
}

/// What came of inflating: the answer and all of the destination.
struct Outcome {
  bool whole;
  std::size_t length;
  std::string destination;
  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << outcome.whole << ' ' << outcome.length << ' ' << testing::PrintToString(outcome.destination);
}

template <typename Streams>
Outcome inflateInto(Streams& streams, std::string_view bytes, std::size_t room) {
  std::string destination(room, '\x5b');
  const Inflated result = streams.inflate(bytes, destination.data(), room);
  return {result.whole, result.length, destination};
}

TEST(LongBodies, WhatIsInflatedIsWhatZlibInflatesInEveryRoom) {
  Owned<TextStreams> streams;
  Owned<ZlibStreams> zlib;
  for (const std::string& body : longBodies()) {
    for (const std::string& bytes : {bytesToStore(body), freshlyDeflated(body, 9, 8000)}) {
      if (bytes.empty()) continue;
      const std::size_t size = body.size() + 1;
      for (const std::size_t room : {std::size_t{0}, std::size_t{1}, size / 2, size - 1, size, size + 1,
                                     std::size_t{20480}, std::size_t{20481}, std::size_t{30000}}) {
        ASSERT_EQ(inflateInto(streams, bytes, room), inflateInto(zlib, bytes, room)) << room;
      }
    }
  }
}

TEST(LongBodies, WhatIsDamagedBecomesWhatZlibMakesOfIt) {
  Owned<TextStreams> streams;
  Owned<ZlibStreams> zlib;
  std::mt19937 random(4);
  int refused = 0;
  for (const std::string& body : longBodies()) {
    for (std::string bytes : {bytesToStore(body), freshlyDeflated(body)}) {
      if (bytes.empty()) continue;
      for (int i = 0; i < 4; ++i) {
        std::string damaged = bytes;
        switch (i) {
          case 0:
            damaged.resize(random() % bytes.size());
            break;
          case 1:
            damaged += std::string(random() % 50, static_cast<char>(random() % 256));
            break;
          case 2:
            damaged[random() % 60] ^= static_cast<char>(1U << random() % 8U);
            break;
          default:
            damaged[random() % bytes.size()] ^= static_cast<char>(1U << random() % 8U);
            break;
        }
        const Outcome outcome = inflateInto(streams, damaged, MAX_SDP_PROTOCOL_DATA_SIZE);
        ASSERT_EQ(outcome, inflateInto(zlib, damaged, MAX_SDP_PROTOCOL_DATA_SIZE));
        refused += outcome.whole ? 0 : 1;
      }
    }
  }
  EXPECT_GT(refused, 300);
}

}  // namespace
