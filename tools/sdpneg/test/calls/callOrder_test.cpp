#include "calls/callOrder.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

/// The calls that were passed on, "1:a" for the first with this Call-ID.
struct Passed {
  explicit Passed(std::size_t mostWaiting) : order(sink(), mostWaiting) {}

  tool::CallSink sink() {
    return [this](tool::Call&& call) { calls += std::to_string(call.number) + ":" + call.from + " "; };
  }
  void add(std::size_t number, const std::string& name) {
    tool::Call call;
    call.number = number;
    call.from = name;
    call.messages.resize(1);
    call.messages[0].text = std::string(1000, 'x');
    order.add(std::move(call));
  }

  std::string calls;
  tool::CallOrder order;
};

TEST(CallOrder, WaitsForCallsThatBeganBefore) {
  Passed passed(1000000);
  passed.add(5, "c");
  passed.add(3, "b");
  passed.order.release(1);
  EXPECT_EQ(passed.calls, "");
  passed.add(1, "a");
  passed.order.release(5);
  EXPECT_EQ(passed.calls, "1:a 2:b ") << "the numbers leave none out";
  passed.order.finish();
  EXPECT_EQ(passed.calls, "1:a 2:b 3:c ");
}

TEST(CallOrder, LetsTheFirstGoOnWhereTooMuchWaits) {
  Passed passed(2 * (1000 + sizeof(tool::Call) + sizeof(tool::CallMessage)));
  passed.add(4, "c");
  passed.add(3, "b");
  EXPECT_EQ(passed.calls, "");
  passed.add(5, "d");
  EXPECT_EQ(passed.calls, "1:b ");
  passed.add(2, "a");
  EXPECT_EQ(passed.calls, "1:b 2:a ");
}

TEST(CallOrder, PassesOnAtOnceWhereNothingMayWait) {
  Passed passed(0);
  passed.add(4, "d");
  passed.add(1, "a");
  EXPECT_EQ(passed.calls, "1:d 2:a ");
}

}  // namespace
