#include "core/mainwindow/GridMode.h"

#include <gmock/gmock.h>

#include "support/ModeFixture.h"

namespace mirvel {
namespace {

using testdata::nowhere;
using testing::ElementsAre;
using testing::IsEmpty;

class RecordingCollection final : public testdata::RecordingView<GridCollectionType, IndexPath> {
 public:
  std::vector<IndexPath> reloadedItems;
  int redraws = 0;

  void reloadItem(IndexPath path) override { reloadedItems.push_back(path); }
  void redraw() override { ++redraws; }
};

class GridModeTest : public testdata::ModeFixture {
 protected:
  RecordingCollection collection;
  GridMode grid{program().windowContext, collection};
};

TEST_F(GridModeTest, OnlyChangedRowsReloadTheView) {
  const Jobs jobs = someJobs();
  const Jobs copies{copy(*jobs[0]), copy(*jobs[1]), copy(*jobs[2]), copy(*jobs[3]), copy(*jobs[4])};
  const Jobs swapped{jobs[1], jobs[0], jobs[2], jobs[3], jobs[4]};
  const struct {
    const char* what;
    Jobs jobs;
    bool isReloaded;
    const char* sections;
  } rows[] = {
      {"none, as before", {}, false, ""},
      {"some", jobs, true, "a b | c | own | bundled | "},
      {"the same", jobs, false, "a b | c | own | bundled | "},
      {"equal ones", copies, false, "a b | c | own | bundled | "},
      {"in another order", swapped, true, "b a | c | own | bundled | "},
      {"the last of a kind has gone", {jobs[0], jobs[3]}, true, "a | own | "},
      {"all have gone", {}, true, ""},
  };
  int reloads = 0;
  for (const auto& row : rows) {
    grid.update(row.jobs);
    reloads += row.isReloaded ? 1 : 0;
    EXPECT_EQ(collection.reloads, reloads) << row.what;
    EXPECT_EQ(text(grid.sections()), row.sections) << row.what;
  }
}

TEST_F(GridModeTest, EqualJobsAreReplacedByTheNewObjects) {
  publish(grid, {job(Kind::userAgent, "a"), job(Kind::userAgent, "b")});
  publish(grid, {copy(*program().catalogue.jobs()[0]), copy(*program().catalogue.jobs()[1])});
  grid.select(program().catalogue.jobs()[1]);
  EXPECT_EQ(collection.marked, (IndexPath{0, 1}));
  EXPECT_EQ(collection.reloads, 1);
  grid.reloadJob(program().catalogue.jobs()[1]);
  grid.reloadJob(copy(*program().catalogue.jobs()[0]));
  EXPECT_THAT(collection.reloadedItems, ElementsAre(IndexPath{0, 1}));
}

TEST_F(GridModeTest, SystemJobsAppearOnlyWithAChangedCatalogue) {
  const Jobs jobs{job(Kind::userAgent, "a"), job(Kind::systemAgent, "s")};
  publish(grid, jobs);
  EXPECT_EQ(text(grid.sections()), "a | ");
  ASSERT_TRUE(foundation.defaults.setShowSystemJobs(true));
  publish(grid, jobs);
  EXPECT_EQ(text(grid.sections()), "a | ") << "unchanged";
  publish(grid, {jobs[0], jobs[1], job(Kind::systemAgent, "t")});
  EXPECT_EQ(text(grid.sections()), "a | s t | ");
}

TEST_F(GridModeTest, JobsThatCantBeEditedHaveABadge) {
  ASSERT_TRUE(foundation.defaults.setShowSystemJobs(true));
  publish(grid, {job(Kind::userAgent, "a"), job(Kind::localStartupItem, "b"), job(Kind::systemAgent, "c")});
  for (const bool mayEdit : {false, true}) {
    ASSERT_TRUE(foundation.defaults.set(Defaults::Key::editSystemJobs, mayEdit));
    EXPECT_FALSE(grid.item({0, 0}).noWriteBadge);
    EXPECT_EQ(grid.item({1, 0}).noWriteBadge.value().accessibilityDescription, "Not editable");
    EXPECT_EQ(grid.item({2, 0}).noWriteBadge.has_value(), !mayEdit);
  }
}

TEST_F(GridModeTest, ItemsDescribeTheJob) {
  writeJob(Kind::userAgent, "off", {{"Disabled", true}});
  writeJob(Kind::userAgent, "own", {{"Disabled", true}});
  writeJob(Kind::userAgent, "plain", {{"Disabled", false}});
  scan();
  const Image picture = Image::file("/picture.png");
  jobNamed("own")->customIcon = picture;
  const std::optional<Image> disabled = statusImage(false, foundation.localize);
  const struct {
    const char* name;
    std::optional<Image> icon;
    bool isSecondary;
  } rows[] = {{"off", disabled, true}, {"own", picture, true}, {"plain", jobNamed("plain")->icon, false}};
  grid.update(program().catalogue.jobs());
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const GridItem item = grid.item({0, i});
    EXPECT_EQ(item.name, rows[i].name);
    EXPECT_EQ(item.icon, rows[i].icon) << rows[i].name;
    EXPECT_EQ(item.isSecondary, rows[i].isSecondary) << rows[i].name;
  }
  EXPECT_EQ(grid.header(0), "Ada Lovelace");
  for (const IndexPath beyond : {IndexPath{0, 3}, IndexPath{1, 0}, IndexPath{0, IndexPath::group}, nowhere}) {
    const GridItem item = grid.item(beyond);
    EXPECT_TRUE(item.name.empty() && !item.icon && !item.noWriteBadge);
  }
  EXPECT_EQ(grid.header(1), "");
}

TEST_F(GridModeTest, AClickSelectsUnlessEditsOrASavePreventIt) {
  publish(grid, someJobs());
  enum { Clean, Unsaved, Busy, UnsavedAndBusy };
  const struct {
    const char* what;
    int state;
    std::optional<IndexPath> path;
    const char* selected;
    std::size_t questions;
  } rows[] = {
      {"nothing marked", Clean, std::nullopt, "", 0},
      {"an item", Clean, IndexPath{1, 0}, "c", 0},
      {"the mark is gone", Clean, std::nullopt, "c", 0},
      {"beyond the items", Clean, nowhere, "c", 0},
      {"while busy", Busy, IndexPath{0, 0}, "c", 0},
      {"with unsaved changes", Unsaved, IndexPath{0, 0}, "c", 1},
      {"and again", Unsaved, IndexPath{0, 1}, "c", 2},
      {"but not while busy", UnsavedAndBusy, IndexPath{0, 1}, "c", 2},
      {"nothing marked with unsaved changes", Unsaved, std::nullopt, "c", 2},
      {"saved", Clean, IndexPath{0, 1}, "b", 2},
  };
  for (const auto& row : rows) {
    program().editing.setUnsavedChanges(row.state == Unsaved || row.state == UnsavedAndBusy);
    const bool isBusy = row.state == Busy || row.state == UnsavedAndBusy;
    const auto saving = isBusy ? program().saving.begin() : mirvel::Busy::Token();
    grid.selectionDidChange(row.path);
    EXPECT_EQ(program().selection.job() ? program().selection.job()->name : "", row.selected) << row.what;
    EXPECT_EQ(interface.sheets.size(), row.questions) << row.what;
  }
  EXPECT_FALSE(collection.marked) << "no mark is put back";
  EXPECT_EQ(shell.count("updateDetail"), 2U);
}

TEST_F(GridModeTest, AClickOnTheMarkedItemTriesAgainToSelectIt) {
  publish(grid, someJobs());
  grid.selectionDidChange(IndexPath{0, 0});
  program().editing.setUnsavedChanges(true);
  grid.selectionDidChange(IndexPath{0, 1});
  ASSERT_EQ(interface.sheets.size(), 1U);
  grid.markedItemWasClicked({0, 1});
  EXPECT_EQ(interface.sheets.size(), 2U);
  program().editing.setUnsavedChanges(false);
  grid.markedItemWasClicked({0, 1});
  EXPECT_EQ(program().selection.job()->name, "b");
  shell.events.clear();
  grid.markedItemWasClicked({0, 1});
  EXPECT_THAT(shell.events, IsEmpty()) << "it is shown already";
}

TEST_F(GridModeTest, SelectMarksAndShowsTheItem) {
  publish(grid, someJobs());
  expectToMarkByJob(grid, collection, {0, 1});
  grid.deselect();
  expectToSelectByURL(grid, collection, {0, 0}, {0, 1});
}

}  // namespace
}  // namespace mirvel
