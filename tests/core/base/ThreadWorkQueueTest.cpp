#include "core/base/ThreadWorkQueue.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <vector>

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

}  // namespace
}  // namespace mirvel
