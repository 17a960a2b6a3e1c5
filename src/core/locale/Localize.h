#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/locale/MessageCatalog.h"
#include "core/process/Environment.h"

namespace mirvel {

/// All texts that the user reads, translated into the user's language, one member each. The source language is English:
/// the text in a member is what translators see, and the fallback where no translation exists. Buttons, menus and
/// titles use title case, messages sentence case. No member ends in a colon; callers append it.
///
/// Texts may be read from any thread, `int_` only from the main thread.
class Localize {
 public:
  class Lowercase;
  class Ellipsis;
  class MainMenu;

  /// Loads the translations from `<catalogues>/<language>/LC_MESSAGES/mirvel.mo`, trying first the language with the
  /// locale's region ("pt_BR"), then the language ("pt"). If neither exists, or a file is damaged, texts are English.
  /// Numbers follow `locale`, dates and times `timeLocale`, which defaults to `locale`.
  explicit Localize(const std::string& locale = currentLocale(), const std::filesystem::path& catalogues = {},
                    const std::string& timeLocale = {});
  ~Localize();
  Localize(const Localize&) = delete;
  Localize& operator=(const Localize&) = delete;

  /// The user's locale, such as "de_AT"; "en" if the process has none.
  static std::string currentLocale();
  /// The locale for dates and times: `LC_TIME` of the environment unless `LC_ALL` overrides it, otherwise `locale`.
  static std::string timeLocale(const std::string& locale, const Environment& environment);
  const std::string& locale() const { return m_locale; }
  /// The locale for dates and times.
  const std::string& timeLocale() const { return m_timeLocale; }
  /// Whether there are translations and their language is written from right to left.
  bool isRightToLeft() const;

  /// Formats a number with the digits and the grouping of the locale: "86.400". `Scheduled::NumberText` parses it.
  std::string int_(std::int64_t number) const;

  /// The translation of `key`, with each "%@" replaced by the next argument, "%2$@" by the second, and "%%" by a
  /// percent sign. Specifiers without an argument are kept.
  std::string format(const char* key, const std::vector<std::string>& arguments) const;

  Lowercase lowercase() const;
  Ellipsis ellipsis() const;
  MainMenu mainMenu() const;

