#include <climits>

#include "rttTestSupport.h"

namespace {

TEST(Switching, FlagsAreOffAtStart) {
  inFreshProcess([] {
    unsetenv("KVRTT");
    int handle = -1;
    ASSERT_EQ(KvRttRegFacility(&handle, "FRESH"), 0);
    ASSERT_EQ(KvRttRegFlag("FRESH", 1, "DEBUG"), 0);
    ASSERT_EQ(KvRttRegFlag("FRESH", 2, "INFO"), 0);
    EXPECT_EQ(KvRttTstFlag(handle, 1), 0);
    EXPECT_EQ(KvRttTstFlag(handle, 2), 0);
  });
}

TEST(Switching, TurnsOneFlagOnAndOff) {
  const int handle = registerShared();
  EXPECT_EQ(KvRttSwitchFlag("SHARED", "INFO", true), 0);
  EXPECT_EQ(KvRttTstFlag(handle, 2), 1);
  EXPECT_EQ(KvRttTstFlag(handle, 1), 0);
  EXPECT_EQ(KvRttTstFlag(handle, 4), 0);
  EXPECT_EQ(KvRttSwitchFlag("SHARED", "INFO", false), 0);
  EXPECT_EQ(KvRttTstFlag(handle, 2), 0);
}

TEST(Switching, ConcernsOneComponentOnly) {
  inFreshProcess([] {
    const int handle = registerShared();
    int other = -1;
    ASSERT_EQ(KvRttRegFacility(&other, "OTHER"), 0);
    ASSERT_EQ(KvRttRegFlag("OTHER", 2, "INFO"), 0);
    EXPECT_EQ(KvRttSwitchFlag("OTHER", "INFO", true), 0);
    EXPECT_EQ(KvRttTstFlag(other, 2), 1);
    EXPECT_EQ(KvRttTstFlag(handle, 2), 0);
  });
}

TEST(Switching, RefusesWhatNobodyDeclared) {
  registerShared();
  EXPECT_EQ(KvRttSwitchFlag("NOBODY", "INFO", true), kvRttUnknownComponent);
  EXPECT_EQ(KvRttSwitchFlag("", "INFO", true), kvRttUnknownComponent);
  EXPECT_EQ(KvRttSwitchFlag(nullptr, "INFO", true), kvRttUnknownComponent);
  EXPECT_EQ(KvRttSwitchFlag("SHARED", "LOUD", true), kvRttUnknownFlag);
  EXPECT_EQ(KvRttSwitchFlag("SHARED", "", true), kvRttUnknownFlag);
  EXPECT_EQ(KvRttSwitchFlag("SHARED", nullptr, true), kvRttUnknownFlag);
  EXPECT_EQ(KvRttSwitchFlag("SHARED", "info", true), kvRttUnknownFlag);
}

TEST(TestingAFlag, IsOffForUnknownHandlesAndOddFlags) {
  const int handle = registerShared();
  for (const char* name : {"DEBUG", "INFO", "ERROR"}) ASSERT_EQ(KvRttSwitchFlag("SHARED", name, true), 0);
  for (int other :
       {-1, 0, handle + 1, handle + 100, kvRttMaxComponents, kvRttMaxComponents + 1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(KvRttTstFlag(other, 2), 0) << other;
  }
  for (int flag : {0, 3, 6, 7, 8, -1, INT_MIN, INT_MAX}) EXPECT_EQ(KvRttTstFlag(handle, flag), 0) << flag;
  registerShared();
}

TEST(TestingAFlag, IsOffForAHandleThatIsStillZero) {
  inFreshProcess([] {
    const int handle = registerShared();
    EXPECT_EQ(KvRttSwitchFlag("SHARED", "INFO", true), 0);
    EXPECT_EQ(KvRttTstFlag(handle, 2), 1);
    EXPECT_EQ(KvRttTstFlag(0, 2), 0);
  });
}

struct EnvironmentCase {
  const char* name;
  const char* setting;
  int flagsOn;  // of 1 DEBUG, 2 INFO, 4 ERROR of the component "ENGINE"
};

class Environment : public testing::TestWithParam<EnvironmentCase> {};

TEST_P(Environment, SwitchesNamedFlagsOn) {
  inFreshProcess([] {
    setenv("KVRTT", GetParam().setting, 1);
    int handle = -1;
    ASSERT_EQ(KvRttRegFacility(&handle, "ENGINE"), 0);
    ASSERT_EQ(KvRttRegFlag("ENGINE", 1, "DEBUG"), 0);
    ASSERT_EQ(KvRttRegFlag("ENGINE", 2, "INFO"), 0);
    ASSERT_EQ(KvRttRegFlag("ENGINE", 4, "ERROR"), 0);
    for (int flag : {1, 2, 4}) {
      EXPECT_EQ(KvRttTstFlag(handle, flag), (GetParam().flagsOn & flag) != 0 ? 1 : 0) << flag;
    }
  });
}

const std::string manyNames = std::string(70000, 'x') + ";ENGINE=" + std::string(70000, ',') + "INFO";

INSTANTIATE_TEST_SUITE_P(
    Settings, Environment,
    testing::Values(EnvironmentCase{"Empty", "", 0}, EnvironmentCase{"OneFlag", "ENGINE=INFO", 2},
                    EnvironmentCase{"TwoFlags", "ENGINE=INFO,ERROR", 6},
                    EnvironmentCase{"SecondComponent", "OTHER=DEBUG;ENGINE=ERROR", 4},
                    EnvironmentCase{"ComponentNamedTwice", "ENGINE=DEBUG;ENGINE=ERROR", 5},
                    EnvironmentCase{"OtherComponentOnly", "OTHER=INFO", 0},
                    EnvironmentCase{"UnknownFlagBeforeKnown", "ENGINE=LOUD,INFO", 2},
                    EnvironmentCase{"BlanksAroundNames", " ENGINE = INFO , ERROR ; ", 6},
                    EnvironmentCase{"EmptyParts", ";;ENGINE=,,INFO,;", 2},
                    EnvironmentCase{"NoFlags", "ENGINE=", 0}, EnvironmentCase{"NoEqualSign", "ENGINE", 0},
                    EnvironmentCase{"NoComponent", "=INFO", 0},
                    EnvironmentCase{"BeginningOfNames", "ENGIN=INFO;ENGINE=INF,INFOS", 0},
                    EnvironmentCase{"OtherCase", "engine=INFO;ENGINE=info", 0},
                    EnvironmentCase{"SecondEqualSign", "ENGINE=INFO=ERROR", 0},
                    EnvironmentCase{"OverlongNames", manyNames.c_str(), 2}),
    [](const auto& setting) { return setting.param.name; });

TEST(EnvironmentSwitch, DoesNotOutliveSwitchingOff) {
  inFreshProcess([] {
    setenv("KVRTT", "ENGINE=INFO", 1);
    int handle = -1;
    ASSERT_EQ(KvRttRegFacility(&handle, "ENGINE"), 0);
    ASSERT_EQ(KvRttRegFlag("ENGINE", 2, "INFO"), 0);
    EXPECT_EQ(KvRttSwitchFlag("ENGINE", "INFO", false), 0);
    ASSERT_EQ(KvRttRegFlag("ENGINE", 2, "INFO"), 0);
    EXPECT_EQ(KvRttTstFlag(handle, 2), 0);
  });
}

}  // namespace
