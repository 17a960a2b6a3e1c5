#pragma once

#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of the info sheets, and of the details of jobs that launchd doesn't run.
class InfoTexts : public Texts {
 public:
  using Texts::Texts;

  std::string cantBeRead(const std::string& reason) const { return format("Can’t be read: %@", {reason}); }
  std::string change() const { return text("Change"); }
  std::string close() const { return text("Close"); }
  std::string commentsInTheFileArentShown() const {
    return text("The comments in the job’s file aren’t shown here. Saving the job removes them.");
  }
  std::string commentsWontBeSaved() const { return text("Comments in this text won’t be saved."); }
  std::string discardChangesToTheText() const { return text("Discard your changes to the text?"); }
  std::string info() const { return text("Info"); }
  std::string keptAsTyped(const std::string& keys) const {
    return format("Kept as typed, but unknown or of the wrong type: %@", {keys});
  }
  std::string labelIsMissing() const { return text("“Label” is missing"); }
  std::string labelIsntText() const { return text("“Label” isn’t a string"); }
  std::string line(const std::string& number, const std::string& problem) const {
    return format("Line %@: %@", {number, problem});
  }
  std::string noPropertyList() const { return text("the file contains no property list"); }
  std::string propertyList() const { return text("Property List"); }
  std::string somethingInvalidIsntInTheText() const {
    return text("Input in the editor that can’t be saved yet isn’t part of this text.");
  }
  std::string textCantBeShown() const { return text("This job has values that can’t be shown as text."); }
  std::string theJobIsBeingSaved() const { return text("The job is being saved. Try again when that has finished."); }
  std::string theJobIsntSelected(const std::string& name) const {
    return format("“%@” is no longer selected. Copy the text if you need it, and open the job again.", {name});
  }
  std::string theRootIsntADictionary() const { return text("The property list isn’t a dictionary"); }
  std::string theTextIsOnlyInThisSheet() const { return text("They are only in this window."); }
  std::string thisJobCantBeEdited() const { return text("This job can’t be edited."); }
  std::string where() const { return text("Where"); }
};

}  // namespace mirvel