  std::string aboutText() const {
    return text(
        "Finds, shows and looks after the background jobs of this machine. Free software under the GNU General "
        "Public License, version 3 or later; it comes with no warranty.");
  }
  std::string add() const { return text("Add"); }
  std::string addRule() const { return text("Add Rule"); }
  std::string addTheFoldersFromWhereYourJobsAreLinked() const {
    return text("Add the folders from where your jobs are linked");
  }
  std::string advanced() const { return text("Advanced"); }
  std::string agent() const { return text("Agent"); }
  std::string actions() const { return text("Actions"); }
  std::string all() const { return text("All"); }
  std::string anErrorOccurredWhileSaving() const { return text("An error occurred while saving"); }
  std::string anUnknownErrorOccurred() const { return text("An unknown error occurred"); }
  std::string anUnknownErrorOccurredWhenFetchingTheLog() const {
    return text("An unknown error occurred when fetching the log");
  }
  std::string anotherJobHasTheName(const std::string& name) const {
    return format("Another job is also called “%@”", {name});
  }
  std::string anotherJobHasTheNameIn(const std::string& path) const {
    return format(
        "It is in the file “%@”. Only one of two jobs with the same name can run. You can restore this one as "
        "disabled.",
        {path});
  }
  std::string anotherProgramChangedTheFile() const {
    return text(
        "Another program changed the job’s file after you opened it. Compare the two versions, or choose the one to "
        "keep.");
  }
  std::string application() const { return text("Application"); }
  std::string applicationHint() const { return text("One that is installed, or any program file"); }
  std::string askAnAdministrator() const {
    return text(
        "The password was wrong, or your account isn’t allowed to administer this computer. Try again, or ask an "
        "administrator.");
  }
  std::string atStartupAndWhenSaving() const { return text("At startup and when saving"); }
  std::string areYouSureYouWantToDelete(const std::string& name) const {
    return format("Are you sure you want to delete “%@”?", {name});
  }
  std::string aRowHasNoName() const { return text("A row has no name"); }
  std::string atLogin() const { return text("At login"); }
  std::string atSystemStart() const { return text("When the system starts"); }
  std::string automatic() const { return text("Automatic"); }
  std::string backUpAFolder() const { return text("Back Up a Folder"); }
  std::string backup() const { return text("Backup"); }
  std::string cancel() const { return text("Cancel"); }
  std::string cannotAuthenticate() const { return text("Cannot authenticate"); }
  std::string change() const { return text("Change"); }
  std::string check() const { return text("Check"); }
  std::string checkTheContentOfTheJobFile() const { return text("Check the content of the job file."); }
  std::string checkWhoMayChangeTheFile() const {
    return text("Check who owns the file and its folder, and who may change them.");
  }
  std::string chooseIcon() const { return text("Choose Icon…"); }
  std::string chooseOrWriteAScript() const { return text("Choose a script that you have, or write a new one here."); }
  std::string chooseWhatYouWantToRun() const { return text("Choose what you want to run"); }
  std::string clients() const { return text("Clients"); }
  std::string close() const { return text("Close"); }
  std::string compare() const { return text("Compare"); }
  std::string command() const { return text("Command"); }
  std::string commandExample(const std::string& command) const { return format("For example: %@", {command}); }
  std::string commandHint() const { return text("A line as you would type it in a terminal"); }
  std::string couldNotEstablishCommunicationWithHelperTool() const {
    return text("Could not establish communication with the helper tool");
  }
  std::string continueEditing() const { return text("Continue Editing"); }
  std::string copy() const { return text("Copy"); }
  std::string copyOf(const std::string& name) const { return format("%@ copy", {name}); }
  std::string couldntBeDeleted(const std::string& file) const { return format("“%@” couldn’t be deleted", {file}); }
  std::string couldntBeRead(const std::string& file) const { return format("“%@” couldn’t be read", {file}); }
  std::string couldntBeWritten(const std::string& file) const { return format("“%@” couldn’t be written", {file}); }
  std::string couldntLookForUpdates() const { return text("Couldn’t look for a new version"); }
  std::string couldntOpenInThatFormat(const std::string& name) const {
    return format("The file “%@” couldn’t be opened because it isn’t in the correct format.", {name});
  }
  std::string couldntSaveDocument() const { return text("The document couldn’t be saved"); }
  std::string date() const { return text("Date"); }
  std::string dayOfMonth() const { return text("Day of Month"); }
  std::string dayOfWeek() const { return text("Day of Week"); }
  std::string dayOfYear() const { return text("Day of Year"); }
  std::string delete_() const { return text("Delete"); }
  std::string deleteAnyway() const { return text("Delete Anyway"); }
  std::string deleted() const { return text("Deleted"); }
  std::string deletedJobsAreKept(std::int64_t days) const {
    return format("Mirvel keeps the jobs that you delete for %@ days.", {int_(days)});
  }
  std::string deletedJobStays(const std::string& until) const {
    return format("You can bring it back with “Restore Deleted” in the File menu until %@.", {until});
  }
  std::string deleteRevisions() const { return text("Delete Revisions…"); }
  std::string deleteRevisionsOf(const std::string& name) const {
    return format("Do you want to delete the revisions of “%@”?", {name});
  }
  std::string deleteRevisionsOfAllJobs() const { return text("Delete for All Jobs"); }
  std::string deleteRevisionsOfThisJob() const { return text("Delete for This Job"); }
  std::string deprecated() const { return text("Deprecated"); }
  std::string disabled() const { return text("Disabled"); }
  std::string discardChanges() const { return text("Discard Changes"); }
  std::string done() const { return text("Done"); }
  std::string duplicate() const { return text("Duplicate"); }
  std::string edit() const { return text("Edit"); }
  std::string editScript() const { return text("Edit Script…"); }
  std::string enterAMinute() const { return text("Enter a minute from 0 to 59."); }
  std::string enterASmallerNumber() const { return text("Enter a smaller number."); }
  std::string enterAtLeastTenSeconds() const { return text("Enter at least 10 seconds."); }
  std::string enterAWholeNumber() const { return text("Enter a whole number."); }
  std::string enabled() const { return text("Enabled"); }
  std::string enabledButNotRun() const { return text("Enabled, but not run now"); }
  std::string everyDay() const { return text("Every Day"); }
  std::string everyHour() const { return text("Every Hour"); }
  std::string everyMinute() const { return text("Every minute"); }
  std::string everyone() const { return text("Everyone"); }
  std::string exclude() const { return text("Exclude"); }
  std::string file() const { return text("File"); }
  std::string filter() const { return text("Filter"); }
  std::string folderWatch() const { return text("Folder Watch"); }
  std::string fileWasChangedMeanwhile(const std::string& name) const {
    return format("The file of “%@” has changed", {name});
  }
  std::string folders() const { return text("Folders"); }
  std::string forString() const { return text("For"); }
  std::string fromWhenItIsLoaded(const std::string& rule) const {
    return format("%@, counted from when the job is loaded", {rule});
  }
  std::string general() const { return text("General"); }
  std::string grid() const { return text("Grid"); }
  std::string help() const { return text("Help"); }
  std::string hide() const { return text("Hide"); }
  std::string icon() const { return text("Icon"); }
  std::string identifier() const { return text("Identifier"); }
  std::string importString() const { return text("Import"); }
  std::string info() const { return text("Info"); }
  std::string installPkexec() const {
    return text(
        "The program pkexec, with which Mirvel asks for your password, is missing. Install the package “pkexec” or "
        "“policykit-1” and try again.");
  }
  std::string inTheJobFile(const std::string& entries) const { return format("In the job file: %@", {entries}); }
  std::string internalHelperTools() const { return text("Internal Helper Tools"); }
  std::string itIsTooLargeForAJobFile() const { return text("It’s too large for a job file."); }
  std::string itWillNeverRun() const { return text("It will never run on this schedule"); }
  std::string keepAProgramRunning() const { return text("Keep a Program Running"); }
  std::string keepMine() const { return text("Keep Mine"); }
  std::string keptUntil() const { return text("Kept Until"); }
  std::string key() const { return text("Key"); }
  std::string kind() const { return text("Kind"); }
  std::string labelIsInUse(const std::string& label) const { return format("Another job has the label “%@”", {label}); }
  std::string launchAgainIfItCrashes() const { return text("Launch again if it crashes"); }
  std::string later() const { return text("Later"); }
  std::string length() const { return text("Length"); }
  std::string limits() const { return text("Limits"); }
  std::string list() const { return text("List"); }
  std::string log() const { return text("Log"); }
  std::string loginItems() const { return text("Login Items"); }
  std::string mail() const { return text("Mail"); }
  std::string makeSureThatOnlyYouCanChangeTheFile() const {
    return text("Make sure that only you can change the file and its folder, and try again.");
  }
  std::string message() const { return text("Message"); }
  std::string mirvelEndedBeforeYouSavedThem() const {
    return text("Mirvel ended before you saved them. The job’s file doesn’t contain them yet.");
  }
  std::string miscellaneous() const { return text("Miscellaneous"); }
  std::string mode() const { return text("Mode"); }
  std::string month() const { return text("Month"); }
  std::string moreThanOneRowIsCalled(const std::string& name) const {
    return format("More than one row is called “%@”", {name});
  }
  std::string mountingLogicalVolume() const { return text("Mounting a logical volume"); }
  std::string name() const { return text("Name"); }
  std::string new_() const { return text("New"); }
  std::string newVersion(const std::string& version) const { return format("Mirvel %@ is available", {version}); }
  std::string next() const { return text("Next"); }
  std::string nextRun(const std::string& moment) const { return format("Next: %@", {moment}); }
  std::string nextRuns(const std::string& first, const std::string& second) const {
    return format("Next: %1$@, then %2$@", {first, second});
  }
  std::string nextRunsTitle() const { return text("Next runs"); }
  std::string nightlyScript() const { return text("Nightly Script"); }
  std::string noDeletedJobs() const { return text("No Deleted Jobs"); }
  std::string noError() const { return text("No error"); }
  std::string noItems() const { return text("No Items"); }
  std::string noSelection() const { return text("No Selection"); }
  std::string noShellReadsTheCommand(const std::string& sign) const {
    return format("The command runs without a shell, so the program would get “%@” as an ordinary argument.", {sign});
  }
  std::string noValue() const { return text("No Value"); }
  std::string notEditable() const { return text("Not editable"); }
  std::string notFound(const std::string& files) const { return format("Not found: %@", {files}); }
  std::string notes() const { return text("Notes"); }
  std::string notifications() const { return text("Notifications"); }
  std::string numberOf(const std::string& number, const std::string& count) const {
    return format("%1$@ of %2$@", {number, count});
  }
  std::string off() const { return text("Off"); }
  std::string ok() const { return text("OK"); }
  std::string on() const { return text("On"); }
  std::string onlyOneOfTheTwoCanBeLoaded(const std::string& path) const {
    return format(
        "It is in the file “%@”. Only one of the two jobs can be loaded. Give this one another label, or save it "
        "disabled.",
        {path});
  }
  std::string onlyOneRepeatInterval() const {
    return text("A job can have only one repeat interval. Remove this rule.");
  }
  std::string onlyWhenStartedByHand() const { return text("Only when it is started by hand"); }
  std::string open() const { return text("Open"); }
  std::string orBeginWith() const { return text("Or begin with"); }
  std::string ownFileCantBeRead() const { return text("Mirvel can’t read one of its own files"); }
  std::string ownFileCantBeWritten() const { return text("Mirvel can’t write one of its own files"); }
  std::string ownFileIsLeftAlone(const std::string& reason) const {
    return format("%@. The file is left as it is, and what would be written to it is kept until you quit.", {reason});
  }
  std::string ownFileStaysInMemory(const std::string& reason) const {
    return format("%@. What would be written to it is kept until you quit.", {reason});
  }
  std::string ownFileWasDamaged() const { return text("One of Mirvel’s own files was damaged"); }
  std::string ownFileWasMoved(const std::string& reason, const std::string& rescue) const {
    return format("%1$@. It is now called %2$@, and Mirvel goes on without what it held.", {reason, rescue});
  }
  std::string part() const { return text("Part"); }
  std::string path() const { return text("Path"); }
  std::string paths() const { return text("Paths"); }
  std::string pleaseTryAgain() const { return text("Please try again."); }
  std::string prefix() const { return text("Prefix"); }
  std::string previous() const { return text("Previous"); }
  std::string program() const { return text("Program"); }
  std::string refresh() const { return text("Refresh"); }
  std::string relaunch() const { return text("Relaunch"); }
  std::string remove() const { return text("Remove"); }
  std::string removeIcon() const { return text("Remove Icon"); }
  std::string removeRule() const { return text("Remove Rule"); }
  std::string renameTheItemAndTryAgain() const { return text("Rename the item and try again"); }
  std::string repeatInterval() const { return text("Repeat Interval"); }
  std::string restore() const { return text("Restore"); }
  std::string restoreDeleted() const { return text("Restore Deleted"); }
  std::string restoreDisabled() const { return text("Restore Disabled"); }
  std::string restoredWithoutComments(const std::string& folder) const {
    return format("The comments in its file can’t be restored with it. The file as it was is put into the folder “%@”.",
                  {folder});
  }
  std::string revealInFinder() const;
  std::string revisions() const { return text("Revisions"); }
  std::string revisionsAreEarlierContents() const {
    return text(
        "Revisions are the earlier contents of a job, as you saved them. The jobs themselves stay as they are. You "
        "can’t undo this action.");
  }
  std::string rightSizeAllColumnsIndividually() const { return text("Right-Size All Columns Individually"); }
  std::string rightSizeThisColumn() const { return text("Right-Size This Column"); }
  std::string ruleCantBeSaved(const std::string& number, const std::string& kind) const {
    return format("Rule %1$@, “%2$@”, can’t be saved", {number, kind});
  }
  std::string run() const { return text("Run"); }
  std::string runAScriptEveryNight() const { return text("Run a Script Every Night"); }
  std::string runsAsRoot(const std::string& name, const std::string& times) const {
    // translators: the second place is a list of times, such as "every day at 09:00 and at every login".
    return format("“%1$@” runs as root %2$@.", {name, times});
  }
  std::string runsAsYou(const std::string& name, const std::string& times) const {
    return format("“%1$@” runs as you %2$@.", {name, times});
  }
  std::string runsForEveryone(const std::string& name, const std::string& times) const {
    return format("“%1$@” runs for everyone who is logged in %2$@.", {name, times});
  }
  std::string save() const { return text("Save"); }
  std::string saveDisabled() const { return text("Save Disabled"); }
  std::string saveOrDiscardFirst() const {
    return text("Save or discard your changes first, or wait until they are saved. Then try again.");
  }
  std::string saveTheScriptToGoOn() const { return text("Save the script to go on."); }
  std::string saveWithoutComments() const { return text("Save Without Comments"); }
  std::string savingRemovesComments(const std::string& name) const {
    return format("Saving removes the comments from the file of “%@”", {name});
  }
  std::string scheduled() const { return text("Scheduled"); }
  std::string script() const { return text("Script"); }
  std::string scriptHint() const { return text("One that you have, or that you write now"); }
  std::string share() const { return text("Share"); }
  std::string show() const { return text("Show"); }
  std::string skip() const { return text("Skip"); }
  std::string jobs() const { return text("Jobs"); }
  std::string jobsDontRun(const std::string& reason) const { return format("Your jobs aren’t running: %@", {reason}); }
  std::string details() const { return text("Details"); }
  std::string startAnAuthenticationAgent() const {
    return text(
        "No program is running that could ask for your password. Start the polkit authentication agent of your "
        "desktop, or install one, such as “lxpolkit” or “mate-polkit”, and try again.");
  }
  std::string startPolkit() const {
    return text(
        "The system’s polkit service, which decides who may administer this computer, can’t be reached. Make sure that "
        "the package “polkitd” is installed and its service is running, and try again.");
  }
  std::string summary() const { return text("Summary"); }
  std::string system() const { return text("System"); }
  std::string tableCantBeSaved(const std::string& key) const { return format("“%@” can’t be saved", {key}); }
  std::string takeTheirs() const { return text("Take Theirs"); }
  std::string test() const { return text("Test"); }
  std::string theDiskCantBeWritten() const { return text("The disk is read-only. Make it writable and try again."); }
  std::string theDiskIsFull() const { return text("The disk is full. Make room on it and try again."); }
  std::string theDiskReportsAnError() const {
    return text("The disk reports an error. Make sure that it works, and try again.");
  }
  std::string theFileOrItsFolderIsMissing() const { return text("The file or its folder doesn’t exist."); }
  std::string theFileWasSaved() const { return text("The file was saved."); }
  std::string theFileWithItsCommentsIsKept(const std::string& folder) const {
    return format("A copy of the file as it is now will be kept in the folder “%@”.", {folder});
  }
  std::string theIconCouldntBeSaved() const { return text("The icon couldn’t be saved"); }
  std::string theJobCouldntBeKept(const std::string& name) const {
    return format("If you delete “%@” now, you can’t restore it later", {name});
  }
  std::string theJobCouldntBeLoaded(const std::string& file) const {
    return format("The job in “%@” couldn’t be loaded", {file});
  }
  std::string theJobCouldntBeStopped(const std::string& file) const {
    return format("The job in “%@” couldn’t be stopped", {file});
  }
  std::string theJobIsGone(const std::string& folder) const {
    return format("The job’s own file is gone. A file with your changes is now in the folder “%@”.", {folder});
  }
  std::string theJobIsNotShown() const {
    return text("The job’s file is there, but the job isn’t in the list now. The changes stay kept until it is.");
  }
  std::string theNameIsTooLong() const { return text("The name is too long. Choose a shorter one and try again."); }
  std::string thePictureCouldntBeRead() const { return text("The picture couldn’t be read"); }
  std::string theItemCouldntBeAddedOrRemovedBecauseOfAnUnknownError() const {
    return text("The item couldn’t be added or removed because of an unknown error");
  }
  std::string themes() const { return text("Themes"); }
  std::string thereIsAFileOfThisName() const {
    return text("There is a file of this name already. Choose another name and try again.");
  }
  std::string theTestCouldntBeRun() const { return text("The test couldn’t be run"); }
  std::string time() const { return text("Time"); }
  std::string timePeriod() const { return text("Time Period"); }
  std::string timeline() const { return text("Timeline"); }
  std::string toolbar() const { return text("Toolbar"); }
  std::string tree() const { return text("Tree"); }
  std::string uninstall() const { return text("Uninstall"); }
  std::string unit() const { return text("Unit"); }
  std::string unknown() const { return text("Unknown"); }
  std::string unsavedChanges() const { return text("There are unsaved changes"); }
  std::string unsavedChangesWereKept(const std::string& name) const {
    return format("Your unsaved changes to “%@” were kept", {name});
  }
  std::string value() const { return text("Value"); }
  std::string versionOnDisk() const { return text("Version on Disk"); }
  std::string watchAFolder() const { return text("Watch a Folder"); }
  std::string watchedFolder() const { return text("Watched folder"); }
  std::string waitUntilTheJobHasEnded() const {
    return text("Wait until the job has ended, or end its process, and try again.");
  }
  std::string weekdays() const { return text("Weekdays"); }
  std::string weekends() const { return text("Weekends"); }
  std::string what() const { return text("What"); }
  std::string when() const { return text("When"); }
  std::string whenAClientAsks() const { return text("When one of its clients asks for it"); }
  std::string youHaveVersion(const std::string& version) const { return format("You have version %@.", {version}); }
  std::string yourVersionIsTheLatest() const { return text("Your version is the latest"); }
  std::string youCantUndoThisAction() const { return text("You can’t undo this action."); }
  std::string yourVersion() const { return text("Your Version"); }
  std::string yourChangesWillBeLostIfYouDontSaveThem() const {
    return text("Your changes will be lost if you don’t save them.");
  }

