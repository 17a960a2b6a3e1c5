#include "core/mainwindow/Command.h"

namespace mirvel {

namespace {

bool isLaunchdSelected(const CommandContext& context) {
  return context.selected && context.selected->isLaunchd();
}

/// A job of launchd; a job of the system counts only if the user has allowed editing them.
bool isChangeableSelected(const CommandContext& context) {
  return context.selected && context.selected->isEditable(context.editsSystemJobs);
}

/// Whether the command affects neither jobs nor modes, so that not even a sheet disables it.
bool isIndependent(Command command) {
  switch (command) {
    case Command::Help:
    case Command::ManLaunchdplist:
    case Command::Site:
    case Command::MailSupport:
    case Command::CheckForUpdates:
    case Command::About:
    case Command::FullScreen:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::optional<Mode> modeOf(Command command) {
  switch (command) {
    case Command::Grid:
      return Mode::Grid;
    case Command::Tree:
      return Mode::Tree;
    case Command::List:
      return Mode::List;
    case Command::Timeline:
      return Mode::Timeline;
    default:
      return std::nullopt;
  }
}

bool isEnabled(Command command, const CommandContext& context) {
  if (isIndependent(command)) return true;
  if (context.hasSheet) return false;
  const bool hasUnsavedChanges = context.hasUnsavedChanges;
  switch (command) {
    case Command::New:
    case Command::Refresh:
    case Command::Import:
    case Command::System:
      return !hasUnsavedChanges;
    case Command::RestoreDeleted:
      return !hasUnsavedChanges && !context.isSaving;  // the target path of a job that is being saved still looks free
    case Command::RevealInFinder:
    case Command::Info:
    case Command::Share:
      return context.selected.has_value();
    case Command::Save:
      return context.isScriptInFront ||
             (isChangeableSelected(context) && context.detailTab == DetailTab::LaunchdEdit && !context.isSaving);
    case Command::Revert:
      // The end of a save replaces the record, and a revision that was chosen meanwhile would be lost.
      return !hasUnsavedChanges && !context.isSaving && isChangeableSelected(context) && context.hasRevisions;
    case Command::Delete:
      return context.selected && context.canDeleteSelected;
    case Command::Duplicate:
      return !hasUnsavedChanges && isChangeableSelected(context);
    case Command::Export:
      return !hasUnsavedChanges && isLaunchdSelected(context);
    case Command::Test:
    case Command::Log:
      return isLaunchdSelected(context);
    case Command::Edit:
      return isChangeableSelected(context) && context.detailTab == DetailTab::LaunchdDisplay;
    case Command::Filter:
      return context.hasFilterField;
    case Command::Grid:
    case Command::Tree:
    case Command::List:
    case Command::Timeline:
      return modeOf(command) == context.mode || !hasUnsavedChanges;
    case Command::Columns:
      return context.mode == Mode::List;
    default:
      return true;
  }
}

std::optional<bool> isOn(Command command, const CommandContext& context) {
  if (const auto mode = modeOf(command)) return mode == context.mode;
  if (command == Command::System) return context.showsSystemJobs;
  if (command == Command::TitleBar) return context.showsTitleBar;
  if (command == Command::FullScreen) return context.isFullScreen;
  return std::nullopt;
}

bool isEnabled(ToolbarItem item, const CommandContext& context) {
  if (context.isSaving) return false;
  switch (item) {
    case ToolbarItem::New:
    case ToolbarItem::Mode:
    case ToolbarItem::Filter:
      return !context.hasUnsavedChanges;
    case ToolbarItem::Share:
    case ToolbarItem::Info:
      return context.selected.has_value();
    case ToolbarItem::Log:
      return isLaunchdSelected(context) && context.isSelectedNamed;
  }
  return false;
}

}  // namespace mirvel
