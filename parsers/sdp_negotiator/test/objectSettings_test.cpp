#include <climits>

#include "objectTestSupport.h"
#include "traceCapture.h"

// The setters: their limits and messages, and that each changes its own member alone.

namespace {

using Lines = std::vector<TraceLine>;

/// An object in which every byte differs from the reset state.
Record fullRecord() {
  Record record;
  std::memset(static_cast<void*>(&record), 0x55, sizeof record);
  return record;
}

/// The codec slots of an object, or with `periods` its periods.
std::vector<int> slotsOf(const cSdpNegotiator& object, bool periods = false) {
  const sSdpParsedData& data = object.getParsedData();
  const auto& slots = periods ? data.packetizationPeriod : data.audioCodec;
  return {std::begin(slots), std::end(slots)};
}

/// 20 slots that begin with the given values.
std::vector<int> slots(std::vector<int> values, int rest) {
  values.resize(20, rest);
  return values;
}

const TraceLine codec39{4, 3, "Invalid audio codec (39) entry"};

TraceLine invalidSlot(int slot) {
  return {4, 3,
          "Invalid slot (" + std::to_string(slot) +
              ") entry. MUST not exceed to MAX_SDP_NEGOTIATOR_AUDIO_CODECS"};
}

TEST(CodecSetting, TheListReplacesAllSlots) {
  TraceCapture trace;
  cSdpNegotiator object = fullRecord().object();
  const unsigned char codecs[] = {38, 0, 1};
  EXPECT_EQ(object.setAudioCodecs(codecs, 3), 0);
  EXPECT_EQ(slotsOf(object), slots({38, 0, 1}, 0));
  EXPECT_EQ(object.setAudioCodecs(codecs, 1), 0);
  EXPECT_EQ(slotsOf(object), slots({38}, 0));
  EXPECT_TRUE(trace.lines().empty());
}

TEST(CodecSetting, ACountBelowOneLeavesTheSlotsEmpty) {
  const unsigned char codecs[] = {39};
  for (const int count : {0, -1, INT_MIN}) {
    TraceCapture trace;
    cSdpNegotiator object = fullRecord().object();
    EXPECT_EQ(object.setAudioCodecs(codecs, count), 0) << count;
    EXPECT_EQ(slotsOf(object), slots({}, 0));
    EXPECT_TRUE(trace.lines().empty());
  }
}

TEST(CodecSetting, AListOfMoreThan20EntriesIsTakenUpToTheLastSlot) {
  for (const int count : {19, 20, 21, 300, INT_MAX}) {
    const std::vector<unsigned char> codecs(static_cast<std::size_t>(std::min(count, 20)), 10);
    Record expected = fullRecord();
    std::fill(std::begin(expected.data.audioCodec), std::end(expected.data.audioCodec), 0);
    std::copy(codecs.begin(), codecs.end(), expected.data.audioCodec);
    cSdpNegotiator object = fullRecord().object();
    EXPECT_EQ(object.setAudioCodecs(codecs.data(), count), 0) << count;
    EXPECT_TRUE(sameBytes(object, expected.object())) << count;
  }
}

TEST(CodecSetting, AnInvalidValueEmptiesTheSlotsAndIsTracedOnce) {
  TraceCapture trace;
  cSdpNegotiator object = fullRecord().object();
  const unsigned char codecs[] = {8, 39, 255};
  EXPECT_EQ(object.setAudioCodecs(codecs, 3), 1);
  EXPECT_EQ(slotsOf(object), slots({}, 0));
  EXPECT_EQ(trace.takeLines(), Lines{codec39});
  const unsigned char last[20] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 255};
  EXPECT_EQ(object.setAudioCodecs(last, 20), 1);
  EXPECT_EQ(slotsOf(object), slots({}, 0));
  EXPECT_EQ(trace.takeLines(), (Lines{{4, 3, "Invalid audio codec (255) entry"}}));
}

TEST(CodecSetting, ANullListEmptiesTheSlots) {
  for (const int count : {0, 5}) {
    TraceCapture trace;
    Record expected = fullRecord();
    std::fill(std::begin(expected.data.audioCodec), std::end(expected.data.audioCodec), 0);
    cSdpNegotiator object = fullRecord().object();
    EXPECT_EQ(object.setAudioCodecs(nullptr, count), 1);
    EXPECT_TRUE(sameBytes(object, expected.object()));
    EXPECT_EQ(trace.takeLines(), (Lines{{4, 3, "Empty audio codecs input. Exiting..."}}));
  }
}

