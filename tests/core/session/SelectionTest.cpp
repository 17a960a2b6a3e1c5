#include "core/session/Selection.h"

#include <gtest/gtest.h>

#include <functional>

#include "core/catalogue/Launchd.h"

namespace mirvel {
namespace {

TEST(SelectionTest, EachSelectIsPostedAndANewReadingIsNot) {
  const auto job = std::make_shared<Job>(Kind::userAgent, "a", "", "old", URL::file("/a"));
  const auto newReading = std::make_shared<Job>(Kind::userAgent, "a", "", "new", URL::file("/a"));
  Selection selection;
  int changes = 0;
  const Subscription subscription = selection.changed().subscribe([&changes] { ++changes; });
  const struct {
    std::function<void()> change;
    std::shared_ptr<Job> selected;
    int changes;
  } table[] = {
      {[&] { selection.select(job); }, job, 1},
      {[&] { selection.select(job); }, job, 2},  // its details may have been cleared
      {[&] { selection.replace(newReading); }, newReading, 2},
      {[&] { selection.select(nullptr); }, nullptr, 3},
  };
  for (const auto& row : table) {
    row.change();
    EXPECT_EQ(selection.job(), row.selected);
    EXPECT_EQ(changes, row.changes);
    EXPECT_EQ(selection.jobs().size(), row.selected ? 1U : 0U);
    EXPECT_FALSE(selection.launchd());
  }
}

}  // namespace
}  // namespace mirvel
