#include "transferTestSupport.h"

// The transfer form: what it holds, and that what was packed comes back.

namespace {

/// What was packed is there again, in an object whose other bytes stay as they were.
void expectToComeBack(const cSdpNegotiator& object, unsigned int size) {
  const Bytes form = packed(object);
  ASSERT_EQ(form.size(), size);
  const Bytes whole = bytesOf(object);
  EXPECT_TRUE(std::equal(form.begin(), form.end(), whole.begin()));
  cSdpNegotiator other = usedMemory();
  ASSERT_EQ(unpack(other, form), 0);
  Bytes expected(sizeof other, 0xa5);
  std::copy(form.begin(), form.end(), expected.begin());
  EXPECT_EQ(bytesOf(other), expected);
  EXPECT_EQ(std::memcmp(&other.getParsedData(), &object.getParsedData(), summarySize), 0);
  EXPECT_EQ(other.getObjectSize(), size);
  EXPECT_EQ(packed(other), form);
}

TEST(Transfer, SizeOfAPlainTextCountsItsNul) {
  const cSdpNegotiator object = objectWithText(paddedTo(300));
  EXPECT_EQ(object.getObjectSize(), 433U);
  unsigned char* array = nullptr;
  unsigned int size = 0;
  ASSERT_EQ(object.compressObject(&array, size), 0);
  EXPECT_EQ(size, 433U);
  EXPECT_EQ(array[432], 0);  // the text's NUL
  EXPECT_EQ(array[433], 0);  // one byte more than the form
  delete[] array;
}

TEST(Transfer, EveryPlainSizeComesBack) {
  for (unsigned int length = 0; length < SDP_STORED_TEXT_SIZE; ++length) {
    SCOPED_TRACE(length);
    const std::string text(length, 'p');
    const cSdpNegotiator object = objectWithText(text);
    expectToComeBack(object, length + 133);
    cSdpNegotiator other = usedMemory();
    ASSERT_EQ(unpack(other, packed(object)), 0);
    EXPECT_EQ(textOf(other), text);
  }
}

// Of the deflated bytes nothing is looked at, zeros among them included.
TEST(Transfer, EveryDeflatedSizeComesBack) {
  for (unsigned int length = 1; length <= SDP_STORED_TEXT_SIZE; ++length) {
    SCOPED_TRACE(length);
    Record record;
    record.data.storedSdpLength = static_cast<std::uint16_t>(length);
    for (unsigned int i = 0; i < length; ++i) record.raw[i] = static_cast<char>(i * 7);
    expectToComeBack(record.object(), length + 132);
  }
}

TEST(Transfer, LongBodiesComeBack) {
  for (const std::string& body : {paddedTo(2560), paddedTo(2561), paddedTo(20479), paddedTo(20480),
                                  incompressibleBody(2600), incompressibleBody(3000)}) {
    const cSdpNegotiator object = parsedObject(body);
    ASSERT_NE(object.getParsedData().storedSdpLength, 0);
    expectToComeBack(object, object.getParsedData().storedSdpLength + 132U);
    cSdpNegotiator other = usedMemory();
    ASSERT_EQ(unpack(other, packed(object)), 0);
    EXPECT_EQ(textOf(other), body);
  }
}

TEST(Transfer, AnEmptyObjectComesBack) {
  const cSdpNegotiator object = emptyObject();
  expectToComeBack(object, 133);
  cSdpNegotiator other = usedMemory();
  ASSERT_EQ(unpack(other, packed(object)), 0);
  EXPECT_FALSE(other.isParsedDataPresent());
  EXPECT_EQ(textOf(other), "");
}

TEST(Transfer, SettingsComeBack) {
  cSdpNegotiator object = parsedObject(audioBody());
  object.setBandwidth(77);
  object.setResourceReserve(3);
  object.setGainControl(-1);
  expectToComeBack(object, object.getRawSdpSize() + 133);
}

TEST(Transfer, AParsedObjectAnswersAsBefore) {
  for (const std::string& body : {audioBody(), paddedTo(6000)}) {
    const cSdpNegotiator object = parsedObject(body);
    cSdpNegotiator other = usedMemory();
    ASSERT_EQ(unpack(other, packed(object)), 0);
    EXPECT_EQ(other.compareSdpByBody(&object), 0);
    EXPECT_EQ(other.compareSdpOLine(body.substr(5, 28).c_str()), 0);
    EXPECT_EQ(other.getRawSdpSize(), body.size());
  }
}

// What a failed storing leaves is no text, but its bytes travel as they are as long as the recorded form fits.
TEST(Transfer, WhatAFailedStoringLeavesComesBack) {
  for (const std::string& former : {std::string("v=0\r\n"), paddedTo(3000)}) {
    cSdpNegotiator object = objectWithText(former);
    ASSERT_EQ(object.setRawSDP(incompressibleBody(6000).c_str()), 2);
    const unsigned int stored = object.getParsedData().storedSdpLength;
    Record record(object);
    if (stored == 0) record.raw[100] = '\0';  // deflated bytes hold a zero here or there
    const auto length = static_cast<unsigned int>(strnlen(record.raw, sizeof record.raw));
    expectToComeBack(record.object(), 132 + (stored != 0 ? stored : length + 1));
  }
}

TEST(Transfer, HasTheFieldsWhereTheyBelong) {
  Record record;
  const auto set = [&](unsigned int at, const Bytes& value) {
    std::memcpy(reinterpret_cast<unsigned char*>(&record) + at, value.data(), value.size());
  };
  const auto number = [](auto value) {
    Bytes bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
  };
  set(0, number(std::uint16_t{3}));
  set(24, number(std::uint32_t{0x11121314}));
  set(28, Bytes(20, 0x21));
  set(48, Bytes(20, 0x22));
  set(68, number(std::uint32_t{0x31323334}));
  set(72, number(std::int32_t{-3}));
  set(76, number(std::uint32_t{0x41424344}));
  set(80, number(std::uint32_t{0x51525354}));
  set(84, number(std::uint32_t{0x61626364}));
  set(88, number(std::uint16_t{0x7172}));
  set(90, number(std::uint16_t{0x7374}));
  set(92, number(std::int16_t{-4}));
  set(96, number(std::uint32_t{0x81828384}));
  set(100, {1, 2, 3, 4, 5});
  set(108, number(std::uint32_t{0x91929394}));
  set(112, Bytes(20, 0xa1));
  set(132, {'x', 'y', 'z'});
  const Bytes form = packed(record.object());
  ASSERT_EQ(form.size(), 135U);
  cSdpNegotiator object = usedMemory();
  ASSERT_EQ(unpack(object, form), 0);
  const sSdpParsedData& data = object.getParsedData();
  EXPECT_EQ(data.storedSdpLength, 3);
  EXPECT_EQ(data.port, 0x11121314U);
  EXPECT_EQ(Bytes(std::begin(data.audioCodec), std::end(data.audioCodec)), Bytes(20, 0x21));
  EXPECT_EQ(Bytes(std::begin(data.packetizationPeriod), std::end(data.packetizationPeriod)), Bytes(20, 0x22));
  EXPECT_EQ(data.T38MaxBitRate, 0x31323334U);
  EXPECT_EQ(data.h264Profile, -3);
  EXPECT_EQ(data.mediaType, 0x41424344U);
  EXPECT_EQ(data.bandwidth, 0x51525354U);
  EXPECT_EQ(data.sdpAttributes, 0x61626364U);
  EXPECT_EQ(data.oLineStart, 0x7172);
  EXPECT_EQ(data.oLineEnd, 0x7374);
  EXPECT_EQ(data.gainControl, -4);
  EXPECT_EQ(data.state, 0x81828384U);
  EXPECT_EQ(data.echoCancellation, 1);
  EXPECT_EQ(data.echoCancelDirection, 2);
  EXPECT_EQ(data.silenceSuppression, 3);
  EXPECT_EQ(data.resourceReserve, 4);
  EXPECT_EQ(data.sessionMode, 5);
  EXPECT_EQ(data.videoBandwidth, 0x91929394U);
  EXPECT_EQ(data.videoMode, 0xa1);
  EXPECT_EQ(Bytes(std::begin(data.reserved), std::end(data.reserved)), Bytes(19, 0xa1));
  EXPECT_EQ(Bytes(form.begin() + 132, form.end()), (Bytes{'x', 'y', 'z'}));
}

TEST(Transfer, HasTheAddressBehindThePadding) {
  sSDPDescriptor descriptor;
  descriptor.address.setIPAddress("192.0.2.77");
  descriptor.port = 5004;
  cSdpNegotiator object = emptyObject();
  object.setSdpDescriptor(descriptor);
  const Bytes form = packed(object);
  EXPECT_EQ(std::memcmp(form.data() + 4, &descriptor.address, 20), 0);
  EXPECT_EQ(Bytes(form.begin() + 2, form.begin() + 4), Bytes(2, 0));
}

TEST(Transfer, WithoutAPlaceForTheArrayFails) {
  unsigned int size = 77;
  EXPECT_EQ(parsedObject(audioBody()).compressObject(nullptr, size), 1);
  EXPECT_EQ(size, 77U);
}

TEST(Transfer, TracesNothingOnSuccess) {
  const cSdpNegotiator object = parsedObject(audioBody());
  const TraceCapture trace;
  cSdpNegotiator other = usedMemory();
  EXPECT_EQ(unpack(other, packed(object)), 0);
  EXPECT_TRUE(trace.lines().empty());
}

}  // namespace
