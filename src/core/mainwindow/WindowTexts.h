#pragma once

#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of the main window and its modes.
class WindowTexts : public Texts {
 public:
  using Texts::Texts;

  std::string aboutText() const {
    return text(
        "Finds, shows, edits and runs the background jobs of this computer. Free software under the GNU General Public "
        "License, version 3 or later, without any warranty.");
  }
  std::string check() const { return text("Review Changes"); }
  std::string copy() const { return text("Copy"); }
  std::string deleteRevisions() const { return text("Delete Revisions…"); }
  std::string deleteRevisionsOf(const std::string& name) const {
    return format("Do you want to delete the revisions of “%@”?", {name});
  }
  std::string deleteRevisionsOfAllJobs() const { return text("Delete for All Jobs"); }
  std::string deleteRevisionsOfThisJob() const { return text("Delete for This Job"); }
  std::string grid() const { return text("Grid"); }
  std::string info() const { return text("Info"); }
  std::string jobs() const { return text("Jobs"); }
  std::string itMayRemainIncomplete() const {
    return text("Mirvel quits as soon as this has ended. If you quit now, it may remain incomplete.");
  }
  std::string jobIsBeingSavedOrDeleted() const { return text("A job is still being saved or deleted"); }
  std::string jobsDontRun(const std::string& reason) const { return format("Your jobs aren’t running: %@", {reason}); }
  std::string list() const { return text("List"); }
  std::string log() const { return text("Log"); }
  std::string mail() const { return text("Email"); }
  std::string mode() const { return text("Mode"); }
  std::string notEditable() const { return text("Not editable"); }
  std::string open() const { return text("Open"); }
  std::string quitNow() const { return text("Quit Now"); }
  std::string relaunch() const { return text("Relaunch"); }
  std::string revisionsAreEarlierContents() const {
    return text(
        "Revisions are earlier contents of a job that you saved. The jobs themselves aren’t changed. You can’t undo "
        "this action.");
  }
  std::string rightSizeAllColumnsIndividually() const { return text("Right-Size All Columns Individually"); }
  std::string rightSizeThisColumn() const { return text("Right-Size This Column"); }
  std::string share() const { return text("Share"); }
  std::string test() const { return text("Test"); }
  std::string timeline() const { return text("Timeline"); }
  std::string toolbar() const { return text("Toolbar"); }
  std::string tree() const { return text("Tree"); }
  std::string unsavedChanges() const { return text("There are unsaved changes"); }
  std::string yourChangesWillBeLostIfYouDontSaveThem() const {
    return text("Your changes will be lost if you don’t save them.");
  }
};

}  // namespace mirvel
