#pragma once

#include <optional>

#include "core/catalogue/Kind.h"
#include "core/session/DetailType.h"
#include "core/session/Mode.h"

namespace mirvel {

/// The commands of the menus. Those marked as submenus have no action of their own.
enum class Command {
  New,
  Edit,
  Save,
  Revert,  ///< a submenu
  Duplicate,
  Import,
  Export,
  Delete,
  RestoreDeleted,
  Share,  ///< a submenu
  Test,
  Log,
  Info,
  RevealInFinder,
  Refresh,

  Filter,

  Grid,
  Tree,
  List,
  Timeline,
  System,
  Columns,  ///< a submenu
  TitleBar,
  FullScreen,

  Help,
  ManLaunchdplist,
  Site,
  MailSupport,
  CheckForUpdates,
  About,
};

/// The controls of the toolbar.
enum class ToolbarItem { New, Mode, Filter, Share, Log, Info };

/// The state of the program on which the availability of commands depends.
struct CommandContext {
  std::optional<Kind> selected = {};  ///< kind of the selected job; none if no job is shown
  bool isSelectedNamed = false;       ///< its name isn't empty
  bool canDeleteSelected = false;
  bool hasRevisions = false;  ///< of the selected job
  bool hasUnsavedChanges = false;
  bool isSaving = false;
  bool hasSheet = false;         ///< the main window shows a sheet
  bool isScriptInFront = false;  ///< the key window edits a script
  bool hasFilterField = false;   ///< in a visible toolbar
  bool editsSystemJobs = false;
  bool showsSystemJobs = false;
  bool showsTitleBar = false;
  bool isFullScreen = false;
  DetailTab detailTab = DetailTab::noSelection;
  Mode mode = Mode::grid;
};

/// Whether the command can be chosen. While a sheet is shown, only the Help menu and full screen are available. Doesn't
/// consider whether the command is offered at all (see `MenuController::isOffered`).
bool isEnabled(Command command, const CommandContext& context);
/// Whether the menu item has a check mark; none for commands that never have one.
std::optional<bool> isOn(Command command, const CommandContext& context);
/// Whether the control is enabled. All are disabled while a job is being saved.
bool isEnabled(ToolbarItem item, const CommandContext& context);

/// The mode that a command of the View menu switches to; none for other commands.
std::optional<Mode> modeOf(Command command);

}  // namespace mirvel
