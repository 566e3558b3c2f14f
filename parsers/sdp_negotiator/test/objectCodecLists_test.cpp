#include <algorithm>
#include <memory>
#include <numeric>

#include "modifiersTestSupport.h"
#include "testFiles.h"
#include "traceCapture.h"

// Which audio codecs an object's body offers, and in which order. Codecs: 1 PCMA, 3 PCMU, 5 G722, 8 G723, 10 G729,
// 11 G729A, 29 telephone events, 37 comfort noise, 38 Opus.

namespace {

using Lines = std::vector<TraceLine>;
using Codecs = std::vector<int>;

const TraceLine restricting{8, 4, "Request to restrict audio codecs from the SDP."};
const TraceLine nothingCommon{2, 2, "No common codecs found. Don't restrict any codec."};
const TraceLine building{8, 4, "Building raw SDP buffer."};
const TraceLine noText{4, 3, "The raw SDP buffer is empty."};
const TraceLine reordered{8, 4, "The audio codecs reordering has been done"};

TraceLine fine(const std::string& text) { return {1, 1, text}; }

std::string body(const std::string& formats, const std::string& attributes = "") {
  return sessionLines() + "m=audio 5004 RTP/AVP" + formats + "\r\n" + attributes;
}

const std::string events = "a=rtpmap:101 telephone-event/8000\r\n";

Codecs slotsOf(const cSdpNegotiator& object) {
  const auto& slots = object.getParsedData().audioCodec;
  return {std::begin(slots), std::find(std::begin(slots), std::end(slots), 0)};
}

Codecs periodsOf(const cSdpNegotiator& object) {
  const auto& periods = object.getParsedData().packetizationPeriod;
  return {std::begin(periods), std::end(periods)};
}

/// The given periods, and behind them 20 in all that are not set.
Codecs periods(Codecs first) {
  first.resize(MAX_SDP_NEGOTIATOR_AUDIO_CODECS, 255);
  return first;
}

/// A list in a heap buffer of just its size.
struct List {
  explicit List(const Codecs& values)
      : count(static_cast<int>(values.size())), codecs(std::make_unique<unsigned char[]>(values.size())) {
    std::transform(values.begin(), values.end(), codecs.get(),
                   [](int v) { return static_cast<unsigned char>(v); });
  }
  int count;
  std::unique_ptr<unsigned char[]> codecs;
};

struct Restriction {
  const char* name;
  std::string before;
  Codecs given;
  bool reorder;
  std::string after;
  Codecs slots;
};

TEST(RestrictAudioCodecs, RewritesTextAndSummary) {
  const std::string four = body(" 13 0 101 8", "a=ptime:20\r\n" + events);
  const std::string annex = "a=fmtp:18 annexb:no\r\n";
  const Restriction cases[] = {
      {"given order, one codec", body(" 0 8 101", events), {1}, true, body(" 8 101", events), {1, 29}},
      {"own order, one codec", body(" 0 8 101", events), {1}, false, body(" 8 101", events), {1, 29}},
      {"given order", body(" 0 8 18"), {10, 3}, true, body(" 18 0"), {10, 3}},
      {"own order", body(" 0 8 18"), {10, 3}, false, body(" 0 18"), {3, 10}},
      {"given order, what is always kept comes behind",
       four,
       {1},
       true,
       body(" 8 13 101", events + "a=ptime:20\r\n"),
       {1, 37, 29}},
      {"own order, what is always kept stays",
       four,
       {1},
       false,
       body(" 13 101 8", "a=ptime:20\r\n" + events),
       {37, 29, 1}},
      {"given order names telephone events",
       four,
       {29, 1},
       true,
       body(" 101 8 13", events + "a=ptime:20\r\n"),
       {29, 1, 37}},
      {"given order names all",
       four,
       {37, 1, 29},
       true,
       body(" 13 8 101", events + "a=ptime:20\r\n"),
       {37, 1, 29}},
      {"given order, telephone events alone are common",
       four,
       {29},
       true,
       body(" 101 13", events + "a=ptime:20\r\n"),
       {29, 37}},
      {"the given list ends at its first 0", body(" 0 8"), {1, 0, 3}, false, body(" 8"), {1}},
      {"the same in given order", body(" 0 8"), {1, 0, 3}, true, body(" 8"), {1}},
      {"codecs that the body has not", body(" 0 8"), {38, 1, 26}, true, body(" 8"), {1}},
      {"nothing to remove", body(" 0 8"), {3, 1}, false, body(" 0 8"), {3, 1}},
      // Deliberate: a codec given twice stands twice.
      {"a codec given twice", body(" 0 8"), {1, 1}, true, body(" 8 8"), {1, 1}},
      // Deliberate: payload type 18 is G729 to the edit, not the G729A of the summary.
      {"G729A", body(" 8 18", annex), {1, 11}, false, body(" 8"), {1}},
      {"every section",
       body(" 0 8", "m=audio 5006 RTP/AVP 8 0 18\r\n"),
       {3},
       false,
       body(" 0", "m=audio 5006 RTP/AVP 0\r\n"),
       {3}},
  };
  for (const Restriction& each : cases) {
    cSdpNegotiator object = parsedObject(each.before);
    object.setBandwidth(64);  // lost: the summary is that of the new text
    const List given(each.given);
    TraceCapture trace;
    EXPECT_EQ(object.sdpRestrictAudioCodecsTo(given.codecs.get(), given.count, each.reorder), 1) << each.name;
    EXPECT_EQ(textOf(object), each.after) << each.name;
    EXPECT_EQ(slotsOf(object), each.slots) << each.name;
    EXPECT_TRUE(sameBytes(object, parsedObject(each.after))) << each.name;
    ASSERT_GE(trace.lines().size(), 3U) << each.name;
    EXPECT_EQ(trace.lines()[0], restricting);
    EXPECT_EQ(trace.lines()[1], building);
    EXPECT_EQ(trace.lines()[2],
              (each.reorder ? reordered
                            : TraceLine{8, 4, "The selected audio codecs have been removed from the SDP"}));
  }
}

TEST(RestrictAudioCodecs, WithoutACommonCodecNothingIsDone) {
  struct Case {
    const char* name;
    std::string body;
    Codecs given;
    int count;
    bool reorder;
  };
  const Case cases[] = {
      {"another codec", body(" 8"), {3}, 1, false},
      {"another codec, given order", body(" 8"), {3}, 1, true},
      {"telephone events do not count in own order", body(" 8 101", events), {29}, 1, false},
      {"comfort noise does not count in own order", body(" 8 13"), {37}, 1, false},
      {"behind the count", body(" 8"), {3, 1}, 1, false},
      {"behind the count, given order", body(" 8"), {3, 1}, 1, true},
      {"count 0", body(" 8"), {1}, 0, false},
      {"count 0, given order", body(" 8"), {1}, 0, true},
      {"a negative count", body(" 8"), {1}, -1, false},
      {"a negative count, given order", body(" 8"), {1}, -1, true},
      {"a 0 first", body(" 8"), {0, 1}, 2, false},
      {"a 0 first, given order", body(" 8"), {0, 1}, 2, true},
      {"no audio", sessionLines(), {1}, 1, true},
  };
  for (const Case& each : cases) {
    cSdpNegotiator object = parsedObject(each.body);
    const cSdpNegotiator before = object;
    const List given(each.given);
    TraceCapture trace;
    EXPECT_EQ(object.sdpRestrictAudioCodecsTo(given.codecs.get(), each.count, each.reorder), 0) << each.name;
    EXPECT_TRUE(sameBytes(object, before)) << each.name;
    EXPECT_EQ(trace.takeLines(), (Lines{restricting, nothingCommon})) << each.name;
  }
}

TEST(RestrictAudioCodecs, NeedsAList) {
  for (const bool reorder : {false, true}) {
    cSdpNegotiator object = parsedObject(body(" 0 8"));
    const cSdpNegotiator before = object;
    TraceCapture trace;
    EXPECT_EQ(object.sdpRestrictAudioCodecsTo(nullptr, 3, reorder), 0);
    EXPECT_TRUE(sameBytes(object, before));
    EXPECT_EQ(
        trace.takeLines(),
        (Lines{restricting, {4, 3, "Empty audio codecs array. Exiting from sdpRestrictAudioCodecsTo"}}));
  }
}

TEST(RestrictAudioCodecs, ReadsAllThatIsGiven) {
  Codecs late(1000, 38);
  late[999] = 1;
  const List given(late);
  for (const bool reorder : {false, true}) {
    cSdpNegotiator object = parsedObject(body(" 0 8"));
    EXPECT_EQ(object.sdpRestrictAudioCodecsTo(given.codecs.get(), given.count, reorder), 1);
    EXPECT_TRUE(sameBytes(object, parsedObject(body(" 8"))));
    object = parsedObject(body(" 0 8"));
    EXPECT_EQ(object.sdpRestrictAudioCodecsTo(given.codecs.get(), given.count - 1, reorder), 0);
    EXPECT_TRUE(sameBytes(object, parsedObject(body(" 0 8"))));
  }
}

// PCMU, PCMA, G722, G723, G728, G729, telephone events, Opus and comfort noise, whose values go up to 38.
TEST(RestrictAudioCodecs, ToAllCodecsKeepsEverything) {
  Codecs all(38);
  std::iota(all.begin(), all.end(), 1);
  const List given(all);
  const std::string opus = "a=rtpmap:111 opus/48000/2\r\n";
  const std::string before = body(" 0 8 9 4 15 18 101 111 13", events + opus);
  cSdpNegotiator object = parsedObject(before);
  ASSERT_EQ(slotsOf(object), (Codecs{3, 1, 5, 8, 9, 10, 29, 38, 37}));
  EXPECT_EQ(object.sdpRestrictAudioCodecsTo(given.codecs.get(), given.count, false), 1);
  EXPECT_TRUE(sameBytes(object, parsedObject(before)));
  EXPECT_EQ(object.sdpRestrictAudioCodecsTo(given.codecs.get(), given.count, true), 1);
  EXPECT_TRUE(sameBytes(object, parsedObject(body(" 8 0 9 4 15 18 101 13 111", events + opus))));
}

TEST(RestrictAudioCodecs, GivesNoMoreThanTwenty) {
  for (const std::size_t count : {19U, 20U, 21U, 1000U}) {
    const List given(Codecs(count, 1));
    for (const bool reorder : {false, true}) {
      cSdpNegotiator object = parsedObject(body(" 0 8"));
      EXPECT_EQ(object.sdpRestrictAudioCodecsTo(given.codecs.get(), given.count, reorder), 1);
      std::string formats;
      for (std::size_t i = 0; i < (reorder ? std::min<std::size_t>(count, 20) : 1); ++i) formats += " 8";
      EXPECT_EQ(textOf(object), body(formats));
      EXPECT_TRUE(sameBytes(object, parsedObject(body(formats))));
    }
  }
}

TEST(RestrictAudioCodecs, TakesTheObjectsOwnList) {
  for (const bool reorder : {false, true}) {
    cSdpNegotiator object = parsedObject(body(" 0 8 3"));
    EXPECT_EQ(object.sdpRestrictAudioCodecsTo(object.getParsedData().audioCodec, 20, reorder), 1);
    EXPECT_TRUE(sameBytes(object, parsedObject(body(" 0 8"))));
  }
}

// A video section larger than a description holds is not written by the codec.
TEST(RestrictAudioCodecs, ABrowsersOfferKeepsItsVideo) {
  std::string offer = readBytes(SDP_TEST_SOURCE_DIR "/parsers/sdp/test/bodies/browserOffer.sdp");
  const std::string port = "m=audio 9 ";
  offer.replace(offer.find(port), port.size(), "m=audio 5004 ");
  const std::string video = offer.substr(offer.find("m=video"));
  const List given({3, 38});
  for (const bool reorder : {false, true}) {
    cSdpNegotiator object = parsedObject(offer);
    EXPECT_EQ(object.sdpRestrictAudioCodecsTo(given.codecs.get(), given.count, reorder), 1);
    const std::string text = textOf(object);
    EXPECT_EQ(text.substr(text.find("m=video")), video);
    EXPECT_NE(text.find(reorder ? "SAVPF 0 111 13 110\r" : "SAVPF 111 0 13 110 126\r"), std::string::npos)
        << text;
    EXPECT_TRUE(sameBytes(object, parsedObject(text)));
  }
}

TEST(RestrictAudioCodecs, AnObjectWhoseTextDoesNotParseIsLeftEmpty) {
  const List given({1});
  for (const bool reorder : {false, true}) {
    for (const char* text : {"", "no body", "v=0\r\nm=audio 80 RTP/AVP 8\r\n"}) {
      cSdpNegotiator object = objectWithText(text);
      object.addAudioCodec(1, 0);
      EXPECT_EQ(object.sdpRestrictAudioCodecsTo(given.codecs.get(), given.count, reorder), 1);
      EXPECT_TRUE(sameBytes(object, emptyObject())) << text;
    }
  }
}

// The codec's form has one character more than this body, which then stays and is parsed again.
TEST(RestrictAudioCodecs, AnEditWithoutRoomLeavesTextAndCodecs) {
  const std::string full = completeBody(20479, "m=audio 5004 RTP/AVP 0 8\r\n");
  const List given({1, 3});
  for (const bool reorder : {false, true}) {
    cSdpNegotiator object = parsedObject(full);
    EXPECT_EQ(object.sdpRestrictAudioCodecsTo(given.codecs.get(), given.count, reorder), 1);
    EXPECT_EQ(slotsOf(object), (Codecs{3, 1}));
    EXPECT_TRUE(sameBytes(object, parsedObject(full)));
  }
}

// A body of 20480 characters is stored, but does not fit a buffer with its NUL.
TEST(RestrictAudioCodecs, ATextThatCannotBeExpandedStays) {
  const List given({1});
  const cSdpNegotiator before = parsedObject(paddedTo(20480));
  for (const bool reorder : {false, true}) {
    cSdpNegotiator object = before;
    EXPECT_EQ(object.sdpRestrictAudioCodecsTo(given.codecs.get(), given.count, reorder), 0);
    EXPECT_TRUE(sameBytes(object, before));
  }
}

TEST(CodecPreference, PutsACodecFirst) {
  const std::string attributes = "a=ptime:20\r\n" + events + "a=rtpmap:18 G729/8000\r\n";
  cSdpNegotiator object = parsedObject(body(" 0 4 18 101", attributes));
  ASSERT_EQ(slotsOf(object), (Codecs{3, 8, 10, 29}));
  const std::string after = body(" 18 0 4 101", "a=rtpmap:18 G729/8000\r\n" + events + "a=ptime:20\r\n");
  TraceCapture trace;
  EXPECT_EQ(object.sdpChangeAudioCodecPreference(10), 0);
  EXPECT_EQ(textOf(object), after);
  EXPECT_EQ(slotsOf(object), (Codecs{10, 3, 8, 29}));
  EXPECT_EQ(trace.takeLines(),
            (Lines{fine("Request to change AudioCodec G729 preference"), fine("Num Of Final Codecs= 4"),
                   building, reordered, fine("Updated SDP: " + after)}));
  EXPECT_TRUE(sameBytes(object, parsedObject(after)));
}

TEST(CodecPreference, MovesOnlyWhatStoodInFront) {
  struct Case {
    Codecs before;
    unsigned char codec;
    Codecs after;
  };
  const Case cases[] = {
      {{3, 1}, 1, {1, 3}},
      {{3, 1, 10}, 1, {1, 3, 10}},
      {{3, 1, 1}, 1, {1, 3, 1}},
      {{29, 37, 1, 3}, 1, {1, 29, 37, 3}},
      {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20},
       20,
       {20, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19}},
  };
  for (const Case& each : cases) {
    cSdpNegotiator object = parsedObject(body(" 0 8"));
    const List slots(each.before);
    object.setAudioCodecs(slots.codecs.get(), slots.count);
    EXPECT_EQ(object.sdpChangeAudioCodecPreference(each.codec), 0);
    EXPECT_EQ(slotsOf(object), each.after);
  }
}

