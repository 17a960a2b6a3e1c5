#include "core/mainwindow/Command.h"

namespace mirvel {

namespace {

bool isLaunchdSelected(const CommandContext& context) {
  return context.selected && context.selected->isLaunchd();
}

/// A launchd job, and of the system only if the user edits these.
bool isChangeableSelected(const CommandContext& context) {
  return context.selected && context.selected->isEditable(context.editsSystemJobs);
}

}  // namespace

std::optional<Mode> modeOf(Command command) {
  switch (command) {
    case Command::grid:
      return Mode::Grid;
    case Command::tree:
      return Mode::Tree;
    case Command::list:
      return Mode::List;
    case Command::timeline:
      return Mode::Timeline;
    default:
      return std::nullopt;
  }
}

bool isEnabled(Command command, const CommandContext& context) {
  const bool hasUnsavedChanges = context.hasUnsavedChanges;
  switch (command) {
    case Command::help:
    case Command::manLaunchdplist:
    case Command::site:
    case Command::mailSupport:
    case Command::checkForUpdates:
    case Command::about:
    case Command::fullScreen:
      return true;
    default:
      if (context.hasSheet) return false;
  }
  switch (command) {
    case Command::new_:
    case Command::refresh:
    case Command::importAction:
    case Command::system:
      return !hasUnsavedChanges;
    case Command::restoreDeleted:
      return !hasUnsavedChanges && !context.isSaving;  // the place of a job that is being written looks free
    case Command::revealInFinder:
    case Command::info:
    case Command::share:
      return context.selected.has_value();
    case Command::save:
      return context.isScriptInFront ||
             (isChangeableSelected(context) && context.detailTab == DetailTab::LaunchdEdit && !context.isSaving);
    case Command::revert:
      return !hasUnsavedChanges && isChangeableSelected(context) && context.hasRevisions;
    case Command::delete_:
      return context.selected && context.canDeleteSelected;
    case Command::duplicate:
      return !hasUnsavedChanges && isChangeableSelected(context);
    case Command::export_:
      return !hasUnsavedChanges && isLaunchdSelected(context);
    case Command::test:
    case Command::log:
      return isLaunchdSelected(context);
    case Command::edit:
      return isChangeableSelected(context) && context.detailTab == DetailTab::LaunchdDisplay;
    case Command::filter:
      return context.hasFilterField;
    case Command::grid:
    case Command::tree:
    case Command::list:
    case Command::timeline:
      return modeOf(command) == context.mode || !hasUnsavedChanges;
    case Command::columns:
      return context.mode == Mode::List;
    default:
      return true;
  }
}

std::optional<bool> isOn(Command command, const CommandContext& context) {
  if (const auto mode = modeOf(command)) return mode == context.mode;
  if (command == Command::system) return context.showsSystemJobs;
  if (command == Command::titleBar) return context.showsTitleBar;
  if (command == Command::fullScreen) return context.isFullScreen;
  return std::nullopt;
}

bool isEnabled(ToolbarItem item, const CommandContext& context) {
  if (context.isSaving) return false;
  switch (item) {
    case ToolbarItem::new_:
    case ToolbarItem::mode:
    case ToolbarItem::filter:
      return !context.hasUnsavedChanges;
    case ToolbarItem::share:
    case ToolbarItem::info:
      return context.selected.has_value();
    case ToolbarItem::log:
      return isLaunchdSelected(context) && context.isSelectedNamed;
  }
  return false;
}

}  // namespace mirvel
