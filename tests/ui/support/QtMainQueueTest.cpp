#include "ui/support/QtMainQueue.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <algorithm>
#include <limits>
#include <memory>
#include <thread>
#include <vector>

#include "ui/EventLoop.h"

namespace mirvel::ui {

using testdata::eventually;

TEST(QtMainQueue, RunsTasksByTheirTimesAndEqualOnesInOrder) {
  QtMainQueue queue;
  std::vector<int> ran;
  const auto task = [&](int number) { return [&ran, number] { ran.push_back(number); }; };
  queue.postAfter(0.03, task(5));
  queue.postAfter(0.01, task(4));
  queue.post(task(1));
  queue.postAfter(0, task(2));
  queue.postAfter(std::numeric_limits<double>::quiet_NaN(), task(3));
  queue.postAfter(1e300, task(6));

  EXPECT_TRUE(ran.empty()) << "nothing runs within the call that posts it";
  EXPECT_TRUE(eventually([&] { return ran.size() >= 5; }));
  EXPECT_EQ(ran, (std::vector{1, 2, 3, 4, 5}));
}

TEST(QtMainQueue, RunsEachTaskOnTheMainThreadInTheOrderOfItsOwnThread) {
  QtMainQueue queue;
  constexpr int perThread = 500;
  std::vector<std::vector<int>> ran(4);
  bool isAlwaysMain = true;
  std::vector<std::thread> threads;
  for (auto& own : ran) {
    threads.emplace_back([&] {
      for (int i = 0; i < perThread; ++i) {
        queue.postAfter(0, [&, i] {
          own.push_back(i);
          isAlwaysMain = isAlwaysMain && QThread::currentThread() == QCoreApplication::instance()->thread();
        });
      }
    });
  }
  for (auto& thread : threads) thread.join();
  bool isEnd = false;
  queue.postAfter(0.001, [&] { isEnd = true; });

  EXPECT_TRUE(eventually([&] { return isEnd; }));
  EXPECT_TRUE(isAlwaysMain);
  for (const auto& own : ran) {
    EXPECT_EQ(own.size(), std::size_t{perThread});
    EXPECT_TRUE(std::is_sorted(own.begin(), own.end()));
  }
}

TEST(QtMainQueue, WakesTheLoopForAThreadThatPostsLate) {
  QtMainQueue queue;
  bool hasRun = false;
  std::thread thread([&] { queue.postAfter(0.01, [&] { hasRun = true; }); });
  EXPECT_TRUE(eventually([&] { return hasRun; }));
  thread.join();
}

TEST(QtMainQueue, ContinuesInsideANestedEventLoop) {
  QtMainQueue queue;
  bool isInnerDone = false;
  queue.post([&] {
    QEventLoop modal;
    queue.post([&] { modal.quit(); });
    modal.exec();
    isInnerDone = true;
  });
  bool isNextDone = false;
  queue.post([&] { isNextDone = true; });
  EXPECT_TRUE(eventually([&] { return isInnerDone && isNextDone; }));
}

TEST(QtMainQueue, DropsPendingTasksAtItsEnd) {
  auto token = std::make_shared<int>();
  bool hasRun = false;
  {
    QtMainQueue queue;
    // A task whose captures post once more as they go.
    const std::shared_ptr<void> last(nullptr, [&](void*) { queue.post([&] { hasRun = true; }); });
    queue.post([token, last, &hasRun] { hasRun = true; });
    queue.postAfter(0.001, [token] {});
  }
  EXPECT_EQ(token.use_count(), 1) << "the captures of tasks are destroyed";
  testdata::settle();
  EXPECT_FALSE(hasRun);
}

}  // namespace mirvel::ui
