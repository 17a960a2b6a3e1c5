#include "core/ports/MainQueue.h"

#include <gtest/gtest.h>

#include "support/VirtualQueue.h"

namespace mirvel {
namespace {

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

  ASSERT_EQ(runs.size(), 5U);
  EXPECT_EQ(runs.front(), std::pair(0.0, 0));
  EXPECT_EQ(runs[3].second, 29) << "the last call of the burst";
  for (std::size_t i = 1; i < runs.size(); ++i) EXPECT_GE(runs[i].first - runs[i - 1].first, 1.0 - 1e-9);
}

TEST(LimitTest, KeepsIdentifiersApart) {
  testdata::VirtualQueue queue;
  Limit limit(queue);
  int runs = 0;
  limit.interval("a", 1.0, [&] { ++runs; });
  limit.interval("b", 1.0, [&] { ++runs; });
  EXPECT_EQ(runs, 2);
}

}  // namespace
}  // namespace mirvel
