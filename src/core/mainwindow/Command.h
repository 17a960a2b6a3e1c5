#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "core/catalogue/Kind.h"
#include "core/runs/JobControl.h"
#include "core/session/CurrentMode.h"
#include "core/session/DetailType.h"
#include "core/session/Mode.h"

namespace mirvel {

struct Shell;
struct WindowContext;

/// The commands of the menus. Those marked as submenus have no action of their own.
enum class Command {
  // File
  New,             ///< opens the sheet for a new job
  EditScript,      ///< asks for a script, and opens it in a window
  Edit,            ///< shows the selected job in the editor
  Save,            ///< saves the edited job, or the script in the front window
  Revert,          ///< submenu: the revisions of the selected job
  Duplicate,       ///< opens the sheet that copies the selected job
  Import,          ///< asks for files, and opens the sheet that imports them
  Export,          ///< asks for a path, and writes the selected job there
  Delete,          ///< deletes the selected job after a question
  RestoreDeleted,  ///< opens the sheet of deleted jobs
  Share,           ///< submenu: the ways to share the selected job
  RunNow,          ///< starts the selected job
  Stop,            ///< ends its run
  Restart,         ///< ends its run and starts it again; in place of `Stop` for a job that would start again by itself
  Disable,         ///< saves that job as disabled
  Test,            ///< opens the sheet that runs the selected job once
  Log,             ///< opens the sheet with the log of the selected job
  Info,            ///< opens the sheet with information about the selected job
  RevealInFinder,  ///< shows the file of the selected job in the file manager
  Refresh,         ///< scans and reloads the icons

  // Edit
  Filter,       ///< moves the focus to the filter field
  Preferences,  ///< opens the window of the preferences

  // View
  Grid,  ///< switches to this mode, as do the following three
  Tree,
  List,
  Timeline,
  System,        ///< toggles whether jobs of the system are shown
  OnlyProblems,  ///< toggles whether only jobs with problems are shown
  OnlyFailed,    ///< toggles whether only jobs whose last run has failed are shown
  OnlyRunning,   ///< toggles whether only jobs that run are shown
  CheckJobs,     ///< toggles whether jobs are checked for problems
  Columns,       ///< submenu: the columns of list mode
  TitleBar,      ///< toggles whether the title bar shows the title
  FullScreen,    ///< toggles full screen

  // Help
  Help,             ///< opens the help pages
  ManLaunchdplist,  ///< opens the manual page of launchd.plist
  Site,             ///< opens the web site
  MailSupport,      ///< begins a mail to the authors
  CheckForUpdates,  ///< looks for a new version, and always shows the result
  About,            ///< shows the version and the licence
};

/// The controls of the toolbar.
enum class ToolbarItem { New, Mode, Filter, Share, Run, Test, Log, Info };

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
  std::optional<JobSubset> subset = {};  ///< of which only jobs are shown
  bool checksJobs = false;
  bool showsTitleBar = false;
  bool isFullScreen = false;
  DetailTab detailTab = DetailTab::NoSelection;
  Mode mode = Mode::Grid;
  /// By `RunOrder`: whether it is offered for the selected job, and why it can't be given now; empty if it can.
  std::array<bool, allRunOrders.size()> offersOrder = {};
  std::array<std::string, allRunOrders.size()> orderObstacles = {};

  bool offers(RunOrder order) const { return offersOrder.at(static_cast<std::size_t>(order)); }
  const std::string& obstacle(RunOrder order) const { return orderObstacles.at(static_cast<std::size_t>(order)); }
};

/// Whether the command exists at all. False while the component that carries it out isn't registered in the shell;
/// menus then hide the item instead of disabling it.
bool isOffered(Command command, const Shell& shell);
/// Whether the command has a place in menus for the selected job: `Stop` doesn't for one that has `Restart` instead.
bool isShown(Command command, const CommandContext& context);
/// Whether the command can be chosen. While a sheet is shown, only the Help menu and full screen are available. Doesn't
/// consider whether the command is offered.
bool isEnabled(Command command, const CommandContext& context);
/// Whether the menu item has a check mark; none for commands that never have one.
std::optional<bool> isOn(Command command, const CommandContext& context);
/// Why the command is disabled, as a sentence; empty if it isn't, or if the reason is obvious.
std::string whyDisabled(Command command, const CommandContext& context);
/// Carries out a command that is offered and enabled. Does nothing for submenus.
void perform(Command command, const WindowContext& context);
/// The command of the button that starts and stops the selected job.
Command runCommand(const CommandContext& context);
/// Whether the control is enabled. All are disabled while a job is being saved.
bool isEnabled(ToolbarItem item, const CommandContext& context);

}  // namespace mirvel
