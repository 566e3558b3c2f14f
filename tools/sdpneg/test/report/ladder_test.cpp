#include "report/ladder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "madeCalls.h"

namespace {

using namespace tool;

std::string ladderOf(const Call& call) { return ladder(call, {}, Palette(false)); }

std::string addressOf(std::size_t number) { return "192.0.2." + std::to_string(number) + ":5060"; }

/// A request that goes from each participant to the next one.
Call chainOf(std::size_t participants) {
  made::CallMaker maker(1);
  const std::size_t leg = maker.addLeg("a@example.org");
  for (std::size_t i = 1; i < participants; ++i)
    maker.add(leg, addressOf(i), addressOf(i + 1), "INVITE sip:bob@example.net", "INVITE");
  return maker.call;
}

TEST(Ladder, DrawsALineForEachOf64Participants) {
  const std::string text = ladderOf(chainOf(64));
  EXPECT_EQ(text.find("others"), std::string::npos);
  EXPECT_NE(text.find("192.0.2.64\n"), std::string::npos);
}

TEST(Ladder, HasOneLineForAllParticipantsBehindThe63rd) {
  const std::string text = ladderOf(chainOf(66));
  EXPECT_NE(text.find("192.0.2.63"), std::string::npos);
  EXPECT_NE(text.find("3 others\n"), std::string::npos);
  EXPECT_NE(text.find("| INVITE (192.0.2.65:5060 -> 192.0.2.66:5060)\n"), std::string::npos);
  EXPECT_EQ(text.find("to itself"), std::string::npos);
}

TEST(Ladder, TellsAMessageThatStaysWithItsSender) {
  made::CallMaker maker(1);
  const std::size_t leg = maker.addLeg("a@example.org");
  maker.add(leg, addressOf(1), addressOf(2), "INVITE sip:bob@example.net", "INVITE");
  maker.add(leg, addressOf(1), addressOf(1), "INVITE sip:bob@example.net", "INVITE");
  Call call = maker.call;
  call.messages[1].flow = {made::at(addressOf(2)), made::at(addressOf(2))};
  EXPECT_NE(ladderOf(call).find("| INVITE (to itself)\n"), std::string::npos);
}

}  // namespace
