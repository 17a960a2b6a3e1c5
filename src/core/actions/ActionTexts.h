#pragma once

#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of saving, deleting and testing jobs, and of what the helpers answer.
class ActionTexts : public Texts {
 public:
  using Texts::Texts;

  std::string aFileWithThisNameExists() const {
    return text("A file with this name already exists. Choose another name and try again.");
  }
  std::string anUnknownErrorOccurredWhenFetchingTheLog() const {
    return text("An unknown error occurred while fetching the log");
  }
  std::string areYouSureYouWantToDelete(const std::string& name) const {
    return format("Are you sure you want to delete “%@”?", {name});
  }
  std::string askAnAdministrator() const {
    return text(
        "The password was wrong, or your account isn’t allowed to administer this computer. Try again, or ask an "
        "administrator.");
  }
  std::string cannotAuthenticate() const { return text("Authentication failed"); }
  std::string checkTheContentsOfTheJobFile() const { return text("Check the contents of the job file."); }
  std::string checkWhoMayChangeTheFile() const {
    return text("Check who owns the file and its folder, and who may change them.");
  }
  std::string couldNotEstablishCommunicationWithHelperTool() const {
    return text("Couldn’t communicate with the helper tool");
  }
  std::string couldntBeDeleted(const std::string& file) const { return format("“%@” couldn’t be deleted", {file}); }
  std::string couldntBeRead(const std::string& file) const { return format("“%@” couldn’t be read", {file}); }
  std::string couldntBeWritten(const std::string& file) const { return format("“%@” couldn’t be written", {file}); }
  std::string deleteAnyway() const { return text("Delete Anyway"); }
  std::string installPkexec() const {
    return text(
        "The program pkexec, which Mirvel uses to ask for your password, is missing. Install the package “pkexec” or "
        "“policykit-1” and try again.");
  }
  std::string itIsTooLargeForAJobFile() const { return text("It’s too large for a job file."); }
  std::string jobHostKeepsEnding() const { return text("mirvel-host keeps ending unexpectedly"); }
  std::string labelIsInUse(const std::string& label) const {
    return format("Another job already has the label “%@”", {label});
  }
  std::string makeSureThatOnlyYouCanChangeTheFile() const {
    return text("Make sure that only you can change the file and its folder, and try again.");
  }
  std::string onlyOneOfTheTwoCanBeLoaded(const std::string& path) const {
    return format(
        "It is in the file “%@”. Only one of the two jobs can be loaded. Give this one another label, or save it "
        "disabled.",
        {path});
  }
  std::string saveDisabled() const { return text("Save Disabled"); }
  std::string saveOrDiscardFirst() const {
    return text("Save or discard your changes first, or wait until they are saved. Then try again.");
  }
  std::string saveWithoutComments() const { return text("Save Without Comments"); }
  std::string savingRemovesComments(const std::string& name) const {
    return format("Saving will remove the comments from the file of “%@”", {name});
  }
  std::string startAnAuthenticationAgent() const {
    return text(
        "No program that can ask for your password is running. Start the polkit authentication agent of your desktop, "
        "or install one, such as “lxpolkit” or “mate-polkit”, and try again.");
  }
  std::string startPolkit() const {
    return text(
        "The system’s polkit service, which decides who may administer this computer, can’t be reached. Make sure that "
        "the package “polkitd” is installed and its service is running, and try again.");
  }
  std::string theDiskCantBeWritten() const { return text("The disk is read-only. Make it writable and try again."); }
  std::string theDiskIsFull() const { return text("The disk is full. Free up some space and try again."); }
  std::string theDiskReportedAnError() const {
    return text("The disk reported an error. Make sure that it works, and try again.");
  }
  std::string theFileOrItsFolderIsMissing() const { return text("The file or its folder doesn’t exist."); }
  std::string theFileWasSaved() const { return text("The file was saved."); }
  std::string theFileWithItsCommentsIsKept(const std::string& folder) const {
    return format("A copy of the file as it is now will be kept in the folder “%@”.", {folder});
  }
  std::string theItemCouldntBeAddedOrRemovedBecauseOfAnUnknownError() const {
    return text("The item couldn’t be added or removed because of an unknown error");
  }
  std::string theJobCouldntBeLoaded(const std::string& file) const {
    return format("The job in “%@” couldn’t be loaded", {file});
  }
  std::string theJobCouldntBeStopped(const std::string& file) const {
    return format("The job in “%@” couldn’t be stopped", {file});
  }
  std::string theJobCouldntBeStartedOrStopped(const std::string& file) const {
    return format("The job in “%@” couldn’t be started or stopped", {file});
  }
  std::string theJobIsntLoaded() const { return text("The job isn’t loaded. Save it to load it."); }
  std::string theNameIsTooLong() const { return text("The name is too long. Choose a shorter one and try again."); }
  std::string theTestCouldntBeRun() const { return text("The test couldn’t be run"); }
  std::string waitUntilTheJobHasEnded() const {
    return text("Wait until the job has ended, or end its process, and try again.");
  }
  std::string youCanRestoreItUntil(const std::string& until) const {
    return format("You can restore it until %@ with “Restore Deleted” in the File menu.", {until});
  }
  std::string youCantRestoreItLater(const std::string& name) const {
    return format("If you delete “%@” now, you can’t restore it later", {name});
  }
  std::string youCantUndoThisAction() const { return text("You can’t undo this action."); }
};

}  // namespace mirvel
