#include "sdpModifiers/changes.h"

#include <gtest/gtest.h>

#include <string>

#include "modifiersTestSupport.h"

// Changes of a text that are known before the first of them is made.

using namespace sdpneg;

namespace {

TEST(PlannedChanges, AreMadeInTheirOrder) {
  SdpBuffer buffer("v=0\nc=1\nm=a\nm=b\n");
  SdpText text(buffer.data());
  PlannedChanges changes;
  changes.add({4, 8}, "c=IN IP4\n");
  changes.add({8, 12}, "");
  changes.add({12, 12}, "a=x\n");
  changes.add({14, 15}, "c");
  EXPECT_TRUE(changes.areHeld());
  EXPECT_TRUE(changes.fitInto(text));
  changes.makeIn(text);
  buffer.expectText("v=0\nc=IN IP4\na=x\nm=c\n");
}

TEST(PlannedChanges, NeedRoomForEachThatMakesTheTextLonger) {
  // Three characters can be added.
  const std::string body = "m=a\n" + std::string(MAX_SDP_PROTOCOL_DATA_SIZE - 1 - 3 - 4, 'x');
  SdpBuffer buffer(body);
  const SdpText text(buffer.data());
  PlannedChanges changes;
  changes.add({4, 14}, "");
  changes.add({20, 21}, "abc");
  EXPECT_TRUE(changes.fitInto(text));
  changes.add({30, 30}, "d");
  EXPECT_TRUE(changes.fitInto(text));
  // What the first one gives does not count.
  changes.add({40, 40}, "e");
  EXPECT_FALSE(changes.fitInto(text));
}

TEST(PlannedChanges, AreHeldUpToAsManyAsThereIsRoomFor) {
  PlannedChanges changes;
  for (std::size_t i = 0; i < PlannedChanges::kMost; ++i) changes.add({i, i}, "");
  EXPECT_TRUE(changes.areHeld());
  changes.add({999, 999}, "");
  EXPECT_FALSE(changes.areHeld());
}

}  // namespace
