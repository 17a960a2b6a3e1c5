#include "core/mainwindow/Command.h"

#include <cstddef>
#include <iterator>

#include "core/actions/JobDeletion.h"
#include "core/base/Const.h"
#include "core/editor/JobProblems.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/mainwindow/WindowContext.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Fetcher.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

namespace {

using Condition = bool (*)(const CommandContext& context);

/// How a command behaves.
struct Row {
  Command command;
  Condition isEnabled;
  void (*perform)(const WindowContext& context) = nullptr;  ///< null for submenus
  bool (*isOffered)(const Shell& shell) = nullptr;          ///< null: always
  Condition isOn = nullptr;                                 ///< null: never has a check mark
  bool isIndependent = false;  ///< affects neither jobs nor modes, so that not even a sheet disables it
};

bool always(const CommandContext& /*context*/) {
  return true;
}

bool hasNoEdits(const CommandContext& context) {
  return !context.hasUnsavedChanges;
}

bool isSelected(const CommandContext& context) {
  return context.selected.has_value();
}

bool isLaunchdSelected(const CommandContext& context) {
  return context.selected && context.selected->isLaunchd();
}

bool isLoadableSelected(const CommandContext& context) {
  return context.selected && context.selected->canBeLoaded();
}

/// A job of launchd; a job of the system counts only if the user has allowed editing them.
bool isChangeableSelected(const CommandContext& context) {
  return context.selected && context.selected->isEditable(context.editsSystemJobs);
}

bool canEdit(const CommandContext& context) {
  return isChangeableSelected(context) && context.detailTab == DetailTab::LaunchdDisplay;
}

bool canSave(const CommandContext& context) {
  return context.isScriptInFront ||
         (isChangeableSelected(context) && context.detailTab == DetailTab::LaunchdEdit && !context.isSaving);
}

/// The end of a save replaces the record, and a revision that was chosen meanwhile would be lost.
bool canRevert(const CommandContext& context) {
  return hasNoEdits(context) && !context.isSaving && isChangeableSelected(context) && context.hasRevisions;
}

bool canDuplicate(const CommandContext& context) {
  return hasNoEdits(context) && isChangeableSelected(context);
}

bool canExport(const CommandContext& context) {
  return hasNoEdits(context) && isLaunchdSelected(context);
}

bool canDelete(const CommandContext& context) {
  return context.selected && context.canDeleteSelected;
}

/// The target path of a job that is being saved still looks free.
bool canRestoreDeleted(const CommandContext& context) {
  return hasNoEdits(context) && !context.isSaving;
}

bool isEditorOffered(const Shell& shell) {
  return shell.edit != nullptr;
}

void save(const WindowContext& context) {
  if (context.shell.saveScript) return context.shell.saveScript();
  if (!context.selection.launchd()) return context.platform.interface.saveError();
  context.shell.edit->save();
}

void refresh(const WindowContext& context) {
  if (context.shell.emptyIconCache) context.shell.emptyIconCache();  // a scan alone would keep the cached icons
  context.fetcher.fetchJobs();
}

void mailSupport(const WindowContext& context) {
  context.platform.workspace.openAddress("mailto:" + std::string(Const::supportMail));
}

void openSite(const WindowContext& context) {
  context.platform.workspace.openAddress(std::string(Const::siteURL));
}

void openHelp(const WindowContext& context) {
  context.shell.showHelp({});
}

template <Sheet sheet>
constexpr Row sheetRow(Command command, Condition isEnabled) {
  return {command, isEnabled, [](const WindowContext& context) { context.shell.sheets.at(sheet)(); },
          [](const Shell& shell) { return shell.sheets.contains(sheet); }};
}

template <RunOrder order>
constexpr Row orderRow(Command command) {
  return {.command = command,
          .isEnabled =
              [](const CommandContext& context) { return context.offers(order) && context.obstacle(order).empty(); },
          .perform = [](const WindowContext& context) { context.control.give(order, context.selection.job()); }};
}

template <JobSubset subset>
constexpr Row subsetRow(Command command, Condition isEnabled) {
  return {.command = command,
          .isEnabled = isEnabled,
          .perform =
              [](const WindowContext& context) {
                const bool isOn = context.currentMode.subset() == subset;
                context.currentMode.setSubset(context.catalogue.jobs(),
                                              isOn ? std::nullopt : std::optional<JobSubset>(subset));
              },
          .isOn = [](const CommandContext& context) { return context.subset == subset; }};
}

template <Mode mode>
constexpr Row modeRow(Command command) {
  return {.command = command,
          .isEnabled = [](const CommandContext& context) { return context.mode == mode || hasNoEdits(context); },
          .perform = [](const WindowContext& context) { context.mainWindow.switchMode(mode); },
          .isOn = [](const CommandContext& context) { return context.mode == mode; }};
}

/// Calls a method of the main window, if there is one.
template <void (MainWindowType::*method)()>
void callWindow(const WindowContext& context) {
  if (MainWindowType* const window = context.shell.mainWindow) (window->*method)();
}

/// In the order of the enumerators.
constexpr Row rows[] = {
    sheetRow<Sheet::New>(Command::New, hasNoEdits),
    {Command::EditScript, always, [](const WindowContext& context) { context.shell.chooseScript(); },
     [](const Shell& shell) { return static_cast<bool>(shell.chooseScript); }},
    {Command::Edit, canEdit,
     [](const WindowContext& context) {
       if (context.shell.detail) context.shell.detail->showEdit();
     },
     isEditorOffered},
    {Command::Save, canSave, save, [](const Shell& shell) { return shell.edit || shell.saveScript; }},
    {Command::Revert, canRevert, nullptr, isEditorOffered},
    sheetRow<Sheet::Duplicate>(Command::Duplicate, canDuplicate),
    {Command::Import, hasNoEdits, [](const WindowContext& context) { context.shell.importJob(); },
     [](const Shell& shell) { return static_cast<bool>(shell.importJob); }},
    {Command::Export, canExport, [](const WindowContext& context) { context.shell.exportJob(); },
     [](const Shell& shell) { return static_cast<bool>(shell.exportJob); }},
    {Command::Delete, canDelete,
     [](const WindowContext& context) { context.deletion.confirm(context.selection.job()); }},
    sheetRow<Sheet::RestoreDeleted>(Command::RestoreDeleted, canRestoreDeleted),
    {Command::Share, isSelected},
    orderRow<RunOrder::RunNow>(Command::RunNow),
    orderRow<RunOrder::Stop>(Command::Stop),
    orderRow<RunOrder::Restart>(Command::Restart),
    orderRow<RunOrder::Disable>(Command::Disable),
    sheetRow<Sheet::Test>(Command::Test, isLaunchdSelected),
    sheetRow<Sheet::Log>(Command::Log, isLoadableSelected),
    sheetRow<Sheet::Info>(Command::Info, isSelected),
    {Command::RevealInFinder, isSelected,
     [](const WindowContext& context) { context.mainWindow.revealInFinder(*context.selection.job()); }},
    {Command::Refresh, hasNoEdits, refresh},

    {Command::Filter, [](const CommandContext& context) { return context.hasFilterField; },
     callWindow<&MainWindowType::focusOnFilter>},
    {Command::Preferences, always, [](const WindowContext& context) { context.shell.showPreferences(); },
     [](const Shell& shell) { return static_cast<bool>(shell.showPreferences); }},

    modeRow<Mode::Grid>(Command::Grid),
    modeRow<Mode::Tree>(Command::Tree),
    modeRow<Mode::List>(Command::List),
    modeRow<Mode::Timeline>(Command::Timeline),
    {.command = Command::System,
     .isEnabled = hasNoEdits,
     .perform = [](const WindowContext& context) { context.mainWindow.toggleSystemJobs(); },
     .isOn = [](const CommandContext& context) { return context.showsSystemJobs; }},
    subsetRow<JobSubset::WithProblems>(
        Command::OnlyProblems, [](const CommandContext& context) { return context.checksJobs && hasNoEdits(context); }),
    subsetRow<JobSubset::Failed>(Command::OnlyFailed, hasNoEdits),
    subsetRow<JobSubset::Running>(Command::OnlyRunning, hasNoEdits),
    {.command = Command::CheckJobs,
     .isEnabled = always,
     .perform = [](const WindowContext& context) { context.problems.setOn(!context.problems.isOn()); },
     .isOn = [](const CommandContext& context) { return context.checksJobs; }},
    {Command::Columns, [](const CommandContext& context) { return context.mode == Mode::List; }},
    {.command = Command::TitleBar,
     .isEnabled = always,
     .perform = [](const WindowContext& context) { context.mainWindow.toggleTitleBar(); },
     .isOn = [](const CommandContext& context) { return context.showsTitleBar; }},
    {.command = Command::FullScreen,
     .isEnabled = always,
     .perform = callWindow<&MainWindowType::toggleFullScreen>,
     .isOn = [](const CommandContext& context) { return context.isFullScreen; },
     .isIndependent = true},

    {.command = Command::Help,
     .isEnabled = always,
     .perform = openHelp,
     .isOffered = [](const Shell& shell) { return static_cast<bool>(shell.showHelp); },
     .isIndependent = true},
    {.command = Command::ManLaunchdplist,
     .isEnabled = always,
     .perform =
         [](const WindowContext& context) {
           context.platform.workspace.openAddress(std::string(Const::launchdManual));
         },
     .isIndependent = true},
    {.command = Command::Site, .isEnabled = always, .perform = openSite, .isIndependent = true},
    {.command = Command::MailSupport, .isEnabled = always, .perform = mailSupport, .isIndependent = true},
    {.command = Command::CheckForUpdates,
     .isEnabled = always,
     .perform = [](const WindowContext& context) { context.shell.checkForUpdate(true); },
     .isOffered = [](const Shell& shell) { return static_cast<bool>(shell.checkForUpdate); },
     .isIndependent = true},
    {.command = Command::About,
     .isEnabled = always,
     .perform = callWindow<&MainWindowType::showAbout>,
     .isIndependent = true},
};

constexpr bool areInOrder() {
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    if (rows[i].command != static_cast<Command>(i)) return false;
  }
  return rows[std::size(rows) - 1].command == Command::About;
}
static_assert(areInOrder());

