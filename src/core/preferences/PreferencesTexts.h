#pragma once

#include <cstdint>
#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of the preferences window.
class PreferencesTexts : public Texts {
 public:
  using Texts::Texts;

  std::string preferences() const { return text("Preferences"); }
  std::string help() const { return text("Help"); }

  // General
  std::string general() const { return text("General"); }
  std::string newJobs() const { return text("New Jobs"); }
  std::string repairCommands() const { return text("Repair commands while they are typed"); }
  std::string repairCommandsHint() const {
    return text("Completes “~” and the names of programs, and offers a script where a command needs a shell.");
  }
  std::string writePATH() const { return text("Write the variable PATH into new jobs"); }
  std::string writePATHHint() const {
    return text("Then scripts find programs in the usual folders. launchd’s own PATH has only those of the system.");
  }
  std::string jobs() const { return text("Jobs"); }
  std::string checkJobs() const { return text("Check jobs for problems"); }
  std::string checkJobsHint() const { return text("Also while a job is edited."); }
  std::string markMissingFiles() const { return text("Mark commands whose files don’t exist"); }
  std::string window() const { return text("Windows"); }
  std::string showTitleBar() const { return text("Show the name of the selected job in the title bar"); }
  std::string showLineNumbers() const { return text("Show line numbers beside scripts"); }
  std::string updates() const { return text("Updates"); }
  std::string checkForUpdates() const { return text("Check for a new version when Mirvel starts"); }
  std::string revisions() const { return text("Revisions"); }
  std::string keepForEachJob() const { return text("earlier versions are kept for each job and script"); }
  std::string deleteRevisions(std::int64_t revisions, std::int64_t files) const {
    if (revisions == 1) return text("1 earlier version of a job or script will be deleted");
    if (files == 1) return format("%@ earlier versions of a job or script will be deleted", {int_(revisions)});
    return format("%1$@ earlier versions of %2$@ jobs and scripts will be deleted", {int_(revisions), int_(files)});
  }
  std::string onlyTheNewestAreKept(std::int64_t number) const {
    if (number == 0) return text("No versions will be kept. You can’t undo this action.");
    if (number == 1)
      return text("Only the newest version of each job and script will be kept. You can’t undo this action.");
    return format("Only the newest %@ versions of each job and script will be kept. You can’t undo this action.",
                  {int_(number)});
  }
  std::string numberCantBeReduced() const {
    return text("The number can’t be reduced, because the earlier versions can’t be read");
  }
  std::string reset() const { return text("Reset"); }
  std::string askEverythingAgain() const { return text("Ask All Questions Again"); }
  std::string resetAll() const { return text("Reset All Settings…"); }
  std::string resetAllQuestion() const { return text("Do you want to reset all settings?"); }
  std::string resetAllConsequence() const {
    return text(
        "All settings of Mirvel get their initial values, including the list of extra folders and the sizes of "
        "windows. Jobs, notes, earlier versions and the exceptions of notifications are kept.");
  }
  std::string resetAllButton() const { return text("Reset All Settings"); }

  // Advanced
  std::string advanced() const { return text("Advanced"); }
  std::string internalHelperTools() const { return text("Internal Helpers"); }
  std::string showInternalHelpers() const { return text("Show Mirvel’s own helpers among the jobs"); }
  std::string uninstall() const { return text("Uninstall…"); }
  std::string addTheFoldersFromWhereYourJobsAreLinked() const {
    return text("Add the folders that links in your job folders lead to");
  }
  std::string numberOfFolders(std::int64_t number) const {
    if (number == 0) return text("No extra folders");
    return number == 1 ? text("1 extra folder") : format("%@ extra folders", {int_(number)});
  }
  std::string systemJobs() const { return text("System Jobs"); }
  std::string showSystemJobs() const { return text("Show the jobs of the system"); }
  std::string editSystemJobs() const { return text("Allow changing the jobs of the system"); }
  std::string editSystemJobsWarning() const {
    return text(
        "Warning: changing or deleting a job that came with the system can keep the computer from working or from "
        "starting. Updates of the system may undo your changes.");
  }
  std::string editSystemJobsQuestion() const { return text("Do you want to allow changing the jobs of the system?"); }
  std::string allow() const { return text("Allow"); }

  // The sheet of folders
  std::string add() const { return text("Add…"); }
  std::string remove() const { return text("Remove"); }
  std::string done() const { return text("Done"); }
  std::string noFolders() const { return text("No Folders"); }
  std::string isntAbsolute() const { return text("not an absolute path"); }
  std::string doesntExist() const { return text("doesn’t exist, or its disk isn’t mounted"); }
  std::string doesntAnswer() const { return text("doesn’t answer"); }
  std::string isntAFolder() const { return text("not a folder"); }
  std::string cantBeRead(const std::string& reason) const { return format("can’t be read: %@", {reason}); }
  std::string folderWithProblem(const std::string& folder, const std::string& problem) const {
    return format("%1$@ (%2$@)", {folder, problem});
  }
  std::string folderCantBeAdded(const std::string& path) const { return format("“%@” can’t be added", {path}); }
  std::string itsPathIsntUTF8() const {
    return text("Its path isn’t valid UTF-8, so it can’t be stored. Rename the folder first.");
  }

  // Uninstalling
  std::string uninstallQuestion() const { return text("Do you want to uninstall Mirvel’s helpers?"); }
  std::string jobsWillStop(std::int64_t number) const {
    return number == 1 ? text("This job will be stopped") : format("These %@ jobs will be stopped", {int_(number)});
  }
  std::string ofRoot(const std::string& label) const { return format("%@ (root)", {label}); }
  std::string runningNow(const std::string& label) const { return format("%@, running now", {label}); }
  std::string andOthers(std::int64_t number) const {
    return number == 1 ? text("and 1 other") : format("and %@ others", {int_(number)});
  }
  std::string noJobsWillStop() const { return text("No loaded jobs are known, so nothing will be stopped."); }
  std::string launchdGoesOn() const { return text("The system runs the jobs itself, so none will be stopped."); }
  std::string jobsMayStop(const std::string& reason) const {
    return format("Jobs may be stopped, because not all states are known: %@", {reason});
  }
  std::string statesArentKnown(const std::string& reason) const {
    return format("Others may be stopped too, because not all states are known: %@", {reason});
  }
  std::string whatUninstallKeeps() const {
    return text(
        "Job files, logs and settings are kept. The helpers are installed again when you next save or run a job, or "
        "start Mirvel.");
  }
  std::string uninstallButton() const { return text("Uninstall"); }
  std::string waitingForSave() const { return text("Waiting until a job has been saved or deleted…"); }
  std::string uninstalling() const { return text("Uninstalling…"); }
  std::string uninstalled() const { return text("The helpers were uninstalled."); }
  std::string notUninstalled() const { return text("The helpers weren’t uninstalled."); }
  std::string uninstallFailed() const { return text("The helpers couldn’t be uninstalled"); }

  // Themes
  std::string themes() const { return text("Themes"); }
  std::string colorsOfScripts() const { return text("Colours of Scripts"); }
  std::string automatic() const { return text("Automatic"); }
  std::string light() const { return text("Light"); }
  std::string dark() const { return text("Dark"); }
  std::string highContrast() const { return text("High Contrast"); }
  std::string automaticHint() const { return text("Automatic follows the colours of the desktop."); }
  std::string preview() const { return text("Preview"); }
};

}  // namespace mirvel
