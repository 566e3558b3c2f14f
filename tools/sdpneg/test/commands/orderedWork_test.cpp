#include "commands/orderedWork.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace {

using tool::OrderedWork;

OrderedWork::Piece pieceThat(std::function<void(std::size_t)> prepare, std::function<void()> putOut) {
  return {std::move(prepare), std::move(putOut)};
}

TEST(OrderedWork, PutsOutInTheOrderInWhichPiecesCame) {
  constexpr std::size_t kPieces = 500;
  std::vector<std::size_t> prepared(kPieces);
  std::vector<std::size_t> out;
  OrderedWork work;
  for (std::size_t i = 0; i < kPieces; ++i) {
    work.add(pieceThat(
        [&prepared, i](std::size_t) {
          // Some pieces take longer than those behind them.
          if (i % 7 == 0) std::this_thread::yield();
          prepared[i] = i;
        },
        [&prepared, &out, i] { out.push_back(prepared[i]); }));
  }
  work.finish();
  std::vector<std::size_t> expected(kPieces);
  std::iota(expected.begin(), expected.end(), std::size_t{0});
  EXPECT_EQ(out, expected);
}

TEST(OrderedWork, GivesEachThreadANumberOfItsOwn) {
  std::array<std::atomic<int>, OrderedWork::kThreads> inside{};
  std::atomic<bool> isShared = false;
  OrderedWork work;
  for (int i = 0; i < 200; ++i) {
    work.add(pieceThat(
        [&](std::size_t thread) {
          if (inside.at(thread).fetch_add(1) != 0) isShared = true;
          std::this_thread::yield();
          inside.at(thread).fetch_sub(1);
        },
        [] {}));
  }
  work.finish();
  EXPECT_FALSE(isShared);
}

TEST(OrderedWork, IsDoneWhenItFinishesAndGoesOnThen) {
  int out = 0;
  OrderedWork work;
  const auto count = [&out] { ++out; };
  work.add(pieceThat([](std::size_t) {}, count));
  work.finish();
  EXPECT_EQ(out, 1);
  for (int i = 0; i < 3; ++i) work.add(pieceThat([](std::size_t) {}, count));
  work.finish();
  EXPECT_EQ(out, 4);
  work.finish();
  EXPECT_EQ(out, 4);
}

TEST(OrderedWork, ThrowsWhatAPieceThrewAndPutsOutNothingBehindIt) {
  for (const bool isPreparing : {true, false}) {
    std::vector<int> out;
    OrderedWork work;
    for (int i = 0; i < 20; ++i) {
      work.add(pieceThat(
          [i, isPreparing](std::size_t) {
            if (isPreparing && i == 5) throw std::runtime_error("piece 5");
          },
          [&out, i, isPreparing] {
            if (!isPreparing && i == 5) throw std::runtime_error("piece 5");
            out.push_back(i);
          }));
    }
    EXPECT_THROW(work.finish(), std::runtime_error);
    EXPECT_EQ(out, (std::vector<int>{0, 1, 2, 3, 4}));
  }
}

TEST(OrderedWork, DoesNothingAnyMoreWhereItIsLeft) {
  std::atomic<int> doing = 0;
  {
    OrderedWork work;
    for (int i = 0; i < 4; ++i) {
      work.add(pieceThat(
          [&doing](std::size_t) {
            ++doing;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
          },
          [&doing] { --doing; }));
    }
  }
  EXPECT_EQ(doing, 0);
}

}  // namespace
