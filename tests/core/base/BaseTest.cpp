#include "core/base/Signal.h"

#include <gtest/gtest.h>

#include <array>
#include <future>
#include <memory>
#include <vector>

#include "core/base/ParallelWorkQueue.h"
#include "core/base/ThreadWorkQueue.h"

namespace mirvel {
namespace {

TEST(SignalTest, ReceiversMaySubscribeAndUnsubscribeWhileItIsPosted) {
  Signal<int> signal;
  std::vector<int> received;
  Subscription late;
  Subscription second;
  const Subscription first = signal.subscribe([&](int value) {
    received.push_back(value);
    second = {};
    if (value == 7) late = signal.subscribe([&](int) { received.push_back(-1); });
  });
  second = signal.subscribe([&](int) { received.push_back(3); });

  signal.post(7);
  EXPECT_EQ(received, std::vector{7}) << "neither the one that has left nor the new one";
  signal.post(8);
  EXPECT_EQ(received, (std::vector{7, 8, -1}));
}

TEST(SignalTest, SubscriptionsEndByThemselvesAndMayOutliveTheSignal) {
  int received = 0;
  Subscription kept;
  {
    Signal<> signal;
    kept = signal.subscribe([&] { ++received; });
    signal.post();
    kept = signal.subscribe([&] { received += 10; });
    signal.post();
  }
  EXPECT_EQ(received, 11);
  kept = {};
}

TEST(ThreadWorkQueueTest, TasksRunInOrderAndThoseThatHaventStartedAreDroppedAtTheEnd) {
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
    // The second task continues only once the third has been dropped; the destructor waits for it.
    std::shared_ptr<int> held(new int(0), [&](const int* number) {
      delete number;
      go.set_value();
    });
    queue.add([&, held = std::move(held)] { done.push_back(3); });
  }
  EXPECT_EQ(done, (std::vector{1, 2}));
}

TEST(ParallelWorkQueueTest, ATaskThatWaitsHoldsUpNeitherTheOthersNorTheEnd) {
  // Shared with the tasks, which outlive the queue.
  const auto go = std::make_shared<std::promise<void>>();
  const std::shared_future<void> going = go->get_future().share();
  const auto ends = std::make_shared<std::array<std::promise<void>, 2>>();
  std::weak_ptr<int> dropped;
  {
    ParallelWorkQueue queue("test", 3);
    const auto wait = [&](std::size_t number) {
      queue.add([going, ends, number] {
        going.wait();
        ends->at(number).set_value();
      });
    };
    wait(0);
    for (int i = 0; i < 3; ++i) {
      std::promise<void> done;
      queue.add([&] { done.set_value(); });
      done.get_future().wait();
    }
    wait(1);
    std::promise<void> lastBegun;
    queue.add([&lastBegun, going] {
      lastBegun.set_value();
      going.wait();
    });
    lastBegun.get_future().wait();
    const auto held = std::make_shared<int>(0);
    dropped = held;
    queue.add([held] {});  // all three threads wait
  }
  EXPECT_TRUE(dropped.expired());
  go->set_value();
  for (std::promise<void>& end : *ends) end.get_future().wait();
}

}  // namespace
}  // namespace mirvel
