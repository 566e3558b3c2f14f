#include <cstdlib>
#include <new>

#include "dialogTestSupport.h"

// Dialogs when memory runs out: at whichever allocation, the call says so and has changed nothing.

namespace {

constexpr std::size_t kNever = static_cast<std::size_t>(-1);
std::size_t left = kNever;  // until memory runs out

void* allocate(std::size_t size) {
  if (left == 0) throw std::bad_alloc();
  if (left != kNever) --left;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
// Sorting asks for memory so.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  try {
    return allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace {

using namespace dialogTest;

const std::string kOurs =
    ours("1",
         "a=group:BUNDLE a v|m=audio 4000 RTP/AVP 96 97|a=rtpmap:96 opus/48000/2|a=fmtp:96 stereo=1|"
         "a=rtpmap:97 telephone-event/8000|a=mid:a|m=video 4002 RTP/AVP 98|a=rtpmap:98 VP8/90000|a=mid:v|");
const std::string kTheirs = theirs(
    "1",
    "a=group:BUNDLE a v|m=audio 5000 RTP/AVP 111 97|a=rtpmap:111 opus/48000/2|a=fmtp:111 stereo=0|"
    "a=rtpmap:97 telephone-event/8000|a=mid:a|m=video 5002 RTP/AVP 100|a=rtpmap:100 VP8/90000|a=mid:v|");

struct Call {
  const char* name;
  DialogState state;
  DialogFailure (*make)(Dialog& dialog);
};

constexpr Call kCalls[] = {
    {"offer", DialogState::stable, [](Dialog& dialog) { return dialog.offer(kTheirs).failure; }},
    {"offerAsIs", DialogState::stable, [](Dialog& dialog) { return dialog.offerAsIs(kOurs).failure; }},
    {"hold", DialogState::stable, [](Dialog& dialog) { return dialog.hold().failure; }},
    {"resume", DialogState::stable, [](Dialog& dialog) { return dialog.resume().failure; }},
    {"receiveOffer", DialogState::stable, [](Dialog& dialog) { return dialog.receiveOffer(kOurs).failure; }},
    {"answer", DialogState::remoteOffer, [](Dialog& dialog) { return dialog.answer(kOurs).failure; }},
    {"answerAsIs", DialogState::remoteOffer, [](Dialog& dialog) { return dialog.answerAsIs(kOurs).failure; }},
    {"receiveAnswer", DialogState::localOffer,
     [](Dialog& dialog) { return dialog.receiveAnswer(kTheirs).failure; }},
    {"rollback", DialogState::localOffer, [](Dialog& dialog) { return dialog.rollback().failure; }},
    {"agreed", DialogState::stable, [](Dialog& dialog) { return dialog.agreed().failure; }},
    {"agreed of a section", DialogState::stable, [](Dialog& dialog) { return dialog.agreed(2).failure; }},
    {"serialise", DialogState::stable, [](Dialog& dialog) { return dialog.serialise().failure; }},
    {"restore", DialogState::stable,
     [](Dialog& dialog) {
       const std::size_t limit = std::exchange(left, kNever);
       const std::string bytes = Dialog().serialise().bytes;
       left = limit;
       return dialog.restore(bytes).failure;
     }},
};

Dialog inState(DialogState state) {
  Dialog dialog = offered(kOurs, kTheirs);
  if (state == DialogState::localOffer) {
    EXPECT_TRUE(dialog.hold());
  }
  if (state == DialogState::remoteOffer) {
    EXPECT_TRUE(dialog.receiveOffer(kTheirs));
  }
  return dialog;
}

TEST(DialogMemory, WhereItRunsOutNothingHasChanged) {
  for (const Call& call : kCalls) {
    SCOPED_TRACE(call.name);
    const Dialog before = inState(call.state);
    std::size_t failures = 0;
    for (std::size_t limit = 0; limit < 10000; ++limit) {
      Dialog dialog = before;
      left = limit;
      const DialogFailure failure = call.make(dialog);
      left = kNever;
      if (failure == DialogFailure::none) break;
      ++failures;
      ASSERT_EQ(sdp::textOf(failure), sdp::textOf(DialogFailure::noMemory)) << limit;
      ASSERT_TRUE(dialog == before) << limit;
    }
    EXPECT_GT(failures, 0U);
    EXPECT_LT(failures, 10000U);
  }
}

TEST(DialogMemory, CopyingAndMovingTakeNone) {
  const Dialog dialog = inState(DialogState::remoteOffer);
  left = 0;
  Dialog copy = dialog;
  const Dialog moved = std::move(copy);
  copy = moved;
  const bool isSame = copy == dialog && moved == dialog;
  const Dialog fresh;
  const bool isNew = fresh.local().empty() && fresh.state() == DialogState::stable;
  left = kNever;
  EXPECT_TRUE(isSame);
  EXPECT_TRUE(isNew);
}

}  // namespace