 private:
  class Numbers;

  std::string text(const char* english) const;

  std::string m_locale;
  std::string m_timeLocale;
  std::optional<MessageCatalog> m_catalog;
  std::unique_ptr<Numbers> m_numbers;
};

/// Lower-case forms for the middle of a line.
class Localize::Lowercase {
 public:
  explicit Lowercase(const Localize& localize) : m_localize(localize) {}

  std::string whereString() const { return m_localize.text("where"); }
  std::string atEveryLogin() const { return m_localize.text("at every login"); }
  std::string atEverySystemStart() const { return m_localize.text("at every system start"); }
  std::string days() const { return m_localize.text("days"); }
  std::string hours() const { return m_localize.text("hours"); }
  std::string minute() const { return m_localize.text("minute"); }
  std::string minutes() const { return m_localize.text("minutes"); }
  std::string onceWhenSaved() const { return m_localize.text("once when it is saved"); }
  std::string seconds() const { return m_localize.text("seconds"); }

 private:
  const Localize& m_localize;
};

/// Titles of commands that ask for more input before they act.
class Localize::Ellipsis {
 public:
  explicit Ellipsis(const Localize& localize) : m_localize(localize) {}

  std::string edit() const { return m_localize.text("Edit…"); }
  std::string save() const { return m_localize.text("Save…"); }
  std::string choose() const { return m_localize.text("Choose…"); }
  std::string loading() const { return m_localize.text("Loading…"); }
  std::string createNew() const { return m_localize.text("Create New…"); }

