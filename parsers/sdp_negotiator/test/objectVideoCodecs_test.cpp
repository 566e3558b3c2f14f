#include <memory>

#include "objectTestSupport.h"
#include "traceCapture.h"

// Which video codecs an object's body offers. Codecs: 1 H263, 2 H264, 7 H261, 12 VP8. Payload types: 31 H261, 34 H263.

namespace {

using Traces = std::vector<TraceLine>;
using Codecs = std::vector<unsigned char>;

const TraceLine building{8, 4, "Building raw SDP buffer."};
const TraceLine noText{4, 3, "The raw SDP buffer is empty."};
const TraceLine noneAllowed{1, 1, "No allowed codecs in media: leaving SDP unchanged and returning false"};
constexpr std::size_t kLongestBody = MAX_SDP_PROTOCOL_DATA_SIZE - 1;

TraceLine restricting(int count) {
  return {1, 1,
          "Request to restrict video codecs from the SDP. Given " + std::to_string(count) +
              " allowed video codecs"};
}

TraceLine processing(const std::string& mLine, int total, int allowed, int removed, int unknown) {
  return {1, 1,
          "Processing media [" + mLine + "]: contains total of " + std::to_string(total) + " codecs, " +
              std::to_string(allowed) + " are allowed, " + std::to_string(removed) +
              " codecs must be removed and " + std::to_string(unknown) + " are unknown/invalid"};
}

TraceLine removing(const std::string& format) {
  return {1, 1, "Removing format [" + format + "] from video media"};
}

/// The request with a list in a block of just its size.
unsigned short restrictTo(cSdpNegotiator& object, const Codecs& allowed) {
  const auto block = std::make_unique<unsigned char[]>(allowed.size());
  std::copy(allowed.begin(), allowed.end(), block.get());
  return object.sdpRestrictVideoCodecsTo(block.get(), static_cast<int>(allowed.size()));
}

std::string section(const std::string& formats, const std::string& attributes = "",
                    const std::string& port = "5006") {
  return "m=video " + port + " RTP/AVP" + formats + "\r\n" + attributes;
}

std::string withVideo(const std::string& formats, const std::string& attributes = "") {
  return audioBody() + section(formats, attributes);
}

const std::string h264 = "a=rtpmap:96 H264/90000\r\n";
const std::string vp8 = "a=rtpmap:97 VP8/90000\r\n";
const std::string both = h264 + "a=fmtp:96 x=1\r\n" + vp8 + "a=fmtp:97 x=1\r\n";

struct Restriction {
  const char* name;
  std::string before;
  Codecs allowed;
  std::string after;
};

const std::string audio97 = sessionLines() + "m=audio 5004 RTP/AVP 0 97\r\na=fmtp:97 a\r\n";

const Restriction restrictions[] = {
    {"format, rtpmap and fmtp", withVideo(" 96 97", both), {2}, withVideo(" 96", h264 + "a=fmtp:96 x=1\r\n")},
    {"the first of two", withVideo(" 96 97", both), {12}, withVideo(" 97", vp8 + "a=fmtp:97 x=1\r\n")},
    {"several allowed", withVideo(" 96 97 31 34", both), {12, 2, 1}, withVideo(" 96 97 34", both)},
    {"the first rtpmap line of a format counts",
     withVideo(" 96 97", h264 + "a=rtpmap:96 VP8/90000\r\n" + vp8),
     {2},
     withVideo(" 96", h264 + "a=rtpmap:96 VP8/90000\r\n")},
    {"an rtpmap line without a name does not count",
     withVideo(" 96 97", "a=rtpmap:96 \r\n" + h264 + vp8),
     {12},
     withVideo(" 97", vp8)},
    {"a format that stands twice",
     withVideo(" 96 97 96", both),
     {12},
     withVideo(" 97", vp8 + "a=fmtp:97 x=1\r\n")},
    {"nothing to remove", withVideo(" 96 97", both), {2, 12}, withVideo(" 96 97", both)},
    {"unknown formats stay",
     withVideo(" 98 31 99 34", "a=rtpmap:98 X/1\r\n"),
     {7},
     withVideo(" 98 31 99", "a=rtpmap:98 X/1\r\n")},
    {"the list ends at its first 0", withVideo(" 31 34"), {7, 0, 1}, withVideo(" 31")},
    {"a format twice", withVideo(" 34 31 34"), {7}, withVideo(" 31")},
    {"blanks in front go too", withVideo(" \t 34  31 \t34"), {7}, withVideo("  31")},
    {"bare line feeds",
     "v=0\nt=0 0\nm=video 5006 RTP/AVP 31 34\na=fmtp:34 x\na=x\n",
     {7},
     "v=0\nt=0 0\nm=video 5006 RTP/AVP 31\na=x\n"},
    {"a longer format stays",
     withVideo(" 31 341 34", "a=fmtp:341 x\r\na=fmtp:34 x\r\n"),
     {7},
     withVideo(" 31 341", "a=fmtp:341 x\r\n")},
    {"a line that ends behind the format goes",
     withVideo(" 31 34", "a=fmtp:34\r\na=fmtp:34\tx\r\n"),
     {7},
     withVideo(" 31")},
    {"other lines stay",
     withVideo(" 31 34", "a=fmtp: 34 x\r\na=rtcp-fb:34 x\r\na=x a=fmtp:34 x\r\n"),
     {7},
     withVideo(" 31", "a=fmtp: 34 x\r\na=rtcp-fb:34 x\r\na=x a=fmtp:34 x\r\n")},
    {"a last line without end", withVideo(" 31 34", "a=x\r\na=fmtp:34 x"), {7}, withVideo(" 31", "a=x\r\n")},
    {"lines one behind the other",
     withVideo(" 31 34", "a=fmtp:34 1\r\na=fmtp:34 2\r\na=fmtp:34 3\r\na=x\r\n"),
     {7},
     withVideo(" 31", "a=x\r\n")},
    {"other sections stay",
     audio97 + section(" 96 97", both) + "m=text 5 RTP/AVP 97\r\na=fmtp:97 t\r\n",
     {2},
     audio97 + section(" 96", h264 + "a=fmtp:96 x=1\r\n") + "m=text 5 RTP/AVP 97\r\na=fmtp:97 t\r\n"},
    {"the section behind many removals stays",
     withVideo(" 34 34 34 34 34 34 34 34 34 34 34 34 31") + "m=text 5 RTP/AVP 34\r\na=fmtp:34 t\r\n",
     {7},
     withVideo(" 31") + "m=text 5 RTP/AVP 34\r\na=fmtp:34 t\r\n"},
    {"every video section",
     withVideo(" 31 34", "a=fmtp:34 a\r\n") + section(" 34 31", "a=fmtp:34 b\r\n", "0"),
     {7},
     withVideo(" 31") + section(" 31", "", "0")},
    {"one section right behind the other",
     withVideo(" 34 31") + section(" 34 31") + section(" 31"),
     {7},
     withVideo(" 31") + section(" 31") + section(" 31")},
    {"a medium whose name begins so",
     audioBody() + "m=videos 5 RTP/AVP 31 34\r\n",
     {7},
     audioBody() + "m=videos 5 RTP/AVP 31\r\n"},
    // Deliberate: the first place counts, also when it is the port.
    {"a port that looks like the format",
     audioBody() + section(" 31 34", "", "34"),
     {7},
     audioBody() + "m=video RTP/AVP 31 34\r\n"},
    {"a video m-line in the first line is not seen",
     "m=video 1 RTP/AVP 34\r\n" + section(" 31 34"),
     {7},
     "m=video 1 RTP/AVP 34\r\n" + section(" 31")},
    // What ends the text follows no format.
    {"the last format of a last m-line without end",
     audioBody() + "m=video 5006 RTP/AVP 34 31 34",
     {7},
     audioBody() + "m=video 5006 RTP/AVP 31 34"},
    {"an m-line that is none is left out",
     audioBody() + "m=video x RTP/AVP 34\r\n" + section(" 31 34"),
     {7},
     audioBody() + "m=video x RTP/AVP 34\r\n" + section(" 31")},
};

TEST(RestrictVideoCodecs, LeavesTheAllowedAndTheUnknown) {
  for (const Restriction& each : restrictions) {
    SCOPED_TRACE(each.name);
    for (const bool tracing : {true, false}) {
      cSdpNegotiator object = objectWithText(each.before);
      const cSdpNegotiator before = object;
      const auto trace = tracing ? std::make_unique<TraceCapture>() : nullptr;
      EXPECT_EQ(restrictTo(object, each.allowed), 1);
      EXPECT_EQ(textOf(object), each.after);
      EXPECT_TRUE(std::memcmp(&object.getParsedData(), &before.getParsedData(), sizeof(sSdpParsedData)) == 0);
    }
  }
}

TEST(RestrictVideoCodecs, TracesWhatItDoes) {
  cSdpNegotiator object = parsedObject(withVideo(" 96 97 34 98", both) + section(" 96", h264));
  TraceCapture trace;
  EXPECT_EQ(restrictTo(object, {2}), 1);
  EXPECT_EQ(trace.lines(),
            (Traces{restricting(1), building, processing("m=video 5006 RTP/AVP 96 97 34 98", 4, 1, 2, 1),
                    removing("97"), removing("34"), processing("m=video 5006 RTP/AVP 96", 1, 1, 0, 0)}));
}

TEST(RestrictVideoCodecs, ChangesNothingWhenASectionHasNoAllowedCodec) {
  const std::string mLine = "m=video 5006 RTP/AVP 96 97";
  const struct {
    const char* name;
    std::string body;
    Codecs allowed;
    TraceLine processed;
  } cases[] = {
      {"others", withVideo(" 96 97", both), {1}, processing(mLine, 2, 0, 2, 0)},
      {"an empty list", withVideo(" 96 97", both), {}, processing(mLine, 2, 0, 2, 0)},
      {"a list that begins with 0", withVideo(" 96 97", both), {0, 2}, processing(mLine, 2, 0, 2, 0)},
      {"none known", withVideo(" 96 97"), {2}, processing(mLine, 2, 0, 0, 2)},
      {"no formats", withVideo(""), {2}, processing("m=video 5006 RTP/AVP", 0, 0, 0, 0)},
      {"rtpmap lines of another section",
       audioBody() + h264 + section(" 96 97") + "m=text 5 RTP/AVP 96\r\n" + h264,
       {2},
       processing(mLine, 2, 0, 0, 2)},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    cSdpNegotiator object = parsedObject(each.body);
    const cSdpNegotiator before = object;
    EXPECT_EQ(restrictTo(object, each.allowed), 0);
    TraceCapture trace;
    EXPECT_EQ(restrictTo(object, each.allowed), 0);
    EXPECT_EQ(trace.lines(), (Traces{restricting(static_cast<int>(each.allowed.size())), building,
                                     each.processed, noneAllowed}));
    EXPECT_TRUE(sameBytes(object, before));
  }
}

TEST(RestrictVideoCodecs, DiscardsWhatItDidToEarlierSections) {
  cSdpNegotiator object = parsedObject(withVideo(" 31 34") + section(" 34") + section(" 31 34"));
  const cSdpNegotiator before = object;
  TraceCapture trace;
  EXPECT_EQ(restrictTo(object, {7}), 0);
  EXPECT_TRUE(sameBytes(object, before));
  EXPECT_EQ(trace.lines(),
            (Traces{restricting(1), building, processing("m=video 5006 RTP/AVP 31 34", 2, 1, 1, 0),
                    removing("34"), processing("m=video 5006 RTP/AVP 34", 1, 0, 1, 0), noneAllowed}));
}

TEST(RestrictVideoCodecs, HasNothingToDoWithoutVideo) {
  Record damaged(parsedObject(paddedTo(3000)));
  damaged.raw[20] = static_cast<char>(damaged.raw[20] ^ 0x55);
  const struct {
    cSdpNegotiator object;
    Traces traces;
  } cases[] = {
      {parsedObject(audioBody()), {restricting(1), building}},
      {objectWithText("m=video 5006 RTP/AVP 31 34\r\n"), {restricting(1), building}},
      {objectWithText("v=0\r\nm=video\r\nm=video x\r\n"), {restricting(1), building}},
      {emptyObject(), {restricting(1), building, noText}},
      {damaged.object(), {restricting(1), building}},
  };
  for (const auto& each : cases) {
    cSdpNegotiator object = each.object;
    TraceCapture trace;
    EXPECT_EQ(restrictTo(object, {7}), 0);
    EXPECT_EQ(trace.lines(), each.traces);
    EXPECT_TRUE(sameBytes(object, each.object));
  }
}

TEST(RestrictVideoCodecs, ReadsNoMoreEntriesThanGiven) {
  cSdpNegotiator object = parsedObject(withVideo(" 31 34"));
  const unsigned char allowed[] = {7, 1, 2};
  EXPECT_EQ(object.sdpRestrictVideoCodecsTo(allowed, 2), 1);
  EXPECT_EQ(textOf(object), withVideo(" 31 34"));
  const cSdpNegotiator before = object;
  for (const int count : {0, -1}) EXPECT_EQ(object.sdpRestrictVideoCodecsTo(allowed, count), 0);
  EXPECT_EQ(object.sdpRestrictVideoCodecsTo(nullptr, 3), 0);
  EXPECT_TRUE(sameBytes(object, before));
  EXPECT_EQ(object.sdpRestrictVideoCodecsTo(allowed, 1), 1);
  EXPECT_EQ(textOf(object), withVideo(" 31"));
}

TEST(RestrictVideoCodecs, LooksAtTheFirst64FormatsOfAnMLine) {
  std::string formats = " 31";
  for (int i = 0; i < 62; ++i) formats += " 98";
  cSdpNegotiator object = parsedObject(withVideo(formats + " 34 34"));
  EXPECT_EQ(restrictTo(object, {7}), 1);
  EXPECT_EQ(textOf(object), withVideo(formats + " 34"));
}

TEST(RestrictVideoCodecs, WorksOnAFullBuffer) {
  const std::string sections = section(" 31 34", "a=fmtp:34 x\r\n");
  std::string body = audioBody();
  std::string wanted = body;
  while (body.size() + 2 * sections.size() + 20 < kLongestBody) {
    body += sections;
    wanted += section(" 31");
  }
  const std::string rest = "a=n:" + std::string(kLongestBody - body.size() - 6, 'n') + "\r\n";
  body += rest;
  wanted += rest;
  ASSERT_EQ(body.size(), kLongestBody);
  cSdpNegotiator object = objectWithText(body);
  EXPECT_EQ(restrictTo(object, {7}), 1);
  EXPECT_TRUE(textOf(object) == wanted);
}

/// A body that can be stored, while it cannot without format 34: its m-line then no longer repeats a line.
std::string bodyThatOutgrowsItsStorage() {
  std::string all;
  std::string allowed;
  for (int i = 0; i < 24; ++i) {
    const std::string unknown = " " + std::to_string(100 + i * i * 7);
    all += " 34" + unknown;
    allowed += unknown;
  }
  const std::string padding = incompressibleBody(6000);
  for (std::size_t length = 2600; length < padding.size(); ++length) {
    const std::string start = padding.substr(0, length) + "\r\na=n:" + all + "\r\n";
    const std::string body = start + section(all + " 31");
    if (emptyObject().setRawSDP(body.c_str()) != 0) break;
    if (emptyObject().setRawSDP((start + section(allowed + " 31")).c_str()) == 2) return body;
  }
  return {};
}

TEST(RestrictVideoCodecs, LeavesTheObjectAsItIsWhenTheTextCannotBeStored) {
  const std::string body = bodyThatOutgrowsItsStorage();
  ASSERT_FALSE(body.empty());
  cSdpNegotiator object = objectWithText(body);
  const cSdpNegotiator before = object;
  TraceCapture trace;
  EXPECT_EQ(restrictTo(object, {7}), 0);
  EXPECT_TRUE(trace.has(4, 3, "sdpRestrictVideoCodecsTo(): The restricted SDP cannot be stored."));
  EXPECT_TRUE(sameBytes(object, before));
}

}  // namespace
