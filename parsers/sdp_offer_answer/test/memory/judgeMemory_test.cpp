#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "sdpAnswerJudge.h"

// What becomes of a judgement when memory runs out.

namespace {

constexpr std::size_t kNever = static_cast<std::size_t>(-1);
std::size_t left = kNever;  // allocations until memory runs out
std::size_t living = 0;     // blocks

void* allocate(std::size_t size) {
  if (left == 0) throw std::bad_alloc();
  if (left != kNever) --left;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  ++living;
  return memory;
}

void release(void* memory) noexcept {
  if (memory != nullptr) --living;
  std::free(memory);
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
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { release(memory); }

namespace {

constexpr std::string_view kOffer =
    "v=0\na=group:BUNDLE a b\na=group:LS a b\nm=audio 9 RTP/SAVP 0 96 97\na=mid:a\na=rtpmap:96 AMR/8000\n"
    "a=fmtp:96 mode-set=1,2\na=rtpmap:97 H264/90000\na=fmtp:97 profile-level-id=42e01f\na=extmap:1 urn:a\n"
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x\nm=image 9 udptl t38\na=mid:b\n";
constexpr std::string_view kAnswer =
    "v=0\na=extmap:9 urn:z\na=group:BUNDLE a b c\nm=audio 9 RTP/SAVP 98 99 99 100\na=mid:a\na=rtpmap:98 AMR/8000\n"
    "a=fmtp:98 mode-set=3\na=rtpmap:99 H264/90000\na=fmtp:99 profile-level-id=640028\na=extmap:2 urn:a\n"
    "a=crypto:1 AES_CM_128_HMAC_SHA1_32 inline:x\nm=image 9 udptl x\na=mid:b\n";

TEST(MemoryOfJudgements, ThatRunsOutIsToldAndGivenBack) {
  sdp::Document offer;
  sdp::Document answer;
  ASSERT_FALSE(offer.read(kOffer));
  ASSERT_FALSE(answer.read(kAnswer));
  const std::size_t findings = sdp::checkAnswer(offer, answer).findings.size();
  ASSERT_GT(findings, 8U);
  std::size_t failures = 0;
  for (bool isComplete = false; !isComplete; ++failures) {
    const std::size_t before = living;
    {
      left = failures;
      const sdp::Judgement judgement = sdp::checkAnswer(offer, answer);
      left = kNever;
      isComplete = judgement.isComplete;
      EXPECT_EQ(judgement.findings.size(), isComplete ? findings : 0U);
      EXPECT_FALSE(judgement.isGood());
    }
    EXPECT_EQ(living, before);
  }
  EXPECT_GT(failures, 50U);
}

}  // namespace
