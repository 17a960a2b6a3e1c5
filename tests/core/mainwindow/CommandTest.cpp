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
          .detailTab = command == C::Save ? DetailTab::LaunchdEdit : DetailTab::LaunchdDisplay,
          .mode = Mode::List};
}

const std::vector<Command> fileCommands{C::New,    C::Edit,   C::Save,           C::Revert,  C::Duplicate,
                                        C::Import, C::Export, C::Delete,         C::Share,   C::Test,
                                        C::Log,    C::Info,   C::RevealInFinder, C::Refresh, C::RestoreDeleted};
const std::vector<Command> viewCommands{C::Filter,   C::Grid,   C::Tree,    C::List,
                                        C::Timeline, C::System, C::Columns, C::TitleBar};
const std::vector<Command> otherCommands{C::FullScreen,      C::Help, C::ManLaunchdplist, C::Site, C::MailSupport,
                                         C::CheckForUpdates, C::About};

std::vector<Command> all() {
  std::vector<Command> result = fileCommands;
  result.insert(result.end(), viewCommands.begin(), viewCommands.end());
  result.insert(result.end(), otherCommands.begin(), otherCommands.end());
  return result;
}

TEST(CommandRules, EachConditionDisablesItsCommandsAndNoOthers) {
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
       {C::New, C::Refresh, C::Revert, C::Duplicate, C::Import, C::RestoreDeleted, C::Export, C::Grid, C::Tree,
        C::Timeline, C::System}},
      {"a sheet", [](auto& context) { context.hasSheet = true; }, besidesOthers},
      {"a save", [](auto& context) { context.isSaving = true; }, {C::Save, C::Revert, C::RestoreDeleted}},
      {"no selection",
       [](auto& context) { context.selected.reset(); },
       {C::Edit, C::Save, C::Revert, C::Duplicate, C::Export, C::Delete, C::Share, C::Test, C::Log, C::Info,
        C::RevealInFinder}},
      {"a login item",
       [](auto& context) { context.selected = Kind(Kind::loginItemApplication); },
       {C::Edit, C::Save, C::Revert, C::Duplicate, C::Export, C::Test, C::Log}},
      {"a startup item",
       [](auto& context) { context.selected = Kind(Kind::localStartupItem); },
       {C::Edit, C::Save, C::Revert, C::Duplicate, C::Export, C::Test, C::Log}},
      {"a helper tool",
       [](auto& context) { context.selected = Kind(Kind::privilegedHelperTool); },
       {C::Edit, C::Save, C::Revert, C::Duplicate, C::Export, C::Test, C::Log}},
      {"a system daemon",
       [](auto& context) { context.selected = Kind(Kind::systemDaemon); },
       {C::Edit, C::Save, C::Revert, C::Duplicate}},
      {"an edited system agent",
       [](auto& context) {
         context.selected = Kind(Kind::systemAgent);
         context.editsSystemJobs = true;
       },
       {}},
      {"an own daemon", [](auto& context) { context.selected = Kind(Kind::localDaemon); }, {}},
      {"a job that can't be deleted", [](auto& context) { context.canDeleteSelected = false; }, {C::Delete}},
      {"no revisions", [](auto& context) { context.hasRevisions = false; }, {C::Revert}},
      {"no details", [](auto& context) { context.detailTab = DetailTab::NoSelection; }, {C::Edit, C::Save}},
      {"no search field", [](auto& context) { context.hasFilterField = false; }, {C::Filter}},
      {"grid mode", [](auto& context) { context.mode = Mode::Grid; }, {C::Columns}},
      {"timeline mode", [](auto& context) { context.mode = Mode::Timeline; }, {C::Columns}},
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
  EXPECT_FALSE(isEnabled(C::Save, CommandContext{}));
  EXPECT_TRUE(isEnabled(C::Save, CommandContext{.isScriptInFront = true}));
}

TEST(CommandRules, TicksFollowTheirSettings) {
  const CommandContext context{.showsSystemJobs = true, .isFullScreen = true, .mode = Mode::Tree};
  const std::pair<Command, std::optional<bool>> table[] = {
      {C::Grid, false},  {C::Tree, true},      {C::List, false},      {C::Timeline, false},
      {C::System, true}, {C::TitleBar, false}, {C::FullScreen, true}, {C::Refresh, std::nullopt}};
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
      {"nothing", [](auto&) {}, {I::New, I::Mode, I::Filter, I::Share, I::Log, I::Info}},
      {"unsaved changes", [](auto& context) { context.hasUnsavedChanges = true; }, {I::Share, I::Log, I::Info}},
      {"a save", [](auto& context) { context.isSaving = true; }, {}},
      {"no selection", [](auto& context) { context.selected.reset(); }, {I::New, I::Mode, I::Filter}},
      {"a login item",
       [](auto& context) { context.selected = Kind(Kind::loginItemSystemPreferences); },
       {I::New, I::Mode, I::Filter, I::Share, I::Info}},
      {"a job without a name",
       [](auto& context) { context.isSelectedNamed = false; },
       {I::New, I::Mode, I::Filter, I::Share, I::Info}},
      {"a system daemon",
       [](auto& context) { context.selected = Kind(Kind::systemDaemon); },
       {I::New, I::Mode, I::Filter, I::Share, I::Log, I::Info}},
  };
  for (const Row& row : table) {
    for (const ToolbarItem item : {I::New, I::Mode, I::Filter, I::Share, I::Log, I::Info}) {
      CommandContext context = allowing(C::Edit);
      row.change(context);
      const bool isListed = std::find(row.enabled.begin(), row.enabled.end(), item) != row.enabled.end();
      EXPECT_EQ(isEnabled(item, context), isListed) << row.condition << ": item " << static_cast<int>(item);
    }
  }
}

}  // namespace
}  // namespace mirvel