const Row& rowOf(Command command) {
  return rows[static_cast<std::size_t>(command)];
}

/// None for other commands than those about runs.
std::optional<RunOrder> orderOf(Command command) {
  switch (command) {
    case Command::RunNow:
      return RunOrder::RunNow;
    case Command::Stop:
      return RunOrder::Stop;
    case Command::Restart:
      return RunOrder::Restart;
    case Command::Disable:
      return RunOrder::Disable;
    default:
      return std::nullopt;
  }
}

}  // namespace

bool isShown(Command command, const CommandContext& context) {
  const auto order = orderOf(command);
  if (!order) return true;
  const bool isUsual = *order == RunOrder::RunNow || *order == RunOrder::Stop;
  return context.offers(*order) || (isUsual && !context.offers(RunOrder::Restart));
}

std::string whyDisabled(Command command, const CommandContext& context) {
  const auto order = orderOf(command);
  return order && context.offers(*order) ? context.obstacle(*order) : std::string();
}

Command runCommand(const CommandContext& context) {
  const auto isPossible = [&](RunOrder order) { return context.offers(order) && context.obstacle(order).empty(); };
  if (isPossible(RunOrder::Stop)) return Command::Stop;
  return isPossible(RunOrder::Restart) ? Command::Restart : Command::RunNow;
}

