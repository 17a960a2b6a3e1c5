#include "core/session/Selection.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

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
