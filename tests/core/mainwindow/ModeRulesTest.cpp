#include "core/mainwindow/ModeRules.h"

#include <gtest/gtest.h>

#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

class ModeRulesTest : public testdata::ProgramFixture {
 protected:
  static std::shared_ptr<Job> job(Kind kind) { return std::make_shared<Job>(kind, "job", "", "", URL::file("/job")); }
};

TEST_F(ModeRulesTest, TheSelectionIsGuardedWithOneQuestion) {
  SelectionGuard guard(program().windowContext);
  SelectionGuard otherGuard(program().windowContext);
  enum { Clean, Unsaved, Busy, UnsavedAndBusy };
  const struct {
    int state;
    bool mayChange;
    std::size_t questions;
  } steps[] = {
      {Clean, true, 0}, {Busy, false, 0},    {UnsavedAndBusy, false, 0}, {Unsaved, false, 1}, {Unsaved, false, 1},
      {Busy, false, 1}, {Unsaved, false, 1}, {Clean, true, 1},           {Unsaved, false, 2}, {Unsaved, false, 2},
  };
  for (const auto& step : steps) {
    program().editing.setUnsavedChanges(step.state == Unsaved || step.state == UnsavedAndBusy);
    const bool isBusy = step.state == Busy || step.state == UnsavedAndBusy;
    const auto saving = isBusy ? program().saving.begin() : mirvel::Busy::Token();
    EXPECT_EQ(guard.mayChange(), step.mayChange);
    EXPECT_EQ(interface.sheets.size(), step.questions);
  }
  EXPECT_FALSE(otherGuard.mayChange());
  EXPECT_EQ(interface.sheets.size(), 3U) << "each mode asks for itself";
}

TEST_F(ModeRulesTest, AnEmptyViewHasALabelUnlessThereAreJobs) {
  EXPECT_EQ(emptyStateLabel(program().windowContext), "No Items");
  auto scanning = program().scanning.begin();
  EXPECT_EQ(emptyStateLabel(program().windowContext), "Loading\u2026");
  program().catalogue.publish({job(Kind::userAgent)});
  EXPECT_EQ(emptyStateLabel(program().windowContext), "Loading\u2026");
  scanning.release();
  EXPECT_EQ(emptyStateLabel(program().windowContext), std::nullopt);
}

TEST_F(ModeRulesTest, TheKindDecidesWhatCanBeDraggedAndDeleted) {
  const struct {
    Kind kind;
    bool canDrag;
    bool canDelete;
    bool canDeleteByPermission;
  } table[] = {
      {Kind::userAgent, true, true, true},
      {Kind::localAgent, true, true, true},
      {Kind::localDaemon, true, true, true},
      {Kind::loginItemSystemPreferences, false, true, true},
      {Kind::loginItemApplication, false, false, false},
      {Kind::localStartupItem, false, true, true},
      {Kind::systemAgent, true, false, true},
      {Kind::systemDaemon, true, false, true},
      {Kind::systemStartupItem, false, false, true},
      {Kind::privilegedHelperTool, false, true, true},
  };
  const auto canDelete = [&](Kind kind) { return program().deletion.canDelete(*job(kind)); };
  for (const auto& row : table) {
    EXPECT_EQ(draggedURL(*job(row.kind)).has_value(), row.canDrag) << row.kind.name();
    EXPECT_EQ(canDelete(row.kind), row.canDelete) << row.kind.name();
    program().editing.setUnsavedChanges(true);
    EXPECT_FALSE(canDelete(row.kind)) << row.kind.name();
    program().editing.setUnsavedChanges(false);
    const auto saving = program().saving.begin();
    EXPECT_FALSE(canDelete(row.kind)) << row.kind.name();
  }
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::editSystemJobs, true));
  for (const auto& row : table) EXPECT_EQ(canDelete(row.kind), row.canDeleteByPermission) << row.kind.name();
}

TEST_F(ModeRulesTest, AJobWithoutANameLeavesTheTitleAsItIs) {
  program().selection.select(std::make_shared<Job>(Kind::userAgent, "", "", "", URL::file("/job")));
  EXPECT_EQ(program().mainWindow.title(), "Mirvel");
}

TEST_F(ModeRulesTest, AClearedSelectionStartsAScanUnlessThereAreEdits) {
  program().editing.setUnsavedChanges(true);
  EXPECT_EQ(fetchQueue.count(), 0U);
  program().editing.setUnsavedChanges(false);
  program().selection.select(job(Kind::userAgent));
  EXPECT_EQ(fetchQueue.count(), 0U);
  program().selection.select(nullptr);
  EXPECT_EQ(fetchQueue.count(), 1U);
}

}  // namespace
}  // namespace mirvel