// Deliberate: the periods do not move with their codecs, and nothing else of the summary is rebuilt.
TEST(CodecPreference, LeavesThePeriodsInTheirSlots) {
  cSdpNegotiator object = parsedObject(body(" 0 8"));
  object.setPacketizationPeriod(10, 0);
  object.setPacketizationPeriod(30, 1);
  object.setPacketizationPeriod(60, 2);
  object.setPacketizationPeriod(90, 19);
  object.setBandwidth(64);
  EXPECT_EQ(object.sdpChangeAudioCodecPreference(1), 0);
  EXPECT_EQ(periodsOf(object), periods({10, 30}));
  EXPECT_EQ(object.getParsedData().bandwidth, 64U);
  EXPECT_EQ(textOf(object), body(" 8 0"));
}

TEST(CodecPreference, IsRefusedForSomeCodecs) {
  const std::pair<unsigned char, const char*> refused[] = {{0, "Invalid audio codec  entry"},
                                                           {29, "Invalid audio codec TELEPHONE_EVENT entry"},
                                                           {37, "Invalid audio codec COMFORT_NOISE entry"}};
  cSdpNegotiator object = parsedObject(body(" 0 8 101 13", events));
  const cSdpNegotiator before = object;
  TraceCapture trace;
  for (const auto& [codec, message] : refused) {
    EXPECT_EQ(object.sdpChangeAudioCodecPreference(codec), 0);
    EXPECT_EQ(trace.takeLines(), (Lines{{4, 3, message}}));
  }
  EXPECT_EQ(object.sdpChangeAudioCodecPreference(3), 0);  // is first already
  EXPECT_EQ(trace.takeLines(), Lines{});
  EXPECT_EQ(object.sdpChangeAudioCodecPreference(10), 0);
  EXPECT_EQ(trace.takeLines(), (Lines{fine("Request to change AudioCodec G729 preference"),
                                      fine("The preferable Audio Codec G729 not found in the SDP")}));
  EXPECT_EQ(object.sdpChangeAudioCodecPreference(255), 0);
  EXPECT_EQ(trace.takeLines(), (Lines{fine("Request to change AudioCodec  preference"),
                                      fine("The preferable Audio Codec  not found in the SDP")}));
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(CodecPreference, OfAnObjectWithoutTextIsKeptInItsSlots) {
  cSdpNegotiator object = emptyObject();
  const List slots({3, 1});
  object.setAudioCodecs(slots.codecs.get(), slots.count);
  TraceCapture trace;
  EXPECT_EQ(object.sdpChangeAudioCodecPreference(1), 0);
  EXPECT_EQ(slotsOf(object), (Codecs{1, 3}));
  EXPECT_EQ(trace.takeLines(), (Lines{fine("Request to change AudioCodec G711ALAW64K preference"),
                                      fine("Num Of Final Codecs= 2"), building, noText}));
  EXPECT_FALSE(object.isSdpPresent());
}

/// Applies both preference requests to copies of an object, which must stay as it is.
void expectUnchanged(const cSdpNegotiator& before) {
  cSdpNegotiator object = before;
  EXPECT_EQ(object.sdpChangeAudioCodecPreference(1), 0);
  EXPECT_TRUE(sameBytes(object, before));
  const List order({1, 3});
  EXPECT_EQ(object.sdpReorderAudioCodecPreference(order.codecs.get(), order.count), 0);
  EXPECT_TRUE(sameBytes(object, before));
}

// The codec slots do not say what the text does not.
TEST(CodecPreference, StaysWhenTheTextCannotFollow) {
  expectUnchanged(parsedObject(completeBody(20479, "m=audio 5004 RTP/AVP 0 8\r\n")));  // no room
  expectUnchanged(parsedObject(paddedTo(20480)));                                      // is not expanded
  cSdpNegotiator noBody = objectWithText("no body");
  const List slots({3, 1});
  noBody.setAudioCodecs(slots.codecs.get(), slots.count);
  expectUnchanged(noBody);
}

/// A body that can be stored, while the codec's form of it, which has CR LF, cannot.
std::string bodyWhoseFormIsNotStored() {
  std::string loose = incompressibleBody(4000);
  loose.erase(std::remove(loose.begin(), loose.end(), '\r'), loose.end());
  for (std::size_t length = 2600; length < loose.size(); ++length) {
    const std::string candidate = loose.substr(0, length);
    if (candidate.back() == '\n') continue;
    EditBuffer form(candidate);
    unsigned char list[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {1, 3};
    if (sdpModifications::sdpCodecsReordering(form.data(), list) != 0) continue;
    cSdpNegotiator object = emptyObject();
    if (object.setRawSDP(candidate.c_str()) == 0 && object.setRawSDP(form.text().c_str()) == 2)
      return candidate;
  }
  return {};
}

TEST(CodecPreference, StaysWhenTheNewTextCannotBeStored) {
  const std::string loose = bodyWhoseFormIsNotStored();
  ASSERT_FALSE(loose.empty());
  expectUnchanged(parsedObject(loose));
}

struct Order {
  const char* name;
  Codecs given;
  int count;
  std::string formats;
  Codecs slots;  ///< the first of them; the others are 0
  Codecs periods;
};

TEST(CodecOrder, IsTakenAsItIs) {
  const std::string before = body(" 0 8 18 101", "a=ptime:20\r\n");
  const Codecs twenty(20, 1);
  std::string twentyFormats;
  for (int i = 0; i < 20; ++i) twentyFormats += " 8";
  const Order cases[] = {
      {"two", {1, 3}, 2, " 8 0", {1, 3}, {20, 20}},
      {"more than the count", {1, 3}, 1, " 8", {1}, {20}},
      {"a codec that the body has not", {38}, 1, "", {38}, {20}},
      {"another and one that it has", {38, 10}, 2, " 18", {38, 10}, {20, 20}},
      {"a 0 within", {3, 0, 1}, 3, " 0", {3, 0, 1}, {20, 20, 20}},
      {"count 0", {1}, 0, " 0 8 18 101", {}, {}},
      {"a negative count", {1}, -5, " 0 8 18 101", {}, {}},
      {"the least count", {1}, -2147483647 - 1, " 0 8 18 101", {}, {}},
      {"all 20", twenty, 20, twentyFormats, twenty, {20, 20, 20}},
      {"a count above 20", twenty, 21, twentyFormats, twenty, {20, 20, 20}},
      {"the largest count", twenty, 2147483647, twentyFormats, twenty, {20, 20, 20}},
  };
  for (const Order& each : cases) {
    cSdpNegotiator object = parsedObject(before);
    ASSERT_EQ(periodsOf(object), periods({20, 20, 20}));
    object.setBandwidth(64);  // stays: the text is not parsed again
    const std::string after = body(each.formats, "a=ptime:20\r\n");
    const List given(each.given);
    TraceCapture trace;
    EXPECT_EQ(object.sdpReorderAudioCodecPreference(given.codecs.get(), each.count), 0) << each.name;
    EXPECT_EQ(textOf(object), after) << each.name;
    Codecs slots = each.slots;
    slots.resize(MAX_SDP_NEGOTIATOR_AUDIO_CODECS, 0);
    const auto& held = object.getParsedData().audioCodec;
    EXPECT_EQ(Codecs(std::begin(held), std::end(held)), slots) << each.name;
    EXPECT_EQ(periodsOf(object), periods(each.periods)) << each.name;
    EXPECT_EQ(object.getParsedData().bandwidth, 64U);
    EXPECT_EQ(trace.takeLines(), (Lines{fine("Request to change AudioCodec preference"),
                                        fine("Num Of Final Codecs= " + std::to_string(each.count)), building,
                                        reordered, fine("Updated SDP: " + after)}))
        << each.name;
  }
}

TEST(CodecOrder, TakesTheObjectsOwnList) {
  cSdpNegotiator object = parsedObject(body(" 0 8 3"));
  EXPECT_EQ(object.sdpReorderAudioCodecPreference(object.getParsedData().audioCodec, 2), 0);
  EXPECT_TRUE(sameBytes(object, parsedObject(body(" 0 8"))));
}

TEST(CodecOrder, NeedsACodec) {
  cSdpNegotiator object = parsedObject(body(" 0 8"));
  const cSdpNegotiator before = object;
  const List none({0, 3});
  TraceCapture trace;
  EXPECT_EQ(object.sdpReorderAudioCodecPreference(none.codecs.get(), 2), 0);
  EXPECT_EQ(object.sdpReorderAudioCodecPreference(nullptr, 2), 0);
  const TraceLine invalid{4, 3, "sdpReorderAudioCodecPreference exit - Invalid audio codec entry"};
  EXPECT_EQ(trace.takeLines(), (Lines{invalid, invalid}));
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(CodecOrder, OfAnObjectWithoutTextIsKeptInItsSlots) {
  cSdpNegotiator object = emptyObject();
  object.setPacketizationPeriod(20, 0);
  object.setPacketizationPeriod(30, 2);
  const List order({38, 3});
  TraceCapture trace;
  EXPECT_EQ(object.sdpReorderAudioCodecPreference(order.codecs.get(), 2), 0);
  EXPECT_EQ(slotsOf(object), (Codecs{38, 3}));
  EXPECT_EQ(periodsOf(object), periods({20}));
  EXPECT_EQ(trace.takeLines(), (Lines{fine("Request to change AudioCodec preference"),
                                      fine("Num Of Final Codecs= 2"), building, noText}));
}

}  // namespace