bool isOffered(Command command, const Shell& shell) {
  const auto offered = rowOf(command).isOffered;
  return !offered || offered(shell);
}

bool isEnabled(Command command, const CommandContext& context) {
  const Row& row = rowOf(command);
  return (row.isIndependent || !context.hasSheet) && row.isEnabled(context);
}

std::optional<bool> isOn(Command command, const CommandContext& context) {
  const Condition isOn = rowOf(command).isOn;
  return isOn ? std::optional(isOn(context)) : std::nullopt;
}

void perform(Command command, const WindowContext& context) {
  if (const auto perform = rowOf(command).perform) perform(context);
}

bool isEnabled(ToolbarItem item, const CommandContext& context) {
  if (context.isSaving) return false;
  switch (item) {
    case ToolbarItem::New:
    case ToolbarItem::Mode:
    case ToolbarItem::Filter:
      return hasNoEdits(context);
    case ToolbarItem::Share:
    case ToolbarItem::Info:
      return isSelected(context);
    case ToolbarItem::Run:
      return isEnabled(runCommand(context), context);
    case ToolbarItem::Test:
      return isLaunchdSelected(context) && context.isSelectedNamed;
    case ToolbarItem::Log:
      return isLoadableSelected(context) && context.isSelectedNamed;
  }
  return false;
}

}  // namespace mirvel
