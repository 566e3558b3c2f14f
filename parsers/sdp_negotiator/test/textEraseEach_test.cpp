#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "text/lines.h"
#include "text/sdpText.h"

// Erasing span after span in one pass.

using namespace sdpneg;

namespace {

using Spans = std::vector<Span>;

/// A text in a heap buffer of exactly its size and NUL, so that whatever goes beyond is seen.
class ExactBuffer {
 public:
  explicit ExactBuffer(const std::string& text)
      : size_(text.size() + 1), bytes_(std::make_unique<char[]>(size_)) {
    std::memcpy(bytes_.get(), text.c_str(), size_);
  }
  SdpText text() { return SdpText(bytes_.get(), size_); }
  std::string held() const { return bytes_.get(); }

 private:
  std::size_t size_;
  std::unique_ptr<char[]> bytes_;
};

/// Finds spans that were laid out before, and checks that from the offset on the text is still as it was.
auto laidOut(const Spans& spans, const std::string& original) {
  return [&spans, &original](std::string_view text, std::size_t from) -> std::optional<Span> {
    EXPECT_EQ(text.substr(from), std::string_view(original).substr(from));
    const auto next = std::find_if(spans.begin(), spans.end(), [from](Span s) { return s.begin >= from; });
    return next == spans.end() ? std::nullopt : std::optional<Span>(*next);
  };
}

void expectErased(const std::string& original, const Spans& spans, const std::string& wanted) {
  ExactBuffer buffer(original);
  SdpText text = buffer.text();
  EXPECT_EQ(text.eraseEach(laidOut(spans, original)), spans.size());
  EXPECT_EQ(text.view(), wanted);
  EXPECT_EQ(text.room(), original.size() - wanted.size());
  EXPECT_EQ(buffer.held(), wanted);
}

TEST(SdpTextEraseEach, ErasesSpansWhereverTheyStand) {
  const std::string text = "0123456789";
  expectErased(text, {}, text);
  expectErased(text, {{0, 1}}, "123456789");
  expectErased(text, {{9, 10}}, "012345678");
  expectErased(text, {{4, 6}}, "01236789");
  expectErased(text, {{0, 10}}, "");
  expectErased(text, {{1, 2}, {3, 4}, {8, 9}}, "0245679");
  expectErased(text, {{0, 2}, {2, 3}, {3, 7}}, "789");  // side by side
  expectErased(text, {{0, 9}, {9, 10}}, "");
  expectErased("", {}, "");
}

TEST(SdpTextEraseEach, LooksOnFromTheEndOfEachSpan) {
  ExactBuffer buffer("a\nx1\nx2\nb\nx3\nc");
  SdpText text = buffer.text();
  std::vector<std::size_t> offsets;
  const std::size_t count = text.eraseEach([&](std::string_view view, std::size_t from) {
    offsets.push_back(from);
    const std::size_t line = findLine(view, "x", from);
    return line == npos ? std::nullopt : std::optional<Span>({line - 1, lineAt(view, line).lf});
  });
  EXPECT_EQ(count, 3U);
  EXPECT_EQ(buffer.held(), "a\nb\nc");
  // By the offsets of the text as it was: its LF behind x1, behind x2 and behind x3.
  EXPECT_EQ(offsets, (std::vector<std::size_t>{0, 4, 7, 12}));
}

TEST(SdpTextEraseEach, WhatARemovalJoinsIsNotLookedAtAgain) {
  ExactBuffer buffer("aabbab");
  SdpText text = buffer.text();
  const auto next = [](std::string_view view, std::size_t from) {
    const std::size_t at = view.find("ab", from);
    return at == npos ? std::nullopt : std::optional<Span>({at, at + 2});
  };
  EXPECT_EQ(text.eraseEach(next), 2U);
  EXPECT_EQ(buffer.held(), "ab");  // the outer pair
}

TEST(SdpTextEraseEach, WithoutATextNothingIsAskedForOrWritten) {
  std::string bytes = "0123456789";
  const auto next = [](std::string_view, std::size_t) -> std::optional<Span> {
    ADD_FAILURE();
    return std::nullopt;
  };
  SdpText unended(bytes.data(), bytes.size());
  EXPECT_EQ(unended.eraseEach(next), 0U);
  EXPECT_EQ(bytes, "0123456789");
  SdpText null(nullptr);
  EXPECT_EQ(null.eraseEach(next), 0U);
}

TEST(SdpTextEraseEach, WritesNothingBehindTheText) {
  std::string bytes = "abcdef";
  bytes += std::string(1, '\0') + "guard";
  SdpText text(bytes.data(), 7);
  const Spans spans = {{1, 3}};
  EXPECT_EQ(text.eraseEach(laidOut(spans, "abcdef")), 1U);
  EXPECT_STREQ(bytes.c_str(), "adef");
  EXPECT_EQ(bytes.substr(7), "guard");
}

TEST(SdpTextEraseEach, RandomSpansAgreeWithAString) {
  std::mt19937 random(3262);
  const auto below = [&random](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
  for (int round = 0; round < 3000; ++round) {
    std::string original(below(120), ' ');
    for (char& c : original) c = static_cast<char>('!' + below(90));
    Spans spans;
    for (std::size_t at = below(9); at < original.size();) {
      const std::size_t end = std::min(original.size(), at + 1 + below(6));
      spans.push_back({at, end});
      at = end + below(5);  // now and then side by side
    }
    std::string model = original;
    for (auto span = spans.rbegin(); span != spans.rend(); ++span)
      model.erase(span->begin, span->end - span->begin);
    expectErased(original, spans, model);
    if (HasFailure()) return;
  }
}

// One pass also over a full buffer: every second character goes.
TEST(SdpTextEraseEach, TakesAFullBuffer) {
  std::string original;
  Spans spans;
  std::string wanted;
  while (original.size() < 2 * 10239) {
    spans.push_back({original.size(), original.size() + 1});
    original += "-x";
    wanted += 'x';
  }
  ExactBuffer buffer(original);
  SdpText text = buffer.text();
  const auto next = [](std::string_view view, std::size_t from) {
    const std::size_t at = view.find('-', from);
    return at == npos ? std::nullopt : std::optional<Span>({at, at + 1});
  };
  EXPECT_EQ(text.eraseEach(next), spans.size());
  EXPECT_EQ(buffer.held(), wanted);
}

}  // namespace
