#include "core/creation/New.h"

#include "core/creation/CreationTexts.h"
#include "core/files/Roots.h"
#include "core/locale/Dates.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

New jobOf(std::string name, New::Run runPage) {
  New job;
  job.plist.name = std::move(name);
  job.plist.runAtLoad = false;
  job.runPage = runPage;
  return job;
}

void runEveryDay(New& job, int hour) {
  job.isScheduled = true;
  job.rules = {Scheduled::EveryDay{Date::timeOfDay(hour, 0)}};
}

New backup(const Localize& localize, const Roots& roots) {
  New job = jobOf(CreationTexts(localize).backup(), New::Run::Command);
  // Creates the folder "Backup" if necessary, and copies only the files that have changed.
  job.command = "rsync -a " + String::shellWord((roots.home / "Documents").native()) + ' ' +
                String::shellWord((roots.home / "Backup").native());
  job.plist.run = job.command;
  runEveryDay(job, 21);
  return job;
}

New nightlyScript(const Localize& localize) {
  New job = jobOf(CreationTexts(localize).nightlyScript(), New::Run::Script);
  runEveryDay(job, 3);
  return job;
}

New keptProgram(const Localize& localize) {
  New job = jobOf(CreationTexts(localize).program(), New::Run::Command);
  job.plist.runAtLoad = true;
  job.plist.keepAlive = jobfile::KeepAlive{.bool_ = true};
  return job;
}

New folderWatch(const Localize& localize, const Roots& roots) {
  New job = jobOf(CreationTexts(localize).folderWatch(), New::Run::Script);
  job.plist.watchPaths = {(roots.home / "Downloads").native()};
  return job;
}

}  // namespace

New New::clone() const {
  return {.kind = kind,
          .plist = plist.clone(),
          .runPage = runPage,
          .shownApplication = shownApplication,
          .application = application,
          .script = script,
          .command = command,
          .isScheduled = isScheduled,
          .rules = rules};
}

std::vector<StartingPoint> startingPoints(const Localize& localize, const Roots& roots) {
  const CreationTexts texts(localize);
  std::vector<StartingPoint> points;
  points.push_back({.title = texts.backUpAFolder(), .job = backup(localize, roots)});
  points.push_back({.title = texts.runAScriptEveryNight(), .job = nightlyScript(localize)});
  points.push_back({.title = texts.keepAProgramRunning(), .job = keptProgram(localize)});
  points.push_back({.title = texts.watchAFolder(), .job = folderWatch(localize, roots)});
  return points;
}

}  // namespace mirvel
