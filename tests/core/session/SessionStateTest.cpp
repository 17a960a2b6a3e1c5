#include <gtest/gtest.h>

#include <optional>

#include "core/session/Busy.h"
#include "core/session/Selection.h"

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

TEST(SelectionTest, EachSelectIsPostedAndANewReadingIsNot) {
  const auto job = std::make_shared<Job>(Kind::userAgent, "a", "", "old", URL::file("/a"));
  const auto newReading = std::make_shared<Job>(Kind::userAgent, "a", "", "new", URL::file("/a"));
  Selection selection;
  int changes = 0;
  const Subscription subscription = selection.changed().subscribe([&changes] { ++changes; });
  selection.select(job);
  selection.select(job);
  EXPECT_EQ(changes, 2) << "its details may have been cleared meanwhile";
  selection.replace(newReading);
  EXPECT_EQ(selection.job(), newReading);
  EXPECT_EQ(changes, 2);
  selection.select(nullptr);
  EXPECT_TRUE(!selection.job() && selection.jobs().empty());
  EXPECT_EQ(changes, 3);
}

}  // namespace
}  // namespace mirvel
