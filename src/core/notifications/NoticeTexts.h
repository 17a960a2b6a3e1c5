#pragma once

#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// What the background agent says. Names, commands and paths are passed in the form in which they are to be shown.
class NoticeTexts : public Texts {
 public:
  using Texts::Texts;

  // Titles.
  std::string jobAdded() const { return text("Background job added"); }
  std::string jobChanged() const { return text("Background job changed"); }
  std::string jobMoved() const { return text("Background job moved"); }
  std::string jobRemoved() const { return text("Background job removed"); }
  std::string jobFailed() const { return text("Background job failed"); }
  std::string jobWorksAgain() const { return text("Background job works again"); }
  std::string jobsChanged() const { return text("Background jobs changed"); }
  std::string jobsFailed() const { return text("Background jobs failed"); }
  std::string jobsWorkAgain() const { return text("Background jobs work again"); }
  std::string ownFileTrouble() const { return text("Mirvel has a problem with one of its files"); }
  std::string programNotOpened() const { return text("Mirvel couldn’t be opened"); }
  std::string jobNotDisabled() const { return text("The job wasn’t disabled"); }

  // Sentences about one job.
  std::string wasAdded(const std::string& name, const std::string& description) const {
    return format("“%1$@” was added: %2$@", {name, description});
  }
  std::string wasChanged(const std::string& name, const std::string& description) const {
    return format("“%1$@” was changed: %2$@", {name, description});
  }
  std::string wasMoved(const std::string& name, const std::string& from, const std::string& description) const {
    return format("“%1$@” was moved from %2$@: %3$@", {name, from, description});
  }
  std::string wasRemoved(const std::string& name, const std::string& file) const {
    return format("“%1$@” was removed: %2$@", {name, file});
  }
  std::string failed(const std::string& name, const std::string& ending) const {
    return format("“%1$@” failed: %2$@", {name, ending});
  }
  std::string failedWithOutput(const std::string& name, const std::string& ending, const std::string& line) const {
    return format("“%1$@” failed: %2$@. It printed: %3$@", {name, ending, line});
  }
  std::string worksAgain(const std::string& name) const {
    return format("“%@” has ended without an error again.", {name});
  }
  std::string notDisabled(const std::string& name, const std::string& reason) const {
    return format("“%1$@” wasn’t changed: %2$@", {name, reason});
  }

  // Descriptions of a job, for the end of a sentence.
  std::string runsAsYou(const std::string& command, const std::string& times) const {
    return format("runs %1$@ %2$@, as you", {command, times});
  }
  std::string runsForEveryone(const std::string& command, const std::string& times) const {
    return format("runs %1$@ %2$@, for every user who logs in", {command, times});
  }
  std::string runsAsRoot(const std::string& command, const std::string& times) const {
    return format("runs %1$@ %2$@, as root", {command, times});
  }
  std::string runsAsUser(const std::string& command, const std::string& times, const std::string& user) const {
    return format("runs %1$@ %2$@, as the user %3$@", {command, times, user});
  }
  std::string isDisabled(const std::string& command) const {
    return command.empty() ? text("it is disabled and has no command")
                           : format("it is disabled; its command is %@", {command});
  }
  std::string nothing() const { return text("nothing"); }
  std::string isStartupItem(const std::string& path) const {
    return format("a startup item that runs %@ at every system start, as root", {path});
  }
  std::string isHelperTool(const std::string& path) const {
    return format("a helper tool that applications run as root: %@", {path});
  }
  std::string isUnreadable(const std::string& file) const {
    return format("you aren’t permitted to read its file %@", {file});
  }
  std::string cantBeRead(const std::string& file, const std::string& reason) const {
    return format("its file %1$@ can’t be read: %2$@", {file, reason});
  }
  std::string isNoJob(const std::string& file) const { return format("its file %@ isn’t a valid job file", {file}); }

  // The summaries of many changes, and of many jobs that fail or work again.
  std::string added(const std::string& number) const { return format("Added: %@", {number}); }
  std::string changed(const std::string& number) const { return format("Changed: %@", {number}); }
  std::string removed(const std::string& number) const { return format("Removed: %@", {number}); }
  std::string failed(const std::string& number) const { return format("Failed: %@", {number}); }
  std::string workAgain(const std::string& number) const { return format("Working again: %@", {number}); }
  std::string others() const { return text("others"); }
  std::string number(std::int64_t count) const { return int_(count); }

  // Own files.
  std::string fileWasDamaged(const std::string& reason, const std::string& rescue) const {
    return format("A damaged file was moved to %2$@. %1$@", {reason, rescue});
  }
  std::string fileCantBeUsed(const std::string& reason) const {
    return format("A file can’t be read or written: %@", {reason});
  }

  // Actions.
  std::string show() const { return text("Show Job"); }
  std::string showLog() const { return text("Show Log"); }
  std::string disable() const { return text("Disable"); }
  std::string dontTellAgain() const { return text("Don’t Tell Again"); }
};

}  // namespace mirvel