TEST(CodecSetting, TheListMayBeTheObjectsOwn) {
  Record record = fullRecord();
  for (std::uint8_t i = 0; i < 20; ++i) record.data.audioCodec[i] = static_cast<std::uint8_t>(i + 1);
  cSdpNegotiator object = record.object();
  EXPECT_EQ(object.setAudioCodecs(object.getParsedData().audioCodec, 20), 0);
  EXPECT_TRUE(sameBytes(object, record.object()));
  EXPECT_EQ(object.setAudioCodecs(object.getParsedData().audioCodec + 18, 2), 0);
  EXPECT_EQ(slotsOf(object), slots({19, 20}, 0));
}

TEST(CodecSetting, ACodecIsAddedToTheFirstEmptySlot) {
  cSdpNegotiator object = emptyObject();
  const unsigned char codecs[] = {3, 0, 1};
  ASSERT_EQ(object.setAudioCodecs(codecs, 3), 0);
  EXPECT_FALSE(object.addAudioCodec(38, -1));
  EXPECT_FALSE(object.addAudioCodec(29, -1));
  EXPECT_EQ(slotsOf(object), slots({3, 38, 1, 29}, 0));
}

TEST(CodecSetting, ACodecIsPutIntoTheSlotGiven) {
  TraceCapture trace;
  cSdpNegotiator object = emptyObject();
  EXPECT_FALSE(object.addAudioCodec(3, 0));
  EXPECT_FALSE(object.addAudioCodec(1, 19));
  EXPECT_FALSE(object.addAudioCodec(10, 0));
  std::vector<int> expected = slots({10}, 0);
  expected[19] = 1;
  EXPECT_EQ(slotsOf(object), expected);
  EXPECT_FALSE(object.addAudioCodec(0, 19));  // empties it
  EXPECT_EQ(slotsOf(object), slots({10}, 0));
  EXPECT_TRUE(trace.lines().empty());
}

TEST(CodecSetting, WithoutAnEmptySlotNothingIsAdded) {
  TraceCapture trace;
  cSdpNegotiator object = fullRecord().object();
  EXPECT_FALSE(object.addAudioCodec(5, -1));
  EXPECT_TRUE(sameBytes(object, fullRecord().object()));
  EXPECT_TRUE(trace.lines().empty());
}

TEST(CodecSetting, AWrongSlotOrCodecIsRefused) {
  TraceCapture trace;
  cSdpNegotiator object = emptyObject();
  for (const int slot : {20, 21, INT_MAX, -2, INT_MIN}) {
    EXPECT_TRUE(object.addAudioCodec(5, slot)) << slot;
    EXPECT_EQ(trace.takeLines(), Lines{invalidSlot(slot)});
  }
  for (const int slot : {-1, 0, 19}) {
    EXPECT_TRUE(object.addAudioCodec(39, slot)) << slot;
    EXPECT_EQ(trace.takeLines(), Lines{codec39});
  }
  EXPECT_TRUE(object.addAudioCodec(39, 20));  // the slot is looked at first
  EXPECT_EQ(trace.takeLines(), Lines{invalidSlot(20)});
  EXPECT_TRUE(sameBytes(object, emptyObject()));
}

TEST(PeriodSetting, TheListReplacesTheFirstSlotsUnchecked) {
  TraceCapture trace;
  Record expected = fullRecord();
  cSdpNegotiator object = fullRecord().object();
  const unsigned char periods[] = {0, 20, 255};
  EXPECT_EQ(object.setPacketizationPeriod(periods, 3), 0);
  std::copy(std::begin(periods), std::end(periods), expected.data.packetizationPeriod);
  EXPECT_TRUE(sameBytes(object, expected.object()));
  for (const int count : {0, -1, INT_MIN}) {
    EXPECT_EQ(object.setPacketizationPeriod(periods, count), 0);
    EXPECT_TRUE(sameBytes(object, expected.object())) << count;
  }
  EXPECT_TRUE(trace.lines().empty());
}

TEST(PeriodSetting, AListOfMoreThan20EntriesIsTakenUpToTheLastSlot) {
  for (const int count : {20, 21, INT_MAX}) {
    const std::vector<unsigned char> periods(20, 30);
    Record expected = fullRecord();
    std::fill(std::begin(expected.data.packetizationPeriod), std::end(expected.data.packetizationPeriod), 30);
    cSdpNegotiator object = fullRecord().object();
    EXPECT_EQ(object.setPacketizationPeriod(periods.data(), count), 0);
    EXPECT_TRUE(sameBytes(object, expected.object())) << count;
  }
}

