#include "core/ports/Interface.h"

#include <gtest/gtest.h>

#include "core/locale/Localize.h"
#include "core/ports/MainQueue.h"
#include "core/settings/Defaults.h"
#include "support/FakeInterface.h"
#include "support/TestData.h"
#include "support/VirtualQueue.h"

namespace mirvel {
namespace {

TEST(InterfaceTest, ATickedSuppressionIsStoredUnderItsKey) {
  const testdata::TemporaryFolder folder;
  Defaults defaults(folder.path() / "p.plist");
  const Localize localize("en");
  testdata::FakeInterface interface(defaults, localize);
  const Alert question{.message = "?", .defaultTitle = "Yes", .suppression = "AlertComplexWhat"};

  interface.answer = {Interface::alternateButton, false};
  EXPECT_EQ(interface.alert(question), 1001);
  EXPECT_FALSE(defaults.suppressAlertComplexRun());
  interface.answer = {Interface::defaultButton, true};
  EXPECT_EQ(interface.alert({.message = "?", .defaultTitle = "Yes"}), 1000);
  EXPECT_FALSE(defaults.suppressAlertComplexRun());
  EXPECT_EQ(interface.alert(question), 1000);
  EXPECT_TRUE(defaults.suppressAlertComplexRun());
}

TEST(DelayTest, DropsClosuresOfADestroyedOwner) {
  testdata::VirtualQueue queue;
  int runs = 0;
  {
    Delay delay(queue);
    delay(0.5, [&] { ++runs; });
    delay(2, [&] { ++runs; });
    queue.runFor(1);
  }
  queue.runFor(5);
  EXPECT_EQ(runs, 1);
}

TEST(LimitTest, RunsABurstAtOnceAndOnceMoreAtItsEnd) {
  testdata::VirtualQueue queue;
  Limit limit(queue);
  std::vector<std::pair<double, int>> runs;
  const auto call = [&](int number) {
    limit.interval("burst", 1.0, [&, number] { runs.emplace_back(queue.now(), number); });
  };

  for (int number = 0; number < 30; ++number) {
    call(number);
    queue.runFor(0.1);
  }
  queue.runFor(10);
  call(99);
  bool hasOtherRun = false;
  limit.interval("other", 1.0, [&] { hasOtherRun = true; });

  EXPECT_TRUE(hasOtherRun) << "each identifier has its own limit";
  ASSERT_EQ(runs.size(), 5U);
  EXPECT_EQ(runs.front(), std::pair(0.0, 0));
  EXPECT_EQ(runs[3].second, 29) << "the last call of the burst";
  for (std::size_t i = 1; i < runs.size(); ++i) EXPECT_GE(runs[i].first - runs[i - 1].first, 1.0 - 1e-9);
}

}  // namespace
}  // namespace mirvel
