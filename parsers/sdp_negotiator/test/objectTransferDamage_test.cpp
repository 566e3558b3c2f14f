#include "../fuzz/objectQueries.h"
#include "transferTestSupport.h"

// Transfer forms that are none: refused without a trace of them in the object, or taken and harmless.

namespace {

TraceLine invalidForm(unsigned int size) {
  return {4, 3, "The packed object of " + std::to_string(size) + " bytes is invalid. Exiting."};
}

void expectRefusal(const Bytes& form) {
  const cSdpNegotiator before = parsedObject(audioBody());
  cSdpNegotiator object = before;
  TraceCapture trace;
  EXPECT_EQ(unpack(object, form), 1);
  EXPECT_EQ(trace.takeLines(), std::vector{invalidForm(static_cast<unsigned int>(form.size()))});
  EXPECT_TRUE(sameBytes(object, before));
}

/// All that reads an object or rewrites its o-line; the sanitizers look on.
void askEverything(const cSdpNegotiator& object) {
  askAll(object, audioBody().c_str());
  askForOriginLine(object);
  const cSdpNegotiator other = parsedObject(audioBody());
  requestOriginLines(object, other);
}

Bytes plainForm() { return packed(parsedObject(audioBody())); }
Bytes deflatedForm() { return packed(parsedObject(paddedTo(3000))); }

TEST(DamagedForm, OfNullIsRefused) {
  const cSdpNegotiator before = parsedObject(audioBody());
  cSdpNegotiator object = before;
  TraceCapture trace;
  EXPECT_EQ(object.uncompressObject(nullptr, 433), 1);
  EXPECT_EQ(object.uncompressObject(nullptr, 0), 1);
  EXPECT_EQ(trace.takeLines(), (std::vector{invalidForm(433), invalidForm(0)}));
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(DamagedForm, OfASizeThatNoObjectHasIsRefusedUnread) {
  const cSdpNegotiator before = parsedObject(audioBody());
  cSdpNegotiator object = before;
  const auto none = std::make_unique<unsigned char[]>(1);
  for (const unsigned int size : {0U, 1U, 2U, 131U, 2693U, 2694U, 65536U + 433U, 0x80000000U, 0xFFFFFFFFU}) {
    TraceCapture trace;
    EXPECT_EQ(object.uncompressObject(none.get(), size), 1) << size;
    EXPECT_EQ(trace.takeLines(), std::vector{invalidForm(size)});
    EXPECT_TRUE(sameBytes(object, before));
  }
}

TEST(DamagedForm, CutShortIsRefused) {
  for (const Bytes& whole : {plainForm(), deflatedForm()}) {
    for (std::size_t size = 0; size < whole.size(); ++size) {
      SCOPED_TRACE(size);
      expectRefusal(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    }
  }
}

TEST(DamagedForm, LengthenedIsTakenUpToTheSizeOfAnObject) {
  for (const Bytes& whole : {plainForm(), deflatedForm()}) {
    cSdpNegotiator expected = usedMemory();
    ASSERT_EQ(unpack(expected, whole), 0);
    for (std::size_t size = whole.size() + 1; size <= objectSize; ++size) {
      Bytes form = whole;
      form.resize(size, 'x');
      cSdpNegotiator object = usedMemory();
      ASSERT_EQ(unpack(object, form), 0) << size;
      EXPECT_EQ(textOf(object), textOf(expected));
      EXPECT_EQ(packed(object), whole);  // what was too much is left out again
    }
    Bytes form = whole;
    form.resize(objectSize + 1, 'x');
    expectRefusal(form);
  }
}

TEST(DamagedForm, OfAPlainTextNeedsItsNul) {
  for (const std::size_t size : {132U, 133U, 200U, 2692U}) {
    Bytes form = bytesOf(emptyObject());
    form.resize(size);
    std::fill(form.begin() + summarySize, form.end(), static_cast<unsigned char>('p'));
    expectRefusal(form);
    if (size == summarySize) continue;
    form.back() = 0;
    cSdpNegotiator object = usedMemory();
    EXPECT_EQ(unpack(object, form), 0);
    EXPECT_EQ(textOf(object), std::string(size - summarySize - 1, 'p'));
  }
}

TEST(DamagedForm, ClaimsNoMoreDeflatedBytesThanThereAre) {
  for (const unsigned int there : {0U, 1U, 100U, 2560U}) {
    Bytes form(summarySize + there, 0);
    const auto claim = [&](unsigned int length) {
      const auto stored = static_cast<std::uint16_t>(length);
      std::memcpy(form.data(), &stored, sizeof stored);
    };
    for (const unsigned int more : {there + 1, there + 256, 65535U}) {
      claim(more);
      expectRefusal(form);
    }
    if (there == 0) continue;
    claim(there);
    cSdpNegotiator object = usedMemory();
    EXPECT_EQ(unpack(object, form), 0) << there;
    EXPECT_EQ(object.getObjectSize(), form.size());
  }
}

void expectAnyByteToBeHarmless(const Bytes& whole) {
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const unsigned int change : {0x01U, 0x80U, 0xffU}) {
      Bytes form = whole;
      form[at] = static_cast<unsigned char>(form[at] ^ change);
      const cSdpNegotiator before = usedMemory();
      cSdpNegotiator object = before;
      if (unpack(object, form) != 0) {
        EXPECT_TRUE(sameBytes(object, before)) << at;
        EXPECT_TRUE(at < 2 || at == whole.size() - 1) << at;  // the claimed length, or the text's NUL
        continue;
      }
      EXPECT_EQ(std::memcmp(&object, form.data(), form.size()), 0) << at;
      askEverything(object);
    }
  }
}

TEST(DamagedForm, WithAnyByteChangedIsRefusedOrHarmlessWhenPlain) { expectAnyByteToBeHarmless(plainForm()); }
TEST(DamagedForm, WithAnyByteChangedIsRefusedOrHarmlessWhenDeflated) {
  expectAnyByteToBeHarmless(deflatedForm());
}

TEST(DamagedForm, OfOneByteAllOverIsHarmless) {
  for (const unsigned int byte : {0x00U, 0x01U, 0x0aU, 0x20U, 0x78U, 0x7fU, 0x80U, 0xffU}) {
    cSdpNegotiator object = parsedObject(audioBody());
    unpack(object, Bytes(objectSize, static_cast<unsigned char>(byte)));
    askEverything(object);
  }
}

// An object whose bytes came from elsewhere may claim what no storing gives. It is packed within its bytes, and
// what it claims is refused where it arrives.
TEST(FalseClaims, OfALengthArePackedWithinTheObjectAndRefusedOnArrival) {
  for (const unsigned int claim : {2561U, 20480U, 65535U}) {
    Record record(parsedObject(paddedTo(3000)));
    record.data.storedSdpLength = static_cast<std::uint16_t>(claim);
    const cSdpNegotiator object = record.object();
    EXPECT_EQ(object.getObjectSize(), objectSize);
    EXPECT_EQ(packed(object), bytesOf(object));
    expectRefusal(packed(object));
    askEverything(object);
  }
}

TEST(FalseClaims, OfATextWithoutNulArePackedWithinTheObjectAndRefusedOnArrival) {
  Record record;
  std::memset(record.raw, 'p', sizeof record.raw);
  const cSdpNegotiator object = record.object();
  EXPECT_EQ(object.getObjectSize(), objectSize);
  EXPECT_EQ(packed(object), bytesOf(object));
  expectRefusal(packed(object));
  askEverything(object);
}

}  // namespace