TEST(PeriodSetting, ANullListChangesNothing) {
  TraceCapture trace;
  cSdpNegotiator object = fullRecord().object();
  const unsigned char* const none = nullptr;
  EXPECT_EQ(object.setPacketizationPeriod(none, 2), 1);
  EXPECT_TRUE(sameBytes(object, fullRecord().object()));
  EXPECT_EQ(trace.takeLines(), (Lines{{4, 3, "Empty packetization time input. Exiting..."}}));
}

TEST(PeriodSetting, TheListMayBeTheObjectsOwn) {
  cSdpNegotiator object = fullRecord().object();
  EXPECT_EQ(object.setPacketizationPeriod(object.getParsedData().packetizationPeriod, 20), 0);
  EXPECT_TRUE(sameBytes(object, fullRecord().object()));
}

TEST(PeriodSetting, APeriodGoesIntoTheFirstUnsetOrTheGivenSlot) {
  constexpr unsigned char twenty = 20;
  constexpr unsigned char thirty = 30;
  TraceCapture trace;
  cSdpNegotiator object = emptyObject();
  EXPECT_FALSE(object.setPacketizationPeriod(twenty, -1));
  EXPECT_FALSE(object.setPacketizationPeriod(thirty, -1));
  EXPECT_EQ(slotsOf(object, true), slots({20, 30}, 255));
  EXPECT_FALSE(object.setPacketizationPeriod(thirty, 0));
  EXPECT_FALSE(object.setPacketizationPeriod(thirty, 19));
  std::vector<int> expected = slots({30, 30}, 255);
  expected[19] = 30;
  EXPECT_EQ(slotsOf(object, true), expected);
  cSdpNegotiator full = fullRecord().object();
  EXPECT_FALSE(full.setPacketizationPeriod(twenty, -1));
  EXPECT_TRUE(sameBytes(full, fullRecord().object()));
  EXPECT_TRUE(trace.lines().empty());
}

TEST(PeriodSetting, AWrongSlotIsRefused) {
  TraceCapture trace;
  cSdpNegotiator object = emptyObject();
  for (const int slot : {20, INT_MAX, -2, INT_MIN}) {
    EXPECT_TRUE(object.setPacketizationPeriod(static_cast<unsigned char>(20), slot)) << slot;
    EXPECT_EQ(trace.takeLines(), Lines{invalidSlot(slot)});
  }
  EXPECT_TRUE(sameBytes(object, emptyObject()));
}

TEST(PortSetting, PortsAre0Or1024To65535) {
  TraceCapture trace;
  for (const unsigned int port : {0U, 1024U, 1025U, 65535U}) {
    Record expected = fullRecord();
    expected.data.port = port;
    cSdpNegotiator object = fullRecord().object();
    EXPECT_EQ(object.setMediaPort(port), 0);
    EXPECT_TRUE(sameBytes(object, expected.object())) << port;
  }
  EXPECT_TRUE(trace.lines().empty());
  cSdpNegotiator object = fullRecord().object();
  for (const unsigned int port : {1U, 1023U, 65536U, 0x7FFFFFFFU}) {
    EXPECT_EQ(object.setMediaPort(port), 1);
    EXPECT_EQ(trace.takeLines(),
              (Lines{{4, 3, "Invalid port number (" + std::to_string(port) + ") entry."}}));
  }
  EXPECT_EQ(object.setMediaPort(SDP_PORT_NOT_SET), 1);
  EXPECT_TRUE(sameBytes(object, fullRecord().object()));
}

TEST(MediaTypeSetting, TypesAre0To63) {
  TraceCapture trace;
  for (const unsigned int type : {0U, 1U, 63U}) {
    Record expected = fullRecord();
    expected.data.mediaType = type;
    cSdpNegotiator object = fullRecord().object();
    EXPECT_EQ(object.setMediaType(type), 0);
    EXPECT_TRUE(sameBytes(object, expected.object())) << type;
  }
  EXPECT_TRUE(trace.lines().empty());
  cSdpNegotiator object = fullRecord().object();
  for (const unsigned int type : {64U, 127U, 0x7FFFFFFFU}) {
    EXPECT_EQ(object.setMediaType(type), 1);
    EXPECT_EQ(trace.takeLines(), (Lines{{4, 3, "Invalid mediaType entry (" + std::to_string(type) + ")"}}));
  }
  EXPECT_EQ(object.setMediaType(0x80000000U), 1);
  EXPECT_TRUE(sameBytes(object, fullRecord().object()));
}

