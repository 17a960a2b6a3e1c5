#include "core/creation/StartingPoints.h"

#include "core/creation/CreationTexts.h"
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
  New job = jobOf(CreationTexts(localize).backup(), New::Run::command);
  // It makes the folder "Backup", and copies what changed.
  job.command = "rsync -a " + String::shellWord((roots.home / "Documents").native()) + ' ' +
                String::shellWord((roots.home / "Backup").native());
  job.plist.run = job.command;
  runEveryDay(job, 21);
  return job;
}

New nightlyScript(const Localize& localize) {
  New job = jobOf(CreationTexts(localize).nightlyScript(), New::Run::script);
  runEveryDay(job, 3);
  return job;
}

New keptProgram(const Localize& localize) {
  New job = jobOf(CreationTexts(localize).program(), New::Run::command);
  job.plist.runAtLoad = true;
  job.plist.keepAlive = jobfile::KeepAlive{.bool_ = true};
  return job;
}

New folderWatch(const Localize& localize, const Roots& roots) {
  New job = jobOf(CreationTexts(localize).folderWatch(), New::Run::script);
  job.plist.watchPaths = {(roots.home / "Downloads").native()};
  return job;
}

}  // namespace

std::vector<StartingPoint> startingPoints(const Localize& localize, const Roots& roots) {
  std::vector<StartingPoint> points;
  points.push_back({.title = CreationTexts(localize).backUpAFolder(), .job = backup(localize, roots)});
  points.push_back({.title = CreationTexts(localize).runAScriptEveryNight(), .job = nightlyScript(localize)});
  points.push_back({.title = CreationTexts(localize).keepAProgramRunning(), .job = keptProgram(localize)});
  points.push_back({.title = CreationTexts(localize).watchAFolder(), .job = folderWatch(localize, roots)});
  return points;
}

}  // namespace mirvel
