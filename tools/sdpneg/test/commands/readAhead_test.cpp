#include "commands/readAhead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using tool::ReadAhead;

std::string textOf(std::size_t number, std::size_t more = 0) {
  return "OPTIONS sip:a@example.org SIP/2.0\r\nCall-ID: " + std::to_string(number) +
         "\r\nCSeq: 1 OPTIONS\r\n\r\n" + std::string(more, 'x');
}

/// Adds a message with that number and with a text that is gone afterwards.
void addTo(ReadAhead& ahead, std::size_t number, std::size_t more = 0) {
  std::string text = textOf(number, more);
  tool::CapturedMessage message;
  message.number = number;
  message.text = text;
  ahead.add(message);
  text.assign(text.size(), '-');
}

TEST(ReadAhead, GivesMessagesInTheirOrderAsTheyWere) {
  constexpr std::size_t kMessages = 3000;
  std::atomic<std::size_t> read = 0;
  ReadAhead ahead;
  ASSERT_TRUE(ahead.begin({[&] {
                             const std::size_t number = ++read;
                             // Some are long, and some steps bring none or two.
                             if (number % 5 != 0) addTo(ahead, number, number % 100 == 1 ? 20000 : 0);
                             if (number % 5 == 4) addTo(ahead, number + 1);
                             return number < kMessages;
                           },
                           [&] { return read.load(); }}));
  std::size_t number = 0;
  std::size_t position = 0;
  while (ReadAhead::Batch* const batch = ahead.next()) {
    for (std::size_t i = 0; i < batch->size(); ++i) {
      tool::ReadMessage& message = (*batch)[i];
      ++number;
      ASSERT_EQ(message.message.number, number);
      ASSERT_EQ(message.message.text, textOf(number, number % 100 == 1 && number % 5 != 0 ? 20000 : 0));
      ASSERT_TRUE(message.facts);
      ASSERT_EQ(message.facts->callId, std::to_string(number));
    }
    EXPECT_GE(batch->position() + 1, number) << "where two came at a time";
    EXPECT_GE(batch->position(), position);
    position = batch->position();
  }
  EXPECT_EQ(number, kMessages);
  EXPECT_EQ(position, kMessages);
  EXPECT_EQ(ahead.next(), nullptr);
}

TEST(ReadAhead, IsNotFarAhead) {
  std::atomic<std::size_t> read = 0;
  ReadAhead ahead;
  ASSERT_TRUE(ahead.begin({[&] {
                             addTo(ahead, ++read);
                             return true;
                           },
                           [&] { return read.load(); }}));
  std::size_t taken = 0;
  for (int i = 0; i < 20; ++i) {
    ReadAhead::Batch* const batch = ahead.next();
    ASSERT_NE(batch, nullptr);
    taken += batch->size();
    EXPECT_LE(read, taken + 4 * 128);
  }
}

TEST(ReadAhead, TellsHowFarItIsWhereThereAreNoMessages) {
  std::atomic<std::size_t> read = 0;
  ReadAhead ahead;
  ASSERT_TRUE(ahead.begin({[&] {
                             ++read;
                             return true;
                           },
                           [&] { return read.load(); }}));
  std::size_t position = 0;
  for (int i = 0; i < 5; ++i) {
    ReadAhead::Batch* const batch = ahead.next();
    ASSERT_NE(batch, nullptr);
    EXPECT_EQ(batch->size(), 0U);
    EXPECT_GT(batch->position(), position);
    position = batch->position();
  }
  ahead.stop();
  while (ahead.next() != nullptr) {
  }
}

TEST(ReadAhead, EndsWhenItIsStoppedAndGivesWhatWasRead) {
  std::atomic<std::size_t> read = 0;
  ReadAhead ahead;
  ASSERT_TRUE(ahead.begin({[&] {
                             addTo(ahead, ++read);
                             return true;
                           },
                           [&] { return read.load(); }}));
  std::size_t taken = 0;
  while (ReadAhead::Batch* const batch = ahead.next()) {
    taken += batch->size();
    ahead.stop();
  }
  EXPECT_EQ(taken, read);
  EXPECT_LT(taken, 1000U);
}

TEST(ReadAhead, DropsWhatNobodyTakes) {
  std::atomic<std::size_t> read = 0;
  {
    ReadAhead ahead;
    ASSERT_TRUE(ahead.begin({[&] {
                               addTo(ahead, ++read);
                               return true;
                             },
                             [&] { return read.load(); }}));
    ASSERT_NE(ahead.next(), nullptr);
  }
  EXPECT_GT(read, 0U);
  ReadAhead never;
}

TEST(ReadAhead, ThrowsWhatTheReadingHasThrown) {
  std::size_t read = 0;
  ReadAhead ahead;
  ASSERT_TRUE(ahead.begin({[&] {
                             if (++read == 300) throw std::runtime_error("no memory");
                             addTo(ahead, read);
                             return true;
                           },
                           [&] { return read; }}));
  std::size_t taken = 0;
  try {
    while (ReadAhead::Batch* const batch = ahead.next()) taken += batch->size();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "no memory");
  }
  EXPECT_EQ(taken % 128, 0U) << "whole batches came";
  EXPECT_EQ(taken, 256U);
}

}  // namespace
