#include "demo/SampleRuns.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "core/catalogue/JobFolder.h"
#include "core/files/ReadFile.h"
#include "core/files/ReplaceFile.h"
#include "core/jobfile/Plist.h"
#include "core/messages/JobReport.h"
#include "core/process/ProcessStatus.h"
#include "core/propertylist/Writer.h"
#include "core/schedule/MergedRuns.h"
#include "core/schedule/ZoneStretches.h"
#include "demo/SampleLogs.h"
#include "helpers/hostdata/HostPlaces.h"

namespace mirvel::demo {

namespace fs = std::filesystem;
using namespace std::chrono;

namespace {

constexpr days past{6};

/// The earlier runs of a sample job.
struct SampleHistory {
  const char* label;
  RunCause cause = RunCause::Calendar;
  double seconds = 1;                    ///< how long a run takes
  std::vector<minutes> startedAgo = {};  ///< runs in addition to those by the calendar
  std::vector<RunEnd> lastEnds = {};     ///< of the last runs; earlier ones have succeeded
  std::size_t missed = 0;                ///< how many of the last times by the calendar were missed
  SampleOutput output = {};              ///< for the logs of the user's host
  bool isRunning = false;                ///< whether the last run goes on; this process plays its process
};

std::vector<minutes> every(minutes interval, int count) {
  std::vector<minutes> result;
  for (int i = count; i > 0; --i) result.push_back(i * interval - minutes(4));
  return result;
}

std::vector<SampleHistory> ownHistories() {
  const SampleOutput photos{.usual = {": the pictures are on the volume Photos"},
                            .ofLastRuns = {{"cp: Volumes/Photos/Pictures/sunrise.svg: No space left on device",
                                            "cp: Volumes/Photos/Pictures/mountains.svg: No space left on device"}}};
  const SampleOutput downloads{.usual = {": invoice.pdf is in Texts"},
                               .ofLastRuns = {{": holiday.jpg is in Pictures", ": garden.png is in Pictures"},
                                              {},
                                              {": manual.zip is in Archives"},
                                              {": Texts has a receipt.txt already", ": tickets.pdf is in Texts"}}};
  return {
      {.label = "home.backup.documents",
       .seconds = 74,
       .missed = 1,
       .output = {.usual = {": the documents are backed up"}}},
      {.label = "home.inbox.count",
       .cause = RunCause::Interval,
       .seconds = 0.4,
       .startedAgo = every(minutes(15), 30),
       .output = {.usual = {": 2 notes in the inbox"}, .ofLastRuns = {{": 3 notes in the inbox"}}}},
      {.label = "home.menubar.clock",
       .cause = RunCause::Load,
       .startedAgo = {hours(4) + minutes(10)},
       .isRunning = true},
      {.label = "home.notes.snapshot",
       .seconds = 2.1,
       .lastEnds = {{}, {.code = 1}, {}},
       .output = {.usual = {": kept a copy of journal.txt"},
                  .ofLastRuns = {{"cp: journal.txt: No such file or directory"}, {": kept a copy of journal.txt"}}}},
      {.label = "home.sync.photos",
       .cause = RunCause::Mount,
       .seconds = 12.5,
       .startedAgo = {hours(50), hours(27), hours(3)},
       .lastEnds = {{.code = 1}},
       .output = photos},
      {.label = "home.watch.downloads",
       .cause = RunCause::WatchedPath,
       .seconds = 0.2,
       .startedAgo = {hours(28), hours(20), minutes(95), minutes(94), minutes(41), minutes(12)},
       .output = downloads},
      {.label = "org.example.disk-space",
       .seconds = 0.1,
       .output = {.usual = {"Filesystem     1024-blocks     Used Available Capacity Mounted on",
                            "/dev/sda2        239313084 98120444 128963168      44% /"}}},
      {.label = "org.example.wallpaper", .seconds = 0.8, .output = {.usual = {": the picture is sunrise.svg"}}},
  };
}

std::vector<SampleHistory> rootHistories() {
  const RunEnd noProgram{.how = RunEnd::How::CouldNotStart,
                         .code = 2,  // ENOENT
                         .obstacle = StartObstacle::Program,
                         .subject = "/usr/local/bin/dump-database"};
  return {
      {.label = "org.example.database-dump", .seconds = 310, .lastEnds = {noProgram}},
      {.label = "org.example.log-rotation", .seconds = 5},
      {.label = "org.example.webserver",
       .cause = RunCause::Load,
       .seconds = 8000,
       .startedAgo = {hours(70)},
       .lastEnds = {{.how = RunEnd::How::Signalled, .code = 15, .isStopped = true}}},
  };
}

double secondsOf(sys_seconds time) {
  return static_cast<double>(time.time_since_epoch().count());
}

/// The times in the past at which the calendar intervals of the job would have started it.
std::vector<sys_seconds> calendarTimes(const jobfile::Plist& plist, sys_seconds now) {
  if (!plist.startCalendarInterval) return {};
  std::vector<OwnedRule> rules;
  for (const auto& interval : plist.startCalendarInterval->intervals) rules.push_back({CalendarRule::asRun(interval)});
  std::vector<sys_seconds> result;
  for (const OwnedRun& run : mergedRuns(rules, ZoneStretches(zoneOfThisMachine(), now - past, now), now - past, now)) {
    result.push_back(run.date);
  }
  return result;
}

/// Lets the last run go on, with this process in place of its own.
void goOn(JobReport& report) {
  const auto process = ProcessIdentity::ofThisProcess();
  report.process = process.id;
  report.processStart = process.start;
  report.runs.back().process = process.id;
  report.runs.back().end.reset();
  report.runs.back().endTime.reset();
}

JobReport reportOf(const SampleHistory& history, const jobfile::Plist& plist, const fs::path& file, sys_seconds now) {
  JobReport report{.label = history.label, .path = file, .isLoaded = true};
  auto times = calendarTimes(plist, now);
  const std::size_t missed = std::min(history.missed, times.size());
  for (auto time = times.end() - static_cast<std::ptrdiff_t>(missed); time != times.end(); ++time) {
    report.missed.push_back({.time = secondsOf(*time), .why = MissedRun::Why::NoHost});
  }
  times.resize(times.size() - missed);
  for (const minutes ago : history.startedAgo) times.push_back(now - ago);
  const std::size_t kept = std::min(times.size(), JobReport::mostRuns);
  times.erase(times.begin(), times.end() - static_cast<std::ptrdiff_t>(kept));
  for (const sys_seconds time : times) {
    const double start = secondsOf(time);
    report.runs.push_back({.number = static_cast<std::int64_t>(report.runs.size()) + 1,
                           .start = start,
                           .endTime = std::min(start + history.seconds, secondsOf(now)),
                           .cause = history.cause,
                           .end = RunEnd{}});
  }
  const std::size_t count = std::min(history.lastEnds.size(), report.runs.size());
  for (std::size_t i = 0; i < count; ++i) {
    RunReport& run = report.runs[report.runs.size() - count + i];
    run.end = history.lastEnds[i];
    if (run.end->how == RunEnd::How::CouldNotStart) run.endTime = run.start;
  }
  if (history.isRunning) goOn(report);
  return report;
}

Result<jobfile::Plist> readJob(const fs::path& file) {
  const auto bytes = readFile(file, JobFolder::largestFile);
  if (!bytes) return bytes.error();
  return jobfile::Plist::readTolerantly(*bytes);
}

Result<void> write(const JobReport& report, const fs::path& reports) {
  std::error_code failure;
  fs::create_directories(reports, failure);
  if (failure) return systemError(failure.value(), "create", reports);
  fs::permissions(reports.parent_path(), fs::perms::owner_all, failure);  // as a host creates it
  return replaceFile(reports / (report.label + ".plist"), propertylist::writeBinary(report.write()), privateFile);
}

Result<void> writeOwn(const SampleHistory& history, const fs::path& file, const Roots& roots, sys_seconds now) {
  const auto plist = readJob(file);
  if (!plist) return plist.error();
  const JobReport report = reportOf(history, *plist, file, now);
  if (auto written = write(report, roots.ownReports()); !written) return written;
  return writeSampleLog(report, history.output, HostPlaces::of(roots).log(), plist->standardOutPath.value_or(""));
}

Result<void> writeRoots(const SampleHistory& history, const fs::path& file, const Roots& roots, sys_seconds now) {
  const auto plist = readJob(file);
  if (!plist) return plist.error();
  return write(reportOf(history, *plist, file, now), roots.publicReports);
}

}  // namespace

Result<void> writeSampleRuns(const Roots& roots, sys_seconds now) {
  for (const SampleHistory& history : ownHistories()) {
    const std::string name = std::string(history.label) + ".plist";
    const fs::path own = roots.userLibrary / "LaunchAgents" / name;
    const fs::path file = fs::exists(own) ? own : roots.localLibrary / "LaunchAgents" / name;
    if (auto written = writeOwn(history, file, roots, now); !written) return written.error();
  }
  for (const SampleHistory& history : rootHistories()) {
    const fs::path file = roots.localLibrary / "LaunchDaemons" / (std::string(history.label) + ".plist");
    if (auto written = writeRoots(history, file, roots, now); !written) return written.error();
  }
  return {};
}

}  // namespace mirvel::demo
