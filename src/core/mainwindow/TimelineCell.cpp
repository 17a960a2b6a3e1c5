#include "core/mainwindow/TimelineCell.h"

#include <algorithm>

#include "core/jobfile/Plist.h"
#include "core/mainwindow/TimelineTexts.h"
#include "core/messages/JobReport.h"

namespace mirvel {

namespace {

RunMark markOfStretch(std::span<const PastEvent> events) {
  const auto has = [](RunMark mark) { return [mark](const PastEvent& event) { return event.mark == mark; }; };
  if (std::any_of(events.begin(), events.end(), has(RunMark::Failed))) return RunMark::Failed;
  const RunMark first = events.front().mark;
  return std::all_of(events.begin(), events.end(), has(first)) ? first : RunMark::None;
}

void fillEnded(TimelineCell& cell, const JobReport& report, double start, const TimelineTexts& texts) {
  const auto run =
      std::find_if(report.runs.begin(), report.runs.end(), [&](const auto& of) { return of.start == start; });
  if (run == report.runs.end()) return;
  const auto duration = texts.duration(*run);
  const std::string ending = texts.ending(*run);
  cell.detail = duration ? texts.joined({*duration, ending}) : ending;
  if (duration) cell.shortDetail = cell.mark == RunMark::Succeeded ? *duration : ending;
}

std::string missedDetail(const JobReport& report, double time, const TimelineTexts& texts) {
  const auto missed =
      std::find_if(report.missed.begin(), report.missed.end(), [&](const auto& of) { return of.time == time; });
  return missed == report.missed.end() ? std::string() : texts.missed(missed->why);
}

void fillPast(TimelineCell& cell, const Timeline& row, const JobReport* report, const TimelineTexts& texts) {
  cell.time = texts.time(secondOf(row.events.front().time));
  cell.mark = markOfStretch(row.events);
  if (row.kind == TimelineKind::Fold) {
    cell.detail = texts.stretch(row.events);
  } else if (report && row.kind == TimelineKind::Missed) {
    cell.detail = missedDetail(*report, row.time, texts);
  } else if (report) {
    fillEnded(cell, *report, row.time, texts);
  }
}

void fillRunning(TimelineCell& cell, const Timeline& row, bool isToday, const JobReport* report,
                 const TimelineTexts& texts) {
  cell.mark = RunMark::Running;
  if (isToday) cell.time = texts.time(row.date());
  const bool isStopping = report && report->isStopping;
  const bool hasDate = !isToday && row.time > 0;
  cell.detail = isStopping ? texts.stopping()
                : hasDate  ? texts.runningSince(texts.dateAndTime(row.date()))
                           : texts.running();
}

void fillInterval(TimelineCell& cell, const Job& job, const TimelineTexts& texts) {
  const jobfile::Plist* record = job.record();
  const bool hasInterval = record && record->startInterval;
  const auto duration = hasInterval ? texts.duration(std::chrono::seconds(*record->startInterval)) : std::nullopt;
  if (duration) cell.name = texts.interval(job.name, *duration);
}

/// The coming run of a job that runs in an interval, as its host has planned it.
std::string nextRun(const TimelineArray& timeline, const JobReport& report, double now, const TimelineTexts& texts) {
  constexpr double farthest = 100.0 * 366 * 86400;
  if (!report.isLoaded || !report.nextRun || !(*report.nextRun > now && *report.nextRun < now + farthest)) return {};
  const auto moment = secondOf(*report.nextRun);
  return texts.nextRun(timeline.isToday(*report.nextRun) ? texts.time(moment) : texts.dateAndTime(moment));
}

}  // namespace

TimelineCell timelineCell(const TimelineArray& timeline, std::size_t index, const Job* job, const JobReport* report,
                          double now, const TimelineTexts& texts) {
  const Timeline row = timeline.row(index);
  TimelineCell cell{.kind = row.kind, .name = std::string(row.header), .isOpen = row.isOpen, .isNested = row.isNested};
  if (!job) return cell;
  cell.name = job->name;
  const bool isToCome = row.kind == TimelineKind::Time || row.kind == TimelineKind::Interval;
  cell.isSecondary = isToCome && job->isDisabled();
  if (row.kind == TimelineKind::Time) cell.time = texts.time(row.date());
  if (row.kind == TimelineKind::Interval) {
    fillInterval(cell, *job, texts);
    if (report) cell.detail = nextRun(timeline, *report, now, texts);
  }
  if (row.kind == TimelineKind::Running) fillRunning(cell, row, timeline.isToday(row.time), report, texts);
  if (!row.events.empty()) fillPast(cell, row, report, texts);
  return cell;
}

}  // namespace mirvel
