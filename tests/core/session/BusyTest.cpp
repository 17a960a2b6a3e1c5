#include "core/session/Busy.h"

#include <gtest/gtest.h>

#include <optional>

namespace mirvel {
namespace {

TEST(BusyTest, TheLastTokenEndsItHoweverItGoes) {
  std::optional<Busy> busy(std::in_place);
  int changes = 0;
  const auto subscription = busy->changed().subscribe([&] { ++changes; });
  Busy::Token first = busy->begin();
  {
    const Busy::Token second = busy->begin();
    first = busy->begin();  // the one that was held goes
    Busy::Token moved = std::move(first);
    EXPECT_TRUE(busy->isBusy());
    moved.release();
    moved.release();
    EXPECT_TRUE(busy->isBusy()) << "of the second";
  }
  EXPECT_FALSE(busy->isBusy());
  EXPECT_EQ(changes, 2) << "at the beginning and at the end";
  first = busy->begin();
  busy.reset();
  first.release();
  EXPECT_EQ(changes, 3);
}

}  // namespace
}  // namespace mirvel
