#pragma once

#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of the start, the end and updates.
class AppTexts : public Texts {
 public:
  using Texts::Texts;

  std::string cantDisable(const std::string& name) const { return format("“%@” can’t be disabled", {name}); }
  std::string couldntCheckForUpdates() const { return text("Couldn’t check for updates"); }
  std::string helpCantBeOpened() const { return text("The help can’t be opened"); }
  std::string helpIsInFile(const std::string& path) const {
    return format("No program opens web pages. The help is in the file “%@”.", {path});
  }
  std::string helpIsMissing(const std::string& path) const {
    return format("The file “%@” is missing. Install Mirvel again.", {path});
  }
  std::string itWontBeStartedAnyMore() const {
    return text("If it is running, it is stopped. It isn’t started again until you enable it.");
  }
  std::string mayDisable(const std::string& name) const { return format("Do you want to disable “%@”?", {name}); }
  std::string mirvelIsUpToDate() const { return text("Mirvel is up to date"); }
  std::string newVersion(const std::string& version) const { return format("Mirvel %@ is available", {version}); }
  std::string ownFileCantBeRead() const { return text("Mirvel can’t read one of its own files"); }
  std::string ownFileCantBeWritten() const { return text("Mirvel can’t write one of its own files"); }
  std::string ownFileIsLeftAlone(const std::string& reason) const {
    return format("%@. The file is left unchanged, and changes to it are kept in memory until you quit.", {reason});
  }
  std::string ownFileStaysInMemory(const std::string& reason) const {
    return format("%@. Changes to it are kept in memory until you quit.", {reason});
  }
  std::string ownFileWasDamaged() const { return text("One of Mirvel’s own files was damaged"); }
  std::string ownFileWasRenamed(const std::string& reason, const std::string& rescue) const {
    return format("%1$@. Mirvel renamed it to “%2$@” and continues without its contents.", {reason, rescue});
  }
  std::string showSystemJobs() const { return text("Show the Jobs of the System"); }
  std::string showSystemJobsToSeeIt() const { return text("You can hide them again in the View menu."); }
  std::string systemJobIsHidden(const std::string& name) const {
    return format("“%@” is a job of the system, and those are hidden", {name});
  }
  std::string youHaveVersion(const std::string& version) const { return format("You have version %@.", {version}); }
};

}  // namespace mirvel
