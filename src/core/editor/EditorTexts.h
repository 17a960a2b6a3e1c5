#pragma once

#include <cstdint>
#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of a job's details and their editor.
class EditorTexts : public Texts {
 public:
  using Texts::Texts;

  std::string actions() const { return text("Actions"); }
  std::string add() const { return text("Add"); }
  std::string addRule() const { return text("Add Rule"); }
  std::string alsoUseFor(const std::string& key) const { return format("Also Use for %@", {key}); }
  std::string anotherProgramChangedTheFile() const {
    return text(
        "Another program changed the job’s file after you opened it. Compare the two versions, or choose the one to "
        "keep.");
  }
  std::string aRowHasNoName() const { return text("A row has no name"); }
  std::string atLogin() const { return text("At login"); }
  std::string atSystemStart() const { return text("When the system starts"); }
  std::string cantBeOpened(const std::string& path) const { return format("“%@” can’t be opened", {path}); }
  std::string chooseIcon() const { return text("Choose Icon…"); }
  std::string clients() const { return text("Clients"); }
  std::string compare() const { return text("Compare"); }
  std::string continueEditing() const { return text("Continue Editing"); }
  std::string createFolder() const { return text("Create Folder"); }
  std::string deprecated() const { return text("Deprecated"); }
  std::string details() const { return text("Details"); }
  std::string done() const { return text("Done"); }
  std::string edit() const { return text("Edit"); }
  std::string editScript() const { return text("Edit Script…"); }
  std::string findAKey() const { return text("Find a Key"); }
  std::string errors(std::int64_t count) const {
    return count == 1 ? text("1 error") : format("%@ errors", {int_(count)});
  }
  std::string enterAnOctalNumber() const { return text("Enter an octal number, such as 022."); }
  std::string execute() const { return text("Execute"); }
  std::string fieldCantBeSaved(const std::string& key) const { return format("“%@” can’t be saved", {key}); }
  std::string group() const { return text("Group"); }
  std::string hasNoValue(const std::string& name) const { return format("“%@” has no value", {name}); }
  std::string help() const { return text("Help"); }
  std::string hide() const { return text("Hide"); }
  std::string icon() const { return text("Icon"); }
  std::string identifier() const { return text("Identifier"); }
  std::string isNoWholeNumber(const std::string& name) const {
    return format("The value of “%@” isn’t a whole number", {name});
  }
  std::string itDoesntExist() const { return text("It doesn’t exist."); }
  std::string keepMine() const { return text("Keep Mine"); }
  std::string limit() const { return text("Limit"); }
  std::string limits() const { return text("Limits"); }
  std::string lineIsNoVariable(const std::string& line) const {
    return format("Line %@ isn’t of the form NAME=value", {line});
  }
  std::string mirvelQuitBeforeYouSavedThem() const {
    return text("Mirvel quit before you saved them. They aren’t in the job’s file yet.");
  }
  std::string miscellaneous() const { return text("Miscellaneous"); }
  std::string month() const { return text("Month"); }
  std::string moreThanOneRowIsCalled(const std::string& name) const {
    return format("More than one row is called “%@”", {name});
  }
  std::string mountingLogicalVolume() const { return text("When a volume is mounted"); }
  std::string nobody() const { return text("Nobody, since nothing is loaded from this folder"); }
  std::string noKeyIsCalledThat() const { return text("No Matching Keys"); }
  std::string newFilesAndFolders(const std::string& file, const std::string& folder) const {
    return format("New files: %@\nNew folders: %@", {file, folder});
  }
  std::string noProgramOpensIt() const { return text("No program for files of this type was found."); }
  std::string noSelection() const { return text("No Selection"); }
  std::string notes() const { return text("Notes"); }
  std::string notFound(const std::string& files) const { return format("Not found: %@", {files}); }
  std::string nothingWasPasted() const { return text("Nothing was pasted."); }
  std::string noValue() const { return text("No Value"); }
  std::string open() const { return text("Open"); }
  std::string number() const { return text("Number"); }
  std::string others() const { return text("Others"); }
  std::string path() const { return text("Path"); }
  std::string paths() const { return text("Paths"); }
  std::string read() const { return text("Read"); }
  std::string problems() const { return text("Problems"); }
  std::string removeIcon() const { return text("Remove Icon"); }
  std::string removeKey(const std::string& key) const { return format("Remove “%@”", {key}); }
  std::string removeRule() const { return text("Remove Rule"); }
  std::string showValues() const { return text("Show Values"); }
  std::string test() const { return text("Test"); }
  std::string theFileHasChanged(const std::string& name) const {
    return format("The file of “%@” has changed", {name});
  }
  std::string theFolderCouldntBeCreated() const { return text("The folder couldn’t be created"); }
  std::string theIconCouldntBeSaved() const { return text("The icon couldn’t be saved"); }
  std::string theJobHasChangedSinceItWasChecked() const {
    return text("The job has changed since it was checked, or is being saved.");
  }
  std::string theJobIsNotListed() const {
    return text(
        "The job’s file exists, but the job isn’t in the list. Your changes are kept until it is listed again.");
  }
  std::string theJobsFileIsGone(const std::string& folder) const {
    return format("The job’s file no longer exists. A file with your changes is now in the folder “%@”.", {folder});
  }
  std::string theNameContains(const std::string& name, const std::string& character) const {
    return format("The name “%@” contains “%@”", {name, character});
  }
  std::string thePictureCouldntBeRead() const { return text("The picture couldn’t be read"); }
  std::string theProblemCouldntBeResolved() const { return text("The problem couldn’t be resolved"); }
  std::string time() const { return text("Time"); }
  std::string unit() const { return text("Unit"); }
  std::string unknown() const { return text("Unknown"); }
  std::string unsavedChangesWereKept(const std::string& name) const {
    return format("Your unsaved changes to “%@” were kept", {name});
  }
  std::string user() const { return text("User"); }
  std::string useTheirs() const { return text("Use Theirs"); }
  std::string value() const { return text("Value"); }
  std::string versionOnDisk() const { return text("Version on Disk"); }
  std::string warnings(std::int64_t count) const {
    return count == 1 ? text("1 warning") : format("%@ warnings", {int_(count)});
  }
  std::string whenAClientAsks() const { return text("When one of its clients requests it"); }
  std::string withheld() const { return text("Withheld"); }
  std::string write() const { return text("Write"); }
  std::string yourVersion() const { return text("Your Version"); }
};

}  // namespace mirvel
