#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "core/mainwindow/Command.h"

namespace mirvel {
namespace {

using C = Command;
using Context = CommandContext;
using Change = std::function<void(Context&)>;

/// Where everything can be chosen: an own agent is shown, in list mode.
Context allowing(Command command) {
  return {.selected = Kind(Kind::userAgent),
          .isSelectedNamed = true,
          .canDeleteSelected = true,
          .hasRevisions = true,
          .hasFilterField = true,
          .checksJobs = true,
          .detailTab = command == C::Save ? DetailTab::LaunchdEdit : DetailTab::LaunchdDisplay,
          .mode = Mode::List,
          .offersOrder = {true, true, true, true}};
}

template <typename Value>
Change with(Value Context::*field, std::type_identity_t<Value> value) {
  return [field, value](Context& context) { context.*field = value; };
}

Change selected(Kind kind) {
  return with(&Context::selected, kind);
}

/// The commands from the first to this one, in the order of the menus.
std::vector<Command> upTo(Command last) {
  std::vector<Command> result;
  for (int i = 0; i <= static_cast<int>(last); ++i) result.push_back(static_cast<Command>(i));
  return result;
}

TEST(CommandRules, EachConditionDisablesItsCommandsAndNoOthers) {
  const std::vector<Command> changesAJob{C::Edit, C::Save, C::Revert, C::Duplicate};
  const std::vector<Command> needsALaunchdJob{C::Edit, C::Save, C::Revert, C::Duplicate, C::Export, C::Test, C::Log};
  struct Row {
    std::string condition;
    Change change;
    std::vector<Command> disabled;
  };
  const Row table[] = {
      {"nothing", [](auto&) {}, {}},
      {"unsaved changes",
       with(&Context::hasUnsavedChanges, true),
       {C::New, C::Refresh, C::Revert, C::Duplicate, C::Import, C::RestoreDeleted, C::Export, C::Grid, C::Tree,
        C::Timeline, C::System, C::OnlyProblems, C::OnlyFailed, C::OnlyRunning}},
      {"a sheet", with(&Context::hasSheet, true), upTo(C::TitleBar)},
      {"a save", with(&Context::isSaving, true), {C::Save, C::Revert, C::RestoreDeleted}},
      {"no selection",
       with(&Context::selected, std::nullopt),
       {C::Edit, C::Save, C::Revert, C::Duplicate, C::Export, C::Delete, C::Share, C::Test, C::Log, C::Info,
        C::RevealInFinder}},
      {"a job that can't be controlled", with(&Context::offersOrder, {}), {C::RunNow, C::Stop, C::Restart, C::Disable}},
      {"a job that runs", [](auto& context) { context.orderObstacles[0] = "it runs"; }, {C::RunNow}},
      {"a job that waits",
       [](auto& context) { context.orderObstacles[1] = context.orderObstacles[2] = "it doesn't run"; },
       {C::Stop, C::Restart}},
      {"a login item", selected(Kind::loginItemApplication), needsALaunchdJob},
      {"a startup item", selected(Kind::localStartupItem), needsALaunchdJob},
      {"a helper tool", selected(Kind::privilegedHelperTool), needsALaunchdJob},
      {"a system daemon", selected(Kind::systemDaemon), changesAJob},
      {"an edited system agent",
       [](auto& context) {
         context.selected = Kind(Kind::systemAgent);
         context.editsSystemJobs = true;
       },
       {}},
      {"an own daemon", selected(Kind::localDaemon), {}},
      {"a job that can't be deleted", with(&Context::canDeleteSelected, false), {C::Delete}},
      {"no revisions", with(&Context::hasRevisions, false), {C::Revert}},
      {"no details", with(&Context::detailTab, DetailTab::NoSelection), {C::Edit, C::Save}},
      {"no search field", with(&Context::hasFilterField, false), {C::Filter}},
      {"no checks", with(&Context::checksJobs, false), {C::OnlyProblems}},
      {"grid mode", with(&Context::mode, Mode::Grid), {C::Columns}},
      {"timeline mode", with(&Context::mode, Mode::Timeline), {C::Columns}},
  };
  for (const Row& row : table) {
    for (const Command command : upTo(C::About)) {
      Context context = allowing(command);
      row.change(context);
      const bool isDisabled = std::find(row.disabled.begin(), row.disabled.end(), command) != row.disabled.end();
      EXPECT_EQ(isEnabled(command, context), !isDisabled) << row.condition << ": command " << static_cast<int>(command);
    }
  }
}

TEST(CommandRules, AScriptInFrontCanBeSavedWhateverIsSelected) {
  EXPECT_FALSE(isEnabled(C::Save, Context{}));
  EXPECT_TRUE(isEnabled(C::Save, Context{.isScriptInFront = true}));
}

TEST(CommandRules, TicksFollowTheirSettings) {
  const Context context{.showsSystemJobs = true, .checksJobs = true, .isFullScreen = true, .mode = Mode::Tree};
  const std::pair<Command, std::optional<bool>> table[] = {
      {C::Grid, false},     {C::Tree, true},   {C::List, false},     {C::Timeline, false},  {C::OnlyProblems, false},
      {C::CheckJobs, true}, {C::System, true}, {C::TitleBar, false}, {C::FullScreen, true}, {C::Refresh, std::nullopt}};
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
      {"nothing", [](auto&) {}, {I::New, I::Mode, I::Filter, I::Share, I::Run, I::Log, I::Info}},
      {"unsaved changes", with(&Context::hasUnsavedChanges, true), {I::Share, I::Run, I::Log, I::Info}},
      {"a save", with(&Context::isSaving, true), {}},
      {"no selection",
       [](auto& context) {
         context.selected = std::nullopt;
         context.offersOrder = {};
       },
       {I::New, I::Mode, I::Filter}},
      {"a login item",
       [](auto& context) {
         context.selected = Kind(Kind::loginItemApplication);
         context.offersOrder = {};
       },
       {I::New, I::Mode, I::Filter, I::Share, I::Info}},
      {"a job without a name",
       with(&Context::isSelectedNamed, false),
       {I::New, I::Mode, I::Filter, I::Share, I::Run, I::Info}},
      {"an order that can't be given",
       [](auto& context) {
         context.orderObstacles = {"a", "b", "c", "d"};
       },
       {I::New, I::Mode, I::Filter, I::Share, I::Log, I::Info}},
      {"a system daemon",
       selected(Kind::systemDaemon),
       {I::New, I::Mode, I::Filter, I::Share, I::Run, I::Log, I::Info}},
  };
  for (const Row& row : table) {
    for (const ToolbarItem item : {I::New, I::Mode, I::Filter, I::Share, I::Run, I::Log, I::Info}) {
      Context context = allowing(C::Edit);
      row.change(context);
      const bool isListed = std::find(row.enabled.begin(), row.enabled.end(), item) != row.enabled.end();
      EXPECT_EQ(isEnabled(item, context), isListed) << row.condition << ": item " << static_cast<int>(item);
    }
  }
}

}  // namespace
}  // namespace mirvel
