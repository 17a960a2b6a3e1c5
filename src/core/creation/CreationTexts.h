#pragma once

#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of the sheets that make new jobs.
class CreationTexts : public Texts {
 public:
  using Texts::Texts;

  std::string anotherJobHasTheName(const std::string& name) const {
    return format("Another job is already called “%@”", {name});
  }
  std::string anotherJobHasTheNameIn(const std::string& path) const {
    return format(
        "It is in the file “%@”. Only one of two jobs with the same name can run. You can restore this one disabled.",
        {path});
  }
  std::string applicationHint() const { return text("An installed application, or any program file"); }
  std::string backup() const { return text("Backup"); }
  std::string backUpAFolder() const { return text("Back Up a Folder"); }
  std::string chooseOrWriteAScript() const { return text("Choose an existing script, or write a new one here."); }
  std::string chooseWhatYouWantToRun() const { return text("Choose what you want to run"); }
  std::string commandExample(const std::string& command) const { return format("For example: %@", {command}); }
  std::string commandHint() const { return text("A command line, as you would type it in a terminal"); }
  std::string copyOf(const std::string& name) const { return format("%@ copy", {name}); }
  std::string couldntOpenInThatFormat(const std::string& name) const {
    return format("The file “%@” couldn’t be opened because it isn’t in the correct format.", {name});
  }
  std::string deleted() const { return text("Deleted"); }
  std::string deletedJobsAreKept(std::int64_t days) const {
    return format("Mirvel keeps deleted jobs for %@ days.", {int_(days)});
  }
  std::string duplicate() const { return text("Duplicate"); }
  std::string file() const { return text("File"); }
  std::string folderWatch() const { return text("Folder Watch"); }
  std::string importString() const { return text("Import"); }
  std::string keepAProgramRunning() const { return text("Keep a Program Running"); }
  std::string keptUntil() const { return text("Kept Until"); }
  std::string next() const { return text("Next"); }
  std::string nextRunsTitle() const { return text("Next runs"); }
  std::string nightlyScript() const { return text("Nightly Script"); }
  std::string noDeletedJobs() const { return text("No Deleted Jobs"); }
  std::string numberOf(const std::string& number, const std::string& count) const {
    return format("%1$@ of %2$@", {number, count});
  }
  std::string orBeginWith() const { return text("Or begin with"); }
  std::string previous() const { return text("Previous"); }
  std::string program() const { return text("Program"); }
  std::string restore() const { return text("Restore"); }
  std::string restoreDeleted() const { return text("Restore Deleted"); }
  std::string restoreDisabled() const { return text("Restore Disabled"); }
  std::string restoredWithoutComments(const std::string& folder) const {
    return format(
        "The comments in its file can’t be restored. A copy of the original file will be kept in the folder “%@”.",
        {folder});
  }
  std::string runAScriptEveryNight() const { return text("Run a Script Every Night"); }
  std::string runsAsRoot(const std::string& name, const std::string& times) const {
    // translators: the second place is a list of times, such as "every day at 09:00 and at every login".
    return format("“%1$@” runs as root %2$@.", {name, times});
  }
  std::string runsAsYou(const std::string& name, const std::string& times) const {
    return format("“%1$@” runs as you %2$@.", {name, times});
  }
  std::string runsForEveryone(const std::string& name, const std::string& times) const {
    return format("“%1$@” runs for every logged-in user %2$@.", {name, times});
  }
  std::string saveTheScriptToContinue() const { return text("Save the script to continue."); }
  std::string script() const { return text("Script"); }
  std::string scriptHint() const { return text("An existing script, or one that you write now"); }
  std::string skip() const { return text("Skip"); }
  std::string watchAFolder() const { return text("Watch a Folder"); }
  std::string watchedFolder() const { return text("Watched folder"); }
  std::string what() const { return text("What"); }
};

}  // namespace mirvel
