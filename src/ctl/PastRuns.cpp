#include "ctl/PastRuns.h"

#include <algorithm>
#include <optional>
#include <ostream>
#include <vector>

#include "core/process/Commands.h"
#include "ctl/IsoTime.h"
#include "ctl/Json.h"
#include "ctl/Printable.h"
#include "ctl/Reports.h"
#include "ctl/Style.h"

namespace mirvel::ctl {

namespace {

/// A run, or a time at which the job should have run. Refers to a report.
struct Entry {
  double time;
  const JobReport* job;
  const RunReport* run;  ///< null if it was missed
  const MissedRun* missed;
};

const char* reasonOf(const MissedRun& missed) {
  switch (missed.why) {
    case MissedRun::Why::StillRunning:
      return "the previous run hadn't ended";
    case MissedRun::Why::Asleep:
      return "the computer slept";
    case MissedRun::Why::NoHost:
      break;
  }
  return "nothing ran jobs";
}

std::vector<Entry> entriesOf(const std::vector<JobReport>& reports, double from) {
  std::vector<Entry> entries;
  for (const auto& report : reports) {
    for (const auto& run : report.runs) entries.push_back({run.start, &report, &run, nullptr});
    for (const auto& missed : report.missed) entries.push_back({missed.time, &report, nullptr, &missed});
  }
  std::erase_if(entries, [&](const Entry& entry) { return entry.time < from; });
  std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.time < b.time; });
  return entries;
}

void writeJson(const std::vector<Entry>& entries, const Context& context) {
  Json json = Json::array();
  for (const Entry& entry : entries) {
    Json object{{"label", entry.job->label}, {"path", entry.job->path}, {"missed", nullptr}};
    if (entry.missed) {
      object["missed"] = reasonOf(*entry.missed);
      object["start"] = entry.time;
    } else {
      object.update(runObject(*entry.run, context.localize));
    }
    json.push_back(std::move(object));
  }
  context.out << text(json) << '\n';
}

std::string describe(const Entry& entry, const Context& context) {
  if (entry.missed)
    return coloured("missed", Colour::Yellow, context.hasColour) + ", because " + reasonOf(*entry.missed);
  if (!entry.run->end) return coloured("running", Colour::Green, context.hasColour);
  const std::string end = printable(endText(*entry.run, context.localize));
  return hasFailed(*entry.run) ? coloured(end, Colour::Red, context.hasColour) : end;
}

void writeLines(const std::vector<Entry>& entries, const Context& context) {
  if (entries.empty()) context.err << "mirvelctl runs: no past runs are known\n";
  for (const Entry& entry : entries) {
    context.out << momentText(entry.time) << "  " << printable(entry.job->label) << "  " << describe(entry, context)
                << '\n';
  }
}

/// Keeps the reports about these labels only. Returns `Failed` if there is none about one of them.
int limitTo(const std::vector<std::string>& labels, std::vector<JobReport>& reports, const Context& context) {
  int status = Success;
  for (const auto& label : labels) {
    const bool isKnown =
        std::any_of(reports.begin(), reports.end(), [&](const auto& each) { return each.label == label; });
    if (isKnown) continue;
    context.err << "mirvelctl runs: nothing is known about runs of " << printable(label) << '\n';
    status = Failed;
  }
  std::erase_if(reports, [&](const JobReport& report) {
    return !labels.empty() && std::find(labels.begin(), labels.end(), report.label) == labels.end();
  });
  return status;
}

}  // namespace

int pastRuns(const ParsedArguments& arguments, const Context& context) {
  if (arguments.has("--days")) return usageError("runs", "--days is for coming runs", context);
  double from = 0;
  if (const auto given = arguments.value("--from")) {
    const auto moment = isoMoment(*given, context.machine.timeZone());
    if (!moment)
      return usageError("runs", "invalid time `" + *given + "`; expected a time such as 2026-11-21T09:00", context);
    from = static_cast<double>(moment->time_since_epoch().count());
  }
  if (isProgram(Commands::forThisMachine(context.machine.environment).launchctl)) {
    context.err << "mirvelctl runs: launchd doesn't report when jobs ran\n";
    return Failed;
  }
  auto reports = publishedReports(RunDomain::User, context);
  for (auto& report : publishedReports(RunDomain::Root, context)) reports.push_back(std::move(report));
  const int status = limitTo(arguments.operands, reports, context);
  const auto entries = entriesOf(reports, from);
  if (arguments.has("--json")) {
    writeJson(entries, context);
  } else if (status == Success || !entries.empty()) {
    writeLines(entries, context);
  }
  return status;
}

}  // namespace mirvel::ctl