TEST(ReserveSetting, ValuesAre0To3) {
  TraceCapture trace;
  for (const std::uint8_t value : std::initializer_list<std::uint8_t>{0, 3}) {
    Record expected = fullRecord();
    expected.data.resourceReserve = value;
    cSdpNegotiator object = fullRecord().object();
    EXPECT_EQ(object.setResourceReserve(value), 0);
    EXPECT_TRUE(sameBytes(object, expected.object()));
  }
  EXPECT_TRUE(trace.lines().empty());
  cSdpNegotiator object = fullRecord().object();
  for (const std::uint8_t value : std::initializer_list<std::uint8_t>{4, 255}) {
    EXPECT_EQ(object.setResourceReserve(value), 1);
    EXPECT_EQ(trace.takeLines(),
              (Lines{{4, 3, "Invalid eResourceReserve entry (" + std::to_string(value) + ")"}}));
  }
  EXPECT_TRUE(sameBytes(object, fullRecord().object()));
}

/// A setter that takes any value, and the member that it sets.
struct FreeSetting {
  const char* name;
  unsigned short (*set)(cSdpNegotiator&);
  void (*expect)(sSdpParsedData&);
};

const FreeSetting freeSettings[] = {
    {"echo cancellation", [](cSdpNegotiator& o) { return o.setEchoCancellation(255); },
     [](sSdpParsedData& d) { d.echoCancellation = 255; }},
    {"echo cancellation direction", [](cSdpNegotiator& o) { return o.setEchoCancelDirection(254); },
     [](sSdpParsedData& d) { d.echoCancelDirection = 254; }},
    {"T.38 bit rate", [](cSdpNegotiator& o) { return o.setT38MaxBitRate(0xFFFFFFFE); },
     [](sSdpParsedData& d) { d.T38MaxBitRate = 0xFFFFFFFE; }},
    {"attributes", [](cSdpNegotiator& o) { return o.setSdpAttributes(0x80000001); },
     [](sSdpParsedData& d) { d.sdpAttributes = 0x80000001; }},
    {"lowest gain", [](cSdpNegotiator& o) { return o.setGainControl(SHRT_MIN); },
     [](sSdpParsedData& d) { d.gainControl = SHRT_MIN; }},
    {"highest gain", [](cSdpNegotiator& o) { return o.setGainControl(SHRT_MAX); },
     [](sSdpParsedData& d) { d.gainControl = SHRT_MAX; }},
    {"bandwidth", [](cSdpNegotiator& o) { return o.setBandwidth(0xFFFFFFFF); },
     [](sSdpParsedData& d) { d.bandwidth = 0xFFFFFFFF; }},
};

TEST(FreeSettings, TakeAnyValueAndNothingElse) {
  TraceCapture trace;
  for (const FreeSetting& each : freeSettings) {
    Record expected = fullRecord();
    each.expect(expected.data);
    cSdpNegotiator object = fullRecord().object();
    EXPECT_EQ(each.set(object), 0) << each.name;
    EXPECT_TRUE(sameBytes(object, expected.object())) << each.name;
  }
  EXPECT_TRUE(trace.lines().empty());
}

// Deliberate: the port of a descriptor is not checked, though one set alone is.
TEST(DescriptorSetting, AddressAndPortAreTakenUnchecked) {
  TraceCapture trace;
  for (const unsigned int port : {1U, 65536U, SDP_PORT_NOT_SET}) {
    Record expected = fullRecord();
    expected.data.address.setIPAddress("2001:db8::1");
    expected.data.port = port;
    sSDPDescriptor descriptor;
    descriptor.init();
    descriptor.address.setIPAddress("2001:db8::1");
    descriptor.port = port;
    cSdpNegotiator object = fullRecord().object();
    EXPECT_EQ(object.setSdpDescriptor(descriptor), 0);
    EXPECT_TRUE(sameBytes(object, expected.object())) << port;
  }
  EXPECT_TRUE(trace.lines().empty());
}

TEST(Settings, HoldUntilTheNextParse) {
  cSdpNegotiator object = parsedObject(audioBody());
  object.setBandwidth(7);
  object.setMediaPort(2000);
  object.addAudioCodec(38, -1);
  EXPECT_EQ(textOf(object), audioBody());
  ASSERT_EQ(object.sdpParse(audioBody().c_str(), SDP_TYPE_OFFER), 0);
  EXPECT_TRUE(sameBytes(object, parsedObject(audioBody())));
}

}  // namespace
