#include "captures/byteReader.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using tool::ByteReader;

TEST(ByteReader, ReadsNumbersInNetworkOrder) {
  const std::string bytes("\x01\x02\x03\x04\x05\x06\x07\x80\x81\x82\x83\x84\x85\x86\x87", 15);
  ByteReader reader(bytes);
  EXPECT_EQ(reader.u8(), 0x01);
  EXPECT_EQ(reader.u16(), 0x0203);
  EXPECT_EQ(reader.u32(), 0x04050607U);
  EXPECT_EQ(reader.u64(), 0x8081828384858687U);
  EXPECT_TRUE(reader.isGood());
  EXPECT_EQ(reader.left(), 0U);
}

TEST(ByteReader, GivesNothingOfWhatIsNotWhole) {
  for (const std::size_t size : {0U, 1U, 2U, 3U, 4U, 5U}) {
    const std::string bytes(size, '\xFF');
    ByteReader reader(bytes);
    EXPECT_EQ(reader.u32(), size < 4 ? 0U : 0xFFFFFFFFU) << size;
    EXPECT_EQ(reader.isGood(), size >= 4) << size;
    EXPECT_EQ(reader.left(), size > 4 ? size - 4 : 0) << size;
  }
}

TEST(ByteReader, GivesNothingBehindWhatWasNotThere) {
  ByteReader reader("abc");
  EXPECT_EQ(reader.take(4), "");
  EXPECT_EQ(reader.u8(), 0);
  EXPECT_EQ(reader.take(0), "");
  EXPECT_FALSE(reader.isGood());
  EXPECT_EQ(reader.rest(), "");
}

TEST(ByteReader, TakesNoMoreThanThereIsWhateverIsAskedFor) {
  ByteReader reader("abc");
  reader.skip(1);
  EXPECT_EQ(reader.take(2), "bc");
  EXPECT_TRUE(reader.isGood());
  reader.skip(static_cast<std::size_t>(-1));
  EXPECT_FALSE(reader.isGood());
}

}  // namespace
