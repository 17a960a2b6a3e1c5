#pragma once

#include <optional>

#include "core/catalogue/Kind.h"
#include "core/session/DetailType.h"
#include "core/session/Mode.h"

namespace mirvel {

/// The commands of the menus.
enum class Command {
  new_,
  edit,
  save,
  revert,  ///< a submenu
  duplicate,
  importAction,
  export_,
  delete_,
  restoreDeleted,
  share,  ///< a submenu
  test,
  log,
  info,
  revealInFinder,
  refresh,

  filter,

  grid,
  tree,
  list,
  timeline,
  system,
  columns,  ///< a submenu
  titleBar,
  fullScreen,

  help,
  manLaunchdplist,
  site,
  mailSupport,
  checkForUpdates,
  about,
};

/// The controls of the toolbar.
enum class ToolbarItem { new_, mode, filter, share, log, info };

/// All that the enabling of commands depends on.
struct CommandContext {
  std::optional<Kind> selected = {};  ///< kind of the selected job
  bool isSelectedNamed = false;
  bool canDeleteSelected = false;
  bool hasRevisions = false;  ///< of the selected job
  bool hasUnsavedChanges = false;
  bool isSaving = false;
  bool hasSheet = false;         ///< on the main window
  bool isScriptInFront = false;  ///< the key window edits a script
  bool hasFilterField = false;   ///< in a visible toolbar
  bool editsSystemJobs = false;
  bool showsSystemJobs = false;
  bool showsTitleBar = false;
  bool isFullScreen = false;
  DetailTab detailTab = DetailTab::NoSelection;
  Mode mode = Mode::Grid;
};

/// Whether the command can be chosen.
bool isEnabled(Command command, const CommandContext& context);
/// Whether a tick stands beside it; absent for commands that never have one.
std::optional<bool> isOn(Command command, const CommandContext& context);
bool isEnabled(ToolbarItem item, const CommandContext& context);

/// The mode that a command of the View menu switches to.
std::optional<Mode> modeOf(Command command);

}  // namespace mirvel
