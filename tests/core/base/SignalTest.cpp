#include "core/base/Signal.h"

#include <gtest/gtest.h>

#include <vector>

namespace mirvel {

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

}  // namespace mirvel