 private:
  const Localize& m_localize;
};

/// Titles of the main menu. An ampersand precedes the mnemonic.
class Localize::MainMenu {
 public:
  explicit MainMenu(const Localize& localize) : m_localize(localize) {}

  std::string file() const { return m_localize.text("&File"); }
  std::string newJob() const { return m_localize.text("&New…"); }
  std::string editJob() const { return m_localize.text("&Edit Job"); }
  std::string save() const { return m_localize.text("&Save"); }
  std::string revisions() const { return m_localize.text("Re&visions"); }
  std::string duplicate() const { return m_localize.text("D&uplicate…"); }
  std::string importJob() const { return m_localize.text("&Import…"); }
  std::string exportJob() const { return m_localize.text("E&xport…"); }
  std::string delete_() const { return m_localize.text("&Delete…"); }
  std::string restoreDeleted() const { return m_localize.text("Rest&ore Deleted…"); }
  std::string share() const { return m_localize.text("S&hare"); }
  std::string test() const { return m_localize.text("&Test…"); }
  std::string log() const { return m_localize.text("&Log…"); }
  std::string info() const { return m_localize.text("In&fo"); }
  std::string refresh() const { return m_localize.text("&Refresh"); }
  std::string quit() const { return m_localize.text("&Quit"); }
  std::string edit() const { return m_localize.text("&Edit"); }
  std::string undo() const { return m_localize.text("&Undo"); }
  std::string redo() const { return m_localize.text("&Redo"); }
  std::string cut() const { return m_localize.text("Cu&t"); }
  std::string copy() const { return m_localize.text("&Copy"); }
  std::string paste() const { return m_localize.text("&Paste"); }
  std::string selectAll() const { return m_localize.text("Select &All"); }
  std::string filter() const { return m_localize.text("&Filter"); }
  std::string view() const { return m_localize.text("&View"); }
  std::string asGrid() const { return m_localize.text("as &Grid"); }
  std::string asTree() const { return m_localize.text("as &Tree"); }
  std::string asList() const { return m_localize.text("as &List"); }
  std::string asTimeline() const { return m_localize.text("as Ti&meline"); }
  std::string systemJobs() const { return m_localize.text("&System Jobs"); }
  std::string columns() const { return m_localize.text("&Columns"); }
  std::string titleBar() const { return m_localize.text("Title &Bar"); }
  std::string fullScreen() const { return m_localize.text("&Full Screen"); }
  std::string help() const { return m_localize.text("&Help"); }
  std::string pages() const { return m_localize.text("Mirvel &Help"); }
  std::string manual() const { return m_localize.text("&Manual of launchd.plist"); }
  std::string site() const { return m_localize.text("Mirvel &Web Site"); }
  std::string mailSupport() const { return m_localize.text("Mail to &Support"); }
  std::string checkForUpdates() const { return m_localize.text("Check for &Updates"); }
  std::string about() const { return m_localize.text("&About Mirvel"); }

 private:
  const Localize& m_localize;
};

inline Localize::MainMenu Localize::mainMenu() const {
  return MainMenu(*this);
}

inline Localize::Lowercase Localize::lowercase() const {
  return Lowercase(*this);
}

inline Localize::Ellipsis Localize::ellipsis() const {
  return Ellipsis(*this);
}

}  // namespace mirvel
