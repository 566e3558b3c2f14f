#include <climits>
#include <set>
#include <string>

#include "rttTestSupport.h"

namespace {

std::string numbered(std::string name, int number) { return name.append(std::to_string(number)); }

TEST(Initialising, LeavesTheHandleAlone) {
  int handle = 4711;
  EXPECT_EQ(pvxTraceRttInit(&handle), 0);
  EXPECT_EQ(handle, 4711);
}

TEST(Initialising, RefusesANullHandle) { EXPECT_NE(pvxTraceRttInit(nullptr), 0); }

TEST(RegisteringAComponent, GivesEachNameAHandleOfItsOwn) {
  inFreshProcess([] {
    int first = -1;
    int second = -1;
    int again = -1;
    EXPECT_EQ(KvRttRegFacility(&first, "ONE"), 0);
    EXPECT_EQ(KvRttRegFacility(&second, "TWO"), 0);
    EXPECT_EQ(KvRttRegFacility(&again, "ONE"), 0);
    EXPECT_GE(first, 1);
    EXPECT_GE(second, 1);
    EXPECT_NE(first, second);
    EXPECT_EQ(again, first);
  });
}

TEST(RegisteringAComponent, KeepsTheHandleWhenTheNameIsUnusable) {
  const std::string longName(32, 'x');
  for (const char* name : {"", "A B", "A\tB", "A=B", "A,B", "A;B", longName.c_str(), "A\nB"}) {
    SCOPED_TRACE(name);
    int handle = 99;
    EXPECT_EQ(KvRttRegFacility(&handle, name), kvRttBadName);
    EXPECT_EQ(handle, 99);
  }
  int handle = 99;
  EXPECT_EQ(KvRttRegFacility(&handle, nullptr), kvRttBadName);
  EXPECT_EQ(KvRttRegFacility(nullptr, "ONE"), kvRttNullArgument);
  EXPECT_EQ(handle, 99);
}

TEST(RegisteringAComponent, TakesANameOfTheGreatestLength) {
  inFreshProcess([] {
    const std::string name(31, 'x');
    int handle = -1;
    EXPECT_EQ(KvRttRegFacility(&handle, name.c_str()), 0);
    EXPECT_EQ(KvRttRegFlag(name.c_str(), 1, name.c_str()), 0);
    EXPECT_EQ(KvRttSwitchFlag(name.c_str(), name.c_str(), true), 0);
    EXPECT_EQ(KvRttTstFlag(handle, 1), 1);
  });
}

TEST(RegisteringAComponent, IsRefusedWhenAllPlacesAreTaken) {
  inFreshProcess([] {
    int handle = -1;
    for (int i = 0; i < kvRttMaxComponents; ++i) {
      EXPECT_EQ(KvRttRegFacility(&handle, numbered("C", i).c_str()), 0);
    }
    const int last = handle;
    handle = 99;
    EXPECT_EQ(KvRttRegFacility(&handle, "ONE_MORE"), kvRttComponentsFull);
    EXPECT_EQ(handle, 99);
    EXPECT_EQ(KvRttRegFacility(&handle, numbered("C", kvRttMaxComponents - 1).c_str()), 0);
    EXPECT_EQ(handle, last);
    const std::string name = numbered("C", kvRttMaxComponents - 1);
    EXPECT_EQ(KvRttRegFlag(name.c_str(), 2, "INFO"), 0);
    EXPECT_EQ(KvRttSwitchFlag(name.c_str(), "INFO", true), 0);
    EXPECT_EQ(KvRttTstFlag(last, 2), 1);
    EXPECT_EQ(KvRttTstFlag(last + 1, 2), 0);
  });
}

TEST(DeclaringAFlag, TakesSingleBitsOnly) {
  registerShared();
  for (int value : {0, 3, 5, 6, 7, -1, -2, INT_MIN, INT_MAX, 0x60000000}) {
    EXPECT_EQ(KvRttRegFlag("SHARED", value, "ODD"), kvRttBadFlag) << value;
  }
}

TEST(DeclaringAFlag, TakesTheHighestBit) {
  inFreshProcess([] {
    const int handle = registerShared();
    EXPECT_EQ(KvRttRegFlag("SHARED", 0x40000000, "TOP"), 0);
    EXPECT_EQ(KvRttSwitchFlag("SHARED", "TOP", true), 0);
    EXPECT_EQ(KvRttTstFlag(handle, 0x40000000), 1);
    EXPECT_EQ(KvRttTstFlag(handle, 1), 0);
  });
}

TEST(DeclaringAFlag, RefusesUnusableNamesAndUnknownComponents) {
  registerShared();
  EXPECT_EQ(KvRttRegFlag("SHARED", 8, nullptr), kvRttBadName);
  EXPECT_EQ(KvRttRegFlag("SHARED", 8, ""), kvRttBadName);
  EXPECT_EQ(KvRttRegFlag("SHARED", 8, "A,B"), kvRttBadName);
  EXPECT_EQ(KvRttRegFlag("NOBODY", 8, "X"), kvRttUnknownComponent);
  EXPECT_EQ(KvRttRegFlag("", 8, "X"), kvRttUnknownComponent);
  EXPECT_EQ(KvRttRegFlag(nullptr, 8, "X"), kvRttUnknownComponent);
}

TEST(DeclaringAFlag, AgainChangesNothing) {
  const int handle = registerShared();
  EXPECT_EQ(KvRttSwitchFlag("SHARED", "INFO", true), 0);
  EXPECT_EQ(KvRttRegFlag("SHARED", 2, "INFO"), 0);
  EXPECT_EQ(KvRttTstFlag(handle, 2), 1);
  EXPECT_EQ(KvRttSwitchFlag("SHARED", "INFO", false), 0);
  EXPECT_EQ(KvRttRegFlag("SHARED", 2, "INFO"), 0);
  EXPECT_EQ(KvRttTstFlag(handle, 2), 0);
}

TEST(DeclaringAFlag, RefusesAValueOrNameThatMeansSomethingElse) {
  registerShared();
  EXPECT_EQ(KvRttRegFlag("SHARED", 2, "OTHER"), kvRttFlagTaken);
  EXPECT_EQ(KvRttRegFlag("SHARED", 8, "INFO"), kvRttFlagTaken);
}

TEST(DeclaringAFlag, IsRefusedWhenAllPlacesAreTaken) {
  inFreshProcess([] {
    int handle = -1;
    EXPECT_EQ(KvRttRegFacility(&handle, "MANY"), 0);
    for (int i = 0; i < kvRttMaxFlags; ++i) {
      EXPECT_EQ(KvRttRegFlag("MANY", 1 << i, numbered("F", i).c_str()), 0);
    }
    EXPECT_EQ(KvRttRegFlag("MANY", 1 << kvRttMaxFlags, "ONE_MORE"), kvRttFlagsFull);
    EXPECT_EQ(KvRttSwitchFlag("MANY", "ONE_MORE", true), kvRttUnknownFlag);
    EXPECT_EQ(KvRttTstFlag(handle, 1 << kvRttMaxFlags), 0);
  });
}

TEST(StatusText, DescribesEachStatusInItsOwnWords) {
  std::set<std::string> texts;
  for (int status = kvRttSuccess; status <= kvRttUnknownHandle; ++status) texts.insert(KvRttStatus(status));
  EXPECT_EQ(texts.size(), static_cast<std::size_t>(kvRttUnknownHandle) + 1);
  EXPECT_EQ(texts.count("unknown status"), 0u);
  EXPECT_EQ(texts.count(""), 0u);
}

TEST(StatusText, IsThereForAnyNumber) {
  for (int status : {-1, kvRttUnknownHandle + 1, INT_MIN, INT_MAX}) {
    EXPECT_STREQ(KvRttStatus(status), "unknown status");
  }
}

}  // namespace
