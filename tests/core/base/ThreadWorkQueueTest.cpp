#include "core/base/ThreadWorkQueue.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>

#include "core/base/Signal.h"

namespace mirvel {
namespace {

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

TEST(SignalTest, ReceiversMaySubscribeAndUnsubscribeDuringAPost) {
  Signal<int> signal;
  std::vector<int> heard;
  Subscription late;
  Subscription second;
  const Subscription first = signal.subscribe([&](int event) {
    heard.push_back(event);
    second = {};
    if (event == 7) late = signal.subscribe([&](int) { heard.push_back(-1); });
  });
  second = signal.subscribe([&](int) { heard.push_back(3); });

  signal.post(7);
  EXPECT_EQ(heard, std::vector{7}) << "the second has unsubscribed, the late one isn't called yet";
  signal.post(8);
  EXPECT_EQ(heard, (std::vector{7, 8, -1}));
}

}  // namespace
}  // namespace mirvel
