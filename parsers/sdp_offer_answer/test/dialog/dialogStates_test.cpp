#include "dialogTestSupport.h"

// The states of a dialog: what each allows, and what it refuses without a change.

namespace {

using namespace dialogTest;

const std::string kOurs = ours("1", kAudio);
const std::string kTheirs = theirs("1", kPeersAudio);

Dialog inState(DialogState state) {
  Dialog dialog;
  if (state == DialogState::localOffer) {
    EXPECT_TRUE(dialog.offer(kOurs));
  }
  if (state == DialogState::remoteOffer) {
    EXPECT_TRUE(dialog.receiveOffer(kTheirs));
  }
  return dialog;
}

struct Call {
  const char* name;
  DialogFailure (*make)(Dialog& dialog);
};

constexpr Call kOffer{"offer", [](Dialog& dialog) { return dialog.offer(kOurs).failure; }};
constexpr Call kOfferAsIs{"offerAsIs", [](Dialog& dialog) { return dialog.offerAsIs(kOurs).failure; }};
constexpr Call kHold{"hold", [](Dialog& dialog) { return dialog.hold().failure; }};
constexpr Call kResume{"resume", [](Dialog& dialog) { return dialog.resume().failure; }};
constexpr Call kReceiveOffer{"receiveOffer",
                             [](Dialog& dialog) { return dialog.receiveOffer(kTheirs).failure; }};
constexpr Call kAnswer{"answer", [](Dialog& dialog) { return dialog.answer(kOurs).failure; }};
constexpr Call kAnswerAsIs{"answerAsIs", [](Dialog& dialog) { return dialog.answerAsIs(kOurs).failure; }};
constexpr Call kReceiveAnswer{"receiveAnswer",
                              [](Dialog& dialog) { return dialog.receiveAnswer(kTheirs).failure; }};
constexpr Call kRollback{"rollback", [](Dialog& dialog) { return dialog.rollback().failure; }};

struct Step {
  DialogState from;
  Call call;
  DialogFailure failure;
  DialogState to;
};

constexpr DialogState kStable = DialogState::stable;
constexpr DialogState kLocal = DialogState::localOffer;
constexpr DialogState kRemote = DialogState::remoteOffer;

constexpr Step kSteps[] = {
    {kStable, kOffer, DialogFailure::none, kLocal},
    {kStable, kOfferAsIs, DialogFailure::none, kLocal},
    {kStable, kHold, DialogFailure::noBody, kStable},
    {kStable, kResume, DialogFailure::noBody, kStable},
    {kStable, kReceiveOffer, DialogFailure::none, kRemote},
    {kStable, kAnswer, DialogFailure::noOffer, kStable},
    {kStable, kAnswerAsIs, DialogFailure::noOffer, kStable},
    {kStable, kReceiveAnswer, DialogFailure::noOffer, kStable},
    {kStable, kRollback, DialogFailure::noOffer, kStable},
    {kLocal, kOffer, DialogFailure::offerPending, kLocal},
    {kLocal, kOfferAsIs, DialogFailure::offerPending, kLocal},
    {kLocal, kHold, DialogFailure::offerPending, kLocal},
    {kLocal, kResume, DialogFailure::offerPending, kLocal},
    {kLocal, kReceiveOffer, DialogFailure::glare, kLocal},
    {kLocal, kAnswer, DialogFailure::wrongParty, kLocal},
    {kLocal, kAnswerAsIs, DialogFailure::wrongParty, kLocal},
    {kLocal, kReceiveAnswer, DialogFailure::none, kStable},
    {kLocal, kRollback, DialogFailure::none, kStable},
    {kRemote, kOffer, DialogFailure::glare, kRemote},
    {kRemote, kOfferAsIs, DialogFailure::glare, kRemote},
    {kRemote, kHold, DialogFailure::glare, kRemote},
    {kRemote, kResume, DialogFailure::glare, kRemote},
    {kRemote, kReceiveOffer, DialogFailure::offerPending, kRemote},
    {kRemote, kAnswer, DialogFailure::none, kStable},
    {kRemote, kAnswerAsIs, DialogFailure::none, kStable},
    {kRemote, kReceiveAnswer, DialogFailure::wrongParty, kRemote},
    {kRemote, kRollback, DialogFailure::none, kStable},
};

TEST(DialogStates, EachAllowsWhatItsRowSaysAndRefusesTheRestUnchanged) {
  for (const Step& step : kSteps) {
    SCOPED_TRACE(std::string(sdp::textOf(step.from)) + ": " + step.call.name);
    Dialog dialog = inState(step.from);
    ASSERT_EQ(dialog.state(), step.from);
    const Dialog before = dialog;
    EXPECT_EQ(sdp::textOf(step.call.make(dialog)), sdp::textOf(step.failure));
    EXPECT_EQ(dialog.state(), step.to);
    EXPECT_EQ(dialog == before, step.failure != DialogFailure::none);
    expectRoundTrip(dialog);
  }
}

TEST(DialogStates, AnswersMakeBothBodiesCurrent) {
  Dialog dialog;
  EXPECT_EQ(dialog.offerer(), std::nullopt);
  EXPECT_EQ(dialog.local(), "");
  ASSERT_TRUE(dialog.offer(kOurs));
  EXPECT_EQ(dialog.offerer(), Party::local);
  EXPECT_EQ(dialog.pending(), kOurs);
  EXPECT_EQ(dialog.local(), "");
  ASSERT_TRUE(dialog.receiveAnswer(kTheirs));
  EXPECT_EQ(dialog.local(), kOurs);
  EXPECT_EQ(dialog.remote(), kTheirs);
  EXPECT_EQ(dialog.pending(), "");
  EXPECT_EQ(dialog.offerer(), Party::local);

  const std::string next = theirs("2", "m=audio 5002 RTP/AVP 0|");
  ASSERT_TRUE(dialog.receiveOffer(next));
  EXPECT_EQ(dialog.offerer(), Party::remote);
  EXPECT_EQ(dialog.remote(), kTheirs);
  ASSERT_TRUE(dialog.answerAsIs(kOurs));
  EXPECT_EQ(dialog.remote(), next);
  EXPECT_EQ(dialog.local(), kOurs);
  EXPECT_EQ(dialog.offerer(), Party::remote);
}

TEST(DialogStates, RollbackLeavesWhatWasAgreed) {
  Dialog dialog = offered(kOurs, kTheirs);
  ASSERT_TRUE(dialog.receiveOffer(theirs("2", "m=audio 6000 RTP/AVP 8|")));
  EXPECT_EQ(dialog.offerer(), Party::remote);
  ASSERT_TRUE(dialog.rollback());
  EXPECT_TRUE(dialog == offered(kOurs, kTheirs));
  ASSERT_TRUE(dialog.offer(ours("1", "m=audio 4000 RTP/AVP 8|")));
  ASSERT_TRUE(dialog.rollback());
  EXPECT_EQ(dialog.local(), kOurs);
  EXPECT_EQ(dialog.remote(), kTheirs);
  EXPECT_EQ(dialog.offerer(), Party::local);
}

TEST(DialogStates, ForksCopyTheOffer) {
  Dialog first;
  ASSERT_TRUE(first.offer(kOurs));
  Dialog second = first;
  const std::string other = theirs("1", "m=audio 7000 RTP/AVP 0|");
  ASSERT_TRUE(first.receiveAnswer(kTheirs));
  ASSERT_TRUE(second.receiveAnswer(other));
  EXPECT_EQ(first.remote(), kTheirs);
  EXPECT_EQ(second.remote(), other);
}

TEST(DialogStates, WhatWasMovedFromIsNew) {
  Dialog dialog = offered(kOurs, kTheirs);
  const Dialog taken = std::move(dialog);
  EXPECT_EQ(taken.local(), kOurs);
  EXPECT_TRUE(dialog == Dialog());  // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
  EXPECT_TRUE(dialog.offer(kOurs));
}

TEST(DialogStates, AnAnswerThatComesAgainIsToldAsSuch) {
  Dialog dialog = offered(kOurs, kTheirs);
  EXPECT_EQ(dialog.receiveAnswer(kTheirs).failure, DialogFailure::repeatedAnswer);
  EXPECT_EQ(dialog.receiveAnswer(theirs("2", kPeersAudio)).failure, DialogFailure::noOffer);
  Dialog asked = answered(kTheirs, kOurs);
  EXPECT_EQ(asked.receiveAnswer(kTheirs).failure, DialogFailure::noOffer);
}

TEST(DialogStates, FailuresHaveWordsOfTheirOwn) {
  std::vector<std::string_view> words;
  for (int i = 0; i < 256; ++i) {
    const std::string_view word = sdp::textOf(static_cast<DialogFailure>(i));
    if (!word.empty()) words.push_back(word);
  }
  EXPECT_EQ(words.size(), 19U);
  std::sort(words.begin(), words.end());
  EXPECT_EQ(std::unique(words.begin(), words.end()), words.end());
}

}  // namespace
