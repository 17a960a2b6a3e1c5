#include <gtest/gtest.h>

#include <future>
#include <memory>

#include "core/base/Signal.h"
#include "core/base/ThreadWorkQueue.h"
#include "core/ports/MainQueue.h"
#include "support/VirtualQueue.h"

namespace mirvel {

TEST(Delay, DropsClosuresOfAnOwnerThatHasGone) {
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

TEST(Limit, RunsABurstAtOnceAndOnceMoreAtItsEnd) {
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
  EXPECT_EQ(runs[3].second, 29) << "the last of the burst is never lost";
  for (std::size_t i = 1; i < runs.size(); ++i) EXPECT_GE(runs[i].first - runs[i - 1].first, 1.0 - 1e-9);
}

TEST(Limit, KeepsIdentifiersApart) {
  testdata::VirtualQueue queue;
  Limit limit(queue);
  int runs = 0;
  limit.interval("a", 1.0, [&] { ++runs; });
  limit.interval("b", 1.0, [&] { ++runs; });
  EXPECT_EQ(runs, 2);
}

TEST(ThreadWorkQueue, RunsTasksInOrderAndDropsThoseThatHaventBegunAtItsEnd) {
  std::vector<int> done;
  std::promise<void> begun;
  std::promise<void> go;
  {
    ThreadWorkQueue queue("test");
    queue.add([&] { done.push_back(1); });
    queue.add([&] {
      begun.set_value();
      go.get_future().wait();
      done.push_back(2);
    });
    begun.get_future().wait();
    // The second goes on only when the third has been dropped, and the queue waits for it.
    std::shared_ptr<int> held(new int(0), [&](const int* number) {
      delete number;
      go.set_value();
    });
    queue.add([&, held = std::move(held)] { done.push_back(3); });
  }
  EXPECT_EQ(done, (std::vector{1, 2}));
}

TEST(Signal, ReceiversMayLeaveAndJoinWhileItIsPosted) {
  Signal<int> signal;
  std::vector<int> heard;
  Subscription late;
  Subscription second;
  const Subscription first = signal.subscribe([&](int news) {
    heard.push_back(news);
    second = {};
    if (news == 7) late = signal.subscribe([&](int) { heard.push_back(-1); });
  });
  second = signal.subscribe([&](int) { heard.push_back(3); });

  signal.post(7);
  EXPECT_EQ(heard, std::vector{7}) << "who has left isn't called, who is new isn't yet";
  signal.post(8);
  EXPECT_EQ(heard, (std::vector{7, 8, -1}));
}

}  // namespace mirvel
