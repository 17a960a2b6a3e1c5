#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "core/mainwindow/Command.h"

namespace mirvel {
namespace {

using C = Command;
using Change = std::function<void(CommandContext&)>;

/// Where everything can be chosen: an own agent is shown, in list mode.
CommandContext allowing(Command command) {
  return {.selected = Kind(Kind::userAgent),
          .isSelectedNamed = true,
          .canDeleteSelected = true,
          .hasRevisions = true,
          .hasFilterField = true,
          .detailTab = command == C::save ? DetailTab::LaunchdEdit : DetailTab::LaunchdDisplay,
          .mode = Mode::List};
}

const std::vector<Command> fileCommands{C::new_,         C::edit,    C::save,           C::revert,  C::duplicate,
                                        C::importAction, C::export_, C::delete_,        C::share,   C::test,
                                        C::log,          C::info,    C::revealInFinder, C::refresh, C::restoreDeleted};
const std::vector<Command> viewCommands{C::filter,   C::grid,   C::tree,    C::list,
                                        C::timeline, C::system, C::columns, C::titleBar};
const std::vector<Command> otherCommands{C::fullScreen,      C::help, C::manLaunchdplist, C::site, C::mailSupport,
                                         C::checkForUpdates, C::about};

std::vector<Command> all() {
  std::vector<Command> result = fileCommands;
  result.insert(result.end(), viewCommands.begin(), viewCommands.end());
  result.insert(result.end(), otherCommands.begin(), otherCommands.end());
  return result;
}

TEST(CommandRules, EachConditionTakesAwayItsCommandsAndNoOthers) {
  struct Row {
    std::string condition;
    Change change;
    std::vector<Command> disabled;
  };
  std::vector<Command> besidesOthers = fileCommands;
  besidesOthers.insert(besidesOthers.end(), viewCommands.begin(), viewCommands.end());
  const Row table[] = {
      {"nothing", [](auto&) {}, {}},
      {"unsaved changes",
       [](auto& context) { context.hasUnsavedChanges = true; },
       {C::new_, C::refresh, C::revert, C::duplicate, C::importAction, C::restoreDeleted, C::export_, C::grid, C::tree,
        C::timeline, C::system}},
      {"a sheet", [](auto& context) { context.hasSheet = true; }, besidesOthers},
      {"a save", [](auto& context) { context.isSaving = true; }, {C::save, C::restoreDeleted}},
      {"no selection",
       [](auto& context) { context.selected.reset(); },
       {C::edit, C::save, C::revert, C::duplicate, C::export_, C::delete_, C::share, C::test, C::log, C::info,
        C::revealInFinder}},
      {"a login item",
       [](auto& context) { context.selected = Kind(Kind::loginItemApplication); },
       {C::edit, C::save, C::revert, C::duplicate, C::export_, C::test, C::log}},
      {"a startup item",
       [](auto& context) { context.selected = Kind(Kind::localStartupItem); },
       {C::edit, C::save, C::revert, C::duplicate, C::export_, C::test, C::log}},
      {"a helper tool",
       [](auto& context) { context.selected = Kind(Kind::privilegedHelperTool); },
       {C::edit, C::save, C::revert, C::duplicate, C::export_, C::test, C::log}},
      {"a system daemon",
       [](auto& context) { context.selected = Kind(Kind::systemDaemon); },
       {C::edit, C::save, C::revert, C::duplicate}},
      {"an edited system agent",
       [](auto& context) {
         context.selected = Kind(Kind::systemAgent);
         context.editsSystemJobs = true;
       },
       {}},
      {"an own daemon", [](auto& context) { context.selected = Kind(Kind::localDaemon); }, {}},
      {"a job that can't be deleted", [](auto& context) { context.canDeleteSelected = false; }, {C::delete_}},
      {"no revisions", [](auto& context) { context.hasRevisions = false; }, {C::revert}},
      {"no details", [](auto& context) { context.detailTab = DetailTab::NoSelection; }, {C::edit, C::save}},
      {"no search field", [](auto& context) { context.hasFilterField = false; }, {C::filter}},
      {"grid mode", [](auto& context) { context.mode = Mode::Grid; }, {C::columns}},
      {"timeline mode", [](auto& context) { context.mode = Mode::Timeline; }, {C::columns}},
  };
  for (const Row& row : table) {
    for (const Command command : all()) {
      CommandContext context = allowing(command);
      row.change(context);
      const bool isDisabled = std::find(row.disabled.begin(), row.disabled.end(), command) != row.disabled.end();
      EXPECT_EQ(isEnabled(command, context), !isDisabled) << row.condition << ": command " << static_cast<int>(command);
    }
  }
}

TEST(CommandRules, AScriptInFrontCanBeSavedWhateverIsSelected) {
  EXPECT_FALSE(isEnabled(C::save, CommandContext{}));
  EXPECT_TRUE(isEnabled(C::save, CommandContext{.isScriptInFront = true}));
}

TEST(CommandRules, TicksFollowTheirSettings) {
  const CommandContext context{.showsSystemJobs = true, .isFullScreen = true, .mode = Mode::Tree};
  const std::pair<Command, std::optional<bool>> table[] = {
      {C::grid, false},  {C::tree, true},      {C::list, false},      {C::timeline, false},
      {C::system, true}, {C::titleBar, false}, {C::fullScreen, true}, {C::refresh, std::nullopt}};
  for (const auto& [command, isTicked] : table)
    EXPECT_EQ(isOn(command, context), isTicked) << static_cast<int>(command);
}

TEST(ToolbarRules, EachItemHasItsConditions) {
  using I = ToolbarItem;
  struct Row {
    std::string condition;
    Change change;
    std::vector<ToolbarItem> enabled;
  };
  const Row table[] = {
      {"nothing", [](auto&) {}, {I::new_, I::mode, I::filter, I::share, I::log, I::info}},
      {"unsaved changes", [](auto& context) { context.hasUnsavedChanges = true; }, {I::share, I::log, I::info}},
      {"a save", [](auto& context) { context.isSaving = true; }, {}},
      {"no selection", [](auto& context) { context.selected.reset(); }, {I::new_, I::mode, I::filter}},
      {"a login item",
       [](auto& context) { context.selected = Kind(Kind::loginItemSystemPreferences); },
       {I::new_, I::mode, I::filter, I::share, I::info}},
      {"a job without a name",
       [](auto& context) { context.isSelectedNamed = false; },
       {I::new_, I::mode, I::filter, I::share, I::info}},
      {"a system daemon",
       [](auto& context) { context.selected = Kind(Kind::systemDaemon); },
       {I::new_, I::mode, I::filter, I::share, I::log, I::info}},
  };
  for (const Row& row : table) {
    for (const ToolbarItem item : {I::new_, I::mode, I::filter, I::share, I::log, I::info}) {
      CommandContext context = allowing(C::edit);
      row.change(context);
      const bool isListed = std::find(row.enabled.begin(), row.enabled.end(), item) != row.enabled.end();
      EXPECT_EQ(isEnabled(item, context), isListed) << row.condition << ": item " << static_cast<int>(item);
    }
  }
}

}  // namespace
}  // namespace mirvel
