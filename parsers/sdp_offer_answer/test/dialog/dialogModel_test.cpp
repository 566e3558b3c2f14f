#include <random>

#include "dialogTestSupport.h"
#include "modelledDialog.h"

// Random calls beside a model, made to bytes and restored after each.

namespace {

class RandomSource : public modelledDialog::Source {
 public:
  explicit RandomSource(std::uint32_t seed) : engine_(seed) {}
  std::uint32_t below(std::uint32_t bound) override { return static_cast<std::uint32_t>(engine_() % bound); }

 private:
  std::minstd_rand engine_;
};

TEST(DialogModel, AgreesAtEveryStepOfRandomCalls) {
  constexpr std::uint32_t kDialogs = 100;
  constexpr int kSteps = 40;
  std::uint32_t exchanges = 0;
  for (std::uint32_t seed = 1; seed <= kDialogs; ++seed) {
    SCOPED_TRACE(seed);
    RandomSource source(seed);
    modelledDialog::ModelledDialog dialog(source,
                                          [](bool holds, const char* what) { EXPECT_TRUE(holds) << what; });
    for (int step = 0; step < kSteps; ++step) dialog.step();
    exchanges += dialog.exchanges();
    if (HasFailure()) return;
  }
  EXPECT_GT(exchanges, 3 * kDialogs);
}

}  // namespace
