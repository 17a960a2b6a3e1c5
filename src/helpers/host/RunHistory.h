#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/base/Result.h"
#include "core/messages/JobReport.h"
#include "helpers/host/JobReports.h"

namespace mirvel::host {

/// The runs of one label. They are kept in its report only: in memory are those that aren't written yet, and the last
/// one, which is written again if the file was deleted. For one thread.
class RunHistory {
 public:
  using Moment = std::chrono::sys_time<std::chrono::milliseconds>;

  /// The reports must outlive this object.
  RunHistory(JobReports& reports, std::string label, bool isTest)
      : m_reports(reports), m_label(std::move(label)), m_isTest(isTest) {}

  /// Continues what an earlier host or an earlier loading of the job has left. A run without an end becomes `Lost`; it
  /// ends when it was last known to run. Returns the last report, without the runs; none if there is none, or if it
  /// can't be read now: then the first `publish` that can read it continues it. Called once, before the other
  /// functions.
  std::optional<JobReports::Published> resume();
  /// Processes of a run were found and are being stopped. If it is the last one, which is lost, it ends now. `process`
  /// is the first process of the run.
  void prolongLost(std::int64_t process, Moment now);

  void begin(RunCause cause, Moment now);
  /// The first process of the run that has begun.
  void setProcess(std::int64_t process);
  /// Ends the run that has begun.
  void finish(const RunEnd& end, Moment now);
  void addMissed(std::vector<MissedRun> missed);

  /// The last run; none if there is none since `resume`.
  const RunReport* last() const { return m_runs.empty() ? nullptr : &m_runs.back(); }
  bool hasNews() const { return m_hasNews; }
  /// Writes the report, completed by the runs and missed runs. On failure, they are written with the next one.
  Result<void> publish(JobReport report);

 private:
  void continueAfter(const JobReports::Published& known);

  JobReports& m_reports;
  std::string m_label;
  bool m_isTest;
  std::int64_t m_lastNumber = 0;
  std::vector<RunReport> m_runs;  ///< the last run, and those that aren't written yet
  std::vector<MissedRun> m_missed;
  bool m_hasNews = false;
  bool m_isContinued = false;  ///< whether the runs are numbered after those of the report
};

}  // namespace mirvel::host
